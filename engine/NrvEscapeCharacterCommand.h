#ifndef NRV_ESCAPE_CHARACTER_COMMAND_H
#define NRV_ESCAPE_CHARACTER_COMMAND_H

// Hexadecimal digits to the bytes they spell.

#include "NrvCommand.h"

class CNrvOperationEscapeCharacter : public CNrvCommand<CNrvOperationEscapeCharacter> {
public:
    using CNrvCommand::CNrvCommand;
    NRVRESULT Compute(CNrvOperationResult& Result, CNrvOperationResult& Hex) const;
    std::string DescribeFailure(NRVRESULT nCode, CNrvOperationResult* pParameters) const override;
};

// Each command's factory by the command's name.
using CNrvOperationFactoryEscapeCharacter = CNrvOperationFactoryOf<CNrvOperationEscapeCharacter>;

#endif  // NRV_ESCAPE_CHARACTER_COMMAND_H
