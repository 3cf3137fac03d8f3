// What edits the scans: the one expression given on the command line, or
// the rules of a file (--rules), of which the first whose triggers hold
// edits each scan. The printer sees only this interface.
#ifndef NRV_EDIT_EDITOR_H
#define NRV_EDIT_EDITOR_H

#include <memory>
#include <string>
#include <vector>

#include "NrvDataEditingProfile.h"
#include "NrvJson.h"
#include "NrvRuleSet.h"
#ifdef NRV_EDIT_HAVE_RULES
#include "NrvRuleTests.h"
#endif
#include "NrvScanTypes.h"
#include "options.h"

class CScanEditor {
public:
    // What Edit returns under --require-match for a scan no rule took. Not
    // an engine code: it never leaves the tool.
    static constexpr NRVRESULT kNoRuleMatched = -1;

    virtual ~CScanEditor() = default;

    // Edits one scan as a profile does: on success the record holds the
    // edited data, otherwise it is untouched.
    virtual NRVRESULT Edit(TNrvScanDecodedData* pRecord) = 0;
    // The expression the last scan went through, or null when none did,
    // and the command sets its profile knows.
    virtual const char* LastExpression() const = 0;
    virtual unsigned LastCommandSets() const = 0;
    // The rule that took the last scan, for messages ("rule 2 (Part
    // numbers)"); empty for the one expression, or when no rule took it.
    virtual std::string LastRuleLabel() const { return std::string(); }
    // The line before an explanation ("rule 2 (Part numbers) applied", "no
    // rule applied"); empty for the one expression.
    virtual std::string AppliedRuleLine() const { return std::string(); }
    // The rule part of the last scan's JSON explanation.
    virtual void DescribeLastRule(TNrvJsonScan*) const {}
    // Says what is left to say once every scan is edited (--stats).
    virtual void Finish() const {}
};

// Parses the expression and sets the triggers and limits. Null when it does
// not parse, after the error was printed (as JSON with --json).
std::unique_ptr<CScanEditor> MakeExpressionEditor(const SOptions& options);

// Reads the rules file and sets every rule's limits. Null when it cannot be
// read or has errors, after every error was printed.
std::unique_ptr<CScanEditor> MakeRulesEditor(const SOptions& options);

// True when this nrv-edit reads rules files; otherwise says that pszOption
// ("--rules") is not available, and false.
bool HaveRules(const char* pszOption);

#ifdef NRV_EDIT_HAVE_RULES
// Reads the rules file at pszPath (and its tests, with pTests) under
// --trace and gives every rule the tool's limits. False when it cannot be
// read or has errors, after every error and their count were printed.
bool ReadRulesFile(const SOptions& options, const char* pszPath, CNrvRuleSet* pRules,
                   std::vector<TNrvRuleTest>* pTests);
#endif

#endif  // NRV_EDIT_EDITOR_H
