// The rule set: rules tried in order, the first whose triggers hold edits
// the scan, a failing edit does not fall through, names and indexes.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "NrvRuleSet.h"

namespace {

struct TRule {
    const char* pszName;
    const char* pszExpression;
    const char* pszStartsWith;  // null: unset
    int nSymbology;             // -1: unset
    size_t nMaxSize;            // 0: unset
};

// Three rules that overlap: order decides.
const TRule kRules[] = {
    {"GS1", "gs1:{TruncateFromBeginning({DecodedData()},3)}", "]C1", kNrvScanSymbologyCode128, 0},
    {"", "part:{TruncateFromBeginning({DecodedData()},2)}", "PN", -1, 0},
    {"short", "short:{DecodedData()}", nullptr, -1, 3},
};

void Fill(CNrvRuleSet* pSet)
{
    for (const TRule& rule : kRules) {
        CNrvDataEditingProfile* pProfile = nullptr;
        ASSERT_EQ(pSet->AddRule(rule.pszExpression, rule.pszName, &pProfile), NRV_OK);
        ASSERT_NE(pProfile, nullptr);
        pProfile->WriteTriggerStartsBy(rule.pszStartsWith);
        if (rule.nSymbology >= 0)
            pProfile->AddTriggerSymbology(rule.nSymbology);
        pProfile->WriteTriggerMaximumSize(rule.nMaxSize);
    }
}

TEST(RuleSet, TheFirstRuleWhoseTriggersHoldEdits)
{
    struct Row {
        std::string scan;
        ENrvScanSymbologyID symbology;
        NRVRESULT code;
        size_t nRule;
        std::string text;
    } rows[] = {
        {"]C10123", kNrvScanSymbologyCode128, NRV_OK, 0, "gs1:0123"},
        // Same text, other symbology: rule 0 does not hold, none after it does.
        {"]C10123", kNrvScanSymbologyQRCode, NRV_OK_NOT_TRIGGERED, CNrvRuleSet::kNoRule, "]C10123"},
        {"PN42", kNrvScanSymbologyQRCode, NRV_OK, 1, "part:42"},
        // Rules 1 and 2 both hold: the earlier one wins.
        {"PN4", kNrvScanSymbologyCode128, NRV_OK, 1, "part:4"},
        {"ab", kNrvScanSymbologyCode128, NRV_OK, 2, "short:ab"},
        {"", kNrvScanSymbologyCode128, NRV_OK, 2, "short:"},
        {"abcd", kNrvScanSymbologyCode128, NRV_OK_NOT_TRIGGERED, CNrvRuleSet::kNoRule, "abcd"},
        // Rule 1 takes "PN" and fails (nothing left after two bytes): its
        // code, the scan untouched, and rule 2, which would hold, is not tried.
        {"PN", kNrvScanSymbologyCode128, NRV_ERR_OUT_OF_RANGE, 1, "PN"},
        // Zero bytes are data like any other.
        {std::string("PN\0x", 4), kNrvScanSymbologyAztec, NRV_OK, 1, std::string("part:\0x", 7)},
    };
    CNrvRuleSet set;
    Fill(&set);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.scan);
        std::vector<char> input(row.scan.begin(), row.scan.end());
        TNrvScanDecodedData record = {row.symbology, {0, nullptr}, {input.size(), input.data()}};
        size_t nRule = 12345;
        EXPECT_EQ(set.Edit(&record, &nRule), row.code);
        EXPECT_EQ(nRule, row.nRule);
        EXPECT_EQ(std::string(record.String.pValue, record.String.nLength), row.text);
        if (row.code != NRV_OK) {
            EXPECT_EQ(record.String.pValue, input.data());
        } else {
            EXPECT_EQ(record.String.pValue[record.String.nLength], '\0');
        }
    }
}

TEST(RuleSet, NamesIndexesAndRefusedRules)
{
    CNrvRuleSet set;
    Fill(&set);
    ASSERT_EQ(set.GetRuleCount(), 3u);
    EXPECT_STREQ(set.GetRuleName(0), "GS1");
    EXPECT_STREQ(set.GetRuleName(1), "");
    EXPECT_EQ(set.GetRuleName(3), nullptr);
    EXPECT_EQ(set.GetRuleName(CNrvRuleSet::kNoRule), nullptr);
    EXPECT_NE(set.GetRuleProfile(2), nullptr);
    EXPECT_EQ(set.GetRuleProfile(3), nullptr);

    // A rule whose expression does not parse is not added, and says why.
    CNrvDataEditingProfile* pProfile = nullptr;
    EXPECT_EQ(set.AddRule("{Nope()}", "bad", &pProfile), NRV_ERR_UNKNOWN_COMMAND);
    EXPECT_EQ(set.AddRule("{TruncateFromEnd({DecodedData()})}", nullptr, &pProfile), NRV_ERR_PARAMETER_COUNT);
    EXPECT_EQ(set.AddRule(nullptr, "null", &pProfile), NRV_ERR_INVALID_PARAMETER);
    EXPECT_EQ(pProfile, nullptr);
    EXPECT_EQ(set.GetRuleCount(), 3u);
    // A null name is no name; the profile pointer is optional.
    EXPECT_EQ(set.AddRule("{DecodedData()}", nullptr, nullptr), NRV_OK);
    EXPECT_STREQ(set.GetRuleName(3), "");

    TNrvScanDecodedData invalid = {kNrvScanSymbologyCode128, {0, nullptr}, {3, nullptr}};
    size_t nRule = 0;
    EXPECT_EQ(set.Edit(&invalid, &nRule), NRV_ERR_INVALID_PARAMETER);
    EXPECT_EQ(nRule, CNrvRuleSet::kNoRule);
    EXPECT_EQ(set.Edit(nullptr), NRV_ERR_INVALID_PARAMETER);

    set.RemoveAllRules();
    EXPECT_EQ(set.GetRuleCount(), 0u);
    char data[] = "PN1";
    TNrvScanDecodedData record = {kNrvScanSymbologyCode128, {0, nullptr}, {3, data}};
    EXPECT_EQ(set.Edit(&record, &nRule), NRV_OK_NOT_TRIGGERED);
    EXPECT_EQ(record.String.pValue, data);
}

TEST(RuleSet, EditedDataOutlivesEditsByOtherRulesAndMoves)
{
    CNrvRuleSet set;
    Fill(&set);
    char first[] = "PN77";
    TNrvScanDecodedData a = {kNrvScanSymbologyCode128, {0, nullptr}, {4, first}};
    ASSERT_EQ(set.Edit(&a), NRV_OK);
    // The edited text is the input of the next edit, taken by another rule.
    TNrvScanDecodedData b = a;
    size_t nRule = 0;
    ASSERT_EQ(set.Edit(&b, &nRule), NRV_OK_NOT_TRIGGERED);  // "part:77" is no rule's
    EXPECT_EQ(std::string(b.String.pValue, b.String.nLength), "part:77");
    CNrvRuleSet moved(std::move(set));
    char second[] = "xy";
    TNrvScanDecodedData c = {kNrvScanSymbologyCode128, {0, nullptr}, {2, second}};
    ASSERT_EQ(moved.Edit(&c, &nRule), NRV_OK);
    EXPECT_EQ(nRule, 2u);
    EXPECT_EQ(std::string(c.String.pValue, c.String.nLength), "short:xy");
    EXPECT_EQ(std::string(a.String.pValue, a.String.nLength), "part:77");  // rule 1's buffer, untouched
}

}  // namespace
