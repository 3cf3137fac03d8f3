// Diagnostics: where and why an expression does not parse, why an edit
// fails, the explain tree, and that every code reported equals the engine's.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <thread>
#include <vector>

#include "NrvCommandTable.h"
#include "NrvDataEditingProfile.h"
#include "NrvDiagnostics.h"
#include "NrvParsingString.h"

namespace {

using namespace std::string_literals;

TEST(Diagnostics, PointAtTheCulpritOfEveryParseError)
{
    struct Row {
        const char* pszExpression;
        NRVRESULT nCode;
        size_t nOffset, nLength;
        const char* pszCommand;
        const char* pszMessage;
    } rows[] = {
        // Unknown names, with a suggestion for a case difference or one or two edits.
        {"x{Frobnicate({DecodedData()})}", -83, 2, 10, "", "unknown command \"Frobnicate\""},
        {"{decodedData()}", -83, 1, 11, "", "unknown command \"decodedData\"; did you mean DecodedData?"},
        {"{DECODEDDATA()}", -83, 1, 11, "", "unknown command \"DECODEDDATA\"; did you mean DecodedData?"},
        {"{DecodedDat()}", -83, 1, 10, "", "unknown command \"DecodedDat\"; did you mean DecodedData?"},
        {"{DecodedDataa()}", -83, 1, 12, "", "unknown command \"DecodedDataa\"; did you mean DecodedData?"},
        {"{DeocdedData()}", -83, 1, 11, "", "unknown command \"DeocdedData\"; did you mean DecodedData?"},
        {"{TruncateFromBegining({DecodedData()},2)}", -83, 1, 20, "",
         "unknown command \"TruncateFromBegining\"; did you mean TruncateFromBeginning?"},
        {"{Extrct({DecodedData()},a,b)}", -83, 1, 6, "", "unknown command \"Extrct\"; did you mean Extract?"},
        {"{Substr({DecodedData()},0,1)}", -83, 1, 6, "", "unknown command \"Substr\""},
        {"{ DecodedData()}", -83, 1, 12, "",
         "unknown command \" DecodedData\": spaces are part of a name; did you mean DecodedData?"},
        {"{DecodedData ()}", -83, 1, 12, "",
         "unknown command \"DecodedData \": spaces are part of a name; did you mean DecodedData?"},
        {"{Decoded\tData()}", -83, 1, 12, "", "unknown command \"Decoded\\tData\"; did you mean DecodedData?"},
        // Spaces around a name that is no command either: the nearest one, or nothing for spaces alone.
        {"{ DecodedDat()}", -83, 1, 11, "", "unknown command \" DecodedDat\"; did you mean DecodedData?"},
        {"{ ()}", -83, 1, 1, "", "unknown command \" \""},
        {"{}", -83, 0, 1, "", "a command name is missing after this {"},
        {"{(x)}", -83, 0, 1, "", "a command name is missing after this {"},
        {"ab{", -83, 2, 1, "", "a command name is missing after this {"},
        {"a{MakeUpperCase({Nope()})}", -83, 17, 4, "", "unknown command \"Nope\""},
        // Parameter counts: the command's name, what it takes, what is written.
        {"{TruncateFromBeginning({DecodedData()},2,3)}", -84, 1, 21, "TruncateFromBeginning",
         "TruncateFromBeginning takes 2 parameters (text, count), but 3 are written"},
        {"{TruncateFromEnd({DecodedData()})}", -84, 1, 15, "TruncateFromEnd",
         "TruncateFromEnd takes 2 parameters (text, count), but 1 is written"},
        {"{DecodedData(x)}", -84, 1, 11, "DecodedData", "DecodedData takes no parameters, but 1 is written"},
        {"{Replace({DecodedData()},a)}", -84, 1, 7, "Replace",
         "Replace takes 3 parameters (text, search, replacement), but 2 are written"},
        {"{FindFirstFromIndex({DecodedData()},0,a,0,1)}", -84, 1, 18, "FindFirstFromIndex",
         "FindFirstFromIndex takes 4 parameters (text, start, search, offset), but 5 are written"},
        {"{MakeUpperCase()}", -84, 1, 13, "MakeUpperCase", "MakeUpperCase takes 1 parameter (text), but none is written"},
        {"{MakeUpperCase({TruncateFromEnd({DecodedData()},1,2)})}", -84, 16, 15, "TruncateFromEnd",
         "TruncateFromEnd takes 2 parameters (text, count), but 3 are written"},
        {"{Substring(,{DecodedData()})}", -84, 1, 9, "Substring",
         "Substring takes 3 parameters (text, start, stop), but 1 is written (a comma before the first parameter "
         "does not count)"},
        // Parameters that do not fit: which one, and why.
        {"{TruncateFromEnd({DecodedData()},{DecodedData()})}", -18, 33, 15, "TruncateFromEnd",
         "parameter 2 (count) of TruncateFromEnd must be a number, but DecodedData gives a text"},
        {"{TruncateFromEnd({DecodedData()},abc)}", -18, 33, 3, "TruncateFromEnd",
         "parameter 2 (count) of TruncateFromEnd must be a number, but \"abc\" is a text"},
        {"{TruncateFromEnd({DecodedData()},)}", -18, 33, 0, "TruncateFromEnd",
         "parameter 2 (count) of TruncateFromEnd must be a number, but it is empty"},
        {"{TruncateFromEnd({DecodedData()},99999999999)}", -18, 33, 11, "TruncateFromEnd",
         "parameter 2 (count) of TruncateFromEnd must be a number, but \"99999999999\" does not fit in 32 bits"},
        {"{TruncateFromEnd({DecodedData()},2x)}", -18, 33, 2, "TruncateFromEnd",
         "parameter 2 (count) of TruncateFromEnd must be a number, but \"2x\" is a text"},
        {"{Substring({DecodedData()},0,{MakeUpperCase(1)})}", -18, 29, 18, "Substring",
         "parameter 3 (stop) of Substring must be a number, but MakeUpperCase gives a text"},
        {"{MakeUpperCase({FindFirstFromIndex({DecodedData()},0,a,0)})}", -18, 15, 43, "MakeUpperCase",
         "parameter 1 (text) of MakeUpperCase must be a text, but FindFirstFromIndex gives a number"},
        {"{InsertAfterIndex({DecodedData()},a,b)}", -18, 34, 1, "InsertAfterIndex",
         "parameter 2 (index) of InsertAfterIndex must be a number, but \"a\" is a text"},
        {"{MakeUpperCase(a{DecodedData()})}", -18, 15, 16, "MakeUpperCase",
         "parameter 1 (text) of MakeUpperCase is written as 2 pieces, \"a\" and DecodedData; a parameter is one "
         "text, one number or one command"},
        {"{MakeUpperCase({DecodedData()}{DecodedData()})}", -18, 15, 30, "MakeUpperCase",
         "parameter 1 (text) of MakeUpperCase is written as 2 pieces, DecodedData and DecodedData; a parameter is "
         "one text, one number or one command"},
        {"{MakeUpperCase({DecodedData()} )}", -18, 15, 16, "MakeUpperCase",
         "parameter 1 (text) of MakeUpperCase is written as 2 pieces, DecodedData and \" \"; a parameter is one "
         "text, one number or one command"},
        {"{TruncateFromEnd({DecodedData()},1{DecodedData()}2)}", -18, 33, 17, "TruncateFromEnd",
         "parameter 2 (count) of TruncateFromEnd is written as 3 pieces, \"1\", DecodedData and \"2\"; a parameter "
         "is one text, one number or one command"},
        {"{DecodedData( )}", -18, 13, 1, "DecodedData",
         "DecodedData takes no parameters, but \" \" is written between its parentheses"},
        {"{DecodedDataWithoutTrailer(   )}", -18, 27, 3, "DecodedDataWithoutTrailer",
         "DecodedDataWithoutTrailer takes no parameters, but \"   \" is written between its parentheses"},
        {"{EscapeCharacter(,x)}", -18, 17, 2, "EscapeCharacter",
         "EscapeCharacter takes 1 parameter (hex), but \",x\" is cut into 2 at its commas (a comma first opens an "
         "empty parameter)"},
        // The empty first text shifts every later one: no parameter is named after its neighbour.
        {"{EscapeCharacter(,a{DecodedData()})}", -18, 17, 17, "EscapeCharacter",
         "EscapeCharacter takes 1 parameter (hex), but \",a{DecodedData()}\" is cut into 2 at its commas (a comma "
         "first opens an empty parameter)"},
        {"{Replace(,a{DecodedData()},b,c)}", -18, 9, 21, "Replace",
         "Replace takes 3 parameters (text, search, replacement), but \",a{DecodedData()},b,c\" is cut into 4 at its "
         "commas (a comma first opens an empty parameter)"},
        // Delimiters: the opening one without a partner.
        {"{{DecodedData()}", -52, 0, 1, "", "this { has no matching }"},
        {"{MakeUpperCase(a{x}", -52, 0, 1, "", "this { has no matching }"},
        {"ok {MakeUpperCase({DecodedData()}", -52, 3, 1, "", "this { has no matching }"},
    };
    CNrvDataEditingProfile profile;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.pszExpression);
        const TNrvDiagnostic diagnostic = NrvDiagnoseParse(row.pszExpression);
        EXPECT_EQ(profile.Parse(row.pszExpression), diagnostic.nCode);
        EXPECT_EQ(row.nCode, diagnostic.nCode);
        EXPECT_EQ(row.nOffset, diagnostic.nOffset);
        EXPECT_EQ(row.nLength, diagnostic.nLength);
        EXPECT_EQ(row.pszCommand, diagnostic.command);
        EXPECT_EQ(row.pszMessage, diagnostic.message);
    }
}

TEST(Diagnostics, PointAtTheBraceWhereNestingPassesTheLimit)
{
    std::string expression = "{DecodedData()}";
    for (int i = 1; i < 100; ++i)
        expression = "{MakeUpperCase(" + expression + ")}";
    EXPECT_EQ(NRV_OK, NrvDiagnoseParse(expression.c_str()).nCode);  // 100 deep, the deepest allowed
    expression = "{MakeUpperCase(" + expression + ")}";
    const TNrvDiagnostic diagnostic = NrvDiagnoseParse(expression.c_str());
    EXPECT_EQ(NRV_ERR_SYNTAX, diagnostic.nCode);
    EXPECT_EQ(100 * strlen("{MakeUpperCase("), diagnostic.nOffset);  // the 101st '{', counted from 1
    EXPECT_EQ(1u, diagnostic.nLength);
    EXPECT_EQ("commands are nested more than 100 deep: this { opens one level too many", diagnostic.message);
}

TEST(Diagnostics, NameTheCommandAndTheValuesThatFailedAnEdit)
{
    struct Row {
        const char* pszExpression;
        const char* pszData;
        size_t nOffset, nLength;
        const char* pszCommand;
        const char* pszMessage;
    } rows[] = {
        {"{TruncateFromBeginning({DecodedData()},20)}", "ABC", 1, 21, "TruncateFromBeginning",
         "count 20 is not less than the length 3 of the text"},
        {"{TruncateFromEnd({DecodedData()},-5)}", "ABC", 1, 15, "TruncateFromEnd", "count -5 is negative"},
        {"{TruncateFromEnd({DecodedData()},{FindFirstFromIndex({DecodedData()},-1,z,0)})}", "", 1, 15,
         "TruncateFromEnd", "count -2 (nothing found) removes nothing, and the text is empty"},
        {"{Replace({DecodedData()},ABCD,x)}", "ABC", 1, 7, "Replace",
         "the text (length 3) is not longer than search (length 4)"},
        {"{Substitute({DecodedData()},,x)}", "ABC", 1, 10, "Substitute", "set is empty: there is no byte to replace"},
        {"{EscapeCharacter({DecodedData()})}", "", 1, 15, "EscapeCharacter",
         "hex is empty: there are no digits to turn into bytes"},
        {"{InsertAfterIndex({DecodedData()},3,x)}", "ABC", 1, 16, "InsertAfterIndex",
         "index 3 is not less than the length 3 of the text"},
        {"{InsertBeforeIndex({DecodedData()},-7,x)}", "ABC", 1, 17, "InsertBeforeIndex", "index -7 is negative"},
        {"{FindFirstFromIndex({DecodedData()},5,a,0)}", "ABC", 1, 18, "FindFirstFromIndex",
         "start 5 is not less than the length 3 of the text"},
        {"{FindLastFromIndex({DecodedData()},-3,a,0)}", "ABC", 1, 17, "FindLastFromIndex", "start -3 is negative"},
        {"{TruncateAfterIndex({DecodedData()},-3,0)}", "ABC", 1, 18, "TruncateAfterIndex", "index -3 is negative"},
        {"{TruncateBeforeIndex({DecodedData()},-9,0)}", "ABC", 1, 19, "TruncateBeforeIndex", "index -9 is negative"},
        {"{Extract({DecodedData()},,])}", "ABC", 1, 7, "Extract", "startMarker is empty"},
        {"{Extract({DecodedData()},[,)}", "ABC", 1, 7, "Extract", "stopMarker is empty"},
        {"{Extract({DecodedData()},[,])}", "", 1, 7, "Extract", "the text is empty"},
        // The first to fail, deepest first: the inner command, not its caller or a later one.
        {"x{MakeUpperCase({TruncateFromEnd({DecodedData()},9)})}{TruncateFromEnd({DecodedData()},9)}", "ABC", 17, 15,
         "TruncateFromEnd", "count 9 is not less than the length 3 of the text"},
    };
    CNrvDataEditingProfile profile;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.pszExpression);
        const TNrvExplanation explanation = NrvExplain(row.pszExpression, row.pszData, strlen(row.pszData));
        ASSERT_EQ(NRV_OK, profile.Parse(row.pszExpression));
        TNrvScanDecodedData record = {kNrvScanSymbologyNotSpecified, {0, nullptr},
                                      {strlen(row.pszData), const_cast<char*>(row.pszData)}};
        EXPECT_EQ(profile.Edit(&record), explanation.nCode);
        EXPECT_EQ(NRV_ERR_OUT_OF_RANGE, explanation.failure.nCode);
        EXPECT_EQ(row.nOffset, explanation.failure.nOffset);
        EXPECT_EQ(row.nLength, explanation.failure.nLength);
        EXPECT_EQ(row.pszCommand, explanation.failure.command);
        EXPECT_EQ(row.pszMessage, explanation.failure.message);
    }
}

// Under limits a failure is the profile's, not a command's values: the command
// that passed a bound alone, or none when only the roots together pass it.
TEST(Diagnostics, NameWhatPassedALimit)
{
    struct Row {
        const char* pszExpression;
        const char* pszData;
        TNrvLimits limits;
        NRVRESULT nCode;
        size_t nOffset, nLength;
        const char* pszCommand;
    } rows[] = {
        {"{MakeUpperCase({DecodedData()})}", "abcdef", {5, 0, 0}, NRV_ERR_TEXT_LIMIT, 16, 11, "DecodedData"},
        {"{MakeUpperCase({DecodedData()})}", "abcde", {5, 0, 0}, NRV_OK, 0, 0, ""},
        {"{DecodedData()}-{DecodedData()}", "abc", {6, 0, 0}, NRV_ERR_TEXT_LIMIT, 0, 0, ""},
        {"{DecodedData()}{DecodedData()}", "abc", {6, 0, 0}, NRV_OK, 0, 0, ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.pszExpression);
        const TNrvExplanation explanation = NrvExplain(row.pszExpression, row.pszData, strlen(row.pszData), row.limits);
        EXPECT_EQ(row.nCode, explanation.nCode);
        EXPECT_EQ(row.nCode, explanation.failure.nCode);
        EXPECT_EQ(row.nOffset, explanation.failure.nOffset);
        EXPECT_EQ(row.nLength, explanation.failure.nLength);
        EXPECT_EQ(row.pszCommand, explanation.failure.command);
        EXPECT_EQ(row.nCode < 0 ? NrvResultCodeMeaning(row.nCode) : "", explanation.failure.message);
    }
}

// kind and name @ offset + length, then the value ('text', a number, !code
// or "not run"), then the parameters in parentheses.
std::string Render(const TNrvExplainNode& node)
{
    std::string text = node.kind == kNrvNodeCommand ? node.name
                       : node.kind == kNrvNodeInteger ? "#" + node.name
                                                      : "'" + node.name + "'";
    text += "@" + std::to_string(node.nOffset) + "+" + std::to_string(node.nLength);
    if (!node.bRun)
        text += " not run";
    else if (node.nCode < 0)
        text += " !" + std::to_string(static_cast<long long>(node.nCode));
    else if (node.bInteger)
        text += "=" + std::to_string(node.nInteger);
    else
        text += "='" + node.value + "'";
    for (size_t i = 0; i < node.params.size(); ++i)
        text += (i == 0 ? "(" : ", ") + Render(node.params[i]) + (i + 1 == node.params.size() ? ")" : "");
    return text;
}

TEST(Explain, GivesEveryNodeItsRangeAndValue)
{
    struct Row {
        const char* pszExpression;
        std::string data;
        NRVRESULT nCode;
        std::string tree;
    } rows[] = {
        {"Code: {TruncateFromBeginning({DecodedData()},2)}", "AB1234", 0,
         "'Code: '@0+6='Code: ' TruncateFromBeginning@6+42='1234'(DecodedData@29+15='AB1234', #2@45+1=2)"},
        {"", "", 0, "''@0+0=''"},
        {"007", "x", 0, "#007@0+3=7"},
        {"{DecodedData()}{DecodedDataWithoutTrailer()}", "A\r", 0,
         "DecodedData@0+15='A\r' DecodedDataWithoutTrailer@15+29='A'"},
        {"{Substring({DecodedData()},{FindFirstFromIndex({DecodedData()},-1,-,1)},-1)}", "ab-cd", 0,
         "Substring@0+76='cd'(DecodedData@11+15='ab-cd', FindFirstFromIndex@27+44=3(DecodedData@47+15='ab-cd', "
         "#-1@63+2=-1, '-'@66+1='-', #1@68+1=1), #-1@72+2=-1)"},
        {"{Replace({DecodedData()},a,)}", "xa", 0, "Replace@0+29='x'(DecodedData@9+15='xa', 'a'@25+1='a', ''@27+0='')"},
        {"{MakeUpperCase({TruncateFromEnd({DecodedData()},5)})}x{DecodedData()}", "AB", -43,
         "MakeUpperCase@0+53 !-43(TruncateFromEnd@15+36 !-43(DecodedData@32+15='AB', #5@48+1=5)) 'x'@53+1 not run "
         "DecodedData@54+15 not run"},
        {"{Substitute({DecodedData()},{TruncateFromEnd({DecodedData()},9)},{DecodedData()})}", "abc", -43,
         "Substitute@0+82 !-43(DecodedData@12+15='abc', TruncateFromEnd@28+36 !-43(DecodedData@45+15='abc', "
         "#9@61+1=9), DecodedData@65+15 not run)"},
        {"{InsertAfterIndex({DecodedData()},0, and )}", "AB", 0,
         "InsertAfterIndex@0+43='A and B'(DecodedData@18+15='AB', #0@34+1=0, ' and '@36+5=' and ')"},
        {"{TruncateFromEnd(DecodedData(),2)}", "zz", 0,
         "TruncateFromEnd@0+34='DecodedData'('DecodedData()'@17+13='DecodedData()', #2@31+1=2)"},
        {"{DecodedData}!", "ok", 0, "DecodedData@0+13='ok' '!'@13+1='!'"},
        {"{FindLastFromIndex({DecodedData()},-1,{EscapeCharacter(2D)},0)}", "a-b-c", 0,
         "FindLastFromIndex@0+63=3(DecodedData@19+15='a-b-c', #-1@35+2=-1, EscapeCharacter@38+21='-'('2D'@55+2='2D'), "
         "#0@60+1=0)"},
        {"[{Extract({DecodedData()},[,])}]", "id[4\0]x"s, 0,
         "'['@0+1='[' Extract@1+30='4\0]x'(DecodedData@10+15='id[4\0]x', '['@26+1='[', ']'@28+1=']') ']'@31+1=']'"s},
        {"{Nope()}", "x", -83, ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.pszExpression);
        const TNrvExplanation explanation = NrvExplain(row.pszExpression, row.data.data(), row.data.size());
        EXPECT_EQ(row.nCode, explanation.nCode);
        std::string tree;
        for (const TNrvExplainNode& node : explanation.nodes)
            tree += (tree.empty() ? "" : " ") + Render(node);
        EXPECT_EQ(row.tree, tree);
    }
}

// A node keeps at most kNrvExplainValueBytes of its value and the whole
// length; the output is kept whole.
TEST(Explain, KeepsAPrefixOfLongValuesAndTheirLength)
{
    for (size_t nLength : {size_t(0), kNrvExplainValueBytes - 1, kNrvExplainValueBytes, kNrvExplainValueBytes + 1,
                           size_t(1) << 20}) {
        SCOPED_TRACE(nLength);
        std::string scan(nLength, 'x');
        if (nLength != 0)
            scan.back() = '\0';  // not text: a zero byte is kept like any other
        const TNrvExplanation explanation = NrvExplain("{Substring({DecodedData()},-1,-1)}", scan.data(), nLength);
        ASSERT_EQ(NRV_OK, explanation.nCode);
        EXPECT_EQ(scan, explanation.output);
        ASSERT_EQ(1u, explanation.nodes.size());
        for (const TNrvExplainNode* pNode : {&explanation.nodes[0], &explanation.nodes[0].params[0]}) {
            EXPECT_EQ(nLength, pNode->nValueLength);
            EXPECT_EQ(scan.substr(0, kNrvExplainValueBytes), pNode->value);
        }
    }
}

// Expressions made of pieces of the language, most of them nearly right:
// bWantNumber asks for an item that fits a number position.
std::string RandomExpression(std::mt19937& random, int nDepth = 0, bool bWantNumber = false)
{
    static const char* const kPieces[] = {"{", "}", "(", ")", ",", " ", "a", "1", "-1", "-2", "9", "x{",
                                          "99999999999", "{DecodedData()}", ",,", "Nope"};
    size_t nCommands = 0;
    const TNrvCommandInfo* pCommands = NrvGetCommandTable(&nCommands);
    std::string expression;
    // A parameter is mostly one item, so that many expressions parse.
    const int nItems = nDepth > 0 && random() % 8 != 0 ? 1 : 1 + static_cast<int>(random() % 3);
    for (int i = 0; i < nItems; ++i) {
        const unsigned nChoice = random() % 10;
        if (nChoice == 0 && (nDepth == 0 || random() % 4 == 0)) {
            expression += kPieces[random() % (sizeof(kPieces) / sizeof(kPieces[0]))];
        } else if ((bWantNumber && nChoice < 8) || nDepth > 3) {
            expression += std::to_string(static_cast<int>(random() % 9) - 2);
        } else if (nChoice < 3) {
            expression += "{DecodedData()}";
        } else {
            const TNrvCommandInfo* pRow = &pCommands[random() % nCommands];
            while (bWantNumber && pRow->nResultType != kNrvKindNumber && random() % 8 != 0)
                pRow = &pCommands[random() % nCommands];
            std::string name = pRow->pszName;
            if (random() % 40 == 0)
                name[random() % name.size()] ^= 0x20;
            size_t nParameters = pRow->nParameterCount;
            if (random() % 40 == 0)
                nParameters += random() % 3 - 1;
            expression += "{" + name + "(";
            for (size_t j = 0; j < nParameters && j < 6; ++j) {
                const bool bNumber =
                    j < pRow->nParameterCount && pRow->pParameters[j].nKind == kNrvKindNumber;
                expression += (j == 0 ? "" : ",") + RandomExpression(random, nDepth + 1, bNumber);
            }
            expression += random() % 40 == 0 ? ")" : ")}";
        }
    }
    return expression;
}

std::string RandomScan(std::mt19937& random)
{
    std::string scan;
    const size_t nLength = random() % 8;
    for (size_t i = 0; i < nLength; ++i)
        scan += static_cast<char>(random() % 4 == 0 ? random() % 256 : 'a' + random() % 6);
    return scan;
}

// The codes always equal the engine's; the explanation's output is the
// concatenation of its root values and equals Edit's byte for byte; ranges
// lie in the expression.
TEST(Diagnostics, AgreeWithParseAndEditOnRandomExpressions)
{
    std::mt19937 random(12);
    size_t nFailedParses = 0, nFailedEdits = 0;
    for (int nRound = 0; nRound < 3000; ++nRound) {
        const std::string expression = RandomExpression(random);
        const std::string scan = RandomScan(random);
        SCOPED_TRACE(expression);
        CNrvDataEditingProfile profile;
        const NRVRESULT parsed = profile.Parse(expression.c_str());
        const TNrvDiagnostic diagnostic = NrvDiagnoseParse(expression.c_str());
        ASSERT_EQ(parsed, diagnostic.nCode);
        EXPECT_EQ(parsed < 0, !diagnostic.message.empty());
        EXPECT_LE(diagnostic.nOffset + diagnostic.nLength, expression.size());

        const TNrvExplanation explanation = NrvExplain(expression.c_str(), scan.data(), scan.size());
        if (parsed < 0) {
            ++nFailedParses;
            EXPECT_EQ(parsed, explanation.nCode);
            EXPECT_TRUE(explanation.nodes.empty());
            continue;
        }
        TNrvScanDecodedData record = {kNrvScanSymbologyNotSpecified, {0, nullptr},
                                      {scan.size(), const_cast<char*>(scan.data())}};
        const NRVRESULT edited = profile.Edit(&record);
        ASSERT_EQ(edited, explanation.nCode);
        std::string roots;
        bool bFailedRoot = false;
        for (const TNrvExplainNode& node : explanation.nodes) {
            EXPECT_LE(node.nOffset + node.nLength, expression.size());
            if (bFailedRoot) {
                EXPECT_FALSE(node.bRun);
                continue;
            }
            ASSERT_TRUE(node.bRun);
            bFailedRoot = node.nCode < 0;
            if (bFailedRoot) {
                EXPECT_EQ(edited, node.nCode);
            }
            roots += node.value;
        }
        const TNrvDiagnostic failure = NrvExplainFailure(expression.c_str(), scan.data(), scan.size());
        EXPECT_EQ(explanation.failure.nCode, failure.nCode);
        EXPECT_EQ(explanation.failure.nOffset, failure.nOffset);
        EXPECT_EQ(explanation.failure.command, failure.command);
        EXPECT_EQ(explanation.failure.message, failure.message);
        if (edited < 0) {
            ++nFailedEdits;
            EXPECT_TRUE(bFailedRoot);
            EXPECT_EQ(edited, explanation.failure.nCode);
            EXPECT_FALSE(explanation.failure.command.empty());
            EXPECT_FALSE(explanation.failure.message.empty());
            EXPECT_EQ(expression.substr(explanation.failure.nOffset, explanation.failure.nLength),
                      explanation.failure.command);
        } else {
            EXPECT_EQ(std::string(record.String.pValue, record.String.nLength), explanation.output);
            EXPECT_EQ(explanation.output, roots);
        }
    }
    // Both kinds of failure were met often enough to mean something.
    EXPECT_GT(nFailedParses, 300u);
    EXPECT_GT(nFailedEdits, 100u) << nFailedParses;
}

TEST(Diagnostics, NullExpressionAndNullScan)
{
    EXPECT_EQ(NRV_ERR_INVALID_PARAMETER, NrvDiagnoseParse(nullptr).nCode);
    EXPECT_EQ(NRV_ERR_INVALID_PARAMETER, NrvExplain(nullptr, "x", 1).nCode);
    const TNrvExplanation explanation = NrvExplain("{DecodedData()}", nullptr, 3);
    EXPECT_EQ(NRV_ERR_INVALID_PARAMETER, explanation.nCode);
    ASSERT_EQ(1u, explanation.nodes.size());
    EXPECT_FALSE(explanation.nodes[0].bRun);
    EXPECT_EQ("no scan data was given", explanation.failure.message);
    EXPECT_EQ(NRV_OK, NrvExplain("{DecodedData()}", nullptr, 0).nCode);
    EXPECT_EQ(NRV_ERR_INVALID_PARAMETER, NrvExplainFailure(nullptr, "x", 1).nCode);
    const TNrvDiagnostic failure = NrvExplainFailure("{DecodedData()}", nullptr, 3);
    EXPECT_EQ(NRV_ERR_INVALID_PARAMETER, failure.nCode);
    EXPECT_EQ("no scan data was given", failure.message);
}

struct TThreadTrace {
    std::vector<std::string> lines;
};

void KeepLine(bool, const char* pszLine, void* pContext)
{
    static_cast<TThreadTrace*>(pContext)->lines.push_back(pszLine);
}

// Two threads parse at once, each with its own sink: each receives its own
// lines, all of them, and none of the other's; the main thread's sink hears
// nothing of either.
TEST(Trace, EachThreadHasItsOwnSink)
{
    TThreadTrace mainTrace;
    NrvSetTraceCallback(KeepLine, &mainTrace);
    const char* const apszExpressions[] = {"{DecodedData()}", "{MakeUpperCase(b)}"};
    const int kParses = 300;
    TThreadTrace traces[2];
    size_t anLinesOfOneParse[2] = {0, 0};
    for (int i = 0; i < 2; ++i) {
        TThreadTrace once;
        NrvSetTraceCallback(KeepLine, &once);
        CNrvDataEditingProfile profile;
        profile.Parse(apszExpressions[i]);
        anLinesOfOneParse[i] = once.lines.size();
    }
    NrvSetTraceCallback(KeepLine, &mainTrace);
    mainTrace.lines.clear();

    std::vector<std::thread> threads;
    for (int i = 0; i < 2; ++i) {
        threads.emplace_back([&, i] {
            NrvSetTraceCallback(KeepLine, &traces[i]);
            CNrvDataEditingProfile profile;
            for (int n = 0; n < kParses; ++n)
                profile.Parse(apszExpressions[i]);
            NrvSetTraceCallback(nullptr, nullptr);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    NrvSetTraceCallback(nullptr, nullptr);

    EXPECT_TRUE(mainTrace.lines.empty());
    for (int i = 0; i < 2; ++i) {
        EXPECT_GT(anLinesOfOneParse[i], 0u);
        EXPECT_EQ(anLinesOfOneParse[i] * kParses, traces[i].lines.size());
        const char* pszOther = i == 0 ? "MakeUpperCase" : "DecodedData";
        for (const std::string& line : traces[i].lines)
            ASSERT_EQ(std::string::npos, line.find(pszOther)) << line;
    }
}

}  // namespace
