#ifndef NRV_TRUNCATE_AT_INDEX_COMMANDS_H
#define NRV_TRUNCATE_AT_INDEX_COMMANDS_H

// Cutting a text at an index plus an offset.

#include "NrvCommand.h"

class CNrvOperationTruncateAfterIndex : public CNrvCommand<CNrvOperationTruncateAfterIndex> {
public:
    static constexpr const char* kName = "TruncateAfterIndex";
    explicit CNrvOperationTruncateAfterIndex(CNrvDataEditingProfile* pDataEditing) : CNrvCommand(pDataEditing) {}
    NRVRESULT Run(CNrvOperationResult& Result) const override;
    std::string DescribeFailure(NRVRESULT nCode, CNrvOperationResult* pParameters) const override;
};
class CNrvOperationFactoryTruncateAfterIndex : public CNrvOperationFactoryOf<CNrvOperationTruncateAfterIndex> {};

class CNrvOperationTruncateBeforeIndex : public CNrvCommand<CNrvOperationTruncateBeforeIndex> {
public:
    static constexpr const char* kName = "TruncateBeforeIndex";
    explicit CNrvOperationTruncateBeforeIndex(CNrvDataEditingProfile* pDataEditing) : CNrvCommand(pDataEditing) {}
    NRVRESULT Run(CNrvOperationResult& Result) const override;
    std::string DescribeFailure(NRVRESULT nCode, CNrvOperationResult* pParameters) const override;
};
class CNrvOperationFactoryTruncateBeforeIndex : public CNrvOperationFactoryOf<CNrvOperationTruncateBeforeIndex> {};

#endif  // NRV_TRUNCATE_AT_INDEX_COMMANDS_H
