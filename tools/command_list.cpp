#include "command_list.h"

#include <cstdio>
#include <memory>
#include <string>

#include "NrvDataEditingProfile.h"
#include "NrvOperation.h"

namespace {

// The dictionary resolves names but cannot be walked, so the names are
// listed here, in the dictionary's own order.
const char* const kCommandNames[] = {
    "DecodedData",        "TruncateFromBeginning",
    "TruncateFromEnd",    "Replace",
    "Substitute",         "EscapeCharacter",
    "InsertAfterIndex",   "InsertBeforeIndex",
    "FindFirstFromIndex", "FindLastFromIndex",
    "MakeUpperCase",      "MakeLowerCase",
    "ReplaceNonPrintableCharacters", "DecodedDataWithoutTrailer",
    "TruncateAfterIndex", "TruncateBeforeIndex",
    "Substring",          "Extract",
};

const char* ResultKind(int nType)
{
    switch (nType) {
    case CNrvOperationResult::typeString: return "text";
    case CNrvOperationResult::typeInt: return "index";
    case CNrvOperationResult::typeStringOrInt: return "text or index";
    default: return "?";
    }
}

// "{Name(p1,p2,...)}" with every parameter an integer literal except the one
// at nTextAt, which is a plain text.
std::string TrialExpression(const char* pszName, size_t nCount, size_t nTextAt)
{
    std::string expression = std::string("{") + pszName + "(";
    for (size_t i = 0; i < nCount; ++i) {
        if (i != 0)
            expression += ',';
        expression += i == nTextAt ? "a" : "1";
    }
    return expression + ")}";
}

// The engine does not publish what each parameter position takes, so ask
// the parser: an integer literal fits every position, and a plain text is
// refused with NRV_ERR_INVALID_PARAMETER exactly where a number is needed.
// Asking, rather than keeping a table here, keeps the list true to the
// library it is linked with.
bool DescribeParameters(const char* pszName, size_t nCount, std::string* pKinds)
{
    CNrvDataEditingProfile profile;
    if (profile.Parse(TrialExpression(pszName, nCount, nCount).c_str()) < 0)
        return false;
    for (size_t i = 0; i < nCount; ++i) {
        const NRVRESULT result = profile.Parse(TrialExpression(pszName, nCount, i).c_str());
        if (result < 0 && result != NRV_ERR_INVALID_PARAMETER)
            return false;
        if (i != 0)
            *pKinds += ", ";
        *pKinds += result < 0 ? "index" : "text";
    }
    return true;
}

}  // namespace

bool PrintCommandList()
{
    CNrvOperationDictionary* pDictionary = CNrvOperationDictionary::GetLibraryDictionary();
    CNrvDataEditingProfile profile;  // only to make operations with
    bool bAllDescribed = true;
    for (const char* pszName : kCommandNames) {
        CNrvOperationFactory* pFactory = pDictionary->GetValue(pszName, std::char_traits<char>::length(pszName));
        CNrvOperation* pCreated = nullptr;
        if (pFactory == nullptr || pFactory->CreateOperation(&profile, &pCreated) < 0 || pCreated == nullptr) {
            fprintf(stderr, "nrv-edit: the library has no command %s\n", pszName);
            bAllDescribed = false;
            continue;
        }
        std::unique_ptr<CNrvOperation> operation(pCreated);
        std::string kinds;
        if (!DescribeParameters(pszName, operation->GetParameterCount(), &kinds)) {
            fprintf(stderr, "nrv-edit: cannot describe the parameters of %s\n", pszName);
            bAllDescribed = false;
            continue;
        }
        const std::string signature = std::string(pszName) + "(" + kinds + ")";
        printf("%-50s -> %s\n", signature.c_str(), ResultKind(operation->GetResultType()));
    }
    return bAllDescribed;
}
