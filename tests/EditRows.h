// Rows of "expression over decoded data gives this", checked through a
// profile the way the scanning library uses it.
#ifndef NRV_TESTS_EDIT_ROWS_H
#define NRV_TESTS_EDIT_ROWS_H

#include <string>
#include <vector>

#include "NrvCommandTable.h"
#include "NrvScanTypes.h"

class CNrvDataEditingProfile;
class CNrvOperation;

struct TEditRow {
    const char* pszExpression;
    std::string data;      // the decoded data, with its exact length (zero bytes allowed)
    NRVRESULT nCode;       // what Parse, or else Edit, returns
    std::string expected;  // the edited data when nCode is not negative
};

// Parses the expression and edits one record holding the data. A failing
// parse or edit must leave the record exactly as it was handed in; a
// successful edit must give a zero-terminated buffer of the length it reports.
// The profile enables nCommandSets (none: the eighteen seed commands).
void ExpectEdit(const TEditRow& row, unsigned nCommandSets = kNrvCommandSetSeed);

inline void ExpectEdits(const std::vector<TEditRow>& rows)
{
    for (const TEditRow& row : rows)
        ExpectEdit(row);
}

// Every command's sample call (its row's pszSample) cut into its arguments
// at the commas outside braces, and a call of the command put back together
// from arguments: the tests that cover every command vary the samples.
std::vector<std::string> SampleArguments(const TNrvCommandInfo& row);
// The same with each argument that is a command (the scan the sample reads)
// written as the literal text instead.
std::vector<std::string> SampleArgumentsOver(const TNrvCommandInfo& row, const std::string& text);
std::string CallOf(const TNrvCommandInfo& row, const std::vector<std::string>& arguments);
// The scan every sample call edits without failing.
inline const char* SampleScan()
{
    return "AB-CD-EF";
}

// The command's operation as the parser makes it (through the library's
// dictionary), with a literal parameter for each text; the caller owns it.
CNrvOperation* MakeCommand(const char* pszName, const std::vector<const char*>& parameters,
                           CNrvDataEditingProfile* pProfile);

#endif  // NRV_TESTS_EDIT_ROWS_H
