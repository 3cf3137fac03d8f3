// --rules FILE: a rule set read from a TOML file takes the place of the
// expression; the first rule whose triggers hold edits each scan.
#ifndef NRV_EDIT_RULES_MODE_H
#define NRV_EDIT_RULES_MODE_H

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "NrvRuleSet.h"
#include "NrvScanTypes.h"
#include "options.h"

class CRulesMode {
public:
    // What Edit returns under --require-match for a scan no rule took. Not
    // an engine code: it never leaves the tool.
    static constexpr NRVRESULT kNoRuleMatched = -1;

    // Refuses the options that do not go with --rules, reads the file and
    // reports every error in it on standard error. Returns null when the
    // tool must stop, with its exit status in *pnExit: 2 for a usage error
    // or a file with errors, 0 after --check printed "ok".
    static std::unique_ptr<CRulesMode> Load(const SOptions& options, int* pnExit);

    // Edits one scan with the first rule that takes it and counts the outcome.
    NRVRESULT Edit(TNrvScanDecodedData* pRecord);
    // The expression of the rule the last scan went to, or null.
    const char* LastExpression() const;
    // "rule 2 (Part numbers)" for that rule, or "" when no rule took it.
    std::string LastRuleLabel() const;
    // The same for --explain --json: {"index":2,"name":"Part numbers"} or null.
    std::string LastRuleJson() const;
    // Which rule the last scan went to: "rule 2 (Part numbers) applied" or
    // "no rule applied".
    std::string DescribeAppliedRule() const;
    // That line for --explain, before the tree.
    void PrintAppliedRule(FILE* pFile) const { fprintf(pFile, "%s\n", DescribeAppliedRule().c_str()); }
    // --stats: per rule the scans it edited and those whose edit failed,
    // then the scans no rule took.
    void PrintStats(FILE* pFile) const;
    bool WantsStats() const { return m_bStats; }

private:
    CRulesMode(CNrvRuleSet&& rules, bool bRequireMatch, bool bStats);
    std::string Label(size_t nRule) const;

    CNrvRuleSet m_Rules;
    bool m_bRequireMatch;
    bool m_bStats;
    size_t m_nLastRule = CNrvRuleSet::kNoRule;
    std::vector<unsigned long long> m_Edited, m_Failed;
    unsigned long long m_nUnmatched = 0;
};

#endif  // NRV_EDIT_RULES_MODE_H
