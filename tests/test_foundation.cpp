// The foundation pieces: string services, value record, list, parsing string.
#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "NrvList.h"
#include "NrvOperation.h"
#include "NrvResultCodes.h"
#include "NrvRuntimeLib.h"
#include "NrvSuggest.h"
#include "NrvUtilities.h"

namespace {

std::string Bytes(const char* p, size_t n)
{
    return p == nullptr ? std::string("<null>") : std::string(p, n);
}

TEST(StringServices, AllocateAndCopyCopiesExactlyTheGivenBytes)
{
    struct Row {
        const char* pszSource;
        size_t nLength;
        std::string expected;
    } rows[] = {
        {"ABC", 3, "ABC"},
        {"ABC", 2, "AB"},
        {nullptr, 0, ""},
        {"A\0B", 3, std::string("A\0B", 3)},  // a zero byte inside is copied
    };
    for (const Row& row : rows) {
        char* pszCopy = nullptr;
        ASSERT_EQ(NRV_OK, CNrvUtilities::AllocateAndCopy(&pszCopy, row.pszSource, row.nLength));
        ASSERT_NE(nullptr, pszCopy);
        EXPECT_EQ(row.expected, std::string(pszCopy, row.nLength));
        EXPECT_EQ('\0', pszCopy[row.nLength]) << "terminator after " << row.nLength << " bytes";
        delete[] pszCopy;
    }
}

TEST(StringServices, AllocateAndCopyCopiesEveryLengthOfEachSizeClass)
{
    // Short copies are made in place by size class (1-3, 4-7, 8-16 bytes),
    // longer ones by memcpy: every length up to past the last class.
    const std::string source = "0123456789abcdefghijklmnopqrstu";
    for (size_t nLength = 0; nLength < source.size(); ++nLength) {
        char* pszCopy = nullptr;
        ASSERT_EQ(NRV_OK, CNrvUtilities::AllocateAndCopy(&pszCopy, source.data(), nLength));
        EXPECT_EQ(source.substr(0, nLength), std::string(pszCopy, nLength)) << nLength << " bytes";
        EXPECT_EQ('\0', pszCopy[nLength]) << nLength << " bytes";
        delete[] pszCopy;
    }
}

TEST(StringServices, AllocateAndCopyRefusesWhatItCannotCopy)
{
    char* pszCopy = nullptr;
    EXPECT_LT(CNrvUtilities::AllocateAndCopy(nullptr, "A", 1), 0);
    EXPECT_LT(CNrvUtilities::AllocateAndCopy(&pszCopy, nullptr, 1), 0);
    EXPECT_EQ(nullptr, pszCopy);
}

TEST(StringServices, SprintfIsBoundedAndAlwaysTerminated)
{
    char szBuffer[64];
    EXPECT_GE(CNrvRuntimeLib::Sprintf(szBuffer, sizeof szBuffer, "%d", INT_MIN), 0);
    EXPECT_STREQ("-2147483648", szBuffer);

    char szSmall[4];
    memset(szSmall, 'x', sizeof szSmall);
    EXPECT_LT(CNrvRuntimeLib::Sprintf(szSmall, sizeof szSmall, "%d", 123456), 0);
    EXPECT_EQ('\0', szSmall[3]);
    EXPECT_LT(CNrvRuntimeLib::Sprintf(nullptr, 4, "%d", 1), 0);
    EXPECT_LT(CNrvRuntimeLib::Sprintf(szSmall, 0, "%d", 1), 0);
}

// Every code the library returns has its name and a meaning; any other value
// has neither and is described by its number.
TEST(ResultCodes, NameAndMeaningOfEveryCode)
{
    const struct {
        NRVRESULT nCode;
        const char* pszName;  // null: not a code of the library
    } rows[] = {
        {NRV_OK, "NRV_OK"},
        {NRV_OK_NOT_TRIGGERED, "NRV_OK_NOT_TRIGGERED"},
        {NRV_ERR_INVALID_PARAMETER, "NRV_ERR_INVALID_PARAMETER"},
        {NRV_ERR_OUT_OF_RANGE, "NRV_ERR_OUT_OF_RANGE"},
        {NRV_ERR_SYNTAX, "NRV_ERR_SYNTAX"},
        {NRV_ERR_TEXT_LIMIT, "NRV_ERR_TEXT_LIMIT"},
        {NRV_ERR_WORK_LIMIT, "NRV_ERR_WORK_LIMIT"},
        {NRV_ERR_TEXT_TOO_LONG, "NRV_ERR_TEXT_TOO_LONG"},
        {NRV_ERR_GS1_INVALID, "NRV_ERR_GS1_INVALID"},
        {NRV_ERR_UNKNOWN_COMMAND, "NRV_ERR_UNKNOWN_COMMAND"},
        {NRV_ERR_PARAMETER_COUNT, "NRV_ERR_PARAMETER_COUNT"},
        {-1, nullptr},
        {-44, nullptr},
        {2, nullptr},
        {INT64_MIN, nullptr},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.nCode);
        if (row.pszName == nullptr) {
            EXPECT_EQ(nullptr, NrvResultCodeName(row.nCode));
            EXPECT_EQ(nullptr, NrvResultCodeMeaning(row.nCode));
            EXPECT_EQ("failed with code " + std::to_string(static_cast<long long>(row.nCode)),
                      NrvDescribeCode(row.nCode));
            continue;
        }
        EXPECT_STREQ(row.pszName, NrvResultCodeName(row.nCode));
        ASSERT_NE(nullptr, NrvResultCodeMeaning(row.nCode));
        EXPECT_NE('\0', NrvResultCodeMeaning(row.nCode)[0]);
        EXPECT_EQ(NrvResultCodeMeaning(row.nCode), NrvDescribeCode(row.nCode));
    }
    // NrvResultCodeAt walks the named codes, in the rows' order, and stops.
    size_t nIndex = 0;
    NRVRESULT nCode = 0;
    for (const auto& row : rows) {
        if (row.pszName != nullptr) {
            ASSERT_TRUE(NrvResultCodeAt(nIndex++, &nCode));
            EXPECT_EQ(nCode, row.nCode);
        }
    }
    EXPECT_FALSE(NrvResultCodeAt(nIndex, &nCode));
}

// The same name in another case first, then the nearest within two edits,
// the first on a tie; a name of any length costs no more than a short one.
TEST(Suggest, NearestWithinTwoEditsOrTheSameButForCase)
{
    const char* const candidates[] = {"DecodedData", "Extract", "Extracts", "ab", "AB", "abc", "ABD", "starts-with"};
    const struct {
        std::string name;
        const char* pszExpected;
    } rows[] = {
        {"decodedData", "DecodedData"},
        {"DECODEDDATA", "DecodedData"},
        {"DeocdedData", "DecodedData"},  // a swap of neighbours is one edit
        {"DecodedDat", "DecodedData"},
        {"DecodedDataxy", "DecodedData"},
        {"DecodedDataxyz", nullptr},  // three edits
        {"Decod", nullptr},
        {"Extr\xFF" "ct", "Extract"},  // a high byte is a byte like any other
        {"Extractss", "Extracts"},    // the nearest, not the first within two
        {"cd", "ab"},                 // both two edits away: the first
        {"abD", "ABD"},               // the same but for case beats one edit away (abc)
        {"start-with", "starts-with"},
        {"", "ab"},
        {std::string(1, '\0'), "ab"},
        {std::string(2u << 20, 'x'), nullptr},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name.substr(0, 20));
        const char* pszSuggestion = NrvSuggest(row.name, candidates, sizeof candidates / sizeof candidates[0]);
        EXPECT_STREQ(row.pszExpected, pszSuggestion);
    }
    EXPECT_EQ(nullptr, NrvSuggest("ab", candidates, 0));
}

TEST(ValueRecord, IntegersReadAsSignWidenedSizesAndDecimalText)
{
    struct Row {
        int nValue;
        size_t nExpectedInteger;
        const char* pszExpectedText;
    } rows[] = {
        {0, 0, "0"},
        {-1, 0xFFFFFFFFFFFFFFFFull, "-1"},
        {-2, 0xFFFFFFFFFFFFFFFEull, "-2"},
        {INT_MIN, 0xFFFFFFFF80000000ull, "-2147483648"},
        {INT_MAX, 2147483647ull, "2147483647"},
    };
    for (const Row& row : rows) {
        CNrvOperationResult record;
        record.SetResult(row.nValue);
        EXPECT_EQ(CNrvOperationResult::typeInt, record.GetType());
        EXPECT_EQ(row.nExpectedInteger, record.GetResultInteger());
        ASSERT_NE(nullptr, record.GetResultString());
        EXPECT_STREQ(row.pszExpectedText, record.GetResultString());
        EXPECT_EQ(strlen(row.pszExpectedText), record.GetResultStringLength());
        EXPECT_EQ(NRV_OK, record.GetError());
    }
}

TEST(ValueRecord, FreshRecordReadsAsTheIntegerZero)
{
    CNrvOperationResult record;
    EXPECT_EQ(CNrvOperationResult::typeInt, record.GetType());
    EXPECT_EQ(0u, record.GetResultInteger());
    EXPECT_EQ(1u, record.GetResultStringLength());  // length first: it makes the text too
    EXPECT_STREQ("0", record.GetResultString());
}

TEST(ValueRecord, TextKeepsItsLengthAndLeavesTheIntegerAlone)
{
    CNrvOperationResult record;
    ASSERT_EQ(NRV_OK, record.WriteResult("A\0C", 3));
    EXPECT_EQ(CNrvOperationResult::typeString, record.GetType());
    EXPECT_EQ(3u, record.GetResultStringLength());
    EXPECT_EQ(std::string("A\0C", 3), Bytes(record.GetResultString(), 3));
    EXPECT_EQ(0u, record.GetResultInteger());

    // A second write replaces the first (and must not leak it).
    ASSERT_EQ(NRV_OK, record.WriteResult("XY", 2));
    EXPECT_EQ("XY", Bytes(record.GetResultString(), record.GetResultStringLength()));

    // Writing a record's own text into it.
    ASSERT_EQ(NRV_OK, record.WriteResult(record.GetResultString() + 1, 1));
    EXPECT_EQ("Y", Bytes(record.GetResultString(), record.GetResultStringLength()));
}

TEST(ValueRecord, CopiesOwnTheirTextAndAssignmentReleasesTheOld)
{
    auto* pSource = new CNrvOperationResult;
    pSource->WriteResult("ABC", 3);
    CNrvOperationResult copy(*pSource);
    EXPECT_NE(pSource->GetResultString(), copy.GetResultString());
    delete pSource;
    EXPECT_EQ("ABC", Bytes(copy.GetResultString(), copy.GetResultStringLength()));

    // An integer without text yet: the copy makes its own text on demand.
    CNrvOperationResult integer;
    integer.SetResult(-2);
    CNrvOperationResult integerCopy(integer);
    EXPECT_EQ(CNrvOperationResult::typeInt, integerCopy.GetType());
    EXPECT_STREQ("-2", integerCopy.GetResultString());

    // Assigning an integer-only record over a text.
    copy = integer;
    EXPECT_EQ(CNrvOperationResult::typeInt, copy.GetType());
    EXPECT_STREQ("-2", copy.GetResultString());
    EXPECT_EQ(2u, copy.GetResultStringLength());

    CNrvOperationResult& self = copy;
    copy = self;  // self-assignment changes nothing
    EXPECT_STREQ("-2", copy.GetResultString());

    // A zero-length text gives a copy without text, and such a string record
    // has no text to convert.
    CNrvOperationResult empty;
    empty.WriteResult(nullptr, 0);
    CNrvOperationResult emptyCopy(empty);
    EXPECT_EQ(CNrvOperationResult::typeString, emptyCopy.GetType());
    EXPECT_EQ(nullptr, emptyCopy.GetResultString());
    EXPECT_EQ(0u, emptyCopy.GetResultStringLength());
}

// Walks a list forwards and returns what it holds, as small integers.
std::vector<intptr_t> Walk(const CNrvList& list)
{
    std::vector<intptr_t> items;
    TNrvPosition position = list.GetHeadPosition();
    while (position != nullptr) {
        void* pData = nullptr;
        if (list.GetNext(&position, &pData) < 0)
            break;
        items.push_back(reinterpret_cast<intptr_t>(pData));
    }
    return items;
}

void* Item(intptr_t n)
{
    return reinterpret_cast<void*>(n);
}

TEST(List, InsertionsKeepOrderAndBothDirectionsAgree)
{
    CNrvList list;
    EXPECT_EQ(0, list.GetCount());
    EXPECT_EQ(nullptr, list.GetHeadPosition());
    EXPECT_EQ(nullptr, list.GetTailPosition());

    list.AddTail(Item(2));
    list.AddTail(Item(4));
    list.AddHead(Item(1));
    TNrvPosition position = nullptr;
    ASSERT_EQ(NRV_OK, list.FindIndex(1, &position));
    list.InsertAfter(position, Item(3));
    list.InsertBefore(list.GetHeadPosition(), Item(0));
    list.InsertAfter(list.GetTailPosition(), Item(5));
    list.AddTail(nullptr);  // null is a value like any other
    EXPECT_EQ((std::vector<intptr_t>{0, 1, 2, 3, 4, 5, 0}), Walk(list));
    EXPECT_EQ(7, list.GetCount());

    std::vector<intptr_t> backwards;
    for (TNrvPosition at = list.GetTailPosition(); at != nullptr;) {
        void* pData = nullptr;
        ASSERT_EQ(NRV_OK, list.GetPrevious(&at, &pData));
        backwards.push_back(reinterpret_cast<intptr_t>(pData));
    }
    EXPECT_EQ((std::vector<intptr_t>{0, 5, 4, 3, 2, 1, 0}), backwards);

    EXPECT_LT(list.FindIndex(7, &position), 0);  // past the end: no stale position
    ASSERT_EQ(NRV_OK, list.FindIndex(6, &position));
    EXPECT_EQ(list.GetTailPosition(), position);
}

TEST(List, RemovalDuringAWalkKeepsOtherPositionsValid)
{
    CNrvList list;
    for (intptr_t n = 1; n <= 3; ++n)
        list.AddTail(Item(n));
    TNrvPosition position = list.GetHeadPosition();
    void* pData = nullptr;
    list.GetNext(&position, &pData);
    const TNrvPosition middle = position;
    list.GetNext(&position, &pData);  // the walk has moved on to the last element
    ASSERT_EQ(NRV_OK, list.RemoveAt(middle, &pData));
    EXPECT_EQ(Item(2), pData);
    EXPECT_EQ(2, list.GetCount());
    ASSERT_EQ(NRV_OK, list.GetNext(&position, &pData));
    EXPECT_EQ(Item(3), pData);
    EXPECT_EQ(nullptr, position);
    EXPECT_EQ((std::vector<intptr_t>{1, 3}), Walk(list));
}

TEST(List, EmptyingFromEitherEndThenFailingLeavesTheOutValue)
{
    CNrvList list;
    for (intptr_t n = 1; n <= 4; ++n)
        list.AddTail(Item(n));
    void* pData = nullptr;
    ASSERT_EQ(NRV_OK, list.RemoveTail(&pData));
    EXPECT_EQ(Item(4), pData);
    std::vector<intptr_t> removed;
    while (list.RemoveHead(&pData) == NRV_OK)
        removed.push_back(reinterpret_cast<intptr_t>(pData));
    EXPECT_EQ((std::vector<intptr_t>{1, 2, 3}), removed);
    EXPECT_EQ(0, list.GetCount());
    EXPECT_EQ(nullptr, list.GetHeadPosition());

    pData = Item(42);
    EXPECT_LT(list.RemoveHead(&pData), 0);
    EXPECT_LT(list.RemoveTail(&pData), 0);
    TNrvPosition none = nullptr;
    EXPECT_LT(list.GetNext(&none, &pData), 0);
    EXPECT_LT(list.GetPrevious(&none, &pData), 0);
    EXPECT_LT(list.GetAt(nullptr, &pData), 0);
    EXPECT_LT(list.InsertBefore(nullptr, Item(1)), 0);
    EXPECT_EQ(Item(42), pData);
    EXPECT_EQ(0, list.GetCount());
}

std::string Window(const CNrvParsingString& window)
{
    return std::string(window.GetString(), window.GetLength());
}

TEST(ParsingString, CuttingPrimitives)
{
    struct Row {
        const char* pszSource;
        char cOperation;  // 'B' ExtractBefore(c1), 'E' Extract(c1, c2), 'I' ExtractBeforeIndex(n)
        char c1, c2;
        size_t nIndex;
        const char* pszPiece;
        const char* pszLeft;
    } rows[] = {
        {"x{y(1)}z", 'B', '{', 0, 0, "x", "{y(1)}z"},
        {"{y(1)}z", 'E', '{', '}', 0, "y(1)", "}z"},
        {"z", 'B', '{', 0, 0, "z", ""},
        {"", 'B', '{', 0, 0, "", ""},
        {"{a}", 'B', '{', 0, 0, "", "{a}"},
        {"Name", 'B', '(', 0, 0, "Name", ""},
        {"", 'E', '(', ')', 0, "", ""},
        {"(x(y),z))", 'E', '(', ')', 0, "x(y),z", "))"},
        {"{A()}{B()}", 'E', '{', '}', 0, "A()", "}{B()}"},
        {"{A({B()}", 'E', '{', '}', 0, "A({B()}", ""},  // unbalanced: the rest
        {"ab,cd", 'I', 0, 0, 2, "ab", ",cd"},
        {"ab,cd", 'I', 0, 0, 0, "", "ab,cd"},
    };
    for (const Row& row : rows) {
        CNrvParsingString source(row.pszSource);
        CNrvParsingString piece = row.cOperation == 'B'   ? source.ExtractBefore(row.c1)
                                  : row.cOperation == 'E' ? source.Extract(row.c1, row.c2)
                                                          : source.ExtractBeforeIndex(row.nIndex);
        EXPECT_EQ(row.pszPiece, Window(piece)) << row.pszSource << " " << row.cOperation;
        EXPECT_EQ(row.pszLeft, Window(source)) << row.pszSource << " " << row.cOperation;
    }
}

TEST(ParsingString, UnbalancedExtractIsFlaggedAsACommand)
{
    CNrvParsingString source("{DecodedData()");
    CNrvParsingString piece = source.Extract('{', '}');
    EXPECT_EQ("DecodedData()", Window(piece));
    EXPECT_EQ(CNrvOperation::kFlagCommand, piece.GetFlag());
    EXPECT_TRUE(source.IsEmpty());
}

TEST(ParsingString, RemoveDropsOneLeadingCharacterOfTheSet)
{
    CNrvParsingString pair("{}");
    CNrvParsingString comma(",");
    CNrvParsingString source("}{x");
    EXPECT_EQ(NRV_OK, source.Remove(&pair));
    EXPECT_EQ("{x", Window(source));  // a following opening delimiter stays
    EXPECT_LT(CNrvParsingString("x,").Remove(&comma), 0);
    CNrvParsingString empty;
    EXPECT_EQ(NRV_OK, empty.Remove(&comma));
    EXPECT_TRUE(empty.IsEmpty());
}

TEST(ParsingString, IsNumberAcceptsOnlyWholeThirtyTwoBitIntegers)
{
    struct Row {
        const char* pszText;
        bool bNumber;
    } rows[] = {
        {"0", true},           {"007", true},         {" 12 ", true},       {"\t+5\n", true},
        {"-2", true},          {"2147483647", true},  {"-2147483648", true}, {"2147483648", false},
        {"-2147483649", false}, {"99999999999", false}, {"", false},         {" ", false},
        {"+", false},          {"-", false},          {"+-1", false},       {"1 2", false},
        {"12a", false},        {"a12", false},        {"0x10", false},      {"1.5", false},
        {"00000000000000000001", true},
    };
    for (const Row& row : rows)
        EXPECT_EQ(row.bNumber, CNrvParsingString(row.pszText).IsNumber()) << '"' << row.pszText << '"';
}

TEST(ParsingString, FindReportsPresenceWithinTheWindowOnly)
{
    CNrvParsingString source("ab,c{d");
    EXPECT_EQ(-1, source.Find('x'));
    EXPECT_EQ(2, source.Find(','));
    CNrvParsingString front = source.ExtractBeforeIndex(2);
    EXPECT_EQ(-1, front.Find('{'));  // beyond the window's end
    EXPECT_EQ(2, source.Find('{'));
}

TEST(ParsingString, PiecesOutliveTheWindowsTheyWereCutFrom)
{
    const char* pszText = "alpha,beta";
    CNrvParsingString* pCopy = new CNrvParsingString(CNrvParsingString(pszText));
    CNrvParsingString piece = pCopy->ExtractBefore(',');
    delete pCopy;
    EXPECT_EQ("alpha", Window(piece));

    // A window that owns its text: pieces cut from it keep their own copy.
    auto* pOwner = new CNrvParsingString;
    ASSERT_EQ(NRV_OK, pOwner->WriteString("left,right"));
    CNrvParsingString left = pOwner->ExtractBefore(',');
    CNrvParsingString rest(*pOwner);
    CNrvParsingString assigned;
    assigned = *pOwner;
    delete pOwner;
    EXPECT_EQ("left", Window(left));
    EXPECT_EQ(",right", Window(rest));
    EXPECT_EQ(",right", Window(assigned));
}

struct TraceLog {
    std::vector<std::string> lines;
    std::vector<bool> errors;
};

void Collect(bool bError, const char* pszLine, void* pContext)
{
    TraceLog* pLog = static_cast<TraceLog*>(pContext);
    pLog->lines.push_back(pszLine);
    pLog->errors.push_back(bError);
}

TEST(ParsingString, TraceInsertsExactlyTheWindowAsData)
{
    TraceLog log;
    CNrvParsingString::SetTraceCallback(Collect, &log);
    CNrvParsingString source("100%s{x}");
    CNrvParsingString front = source.ExtractBefore('{');
    front.DbgFormatDump(false, "[%s]");
    source.DbgFormatDump(true, "cmd %s end");
    std::string longText(100000, 'L');
    CNrvParsingString(longText.c_str()).DbgFormatDump(false, "%s!");
    CNrvParsingString::SetTraceCallback(nullptr, nullptr);
    front.DbgFormatDump(false, "not delivered %s");

    ASSERT_EQ(3u, log.lines.size());
    EXPECT_EQ("[100%s]", log.lines[0]);  // the window's '%' is not a format
    EXPECT_FALSE(log.errors[0]);
    EXPECT_EQ("cmd {x} end", log.lines[1]);
    EXPECT_TRUE(log.errors[1]);
    EXPECT_EQ(longText + "!", log.lines[2]);
}

}  // namespace
