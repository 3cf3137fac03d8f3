#include "rules_mode.h"

#include <cstring>
#include <utility>

#include "NrvEscapes.h"
#include "NrvParsingString.h"
#include "json.h"
#ifdef NRV_EDIT_HAVE_RULES
#include "NrvRulesFile.h"
#endif

namespace {

int RulesUsageError(const std::string& message)
{
    fprintf(stderr, "nrv-edit: %s\nTry 'nrv-edit --help' for more information.\n", message.c_str());
    return 2;
}

#ifdef NRV_EDIT_HAVE_RULES
void OnRulesTraceLine(bool bError, const char* pszLine, void*)
{
    fprintf(stderr, "trace: %s%s\n", bError ? "ERROR: " : "", pszLine);
}
#endif

}  // namespace

CRulesMode::CRulesMode(CNrvRuleSet&& rules, bool bRequireMatch, bool bStats)
    : m_Rules(std::move(rules)),
      m_bRequireMatch(bRequireMatch),
      m_bStats(bStats),
      m_Edited(m_Rules.GetRuleCount(), 0),
      m_Failed(m_Rules.GetRuleCount(), 0)
{
}

std::unique_ptr<CRulesMode> CRulesMode::Load(const SOptions& options, int* pnExit)
{
    *pnExit = 2;
    // The file holds each rule's triggers; one set on the command line
    // would leave unclear which rules it applies to.
    const char* pszTrigger = options.nMinSize != 0                   ? "--min-size"
                             : options.nMaxSize != 0                 ? "--max-size"
                             : !options.onlySymbologies.empty()      ? "--only-symbology"
                             : options.pszContains != nullptr        ? "--contains"
                             : options.pszStartsWith != nullptr      ? "--starts-with"
                             : options.pszEndsWith != nullptr        ? "--ends-with"
                                                                     : nullptr;
    if (pszTrigger != nullptr) {
        RulesUsageError(std::string(pszTrigger) + " does not go with --rules: give each rule its triggers in the file");
        return nullptr;
    }
#ifdef NRV_EDIT_HAVE_RULES
    CNrvRuleSet rules;
    std::vector<TNrvRulesError> errors;
    if (options.bTrace)
        CNrvParsingString::SetTraceCallback(OnRulesTraceLine, nullptr);
    const bool bRead = NrvReadRulesFile(options.pszRules, &rules, &errors);
    CNrvParsingString::SetTraceCallback(nullptr, nullptr);
    if (!bRead) {
        for (const TNrvRulesError& error : errors)
            fputs(NrvFormatRulesError(options.pszRules, error).c_str(), stderr);
        fprintf(stderr, "nrv-edit: %zu error%s in the rules file %s\n", errors.size(), errors.size() == 1 ? "" : "s",
                options.pszRules);
        return nullptr;
    }
    if (options.bCheck) {
        puts("ok");
        *pnExit = 0;
        return nullptr;
    }
    // Every rule edits under the limits the tool's own expression would.
    const TNrvLimits limits = options.Limits();
    for (size_t i = 0; i < rules.GetRuleCount(); ++i) {
        CNrvDataEditingProfile* pProfile = rules.GetRuleProfile(i);
        pProfile->WriteLimitMaximumTextSize(limits.nMaximumTextSize);
        pProfile->WriteLimitWorkBudget(limits.nWorkBase, limits.nWorkPerScanByte);
    }
    return std::unique_ptr<CRulesMode>(new CRulesMode(std::move(rules), options.bRequireMatch, options.bStats));
#else
    RulesUsageError("--rules is not available: this nrv-edit was built without the TOML reader (libtomlplusplus-dev)");
    return nullptr;
#endif
}

NRVRESULT CRulesMode::Edit(TNrvScanDecodedData* pRecord)
{
    const NRVRESULT result = m_Rules.Edit(pRecord, &m_nLastRule);
    if (m_nLastRule == CNrvRuleSet::kNoRule) {
        if (result != NRV_OK_NOT_TRIGGERED)
            return result;
        ++m_nUnmatched;
        return m_bRequireMatch ? kNoRuleMatched : result;
    }
    ++(result < 0 ? m_Failed : m_Edited)[m_nLastRule];
    return result;
}

std::string CRulesMode::Label(size_t nRule) const
{
    std::string label = "rule " + std::to_string(nRule + 1);
    const char* pszName = m_Rules.GetRuleName(nRule);
    if (pszName != nullptr && pszName[0] != '\0') {
        label += " (";
        NrvAppendEscaped(pszName, strlen(pszName), &label);  // one line, whatever the name holds
        label += ")";
    }
    return label;
}

const char* CRulesMode::LastExpression() const
{
    return m_Rules.GetRuleExpression(m_nLastRule);
}

std::string CRulesMode::LastRuleLabel() const
{
    return m_nLastRule == CNrvRuleSet::kNoRule ? std::string() : Label(m_nLastRule);
}

std::string CRulesMode::LastRuleJson() const
{
    if (m_nLastRule == CNrvRuleSet::kNoRule)
        return "null";
    const char* pszName = m_Rules.GetRuleName(m_nLastRule);
    std::string json = "{\"index\":" + std::to_string(m_nLastRule + 1) + ",\"name\":";
    AppendJsonString(pszName, strlen(pszName), &json);
    return json + "}";
}

std::string CRulesMode::DescribeAppliedRule() const
{
    return m_nLastRule == CNrvRuleSet::kNoRule ? "no rule applied" : Label(m_nLastRule) + " applied";
}

void CRulesMode::PrintStats(FILE* pFile) const
{
    for (size_t i = 0; i < m_Rules.GetRuleCount(); ++i)
        fprintf(pFile, "stats: %s: %llu edited, %llu failed\n", Label(i).c_str(), m_Edited[i], m_Failed[i]);
    fprintf(pFile, "stats: no rule matched: %llu\n", m_nUnmatched);
}
