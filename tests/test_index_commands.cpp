// The index commands: truncation from either end, find from index, truncate
// at index, insert at index. Most rows run whole expressions through a
// profile, the way the scanning library uses them.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "EditRows.h"
#include "NrvDataEditingProfile.h"
#include "NrvOperation.h"

using namespace std::string_literals;

namespace {

constexpr NRVRESULT kOk = NRV_OK;
constexpr NRVRESULT kRange = NRV_ERR_OUT_OF_RANGE;

}  // namespace

TEST(TruncateFromEitherEnd, ExpressionTable)
{
    ExpectEdits({
        {"{TruncateFromBeginning({DecodedData()},2)}", "ABCDEF", kOk, "CDEF"},
        {"{TruncateFromEnd({DecodedData()},2)}", "ABCDEF", kOk, "ABCD"},
        {"Code: {TruncateFromBeginning({DecodedData()},2)}", "AB1234", kOk, "Code: 1234"},
        {"{TruncateFromBeginning({DecodedData()},0)}", "ABCDEF", kOk, "ABCDEF"},
        {"{TruncateFromEnd({DecodedData()},0)}", "ABCDEF", kOk, "ABCDEF"},
        {"{TruncateFromBeginning({DecodedData()},5)}", "ABCDEF", kOk, "F"},
        {"{TruncateFromEnd({DecodedData()},5)}", "ABCDEF", kOk, "A"},
        // Removing everything, or more, is an error rather than empty data.
        {"{TruncateFromBeginning({DecodedData()},6)}", "ABCDEF", kRange, ""},
        {"{TruncateFromEnd({DecodedData()},6)}", "ABCDEF", kRange, ""},
        {"{TruncateFromEnd({DecodedData()},7)}", "ABCDEF", kRange, ""},
        {"{TruncateFromBeginning({DecodedData()},0)}", "", kRange, ""},
        // -2 (nothing found) removes nothing; every other negative is huge.
        {"{TruncateFromBeginning({DecodedData()},-2)}", "ABCDEF", kOk, "ABCDEF"},
        {"{TruncateFromEnd({DecodedData()},{FindFirstFromIndex({DecodedData()},-1,x,0)})}", "ABCDEF", kOk,
         "ABCDEF"},
        {"{TruncateFromEnd({DecodedData()},-2)}", "", kRange, ""},
        {"{TruncateFromBeginning({DecodedData()},-1)}", "ABCDEF", kRange, ""},
        {"{TruncateFromEnd({DecodedData()},-3)}", "ABCDEF", kRange, ""},
        {"{TruncateFromBeginning({DecodedData()},-2147483648)}", "ABCDEF", kRange, ""},
        {"{TruncateFromEnd({DecodedData()},2147483647)}", "ABCDEF", kRange, ""},
        // A number as the text is cut as its written digits.
        {"{TruncateFromBeginning(12345,2)}", "", kOk, "345"},
        {"{TruncateFromEnd(12345,2)}", "", kOk, "123"},
        // Zero bytes are data like any other.
        {"{TruncateFromBeginning({DecodedData()},1)}", "A\0B\0C"s, kOk, "\0B\0C"s},
        {"{TruncateFromEnd({DecodedData()},1)}", "A\0B\0C"s, kOk, "A\0B\0"s},
        // The count comes from a find: cut up to and including the dash.
        {"{TruncateFromBeginning({DecodedData()},{FindFirstFromIndex({DecodedData()},-1,-,1)})}", "AB-CD", kOk,
         "CD"},
        // A failing text fails the command with its own code.
        {"{TruncateFromBeginning({TruncateFromEnd({DecodedData()},9)},0)}", "ABC", kRange, ""},
    });
}

TEST(FindFromIndex, ExpressionTable)
{
    const std::string t = "AB-CD-EF";
    ExpectEdits({
        {"{FindFirstFromIndex({DecodedData()},-1,-,0)}", t, kOk, "2"},
        {"{FindFirstFromIndex({DecodedData()},3,-,0)}", t, kOk, "5"},
        {"{FindFirstFromIndex({DecodedData()},3,-,1)}", t, kOk, "6"},
        {"{FindFirstFromIndex({DecodedData()},6,-,0)}", t, kOk, "-2"},
        {"{FindFirstFromIndex({DecodedData()},6,-,1)}", t, kOk, "-1"},
        {"{FindFirstFromIndex({DecodedData()},7,F,0)}", t, kOk, "7"},
        {"{FindFirstFromIndex({DecodedData()},8,-,0)}", t, kRange, ""},
        {"{FindFirstFromIndex({DecodedData()},-5,-,0)}", t, kRange, ""},
        {"{FindFirstFromIndex({DecodedData()},-3,-,0)}", t, kRange, ""},
        {"{FindFirstFromIndex({DecodedData()},-2147483648,-,0)}", t, kRange, ""},
        {"{FindFirstFromIndex({DecodedData()},2147483647,-,0)}", t, kRange, ""},
        {"{FindFirstFromIndex({DecodedData()},-2,-,7)}", t, kOk, "-2"},
        {"{FindFirstFromIndex({DecodedData()},4,,0)}", t, kOk, "4"},
        {"{FindFirstFromIndex({DecodedData()},-1,ABC,0)}", "ABC", kOk, "0"},
        {"{FindFirstFromIndex({DecodedData()},0,x,0)}", "", kRange, ""},
        {"{FindFirstFromIndex({DecodedData()},-1,x,0)}", "", kOk, "-2"},
        {"{FindFirstFromIndex(345,-1,4,0)}", "", kOk, "1"},
        // The offset is added as 32-bit numbers and wraps.
        {"{FindFirstFromIndex({DecodedData()},-1,-,2147483647)}", t, kOk, "-2147483647"},
        {"{FindFirstFromIndex({DecodedData()},-1,x,-2147483648)}", t, kOk, "2147483646"},
        // The search stops at a zero byte; the range test uses the length.
        {"{FindFirstFromIndex({DecodedData()},-1,-,0)}", "AB\0-CD"s, kOk, "-2"},
        {"{FindFirstFromIndex({DecodedData()},3,-,0)}", "AB\0-CD"s, kOk, "3"},
        {"{FindFirstFromIndex({DecodedData()},5,D,0)}", "AB\0-CD"s, kOk, "5"},
        {"{FindFirstFromIndex({DecodedData()},6,D,0)}", "AB\0-CD"s, kRange, ""},

        {"{FindLastFromIndex({DecodedData()},-1,-,0)}", t, kOk, "5"},
        {"{FindLastFromIndex({DecodedData()},-1,-,3)}", t, kOk, "5"},
        {"{FindLastFromIndex({DecodedData()},7,-,0)}", t, kOk, "5"},
        {"{FindLastFromIndex({DecodedData()},4,-,0)}", t, kOk, "5"},
        {"{FindLastFromIndex({DecodedData()},1,-,0)}", t, kOk, "2"},
        {"{FindLastFromIndex({DecodedData()},0,-,0)}", t, kOk, "2"},
        {"{FindLastFromIndex({DecodedData()},4,-,2)}", t, kOk, "7"},
        {"{FindLastFromIndex({DecodedData()},-1,F,0)}", t, kOk, "7"},
        {"{FindLastFromIndex({DecodedData()},-1,A,0)}", t, kOk, "0"},
        {"{FindLastFromIndex({DecodedData()},-1,ABC,0)}", "ABC", kOk, "-2"},
        {"{FindLastFromIndex({DecodedData()},-1,,0)}", t, kOk, "8"},
        {"{FindLastFromIndex({DecodedData()},-1,x,0)}", "", kOk, "-2"},
        {"{FindLastFromIndex({DecodedData()},-2,-,5)}", t, kOk, "-2"},
        {"{FindLastFromIndex({DecodedData()},7,x,3)}", t, kOk, "1"},
        {"{FindLastFromIndex({DecodedData()},7,x,-2147483648)}", t, kOk, "2147483646"},
        {"{FindLastFromIndex({DecodedData()},8,-,0)}", t, kRange, ""},
        {"{FindLastFromIndex({DecodedData()},-3,-,0)}", t, kRange, ""},
        {"{FindLastFromIndex({DecodedData()},-2147483648,-,0)}", t, kRange, ""},
        {"{FindLastFromIndex({DecodedData()},0,-,0)}", "", kRange, ""},
        // Stepping back from the end reaches past a zero byte.
        {"{FindLastFromIndex({DecodedData()},-1,-,0)}", "AB\0-CD"s, kOk, "3"},
        {"{FindLastFromIndex({DecodedData()},1,-,0)}", "AB\0-CD"s, kOk, "-2"},
        // A failed first search is passed on, unsearched, by the second.
        {"{FindFirstFromIndex({DecodedData()},{FindFirstFromIndex({DecodedData()},-1,x,0)},-,7)}", t, kOk, "-2"},
        {"{FindLastFromIndex({DecodedData()},{FindFirstFromIndex({DecodedData()},0,-,1)},-,0)}", t, kOk, "5"},
        {"at {FindFirstFromIndex({DecodedData()},-1,C,0)}", t, kOk, "at 3"},
    });
}

TEST(TruncateAtIndex, ExpressionTable)
{
    const std::string t = "AB-CD-EF";
    struct TRow {
        const char* pszIndex;
        const char* pszOffset;
        std::string text;
        NRVRESULT code;
        std::string after;
        std::string before;
    };
    const std::vector<TRow> rows = {
        {"2", "0", t, kOk, "AB", "-CD-EF"},
        {"2", "1", t, kOk, "AB-", "CD-EF"},
        {"0", "0", t, kOk, "", t},
        {"8", "0", t, kOk, t, ""},
        {"20", "0", t, kOk, t, ""},
        {"-1", "5", t, kOk, t, t},
        {"-2", "0", t, kOk, t, t},
        {"-3", "0", t, kRange, "", ""},
        {"-2147483648", "0", t, kRange, "", ""},
        {"2", "-2", t, kOk, "", t},
        {"2", "-3", t, kOk, t, ""},
        {"5", "-2", t, kOk, "AB-", "CD-EF"},
        {"2147483647", "2147483647", t, kOk, t, ""},
        {"2", "-2147483648", t, kOk, t, ""},
        {"0", "0", "", kOk, "", ""},
        {"3", "0", "AB\0CD"s, kOk, "AB\0"s, "CD"},
        {"2", "0", "AB\0CD"s, kOk, "AB", "\0CD"s},
        // Index from a find: 3 past the first dash, -1 when none, -2 from offset 0.
        {"{FindFirstFromIndex({DecodedData()},-1,-,1)}", "0", t, kOk, "AB-", "CD-EF"},
        {"{FindFirstFromIndex({DecodedData()},-1,-,1)}", "0", "ABCDEF", kOk, "ABCDEF", "ABCDEF"},
        {"{FindFirstFromIndex({DecodedData()},-1,-,0)}", "0", "ABCDEF", kOk, "ABCDEF", "ABCDEF"},
    };
    std::vector<TEditRow> editRows;
    std::vector<std::string> expressions;
    expressions.reserve(rows.size() * 2);
    for (const TRow& row : rows) {
        for (int nAfter = 1; nAfter >= 0; --nAfter) {
            expressions.push_back(std::string("{") + (nAfter ? "TruncateAfterIndex" : "TruncateBeforeIndex") +
                                  "({DecodedData()}," + row.pszIndex + "," + row.pszOffset + ")}");
            editRows.push_back({expressions.back().c_str(), row.text, row.code, nAfter ? row.after : row.before});
        }
    }
    ExpectEdits(editRows);
    ExpectEdits({
        {"{TruncateBeforeIndex({DecodedData()},{FindFirstFromIndex({DecodedData()},0,-,1)},0)}", t, kOk, "CD-EF"},
        {"{TruncateBeforeIndex({DecodedData()},{FindFirstFromIndex({DecodedData()},0,-,1)},0)}", "ABCDEF", kOk,
         "ABCDEF"},
        {"{TruncateAfterIndex(2024,2,0)}", "", kOk, "20"},
    });
}

TEST(InsertAtIndex, ExpressionTable)
{
    struct TRow {
        const char* pszIndex;
        const char* pszInsert;
        std::string text;
        NRVRESULT afterCode;
        std::string after;
        NRVRESULT beforeCode;
        std::string before;
    };
    const std::vector<TRow> rows = {
        {"0", "-", "ABCD", kOk, "A-BCD", kOk, "-ABCD"},
        {"1", "-", "ABCD", kOk, "AB-CD", kOk, "A-BCD"},
        {"3", "-", "ABCD", kOk, "ABCD-", kOk, "ABC-D"},
        {"-1", "-", "ABCD", kOk, "ABCD-", kOk, "ABC-D"},
        {"4", "-", "ABCD", kRange, "", kRange, ""},
        {"-2", "-", "ABCD", kOk, "ABCD", kOk, "ABCD"},
        {"-3", "-", "ABCD", kRange, "", kRange, ""},
        {"-2147483648", "-", "ABCD", kRange, "", kRange, ""},
        {"2147483647", "-", "ABCD", kRange, "", kRange, ""},
        {"2", "", "ABCD", kOk, "ABCD", kOk, "ABCD"},
        {"-1", "", "ABCD", kOk, "ABCD", kOk, "ABCD"},
        {"-1", "xy", "", kOk, "xy", kOk, "xy"},
        {"0", "xy", "", kRange, "", kRange, ""},
        {"-1", "xy", "A", kOk, "Axy", kOk, "xyA"},
        // Zero bytes in the text and in the insert are copied by length.
        {"1", "{DecodedData()}", "A\0B"s, kOk, "A\0A\0BB"s, kOk, "AA\0B\0B"s},
        // Index from a find: behind or in front of the dash, unchanged when absent.
        {"{FindFirstFromIndex({DecodedData()},-1,-,0)}", "+", "AB-CD", kOk, "AB-+CD", kOk, "AB+-CD"},
        {"{FindFirstFromIndex({DecodedData()},-1,x,0)}", "+", "AB-CD", kOk, "AB-CD", kOk, "AB-CD"},
        // All parameters run first: a failing insert fails even with -2.
        {"-2", "{TruncateFromEnd({DecodedData()},9)}", "ABCD", kRange, "", kRange, ""},
    };
    std::vector<TEditRow> editRows;
    std::vector<std::string> expressions;
    expressions.reserve(rows.size() * 2);
    for (const TRow& row : rows) {
        for (int nAfter = 1; nAfter >= 0; --nAfter) {
            expressions.push_back(std::string("{") + (nAfter ? "InsertAfterIndex" : "InsertBeforeIndex") +
                                  "({DecodedData()}," + row.pszIndex + "," + row.pszInsert + ")}");
            editRows.push_back({expressions.back().c_str(), row.text, nAfter ? row.afterCode : row.beforeCode,
                                nAfter ? row.after : row.before});
        }
    }
    ExpectEdits(editRows);
    ExpectEdits({
        {"{InsertBeforeIndex(2024,2,-)}", "", kOk, "20-24"},
        {"{InsertAfterIndex({DecodedData()},1,2024)}", "AB", kOk, "AB2024"},
    });
}

// A find yields an integer only, and every other command a text only: each
// is refused where the other is expected, before anything runs.
TEST(IndexCommandParser, RefusesWrongParameterKinds)
{
    const struct {
        const char* pszExpression;
        NRVRESULT code;
    } rows[] = {
        {"{TruncateFromBeginning({FindFirstFromIndex({DecodedData()},-1,-,0)},1)}", NRV_ERR_INVALID_PARAMETER},
        {"{TruncateFromEnd({DecodedData()},{DecodedData()})}", NRV_ERR_INVALID_PARAMETER},
        {"{TruncateFromEnd({DecodedData()},x)}", NRV_ERR_INVALID_PARAMETER},
        {"{FindFirstFromIndex({FindLastFromIndex({DecodedData()},-1,-,0)},-1,-,0)}", NRV_ERR_INVALID_PARAMETER},
        {"{FindFirstFromIndex({DecodedData()},{DecodedData()},-,0)}", NRV_ERR_INVALID_PARAMETER},
        {"{FindLastFromIndex({DecodedData()},-1,{FindFirstFromIndex({DecodedData()},-1,-,0)},0)}",
         NRV_ERR_INVALID_PARAMETER},
        {"{FindLastFromIndex({DecodedData()},-1,-,{DecodedData()})}", NRV_ERR_INVALID_PARAMETER},
        {"{FindLastFromIndex({DecodedData()},-1,-,)}", NRV_ERR_INVALID_PARAMETER},
        {"{TruncateAfterIndex({FindFirstFromIndex({DecodedData()},-1,-,0)},0,0)}", NRV_ERR_INVALID_PARAMETER},
        {"{TruncateAfterIndex({DecodedData()},{DecodedData()},0)}", NRV_ERR_INVALID_PARAMETER},
        {"{TruncateBeforeIndex({DecodedData()},2,x)}", NRV_ERR_INVALID_PARAMETER},
        {"{InsertAfterIndex({DecodedData()},{DecodedData()},-)}", NRV_ERR_INVALID_PARAMETER},
        {"{InsertBeforeIndex({DecodedData()},0,{FindFirstFromIndex({DecodedData()},-1,-,0)})}",
         NRV_ERR_INVALID_PARAMETER},
        {"{InsertBeforeIndex({FindLastFromIndex({DecodedData()},-1,-,0)},0,-)}", NRV_ERR_INVALID_PARAMETER},
        {"{InsertAfterIndex({DecodedData()},1)}", NRV_ERR_PARAMETER_COUNT},
        {"{FindFirstFromIndex({DecodedData()},-1,-)}", NRV_ERR_PARAMETER_COUNT},
        {"{TruncateFromBeginning({DecodedData()},1,2)}", NRV_ERR_PARAMETER_COUNT},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.pszExpression);
        CNrvDataEditingProfile profile;
        EXPECT_EQ(profile.Parse(row.pszExpression), row.code);
        char szData[] = "AB-CD";
        TNrvScanDecodedData record = {};
        record.String.pValue = szData;
        record.String.nLength = 5;
        EXPECT_EQ(profile.Edit(&record), row.code);
        EXPECT_EQ(record.String.pValue, szData);
        EXPECT_EQ(record.String.nLength, 5u);
    }
}

// A command's own refusal leaves the caller's record as it was, text and all.
TEST(IndexCommandRun, RefusalLeavesTheRecordAsItWas)
{
    CNrvDataEditingProfile profile;
    CNrvOperation* const operations[] = {
        MakeCommand("TruncateFromBeginning", {"ABCD", "4"}, &profile),
        MakeCommand("TruncateFromEnd", {"ABCD", "-1"}, &profile),
        MakeCommand("FindFirstFromIndex", {"ABCD", "4", "C", "0"}, &profile),
        MakeCommand("FindLastFromIndex", {"ABCD", "-3", "C", "0"}, &profile),
        MakeCommand("TruncateAfterIndex", {"ABCD", "-3", "0"}, &profile),
        MakeCommand("TruncateBeforeIndex", {"ABCD", "-2147483648", "0"}, &profile),
        MakeCommand("InsertAfterIndex", {"ABCD", "4", "-"}, &profile),
        MakeCommand("InsertBeforeIndex", {"", "0", "-"}, &profile),
    };
    for (CNrvOperation* pOperation : operations) {
        std::unique_ptr<CNrvOperation> operation(pOperation);
        ASSERT_NE(nullptr, pOperation);
        ASSERT_TRUE(operation->CheckIfParametersAreCorrect());
        CNrvOperationResult result;
        ASSERT_EQ(result.WriteResult("kept", 4), kOk);
        EXPECT_EQ(operation->Run(result), kRange);
        EXPECT_EQ(result.GetType(), CNrvOperationResult::typeString);
        EXPECT_EQ(std::string(result.GetResultString(), result.GetResultStringLength()), "kept");
    }
}
