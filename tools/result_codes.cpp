#include "result_codes.h"

#include "NrvDiagnostics.h"

std::string DescribeResult(NRVRESULT result)
{
    const char* pszName = NrvResultCodeName(result);
    const char* pszMeaning = NrvResultCodeMeaning(result);
    return std::string(pszName != nullptr ? pszName : "unknown code") + " (" +
           std::to_string(static_cast<long long>(result)) +
           "): " + (pszMeaning != nullptr ? pszMeaning : "a code the engine does not define");
}
