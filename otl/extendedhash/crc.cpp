#include "crc.h"

#include <cstdio>
#include <cstring>

namespace CRC {

namespace {
constexpr unsigned int KNOWN_VALUE = 0x857B4779u;
const char KNOWN_TEXT[] = "your string";
} // namespace

CRC32::CRC32() {
    for (unsigned int i = 0; i < 256; ++i) {
        unsigned int c = i;
        for (int bit = 0; bit < 8; ++bit) c = (c & 1u) ? (c >> 1) ^ POLYNOMIAL : (c >> 1);
        crc_table[i] = c;
    }
    for (unsigned int i = 0; i < 256; ++i) {
        unsigned int c = crc_table[i];
        for (int k = 0; k < 7; ++k) {
            c = (c >> 8) ^ crc_table[c & 0xFFu];
            slice[k][i] = c;
        }
    }
}

const CRC32 &CRC32::instance() {
    static const CRC32 table;
    return table;
}

bool CRC32::check() const {
    for (unsigned short bit = 0; bit < 32; ++bit) {
        unsigned short set = 0;
        for (unsigned int i = 0; i < 256; ++i)
            if (crc_table[i] & (1u << bit)) ++set;
        if (set != 128) {
            std::fprintf(stderr, "crc: table is wrong, bits[%hu] = %hu, should be 128\n", bit, set);
            return false;
        }
        std::printf("[%d] %u/%u\n", bit, 128u, 256u);
    }
    unsigned int value = crc(KNOWN_TEXT, std::strlen(KNOWN_TEXT));
    if (value != KNOWN_VALUE) {
        std::fprintf(stderr, "crc: crc(\"%s\") = 0x%x, should be 0x%x\n", KNOWN_TEXT, KNOWN_VALUE,
                     value);
        return false;
    }
    return true;
}

void CRC32::print() const {
    std::printf("unsigned int crc_table[256] = {");
    for (unsigned int i = 0; i < 256; ++i) {
        if (i) std::printf(",");
        if (i % 4 == 0) std::printf("\n\t");
        std::printf("0x%08x", crc_table[i]);
    }
    std::printf("\n};");
}

} // namespace CRC
