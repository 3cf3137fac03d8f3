// The C interface: each call checks its arguments, does its work on the
// library's C++ classes inside one try block, and turns an allocation
// failure into NRV_ERR_OUT_OF_MEMORY, so that no exception reaches C.
#include "NrvDataEdit.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "NrvCommandTable.h"
#include "NrvDataEditingProfile.h"
#include "NrvDiagnostics.h"
#include "NrvEscapes.h"
#include "NrvJson.h"
#include "NrvRuleSet.h"
#include "NrvSettings.h"
#include "NrvShownBytes.h"
#include "NrvSuggest.h"
#include "NrvSymbologies.h"
#ifdef NRV_C_HAVE_RULES
#include "NrvRulesFile.h"
#endif

static_assert(NRV_COMMAND_SET_GS1 == kNrvCommandSetGs1, "the C interface's set bits are the library's");

namespace nrv_c {

// Runs a call's body. The library throws nothing but allocation failures
// (std::bad_alloc, or std::length_error for a size no allocator could
// give), and every C++ object it touches is left as it was or usable.
template <class TBody>
NRVRESULT Guarded(TBody&& body)
{
    try {
        return body();
    } catch (...) {
        return NRV_ERR_OUT_OF_MEMORY;
    }
}

// A buffer for the caller: zero-terminated, released with NrvFree.
char* NewBuffer(const char* pData, size_t nLength)
{
    char* pBuffer = new char[nLength + 1];
    if (nLength != 0)
        memcpy(pBuffer, pData, nLength);
    pBuffer[nLength] = '\0';
    return pBuffer;
}

bool IsSymbology(int nSymbology)
{
    return nSymbology >= 0 && nSymbology < kNrvScanSymbologyLastSymbologyID;
}

// "(NRV_ERR_OUT_OF_RANGE, -43)", as nrv-edit ends its messages.
std::string CodeSuffix(NRVRESULT nCode)
{
    const char* pszName = NrvResultCodeName(nCode);
    return std::string("(") + (pszName != nullptr ? pszName : "unknown code") + ", " +
           std::to_string(static_cast<long long>(nCode)) + ")";
}

// What a TNrvErrorInfo points at: kept by the handle until it fills the
// next one.
class CErrorInfo {
public:
    void Fill(TNrvErrorInfo* pInfo, NRVRESULT nCode) const
    {
        if (pInfo == nullptr)
            return;
        *pInfo = TNrvErrorInfo();
        pInfo->nCode = nCode;
        pInfo->nOffset = m_nOffset;
        pInfo->nLength = m_nLength;
        pInfo->pszCommand = m_Command.c_str();
        pInfo->pszMessage = m_Message.c_str();
        pInfo->nRule = m_nRule;
        pInfo->nLine = m_nLine;
        pInfo->nColumn = m_nColumn;
        pInfo->nErrorCount = m_nErrorCount;
        pInfo->pszReport = m_Report.c_str();
    }
    // Nothing to say: a call that succeeded (about the rule nRule).
    void Clear(size_t nRule = NRV_NO_RULE)
    {
        *this = CErrorInfo();
        m_nRule = nRule;
    }
    // Each of these replaces what the handle held only once the new text
    // is complete: a call that runs out of memory changes nothing.
    void SetMessage(const std::string& message)
    {
        CErrorInfo info;
        info.m_Message = message;
        info.m_Report = NrvShown(message, kNrvBytesMessage) + "\n";
        *this = std::move(info);
    }
    // A diagnostic of the library's, reported as nrv-edit reports it; for
    // a parse (pszExpression given) with the expression and its carets.
    void SetDiagnostic(const TNrvDiagnostic& diagnostic, const char* pszExpression, size_t nRule,
                       const std::string& context)
    {
        CErrorInfo info;
        info.m_nOffset = diagnostic.nOffset;
        info.m_nLength = diagnostic.nLength;
        info.m_Command = diagnostic.command;
        info.m_Message = diagnostic.message.empty() ? NrvDescribeCode(diagnostic.nCode) : diagnostic.message;
        info.m_nRule = nRule;
        std::string& report = info.m_Report;
        report = context.empty() ? std::string() : context + ": ";
        if (pszExpression == nullptr && !info.m_Command.empty())
            report += info.m_Command + ": ";
        report += NrvShown(info.m_Message, kNrvBytesMessage) + " " + CodeSuffix(diagnostic.nCode) + "\n";
        if (pszExpression != nullptr) {
            std::string line, carets;
            NrvShowCulprit(pszExpression, diagnostic.nOffset, diagnostic.nLength, &line, &carets);
            report += "  " + line + "\n  " + carets + "\n";
        }
        *this = std::move(info);
    }
#ifdef NRV_C_HAVE_RULES
    void SetRulesErrors(const std::vector<TNrvRulesError>& errors, const char* pszName)
    {
        CErrorInfo info;
        info.m_nErrorCount = errors.size();
        if (!errors.empty()) {
            info.m_nLine = errors[0].nLine;
            info.m_nColumn = errors[0].nColumn;
            info.m_Message = errors[0].message;
        }
        for (const TNrvRulesError& error : errors)
            info.m_Report += NrvFormatRulesError(pszName, error);
        *this = std::move(info);
    }
#endif

private:
    size_t m_nOffset = 0, m_nLength = 0;
    std::string m_Command, m_Message, m_Report;
    size_t m_nRule = NRV_NO_RULE;
    size_t m_nLine = 0, m_nColumn = 0, m_nErrorCount = 0;
};

// What the calls need of a profile or a rule set.
class CEditor {
public:
    virtual ~CEditor() = default;
    // Edits the record as the C++ classes do; *pnRule receives the rule
    // that took it (NRV_NO_RULE for a profile's own expression).
    virtual NRVRESULT Edit(TNrvScanDecodedData* pRecord, size_t* pnRule) = 0;
    // The expression (null when none ran), the limits and the command sets
    // that a scan taken by nRule was edited with.
    virtual const char* Expression(size_t nRule) const = 0;
    virtual TNrvLimits Limits(size_t nRule) const = 0;
    virtual unsigned CommandSets(size_t nRule) const = 0;
    // For a rule set: "rule 2 (Part numbers)"; false for a profile.
    virtual bool RuleLabel(size_t nRule, std::string* pLabel) const = 0;

    CErrorInfo m_Error;
};

}  // namespace nrv_c

using nrv_c::CEditor;
using nrv_c::Guarded;

struct TNrvProfile : CEditor {
    // Every change builds a new profile and replaces this one only when it
    // is complete, so a call that runs out of memory changes nothing.
    // Until the first Parse a profile holds no expression at all, and so
    // leaves every scan as it is.
    std::unique_ptr<CNrvDataEditingProfile> pProfile;
    bool bParsed = false;
    std::string expression;
    CNrvSettings settings;

    // The settings first: they hold the command sets the parse knows.
    std::unique_ptr<CNrvDataEditingProfile> Build(const std::string* pExpression, const CNrvSettings& newSettings,
                                                  NRVRESULT* pnParse) const
    {
        std::unique_ptr<CNrvDataEditingProfile> pNew(new CNrvDataEditingProfile);
        newSettings.Apply(pNew.get());
        *pnParse = pExpression != nullptr ? pNew->Parse(pExpression->c_str()) : NRV_OK;
        return pNew;
    }
    const std::string* Current() const { return bParsed ? &expression : nullptr; }

    NRVRESULT Edit(TNrvScanDecodedData* pRecord, size_t* pnRule) override
    {
        *pnRule = NRV_NO_RULE;
        return pProfile->Edit(pRecord);
    }
    const char* Expression(size_t) const override { return bParsed ? expression.c_str() : nullptr; }
    TNrvLimits Limits(size_t) const override { return settings.Limits(); }
    unsigned CommandSets(size_t) const override { return settings.CommandSets(); }
    bool RuleLabel(size_t, std::string*) const override { return false; }
};

struct TNrvRuleSet : CEditor {
    CNrvRuleSet rules;

    NRVRESULT Edit(TNrvScanDecodedData* pRecord, size_t* pnRule) override { return rules.Edit(pRecord, pnRule); }
    const char* Expression(size_t nRule) const override { return rules.GetRuleExpression(nRule); }
    // Every rule edits under the defaults: the rules reader gives none other.
    TNrvLimits Limits(size_t) const override { return CNrvSettings().Limits(); }
    unsigned CommandSets(size_t nRule) const override
    {
        return nRule < rules.GetRuleCount() ? rules.GetRuleProfile(nRule)->GetCommandSets() : 0;
    }
    bool RuleLabel(size_t nRule, std::string* pLabel) const override
    {
        if (nRule >= rules.GetRuleCount())
            return false;
        *pLabel = "rule " + std::to_string(nRule + 1);
        const char* pszName = rules.GetRuleName(nRule);
        if (pszName[0] != '\0') {
            *pLabel += " (";
            NrvAppendEscaped(pszName, strlen(pszName), pLabel);
            *pLabel += ")";
        }
        return true;
    }
};

namespace nrv_c {
namespace {

// One scan as the C++ classes take it; the engine never writes through it.
TNrvScanDecodedData Record(const char* pData, size_t nLength, int nSymbology)
{
    const char* pszName = NrvSymbologyName(nSymbology);
    return {static_cast<ENrvScanSymbologyID>(nSymbology),
            {strlen(pszName), const_cast<char*>(pszName)},
            {nLength, const_cast<char*>(pData)}};
}

bool IsScan(const char* pData, size_t nLength, int nSymbology)
{
    return (pData != nullptr || nLength == 0) && IsSymbology(nSymbology);
}

NRVRESULT EditToBuffer(CEditor* pEditor, const char* pData, size_t nLength, int nSymbology, char** ppOutput,
                       size_t* pnOutputLength, size_t* pnRule)
{
    if (ppOutput != nullptr)
        *ppOutput = nullptr;
    if (pnOutputLength != nullptr)
        *pnOutputLength = 0;
    if (pnRule != nullptr)
        *pnRule = NRV_NO_RULE;
    if (pEditor == nullptr || ppOutput == nullptr || pnOutputLength == nullptr || !IsScan(pData, nLength, nSymbology))
        return NRV_ERR_INVALID_PARAMETER;
    return Guarded([&] {
        TNrvScanDecodedData record = Record(pData, nLength, nSymbology);
        size_t nRule = NRV_NO_RULE;
        const NRVRESULT result = pEditor->Edit(&record, &nRule);
        if (pnRule != nullptr)
            *pnRule = nRule;
        if (result < 0)
            return result;
        *ppOutput = NewBuffer(record.String.pValue, record.String.nLength);
        *pnOutputLength = record.String.nLength;
        return result;
    });
}

NRVRESULT EditIntoBuffer(CEditor* pEditor, const char* pData, size_t nLength, int nSymbology, char* pBuffer,
                         size_t nBufferSize, size_t* pnOutputLength, size_t* pnRule)
{
    if (pnOutputLength != nullptr)
        *pnOutputLength = 0;
    if (pnRule != nullptr)
        *pnRule = NRV_NO_RULE;
    if (pEditor == nullptr || (pBuffer == nullptr && nBufferSize != 0) || pnOutputLength == nullptr ||
        !IsScan(pData, nLength, nSymbology))
        return NRV_ERR_INVALID_PARAMETER;
    return Guarded([&] {
        TNrvScanDecodedData record = Record(pData, nLength, nSymbology);
        size_t nRule = NRV_NO_RULE;
        const NRVRESULT result = pEditor->Edit(&record, &nRule);
        if (pnRule != nullptr)
            *pnRule = nRule;
        if (result < 0)
            return result;
        *pnOutputLength = record.String.nLength;
        if (nBufferSize <= record.String.nLength)
            return NRV_ERR_BUFFER_TOO_SMALL;
        if (record.String.nLength != 0)
            memcpy(pBuffer, record.String.pValue, record.String.nLength);
        pBuffer[record.String.nLength] = '\0';
        return result;
    });
}

NRVRESULT EditMany(CEditor* pEditor, size_t nCount, const char* const* ppData, const size_t* pnLengths,
                   int nSymbology, NRVRESULT* pCodes, char** ppOutputs, size_t* pnEnds, size_t* pnRules)
{
    if (ppOutputs != nullptr)
        *ppOutputs = nullptr;
    const bool bArrays = nCount == 0 || (ppData != nullptr && pnLengths != nullptr && pCodes != nullptr &&
                                         pnEnds != nullptr);
    if (pEditor == nullptr || ppOutputs == nullptr || !bArrays || !IsSymbology(nSymbology))
        return NRV_ERR_INVALID_PARAMETER;
    size_t nTotal = 0;
    for (size_t i = 0; i < nCount; ++i) {
        if (ppData[i] == nullptr && pnLengths[i] != 0)
            return NRV_ERR_INVALID_PARAMETER;
        nTotal += pnLengths[i];
    }
    return Guarded([&] {
        // Most edits keep a scan's size or shrink it.
        std::string outputs;
        outputs.reserve(nTotal);
        for (size_t i = 0; i < nCount; ++i) {
            TNrvScanDecodedData record = Record(ppData[i], pnLengths[i], nSymbology);
            size_t nRule = NRV_NO_RULE;
            pCodes[i] = pEditor->Edit(&record, &nRule);
            if (pnRules != nullptr)
                pnRules[i] = nRule;
            // A failed edit leaves the record as it came.
            outputs.append(record.String.pValue != nullptr ? record.String.pValue : "", record.String.nLength);
            pnEnds[i] = outputs.size();
        }
        *ppOutputs = NewBuffer(outputs.data(), outputs.size());
        return NRV_OK;
    });
}

// Runs the edit once more and says why it fails.
NRVRESULT DescribeFailure(CEditor* pEditor, const char* pData, size_t nLength, int nSymbology, TNrvErrorInfo* pInfo)
{
    if (pEditor == nullptr || pInfo == nullptr || !IsScan(pData, nLength, nSymbology))
        return NRV_ERR_INVALID_PARAMETER;
    return Guarded([&] {
        TNrvScanDecodedData record = Record(pData, nLength, nSymbology);
        size_t nRule = NRV_NO_RULE;
        const NRVRESULT result = pEditor->Edit(&record, &nRule);
        const char* pszExpression = pEditor->Expression(nRule);
        TNrvDiagnostic failure;
        failure.nCode = result;
        if (result < 0 && pszExpression != nullptr)
            failure = NrvExplainFailure(pszExpression, pData, nLength, pEditor->Limits(nRule),
                                        pEditor->CommandSets(nRule));
        std::string label;
        pEditor->RuleLabel(nRule, &label);
        if (result < 0)
            pEditor->m_Error.SetDiagnostic(failure, nullptr, nRule, label);
        else
            pEditor->m_Error.Clear(nRule);
        pEditor->m_Error.Fill(pInfo, result);
        return NRV_OK;
    });
}

NRVRESULT Explain(CEditor* pEditor, const char* pData, size_t nLength, int nSymbology, bool bRuleSet, char** ppJson,
                  size_t* pnJsonLength)
{
    if (ppJson != nullptr)
        *ppJson = nullptr;
    if (pnJsonLength != nullptr)
        *pnJsonLength = 0;
    if (pEditor == nullptr || ppJson == nullptr || pnJsonLength == nullptr || !IsScan(pData, nLength, nSymbology))
        return NRV_ERR_INVALID_PARAMETER;
    return Guarded([&] {
        TNrvScanDecodedData record = Record(pData, nLength, nSymbology);
        size_t nRule = NRV_NO_RULE;
        TNrvJsonScan scan;
        scan.nScan = 1;
        scan.nCode = pEditor->Edit(&record, &nRule);
        scan.output = std::string_view(record.String.pValue != nullptr ? record.String.pValue : "",
                                       record.String.nLength);
        scan.bRuleSet = bRuleSet;
        scan.nRule = nRule;
        if (bRuleSet && nRule != NRV_NO_RULE)
            scan.ruleName = static_cast<TNrvRuleSet*>(pEditor)->rules.GetRuleName(nRule);
        // A scan the triggers left alone has no nodes: nothing ran.
        const char* pszExpression = pEditor->Expression(nRule);
        const TNrvExplanation explanation = scan.nCode != NRV_OK_NOT_TRIGGERED && pszExpression != nullptr
                                                ? NrvExplain(pszExpression, pData, nLength, pEditor->Limits(nRule),
                                                             pEditor->CommandSets(nRule))
                                                : TNrvExplanation();
        std::string json;
        CNrvJsonWriter().AppendExplanation(scan, explanation, &json);
        *ppJson = NewBuffer(json.data(), json.size());
        *pnJsonLength = json.size();
        return NRV_OK;
    });
}

// The settings by the names nrv-edit's options and the rules files give them.
const struct {
    const char* pszName;
    ENrvSetting setting;
} kSettings[] = {
    {"min-size", kNrvSettingMinimumSize}, {"max-size", kNrvSettingMaximumSize},
    {"symbology", kNrvSettingSymbologies}, {"contains", kNrvSettingContains},
    {"starts-with", kNrvSettingStartsWith}, {"ends-with", kNrvSettingEndsWith},
    {"max-text", kNrvSettingMaximumText},  {"max-work", kNrvSettingMaximumWork},
};
const size_t kSettingCount = sizeof kSettings / sizeof kSettings[0];

// Reads nCount settings into *pSettings; false with the sentence that says
// what is wrong, naming each setting as the caller wrote it.
bool ReadSettings(const char* const* ppszNames, const char* const* ppszValues, size_t nCount,
                  CNrvSettings* pSettings, std::string* pProblem)
{
    std::string shownNames[kNrvSettingCount];
    for (const auto& known : kSettings)
        shownNames[known.setting] = std::string("'") + known.pszName + "'";
    TNrvSettingError error;
    bool bRead = true;
    for (size_t i = 0; i < nCount && bRead; ++i) {
        std::string name = ppszNames[i];
        for (char& c : name)
            c = c == '_' ? '-' : c;
        const auto* pKnown = std::find_if(std::begin(kSettings), std::end(kSettings),
                                          [&](const auto& known) { return name == known.pszName; });
        if (pKnown == std::end(kSettings)) {
            const char* apszNames[kSettingCount];
            for (size_t j = 0; j < kSettingCount; ++j)
                apszNames[j] = kSettings[j].pszName;
            const char* pszNearest = NrvSuggest(name, apszNames, kSettingCount);
            *pProblem = "unknown setting '" + std::string(ppszNames[i]) + "'" +
                        (pszNearest != nullptr ? std::string("; did you mean '") + pszNearest + "'?" : std::string());
            return false;
        }
        shownNames[pKnown->setting] = std::string("'") + ppszNames[i] + "'";
        switch (pKnown->setting) {
        case kNrvSettingSymbologies: bRead = pSettings->AddSymbology(ppszValues[i], &error); break;
        case kNrvSettingContains:
        case kNrvSettingStartsWith:
        case kNrvSettingEndsWith: bRead = pSettings->ReadText(pKnown->setting, ppszValues[i], true, &error); break;
        default: bRead = pSettings->ReadSize(pKnown->setting, ppszValues[i], &error); break;
        }
    }
    std::vector<TNrvSettingError> contradictions;
    if (bRead && pSettings->Check(&contradictions))
        return true;
    if (!bRead)
        contradictions.assign(1, error);
    TNrvSettingNames names = {{}, nullptr};
    for (int i = 0; i < kNrvSettingCount; ++i)
        names.apszSetting[i] = shownNames[i].c_str();
    *pProblem = contradictions[0].Describe(names);
    return false;
}

#ifdef NRV_C_HAVE_RULES
// Replaces the set's rules with those read, or says why none were.
template <class TRead>
NRVRESULT ReadRules(TNrvRuleSet* pRuleSet, const char* pszName, TNrvErrorInfo* pInfo, TRead&& read)
{
    return Guarded([&] {
        CNrvRuleSet rules;
        std::vector<TNrvRulesError> errors;
        if (!read(&rules, &errors)) {
            pRuleSet->m_Error.SetRulesErrors(errors, pszName);
            pRuleSet->m_Error.Fill(pInfo, NRV_ERR_RULES_FILE);
            return NRV_ERR_RULES_FILE;
        }
        pRuleSet->rules = std::move(rules);
        pRuleSet->m_Error.Clear();
        pRuleSet->m_Error.Fill(pInfo, NRV_OK);
        return NRV_OK;
    });
}
#else
// Built without the TOML reader: every rules file and text is refused.
NRVRESULT ReadNoRules(TNrvRuleSet* pRuleSet, TNrvErrorInfo* pInfo)
{
    return Guarded([&] {
        pRuleSet->m_Error.SetMessage("rules files cannot be read: this library was built without the TOML reader "
                                     "(toml++)");
        pRuleSet->m_Error.Fill(pInfo, NRV_ERR_RULES_FILE);
        return NRV_ERR_RULES_FILE;
    });
}
#endif

}  // namespace
}  // namespace nrv_c

using namespace nrv_c;

extern "C" {

NRVRESULT NrvGetVersion(int* pnMajor, int* pnMinor, int* pnPatch)
{
    if (pnMajor == nullptr || pnMinor == nullptr || pnPatch == nullptr)
        return NRV_ERR_INVALID_PARAMETER;
    *pnMajor = NRV_VERSION_MAJOR;
    *pnMinor = NRV_VERSION_MINOR;
    *pnPatch = NRV_VERSION_PATCH;
    return NRV_OK;
}

NRVRESULT NrvGetResultName(NRVRESULT nCode, const char** ppszName, const char** ppszMeaning)
{
    if (ppszName == nullptr)
        return NRV_ERR_INVALID_PARAMETER;
    *ppszName = NrvResultCodeName(nCode);
    if (ppszMeaning != nullptr)
        *ppszMeaning = NrvResultCodeMeaning(nCode);
    return *ppszName != nullptr ? NRV_OK : NRV_ERR_INVALID_PARAMETER;
}

NRVRESULT NrvGetSymbology(const char* pszName, int* pnSymbology)
{
    if (pszName == nullptr || pnSymbology == nullptr)
        return NRV_ERR_INVALID_PARAMETER;
    ENrvScanSymbologyID id;
    if (!NrvParseSymbology(pszName, &id))
        return NRV_ERR_INVALID_PARAMETER;
    *pnSymbology = id;
    return NRV_OK;
}

void NrvFree(void* pBuffer)
{
    delete[] static_cast<char*>(pBuffer);
}

NRVRESULT NrvProfileNew(TNrvProfile** ppProfile)
{
    if (ppProfile == nullptr)
        return NRV_ERR_INVALID_PARAMETER;
    *ppProfile = nullptr;
    return Guarded([&] {
        std::unique_ptr<TNrvProfile> pNew(new TNrvProfile);
        NRVRESULT nParse = NRV_OK;
        pNew->settings.SetCommandSets(kNrvCommandSetSeed);  // the eighteen, until the host enables more
        pNew->pProfile = pNew->Build(nullptr, pNew->settings, &nParse);
        *ppProfile = pNew.release();
        return NRV_OK;
    });
}

void NrvProfileFree(TNrvProfile* pProfile)
{
    delete pProfile;
}

NRVRESULT NrvProfileParse(TNrvProfile* pProfile, const char* pszExpression, TNrvErrorInfo* pInfo)
{
    if (pProfile == nullptr || pszExpression == nullptr)
        return NRV_ERR_INVALID_PARAMETER;
    return Guarded([&] {
        std::string expression = pszExpression;
        NRVRESULT result = NRV_OK;
        std::unique_ptr<CNrvDataEditingProfile> pNew = pProfile->Build(&expression, pProfile->settings, &result);
        // Asked only now: the diagnosis parses the expression once more.
        if (result < 0)
            pProfile->m_Error.SetDiagnostic(NrvDiagnoseParse(pszExpression, pProfile->settings.CommandSets()),
                                            pszExpression, NRV_NO_RULE,
                                            std::string());
        else
            pProfile->m_Error.Clear();
        pProfile->pProfile = std::move(pNew);
        pProfile->expression = std::move(expression);
        pProfile->bParsed = true;
        pProfile->m_Error.Fill(pInfo, result);
        return result;
    });
}

NRVRESULT NrvProfileSetSettings(TNrvProfile* pProfile, const char* const* ppszNames, const char* const* ppszValues,
                                size_t nCount, TNrvErrorInfo* pInfo)
{
    if (pProfile == nullptr || (nCount != 0 && (ppszNames == nullptr || ppszValues == nullptr)))
        return NRV_ERR_INVALID_PARAMETER;
    for (size_t i = 0; i < nCount; ++i) {
        if (ppszNames[i] == nullptr || ppszValues[i] == nullptr)
            return NRV_ERR_INVALID_PARAMETER;
    }
    return Guarded([&] {
        CNrvSettings settings;
        settings.SetCommandSets(pProfile->settings.CommandSets());
        std::string problem;
        if (!ReadSettings(ppszNames, ppszValues, nCount, &settings, &problem)) {
            pProfile->m_Error.SetMessage(std::move(problem));
            pProfile->m_Error.Fill(pInfo, NRV_ERR_INVALID_PARAMETER);
            return NRV_ERR_INVALID_PARAMETER;
        }
        NRVRESULT nParse = NRV_OK;
        std::unique_ptr<CNrvDataEditingProfile> pNew = pProfile->Build(pProfile->Current(), settings, &nParse);
        pProfile->pProfile = std::move(pNew);
        pProfile->settings = std::move(settings);
        pProfile->m_Error.Clear();
        pProfile->m_Error.Fill(pInfo, NRV_OK);
        return NRV_OK;
    });
}

NRVRESULT NrvProfileEnableCommandSets(TNrvProfile* pProfile, unsigned nSets, TNrvErrorInfo* pInfo)
{
    if (pProfile == nullptr || (nSets & ~static_cast<unsigned>(kNrvCommandSetsAll)) != 0)
        return NRV_ERR_INVALID_PARAMETER;
    return Guarded([&] {
        CNrvSettings settings = pProfile->settings;
        settings.SetCommandSets(nSets);
        NRVRESULT result = NRV_OK;
        std::unique_ptr<CNrvDataEditingProfile> pNew = pProfile->Build(pProfile->Current(), settings, &result);
        if (result < 0)
            pProfile->m_Error.SetDiagnostic(NrvDiagnoseParse(pProfile->expression.c_str(), nSets),
                                            pProfile->expression.c_str(), NRV_NO_RULE, std::string());
        else
            pProfile->m_Error.Clear();
        pProfile->pProfile = std::move(pNew);
        pProfile->settings = std::move(settings);
        pProfile->m_Error.Fill(pInfo, result);
        return result;
    });
}

NRVRESULT NrvProfileEdit(TNrvProfile* pProfile, const char* pData, size_t nLength, int nSymbology, char** ppOutput,
                         size_t* pnOutputLength)
{
    return EditToBuffer(pProfile, pData, nLength, nSymbology, ppOutput, pnOutputLength, nullptr);
}

NRVRESULT NrvProfileEditInto(TNrvProfile* pProfile, const char* pData, size_t nLength, int nSymbology, char* pBuffer,
                             size_t nBufferSize, size_t* pnOutputLength)
{
    return EditIntoBuffer(pProfile, pData, nLength, nSymbology, pBuffer, nBufferSize, pnOutputLength, nullptr);
}

NRVRESULT NrvProfileEditMany(TNrvProfile* pProfile, size_t nCount, const char* const* ppData,
                             const size_t* pnLengths, int nSymbology, NRVRESULT* pCodes, char** ppOutputs,
                             size_t* pnEnds)
{
    return EditMany(pProfile, nCount, ppData, pnLengths, nSymbology, pCodes, ppOutputs, pnEnds, nullptr);
}

NRVRESULT NrvProfileDescribeFailure(TNrvProfile* pProfile, const char* pData, size_t nLength, int nSymbology,
                                    TNrvErrorInfo* pInfo)
{
    return DescribeFailure(pProfile, pData, nLength, nSymbology, pInfo);
}

NRVRESULT NrvProfileExplain(TNrvProfile* pProfile, const char* pData, size_t nLength, int nSymbology, char** ppJson,
                            size_t* pnJsonLength)
{
    return Explain(pProfile, pData, nLength, nSymbology, false, ppJson, pnJsonLength);
}

NRVRESULT NrvRuleSetNew(TNrvRuleSet** ppRuleSet)
{
    if (ppRuleSet == nullptr)
        return NRV_ERR_INVALID_PARAMETER;
    *ppRuleSet = nullptr;
    return Guarded([&] {
        *ppRuleSet = new TNrvRuleSet;
        return NRV_OK;
    });
}

void NrvRuleSetFree(TNrvRuleSet* pRuleSet)
{
    delete pRuleSet;
}

NRVRESULT NrvRuleSetReadText(TNrvRuleSet* pRuleSet, const char* pText, size_t nLength, const char* pszName,
                             TNrvErrorInfo* pInfo)
{
    if (pRuleSet == nullptr || (pText == nullptr && nLength != 0))
        return NRV_ERR_INVALID_PARAMETER;
#ifdef NRV_C_HAVE_RULES
    return ReadRules(pRuleSet, pszName != nullptr ? pszName : "rules", pInfo,
                     [&](CNrvRuleSet* pRules, std::vector<TNrvRulesError>* pErrors) {
                         return NrvReadRules(pText, nLength, pRules, pErrors);
                     });
#else
    (void)pszName;
    return ReadNoRules(pRuleSet, pInfo);
#endif
}

NRVRESULT NrvRuleSetReadFile(TNrvRuleSet* pRuleSet, const char* pszPath, TNrvErrorInfo* pInfo)
{
    if (pRuleSet == nullptr || pszPath == nullptr)
        return NRV_ERR_INVALID_PARAMETER;
#ifdef NRV_C_HAVE_RULES
    return ReadRules(pRuleSet, pszPath, pInfo, [&](CNrvRuleSet* pRules, std::vector<TNrvRulesError>* pErrors) {
        return NrvReadRulesFile(pszPath, pRules, pErrors);
    });
#else
    return ReadNoRules(pRuleSet, pInfo);
#endif
}

NRVRESULT NrvRuleSetGetRuleCount(const TNrvRuleSet* pRuleSet, size_t* pnCount)
{
    if (pRuleSet == nullptr || pnCount == nullptr)
        return NRV_ERR_INVALID_PARAMETER;
    *pnCount = pRuleSet->rules.GetRuleCount();
    return NRV_OK;
}

NRVRESULT NrvRuleSetGetRuleName(const TNrvRuleSet* pRuleSet, size_t nRule, const char** ppszName)
{
    if (pRuleSet == nullptr || ppszName == nullptr)
        return NRV_ERR_INVALID_PARAMETER;
    *ppszName = pRuleSet->rules.GetRuleName(nRule);
    return *ppszName != nullptr ? NRV_OK : NRV_ERR_OUT_OF_RANGE;
}

NRVRESULT NrvRuleSetEdit(TNrvRuleSet* pRuleSet, const char* pData, size_t nLength, int nSymbology, char** ppOutput,
                         size_t* pnOutputLength, size_t* pnRule)
{
    return EditToBuffer(pRuleSet, pData, nLength, nSymbology, ppOutput, pnOutputLength, pnRule);
}

NRVRESULT NrvRuleSetEditInto(TNrvRuleSet* pRuleSet, const char* pData, size_t nLength, int nSymbology, char* pBuffer,
                             size_t nBufferSize, size_t* pnOutputLength, size_t* pnRule)
{
    return EditIntoBuffer(pRuleSet, pData, nLength, nSymbology, pBuffer, nBufferSize, pnOutputLength, pnRule);
}

NRVRESULT NrvRuleSetEditMany(TNrvRuleSet* pRuleSet, size_t nCount, const char* const* ppData, const size_t* pnLengths,
                             int nSymbology, NRVRESULT* pCodes, char** ppOutputs, size_t* pnEnds, size_t* pnRules)
{
    return EditMany(pRuleSet, nCount, ppData, pnLengths, nSymbology, pCodes, ppOutputs, pnEnds, pnRules);
}

NRVRESULT NrvRuleSetDescribeFailure(TNrvRuleSet* pRuleSet, const char* pData, size_t nLength, int nSymbology,
                                    TNrvErrorInfo* pInfo)
{
    return DescribeFailure(pRuleSet, pData, nLength, nSymbology, pInfo);
}

NRVRESULT NrvRuleSetExplain(TNrvRuleSet* pRuleSet, const char* pData, size_t nLength, int nSymbology, char** ppJson,
                            size_t* pnJsonLength)
{
    return Explain(pRuleSet, pData, nLength, nSymbology, true, ppJson, pnJsonLength);
}

}  // extern "C"
