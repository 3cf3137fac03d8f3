#ifndef NRV_TRUNCATE_COMMANDS_H
#define NRV_TRUNCATE_COMMANDS_H

// Cutting a count of bytes from either end of a text.

#include "NrvCommand.h"

class CNrvOperationTruncateFromBeginning : public CNrvCommand<CNrvOperationTruncateFromBeginning> {
public:
    static constexpr const char* kName = "TruncateFromBeginning";
    explicit CNrvOperationTruncateFromBeginning(CNrvDataEditingProfile* pDataEditing) : CNrvCommand(pDataEditing) {}
    NRVRESULT Run(CNrvOperationResult& Result) const override;
    std::string DescribeFailure(NRVRESULT nCode, CNrvOperationResult* pParameters) const override;
};
class CNrvOperationFactoryTruncateFromBeginning : public CNrvOperationFactoryOf<CNrvOperationTruncateFromBeginning> {};

class CNrvOperationTruncateFromEnd : public CNrvCommand<CNrvOperationTruncateFromEnd> {
public:
    static constexpr const char* kName = "TruncateFromEnd";
    explicit CNrvOperationTruncateFromEnd(CNrvDataEditingProfile* pDataEditing) : CNrvCommand(pDataEditing) {}
    NRVRESULT Run(CNrvOperationResult& Result) const override;
    std::string DescribeFailure(NRVRESULT nCode, CNrvOperationResult* pParameters) const override;
};
class CNrvOperationFactoryTruncateFromEnd : public CNrvOperationFactoryOf<CNrvOperationTruncateFromEnd> {};

#endif  // NRV_TRUNCATE_COMMANDS_H
