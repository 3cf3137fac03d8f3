#include "NrvFindCommands.h"

bool CNrvOperationFindFirstFromIndex::CheckIfParametersAreCorrect() const
{
    return CheckParameterKinds("SISI");
}

NRVRESULT CNrvOperationFindFirstFromIndex::Run(CNrvOperationResult& Result) const
{
    (void)Result;  // TODO
    return NRV_ERR_OUT_OF_RANGE;
}

bool CNrvOperationFindLastFromIndex::CheckIfParametersAreCorrect() const
{
    return CheckParameterKinds("SISI");
}

NRVRESULT CNrvOperationFindLastFromIndex::Run(CNrvOperationResult& Result) const
{
    (void)Result;  // TODO
    return NRV_ERR_OUT_OF_RANGE;
}
