// The commands of the expression language, one row each, in the order the
// dictionary registers them: the name, each parameter's name and kind, the
// result kind and a one-line summary. Everything that lists the commands
// (the dictionary, the tool, the page, the tests) reads this table.
#ifndef NRV_COMMAND_TABLE_H
#define NRV_COMMAND_TABLE_H

#include <cstddef>

#include "NrvOperationResult.h"

class CNrvOperationFactory;

struct TNrvParameterInfo {
    const char* pszName;  // text, count, start, search, offset, index, ...
    int nKind;            // CNrvOperationResult::typeString or typeInt
};

struct TNrvCommandInfo {
    const char* pszName;
    size_t nParameterCount;
    const TNrvParameterInfo* pParameters;  // nParameterCount entries
    int nResultType;                       // CNrvOperationResult::typeString or typeInt
    const char* pszSummary;
    // Makes the factory the dictionary registers under pszName; the caller
    // owns it.
    CNrvOperationFactory* (*pfnCreateFactory)();
};

// The whole table; *pnCount receives the number of rows.
const TNrvCommandInfo* NrvGetCommandTable(size_t* pnCount);
// The row of the command named by the first nLength bytes of pszName
// (compared byte for byte), or null.
const TNrvCommandInfo* NrvFindCommandInfo(const char* pszName, size_t nLength);

#endif  // NRV_COMMAND_TABLE_H
