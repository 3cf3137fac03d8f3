#ifndef NRV_INSERT_COMMANDS_H
#define NRV_INSERT_COMMANDS_H

// Inserting a text behind or in front of the byte at an index.

#include "NrvOperationBase.h"
#include "NrvOperationDictionary.h"

class CNrvOperationInsertAfterIndex : public CNrvOperation {
public:
    explicit CNrvOperationInsertAfterIndex(CNrvDataEditingProfile* pDataEditing) : CNrvOperation(pDataEditing) {}
    size_t GetParameterCount() const override { return 3; }
    bool CheckIfParametersAreCorrect() const override;
    NRVRESULT Run(CNrvOperationResult& Result) const override;
    int GetResultType() const override { return CNrvOperationResult::typeString; }
};
class CNrvOperationFactoryInsertAfterIndex : public CNrvOperationFactoryOf<CNrvOperationInsertAfterIndex> {};

class CNrvOperationInsertBeforeIndex : public CNrvOperation {
public:
    explicit CNrvOperationInsertBeforeIndex(CNrvDataEditingProfile* pDataEditing) : CNrvOperation(pDataEditing) {}
    size_t GetParameterCount() const override { return 3; }
    bool CheckIfParametersAreCorrect() const override;
    NRVRESULT Run(CNrvOperationResult& Result) const override;
    int GetResultType() const override { return CNrvOperationResult::typeString; }
};
class CNrvOperationFactoryInsertBeforeIndex : public CNrvOperationFactoryOf<CNrvOperationInsertBeforeIndex> {};

#endif  // NRV_INSERT_COMMANDS_H
