#include "NrvRuleTests.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "NrvDiagnostics.h"
#include "NrvEscapes.h"
#include "NrvJson.h"
#include "NrvShownBytes.h"
#include "NrvSymbologies.h"

namespace {

// A text as a person reads it in a message: quoted, escaped as -e writes.
std::string Shown(const std::string& bytes)
{
    std::string shown = "\"";
    NrvAppendEscaped(bytes.data(), bytes.size(), &shown);
    return shown + "\"";
}

// "NRV_ERR_OUT_OF_RANGE", or the number of a code the library does not define.
std::string CodeName(NRVRESULT nCode)
{
    const char* pszName = NrvResultCodeName(nCode);
    return pszName != nullptr ? pszName : std::to_string(nCode);
}

bool Passed(const TNrvRuleTest& test, const TNrvRuleTestOutcome& outcome)
{
    switch (test.expect) {
    case TNrvRuleTest::kOutput: return outcome.nCode >= 0 && outcome.output == test.output;
    case TNrvRuleTest::kRule: return outcome.nCode >= 0 && outcome.nRule == test.nRule;
    case TNrvRuleTest::kUntouched: return outcome.nCode == NRV_OK_NOT_TRIGGERED;
    case TNrvRuleTest::kFails: return outcome.nCode == test.nCode;
    }
    return false;
}

// Columns of a line of UTF-8 text: a byte that continues a sequence starts none.
size_t Columns(const std::string& text)
{
    return static_cast<size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

}  // namespace

TNrvRuleTestOutcome NrvRunRuleTest(CNrvRuleSet* pSet, const TNrvRuleTest& test)
{
    // The record's text is not const; the set reads it and leaves it as it was.
    std::vector<char> scan(test.scan.begin(), test.scan.end());
    const char* pszSymbology = NrvSymbologyName(test.symbology);
    if (pszSymbology == nullptr)
        pszSymbology = "";
    TNrvScanDecodedData record = {test.symbology,
                                  {strlen(pszSymbology), const_cast<char*>(pszSymbology)},
                                  {scan.size(), scan.data()}};
    TNrvRuleTestOutcome outcome;
    outcome.nCode = pSet->Edit(&record, &outcome.nRule);
    outcome.output.assign(record.String.pValue != nullptr ? record.String.pValue : "", record.String.nLength);
    outcome.bPassed = Passed(test, outcome);
    return outcome;
}

std::string NrvRuleLabel(const CNrvRuleSet& set, size_t nRule)
{
    std::string label = "rule " + std::to_string(nRule + 1);
    const char* pszName = set.GetRuleName(nRule);
    if (pszName != nullptr && pszName[0] != '\0') {
        label += " (";
        NrvAppendEscaped(pszName, strlen(pszName), &label);
        label += ")";
    }
    return label;
}

std::string NrvDescribeExpected(const TNrvRuleTest& test, const CNrvRuleSet& set)
{
    switch (test.expect) {
    case TNrvRuleTest::kOutput: return Shown(test.output);
    case TNrvRuleTest::kRule: return NrvRuleLabel(set, test.nRule);
    case TNrvRuleTest::kUntouched: return "untouched";
    case TNrvRuleTest::kFails: return CodeName(test.nCode);
    }
    return std::string();
}

std::string NrvDescribeOutcome(const TNrvRuleTestOutcome& outcome, const CNrvRuleSet& set)
{
    if (outcome.nRule == CNrvRuleSet::kNoRule)
        return outcome.nCode < 0 ? CodeName(outcome.nCode) + " (" + std::to_string(outcome.nCode) + ")"
                                 : Shown(outcome.output) + " untouched";
    const std::string from = " from " + NrvRuleLabel(set, outcome.nRule);
    if (outcome.nCode < 0)
        return CodeName(outcome.nCode) + " (" + std::to_string(outcome.nCode) + ")" + from;
    return Shown(outcome.output) + from;
}

std::string NrvFormatRuleTestFailure(const char* pszFileName, size_t nTest, const TNrvRuleTest& test,
                                     const TNrvRuleTestOutcome& outcome, const CNrvRuleSet& set)
{
    std::string out = NrvShown(pszFileName != nullptr ? pszFileName : "", kNrvBytesMessage) + ":" +
                      std::to_string(test.nLine) + ": test " + std::to_string(nTest) + ": expected " +
                      NrvDescribeExpected(test, set) + " got ";
    const size_t nGot = Columns(out);
    out += NrvDescribeOutcome(outcome, set) + "\n";
    if (test.expect != TNrvRuleTest::kOutput || outcome.nCode < 0)
        return out;
    // Under the first byte that differs, or the closing quote of the shorter.
    const std::string& expected = test.output;
    const std::string& got = outcome.output;
    const size_t nSame = static_cast<size_t>(
        std::mismatch(got.begin(), got.begin() + static_cast<std::ptrdiff_t>(std::min(got.size(), expected.size())),
                      expected.begin())
            .first -
        got.begin());
    std::string escaped;
    NrvAppendEscaped(got.data(), nSame, &escaped);
    out.append(nGot + 1 + escaped.size(), ' ');
    out += "^\n";
    return out;
}

void NrvAppendRuleTestJson(size_t nTest, const TNrvRuleTest& test, const TNrvRuleTestOutcome& outcome,
                           const CNrvRuleSet& set, std::string* pOut)
{
    const CNrvJsonWriter writer;
    auto RuleName = [&set](size_t nRule) {
        const char* pszName = set.GetRuleName(nRule);
        return std::string_view(pszName != nullptr ? pszName : "");
    };
    *pOut += "{\"test\":" + std::to_string(nTest) + ",\"line\":" + std::to_string(test.nLine) +
             ",\"passed\":" + (outcome.bPassed ? "true" : "false") + ",\"scan\":";
    writer.AppendBytes(test.scan, pOut);
    *pOut += ",\"symbology\":";
    const char* pszSymbology = NrvSymbologyName(test.symbology);
    writer.AppendText(pszSymbology != nullptr ? pszSymbology : "", pOut);
    *pOut += ",\"expected\":{";
    switch (test.expect) {
    case TNrvRuleTest::kOutput:
        *pOut += "\"output\":";
        writer.AppendBytes(test.output, pOut);
        break;
    case TNrvRuleTest::kRule:
        *pOut += "\"rule\":";
        writer.AppendRule(test.nRule, RuleName(test.nRule), pOut);
        break;
    case TNrvRuleTest::kUntouched: *pOut += "\"untouched\":true"; break;
    case TNrvRuleTest::kFails:
        *pOut += "\"fails\":";
        writer.AppendText(CodeName(test.nCode), pOut);
        break;
    }
    *pOut += "},\"got\":{\"code\":" + std::to_string(outcome.nCode) + ",\"name\":";
    const char* pszCode = NrvResultCodeName(outcome.nCode);
    if (pszCode != nullptr)
        writer.AppendText(pszCode, pOut);
    else
        *pOut += "null";
    *pOut += ",\"rule\":";
    writer.AppendRule(outcome.nRule, RuleName(outcome.nRule), pOut);
    *pOut += ",\"output\":";
    writer.AppendBytes(outcome.output, pOut);
    *pOut += "}}";
}
