// The name and meaning of every result code the library defines, for
// messages: everything that prints a code reads them here.
#ifndef NRV_RESULT_CODES_H
#define NRV_RESULT_CODES_H

#include <cstddef>
#include <string>

#include "NrvScanTypes.h"

// The code's name ("NRV_ERR_SYNTAX"), or null for a code the library does
// not define.
const char* NrvResultCodeName(NRVRESULT nCode);
// What the code means, in a few words, or null.
const char* NrvResultCodeMeaning(NRVRESULT nCode);
// The codes the library defines, one by one from nIndex 0 (NRV_OK first,
// then NRV_OK_NOT_TRIGGERED, then the errors): false past the last.
bool NrvResultCodeAt(size_t nIndex, NRVRESULT* pnCode);
// The meaning, or "failed with code N" for a code the library does not
// define: a sentence for any failure that nothing describes better.
std::string NrvDescribeCode(NRVRESULT nCode);

#endif  // NRV_RESULT_CODES_H
