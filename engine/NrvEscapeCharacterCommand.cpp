#include "NrvEscapeCharacterCommand.h"

#include <memory>

#include "NrvEscapes.h"

namespace {

// Shifts the working byte one digit up, keeping only its low 8 bits. Done on
// the unsigned form: shifting a negative signed value is not portable.
signed char ShiftDigitUp(signed char cWork)
{
    return static_cast<signed char>((static_cast<unsigned char>(cWork) << 4) & 0xFF);
}

}  // namespace

NRVRESULT CNrvOperationEscapeCharacter::Compute(CNrvOperationResult& Result, CNrvOperationResult& Hex) const
{
    const char* pszEscapeHexa = Hex.GetResultString();
    const size_t size = Hex.GetResultStringLength();
    if (pszEscapeHexa == nullptr || size == 0)
        return NRV_ERR_OUT_OF_RANGE;

    // Every byte stored but the last completes a pair of input bytes, and the
    // last may be a lone digit: at most size / 2 + 1 bytes come out. One more
    // byte holds a closing zero.
    const size_t maxSize = size / 2 + 1;
    NRVRESULT limits = CheckLimits(0, size);
    if (limits < 0)
        return limits;
    std::unique_ptr<char[]> pszResult(new char[maxSize + 1]);
    signed char cResult = 0;  // the byte being assembled
    int count = 0;            // digits gathered into it since it was stored
    size_t index = 0;
    for (size_t i = 0; i < size; ++i) {
        cResult = ShiftDigitUp(cResult);
        const int nDigit = NrvHexDigitValue(pszEscapeHexa[i]);
        if (nDigit >= 0) {
            // The low half is 0 after the shift, so this cannot carry.
            cResult = static_cast<signed char>(static_cast<unsigned char>(cResult) | nDigit);
            ++count;
        } else {
            // A separator resets the pair but keeps the shifted byte, so a
            // lone digit before it moves into the high half.
            count = 0;
        }
        if (count == 2) {
            pszResult[index++] = static_cast<char>(cResult);
            cResult = 0;
            count = 0;
        }
    }
    // What is left over is kept only when positive as a signed byte: a lone
    // digit, or a lone 1..7 that one separator moved into the high half.
    if (cResult > 0)
        pszResult[index++] = static_cast<char>(cResult);
    pszResult[index] = '\0';
    limits = CheckLimits(index, index);
    if (limits < 0)
        return limits;
    return Result.WriteResult(pszResult.get(), index);
}

std::string CNrvOperationEscapeCharacter::DescribeFailure(NRVRESULT, CNrvOperationResult*) const
{
    return "hex is empty: there are no digits to turn into bytes";
}
