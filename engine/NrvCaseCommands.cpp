#include "NrvCaseCommands.h"

#include <cctype>
#include <cstdint>
#include <cstring>
#include <memory>

namespace {

// Rewrites each byte below 0x80 as the C library's toupper (bUpper) or
// tolower does in the calling thread's locale. Bytes from 0x80 up may be
// pieces of multi-byte characters and are copied as they are; they are also
// outside what toupper/tolower are defined for when read as signed chars.
template <bool bUpper>
NRVRESULT WriteConvertedCase(const char* pszText, size_t nLength, CNrvOperationResult& Result)
{
#if defined(__GLIBC__)
    // glibc's toupper and tolower are a look-up in the calling thread's
    // locale table, which <ctype.h> exposes: fetched once per run here
    // instead of one call per byte, with the same bytes as the result.
    const int32_t* const pTable = bUpper ? *__ctype_toupper_loc() : *__ctype_tolower_loc();
    auto Convert = [pTable](unsigned char c) { return pTable[c]; };
#else
    auto Convert = [](unsigned char c) { return bUpper ? toupper(c) : tolower(c); };
#endif
    // Held by a smart pointer so that it is released if WriteResult throws.
    std::unique_ptr<char[]> pszResult(new char[nLength + 1]);
    auto ConvertByte = [&](size_t i) {
        const unsigned char c = static_cast<unsigned char>(pszText[i]);
        pszResult[i] = c < 0x80 ? static_cast<char>(Convert(c)) : pszText[i];
    };
    size_t i = 0;
    // Scans are mostly ASCII: eight bytes without a high bit are converted
    // without testing each one, which halves the instructions per byte.
    for (; nLength - i >= 8; i += 8) {
        uint64_t nWord;
        memcpy(&nWord, pszText + i, sizeof nWord);
        if ((nWord & 0x8080808080808080ULL) != 0) {
            for (size_t j = i; j < i + 8; ++j)
                ConvertByte(j);
            continue;
        }
        // Written out: at -O2 a loop here keeps its per-byte test and step.
        char* const pOut = pszResult.get() + i;
        const unsigned char* const pIn = reinterpret_cast<const unsigned char*>(pszText + i);
        pOut[0] = static_cast<char>(Convert(pIn[0]));
        pOut[1] = static_cast<char>(Convert(pIn[1]));
        pOut[2] = static_cast<char>(Convert(pIn[2]));
        pOut[3] = static_cast<char>(Convert(pIn[3]));
        pOut[4] = static_cast<char>(Convert(pIn[4]));
        pOut[5] = static_cast<char>(Convert(pIn[5]));
        pOut[6] = static_cast<char>(Convert(pIn[6]));
        pOut[7] = static_cast<char>(Convert(pIn[7]));
    }
    for (; i < nLength; ++i)
        ConvertByte(i);
    pszResult[nLength] = '\0';
    return Result.WriteResult(pszResult.get(), nLength);
}

// Below 32 when read as a signed byte: the controls and 0x80..0xFF.
bool IsNonPrintable(char c)
{
    return static_cast<signed char>(c) < 32;
}

}  // namespace

NRVRESULT CNrvOperationMakeCase::Compute(CNrvOperationResult& Result, CNrvOperationResult& Text) const
{
    const char* pszText = TextOf(Text);
    const size_t nLength = Text.GetResultStringLength();
    return Variant() == kUpper ? WriteConvertedCase<true>(pszText, nLength, Result)
                               : WriteConvertedCase<false>(pszText, nLength, Result);
}

NRVRESULT CNrvOperationReplaceNonPrintableCharacters::Compute(CNrvOperationResult& Result, CNrvOperationResult& Text,
                                                              CNrvOperationResult& Replacement) const
{
    const char* pszText = TextOf(Text);
    const size_t nText = Text.GetResultStringLength();
    const char* pszReplacement = TextOf(Replacement);
    const size_t nReplacement = Replacement.GetResultStringLength();

    // First pass sizes the result exactly, so the buffer is taken once.
    size_t nNonPrintable = 0;
    for (size_t i = 0; i < nText; ++i) {
        if (IsNonPrintable(pszText[i]))
            ++nNonPrintable;
    }
    const size_t nNewSize = (nText - nNonPrintable) + nNonPrintable * nReplacement;
    const NRVRESULT limits = CheckLimits(nNewSize, nText + nNewSize);
    if (limits < 0)
        return limits;
    std::unique_ptr<char[]> pszResult(new char[nNewSize + 1]);
    size_t index = 0;
    for (size_t i = 0; i < nText; ++i) {
        if (!IsNonPrintable(pszText[i])) {
            pszResult[index++] = pszText[i];
        } else if (nReplacement != 0) {
            memcpy(pszResult.get() + index, pszReplacement, nReplacement);
            index += nReplacement;
        }
    }
    pszResult[nNewSize] = '\0';
    return Result.WriteResult(pszResult.get(), nNewSize);
}
