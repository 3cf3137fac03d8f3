// The operation tree, the parser and the command dictionary.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <typeinfo>
#include <vector>

#include "EditRows.h"
#include "NrvCommandTable.h"
#include "NrvDataEditingProfile.h"
#include "NrvOperation.h"

namespace {

// The command an operation belongs to, by the row it reads.
std::string CommandName(const CNrvOperation* pOperation)
{
    const CNrvCommandOperation* pCommand = dynamic_cast<const CNrvCommandOperation*>(pOperation);
    return pCommand != nullptr ? pCommand->GetCommandInfo().pszName : "?";
}

std::string Describe(CNrvList* pList);

// A tree in one line: "text", 12 (an integer literal), Name[parameters].
std::string Describe(CNrvOperation* pOperation)
{
    CNrvOperationResult value;
    if (typeid(*pOperation) == typeid(CNrvOperationInteger)) {
        pOperation->Run(value);
        return std::to_string(static_cast<int>(value.GetResultInteger()));
    }
    if (typeid(*pOperation) == typeid(CNrvOperationString)) {
        pOperation->Run(value);
        return '"' + std::string(value.GetResultString(), value.GetResultStringLength()) + '"';
    }
    std::string text = CommandName(pOperation);
    if (pOperation->GetOperationsList()->GetCount() > 0)
        text += "[" + Describe(pOperation->GetOperationsList()) + "]";
    return text;
}

std::string Describe(CNrvList* pList)
{
    std::string text;
    TNrvPosition position = pList->GetHeadPosition();
    while (position != nullptr) {
        void* pData = nullptr;
        pList->GetNext(&position, &pData);
        if (!text.empty())
            text += ", ";
        text += Describe(static_cast<CNrvOperation*>(pData));
    }
    return text;
}

// Owns a list of operations as a profile would.
struct Tree {
    CNrvList list;
    ~Tree()
    {
        void* pData = nullptr;
        while (list.RemoveHead(&pData) == NRV_OK)
            delete static_cast<CNrvOperation*>(pData);
    }
};

struct TraceLog {
    std::vector<std::string> lines;
    std::vector<std::string> errors;
};

void Collect(bool bError, const char* pszLine, void* pContext)
{
    TraceLog* pLog = static_cast<TraceLog*>(pContext);
    (bError ? pLog->errors : pLog->lines).push_back(pszLine);
}

NRVRESULT ParseInto(CNrvDataEditingProfile* pProfile, const std::string& expression, CNrvList* pList,
                    TraceLog* pLog = nullptr)
{
    CNrvParsingString text(expression.c_str());
    CNrvParsingString::SetTraceCallback(pLog != nullptr ? Collect : nullptr, pLog);
    const NRVRESULT result =
        CNrvOperation::Parse(pProfile, CNrvOperationDictionary::GetLibraryDictionary(pProfile->GetCommandSets()), '{',
                             '}', &text, pList);
    CNrvParsingString::SetTraceCallback(nullptr, nullptr);
    return result;
}

std::string Nest(size_t nLevels)
{
    std::string expression = "{DecodedData()}";
    for (size_t i = 1; i < nLevels; ++i)
        expression = "{MakeUpperCase(" + expression + ")}";
    return expression;
}

TEST(Parser, BuildsTheTreesOfTheLanguage)
{
    struct Row {
        std::string expression;
        NRVRESULT nExpected;
        const char* pszTree;  // the root list afterwards, partial trees included
    } rows[] = {
        {"Total: {DecodedData()}", NRV_OK, "\"Total: \", DecodedData"},
        {"{TruncateFromBeginning({DecodedData()},3)}", NRV_OK, "TruncateFromBeginning[DecodedData, 3]"},
        {"{MakeUpperCase({TruncateFromEnd({DecodedData()},2)})}-X", NRV_OK,
         "MakeUpperCase[TruncateFromEnd[DecodedData, 2]], \"-X\""},
        {"{TruncateFromEnd(DecodedData(),2)}", NRV_OK, "TruncateFromEnd[\"DecodedData()\", 2]"},
        {"{DecodedData}", NRV_OK, "DecodedData"},
        {"", NRV_OK, "\"\""},
        {"plain text", NRV_OK, "\"plain text\""},
        {" 42 ", NRV_OK, "42"},
        {"{DecodedData()}{DecodedData()}", NRV_OK, "DecodedData, DecodedData"},
        {"{DecodedData()junk}tail", NRV_OK, "DecodedData, \"tail\""},
        {"}", NRV_OK, "\"}\""},
        {"Code: {DecodedData()", NRV_OK, "\"Code: \", DecodedData"},  // unterminated, no delimiter left
        {"{Replace({DecodedData()},a,)}", NRV_OK, "Replace[DecodedData, \"a\", \"\"]"},
        {"{Replace({DecodedData()}, a ,{DecodedData()})}", NRV_OK, "Replace[DecodedData, \" a \", DecodedData]"},
        {"{TruncateFromEnd({DecodedData()},99999999999)}", NRV_ERR_INVALID_PARAMETER,
         "TruncateFromEnd[DecodedData, \"99999999999\"]"},
        {"{TruncateFromEnd({DecodedData()},{DecodedData()})}", NRV_ERR_INVALID_PARAMETER,
         "TruncateFromEnd[DecodedData, DecodedData]"},
        {"{NoSuchName()}", NRV_ERR_UNKNOWN_COMMAND, ""},
        {"x{ DecodedData()}", NRV_ERR_UNKNOWN_COMMAND, "\"x\""},
        {"{}", NRV_ERR_UNKNOWN_COMMAND, ""},
        {"{decodeddata()}", NRV_ERR_UNKNOWN_COMMAND, ""},
        {"{MakeUpperCase({Nope()})}", NRV_ERR_UNKNOWN_COMMAND, "MakeUpperCase"},
        {"{TruncateFromEnd({DecodedData()})}", NRV_ERR_PARAMETER_COUNT, ""},
        {"{TruncateFromEnd(,2)}", NRV_ERR_PARAMETER_COUNT, ""},  // a leading comma opens no parameter
        {"{DecodedData(3)}", NRV_ERR_PARAMETER_COUNT, ""},
        {"{DecodedData( )}", NRV_ERR_INVALID_PARAMETER, "DecodedData[\" \"]"},  // blanks count no parameter,
        {"{DecodedDataWithoutTrailer( )}", NRV_ERR_INVALID_PARAMETER, nullptr},  // yet reach the command as one
        {"{MakeUpperCase( )}", NRV_ERR_PARAMETER_COUNT, ""},
        {"{DecodedDataWithoutTrailer()}", NRV_OK, "DecodedDataWithoutTrailer"},
        {"{MakeUpperCase(x{DecodedData()})}", NRV_ERR_INVALID_PARAMETER, "MakeUpperCase[\"x\", DecodedData]"},
        {"a{Decoded{Data(", NRV_ERR_SYNTAX, ""},
        {"{{DecodedData()}", NRV_ERR_SYNTAX, ""},
        {"ok{DecodedData()}{x{", NRV_ERR_SYNTAX, ""},  // Split fails before any operation is made
        {"ok{DecodedData()}{", NRV_ERR_UNKNOWN_COMMAND, "\"ok\", DecodedData"},  // a lone '{' opens an empty name
        {Nest(kNrvMaximumNestingDepth), NRV_OK, nullptr},
        {Nest(kNrvMaximumNestingDepth + 1), NRV_ERR_SYNTAX, nullptr},
    };
    for (const Row& row : rows) {
        CNrvDataEditingProfile profile;
        Tree tree;
        EXPECT_EQ(row.nExpected, ParseInto(&profile, row.expression, &tree.list)) << row.expression;
        if (row.pszTree != nullptr) {
            EXPECT_EQ(row.pszTree, Describe(&tree.list)) << row.expression;
        }
    }
}

TEST(Parser, ParsingTwiceIntoOneListAppends)
{
    CNrvDataEditingProfile profile;
    Tree tree;
    ASSERT_EQ(NRV_OK, ParseInto(&profile, "a{DecodedData()}", &tree.list));
    ASSERT_EQ(NRV_OK, ParseInto(&profile, "7", &tree.list));
    EXPECT_EQ("\"a\", DecodedData, 7", Describe(&tree.list));
}

TEST(Parser, TracesEveryStepAndFlagsErrors)
{
    CNrvDataEditingProfile profile;
    Tree tree;
    TraceLog log;
    ASSERT_EQ(NRV_OK, ParseInto(&profile, "x{TruncateFromEnd({DecodedData()},2)}", &tree.list, &log));
    const std::vector<std::string> expected = {
        "About to split the string:x{TruncateFromEnd({DecodedData()},2)}",
        "Adding(1) in the parsing list: x",
        "This new parsing string starts with a command: TruncateFromEnd({DecodedData()},2)",
        "Adding(2) in the parsing list: TruncateFromEnd({DecodedData()},2)",
        "Parsing String:x",
        "The string x is not a command so try to create a String or Integer operation",
        "Parsing String:TruncateFromEnd({DecodedData()},2)",
        "The string TruncateFromEnd({DecodedData()},2) is a command so look it up",
        "Inside Parenthesis:{DecodedData()},2",
        "*** command:TruncateFromEnd",
        "This command has some operations:{DecodedData()},2",
        "About to split the string:{DecodedData()}",
        "This new parsing string starts with a command: DecodedData()",
        "Adding(2) in the parsing list: DecodedData()",
        "Parsing String:DecodedData()",
        "The string DecodedData() is a command so look it up",
        "Inside Parenthesis:",
        "*** command:DecodedData",
        "About to split the string:2",
        "Adding(1) in the parsing list: 2",
        "Parsing String:2",
        "The string 2 is not a command so try to create a String or Integer operation",
    };
    EXPECT_EQ(expected, log.lines);
    EXPECT_TRUE(log.errors.empty());

    struct Row {
        const char* pszExpression;
        const char* pszError;
    } rows[] = {
        {"{Nope(1)}", "Error unable to find the command:Nope"},
        {"{DecodedData( )}", "Parameters incorrect for:)"},
        {"{MakeUpperCase(a{x}", nullptr},  // -52 has no error line of its own
        {"{MakeUpperCase(100%s{DecodedData()})}", "Parameters incorrect for:)"},
    };
    for (const Row& row : rows) {
        TraceLog errorLog;
        Tree failed;
        EXPECT_LT(ParseInto(&profile, row.pszExpression, &failed.list, &errorLog), 0);
        const std::vector<std::string> expected =
            row.pszError != nullptr ? std::vector<std::string>{row.pszError} : std::vector<std::string>{};
        EXPECT_EQ(expected, errorLog.errors) << row.pszExpression;
    }
}

// A command that takes a chosen number of parameters.
class CTestOperation : public CNrvOperation {
public:
    explicit CTestOperation(size_t nParameters) : CNrvOperation(nullptr), m_nParameters(nParameters) {}
    size_t GetParameterCount() const override { return m_nParameters; }
    bool CheckIfParametersAreCorrect() const override { return true; }
    NRVRESULT Run(CNrvOperationResult&) const override { return NRV_OK; }
    int GetResultType() const override { return CNrvOperationResult::typeString; }

private:
    size_t m_nParameters;
};

TEST(OperationTree, CheckParametersCountCountsTopLevelCommasOnly)
{
    struct Row {
        const char* pszText;
        size_t nCount;
    } rows[] = {
        {"", 0},
        {"   ", 0},
        {" a ", 1},
        {"a,", 2},
        {",a", 1},
        {",", 1},
        {"a,,", 3},
        {"{Substring({DecodedData()},0,3)},2", 2},
        {"DecodedData(),3", 2},  // parentheses do not nest here
        {"}a,b", 2},             // a stray closing delimiter
        {"{a,b", 1},
        {"x}}}}y,z", 2},
    };
    for (const Row& row : rows) {
        CNrvParsingString text(row.pszText);
        CTestOperation exact(row.nCount);
        CTestOperation other(row.nCount + 1);
        EXPECT_EQ(NRV_OK, CNrvOperation::CheckParametersCount(&exact, &text, '{', '}')) << row.pszText;
        EXPECT_EQ(NRV_ERR_PARAMETER_COUNT, CNrvOperation::CheckParametersCount(&other, &text, '{', '}'))
            << row.pszText;
    }
    CNrvParsingString text("a");
    CTestOperation operation(1);
    EXPECT_EQ(NRV_ERR_INVALID_PARAMETER, CNrvOperation::CheckParametersCount(nullptr, &text, '{', '}'));
    EXPECT_EQ(NRV_ERR_INVALID_PARAMETER, CNrvOperation::CheckParametersCount(&operation, nullptr, '{', '}'));
}

TEST(OperationTree, ResultKindsFitTheirPositions)
{
    CNrvDataEditingProfile profile;
    CNrvParsingString number("5");
    struct Row {
        std::unique_ptr<CNrvOperation> operation;
        bool bString, bInteger;
    } rows[] = {
        {std::unique_ptr<CNrvOperation>(new CNrvOperationString(&profile, &number)), true, false},
        {std::unique_ptr<CNrvOperation>(new CNrvOperationInteger(&profile, &number)), true, true},
        {std::unique_ptr<CNrvOperation>(MakeCommand("FindFirstFromIndex", {}, &profile)), false, true},
        {std::unique_ptr<CNrvOperation>(MakeCommand("DecodedData", {}, &profile)), true, false},
    };
    for (const Row& row : rows) {
        const CNrvOperation& operation = *row.operation;
        EXPECT_EQ(row.bString, operation.CanResultBeAString()) << typeid(operation).name();
        EXPECT_EQ(row.bInteger, operation.CanResultBeAnInteger()) << typeid(operation).name();
    }
}

TEST(Literals, RunToTheirTextAndValue)
{
    struct Row {
        const char* pszText;
        bool bInteger;
        std::string text;
        int nValue;
    } rows[] = {
        {"007", true, "007", 7},
        {" -12 ", true, " -12 ", -12},
        {"+3", true, "+3", 3},
        {"-2147483648", true, "-2147483648", INT32_MIN},
        {"a b", false, "a b", 0},
        {"", false, "", 0},
    };
    CNrvDataEditingProfile profile;
    for (const Row& row : rows) {
        CNrvParsingString text(row.pszText);
        std::unique_ptr<CNrvOperation> literal(row.bInteger ? new CNrvOperationInteger(&profile, &text)
                                                            : new CNrvOperationString(&profile, &text));
        for (int nRun = 0; nRun < 2; ++nRun) {  // the same result every time
            CNrvOperationResult value;
            ASSERT_EQ(NRV_OK, literal->Run(value));
            EXPECT_EQ(row.bInteger ? CNrvOperationResult::typeInt : CNrvOperationResult::typeString, value.GetType());
            ASSERT_NE(nullptr, value.GetResultString());  // the empty text is a real buffer
            EXPECT_EQ(row.text, std::string(value.GetResultString(), value.GetResultStringLength()));
            EXPECT_EQ(static_cast<size_t>(static_cast<int64_t>(row.nValue)), value.GetResultInteger());
        }
    }
}

// "{Name(1,1,...)}" with a plain text at nTextAt instead (none when past the end).
std::string TrialCall(const TNrvCommandInfo& row, size_t nTextAt)
{
    std::string call = std::string("{") + row.pszName + "(";
    for (size_t i = 0; i < row.nParameterCount; ++i)
        call += std::string(i != 0 ? "," : "") + (i == nTextAt ? "a" : "1");
    return call + ")}";
}

// The dictionary and the command table agree both ways: every row of the
// sets it is initialised with is registered, in the table's order, and
// nothing else is (the seed commands alone by default); each factory makes
// an operation that reads that very row; each row's parameter kinds are what
// the parser then enforces; and each row's sample call is a call of that
// command alone, with its parameters, which edits the sample scan.
TEST(Dictionary, RegistersExactlyTheCommandTable)
{
    size_t nCount = 0;
    const TNrvCommandInfo* pTable = NrvGetCommandTable(&nCount);
    ASSERT_GT(nCount, 0u);
    CNrvDataEditingProfile profile;
    ASSERT_EQ(NRV_OK, profile.EnableCommandSets(kNrvCommandSetsAll));
    CNrvOperationDictionary seed, dictionary;
    EXPECT_EQ(nullptr, dictionary.GetValue("DecodedData", 11));  // not initialised yet
    EXPECT_EQ(0u, dictionary.GetCount());
    ASSERT_EQ(NRV_OK, seed.Initialize());
    ASSERT_EQ(NRV_OK, dictionary.Initialize(kNrvCommandSetsAll));
    ASSERT_EQ(nCount, dictionary.GetCount());
    EXPECT_EQ(nullptr, dictionary.GetKey(nCount));
    size_t nSeed = 0;
    for (size_t i = 0; i < nCount; ++i) {
        const TNrvCommandInfo& row = pTable[i];
        SCOPED_TRACE(row.pszName);
        EXPECT_STREQ(row.pszName, dictionary.GetKey(i));
        // The seed rows come first, and the seed dictionary holds them alone.
        if (row.nSet == kNrvCommandSetSeed) {
            EXPECT_EQ(i, nSeed);
            EXPECT_STREQ(row.pszName, seed.GetKey(nSeed++));
        } else {
            EXPECT_EQ(nullptr, seed.GetValue(row.pszName, strlen(row.pszName)));
            EXPECT_NE(nullptr, NrvCommandSetName(row.nSet));
        }
        EXPECT_EQ(&row, NrvFindCommandInfo(row.pszName, strlen(row.pszName)));
        EXPECT_NE('\0', row.pszSummary[0]);
        for (size_t j = 0; j < row.nParameterCount; ++j) {
            EXPECT_NE('\0', row.pParameters[j].pszName[0]);
            EXPECT_TRUE(row.pParameters[j].nKind == kNrvKindText || row.pParameters[j].nKind == kNrvKindNumber);
        }
        CNrvOperationFactory* pFactory = dictionary.GetValue(row.pszName, strlen(row.pszName));
        ASSERT_NE(nullptr, pFactory);
        CNrvOperation* pFirst = nullptr;
        CNrvOperation* pSecond = nullptr;
        ASSERT_EQ(NRV_OK, pFactory->CreateOperation(&profile, &pFirst));
        ASSERT_EQ(NRV_OK, pFactory->CreateOperation(&profile, &pSecond));
        std::unique_ptr<CNrvOperation> first(pFirst), second(pSecond);
        EXPECT_NE(pFirst, pSecond);
        const CNrvCommandOperation* pCommand = dynamic_cast<const CNrvCommandOperation*>(pFirst);
        ASSERT_NE(nullptr, pCommand);
        EXPECT_EQ(&row, &pCommand->GetCommandInfo());
        EXPECT_EQ(row.nParameterCount, pFirst->GetParameterCount());
        EXPECT_EQ(row.nResultType, pFirst->GetResultType());

        EXPECT_EQ(NRV_OK, profile.Parse(TrialCall(row, row.nParameterCount).c_str()));
        for (size_t j = 0; j < row.nParameterCount; ++j) {
            const bool bNumber = row.pParameters[j].nKind == kNrvKindNumber;
            EXPECT_EQ(bNumber ? NRV_ERR_INVALID_PARAMETER : NRV_OK, profile.Parse(TrialCall(row, j).c_str()))
                << "parameter " << j;
        }

        ASSERT_NE(nullptr, row.pszSample);
        Tree tree;
        ASSERT_EQ(NRV_OK, ParseInto(&profile, row.pszSample, &tree.list));
        ASSERT_EQ(1, tree.list.GetCount());
        void* pRoot = nullptr;
        ASSERT_EQ(NRV_OK, tree.list.GetAt(tree.list.GetHeadPosition(), &pRoot));
        EXPECT_EQ(row.pszName, CommandName(static_cast<CNrvOperation*>(pRoot)));
        EXPECT_EQ(row.nParameterCount, SampleArguments(row).size());
        EXPECT_EQ(row.pszSample, CallOf(row, SampleArguments(row)));
        ASSERT_EQ(NRV_OK, profile.Parse(row.pszSample));
        std::string scan = SampleScan();
        TNrvScanDecodedData record = {kNrvScanSymbologyNotSpecified, {0, nullptr}, {scan.size(), &scan[0]}};
        EXPECT_EQ(NRV_OK, profile.Edit(&record));
    }

    EXPECT_EQ(18u, nSeed);
    EXPECT_EQ(nSeed, seed.GetCount());

    CNrvOperation* pUntouched = reinterpret_cast<CNrvOperation*>(&profile);
    CNrvOperationFactory* pFactory = dictionary.GetValue("Extract", 7);
    EXPECT_EQ(NRV_ERR_INVALID_PARAMETER, pFactory->CreateOperation(nullptr, &pUntouched));
    EXPECT_EQ(reinterpret_cast<CNrvOperation*>(&profile), pUntouched);
    EXPECT_EQ(NRV_ERR_INVALID_PARAMETER, pFactory->CreateOperation(&profile, nullptr));
    // A row whose parameter count is not its body's makes nothing.
    TNrvCommandInfo wrong = *NrvFindCommandInfo("Extract", 7);
    wrong.nParameterCount = 2;
    CNrvOperationFactoryOf<CNrvOperationExtract> mismatched(wrong);
    EXPECT_EQ(NRV_ERR_INVALID_PARAMETER, mismatched.CreateOperation(&profile, &pUntouched));
    EXPECT_EQ(reinterpret_cast<CNrvOperation*>(&profile), pUntouched);
}

TEST(Dictionary, MatchesWholeNamesByteForByte)
{
    const CNrvOperationDictionary* pDictionary = CNrvOperationDictionary::GetLibraryDictionary();
    const char* pszCall = "TruncateFromBeginning(DecodedData(),3)";
    EXPECT_EQ(pDictionary->GetValue("TruncateFromBeginning", 21), pDictionary->GetValue(pszCall, 21));
    EXPECT_NE(nullptr, pDictionary->GetValue(pszCall, 21));
    struct Row {
        const char* pszName;
        size_t nLength;
    } misses[] = {
        {"truncatefrombeginning", 21}, {"Truncate", 8}, {"TruncateFromBeginningX", 22},
        {"", 0}, {pszCall, 22}, {"DecodedData\0", 12},
    };
    for (const Row& row : misses)
        EXPECT_EQ(nullptr, pDictionary->GetValue(row.pszName, row.nLength)) << row.pszName;
    EXPECT_EQ(nullptr, pDictionary->GetValue(nullptr, 0));
}

class CTestDictionary : public CNrvOperationDictionary {
public:
    using CNrvOperationDictionary::Add;
};

TEST(Dictionary, AddRefusesMissingFactoriesAndKeys)
{
    CTestDictionary dictionary;
    auto* pFactory = CNrvOperationFactoryOf<CNrvOperationDecodedData>::Create(*NrvFindCommandInfo("DecodedData", 11));
    EXPECT_EQ(NRV_ERR_INVALID_PARAMETER, dictionary.Add("X", nullptr));
    EXPECT_EQ(NRV_ERR_INVALID_PARAMETER, dictionary.Add("", pFactory));
    EXPECT_EQ(NRV_ERR_INVALID_PARAMETER, dictionary.Add(nullptr, pFactory));
    EXPECT_EQ(nullptr, dictionary.GetValue("X", 1));
    ASSERT_EQ(NRV_OK, dictionary.Add("X", pFactory));  // the dictionary owns it from here
    EXPECT_EQ(pFactory, dictionary.GetValue("X", 1));
    // A second entry of the same name is never reached.
    auto* pShadowed = CNrvOperationFactoryOf<CNrvOperationExtract>::Create(*NrvFindCommandInfo("Extract", 7));
    ASSERT_EQ(NRV_OK, dictionary.Add("X", pShadowed));
    EXPECT_EQ(pFactory, dictionary.GetValue("X", 1));
}

}  // namespace
