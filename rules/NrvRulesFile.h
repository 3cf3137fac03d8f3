// Rules kept in a TOML file: an ordered list of [[rule]] tables, each with
// an expression and optional trigger conditions, read into a CNrvRuleSet,
// and [[test]] tables that say what the rules must do (NrvRuleTests.h).
//
//   [[rule]]
//   name = "Part numbers"                    # optional
//   symbologies = ["Code128", "qrcode", 38]  # optional: names in any case, or numbers
//   starts-with = "PN"                       # optional, as contains and ends-with
//   min-size = 4                             # optional, as max-size (bytes, inclusive)
//   expression = 'Part: {TruncateFromBeginning({DecodedData()},2)}'
//
// Trigger texts are read with the escapes \\ \r \n \t \xHH after TOML's own
// string rules, so '\x1D' (a literal string) is the byte 0x1D. The triggers
// are read and checked by CNrvSettings (NrvSettings.h), as the tool's
// options are, and each rule edits under the default limits of CNrvSettings
// (the largest text and the work budget); set others on its profile.
#ifndef NRV_RULES_FILE_H
#define NRV_RULES_FILE_H

#include <cstddef>
#include <string>
#include <vector>

#include "NrvRuleSet.h"
#include "NrvRuleTests.h"

// One thing wrong with a rules file, at the place that causes it.
struct TNrvRulesError {
    size_t nLine = 0;     // from 1; 0 when it concerns the file as a whole
    size_t nColumn = 0;   // from 1, in characters (UTF-8 code points)
    size_t nWidth = 1;    // characters to underline from nColumn
    std::string message;  // one sentence, without the file's name or the position
    std::string line;     // the text of line nLine, for showing the culprit
};

// Reads the rules written in pText[0..nLength). When the text holds at
// least one rule and no error, replaces *pSet with the rules read, in file
// order, and returns true. Otherwise returns false with *pSet unchanged and
// every error found appended to *pErrors in file order (a TOML syntax error
// ends the reading, so it comes alone). std::bad_alloc passes through.
// The file's [[test]] tables (NrvRuleTests.h) are read and checked too:
// with pTests, they replace *pTests on success; without, only checked.
bool NrvReadRules(const char* pText, size_t nLength, CNrvRuleSet* pSet, std::vector<TNrvRulesError>* pErrors);
bool NrvReadRules(const char* pText, size_t nLength, CNrvRuleSet* pSet, std::vector<TNrvRuleTest>* pTests,
                  std::vector<TNrvRulesError>* pErrors);

// Reads the file at pszPath as NrvReadRules does; an unreadable file is one
// error on line 0.
bool NrvReadRulesFile(const char* pszPath, CNrvRuleSet* pSet, std::vector<TNrvRulesError>* pErrors);
bool NrvReadRulesFile(const char* pszPath, CNrvRuleSet* pSet, std::vector<TNrvRuleTest>* pTests,
                      std::vector<TNrvRulesError>* pErrors);

// "FILE:LINE:COLUMN: message", then, when the error has a line, that line
// and a caret under the culprit; each line ends with '\n'.
std::string NrvFormatRulesError(const char* pszFileName, const TNrvRulesError& error);

#endif  // NRV_RULES_FILE_H
