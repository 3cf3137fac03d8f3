#include "NrvTruncateCommands.h"

bool CNrvOperationTruncateFromBeginning::CheckIfParametersAreCorrect() const
{
    return CheckParameterKinds("SI");
}

NRVRESULT CNrvOperationTruncateFromBeginning::Run(CNrvOperationResult& Result) const
{
    (void)Result;  // TODO
    return NRV_ERR_OUT_OF_RANGE;
}

bool CNrvOperationTruncateFromEnd::CheckIfParametersAreCorrect() const
{
    return CheckParameterKinds("SI");
}

NRVRESULT CNrvOperationTruncateFromEnd::Run(CNrvOperationResult& Result) const
{
    (void)Result;  // TODO
    return NRV_ERR_OUT_OF_RANGE;
}
