#include "NrvGs1Commands.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include "NrvEscapes.h"
#include "NrvGs1.h"

namespace {

// The most of a culprit's bytes a sentence shows.
constexpr size_t kShownCulprit = 32;

bool IsScan(const char* pText, size_t nLength, const CNrvDataEditingProfile* pProfile)
{
    return pProfile != nullptr && pProfile->GetOriginalDecodedDataLength() == nLength &&
           (nLength == 0 || memcmp(pProfile->GetOriginalDecodedData(), pText, nLength) == 0);
}

}  // namespace

std::string NrvDescribeGs1Fault(const char* pText, size_t nLength, const CNrvDataEditingProfile* pProfile)
{
    TNrvGs1Fault fault;
    if (NrvGs1IsValid(pText, nLength, &fault))
        return std::string();
    const bool bScan = IsScan(pText, nLength, pProfile);
    std::string sentence = fault.szMessage;
    sentence += fault.nLength > 1 ? ", at bytes " + std::to_string(fault.nOffset) + " to " +
                                        std::to_string(fault.nOffset + fault.nLength - 1)
                                  : ", at byte " + std::to_string(fault.nOffset);
    sentence += bScan ? " of the scan" : " of the text";
    if (bScan && fault.nLength != 0) {
        sentence += ": \"";
        NrvAppendEscaped(pText + fault.nOffset, std::min(fault.nLength, kShownCulprit), &sentence);
        sentence += fault.nLength > kShownCulprit ? "\"..." : "\"";
    }
    return sentence;
}

NRVRESULT CNrvOperationGS1Element::Compute(CNrvOperationResult& Result, CNrvOperationResult& Text,
                                           CNrvOperationResult& Ai) const
{
    const char* pAi = TextOf(Ai);
    const size_t nAi = Ai.GetResultStringLength();
    if (NrvGs1LookupAi(pAi, nAi) == nullptr)
        return NRV_ERR_OUT_OF_RANGE;
    const char* pText = TextOf(Text);
    const size_t nLength = Text.GetResultStringLength();
    NRVRESULT result = CheckLimits(0, NrvGs1ReadWork(nLength));
    if (result < 0)
        return result;
    TNrvGs1Element found;
    if (!NrvGs1FindElement(pText, nLength, pAi, nAi, &found, nullptr))
        return NRV_ERR_GS1_INVALID;
    const size_t nData = found.pEntry != nullptr ? found.nDataLength : 0;
    result = CheckLimits(nData, nData);
    if (result < 0)
        return result;
    return Result.WriteResult(pText + (found.pEntry != nullptr ? found.nDataOffset : 0), nData);
}

std::string CNrvOperationGS1Element::DescribeFailure(NRVRESULT nCode, CNrvOperationResult* pParameters) const
{
    if (nCode == NRV_ERR_GS1_INVALID)
        return NrvDescribeGs1Fault(TextOf(pParameters[0]), pParameters[0].GetResultStringLength(), m_pDataEditing);
    if (nCode != NRV_ERR_OUT_OF_RANGE)
        return CNrvCommandOperation::DescribeFailure(nCode, pParameters);
    std::string ai;
    NrvAppendEscaped(TextOf(pParameters[1]), pParameters[1].GetResultStringLength(), &ai);
    std::string sentence = "ai \"" + ai + "\" is not an AI of GS1";
    if (ai.find(' ') != std::string::npos)
        sentence += " (a space after a comma is part of the parameter)";
    return sentence + "; write its digits, such as 01 or 3103";
}

NRVRESULT CNrvOperationGS1HumanReadable::Compute(CNrvOperationResult& Result, CNrvOperationResult& Text) const
{
    const char* pText = TextOf(Text);
    const size_t nLength = Text.GetResultStringLength();
    NRVRESULT result = CheckLimits(0, NrvGs1ReadWork(nLength));
    if (result < 0)
        return result;
    std::unique_ptr<char[]> out(new char[NrvGs1HumanReadableCapacity(nLength) + 1]);
    size_t nOut = 0;
    if (!NrvGs1WriteHumanReadable(pText, nLength, out.get(), &nOut, nullptr))
        return NRV_ERR_GS1_INVALID;
    result = CheckLimits(nOut, nOut);
    if (result < 0)
        return result;
    return Result.WriteResult(out.get(), nOut);
}

std::string CNrvOperationGS1HumanReadable::DescribeFailure(NRVRESULT nCode, CNrvOperationResult* pParameters) const
{
    if (nCode != NRV_ERR_GS1_INVALID)
        return CNrvCommandOperation::DescribeFailure(nCode, pParameters);
    return NrvDescribeGs1Fault(TextOf(pParameters[0]), pParameters[0].GetResultStringLength(), m_pDataEditing);
}
