// The [[test]] tables of a rules file: each one's scan, symbology and its
// one expectation, checked against the rules of the same file.
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "NrvDiagnostics.h"
#include "NrvEscapes.h"
#include "NrvRulesInternal.h"
#include "NrvShownBytes.h"
#include "NrvSuggest.h"

namespace {

// The expectation keys, in the order of TNrvRuleTest::EExpect.
const char* const kExpectations[] = {"output", "rule", "untouched", "fails"};
const char* const kKeys[] = {"scan", "symbology", "output", "rule", "untouched", "fails"};

// A message lists at most this many rules; a file may hold thousands.
const size_t kRulesListed = 10;

std::string Quoted(std::string_view text)
{
    return "'" + NrvShown(text, kNrvBytesMessage) + "'";
}

class CTestReader {
public:
    CTestReader(const toml::array* pRules, const NrvRulesErrorSink& error);

    // False when the test has an error (each one reported).
    bool Read(const toml::table& table, const std::string& label, TNrvRuleTest* pTest);

private:
    bool Fail(const toml::node& where, std::string message);
    bool ReadBytes(const toml::node& value, const char* pszKey, const std::string& label, std::string* pBytes);
    bool ReadSymbology(const toml::node& value, const std::string& label, ENrvScanSymbologyID* pId);
    bool ReadExpectation(size_t nExpect, const toml::node& value, const std::string& label, TNrvRuleTest* pTest);
    bool ReadRule(const toml::node& value, const std::string& label, size_t* pnRule);
    bool ReadCode(const toml::node& value, const std::string& label, NRVRESULT* pnCode);
    // The rules' names as the file writes them ("" for an unnamed rule),
    // read once for all the tests.
    std::vector<std::string> m_RuleNames;
    const NrvRulesErrorSink& m_Error;
};

CTestReader::CTestReader(const toml::array* pRules, const NrvRulesErrorSink& error) : m_Error(error)
{
    if (pRules == nullptr)
        return;
    for (const toml::node& rule : *pRules) {
        const toml::table* pTable = rule.as_table();
        const toml::node* pName = pTable != nullptr ? pTable->get("name") : nullptr;
        const std::optional<std::string> name = pName != nullptr ? pName->value_exact<std::string>() : std::nullopt;
        m_RuleNames.push_back(name ? *name : std::string());
    }
}

bool CTestReader::Fail(const toml::node& where, std::string message)
{
    m_Error(where.source(), std::move(message));
    return false;
}

bool CTestReader::ReadBytes(const toml::node& value, const char* pszKey, const std::string& label,
                            std::string* pBytes)
{
    const std::optional<std::string> text = value.value_exact<std::string>();
    if (!text)
        return Fail(value, label + ": '" + pszKey + "' must be a string, not " + NrvTomlTypeName(value));
    std::string problem;
    if (!NrvUnescape(text->data(), text->size(), pBytes, &problem))
        return Fail(value, label + ": '" + pszKey + "' " + Quoted(*text) + ": " + problem);
    return true;
}

bool CTestReader::ReadSymbology(const toml::node& value, const std::string& label, ENrvScanSymbologyID* pId)
{
    TNrvSettingError error;
    if (const std::optional<std::string> name = value.value_exact<std::string>()) {
        if (NrvReadSymbology(*name, pId, &error))
            return true;
    } else if (const std::optional<int64_t> nId = value.value_exact<int64_t>()) {
        // The settings check the number's range and say it as for the rules' symbologies.
        CNrvSettings settings;
        if (settings.AddSymbology(*nId, &error)) {
            *pId = static_cast<ENrvScanSymbologyID>(settings.Symbologies()[0]);
            return true;
        }
    } else {
        return Fail(value, label + ": 'symbology' is a name or a number, not " + std::string(NrvTomlTypeName(value)));
    }
    return Fail(value, label + ": " + error.Describe(kNrvRuleSettingNames));
}

bool CTestReader::ReadRule(const toml::node& value, const std::string& label, size_t* pnRule)
{
    const std::vector<std::string>& names = m_RuleNames;
    if (const std::optional<int64_t> nNumber = value.value_exact<int64_t>()) {
        if (*nNumber >= 1 && static_cast<uint64_t>(*nNumber) <= names.size()) {
            *pnRule = static_cast<size_t>(*nNumber - 1);
            return true;
        }
        return Fail(value, label + ": there is no rule " + std::to_string(*nNumber) + "; the file has " +
                               std::to_string(names.size()) + (names.size() == 1 ? " rule" : " rules"));
    }
    const std::optional<std::string> name = value.value_exact<std::string>();
    if (!name)
        return Fail(value, label + ": 'rule' is a rule's name or its number, not " +
                               std::string(NrvTomlTypeName(value)));
    std::vector<size_t> found;
    for (size_t i = 0; i < names.size(); ++i)
        if (!name->empty() && names[i] == *name)
            found.push_back(i);
    if (found.size() == 1) {
        *pnRule = found[0];
        return true;
    }
    if (found.size() > 1)
        return Fail(value, label + ": rules " + std::to_string(found[0] + 1) + " and " +
                               std::to_string(found[1] + 1) + " are both named " + Quoted(*name) +
                               ": give the rule's number instead");
    std::string message = label + ": no rule is named " + Quoted(*name);
    if (names.empty())
        return Fail(value, message + "; the file has no rules");
    message += "; the rules are";
    for (size_t i = 0; i < names.size() && i < kRulesListed; ++i) {
        message += (i == 0 ? " " : ", ") + std::to_string(i + 1);
        message += names[i].empty() ? std::string(" (unnamed)") : " " + Quoted(names[i]);
    }
    if (names.size() > kRulesListed)
        message += " and " + std::to_string(names.size() - kRulesListed) + " more";
    return Fail(value, message);
}

bool CTestReader::ReadCode(const toml::node& value, const std::string& label, NRVRESULT* pnCode)
{
    const std::optional<std::string> name = value.value_exact<std::string>();
    if (!name)
        return Fail(value, label + ": 'fails' is a code's name such as \"NRV_ERR_OUT_OF_RANGE\", not " +
                               std::string(NrvTomlTypeName(value)));
    std::string errors;  // the names a test may expect, for the message
    NRVRESULT nCode = 0;
    for (size_t i = 0; NrvResultCodeAt(i, &nCode); ++i) {
        if (*name == NrvResultCodeName(nCode)) {
            if (nCode < 0) {
                *pnCode = nCode;
                return true;
            }
            return Fail(value, label + ": 'fails' takes an error code, and " + *name +
                                   " is not one (write 'output', 'rule' or 'untouched' for a scan that does not fail)");
        }
        if (nCode < 0)
            errors += std::string(errors.empty() ? "" : ", ") + NrvResultCodeName(nCode);
    }
    return Fail(value, label + ": unknown result code " + Quoted(*name) + " (the error codes are " + errors + ")");
}

bool CTestReader::ReadExpectation(size_t nExpect, const toml::node& value, const std::string& label,
                                  TNrvRuleTest* pTest)
{
    pTest->expect = static_cast<TNrvRuleTest::EExpect>(nExpect);
    switch (pTest->expect) {
    case TNrvRuleTest::kOutput: return ReadBytes(value, "output", label, &pTest->output);
    case TNrvRuleTest::kRule: return ReadRule(value, label, &pTest->nRule);
    case TNrvRuleTest::kFails: return ReadCode(value, label, &pTest->nCode);
    case TNrvRuleTest::kUntouched: break;
    }
    if (value.value_exact<bool>() == std::optional<bool>(true))
        return true;
    return Fail(value, label + ": 'untouched' can only be true (give another expectation instead), not " +
                           (value.is_boolean() ? std::string("false") : NrvTomlTypeName(value)));
}

// Whether a comes before b in the file: tables list their keys by name.
bool Before(const toml::node& a, const toml::node& b)
{
    const toml::source_position& pa = a.source().begin;
    const toml::source_position& pb = b.source().begin;
    return pa.line != pb.line ? pa.line < pb.line : pa.column < pb.column;
}

bool CTestReader::Read(const toml::table& table, const std::string& label, TNrvRuleTest* pTest)
{
    bool bRead = true;
    pTest->nLine = table.source().begin.line;
    const toml::node* pExpectation = nullptr;  // the first in the file
    const char* pszExpectation = nullptr;
    for (auto&& [written, value] : table) {
        const std::string_view key = written.str();
        size_t nExpect = 0;
        while (nExpect < std::size(kExpectations) && key != kExpectations[nExpect])
            ++nExpect;
        if (key == "scan") {
            bRead = ReadBytes(value, "scan", label, &pTest->scan) && bRead;
        } else if (key == "symbology") {
            bRead = ReadSymbology(value, label, &pTest->symbology) && bRead;
        } else if (nExpect == std::size(kExpectations)) {
            const char* pszKey = NrvSuggest(key, kKeys, std::size(kKeys));
            m_Error(written.source(), label + ": unknown key " + Quoted(key) +
                                          (pszKey != nullptr ? std::string(" (did you mean '") + pszKey + "'?)" : ""));
            bRead = false;
        } else if (pExpectation == nullptr) {
            bRead = ReadExpectation(nExpect, value, label, pTest) && bRead;
            pExpectation = &value;
            pszExpectation = kExpectations[nExpect];
        } else {
            // The later one in the file is the one too many.
            const bool bFirst = Before(value, *pExpectation);
            const char* pszFirst = bFirst ? kExpectations[nExpect] : pszExpectation;
            const char* pszSecond = bFirst ? pszExpectation : kExpectations[nExpect];
            bRead = Fail(bFirst ? *pExpectation : value, label + " has two expectations, '" + pszFirst + "' and '" +
                                                             pszSecond + "': give one");
            if (bFirst) {
                pExpectation = &value;
                pszExpectation = kExpectations[nExpect];
            }
        }
    }
    if (table.get("scan") == nullptr)
        bRead = Fail(table, label + " has no 'scan'");
    if (pExpectation == nullptr)
        bRead = Fail(table, label + " has no expectation: give one of 'output', 'rule', 'untouched = true' or 'fails'");
    return bRead;
}

}  // namespace

void NrvReadTestTables(const toml::node& tests, const toml::array* pRules, const NrvRulesErrorSink& error,
                       std::vector<TNrvRuleTest>* pTests)
{
    const toml::array* pArray = tests.as_array();
    if (pArray == nullptr) {
        error(tests.source(), std::string("'test' must be tables written [[test]], not ") + NrvTomlTypeName(tests));
        return;
    }
    CTestReader reader(pRules, error);
    size_t nTest = 0;
    for (const toml::node& element : *pArray) {
        const std::string label = "test " + std::to_string(++nTest);
        TNrvRuleTest test;
        if (const toml::table* pTable = element.as_table()) {
            if (reader.Read(*pTable, label, &test))
                pTests->push_back(std::move(test));
        } else {
            error(element.source(), label + " must be a table, not " + std::string(NrvTomlTypeName(element)));
        }
    }
}
