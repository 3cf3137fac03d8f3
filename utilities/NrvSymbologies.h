// Symbology names as the enumeration spells them, without the kNrvScanSymbology
// prefix, for people who name a symbology in a command line, a file or a page.
#ifndef NRV_SYMBOLOGIES_H
#define NRV_SYMBOLOGIES_H

#include "NrvScanTypes.h"

// The name of a valid identifier, or null.
const char* NrvSymbologyName(int nId);
// Reads a name (any case) or a decimal identifier; false when it is neither.
bool NrvParseSymbology(const char* pszText, ENrvScanSymbologyID* pId);

#endif  // NRV_SYMBOLOGIES_H
