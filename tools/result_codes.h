// Names and meanings of the engine's result codes, for messages.
#ifndef NRV_EDIT_RESULT_CODES_H
#define NRV_EDIT_RESULT_CODES_H

#include <string>

#include "NrvScanTypes.h"

// "NRV_ERR_OUT_OF_RANGE (-43): <meaning>"; codes the engine does not
// define are shown as unknown with their value.
std::string DescribeResult(NRVRESULT result);

#endif  // NRV_EDIT_RESULT_CODES_H
