#include "result_codes.h"

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
    {NRV_ERR_UNKNOWN_COMMAND, "NRV_ERR_UNKNOWN_COMMAND", "a name that is not a command"},
    {NRV_ERR_PARAMETER_COUNT, "NRV_ERR_PARAMETER_COUNT",
     "the number of parameters written differs from what the command takes"},
};

}  // namespace

std::string DescribeResult(NRVRESULT result)
{
    const char* pszName = "unknown code";
    const char* pszMeaning = "a code the engine does not define";
    for (const SCode& code : kCodes) {
        if (code.value == result) {
            pszName = code.pszName;
            pszMeaning = code.pszMeaning;
            break;
        }
    }
    return std::string(pszName) + " (" + std::to_string(static_cast<long long>(result)) + "): " + pszMeaning;
}
