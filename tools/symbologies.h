// Symbology names as the enumeration spells them, without the kNrvScanSymbology prefix.
#ifndef NRV_EDIT_SYMBOLOGIES_H
#define NRV_EDIT_SYMBOLOGIES_H

#include "NrvScanTypes.h"

// The name of a valid identifier, or null.
const char* SymbologyName(int nId);
// Reads a name (any case) or a decimal identifier; false when it is neither.
bool ParseSymbology(const char* pszText, ENrvScanSymbologyID* pId);

#endif  // NRV_EDIT_SYMBOLOGIES_H
