#!/usr/bin/env bash
# install_test.sh BUILD_DIR CONSUMER_DIR SANITIZER_FLAGS
set -euo pipefail
build=$1; consumer=$2; san=${3:-}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cmake --install "$build" --prefix "$work/prefix" >/dev/null
export LD_LIBRARY_PATH="$work/prefix/lib:$work/prefix/lib/x86_64-linux-gnu:${LD_LIBRARY_PATH:-}"
# find_package
cmake -S "$consumer" -B "$work/cm" -G Ninja -DCMAKE_PREFIX_PATH="$work/prefix" \
      -DCMAKE_C_FLAGS="$san" -DCMAKE_EXE_LINKER_FLAGS="$san" >/dev/null
cmake --build "$work/cm" >/dev/null
"$work/cm/consumer"
# pkg-config
pcdir=$(dirname "$(find "$work/prefix" -name vtxotl.pc | head -1)")
export PKG_CONFIG_PATH="$pcdir"
cc -std=c11 -Wall -Wextra -Werror $san "$consumer/consumer.c" -o "$work/pc" $(pkg-config --cflags --libs vtxotl)
"$work/pc"
echo "install and consume: ok"
