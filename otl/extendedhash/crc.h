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
#include <cstdint>

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
    // The value of len bytes, taken as unsigned: eight bytes at a time
    // through derived tables, the last one to seven in one step as well (the
    // same value as byte by byte).  A lookup waits on this before it can
    // touch any slot.
    unsigned int crc(const char *text, size_t len) const {
        unsigned int c = START;
        (void)walk<false>(text, len, &c);
        return c;
    }

    // The value of the upper-case form of an ASCII text, each letter a-z
    // taken as A-Z, computed from the text as it stands; false, with *pCrc
    // untouched, when a byte is not ASCII.  Reading the caller's text
    // straight away, rather than a folded copy just written, lets a lookup
    // go ahead while the one before it still waits for memory: a load that
    // spans several recent stores must wait until they are retired.
    bool crcUpperAscii(const char *text, size_t len, unsigned int *pCrc) const {
        unsigned int c = START;
        if (!walk<true>(text, len, &c)) return false;
        *pCrc = c;
        return true;
    }

    // The ASCII letters a-z of eight bytes, all below 0x80, as A-Z: a byte
    // plus 0x1F reaches 0x80 from 'a' on, plus 0x05 from '{' on, and never
    // carries into the next byte.
    static uint64_t upperAscii8(uint64_t x) {
        constexpr uint64_t kOnes = 0x0101010101010101ull, kHigh = 0x8080808080808080ull;
        return x ^ ((((x + 0x1F * kOnes) & ~(x + 0x05 * kOnes)) & kHigh) >> 2);
    }
    static constexpr uint64_t HIGH_BITS = 0x8080808080808080ull;
    // One character as upperAscii8 takes it.
    static char upperAscii(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 0x20) : c; }

    // Self-test of the table: every bit position set in exactly half of the
    // entries, and the known value of "your string".  Reports on stdout/stderr.
    bool check() const;
    // Writes the table as a C array initialiser to stdout.
    void print() const;

    unsigned int entry(unsigned int i) const { return crc_table[i & 0xFFu]; }

    // The process-wide table, built on first use (guarded initialisation).
    static const CRC32 &instance();

private:
    // The table for a byte followed by `after` more bytes of the same step.
    const unsigned int *stepTable(unsigned after) const { return after ? slice[after - 1] : crc_table; }
    // Eight bytes of a text, in text order from the lowest byte up.
    static uint64_t load8(const unsigned char *p) {
        uint64_t w;
        __builtin_memcpy(&w, p, 8);
        if constexpr (__BYTE_ORDER__ == __ORDER_BIG_ENDIAN__) w = __builtin_bswap64(w);
        return w;
    }

    // Walks len bytes into the register *pC; with UPPER, as their ASCII
    // upper-case form, answering false at a byte that is not ASCII.
    template <bool UPPER>
    bool walk(const char *text, size_t len, unsigned int *pC) const {
        const unsigned char *p = reinterpret_cast<const unsigned char *>(text);
        unsigned int c = *pC;
        const size_t whole = len & ~size_t(7);
        for (size_t i = 0; i < whole; i += 8) {
            uint64_t w = load8(p + i);
            if (UPPER) {
                if (w & HIGH_BITS) return false;
                w = upperAscii8(w);
            }
            const unsigned int lo = static_cast<unsigned int>(w) ^ c, hi = static_cast<unsigned int>(w >> 32);
            c = slice[6][lo & 0xFFu] ^ slice[5][(lo >> 8) & 0xFFu] ^ slice[4][(lo >> 16) & 0xFFu] ^
                slice[3][lo >> 24] ^ slice[2][hi & 0xFFu] ^ slice[1][(hi >> 8) & 0xFFu] ^
                slice[0][(hi >> 16) & 0xFFu] ^ crc_table[hi >> 24];
        }
        const size_t rest = len - whole;
        if (rest) {
            // The last bytes as one word, the first of them lowest: from the
            // eight bytes that end the text when there are that many, else
            // byte by byte.
            uint64_t w = 0;
            if (len >= 8) {
                w = load8(p + len - 8) >> (8 * (8 - rest));
            } else {
                for (size_t j = 0; j < rest; ++j) w |= uint64_t(p[j]) << (8 * j);
            }
            if (UPPER) {
                if (w & HIGH_BITS) return false;
                w = upperAscii8(w);
            }
            switch (rest) {
            case 7: c = tail<7>(w, c); break;
            case 6: c = tail<6>(w, c); break;
            case 5: c = tail<5>(w, c); break;
            case 4: c = tail<4>(w, c); break;
            case 3: c = tail<3>(w, c); break;
            case 2: c = tail<2>(w, c); break;
            default: c = tail<1>(w, c); break;
            }
        }
        *pC = c;
        return true;
    }

    // N (1 to 7) last bytes, the first lowest in w, folded into the
    // register c: each byte's table is the one for the number of bytes that
    // follow it.
    template <unsigned N>
    unsigned int tail(uint64_t w, unsigned int c) const {
        // Bytes within the register's reach take their part of it; beyond
        // four bytes the register has been used up.
        unsigned int out = N < 4 ? c >> (8 * N) : 0;
        for (unsigned j = 0; j < N; ++j) {
            unsigned int b = static_cast<unsigned int>(w >> (8 * j)) & 0xFFu;
            if (j < 4) b ^= (c >> (8 * j)) & 0xFFu;
            out ^= stepTable(N - 1 - j)[b];
        }
        return out;
    }

    unsigned int crc_table[256];
    // slice[k][i]: the register after entry i was shifted through k + 1
    // further zero bytes.
    unsigned int slice[7][256];
};

} // namespace CRC

#endif
