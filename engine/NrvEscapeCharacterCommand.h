#ifndef NRV_ESCAPE_CHARACTER_COMMAND_H
#define NRV_ESCAPE_CHARACTER_COMMAND_H

// Hexadecimal digits to the bytes they spell.

#include "NrvCommand.h"

class CNrvOperationEscapeCharacter : public CNrvCommand<CNrvOperationEscapeCharacter> {
public:
    static constexpr const char* kName = "EscapeCharacter";
    explicit CNrvOperationEscapeCharacter(CNrvDataEditingProfile* pDataEditing) : CNrvCommand(pDataEditing) {}
    NRVRESULT Run(CNrvOperationResult& Result) const override;
    std::string DescribeFailure(NRVRESULT nCode, CNrvOperationResult* pParameters) const override;
};
class CNrvOperationFactoryEscapeCharacter : public CNrvOperationFactoryOf<CNrvOperationEscapeCharacter> {};

#endif  // NRV_ESCAPE_CHARACTER_COMMAND_H
