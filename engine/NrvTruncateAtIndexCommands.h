#ifndef NRV_TRUNCATE_AT_INDEX_COMMANDS_H
#define NRV_TRUNCATE_AT_INDEX_COMMANDS_H

// Cutting a text at an index plus an offset.

#include "NrvOperationBase.h"
#include "NrvOperationDictionary.h"

class CNrvOperationTruncateAfterIndex : public CNrvOperation {
public:
    explicit CNrvOperationTruncateAfterIndex(CNrvDataEditingProfile* pDataEditing) : CNrvOperation(pDataEditing) {}
    size_t GetParameterCount() const override { return 3; }
    bool CheckIfParametersAreCorrect() const override;
    NRVRESULT Run(CNrvOperationResult& Result) const override;
    int GetResultType() const override { return CNrvOperationResult::typeString; }
};
class CNrvOperationFactoryTruncateAfterIndex : public CNrvOperationFactoryOf<CNrvOperationTruncateAfterIndex> {};

class CNrvOperationTruncateBeforeIndex : public CNrvOperation {
public:
    explicit CNrvOperationTruncateBeforeIndex(CNrvDataEditingProfile* pDataEditing) : CNrvOperation(pDataEditing) {}
    size_t GetParameterCount() const override { return 3; }
    bool CheckIfParametersAreCorrect() const override;
    NRVRESULT Run(CNrvOperationResult& Result) const override;
    int GetResultType() const override { return CNrvOperationResult::typeString; }
};
class CNrvOperationFactoryTruncateBeforeIndex : public CNrvOperationFactoryOf<CNrvOperationTruncateBeforeIndex> {};

#endif  // NRV_TRUNCATE_AT_INDEX_COMMANDS_H
