#include "NrvReplaceCommands.h"

bool CNrvOperationReplace::CheckIfParametersAreCorrect() const
{
    return CheckParameterKinds("SSS");
}

NRVRESULT CNrvOperationReplace::Run(CNrvOperationResult& Result) const
{
    (void)Result;  // TODO
    return NRV_ERR_OUT_OF_RANGE;
}

bool CNrvOperationSubstitute::CheckIfParametersAreCorrect() const
{
    return CheckParameterKinds("SSS");
}

NRVRESULT CNrvOperationSubstitute::Run(CNrvOperationResult& Result) const
{
    (void)Result;  // TODO
    return NRV_ERR_OUT_OF_RANGE;
}
