#include "NrvTruncateAtIndexCommands.h"

bool CNrvOperationTruncateAfterIndex::CheckIfParametersAreCorrect() const
{
    return CheckParameterKinds("SII");
}

NRVRESULT CNrvOperationTruncateAfterIndex::Run(CNrvOperationResult& Result) const
{
    (void)Result;  // TODO
    return NRV_ERR_OUT_OF_RANGE;
}

bool CNrvOperationTruncateBeforeIndex::CheckIfParametersAreCorrect() const
{
    return CheckParameterKinds("SII");
}

NRVRESULT CNrvOperationTruncateBeforeIndex::Run(CNrvOperationResult& Result) const
{
    (void)Result;  // TODO
    return NRV_ERR_OUT_OF_RANGE;
}
