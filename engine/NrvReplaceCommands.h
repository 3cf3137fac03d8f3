#ifndef NRV_REPLACE_COMMANDS_H
#define NRV_REPLACE_COMMANDS_H

// Replacing the first occurrence of a text, or every byte of a set.

#include "NrvCommand.h"

class CNrvOperationReplace : public CNrvCommand<CNrvOperationReplace> {
public:
    using CNrvCommand::CNrvCommand;
    NRVRESULT Compute(CNrvOperationResult& Result, CNrvOperationResult& Text, CNrvOperationResult& Search,
                      CNrvOperationResult& Replacement) const;
    std::string DescribeFailure(NRVRESULT nCode, CNrvOperationResult* pParameters) const override;
};

class CNrvOperationSubstitute : public CNrvCommand<CNrvOperationSubstitute> {
public:
    using CNrvCommand::CNrvCommand;
    NRVRESULT Compute(CNrvOperationResult& Result, CNrvOperationResult& Text, CNrvOperationResult& Set,
                      CNrvOperationResult& Replacement) const;
    std::string DescribeFailure(NRVRESULT nCode, CNrvOperationResult* pParameters) const override;
};

// Each command's factory by the command's name.
using CNrvOperationFactoryReplace = CNrvOperationFactoryOf<CNrvOperationReplace>;
using CNrvOperationFactorySubstitute = CNrvOperationFactoryOf<CNrvOperationSubstitute>;

#endif  // NRV_REPLACE_COMMANDS_H
