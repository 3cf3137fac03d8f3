#include "editor.h"

#include <unistd.h>

#include <cstdio>
#include <utility>

#include "NrvDiagnostics.h"
#include "NrvParsingString.h"
#include "NrvShownBytes.h"
#include "explain_print.h"
#ifdef NRV_EDIT_HAVE_RULES
#include "NrvRulesFile.h"
#endif

namespace {

void OnTraceLine(bool bError, const char* pszLine, void*)
{
    // The line quotes the expression, which may hold any byte.
    fprintf(stderr, "trace: %s%s\n", bError ? "ERROR: " : "", NrvShown(pszLine, kNrvBytesMessage).c_str());
}

// The parser's trace on standard error while it lives, with --trace.
class CTrace {
public:
    explicit CTrace(bool bOn) { CNrvParsingString::SetTraceCallback(bOn ? OnTraceLine : nullptr, nullptr); }
    ~CTrace() { CNrvParsingString::SetTraceCallback(nullptr, nullptr); }
    CTrace(const CTrace&) = delete;
    CTrace& operator=(const CTrace&) = delete;
};

class CExpressionEditor : public CScanEditor {
public:
    explicit CExpressionEditor(const char* pszExpression) : m_pszExpression(pszExpression) {}

    NRVRESULT Parse(const CNrvSettings& settings, bool bTrace)
    {
        settings.Apply(&m_Profile);  // the command sets before the parse
        const CTrace trace(bTrace);
        return m_Profile.Parse(m_pszExpression);
    }

    NRVRESULT Edit(TNrvScanDecodedData* pRecord) override { return m_Profile.Edit(pRecord); }
    const char* LastExpression() const override { return m_pszExpression; }
    unsigned LastCommandSets() const override { return m_Profile.GetCommandSets(); }

private:
    CNrvDataEditingProfile m_Profile;
    const char* m_pszExpression;
};

#ifdef NRV_EDIT_HAVE_RULES
class CRulesEditor : public CScanEditor {
public:
    CRulesEditor(CNrvRuleSet&& rules, bool bRequireMatch, bool bStats)
        : m_Rules(std::move(rules)),
          m_bRequireMatch(bRequireMatch),
          m_bStats(bStats),
          m_Edited(m_Rules.GetRuleCount(), 0),
          m_Failed(m_Rules.GetRuleCount(), 0)
    {
    }

    // Edits one scan with the first rule that takes it and counts the outcome.
    NRVRESULT Edit(TNrvScanDecodedData* pRecord) override
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

    const char* LastExpression() const override { return m_Rules.GetRuleExpression(m_nLastRule); }
    unsigned LastCommandSets() const override
    {
        const CNrvDataEditingProfile* pProfile = m_Rules.GetRuleProfile(m_nLastRule);
        return pProfile != nullptr ? pProfile->GetCommandSets() : kNrvCommandSetSeed;
    }

    std::string LastRuleLabel() const override
    {
        return m_nLastRule == CNrvRuleSet::kNoRule ? std::string() : Label(m_nLastRule);
    }

    std::string AppliedRuleLine() const override
    {
        return m_nLastRule == CNrvRuleSet::kNoRule ? "no rule applied" : Label(m_nLastRule) + " applied";
    }

    void DescribeLastRule(TNrvJsonScan* pScan) const override
    {
        pScan->bRuleSet = true;
        pScan->nRule = m_nLastRule;
        if (m_nLastRule != CNrvRuleSet::kNoRule)
            pScan->ruleName = m_Rules.GetRuleName(m_nLastRule);
    }

    // --stats: per rule the scans it edited and those whose edit failed,
    // then the scans no rule took; after the output, the last thing said.
    void Finish() const override
    {
        if (!m_bStats)
            return;
        for (size_t i = 0; i < m_Rules.GetRuleCount(); ++i)
            fprintf(stderr, "stats: %s: %llu edited, %llu failed\n", Label(i).c_str(), m_Edited[i], m_Failed[i]);
        fprintf(stderr, "stats: no rule matched: %llu\n", m_nUnmatched);
    }

private:
    // "rule 2 (Part numbers)", on one line whatever the name holds.
    std::string Label(size_t nRule) const { return NrvRuleLabel(m_Rules, nRule); }

    CNrvRuleSet m_Rules;
    bool m_bRequireMatch;
    bool m_bStats;
    size_t m_nLastRule = CNrvRuleSet::kNoRule;
    std::vector<unsigned long long> m_Edited, m_Failed;
    unsigned long long m_nUnmatched = 0;
};
#endif

}  // namespace

std::unique_ptr<CScanEditor> MakeExpressionEditor(const SOptions& options)
{
    std::unique_ptr<CExpressionEditor> pEditor(new CExpressionEditor(options.pszExpression));
    if (pEditor->Parse(options.settings, options.bTrace) < 0) {
        // Asked only now: the diagnostic parses the expression once more.
        const TNrvDiagnostic diagnostic = NrvDiagnoseParse(options.pszExpression, options.settings.CommandSets());
        if (options.bJson) {
            std::string json;
            CNrvJsonWriter().AppendParseOutcome(diagnostic, &json);
            puts(json.c_str());
        } else {
            fputs(FormatParseError(options.pszExpression, diagnostic, UseColor(options.color, STDERR_FILENO)).c_str(),
                  stderr);
        }
        return nullptr;
    }
    return pEditor;
}

#ifdef NRV_EDIT_HAVE_RULES
bool ReadRulesFile(const SOptions& options, const char* pszPath, CNrvRuleSet* pRules,
                   std::vector<TNrvRuleTest>* pTests)
{
    std::vector<TNrvRulesError> errors;
    bool bRead;
    {
        const CTrace trace(options.bTrace);
        bRead = NrvReadRulesFile(pszPath, pRules, pTests, &errors, options.settings.CommandSets());
    }
    if (!bRead) {
        for (const TNrvRulesError& error : errors)
            fputs(NrvFormatRulesError(pszPath, error).c_str(), stderr);
        fprintf(stderr, "nrv-edit: %zu error%s in the rules file %s\n", errors.size(), errors.size() == 1 ? "" : "s",
                NrvShown(pszPath, kNrvBytesMessage).c_str());
        return false;
    }
    // Every rule edits under the limits the tool's own expression would.
    for (size_t i = 0; i < pRules->GetRuleCount(); ++i)
        options.settings.ApplyLimits(pRules->GetRuleProfile(i));
    return true;
}
#endif

bool HaveRules(const char* pszOption)
{
#ifdef NRV_EDIT_HAVE_RULES
    (void)pszOption;
    return true;
#else
    fprintf(stderr, "nrv-edit: %s is not available: this nrv-edit was built without the TOML reader "
                    "(libtomlplusplus-dev)\nTry 'nrv-edit --help' for more information.\n", pszOption);
    return false;
#endif
}

std::unique_ptr<CScanEditor> MakeRulesEditor(const SOptions& options)
{
    if (!HaveRules("--rules"))
        return nullptr;
#ifdef NRV_EDIT_HAVE_RULES
    CNrvRuleSet rules;
    if (!ReadRulesFile(options, options.pszRules, &rules, nullptr))
        return nullptr;
    return std::unique_ptr<CScanEditor>(new CRulesEditor(std::move(rules), options.bRequireMatch, options.bStats));
#else
    return nullptr;
#endif
}
