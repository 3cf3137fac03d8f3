#include "NrvRulesFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <utility>

#include <toml++/toml.h>

#include "NrvDiagnostics.h"
#include "NrvGs1.h"
#include "NrvRulesInternal.h"
#include "NrvSettings.h"
#include "NrvShownBytes.h"
#include "NrvSuggest.h"
#include "NrvTomlPositions.h"

namespace {

const char* const kRuleKeys[] = {"name",     "expression", "symbologies", "contains", "starts-with", "ends-with",
                                 "min-size", "max-size",   "gs1",         "ai",       "seed-only"};

std::string Hint(std::string_view key)
{
    const char* pszKey = NrvSuggest(key, kRuleKeys, sizeof kRuleKeys / sizeof kRuleKeys[0]);
    return pszKey != nullptr ? std::string(" (did you mean '") + pszKey + "'?)" : std::string();
}

}  // namespace

// The trigger keys as messages name them.
const TNrvSettingNames kNrvRuleSettingNames = {
    {"'min-size'", "'max-size'", "'symbologies'", "'contains'", "'starts-with'", "'ends-with'", "'max-text'",
     "'max-work'"},
    "nrv-edit --help"};

const char* NrvTomlTypeName(const toml::node& node)
{
    switch (node.type()) {
    case toml::node_type::string: return "a string";
    case toml::node_type::integer: return "an integer";
    case toml::node_type::floating_point: return "a floating-point number";
    case toml::node_type::boolean: return "a boolean";
    case toml::node_type::array: return "an array";
    case toml::node_type::table: return "a table";
    default: return "a date or time";
    }
}

namespace {

// Collects the errors of one text, each placed and with its line.
class CRulesReader {
public:
    CRulesReader(std::string_view text, std::vector<TNrvRulesError>* pErrors, unsigned nCommandSets)
        : m_Text(text), m_pErrors(pErrors), m_nCommandSets(nCommandSets)
    {
    }

    bool Read(CNrvRuleSet* pSet, std::vector<TNrvRuleTest>* pTests);

private:
    void Error(TNrvTextPosition position, size_t nWidth, std::string message);
    void Error(const toml::source_region& where, std::string message);
    // One [[rule]] table as it is read.
    struct SRule {
        std::string name, expression;
        const toml::node* pExpression = nullptr;
        CNrvSettings settings;
        // Where each setting was read, to point at when settings contradict each other.
        const toml::node* apSetting[kNrvSettingCount] = {};
        TNrvGs1Condition gs1;
        const toml::node* pGs1 = nullptr;  // where gs1 = false was read
    };
    void ReadRule(const toml::table& table, const std::string& label, CNrvRuleSet* pSet);
    void ReadKey(const toml::key& written, const toml::node& value, const std::string& label, SRule* pRule);
    bool ReadSetting(ENrvSetting setting, const toml::node& value, const std::string& label, CNrvSettings* pSettings);
    bool ReadSymbologies(const toml::node& value, const std::string& label, CNrvSettings* pSettings);
    // gs1, ai and seed-only; false for any other key.
    bool ReadGs1Key(const std::string& key, const toml::node& value, const std::string& label, SRule* pRule);
    void ExpressionError(const toml::node& value, const std::string& expression, NRVRESULT nCode,
                         const std::string& label, unsigned nCommandSets);

    std::string_view m_Text;
    std::vector<TNrvRulesError>* m_pErrors;
    unsigned m_nCommandSets;
    size_t m_nErrors = 0;
};

void CRulesReader::Error(TNrvTextPosition position, size_t nWidth, std::string message)
{
    TNrvRulesError error;
    error.nLine = position.nLine;
    error.nColumn = position.nColumn;
    error.nWidth = nWidth != 0 ? nWidth : 1;
    error.message = std::move(message);
    const size_t nStart = NrvTomlByteOffset(m_Text, {position.nLine, 1});
    if (nStart != std::string_view::npos) {
        size_t nEnd = m_Text.find('\n', nStart);
        if (nEnd == std::string_view::npos)
            nEnd = m_Text.size();
        if (nEnd > nStart && m_Text[nEnd - 1] == '\r')
            --nEnd;
        error.line.assign(m_Text.data() + nStart, nEnd - nStart);
    }
    m_pErrors->push_back(std::move(error));
    ++m_nErrors;
}

void CRulesReader::Error(const toml::source_region& where, std::string message)
{
    const size_t nWidth = where.end.line == where.begin.line && where.end.column > where.begin.column
                              ? where.end.column - where.begin.column
                              : 1;
    Error({where.begin.line, where.begin.column}, nWidth, std::move(message));
}

bool CRulesReader::Read(CNrvRuleSet* pSet, std::vector<TNrvRuleTest>* pTests)
{
    toml::table root;
    try {
        root = toml::parse(m_Text);
    } catch (const toml::parse_error& error) {
        Error(error.source(), std::string(error.description()));
        return false;
    }

    CNrvRuleSet rules;
    const toml::array* pRules = nullptr;
    const toml::node* pTestTables = nullptr;  // read once the rules they name are known
    for (auto&& [key, value] : root) {
        if (key.str() == "test") {
            pTestTables = &value;
            continue;
        }
        if (key.str() != "rule") {
            Error(key.source(), "unknown key '" + NrvShown(key.str(), kNrvBytesMessage) +
                                    "': the file holds [[rule]] and [[test]] tables only");
            continue;
        }
        pRules = value.as_array();
        if (pRules == nullptr)
            Error(value.source(), std::string("'rule' must be tables written [[rule]], not ") + NrvTomlTypeName(value));
    }
    if (pRules == nullptr && m_nErrors == 0)
        Error(TNrvTextPosition{1, 1}, 1, "no rule: write each one as a [[rule]] table");
    if (pRules != nullptr) {
        size_t nRule = 0;
        for (const toml::node& element : *pRules) {
            const std::string label = "rule " + std::to_string(++nRule);
            if (const toml::table* pTable = element.as_table())
                ReadRule(*pTable, label, &rules);
            else
                Error(element.source(), label + " must be a table, not " + std::string(NrvTomlTypeName(element)));
        }
        if (nRule == 0)
            Error(pRules->source(), "no rule: the list of rules is empty");
    }
    std::vector<TNrvRuleTest> tests;
    if (pTestTables != nullptr)
        NrvReadTestTables(
            *pTestTables, pRules,
            [this](const toml::source_region& where, std::string message) { Error(where, std::move(message)); },
            &tests);
    // Tables list their keys in name order; people read files top down.
    std::stable_sort(m_pErrors->end() - static_cast<std::ptrdiff_t>(m_nErrors), m_pErrors->end(),
                     [](const TNrvRulesError& a, const TNrvRulesError& b) {
                         return a.nLine != b.nLine ? a.nLine < b.nLine : a.nColumn < b.nColumn;
                     });
    if (m_nErrors != 0)
        return false;
    *pSet = std::move(rules);
    if (pTests != nullptr)
        *pTests = std::move(tests);
    return true;
}

// The trigger keys of a rule, each a setting; kNrvSettingCount for any other key.
ENrvSetting SettingOfKey(const std::string& key)
{
    static const struct {
        const char* pszKey;
        ENrvSetting setting;
    } kKeys[] = {{"min-size", kNrvSettingMinimumSize}, {"max-size", kNrvSettingMaximumSize},
                 {"symbologies", kNrvSettingSymbologies}, {"contains", kNrvSettingContains},
                 {"starts-with", kNrvSettingStartsWith}, {"ends-with", kNrvSettingEndsWith}};
    for (const auto& entry : kKeys)
        if (key == entry.pszKey)
            return entry.setting;
    return kNrvSettingCount;
}

bool CRulesReader::ReadSetting(ENrvSetting setting, const toml::node& value, const std::string& label,
                               CNrvSettings* pSettings)
{
    if (setting == kNrvSettingSymbologies)
        return ReadSymbologies(value, label, pSettings);
    const char* pszKey = kNrvRuleSettingNames.apszSetting[setting];
    TNrvSettingError error;
    bool bRead;
    if (setting == kNrvSettingMinimumSize || setting == kNrvSettingMaximumSize) {
        const std::optional<int64_t> nSize = value.value_exact<int64_t>();
        if (!nSize) {
            Error(value.source(), label + ": " + pszKey + " must be a byte count (an integer, 0 or more), not " +
                                      NrvTomlTypeName(value));
            return false;
        }
        bRead = pSettings->SetSize(setting, *nSize, &error);
    } else {
        const std::optional<std::string> text = value.value_exact<std::string>();
        if (!text) {
            Error(value.source(), label + ": " + pszKey + " must be a string, not " + NrvTomlTypeName(value));
            return false;
        }
        bRead = pSettings->ReadText(setting, *text, true, &error);
    }
    if (!bRead)
        Error(value.source(), label + ": " + error.Describe(kNrvRuleSettingNames));
    return bRead;
}

bool CRulesReader::ReadSymbologies(const toml::node& value, const std::string& label, CNrvSettings* pSettings)
{
    const toml::array* pArray = value.as_array();
    if (pArray == nullptr) {
        Error(value.source(), label + ": 'symbologies' must be an array such as [\"Code128\", \"QRCode\"], not " +
                                  NrvTomlTypeName(value));
        return false;
    }
    const size_t nErrorsBefore = m_nErrors;
    if (pArray->empty())
        Error(value.source(), label + ": 'symbologies' is empty; leave it out to accept every symbology");
    for (const toml::node& element : *pArray) {
        TNrvSettingError error;
        bool bRead;
        if (const std::optional<std::string> name = element.value_exact<std::string>()) {
            bRead = pSettings->AddSymbology(*name, &error);
        } else if (const std::optional<int64_t> nId = element.value_exact<int64_t>()) {
            bRead = pSettings->AddSymbology(*nId, &error);
        } else {
            Error(element.source(), label + ": a symbology is a name or a number, not " + NrvTomlTypeName(element));
            continue;
        }
        if (!bRead)
            Error(element.source(), label + ": " + error.Describe(kNrvRuleSettingNames));
    }
    return m_nErrors == nErrorsBefore;
}

bool CRulesReader::ReadGs1Key(const std::string& key, const toml::node& value, const std::string& label,
                              SRule* pRule)
{
    if (key == "gs1" || key == "seed-only") {
        const std::optional<bool> bValue = value.value_exact<bool>();
        if (!bValue)
            Error(value.source(), label + ": '" + key + "' must be true or false, not " + NrvTomlTypeName(value));
        else if (key == "seed-only")
            pRule->settings.SetCommandSets(*bValue ? kNrvCommandSetSeed : m_nCommandSets);
        else
            pRule->gs1.message = *bValue ? TNrvGs1Condition::kValidMessage : TNrvGs1Condition::kNotAMessage;
        if (bValue && key == "gs1")
            pRule->pGs1 = &value;
        return true;
    }
    if (key != "ai")
        return false;
    const toml::array* pArray = value.as_array();
    if (pArray == nullptr || pArray->empty()) {
        Error(value.source(), label + ": 'ai' must be a list of AIs such as [\"17\", \"10\"], not " +
                                  (pArray != nullptr ? std::string("an empty one") : NrvTomlTypeName(value)));
        return true;
    }
    for (const toml::node& element : *pArray) {
        const std::optional<std::string> ai = element.value_exact<std::string>();
        if (!ai)
            Error(element.source(), label + ": an AI is written as a string of digits such as \"01\", not " +
                                        NrvTomlTypeName(element));
        else if (NrvGs1LookupAi(ai->data(), ai->size()) == nullptr)
            Error(element.source(), label + ": no AI " + NrvShown(*ai, kNrvBytesMessage) + " exists in GS1's table");
        else
            pRule->gs1.ais.push_back(*ai);
    }
    return true;
}

void CRulesReader::ReadKey(const toml::key& written, const toml::node& value, const std::string& label, SRule* pRule)
{
    const std::string key(written.str());
    if (ReadGs1Key(key, value, label, pRule))
        return;
    const ENrvSetting setting = SettingOfKey(key);
    if (setting != kNrvSettingCount) {
        if (ReadSetting(setting, value, label, &pRule->settings))
            pRule->apSetting[setting] = &value;
        return;
    }
    const bool bText = key == "name" || key == "expression";
    if (!bText) {
        Error(written.source(), label + ": unknown key '" + NrvShown(key, kNrvBytesMessage) + "'" + Hint(key));
        return;
    }
    const std::optional<std::string> text = value.value_exact<std::string>();
    if (!text) {
        Error(value.source(), label + ": '" + key + "' must be a string, not " + NrvTomlTypeName(value));
    } else if (key == "name") {
        pRule->name = *text;
    } else {
        pRule->expression = *text;
        pRule->pExpression = &value;
    }
}

void CRulesReader::ReadRule(const toml::table& table, const std::string& label, CNrvRuleSet* pSet)
{
    const size_t nErrorsBefore = m_nErrors;
    SRule rule;
    rule.settings.SetCommandSets(m_nCommandSets);
    for (auto&& [key, value] : table)
        ReadKey(key, value, label, &rule);
    if (rule.gs1.message == TNrvGs1Condition::kNotAMessage && !rule.gs1.ais.empty())
        Error(rule.pGs1->source(), label + " can never match: 'gs1' is false, and only a GS1 message holds the AIs of 'ai'");
    // A rule that no scan can satisfy is a mistake, not a rule. Only what
    // was read can contradict, so the place is known; the rule's own is a
    // fallback all the same.
    std::vector<TNrvSettingError> contradictions;
    rule.settings.Check(&contradictions);
    for (const TNrvSettingError& error : contradictions) {
        const toml::node* pWhere = rule.apSetting[error.setting];
        Error(pWhere != nullptr ? pWhere->source() : table.source(),
              label + " can never match: " + error.Describe(kNrvRuleSettingNames));
    }

    if (table.find("expression") == table.end())
        Error(table.source(), label + " has no 'expression'");
    if (rule.pExpression == nullptr)
        return;
    if (rule.expression.find('\0') != std::string::npos) {
        Error(rule.pExpression->source(), label + ": the expression cannot hold a zero byte");
        return;
    }
    CNrvDataEditingProfile* pProfile = nullptr;
    const NRVRESULT result =
        pSet->AddRule(rule.expression.c_str(), rule.name.c_str(), &pProfile, rule.settings.CommandSets());
    if (result < 0) {
        ExpressionError(*rule.pExpression, rule.expression, result, label, rule.settings.CommandSets());
    } else if (m_nErrors == nErrorsBefore) {
        // Else the set is thrown away: no need to finish the rule.
        rule.settings.Apply(pProfile);
        pSet->SetRuleGs1Condition(pSet->GetRuleCount() - 1, rule.gs1);  // its AIs were checked as they were read
    }
}

// Shows the culprit inside the expression where the file writes it.
void CRulesReader::ExpressionError(const toml::node& value, const std::string& expression, NRVRESULT nCode,
                                   const std::string& label, unsigned nCommandSets)
{
    const TNrvDiagnostic diagnostic = NrvDiagnoseParse(expression.c_str(), nCommandSets);
    const char* pszName = NrvResultCodeName(nCode);
    std::string message = label + ": the expression does not parse: ";
    if (!diagnostic.command.empty())
        message += "'" + diagnostic.command + "': ";
    message += diagnostic.message.empty() ? std::string("it fails") : diagnostic.message;
    message += std::string(" (") + (pszName != nullptr ? pszName : "code") + ", " + std::to_string(nCode) + ")";

    const toml::source_region& where = value.source();
    const size_t nQuote = NrvTomlByteOffset(m_Text, {where.begin.line, where.begin.column});
    size_t nFirst = 0, nLast = 0;
    const size_t nOffset = std::min(diagnostic.nOffset, expression.size());
    const size_t nEnd = std::min(nOffset + (diagnostic.nLength != 0 ? diagnostic.nLength - 1 : 0), expression.size());
    if (nQuote == std::string_view::npos || !NrvTomlStringByte(m_Text, nQuote, expression, nOffset, &nFirst) ||
        !NrvTomlStringByte(m_Text, nQuote, expression, nEnd, &nLast)) {
        Error(where, std::move(message));
        return;
    }
    const TNrvTextPosition first = NrvTomlPosition(m_Text, nFirst);
    const TNrvTextPosition last = NrvTomlPosition(m_Text, nLast);
    const size_t nWidth = last.nLine == first.nLine && last.nColumn >= first.nColumn && diagnostic.nLength != 0
                              ? last.nColumn - first.nColumn + 1
                              : 1;
    Error(first, nWidth, std::move(message));
}

}  // namespace

bool NrvReadRules(const char* pText, size_t nLength, CNrvRuleSet* pSet, std::vector<TNrvRulesError>* pErrors,
                  unsigned nCommandSets)
{
    return NrvReadRules(pText, nLength, pSet, nullptr, pErrors, nCommandSets);
}

bool NrvReadRules(const char* pText, size_t nLength, CNrvRuleSet* pSet, std::vector<TNrvRuleTest>* pTests,
                  std::vector<TNrvRulesError>* pErrors, unsigned nCommandSets)
{
    CRulesReader reader(std::string_view(pText != nullptr ? pText : "", pText != nullptr ? nLength : 0), pErrors,
                        nCommandSets & kNrvCommandSetsAll);
    return reader.Read(pSet, pTests);
}

bool NrvReadRulesFile(const char* pszPath, CNrvRuleSet* pSet, std::vector<TNrvRulesError>* pErrors,
                      unsigned nCommandSets)
{
    return NrvReadRulesFile(pszPath, pSet, nullptr, pErrors, nCommandSets);
}

bool NrvReadRulesFile(const char* pszPath, CNrvRuleSet* pSet, std::vector<TNrvRuleTest>* pTests,
                      std::vector<TNrvRulesError>* pErrors, unsigned nCommandSets)
{
    std::string text;
    FILE* pFile = fopen(pszPath, "rb");
    bool bRead = pFile != nullptr;
    if (bRead) {
        char buffer[65536];
        size_t nRead;
        while ((nRead = fread(buffer, 1, sizeof buffer, pFile)) > 0)
            text.append(buffer, nRead);
        bRead = !ferror(pFile);
    }
    const int nErrno = errno;
    if (pFile != nullptr)
        fclose(pFile);
    if (!bRead) {
        TNrvRulesError error;
        error.nLine = 0;
        error.nColumn = 0;
        error.message = std::string("cannot read the file: ") + strerror(nErrno);
        pErrors->push_back(std::move(error));
        return false;
    }
    return NrvReadRules(text.data(), text.size(), pSet, pTests, pErrors, nCommandSets);
}

std::string NrvFormatRulesError(const char* pszFileName, const TNrvRulesError& error)
{
    std::string out = NrvShown(pszFileName, kNrvBytesMessage);
    if (error.nLine != 0)
        out += ":" + std::to_string(error.nLine) + ":" + std::to_string(error.nColumn);
    out += ": " + error.message + "\n";
    if (error.nLine == 0)
        return out;
    // The line as written (control bytes shown as '?'), and under it a caret
    // that keeps the line's tabs so that it lines up.
    std::string shown, caret;
    size_t nColumn = 1;
    for (size_t i = 0; i < error.line.size(); ++i) {
        const unsigned char c = static_cast<unsigned char>(error.line[i]);
        shown += (c < 0x20 && c != '\t') || c == 0x7F ? '?' : static_cast<char>(c);
        if ((c & 0xC0) == 0x80)
            continue;
        if (nColumn < error.nColumn)
            caret += c == '\t' ? '\t' : ' ';
        else if (nColumn == error.nColumn)
            caret += '^';
        else if (nColumn < error.nColumn + error.nWidth)
            caret += '~';
        ++nColumn;
    }
    if (nColumn <= error.nColumn) {
        caret.append(error.nColumn - nColumn, ' ');
        caret += '^';
    }
    out += "    " + shown + "\n    " + caret + "\n";
    return out;
}
