// First cut: codes and a sentence per code, the whole expression as the
// range. The parse observation that gives exact ranges, commands and the
// node tree replaces it.
#include "NrvDiagnostics.h"

#include <cstring>

#include "NrvDataEditingProfile.h"

namespace {

const char* SentenceFor(NRVRESULT nCode)
{
    switch (nCode) {
    case NRV_ERR_INVALID_PARAMETER: return "a parameter of the wrong kind";
    case NRV_ERR_OUT_OF_RANGE: return "a command's input does not fit what it must do";
    case NRV_ERR_SYNTAX: return "a '{' or '}' without its partner, or commands nested too deeply";
    case NRV_ERR_UNKNOWN_COMMAND: return "a name that is not a command";
    case NRV_ERR_PARAMETER_COUNT: return "the number of parameters written differs from what the command takes";
    default: return nCode < 0 ? "the expression failed" : "";
    }
}

TNrvDiagnostic Describe(NRVRESULT nCode, const char* pszExpression)
{
    TNrvDiagnostic diagnostic;
    diagnostic.nCode = nCode;
    if (nCode < 0) {
        diagnostic.nLength = pszExpression != nullptr ? strlen(pszExpression) : 0;
        diagnostic.message = SentenceFor(nCode);
    }
    return diagnostic;
}

}  // namespace

TNrvDiagnostic NrvDiagnoseParse(const char* pszExpression)
{
    CNrvDataEditingProfile profile;
    return Describe(profile.Parse(pszExpression), pszExpression);
}

TNrvExplanation NrvExplain(const char* pszExpression, const char* pData, size_t nLength)
{
    TNrvExplanation explanation;
    CNrvDataEditingProfile profile;
    explanation.nCode = profile.Parse(pszExpression);
    if (explanation.nCode >= 0) {
        TNrvScanDecodedData record = {kNrvScanSymbologyNotSpecified, {0, nullptr},
                                      {nLength, const_cast<char*>(pData)}};
        explanation.nCode = profile.Edit(&record);
        if (explanation.nCode >= 0)
            explanation.output.assign(record.String.pValue, record.String.nLength);
    }
    explanation.failure = Describe(explanation.nCode, pszExpression);
    return explanation;
}
