// The GS1 commands: their edits, the set a profile must enable for them,
// their failure sentences and explanations, and the rule set's GS1 condition.
// The reader's own rows (test_gs1.cpp) run through the commands as well.
#include <gtest/gtest.h>

#include <string>

#include "EditRows.h"
#include "NrvDiagnostics.h"
#include "NrvJson.h"
#include "NrvParsingString.h"
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
        {"{GS1Element({DecodedData()},21)}", kMessage, NRV_OK, "SER42"},
        {"{GS1Element({DecodedData()},30)}", kMessage, NRV_OK, ""},  // an AI the message lacks
        // A lot right after a predefined-length element, no separator.
        {"{GS1Element({DecodedData()},10)}", "0109501101530003" "17141120" "10LOT9", NRV_OK, "LOT9"},
        {"{GS1Element({DecodedData()},10)}", "10A" GS "10B", NRV_OK, "A"},  // the first of two
        {"{GS1Element({DecodedData()},3103)}", "]e0" "0109501101530003" "3103000525", NRV_OK, "000525"},
        {"{GS1Element({DecodedData()},{EscapeCharacter(3137)})}", kMessage, NRV_OK, "141120"},  // an AI made
        {"{GS1Element(10ABC,10)}", "", NRV_OK, "ABC"},
        // An ai that is no AI: not one, a space in front, too short, too long, not digits.
        {"{GS1Element({DecodedData()},23)}", kMessage, NRV_ERR_OUT_OF_RANGE, ""},
        {"{GS1Element({DecodedData()}, 10)}", kMessage, NRV_ERR_OUT_OF_RANGE, ""},
        {"{GS1Element({DecodedData()},1)}", kMessage, NRV_ERR_OUT_OF_RANGE, ""},
        {"{GS1Element({DecodedData()},31030)}", kMessage, NRV_ERR_OUT_OF_RANGE, ""},
        {"{GS1Element({DecodedData()},)}", kMessage, NRV_ERR_OUT_OF_RANGE, ""},
        // The ai is checked before the message, so it fails alike on any scan.
        {"{GS1Element({DecodedData()},AB)}", "not GS1", NRV_ERR_OUT_OF_RANGE, ""},
        {"{GS1HumanReadable({DecodedData()})}", kMessage, NRV_OK,
         "(01)09501101530003(17)141120(10)AB-123(21)SER42"},
        {"{GS1HumanReadable({Substitute({DecodedData()},|,{EscapeCharacter(1D)})})}", "10AB|21X", NRV_OK,
         "(10)AB(21)X"},
        {"[{GS1Element({DecodedData()},17)}] {GS1HumanReadable(91x)}", kMessage, NRV_OK, "[141120] (91)x"},
        // Not a valid GS1 message: the edit fails and the scan stays.
        {"{GS1HumanReadable({DecodedData()})}", "", NRV_ERR_GS1_INVALID, ""},
        {"{GS1HumanReadable({DecodedData()})}", "0109501101530004", NRV_ERR_GS1_INVALID, ""},
        {"{GS1Element({DecodedData()},10)}", "10A\0B"s, NRV_ERR_GS1_INVALID, ""},
        {"{GS1Element({DecodedData()},10)}", "10AB\xC3\xA9", NRV_ERR_GS1_INVALID, ""},
        {"{GS1Element({DecodedData()},30)}", kMessage + GS "17141320", NRV_ERR_GS1_INVALID, ""},
        // What the parser checks: counts and kinds.
        {"{GS1Element({DecodedData()})}", kMessage, NRV_ERR_PARAMETER_COUNT, ""},
        {"{GS1HumanReadable({DecodedData()},x)}", kMessage, NRV_ERR_PARAMETER_COUNT, ""},
        {"{GS1Element({DecodedData()},{FindFirstFromIndex({DecodedData()},0,1,0)})}", kMessage,
         NRV_ERR_INVALID_PARAMETER, ""},
    };
    for (const TEditRow& row : rows)
        ExpectEdit(row, kNrvCommandSetGs1);
    // Without the set, they are names like any unknown one; with a bit no
    // set has, the profile keeps what it had.
    ExpectEdit({"{GS1Element({DecodedData()},10)}", kMessage, NRV_ERR_UNKNOWN_COMMAND, ""});
    ExpectEdit({"x{GS1HumanReadable(10A)}", "", NRV_ERR_UNKNOWN_COMMAND, ""});
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

void CollectTrace(bool bError, const char* pszLine, void* pContext)
{
    *static_cast<std::string*>(pContext) += (bError ? "E:" : "") + std::string(pszLine) + "\n";
}

// The seed commands parse with the same trace whether a set is enabled or
// not, and a GS1 name in a profile without the set traces as any unknown name.
TEST(Gs1Commands, TheSeedCommandsTraceAlikeWithOrWithoutTheSet)
{
    const struct {
        const char* pszExpression;
        const char* pszUnknownTwin;  // the same shape with an unknown name, for a profile without the set
    } rows[] = {
        {"A{TruncateFromBeginning({DecodedData()},2)}{Extract({DecodedData()},[,])}", nullptr},
        {"{GS1Element({DecodedData()},10)}", "{GS1Elemenx({DecodedData()},10)}"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.pszExpression);
        std::string traces[2];
        NRVRESULT codes[2];
        for (unsigned nSets : {0u, 1u}) {
            CNrvDataEditingProfile profile;
            ASSERT_EQ(profile.EnableCommandSets(nSets == 0 ? kNrvCommandSetSeed : kNrvCommandSetGs1), NRV_OK);
            CNrvParsingString::SetTraceCallback(CollectTrace, &traces[nSets]);
            codes[nSets] = profile.Parse(row.pszExpression);
            CNrvParsingString::SetTraceCallback(nullptr, nullptr);
        }
        if (row.pszUnknownTwin == nullptr) {
            EXPECT_EQ(codes[0], NRV_OK);
            EXPECT_EQ(traces[0], traces[1]);
            continue;
        }
        EXPECT_EQ(codes[0], NRV_ERR_UNKNOWN_COMMAND);
        EXPECT_EQ(codes[1], NRV_OK);
        std::string twin;
        CNrvDataEditingProfile seed;
        CNrvParsingString::SetTraceCallback(CollectTrace, &twin);
        EXPECT_EQ(seed.Parse(row.pszUnknownTwin), NRV_ERR_UNKNOWN_COMMAND);
        CNrvParsingString::SetTraceCallback(nullptr, nullptr);
        std::string renamed = traces[0];
        for (size_t i = renamed.find("GS1Element"); i != std::string::npos; i = renamed.find("GS1Element", i))
            renamed.replace(i, 10, "GS1Elemenx");
        EXPECT_EQ(renamed, twin);
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
        {"ab{GS1HumanReadable({DecodedData()})}", "]d2" "17141320", kNrvCommandSetGs1, NRV_ERR_GS1_INVALID, 3, 16,
         "AI (17): month 13 is not a month, at bytes 7 to 8 of the scan: \"13\""},
        {"{GS1HumanReadable({DecodedData()})}", "10" + kLong, kNrvCommandSetGs1, NRV_ERR_GS1_INVALID, 1, 16,
         "AI (10): 40 characters, at most 20, at bytes 2 to 41 of the scan: \"" + kLong.substr(0, 32) + "\"..."},
        {"{GS1HumanReadable({DecodedData()})}", "]Q3" "05123", kNrvCommandSetGs1, NRV_ERR_GS1_INVALID, 1, 16,
         "no AI 05 exists, at bytes 3 to 4 of the scan: \"05\""},
        {"{GS1HumanReadable({DecodedData()})}", "10A\x01", kNrvCommandSetGs1, NRV_ERR_GS1_INVALID, 1, 16,
         "AI (10): byte 0x01 is not one of GS1's 82 characters, at byte 3 of the scan: \"\\x01\""},
        {"{GS1HumanReadable({DecodedData()})}", "01095", kNrvCommandSetGs1, NRV_ERR_GS1_INVALID, 1, 16,
         "AI (01): 14 digits expected, the text ends after 3, at bytes 2 to 4 of the scan: \"095\""},
        {"{GS1HumanReadable({DecodedData()})}", "", kNrvCommandSetGs1, NRV_ERR_GS1_INVALID, 1, 16,
         "the text holds no element string, at byte 0 of the scan"},
        // A text that is not the scan: its place only.
        {"{GS1HumanReadable(0109501101530004)}", "x", kNrvCommandSetGs1, NRV_ERR_GS1_INVALID, 1, 16,
         "AI (01): check digit 4, expected 3, at byte 15 of the text"},
        {"{GS1Element({DecodedData()},23)}", "x", kNrvCommandSetGs1, NRV_ERR_OUT_OF_RANGE, 1, 10,
         "ai \"23\" is not an AI of GS1; write its digits, such as 01 or 3103"},
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

// An explanation lists a GS1 command's elements, up to its fault and to
// kNrvExplainGs1Elements, and JSON carries them.
TEST(Gs1Commands, ExplanationsListTheElements)
{
    std::string many;
    for (size_t i = 0; i < kNrvExplainGs1Elements + 1; ++i)
        many += "10" + std::to_string(i) + GS;
    const struct {
        std::string scan;
        NRVRESULT code;
        std::string elements;  // "(AI)title=data" each
        bool bMore;
    } rows[] = {
        {kMessage, NRV_OK,
         "(01)GTIN=09501101530003(17)USE BY or EXPIRY=141120(10)BATCH/LOT=AB-123(21)SERIAL=SER42", false},
        {"0109501101530003" "17141320", NRV_ERR_GS1_INVALID, "(01)GTIN=09501101530003", false},
        {"05123", NRV_ERR_GS1_INVALID, "", false},
        {many, NRV_OK, "", true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.scan);
        const TNrvExplanation explanation = NrvExplain("{GS1HumanReadable({DecodedData()})}", row.scan.data(),
                                                       row.scan.size(), TNrvLimits(), kNrvCommandSetGs1);
        EXPECT_EQ(explanation.nCode, row.code);
        ASSERT_EQ(explanation.nodes.size(), 1u);
        const TNrvExplainNode& node = explanation.nodes[0];
        std::string elements;
        for (const TNrvExplainGs1Element& element : node.gs1)
            elements += "(" + element.ai + ")" + element.pszTitle + "=" + element.data;
        EXPECT_EQ(node.bGs1More, row.bMore);
        if (row.bMore)
            EXPECT_EQ(node.gs1.size(), kNrvExplainGs1Elements);
        else
            EXPECT_EQ(elements, row.elements);
        EXPECT_TRUE(node.params[0].gs1.empty());  // DecodedData is no GS1 command
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

// A rule's GS1 condition beside its triggers: a valid message, not one, or
// one that holds every AI listed.
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
        {C::kNotAMessage, {}, kMessage, false},
        {C::kAnyScan, {"17", "10"}, kMessage, true},
        {C::kAnyScan, {"10", "10"}, kMessage, true},
        {C::kValidMessage, {"17", "3103"}, kMessage, false},
        // Its AIs, but the message is not valid after them.
        {C::kAnyScan, {"01"}, "0109501101530003" "1713", false},
        {C::kAnyScan, {"3103"}, "3103000525", true},
        {C::kAnyScan, {"3102"}, "3103000525", false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.scan);
        C condition;
        condition.message = row.message;
        condition.ais = row.ais;
        EXPECT_EQ(condition.Holds(row.scan.data(), row.scan.size()), row.bHolds);
        // Through a set: the rule takes the scan exactly when the condition holds.
        CNrvRuleSet set;
        ASSERT_EQ(set.AddRule("{GS1Element(10A,10)}", "gs1", nullptr, kNrvCommandSetGs1), NRV_OK);
        ASSERT_EQ(set.SetRuleGs1Condition(0, condition), NRV_OK);
        std::string scan = row.scan;
        TNrvScanDecodedData record = {kNrvScanSymbologyCode128, {0, nullptr}, {scan.size(), &scan[0]}};
        size_t nRule = 0;
        EXPECT_EQ(set.Edit(&record, &nRule), row.bHolds ? NRV_OK : NRV_OK_NOT_TRIGGERED);
        EXPECT_EQ(nRule, row.bHolds ? 0 : CNrvRuleSet::kNoRule);
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
