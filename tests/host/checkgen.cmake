# Runs the catalogue generator on data/good.cat and checks what it wrote:
# escaping of quotes, semicolons kept inside a text, comments skipped.
execute_process(
  COMMAND ${CMAKE_COMMAND} -DIN=${DATA}/good.cat -DOUT=${OUT} -P ${GENERATOR}
  RESULT_VARIABLE rc)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "generator failed on a good catalogue")
endif()
file(READ ${OUT} generated)
foreach(expected
    "{1060002, 4, \"a text; with a semicolon and \\\"quotes\\\"\"},"
    "{1060010, 3, \"second %s\"},"
    "kCatalogueSize = 2;")
  string(FIND "${generated}" "${expected}" pos)
  if(pos EQUAL -1)
    message(FATAL_ERROR "missing from the generated table: ${expected}")
  endif()
endforeach()
