// How nrv-edit shows the library's diagnostics to a person: a parse error as
// a compiler prints one, the line for a scan whose edit failed, and the
// explain tree of a scan.
#ifndef NRV_EDIT_EXPLAIN_PRINT_H
#define NRV_EDIT_EXPLAIN_PRINT_H

#include <cstddef>
#include <string>

#include "NrvDiagnostics.h"
#include "options.h"

// Whether to colour what goes to the descriptor fd: always, never, or (auto)
// when it is a terminal, TERM is not "dumb" and NO_COLOR is unset or empty.
bool UseColor(EColor color, int fd);

// "nrv-edit: error: <sentence> (NAME, code)", then the expression and a
// caret line under the culprit's range. Bytes that are not printable are
// shown escaped, and the carets follow them; a long expression is shown as
// a window around the range.
std::string FormatParseError(const char* pszExpression, const TNrvDiagnostic& diagnostic, bool bColor);

// "nrv-edit: scan N: <context>: <command>: <sentence> (NAME, code)"; the
// context (e.g. the rule that took the scan) is left out when empty.
std::string FormatScanFailure(unsigned long long nScan, const TNrvDiagnostic& failure,
                              const std::string& context = std::string());

// "scan N: "<scan>" => "<output>"" and below it the tree, two spaces per
// level: each node and what it gave, the failing command marked.
std::string FormatExplanation(unsigned long long nScan, const char* pData, size_t nLength,
                              const TNrvExplanation& explanation, bool bColor);
// The header line alone, for a scan that the triggers leave unchanged.
std::string FormatNotTriggered(unsigned long long nScan, const char* pData, size_t nLength);

#endif  // NRV_EDIT_EXPLAIN_PRINT_H
