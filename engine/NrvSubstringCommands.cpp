#include "NrvSubstringCommands.h"

bool CNrvOperationSubstring::CheckIfParametersAreCorrect() const
{
    return CheckParameterKinds("SII");
}

NRVRESULT CNrvOperationSubstring::Run(CNrvOperationResult& Result) const
{
    (void)Result;  // TODO
    return NRV_ERR_OUT_OF_RANGE;
}

bool CNrvOperationExtract::CheckIfParametersAreCorrect() const
{
    return CheckParameterKinds("SSS");
}

NRVRESULT CNrvOperationExtract::Run(CNrvOperationResult& Result) const
{
    (void)Result;  // TODO
    return NRV_ERR_OUT_OF_RANGE;
}
