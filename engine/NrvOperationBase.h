#ifndef NRV_OPERATION_BASE_H
#define NRV_OPERATION_BASE_H

#include <cstddef>

#include "NrvList.h"
#include "NrvOperationResult.h"
#include "NrvParsingString.h"

class CNrvDataEditingProfile;
class CNrvOperationDictionary;

// Reserved index values. They travel as signed 32-bit integers and are read
// back widened to sizes, hence the two spellings.
enum : int {
    kNrvIndexNone = -1,      // no index given: the command's own default
    kNrvIndexNotFound = -2,  // a find command found nothing
};
constexpr size_t kNrvSizeIndexNone = static_cast<size_t>(-1);
constexpr size_t kNrvSizeIndexNotFound = static_cast<size_t>(-2);

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

    CNrvDataEditingProfile* m_pDataEditing;
    CNrvList m_OperationsList;

private:
    static NRVRESULT ParseNested(CNrvDataEditingProfile* pDataEditing, CNrvOperationDictionary* pDictionary,
                                 char cOpen, char cClose, CNrvParsingString* pParsingString,
                                 CNrvList* pOperationsList, size_t nDepth);
};

#endif  // NRV_OPERATION_BASE_H
