// Rows of "expression over decoded data gives this", checked through a
// profile the way the scanning library uses it.
#ifndef NRV_TESTS_EDIT_ROWS_H
#define NRV_TESTS_EDIT_ROWS_H

#include <string>
#include <vector>

#include "NrvScanTypes.h"

struct TEditRow {
    const char* pszExpression;
    std::string data;      // the decoded data, with its exact length (zero bytes allowed)
    NRVRESULT nCode;       // what Parse, or else Edit, returns
    std::string expected;  // the edited data when nCode is not negative
};

// Parses the expression and edits one record holding the data. A failing
// parse or edit must leave the record exactly as it was handed in; a
// successful edit must give a zero-terminated buffer of the length it reports.
void ExpectEdit(const TEditRow& row);

inline void ExpectEdits(const std::vector<TEditRow>& rows)
{
    for (const TEditRow& row : rows)
        ExpectEdit(row);
}

#endif  // NRV_TESTS_EDIT_ROWS_H
