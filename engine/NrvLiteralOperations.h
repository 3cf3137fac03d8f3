#ifndef NRV_LITERAL_OPERATIONS_H
#define NRV_LITERAL_OPERATIONS_H

#include "NrvOperationBase.h"

// A literal run of the expression: yields its text as written.
class CNrvOperationString : public CNrvOperation {
public:
    CNrvOperationString(CNrvDataEditingProfile* pDataEditing, CNrvParsingString* pString);
    ~CNrvOperationString() override;

    bool CheckIfParametersAreCorrect() const override { return true; }
    NRVRESULT Run(CNrvOperationResult& Result) const override;
    int GetResultType() const override { return CNrvOperationResult::typeString; }

protected:
    char* m_pszString;
    size_t m_nStringLength;
};

// A literal run that is a number: yields its value and keeps its text as
// written (007 runs to the value 7 and the text 007), so it fits both text
// and number positions.
class CNrvOperationInteger : public CNrvOperationString {
public:
    CNrvOperationInteger(CNrvDataEditingProfile* pDataEditing, CNrvParsingString* pString);

    NRVRESULT Run(CNrvOperationResult& Result) const override;
    int GetResultType() const override { return CNrvOperationResult::typeStringOrInt; }

protected:
    int m_nInteger;
};

#endif  // NRV_LITERAL_OPERATIONS_H
