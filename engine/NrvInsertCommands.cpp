#include "NrvInsertCommands.h"

bool CNrvOperationInsertAfterIndex::CheckIfParametersAreCorrect() const
{
    return CheckParameterKinds("SIS");
}

NRVRESULT CNrvOperationInsertAfterIndex::Run(CNrvOperationResult& Result) const
{
    (void)Result;  // TODO
    return NRV_ERR_OUT_OF_RANGE;
}

bool CNrvOperationInsertBeforeIndex::CheckIfParametersAreCorrect() const
{
    return CheckParameterKinds("SIS");
}

NRVRESULT CNrvOperationInsertBeforeIndex::Run(CNrvOperationResult& Result) const
{
    (void)Result;  // TODO
    return NRV_ERR_OUT_OF_RANGE;
}
