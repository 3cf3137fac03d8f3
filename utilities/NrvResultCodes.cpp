#include "NrvResultCodes.h"

namespace {

struct SCode {
    NRVRESULT value;
    const char* pszName;
    const char* pszMeaning;
};

const SCode kCodes[] = {
    {NRV_OK, "NRV_OK", "success"},
    {NRV_OK_NOT_TRIGGERED, "NRV_OK_NOT_TRIGGERED", "a trigger condition did not hold, the scan is left alone"},
    {NRV_ERR_INVALID_PARAMETER, "NRV_ERR_INVALID_PARAMETER",
     "a parameter of the wrong kind (text where a number is needed, or the reverse) or an invalid argument"},
    {NRV_ERR_OUT_OF_RANGE, "NRV_ERR_OUT_OF_RANGE",
     "a command's input does not fit what it must do (count or index past the end, empty text)"},
    {NRV_ERR_SYNTAX, "NRV_ERR_SYNTAX", "a '{' or '}' without its partner, or commands nested too deeply"},
    {NRV_ERR_TEXT_LIMIT, "NRV_ERR_TEXT_LIMIT", "a result would be larger than the profile's largest text"},
    {NRV_ERR_WORK_LIMIT, "NRV_ERR_WORK_LIMIT", "the edit used up its work budget"},
    {NRV_ERR_TEXT_TOO_LONG, "NRV_ERR_TEXT_TOO_LONG",
     "a text of 2 GiB or more reached a command whose positions travel in 32 bits"},
    {NRV_ERR_GS1_INVALID, "NRV_ERR_GS1_INVALID", "the text is not a valid GS1 message"},
    {NRV_ERR_UNKNOWN_COMMAND, "NRV_ERR_UNKNOWN_COMMAND", "a name that is not a command"},
    {NRV_ERR_PARAMETER_COUNT, "NRV_ERR_PARAMETER_COUNT",
     "the number of parameters written differs from what the command takes"},
};

const SCode* FindCode(NRVRESULT nCode)
{
    for (const SCode& code : kCodes) {
        if (code.value == nCode)
            return &code;
    }
    return nullptr;
}

}  // namespace

const char* NrvResultCodeName(NRVRESULT nCode)
{
    const SCode* pCode = FindCode(nCode);
    return pCode != nullptr ? pCode->pszName : nullptr;
}

const char* NrvResultCodeMeaning(NRVRESULT nCode)
{
    const SCode* pCode = FindCode(nCode);
    return pCode != nullptr ? pCode->pszMeaning : nullptr;
}

bool NrvResultCodeAt(size_t nIndex, NRVRESULT* pnCode)
{
    if (nIndex >= sizeof kCodes / sizeof kCodes[0])
        return false;
    *pnCode = kCodes[nIndex].value;
    return true;
}

std::string NrvDescribeCode(NRVRESULT nCode)
{
    const char* pszMeaning = NrvResultCodeMeaning(nCode);
    return pszMeaning != nullptr ? pszMeaning : "failed with code " + std::to_string(static_cast<long long>(nCode));
}
