#ifndef NRV_BENCH_SCANS_H
#define NRV_BENCH_SCANS_H

#include <cstddef>
#include <string>

namespace nrvbench {

// The scans the typical edits run over (embedded, deterministic).
const std::string& Ean13();         // 13 bytes
const std::string& Industrial();    // 44 bytes, 0x1D separators, CR LF
const std::string& IdentityCard();  // 400 bytes, line feeds
const std::string& QrPayload();     // 2,953 bytes

// A deterministic scan of n bytes for the growth curves: letters, digits,
// blanks and punctuation with a group separator every 16 bytes. It never
// holds '~', '^' or a zero byte, so searches for those run to the end.
inline std::string GrowthScan(size_t n)
{
    static const char kAlphabet[] = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz-/. ";
    std::string s(n, ' ');
    unsigned int seed = 12345;
    for (size_t i = 0; i < n; ++i) {
        seed = seed * 1103515245u + 12345u;
        s[i] = (i % 16 == 15) ? '\x1d' : kAlphabet[(seed >> 16) % (sizeof kAlphabet - 1)];
    }
    return s;
}

// n hexadecimal digits, the input of EscapeCharacter.
inline std::string GrowthHexScan(size_t n)
{
    static const char kDigits[] = "0123456789ABCDEF";
    std::string s(n, '0');
    for (size_t i = 0; i < n; ++i)
        s[i] = kDigits[(i * 7 + 3) % 16];
    return s;
}

// A valid GS1 message of n bytes (3 or more) for the GS1 commands' curves:
// batch/lot elements (AI 10) of up to 18 characters, each ended by a group
// separator, so the reader checks every byte and AI 21 is never found.
inline std::string GrowthGs1Scan(size_t n)
{
    std::string s;
    while (n - s.size() >= 24)
        s += "10ABCDEFGHIJKLMNOPQR\x1d";
    if (n - s.size() == 23)
        s += "10A\x1d";
    s += "10" + std::string(n - s.size() - 2, 'Z');
    return s;
}

}  // namespace nrvbench

#endif  // NRV_BENCH_SCANS_H
