#ifndef NRV_OPERATION_BASE_H
#define NRV_OPERATION_BASE_H

#include <cstddef>
#include <cstdint>

#include "NrvCommandTable.h"
#include "NrvDataEditingProfile.h"
#include "NrvList.h"
#include "NrvOperationResult.h"
#include "NrvParsingString.h"

class CNrvOperationDictionary;
class CNrvParseObserver;

// Deepest nesting of delimited commands an expression may have; it bounds
// the recursion of both Parse and Run.
constexpr size_t kNrvMaximumNestingDepth = 100;

// A node of an expression tree: a command or a literal. A node owns the
// operations in its parameter list and deletes them with itself.
class CNrvOperation {
public:
    enum { kFlagCommand = 1, kFlagNotCommand = 2 };

    CNrvOperation(const CNrvOperation&) = delete;
    CNrvOperation& operator=(const CNrvOperation&) = delete;
    virtual ~CNrvOperation();

    virtual size_t GetParameterCount() const { return 0; }
    virtual bool CheckIfParametersAreCorrect() const = 0;
    // Evaluates the node into Result. On failure returns the first negative
    // code met and leaves Result as it was.
    virtual NRVRESULT Run(CNrvOperationResult& Result) const = 0;
    virtual int GetResultType() const = 0;

    bool CanResultBeAString() const;
    bool CanResultBeAnInteger() const;
    CNrvList* GetOperationsList() { return &m_OperationsList; }

    // Counts the parameters written in a command's parameter text (commas
    // at depth 0; only the delimiter pair nests) and compares the count with
    // the command's GetParameterCount().
    static NRVRESULT CheckParametersCount(CNrvOperation* pOperation, CNrvParsingString* pOperationParameter,
                                          char cOpen, char cClose);
    // The count that check compares: how many parameters the text holds.
    static size_t CountWrittenParameters(const CNrvParsingString& Parameters, char cOpen, char cClose);

    // The expression parser: appends one operation per top-level literal run
    // or delimited command of the text to pOperationsList.
    static NRVRESULT Parse(CNrvDataEditingProfile* pDataEditing, CNrvOperationDictionary* pDictionary, char cOpen,
                           char cClose, CNrvParsingString* pParsingString, CNrvList* pOperationsList);
    // The same parse, telling pObserver (when not null) what it makes and
    // where it stops, for the diagnostics that explain an expression.
    static NRVRESULT Parse(CNrvDataEditingProfile* pDataEditing, CNrvOperationDictionary* pDictionary, char cOpen,
                           char cClose, CNrvParsingString* pParsingString, CNrvList* pOperationsList,
                           CNrvParseObserver* pObserver);
    // Cuts a text into literal runs and delimited command pieces.
    static NRVRESULT Split(char cStart, char cEnd, CNrvParsingString* pString, CNrvList* pParsingStringsList);
    static bool IsCommand(CNrvParsingString* pParsingString);
    // Resolves a command piece to a new operation and its parameter text.
    static NRVRESULT LookupCommand(CNrvOperationDictionary* pDictionary, CNrvDataEditingProfile* pDataEditing,
                                   CNrvParsingString* pCurrentString, char cOpen, char cClose,
                                   CNrvOperation** ppNewOperation, CNrvParsingString** ppNewOperationParsingString);

protected:
    explicit CNrvOperation(CNrvDataEditingProfile* pDataEditing);

    // Cuts a parameter text at its commas outside every delimiter pair.
    static NRVRESULT SplitInParametersIfNecessary(CNrvParsingString* pStringInsideParenthesis, char cOpen,
                                                  char cClose, CNrvList* pParsingStringsList);

    // Runs the parameters in order into pResults[0..nCount). Stops at the
    // first failure and returns it; otherwise the last parameter's code.
    NRVRESULT RunParameters(CNrvOperationResult* pResults, size_t nCount) const;
    // A parameter's text, never null: a record without text reads as the
    // empty text, so searches and copies never see a null pointer.
    static const char* TextOf(CNrvOperationResult& Value);

    // Called before a command allocates a result or searches: NRV_OK, or the
    // code of the profile's limit that the step would pass (see
    // CNrvDataEditingProfile::WriteLimitMaximumTextSize). Without limits,
    // the lengths are not even read.
    NRVRESULT CheckLimits(size_t nResultSize, size_t nWork) const
    {
        return LimitsSet() ? m_pDataEditing->ChargeWork(nResultSize, nWork) : NRV_OK;
    }
    // A search of nSearch bytes through nText bytes (or a test of each byte
    // of the text against a set of nSearch bytes), charged a bound of its
    // worst case.
    NRVRESULT CheckSearchLimits(size_t nText, size_t nSearch) const
    {
        return LimitsSet() ? m_pDataEditing->ChargeWork(0, SearchWork(nText, nSearch)) : NRV_OK;
    }
    NRVRESULT CheckSearchLimits(CNrvOperationResult& Text, CNrvOperationResult& Search) const
    {
        return LimitsSet() ? CheckSearchLimits(Text.GetResultStringLength(), Search.GetResultStringLength()) : NRV_OK;
    }
    // Positions travel as signed 32-bit integers: a command that yields or
    // searches by position refuses a text they cannot all reach.
    static NRVRESULT CheckPositionsFit(size_t nLength)
    {
        return nLength > static_cast<size_t>(INT32_MAX) ? NRV_ERR_TEXT_TOO_LONG : NRV_OK;
    }

    CNrvDataEditingProfile* m_pDataEditing;
    CNrvList m_OperationsList;

    // One branch on an edit without limits. Commands made without a profile
    // (by hand, in tests) have none.
    bool LimitsSet() const { return m_pDataEditing != nullptr && m_pDataEditing->HasLimits(); }

private:
    static size_t SearchWork(size_t nText, size_t nSearch);
    static NRVRESULT ParseNested(CNrvDataEditingProfile* pDataEditing, CNrvOperationDictionary* pDictionary,
                                 char cOpen, char cClose, CNrvParsingString* pParsingString,
                                 CNrvList* pOperationsList, size_t nDepth, CNrvParseObserver* pObserver);
    // Split and LookupCommand, telling pObserver (when not null) where they
    // cut and fail.
    static NRVRESULT Split(char cStart, char cEnd, CNrvParsingString* pString, CNrvList* pParsingStringsList,
                           CNrvParseObserver* pObserver);
    static NRVRESULT LookupCommand(CNrvOperationDictionary* pDictionary, CNrvDataEditingProfile* pDataEditing,
                                   CNrvParsingString* pCurrentString, char cOpen, char cClose,
                                   CNrvOperation** ppNewOperation, CNrvParsingString** ppNewOperationParsingString,
                                   CNrvParseObserver* pObserver);
};

// Every command runs its parameters here on every edit: inline, so that a
// command pays no call of its own for it.
inline NRVRESULT CNrvOperation::RunParameters(CNrvOperationResult* pResults, size_t nCount) const
{
    NRVRESULT result = NRV_OK;
    TNrvPosition position = m_OperationsList.GetHeadPosition();
    for (size_t i = 0; i < nCount; ++i) {
        void* pData = nullptr;
        result = m_OperationsList.GetNext(&position, &pData);
        if (result < 0)
            return result;
        result = static_cast<const CNrvOperation*>(pData)->Run(pResults[i]);
        if (result < 0)
            return result;
    }
    return result;
}

#endif  // NRV_OPERATION_BASE_H
