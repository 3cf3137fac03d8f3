#include "NrvEscapeCharacterCommand.h"

bool CNrvOperationEscapeCharacter::CheckIfParametersAreCorrect() const
{
    return CheckParameterKinds("S");
}

NRVRESULT CNrvOperationEscapeCharacter::Run(CNrvOperationResult& Result) const
{
    (void)Result;  // TODO
    return NRV_ERR_OUT_OF_RANGE;
}
