#include "NrvDecodedDataCommands.h"

#include "NrvDataEditingProfile.h"

namespace {

// Trailer bytes are those below 32 read as signed: controls and 0x80..0xFF.
bool IsTrailerByte(char c)
{
    return static_cast<signed char>(c) < 32;
}

}  // namespace

NRVRESULT CNrvOperationDecodedData::Compute(CNrvOperationResult& Result) const
{
    const char* pszData = m_pDataEditing->GetOriginalDecodedData();
    const size_t nLength = m_pDataEditing->GetOriginalDecodedDataLength();
    size_t nKept = nLength;
    // Data made only of trailer bytes, or none at all, keeps nothing.
    if (Variant() == kWithoutTrailer) {
        while (nKept > 0 && IsTrailerByte(pszData[nKept - 1]))
            --nKept;
    }
    const NRVRESULT limits = CheckLimits(nKept, nLength);
    if (limits < 0)
        return limits;
    return Result.WriteResult(pszData, nKept);
}
