#ifndef NRV_REPLACE_COMMANDS_H
#define NRV_REPLACE_COMMANDS_H

// Replacing the first occurrence of a text, or every byte of a set.

#include "NrvCommand.h"

class CNrvOperationReplace : public CNrvCommand<CNrvOperationReplace> {
public:
    static constexpr const char* kName = "Replace";
    explicit CNrvOperationReplace(CNrvDataEditingProfile* pDataEditing) : CNrvCommand(pDataEditing) {}
    NRVRESULT Run(CNrvOperationResult& Result) const override;
    std::string DescribeFailure(NRVRESULT nCode, CNrvOperationResult* pParameters) const override;
};
class CNrvOperationFactoryReplace : public CNrvOperationFactoryOf<CNrvOperationReplace> {};

class CNrvOperationSubstitute : public CNrvCommand<CNrvOperationSubstitute> {
public:
    static constexpr const char* kName = "Substitute";
    explicit CNrvOperationSubstitute(CNrvDataEditingProfile* pDataEditing) : CNrvCommand(pDataEditing) {}
    NRVRESULT Run(CNrvOperationResult& Result) const override;
    std::string DescribeFailure(NRVRESULT nCode, CNrvOperationResult* pParameters) const override;
};
class CNrvOperationFactorySubstitute : public CNrvOperationFactoryOf<CNrvOperationSubstitute> {};

#endif  // NRV_REPLACE_COMMANDS_H
