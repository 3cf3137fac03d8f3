#ifndef NRV_REPLACE_COMMANDS_H
#define NRV_REPLACE_COMMANDS_H

// Replacing the first occurrence of a text, or every byte of a set.

#include "NrvOperationBase.h"
#include "NrvOperationDictionary.h"

class CNrvOperationReplace : public CNrvOperation {
public:
    explicit CNrvOperationReplace(CNrvDataEditingProfile* pDataEditing) : CNrvOperation(pDataEditing) {}
    size_t GetParameterCount() const override { return 3; }
    bool CheckIfParametersAreCorrect() const override;
    NRVRESULT Run(CNrvOperationResult& Result) const override;
    int GetResultType() const override { return CNrvOperationResult::typeString; }
};
class CNrvOperationFactoryReplace : public CNrvOperationFactoryOf<CNrvOperationReplace> {};

class CNrvOperationSubstitute : public CNrvOperation {
public:
    explicit CNrvOperationSubstitute(CNrvDataEditingProfile* pDataEditing) : CNrvOperation(pDataEditing) {}
    size_t GetParameterCount() const override { return 3; }
    bool CheckIfParametersAreCorrect() const override;
    NRVRESULT Run(CNrvOperationResult& Result) const override;
    int GetResultType() const override { return CNrvOperationResult::typeString; }
};
class CNrvOperationFactorySubstitute : public CNrvOperationFactoryOf<CNrvOperationSubstitute> {};

#endif  // NRV_REPLACE_COMMANDS_H
