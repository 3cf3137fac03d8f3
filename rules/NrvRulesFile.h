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
//   gs1 = true                               # optional: the scan is (false: is not) a valid GS1 message
//   ai = ["17", "10"]                        # optional: a valid GS1 message holding each of these AIs
//   seed-only = true                         # optional: the eighteen seed commands only, no GS1 commands
//
// Trigger texts are read with the escapes \\ \r \n \t \xHH after TOML's own
// string rules, so '\x1D' (a literal string) is the byte 0x1D. The triggers
// are read and checked by CNrvSettings (NrvSettings.h), as the tool's
// options are, and each rule edits under the default limits of CNrvSettings
// (the largest text and the work budget); set others on its profile. Each
// rule's profile enables the command sets the reader is given (every one
// by default, as the tool and the playground), unless the rule says
// seed-only = true. gs1 and ai are the rule's GS1 condition
// (TNrvGs1Condition), beside its profile's triggers.
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
// nCommandSets: the sets each rule's profile enables unless it says
// seed-only = true.
bool NrvReadRules(const char* pText, size_t nLength, CNrvRuleSet* pSet, std::vector<TNrvRulesError>* pErrors,
                  unsigned nCommandSets = kNrvCommandSetsAll);
bool NrvReadRules(const char* pText, size_t nLength, CNrvRuleSet* pSet, std::vector<TNrvRuleTest>* pTests,
                  std::vector<TNrvRulesError>* pErrors, unsigned nCommandSets = kNrvCommandSetsAll);

// Reads the file at pszPath as NrvReadRules does; an unreadable file is one
// error on line 0.
bool NrvReadRulesFile(const char* pszPath, CNrvRuleSet* pSet, std::vector<TNrvRulesError>* pErrors,
                      unsigned nCommandSets = kNrvCommandSetsAll);
bool NrvReadRulesFile(const char* pszPath, CNrvRuleSet* pSet, std::vector<TNrvRuleTest>* pTests,
                      std::vector<TNrvRulesError>* pErrors, unsigned nCommandSets = kNrvCommandSetsAll);

// "FILE:LINE:COLUMN: message", then, when the error has a line, that line
// and a caret under the culprit; each line ends with '\n'.
std::string NrvFormatRulesError(const char* pszFileName, const TNrvRulesError& error);

#endif  // NRV_RULES_FILE_H
