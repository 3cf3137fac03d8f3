#include "NrvCaseCommands.h"

bool CNrvOperationMakeUpperCase::CheckIfParametersAreCorrect() const
{
    return CheckParameterKinds("S");
}

NRVRESULT CNrvOperationMakeUpperCase::Run(CNrvOperationResult& Result) const
{
    (void)Result;  // TODO
    return NRV_ERR_OUT_OF_RANGE;
}

bool CNrvOperationMakeLowerCase::CheckIfParametersAreCorrect() const
{
    return CheckParameterKinds("S");
}

NRVRESULT CNrvOperationMakeLowerCase::Run(CNrvOperationResult& Result) const
{
    (void)Result;  // TODO
    return NRV_ERR_OUT_OF_RANGE;
}

bool CNrvOperationReplaceNonPrintableCharacters::CheckIfParametersAreCorrect() const
{
    return CheckParameterKinds("SS");
}

NRVRESULT CNrvOperationReplaceNonPrintableCharacters::Run(CNrvOperationResult& Result) const
{
    (void)Result;  // TODO
    return NRV_ERR_OUT_OF_RANGE;
}
