#ifndef NRV_INSERT_COMMANDS_H
#define NRV_INSERT_COMMANDS_H

// Inserting a text behind or in front of the byte at an index.

#include "NrvCommand.h"

class CNrvOperationInsertAfterIndex : public CNrvCommand<CNrvOperationInsertAfterIndex> {
public:
    static constexpr const char* kName = "InsertAfterIndex";
    explicit CNrvOperationInsertAfterIndex(CNrvDataEditingProfile* pDataEditing) : CNrvCommand(pDataEditing) {}
    NRVRESULT Run(CNrvOperationResult& Result) const override;
    std::string DescribeFailure(NRVRESULT nCode, CNrvOperationResult* pParameters) const override;
};
class CNrvOperationFactoryInsertAfterIndex : public CNrvOperationFactoryOf<CNrvOperationInsertAfterIndex> {};

class CNrvOperationInsertBeforeIndex : public CNrvCommand<CNrvOperationInsertBeforeIndex> {
public:
    static constexpr const char* kName = "InsertBeforeIndex";
    explicit CNrvOperationInsertBeforeIndex(CNrvDataEditingProfile* pDataEditing) : CNrvCommand(pDataEditing) {}
    NRVRESULT Run(CNrvOperationResult& Result) const override;
    std::string DescribeFailure(NRVRESULT nCode, CNrvOperationResult* pParameters) const override;
};
class CNrvOperationFactoryInsertBeforeIndex : public CNrvOperationFactoryOf<CNrvOperationInsertBeforeIndex> {};

#endif  // NRV_INSERT_COMMANDS_H
