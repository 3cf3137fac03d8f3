#ifndef NRV_SUBSTRING_COMMANDS_H
#define NRV_SUBSTRING_COMMANDS_H

// Taking a piece of a text by positions or between markers.

#include "NrvCommand.h"

class CNrvOperationSubstring : public CNrvCommand<CNrvOperationSubstring> {
public:
    using CNrvCommand::CNrvCommand;
    NRVRESULT Compute(CNrvOperationResult& Result, CNrvOperationResult& Text, CNrvOperationResult& Start,
                      CNrvOperationResult& Stop) const;
};

class CNrvOperationExtract : public CNrvCommand<CNrvOperationExtract> {
public:
    using CNrvCommand::CNrvCommand;
    NRVRESULT Compute(CNrvOperationResult& Result, CNrvOperationResult& Text, CNrvOperationResult& StartMarker,
                      CNrvOperationResult& StopMarker) const;
    std::string DescribeFailure(NRVRESULT nCode, CNrvOperationResult* pParameters) const override;
};

// Each command's factory by the command's name.
using CNrvOperationFactorySubstring = CNrvOperationFactoryOf<CNrvOperationSubstring>;
using CNrvOperationFactoryExtract = CNrvOperationFactoryOf<CNrvOperationExtract>;

#endif  // NRV_SUBSTRING_COMMANDS_H
