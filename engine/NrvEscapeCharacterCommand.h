#ifndef NRV_ESCAPE_CHARACTER_COMMAND_H
#define NRV_ESCAPE_CHARACTER_COMMAND_H

// Hexadecimal digits to the bytes they spell.

#include "NrvOperationBase.h"
#include "NrvOperationDictionary.h"

class CNrvOperationEscapeCharacter : public CNrvOperation {
public:
    explicit CNrvOperationEscapeCharacter(CNrvDataEditingProfile* pDataEditing) : CNrvOperation(pDataEditing) {}
    size_t GetParameterCount() const override { return 1; }
    bool CheckIfParametersAreCorrect() const override;
    NRVRESULT Run(CNrvOperationResult& Result) const override;
    int GetResultType() const override { return CNrvOperationResult::typeString; }
};
class CNrvOperationFactoryEscapeCharacter : public CNrvOperationFactoryOf<CNrvOperationEscapeCharacter> {};

#endif  // NRV_ESCAPE_CHARACTER_COMMAND_H
