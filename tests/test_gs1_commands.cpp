// The GS1 commands: their edits, the set a profile must enable for them,
// their failure sentences and explanations, and the rule set's GS1 condition.
// The reader's own rows (test_gs1.cpp) run through the commands as well.
#include <gtest/gtest.h>

#include <string>

#include "EditRows.h"
#include "NrvDiagnostics.h"
#include "NrvJson.h"
#include "NrvRuleSet.h"
#include "NrvSettings.h"

using namespace std::string_literals;

#define GS "\x1D"

namespace {

// The message: a GTIN that holds "10", a lot after a separator.
const std::string kMessage = "]C1" "0109501101530003" "17141120" "10AB-123" GS "21SER42";

TEST(Gs1Commands, EditAsTheirRowsSay)
{
    const std::vector<TEditRow> rows = {
        {"{GS1Element({DecodedData()},10)}", kMessage, NRV_OK, "AB-123"},
        {"{GS1Element({DecodedData()},01)}", kMessage, NRV_OK, "09501101530003"},  // "01" keeps its zero
        {"{GS1Element({DecodedData()},30)}", kMessage, NRV_OK, ""},  // an AI the message lacks
        // A lot right after a predefined-length element, no separator.
        {"{GS1Element({DecodedData()},10)}", "0109501101530003" "17141120" "10LOT9", NRV_OK, "LOT9"},
        {"{GS1Element({DecodedData()},{EscapeCharacter(3137)})}", kMessage, NRV_OK, "141120"},  // an AI made
        // An ai that is no AI: not one, a space in front, too long, not digits.
        {"{GS1Element({DecodedData()},23)}", kMessage, NRV_ERR_OUT_OF_RANGE, ""},
        {"{GS1Element({DecodedData()}, 10)}", kMessage, NRV_ERR_OUT_OF_RANGE, ""},
        {"{GS1Element({DecodedData()},31030)}", kMessage, NRV_ERR_OUT_OF_RANGE, ""},
        // The ai is checked before the message, so it fails alike on any scan.
        {"{GS1Element({DecodedData()},AB)}", "not GS1", NRV_ERR_OUT_OF_RANGE, ""},
        {"{GS1HumanReadable({DecodedData()})}", kMessage, NRV_OK,
         "(01)09501101530003(17)141120(10)AB-123(21)SER42"},
        {"{GS1HumanReadable({Substitute({DecodedData()},|,{EscapeCharacter(1D)})})}", "10AB|21X", NRV_OK,
         "(10)AB(21)X"},
        {"[{GS1Element({DecodedData()},17)}] {GS1HumanReadable(91x)}", kMessage, NRV_OK, "[141120] (91)x"},
        // An invalid message fails, even where the AI asked for is before its fault.
        {"{GS1Element({DecodedData()},30)}", kMessage + GS "17141320", NRV_ERR_GS1_INVALID, ""},
        // What the parser checks: counts and kinds.
        {"{GS1Element({DecodedData()})}", kMessage, NRV_ERR_PARAMETER_COUNT, ""},
        {"{GS1Element({DecodedData()},{FindFirstFromIndex({DecodedData()},0,1,0)})}", kMessage,
         NRV_ERR_INVALID_PARAMETER, ""},
    };
    for (const TEditRow& row : rows)
        ExpectEdit(row, kNrvCommandSetGs1);
    // Without the set, they are names like any unknown one; with a bit no
    // set has, the profile keeps what it had.
    ExpectEdit({"{GS1Element({DecodedData()},10)}", kMessage, NRV_ERR_UNKNOWN_COMMAND, ""});
    CNrvDataEditingProfile profile;
    EXPECT_EQ(profile.EnableCommandSets(kNrvCommandSetGs1), NRV_OK);
    EXPECT_EQ(profile.EnableCommandSets(kNrvCommandSetsAll + 1), NRV_ERR_INVALID_PARAMETER);
    EXPECT_EQ(profile.GetCommandSets(), static_cast<unsigned>(kNrvCommandSetGs1));
    // The front ends' settings enable every set unless told to keep the seed.
    CNrvSettings settings;
    for (const unsigned nSets : {kNrvCommandSetsAll + 0u, kNrvCommandSetSeed + 0u, ~0u}) {
        if (nSets != kNrvCommandSetsAll)  // the first round: the default
            settings.SetCommandSets(nSets);
        settings.Apply(&profile);
        EXPECT_EQ(profile.GetCommandSets(), nSets & kNrvCommandSetsAll);
    }
}

// Why a GS1 command failed, at the command's name in the expression, with
// the reader's sentence and the culprit's place in the text (and its bytes
// when the text is the scan).
TEST(Gs1Commands, FailuresSayWhichElementAndWhyAtTheByte)
{
    const std::string kLong(40, 'L');
    const struct {
        std::string expression;
        std::string scan;
        unsigned nSets;
        NRVRESULT code;
        size_t nOffset, nLength;  // the culprit's range in the expression
        std::string message;
    } rows[] = {
        {"{GS1Element({DecodedData()},10)}", "0109501101530004", kNrvCommandSetGs1, NRV_ERR_GS1_INVALID, 1, 10,
         "AI (01): check digit 4, expected 3, at byte 15 of the scan: \"4\""},
        {"{GS1HumanReadable({DecodedData()})}", "10" + kLong, kNrvCommandSetGs1, NRV_ERR_GS1_INVALID, 1, 16,
         "AI (10): 40 characters, at most 20, at bytes 2 to 41 of the scan: \"" + kLong.substr(0, 32) + "\"..."},
        {"{GS1HumanReadable({DecodedData()})}", "10A\x01", kNrvCommandSetGs1, NRV_ERR_GS1_INVALID, 1, 16,
         "AI (10): byte 0x01 is not one of GS1's 82 characters, at byte 3 of the scan: \"\\x01\""},
        {"{GS1HumanReadable({DecodedData()})}", "", kNrvCommandSetGs1, NRV_ERR_GS1_INVALID, 1, 16,
         "the text holds no element string, at byte 0 of the scan"},
        // A text that is not the scan: its place only.
        {"{GS1HumanReadable(0109501101530004)}", "x", kNrvCommandSetGs1, NRV_ERR_GS1_INVALID, 1, 16,
         "AI (01): check digit 4, expected 3, at byte 15 of the text"},
        {"{GS1Element({DecodedData()}, 10)}", "x", kNrvCommandSetGs1, NRV_ERR_OUT_OF_RANGE, 1, 10,
         "ai \" 10\" is not an AI of GS1 (a space after a comma is part of the parameter); write its digits, "
         "such as 01 or 3103"},
        // A profile without the set: the parse fails at the name, which is said to be an extension's.
        {"x{GS1Element({DecodedData()},10)}", "", kNrvCommandSetSeed, NRV_ERR_UNKNOWN_COMMAND, 2, 10,
         "unknown command \"GS1Element\": GS1Element is a command of the GS1 extension set, which this profile "
         "does not enable (its host enables it with EnableCommandSets; nrv-edit, rules files and the playground "
         "do unless they are told to keep the seed commands only)"},
        // A typo is matched against the commands the profile knows.
        {"{GS1Elemnt(x,10)}", "", kNrvCommandSetGs1, NRV_ERR_UNKNOWN_COMMAND, 1, 9,
         "unknown command \"GS1Elemnt\"; did you mean GS1Element?"},
        {"{GS1Elemnt(x,10)}", "", kNrvCommandSetSeed, NRV_ERR_UNKNOWN_COMMAND, 1, 9,
         "unknown command \"GS1Elemnt\""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.expression + " over " + row.scan);
        const TNrvDiagnostic failure =
            NrvExplainFailure(row.expression.c_str(), row.scan.data(), row.scan.size(), TNrvLimits(), row.nSets);
        EXPECT_EQ(failure.nCode, row.code);
        EXPECT_EQ(failure.nOffset, row.nOffset);
        EXPECT_EQ(failure.nLength, row.nLength);
        EXPECT_EQ(failure.message, row.message);
        if (row.code == NRV_ERR_UNKNOWN_COMMAND) {
            EXPECT_EQ(NrvDiagnoseParse(row.expression.c_str(), row.nSets).message, row.message);
        }
    }
    EXPECT_EQ(NrvDiagnoseParse("{DecodedData()}", kNrvCommandSetsAll + 1).nCode, NRV_ERR_INVALID_PARAMETER);
}

// An explanation lists a GS1 command's elements up to kNrvExplainGs1Elements
// (the reader's rows check what they hold), and JSON carries them.
TEST(Gs1Commands, ExplanationsListTheElements)
{
    std::string many;
    for (size_t i = 0; i < kNrvExplainGs1Elements + 1; ++i)
        many += "10" + std::to_string(i) + GS;
    for (const size_t nElements : {kNrvExplainGs1Elements, kNrvExplainGs1Elements + 1}) {
        const std::string scan = many.substr(0, many.find("10" + std::to_string(nElements)));
        const TNrvExplanation explanation = NrvExplain("{GS1HumanReadable({DecodedData()})}", scan.data(),
                                                       scan.size(), TNrvLimits(), kNrvCommandSetGs1);
        ASSERT_EQ(explanation.nodes.size(), 1u);
        EXPECT_EQ(explanation.nodes[0].gs1.size(), kNrvExplainGs1Elements);
        EXPECT_EQ(explanation.nodes[0].bGs1More, nElements > kNrvExplainGs1Elements);
    }
    std::string json;
    CNrvJsonWriter().AppendExplanation(TNrvJsonScan(),
                                       NrvExplain("{GS1Element(10A" GS "21B,21)}", "", 0, TNrvLimits(),
                                                  kNrvCommandSetGs1),
                                       &json);
    EXPECT_NE(json.find(",\"gs1\":[{\"ai\":\"10\",\"title\":\"BATCH/LOT\",\"data\":\"A\"},"
                        "{\"ai\":\"21\",\"title\":\"SERIAL\",\"data\":\"B\"}]}"),
              std::string::npos)
        << json;
}

// A rule's GS1 condition: a valid message, not one, or one that holds every
// AI listed (test_rules_file.cpp runs it through a set).
TEST(Gs1Commands, RulesTakeScansByTheirGs1Content)
{
    using C = TNrvGs1Condition;
    const struct {
        C::EMessage message;
        std::vector<std::string> ais;
        std::string scan;
        bool bHolds;
    } rows[] = {
        {C::kAnyScan, {}, "anything", true},
        {C::kValidMessage, {}, kMessage, true},
        {C::kValidMessage, {}, "0109501101530004", false},
        {C::kNotAMessage, {}, "0109501101530004", true},
        {C::kAnyScan, {"17", "10"}, kMessage, true},
        {C::kValidMessage, {"17", "3103"}, kMessage, false},
        // Its AIs, but the message is not valid after them.
        {C::kAnyScan, {"01"}, "0109501101530003" "1713", false},
        {C::kAnyScan, {"3102"}, "3103000525", false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.scan);
        C condition;
        condition.message = row.message;
        condition.ais = row.ais;
        EXPECT_EQ(condition.Holds(row.scan.data(), row.scan.size()), row.bHolds);
    }
    CNrvRuleSet set;
    C unknown;
    unknown.ais = {"10", "23"};
    EXPECT_EQ(set.SetRuleGs1Condition(0, unknown), NRV_ERR_INVALID_PARAMETER);  // no rule 0
    ASSERT_EQ(set.AddRule("x", "", nullptr), NRV_OK);
    EXPECT_EQ(set.SetRuleGs1Condition(0, unknown), NRV_ERR_INVALID_PARAMETER);  // no AI 23
    EXPECT_EQ(set.AddRule("{GS1Element(10A,10)}", "", nullptr), NRV_ERR_UNKNOWN_COMMAND);  // seed only
}

}  // namespace
