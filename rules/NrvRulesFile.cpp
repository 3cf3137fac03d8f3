#include "NrvRulesFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <utility>

#include <toml++/toml.h>

#include "NrvDiagnostics.h"
#include "NrvEscapes.h"
#include "NrvSuggest.h"
#include "NrvSymbologies.h"
#include "NrvTomlPositions.h"

namespace {

const char* const kRuleKeys[] = {"name",        "expression", "symbologies", "contains",
                                 "starts-with", "ends-with",  "min-size",    "max-size"};

std::string Hint(std::string_view key)
{
    const char* pszKey = NrvSuggest(key, kRuleKeys, sizeof kRuleKeys / sizeof kRuleKeys[0]);
    return pszKey != nullptr ? std::string(" (did you mean '") + pszKey + "'?)" : std::string();
}

const char* TypeName(const toml::node& node)
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

// Collects the errors of one text, each placed and with its line.
class CRulesReader {
public:
    CRulesReader(std::string_view text, std::vector<TNrvRulesError>* pErrors) : m_Text(text), m_pErrors(pErrors) {}

    bool Read(CNrvRuleSet* pSet);

private:
    void Error(TNrvTextPosition position, size_t nWidth, std::string message);
    void Error(const toml::source_region& where, std::string message);
    void ReadRule(const toml::table& rule, const std::string& label, CNrvRuleSet* pSet);
    bool ReadText(const toml::node& value, const std::string& key, const std::string& label, std::string* pText);
    bool ReadSize(const toml::node& value, const std::string& key, const std::string& label, size_t* pnSize);
    void ReadSymbologies(const toml::node& value, const std::string& label, std::vector<int>* pIds);
    void ExpressionError(const toml::node& value, const std::string& expression, NRVRESULT nCode,
                         const std::string& label);

    std::string_view m_Text;
    std::vector<TNrvRulesError>* m_pErrors;
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

bool CRulesReader::Read(CNrvRuleSet* pSet)
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
    for (auto&& [key, value] : root) {
        if (key.str() != "rule") {
            Error(key.source(), "unknown key '" + std::string(key.str()) + "': the file holds [[rule]] tables only");
            continue;
        }
        pRules = value.as_array();
        if (pRules == nullptr)
            Error(value.source(), std::string("'rule' must be tables written [[rule]], not ") + TypeName(value));
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
                Error(element.source(), label + " must be a table, not " + std::string(TypeName(element)));
        }
        if (nRule == 0)
            Error(pRules->source(), "no rule: the list of rules is empty");
    }
    // Tables list their keys in name order; people read files top down.
    std::stable_sort(m_pErrors->end() - static_cast<std::ptrdiff_t>(m_nErrors), m_pErrors->end(),
                     [](const TNrvRulesError& a, const TNrvRulesError& b) {
                         return a.nLine != b.nLine ? a.nLine < b.nLine : a.nColumn < b.nColumn;
                     });
    if (m_nErrors != 0)
        return false;
    *pSet = std::move(rules);
    return true;
}

bool CRulesReader::ReadText(const toml::node& value, const std::string& key, const std::string& label,
                            std::string* pText)
{
    const std::optional<std::string> text = value.value_exact<std::string>();
    if (!text) {
        Error(value.source(), label + ": '" + key + "' must be a string, not " + TypeName(value));
        return false;
    }
    std::string problem;
    if (!NrvUnescape(text->data(), text->size(), pText, &problem)) {
        Error(value.source(), label + ": '" + key + "': " + problem);
        return false;
    }
    if (pText->find('\0') != std::string::npos) {
        Error(value.source(), label + ": '" + key + "' cannot hold a zero byte");
        return false;
    }
    return true;
}

bool CRulesReader::ReadSize(const toml::node& value, const std::string& key, const std::string& label,
                            size_t* pnSize)
{
    const std::optional<int64_t> nSize = value.value_exact<int64_t>();
    if (!nSize || *nSize < 0) {
        Error(value.source(), label + ": '" + key + "' must be a byte count (an integer, 0 or more), not " +
                                  (nSize ? std::to_string(*nSize) : std::string(TypeName(value))));
        return false;
    }
    *pnSize = static_cast<size_t>(*nSize);
    return true;
}

void CRulesReader::ReadSymbologies(const toml::node& value, const std::string& label, std::vector<int>* pIds)
{
    const toml::array* pArray = value.as_array();
    if (pArray == nullptr) {
        Error(value.source(), label + ": 'symbologies' must be an array such as [\"Code128\", \"QRCode\"], not " +
                                  TypeName(value));
        return;
    }
    if (pArray->empty())
        Error(value.source(), label + ": 'symbologies' is empty; leave it out to accept every symbology");
    for (const toml::node& element : *pArray) {
        ENrvScanSymbologyID id = kNrvScanSymbologyNotSpecified;
        if (const std::optional<std::string> name = element.value_exact<std::string>()) {
            if (name->find('\0') == std::string::npos && NrvParseSymbology(name->c_str(), &id)) {
                pIds->push_back(id);
                continue;
            }
            Error(element.source(), label + ": unknown symbology '" + *name + "' (see nrv-edit --help for the names)");
        } else if (const std::optional<int64_t> nId = element.value_exact<int64_t>()) {
            if (*nId >= 0 && *nId < kNrvScanSymbologyLastSymbologyID) {
                pIds->push_back(static_cast<int>(*nId));
                continue;
            }
            Error(element.source(), label + ": unknown symbology " + std::to_string(*nId) + " (numbers run from 0 to " +
                                        std::to_string(kNrvScanSymbologyLastSymbologyID - 1) + ")");
        } else {
            Error(element.source(), label + ": a symbology is a name or a number, not " + TypeName(element));
        }
    }
}

void CRulesReader::ReadRule(const toml::table& rule, const std::string& label, CNrvRuleSet* pSet)
{
    const size_t nErrorsBefore = m_nErrors;
    std::string name, expression, texts[3];
    const toml::node* pExpression = nullptr;
    const toml::node* pTexts[3] = {nullptr, nullptr, nullptr};
    const toml::node* pMinimum = nullptr;
    size_t nMinimum = 0, nMaximum = 0;
    std::vector<int> symbologies;
    for (auto&& [key, value] : rule) {
        const std::string keyText(key.str());
        if (keyText == "name") {
            if (const std::optional<std::string> text = value.value_exact<std::string>())
                name = *text;
            else
                Error(value.source(), label + ": 'name' must be a string, not " + TypeName(value));
        } else if (keyText == "expression") {
            if (const std::optional<std::string> text = value.value_exact<std::string>()) {
                expression = *text;
                pExpression = &value;
            } else {
                Error(value.source(), label + ": 'expression' must be a string, not " + TypeName(value));
            }
        } else if (keyText == "contains" || keyText == "starts-with" || keyText == "ends-with") {
            const int nText = keyText == "contains" ? 0 : keyText == "starts-with" ? 1 : 2;
            if (ReadText(value, keyText, label, &texts[nText]))
                pTexts[nText] = &value;
        } else if (keyText == "min-size") {
            if (ReadSize(value, keyText, label, &nMinimum))
                pMinimum = &value;
        } else if (keyText == "max-size") {
            ReadSize(value, keyText, label, &nMaximum);
        } else if (keyText == "symbologies") {
            ReadSymbologies(value, label, &symbologies);
        } else {
            Error(key.source(), label + ": unknown key '" + keyText + "'" + Hint(keyText));
        }
    }
    // A rule that no scan can satisfy is a mistake, not a rule.
    if (nMaximum != 0 && nMinimum > nMaximum)
        Error(pMinimum->source(), label + " can never match: 'min-size' " + std::to_string(nMinimum) +
                                      " is above 'max-size' " + std::to_string(nMaximum));
    static const char* const kTextKeys[] = {"contains", "starts-with", "ends-with"};
    for (int i = 0; i < 3; ++i) {
        if (nMaximum != 0 && texts[i].size() > nMaximum)
            Error(pTexts[i]->source(), label + " can never match: '" + kTextKeys[i] + "' is " +
                                           std::to_string(texts[i].size()) + " bytes, above 'max-size' " +
                                           std::to_string(nMaximum));
    }

    if (rule.find("expression") == rule.end())
        Error(rule.source(), label + " has no 'expression'");
    if (pExpression == nullptr)
        return;
    if (expression.find('\0') != std::string::npos) {
        Error(pExpression->source(), label + ": the expression cannot hold a zero byte");
        return;
    }
    CNrvDataEditingProfile* pProfile = nullptr;
    const NRVRESULT result = pSet->AddRule(expression.c_str(), name.c_str(), &pProfile);
    if (result < 0) {
        ExpressionError(*pExpression, expression, result, label);
        return;
    }
    if (m_nErrors != nErrorsBefore)
        return;  // the set is thrown away: no need to finish the rule
    pProfile->WriteTriggerContains(texts[0].c_str());
    pProfile->WriteTriggerStartsBy(texts[1].c_str());
    pProfile->WriteTriggerEndsWith(texts[2].c_str());
    pProfile->WriteTriggerMinimumSize(nMinimum);
    pProfile->WriteTriggerMaximumSize(nMaximum);
    for (int id : symbologies)
        pProfile->AddTriggerSymbology(id);
}

// Shows the culprit inside the expression where the file writes it.
void CRulesReader::ExpressionError(const toml::node& value, const std::string& expression, NRVRESULT nCode,
                                   const std::string& label)
{
    const TNrvDiagnostic diagnostic = NrvDiagnoseParse(expression.c_str());
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

bool NrvReadRules(const char* pText, size_t nLength, CNrvRuleSet* pSet, std::vector<TNrvRulesError>* pErrors)
{
    CRulesReader reader(std::string_view(pText != nullptr ? pText : "", pText != nullptr ? nLength : 0), pErrors);
    return reader.Read(pSet);
}

bool NrvReadRulesFile(const char* pszPath, CNrvRuleSet* pSet, std::vector<TNrvRulesError>* pErrors)
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
    return NrvReadRules(text.data(), text.size(), pSet, pErrors);
}

std::string NrvFormatRulesError(const char* pszFileName, const TNrvRulesError& error)
{
    std::string out = pszFileName;
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
