#ifndef NRV_FIND_COMMANDS_H
#define NRV_FIND_COMMANDS_H

// Finding a text forwards or backwards from an index; they yield positions.

#include "NrvOperationBase.h"
#include "NrvOperationDictionary.h"

class CNrvOperationFindFirstFromIndex : public CNrvOperation {
public:
    explicit CNrvOperationFindFirstFromIndex(CNrvDataEditingProfile* pDataEditing) : CNrvOperation(pDataEditing) {}
    size_t GetParameterCount() const override { return 4; }
    bool CheckIfParametersAreCorrect() const override;
    NRVRESULT Run(CNrvOperationResult& Result) const override;
    int GetResultType() const override { return CNrvOperationResult::typeInt; }
};
class CNrvOperationFactoryFindFirstFromIndex : public CNrvOperationFactoryOf<CNrvOperationFindFirstFromIndex> {};

class CNrvOperationFindLastFromIndex : public CNrvOperation {
public:
    explicit CNrvOperationFindLastFromIndex(CNrvDataEditingProfile* pDataEditing) : CNrvOperation(pDataEditing) {}
    size_t GetParameterCount() const override { return 4; }
    bool CheckIfParametersAreCorrect() const override;
    NRVRESULT Run(CNrvOperationResult& Result) const override;
    int GetResultType() const override { return CNrvOperationResult::typeInt; }

private:
    // Backward search: see Run.
    int FindIndex(CNrvOperationResult& OriginalString, size_t fromIndex, CNrvOperationResult& SearchString) const;
};
class CNrvOperationFactoryFindLastFromIndex : public CNrvOperationFactoryOf<CNrvOperationFindLastFromIndex> {};

#endif  // NRV_FIND_COMMANDS_H
