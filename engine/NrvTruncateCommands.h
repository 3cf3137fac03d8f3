#ifndef NRV_TRUNCATE_COMMANDS_H
#define NRV_TRUNCATE_COMMANDS_H

// Cutting a count of bytes from either end of a text.

#include "NrvOperationBase.h"
#include "NrvOperationDictionary.h"

class CNrvOperationTruncateFromBeginning : public CNrvOperation {
public:
    explicit CNrvOperationTruncateFromBeginning(CNrvDataEditingProfile* pDataEditing) : CNrvOperation(pDataEditing) {}
    size_t GetParameterCount() const override { return 2; }
    bool CheckIfParametersAreCorrect() const override;
    NRVRESULT Run(CNrvOperationResult& Result) const override;
    int GetResultType() const override { return CNrvOperationResult::typeString; }
};
class CNrvOperationFactoryTruncateFromBeginning : public CNrvOperationFactoryOf<CNrvOperationTruncateFromBeginning> {};

class CNrvOperationTruncateFromEnd : public CNrvOperation {
public:
    explicit CNrvOperationTruncateFromEnd(CNrvDataEditingProfile* pDataEditing) : CNrvOperation(pDataEditing) {}
    size_t GetParameterCount() const override { return 2; }
    bool CheckIfParametersAreCorrect() const override;
    NRVRESULT Run(CNrvOperationResult& Result) const override;
    int GetResultType() const override { return CNrvOperationResult::typeString; }
};
class CNrvOperationFactoryTruncateFromEnd : public CNrvOperationFactoryOf<CNrvOperationTruncateFromEnd> {};

#endif  // NRV_TRUNCATE_COMMANDS_H
