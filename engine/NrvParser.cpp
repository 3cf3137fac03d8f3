// The expression parser: static members of CNrvOperation.
#include <memory>

#include "NrvLiteralOperations.h"
#include "NrvOperationBase.h"
#include "NrvOperationDictionary.h"
#include "NrvParseObserver.h"

namespace {

// A local list of parsing strings that deletes whatever it still holds, on
// every path out of the parser, exceptions included.
class CPieceList {
public:
    CPieceList() = default;
    CPieceList(const CPieceList&) = delete;
    CPieceList& operator=(const CPieceList&) = delete;
    ~CPieceList()
    {
        while (m_List.GetCount() > 0) {
            void* pData = nullptr;
            if (m_List.RemoveHead(&pData) >= 0)
                delete static_cast<CNrvParsingString*>(pData);
        }
    }
    CNrvList* Get() { return &m_List; }
    // Takes the first piece out; the caller owns it.
    NRVRESULT TakeHead(std::unique_ptr<CNrvParsingString>& piece)
    {
        void* pData = nullptr;
        const NRVRESULT result = m_List.RemoveHead(&pData);
        if (result >= 0)
            piece.reset(static_cast<CNrvParsingString*>(pData));
        return result;
    }

private:
    CNrvList m_List;
};

// Appends an object to a list that then owns it; on failure the object is
// deleted here, so that nothing leaks whichever way the append ends.
template <class T>
NRVRESULT AppendOwned(CNrvList* pList, std::unique_ptr<T>& object)
{
    const NRVRESULT result = pList->AddTail(object.get());
    if (result >= 0)
        object.release();
    return result;
}

}  // namespace

bool CNrvOperation::IsCommand(CNrvParsingString* pParsingString)
{
    return pParsingString != nullptr && pParsingString->GetFlag() == kFlagCommand;
}

NRVRESULT CNrvOperation::Parse(CNrvDataEditingProfile* pDataEditing, CNrvOperationDictionary* pDictionary,
                               char cOpen, char cClose, CNrvParsingString* pParsingString,
                               CNrvList* pOperationsList)
{
    return ParseNested(pDataEditing, pDictionary, cOpen, cClose, pParsingString, pOperationsList, 0, nullptr);
}

NRVRESULT CNrvOperation::Parse(CNrvDataEditingProfile* pDataEditing, CNrvOperationDictionary* pDictionary,
                               char cOpen, char cClose, CNrvParsingString* pParsingString,
                               CNrvList* pOperationsList, CNrvParseObserver* pObserver)
{
    return ParseNested(pDataEditing, pDictionary, cOpen, cClose, pParsingString, pOperationsList, 0, pObserver);
}

NRVRESULT CNrvOperation::ParseNested(CNrvDataEditingProfile* pDataEditing, CNrvOperationDictionary* pDictionary,
                                     char cOpen, char cClose, CNrvParsingString* pParsingString,
                                     CNrvList* pOperationsList, size_t nDepth, CNrvParseObserver* pObserver)
{
    if (pParsingString == nullptr || pOperationsList == nullptr)
        return NRV_ERR_INVALID_PARAMETER;
    pParsingString->DbgFormatDump(false, "About to split the string:%s");
    if (pParsingString->IsEmpty()) {
        std::unique_ptr<CNrvOperation> literal(new CNrvOperationString(pDataEditing, pParsingString));
        CNrvOperation* const pLiteral = literal.get();
        const NRVRESULT appended = AppendOwned(pOperationsList, literal);
        if (pObserver != nullptr && appended >= 0)
            pObserver->OnLiteral(pLiteral, *pParsingString, nDepth);
        return appended;
    }

    CPieceList pieces;
    NRVRESULT result = Split(cOpen, cClose, pParsingString, pieces.Get(), pObserver);
    while (result >= 0 && pieces.Get()->GetCount() > 0) {
        std::unique_ptr<CNrvParsingString> piece;
        result = pieces.TakeHead(piece);
        if (result < 0)
            break;
        piece->DbgFormatDump(false, "Parsing String:%s");

        if (!IsCommand(piece.get())) {
            piece->DbgFormatDump(false, "The string %s is not a command so try to create a String or Integer operation");
            std::unique_ptr<CNrvOperation> literal(piece->IsNumber()
                                                       ? new CNrvOperationInteger(pDataEditing, piece.get())
                                                       : new CNrvOperationString(pDataEditing, piece.get()));
            CNrvOperation* const pLiteral = literal.get();
            result = AppendOwned(pOperationsList, literal);
            if (pObserver != nullptr && result >= 0)
                pObserver->OnLiteral(pLiteral, *piece, nDepth);
            continue;
        }

        piece->DbgFormatDump(false, "The string %s is a command so look it up");
        if (nDepth >= kNrvMaximumNestingDepth) {
            piece->DbgFormatDump(true, "Commands nested too deeply at:%s");
            result = NRV_ERR_SYNTAX;
            if (pObserver != nullptr)
                pObserver->OnFailure(result, *piece, nullptr, true);
            break;
        }
        CNrvOperation* pNewOperation = nullptr;
        CNrvParsingString* pNewParameters = nullptr;
        result = LookupCommand(pDictionary, pDataEditing, piece.get(), cOpen, cClose, &pNewOperation, &pNewParameters,
                               pObserver);
        if (result < 0)
            break;
        std::unique_ptr<CNrvParsingString> parameters(pNewParameters);
        std::unique_ptr<CNrvOperation> command(pNewOperation);
        // Appended before its parameters are parsed, so a partial tree always
        // belongs to its owner.
        result = AppendOwned(pOperationsList, command);
        if (pObserver != nullptr && result >= 0)
            pObserver->OnCommand(pNewOperation, nDepth);
        if (result < 0 || parameters->IsEmpty())
            continue;

        parameters->DbgFormatDump(false, "This command has some operations:%s");
        CPieceList parameterTexts;
        result = SplitInParametersIfNecessary(parameters.get(), cOpen, cClose, parameterTexts.Get());
        while (result >= 0 && parameterTexts.Get()->GetCount() > 0) {
            std::unique_ptr<CNrvParsingString> parameterText;
            result = parameterTexts.TakeHead(parameterText);
            if (pObserver != nullptr && result >= 0)
                pObserver->OnParameter(pNewOperation, *parameterText);
            if (result >= 0)
                result = ParseNested(pDataEditing, pDictionary, cOpen, cClose, parameterText.get(),
                                     pNewOperation->GetOperationsList(), nDepth + 1, pObserver);
        }
        if (result >= 0 && !pNewOperation->CheckIfParametersAreCorrect()) {
            result = NRV_ERR_INVALID_PARAMETER;
            piece->DbgFormatDump(true, "Parameters incorrect for:%s");
            if (pObserver != nullptr)
                pObserver->OnFailure(result, *piece, pNewOperation, false);
        }
    }
    return result;
}

NRVRESULT CNrvOperation::Split(char cStart, char cEnd, CNrvParsingString* pString, CNrvList* pParsingStringsList)
{
    return Split(cStart, cEnd, pString, pParsingStringsList, nullptr);
}

NRVRESULT CNrvOperation::Split(char cStart, char cEnd, CNrvParsingString* pString, CNrvList* pParsingStringsList,
                               CNrvParseObserver* pObserver)
{
    const char szPair[] = {cStart, cEnd, '\0'};
    CNrvParsingString pair(szPair);
    if (pString == nullptr || pString->GetLength() == 0 || pParsingStringsList == nullptr)
        return NRV_ERR_INVALID_PARAMETER;

    CNrvParsingString copy(*pString);
    copy.SetFlag(pString->GetFlag());
    NRVRESULT result = NRV_OK;
    while (result >= 0 && !copy.IsEmpty()) {
        std::unique_ptr<CNrvParsingString> run(new CNrvParsingString(copy.ExtractBefore(cStart)));
        if (!run->IsEmpty()) {
            run->SetFlag(kFlagNotCommand);
            run->DbgFormatDump(false, "Adding(1) in the parsing list: %s");
            CNrvParsingString* pRun = run.get();
            result = AppendOwned(pParsingStringsList, run);
            if (result < 0) {
                pRun->DbgFormatDump(false, "Adding(2) in the parsing list: %s");
                break;  // run still owns the piece and frees it
            }
        }
        if (copy.IsEmpty())
            break;

        std::unique_ptr<CNrvParsingString> piece(new CNrvParsingString(copy.Extract(cStart, cEnd)));
        if (!copy.IsEmpty()) {
            piece->DbgFormatDump(false, "This new parsing string starts with a command: %s");
            piece->SetFlag(kFlagCommand);
        } else if (piece->Find(cStart) != -1 || piece->Find(cEnd) != -1) {
            result = NRV_ERR_SYNTAX;
        }
        piece->DbgFormatDump(false, "Adding(2) in the parsing list: %s");
        if (result >= 0)
            result = AppendOwned(pParsingStringsList, piece);
        else if (pObserver != nullptr)
            pObserver->OnFailure(result, *piece, nullptr, false);
        copy.Remove(&pair);  // drops the closing delimiter, keeps a following opening one
    }
    return result;
}

NRVRESULT CNrvOperation::LookupCommand(CNrvOperationDictionary* pDictionary, CNrvDataEditingProfile* pDataEditing,
                                       CNrvParsingString* pCurrentString, char cOpen, char cClose,
                                       CNrvOperation** ppNewOperation, CNrvParsingString** ppNewOperationParsingString)
{
    return LookupCommand(pDictionary, pDataEditing, pCurrentString, cOpen, cClose, ppNewOperation,
                         ppNewOperationParsingString, nullptr);
}

NRVRESULT CNrvOperation::LookupCommand(CNrvOperationDictionary* pDictionary, CNrvDataEditingProfile* pDataEditing,
                                       CNrvParsingString* pCurrentString, char cOpen, char cClose,
                                       CNrvOperation** ppNewOperation, CNrvParsingString** ppNewOperationParsingString,
                                       CNrvParseObserver* pObserver)
{
    if (pDictionary == nullptr || pDataEditing == nullptr || pCurrentString == nullptr || ppNewOperation == nullptr ||
        ppNewOperationParsingString == nullptr)
        return NRV_ERR_INVALID_PARAMETER;
    *ppNewOperation = nullptr;
    *ppNewOperationParsingString = nullptr;

    CNrvParsingString name = pCurrentString->ExtractBefore('(');
    std::unique_ptr<CNrvParsingString> parameters(new CNrvParsingString(pCurrentString->Extract('(', ')')));
    parameters->DbgFormatDump(false, "Inside Parenthesis:%s");
    if (pObserver != nullptr)
        pObserver->OnCall(name, *parameters, *pCurrentString);

    CNrvOperationFactory* pFactory = pDictionary->GetValue(name.GetString(), name.GetLength());
    if (pFactory == nullptr) {
        name.DbgFormatDump(true, "Error unable to find the command:%s");
        if (pObserver != nullptr)
            pObserver->OnFailure(NRV_ERR_UNKNOWN_COMMAND, name, nullptr, false);
        return NRV_ERR_UNKNOWN_COMMAND;
    }
    name.DbgFormatDump(false, "*** command:%s");
    CNrvOperation* pCreated = nullptr;
    NRVRESULT result = pFactory->CreateOperation(pDataEditing, &pCreated);
    std::unique_ptr<CNrvOperation> operation(pCreated);
    if (result >= 0) {
        result = CheckParametersCount(operation.get(), parameters.get(), cOpen, cClose);
        if (pObserver != nullptr && result == NRV_ERR_PARAMETER_COUNT)
            pObserver->OnFailure(result, name, operation.get(), false);
    }
    if (result < 0)
        return result;
    *ppNewOperation = operation.release();
    *ppNewOperationParsingString = parameters.release();
    return NRV_OK;
}

NRVRESULT CNrvOperation::SplitInParametersIfNecessary(CNrvParsingString* pStringInsideParenthesis, char cOpen,
                                                      char cClose, CNrvList* pParsingStringsList)
{
    CNrvParsingString comma(",");
    if (pStringInsideParenthesis == nullptr || pParsingStringsList == nullptr)
        return NRV_ERR_INVALID_PARAMETER;

    CNrvParsingString copy(*pStringInsideParenthesis);
    NRVRESULT result = NRV_OK;
    while (!copy.IsEmpty() && result >= 0) {
        const unsigned char* const pText = reinterpret_cast<const unsigned char*>(copy.GetString());
        const size_t nLength = copy.GetLength();
        size_t nComma = 0;
        long long nDepth = 0;
        for (; nComma < nLength; ++nComma) {
            const unsigned char c = pText[nComma];
            if (c == ',' && nDepth == 0)
                break;
            if (c == static_cast<unsigned char>(cOpen))
                ++nDepth;
            else if (c == static_cast<unsigned char>(cClose) && --nDepth < 0)
                nDepth = 0;
        }
        if (nComma == nLength)
            break;
        std::unique_ptr<CNrvParsingString> parameter(new CNrvParsingString(copy.ExtractBeforeIndex(nComma)));
        result = copy.Remove(&comma);
        if (result >= 0)
            result = AppendOwned(pParsingStringsList, parameter);
        if (result >= 0 && copy.IsEmpty()) {
            // The text ended with a comma: one more, empty, parameter, the
            // empty window just after that comma.
            std::unique_ptr<CNrvParsingString> empty(new CNrvParsingString(copy.ExtractBeforeIndex(0)));
            result = AppendOwned(pParsingStringsList, empty);
        }
    }
    if (!copy.IsEmpty() && result >= 0) {
        std::unique_ptr<CNrvParsingString> last(new CNrvParsingString(copy));
        result = AppendOwned(pParsingStringsList, last);
    }
    return result;
}
