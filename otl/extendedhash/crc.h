// crc.h -- the CRC under every hash table slot of the name index.
//
// The reflected CRC-32 (polynomial 0xEDB88320) without the final inversion:
// the register starts at 0xFFFFFFFF and is returned as it stands, so a value
// is the complement of the usual CRC-32 of the same bytes.  Slot numbers are
// derived from it and end up in stored bucket numbers, so the arithmetic must
// never change.
#ifndef VTX_EH_CRC_H
#define VTX_EH_CRC_H

#include <cstddef>

#include "vtxtypes.h"

namespace CRC {

class VTX_API CRC32 {
public:
    static constexpr unsigned int POLYNOMIAL = 0xEDB88320u;
    static constexpr unsigned int START = 0xFFFFFFFFu;

    CRC32();

    // One step: fold one byte into the running value.
    unsigned int crc(unsigned char byte, unsigned int value) const {
        return (value >> 8) ^ crc_table[(value ^ byte) & 0xFFu];
    }
    // The value of len bytes, taken as unsigned.  Eight and four bytes at a time
    // through derived tables (the same value as byte by byte): a lookup waits
    // on this before it can touch any slot.
    unsigned int crc(const char *text, size_t len) const {
        const unsigned char *p = reinterpret_cast<const unsigned char *>(text);
        unsigned int c = START;
        for (; len >= 8; len -= 8, p += 8) {
            unsigned int lo, hi;
            __builtin_memcpy(&lo, p, 4);
            __builtin_memcpy(&hi, p + 4, 4);
            if constexpr (__BYTE_ORDER__ == __ORDER_BIG_ENDIAN__) {
                lo = __builtin_bswap32(lo);
                hi = __builtin_bswap32(hi);
            }
            lo ^= c;
            c = slice[6][lo & 0xFFu] ^ slice[5][(lo >> 8) & 0xFFu] ^ slice[4][(lo >> 16) & 0xFFu] ^
                slice[3][lo >> 24] ^ slice[2][hi & 0xFFu] ^ slice[1][(hi >> 8) & 0xFFu] ^
                slice[0][(hi >> 16) & 0xFFu] ^ crc_table[hi >> 24];
        }
        if (len >= 4) {
            unsigned int w;
            __builtin_memcpy(&w, p, 4);
            if constexpr (__BYTE_ORDER__ == __ORDER_BIG_ENDIAN__) w = __builtin_bswap32(w);
            w ^= c;
            c = slice[2][w & 0xFFu] ^ slice[1][(w >> 8) & 0xFFu] ^ slice[0][(w >> 16) & 0xFFu] ^
                crc_table[w >> 24];
            len -= 4;
            p += 4;
        }
        for (; len; --len, ++p) c = (c >> 8) ^ crc_table[(c ^ *p) & 0xFFu];
        return c;
    }

    // Self-test of the table: every bit position set in exactly half of the
    // entries, and the known value of "your string".  Reports on stdout/stderr.
    bool check() const;
    // Writes the table as a C array initialiser to stdout.
    void print() const;

    unsigned int entry(unsigned int i) const { return crc_table[i & 0xFFu]; }

    // The process-wide table, built on first use (guarded initialisation).
    static const CRC32 &instance();

private:
    unsigned int crc_table[256];
    // slice[k][i]: the register after entry i was shifted through k + 1
    // further zero bytes.
    unsigned int slice[7][256];
};

} // namespace CRC

#endif
