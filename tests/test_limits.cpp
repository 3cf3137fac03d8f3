// The profile's limits on one edit (largest text, work budget) at, just
// under and just over each bound; hostile expressions that would run for
// minutes without them; and texts too long for 32-bit positions.
#include <gtest/gtest.h>
#include <sys/mman.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "EditRows.h"
#include "NrvDataEditingProfile.h"
#include "NrvDiagnostics.h"
#include "NrvOperation.h"
#include "NrvScanTypes.h"

namespace {

using TLimits = TNrvLimits;  // the largest text, the work base, the work per scan byte

struct TOutcome {
    NRVRESULT code;
    std::string text;  // the record after the edit
};

// One edit through a fresh profile. A failed edit must leave the record
// pointing at the bytes it was given.
TOutcome EditWithLimits(const std::string& expression, const std::string& scan, const TLimits& limits)
{
    CNrvDataEditingProfile profile;
    EXPECT_EQ(profile.EnableCommandSets(kNrvCommandSetsAll), NRV_OK);
    EXPECT_EQ(profile.Parse(expression.c_str()), NRV_OK);
    EXPECT_EQ(profile.WriteLimitMaximumTextSize(limits.nMaximumTextSize), NRV_OK);
    EXPECT_EQ(profile.WriteLimitWorkBudget(limits.nWorkBase, limits.nWorkPerScanByte), NRV_OK);
    std::string input = scan;
    char* const pInput = &input[0];
    TNrvScanDecodedData record = {kNrvScanSymbologyCode128, {0, nullptr}, {input.size(), pInput}};
    TOutcome outcome;
    outcome.code = profile.Edit(&record);
    if (outcome.code < 0) {
        EXPECT_EQ(record.String.pValue, pInput);
        EXPECT_EQ(record.String.nLength, scan.size());
    }
    outcome.text.assign(record.String.pValue, record.String.nLength);
    return outcome;
}

// Substitute doubling every 'a' once per level, around the scan.
std::string Doubling(int nLevels)
{
    std::string expression = "{DecodedData()}";
    for (int i = 0; i < nLevels; ++i)
        expression = "{Substitute(" + expression + ",a,aa)}";
    return expression;
}

constexpr size_t kNone = 0;

}  // namespace

// The charges are: a command's result size against the largest text; the
// bytes it copies or builds, and for a search or set test of m bytes through
// a text of n, n * (m + 1), against the budget; the edited text as a whole
// against both.
TEST(Limits, AtJustUnderAndJustOverEachBound)
{
    const std::string kDecoded = "{DecodedData()}";
    const std::string kTwice = "{DecodedData()}{DecodedData()}";
    const std::string kFind = "{FindFirstFromIndex({DecodedData()},-1,cd,0)}";
    const std::string kDouble = "{Substitute({DecodedData()},a,aa)}";
    const struct {
        const char* pszCase;
        std::string expression;
        std::string scan;
        TLimits limits;
        NRVRESULT code;
        std::string text;
    } rows[] = {
        {"no limits", kTwice, "abcd", {kNone, kNone, kNone}, NRV_OK, "abcdabcd"},
        // The edited text of 8 bytes, each piece 4.
        {"text: at", kTwice, "abcd", {8, kNone, kNone}, NRV_OK, "abcdabcd"},
        {"text: above", kTwice, "abcd", {9, kNone, kNone}, NRV_OK, "abcdabcd"},
        {"text: under", kTwice, "abcd", {7, kNone, kNone}, NRV_ERR_TEXT_LIMIT, "abcd"},
        {"text: a piece over", kTwice, "abcd", {3, kNone, kNone}, NRV_ERR_TEXT_LIMIT, "abcd"},
        // Substitute's result is 8 bytes.
        {"substitute: at", kDouble, "aaaa", {8, kNone, kNone}, NRV_OK, "aaaaaaaa"},
        {"substitute: under", kDouble, "aaaa", {7, kNone, kNone}, NRV_ERR_TEXT_LIMIT, "aaaa"},
        // DecodedData copies 4, the edit 4: 8.
        {"work: at", kDecoded, "abcd", {kNone, 8, kNone}, NRV_OK, "abcd"},
        {"work: over", kDecoded, "abcd", {kNone, 9, kNone}, NRV_OK, "abcd"},
        {"work: under", kDecoded, "abcd", {kNone, 7, kNone}, NRV_ERR_WORK_LIMIT, "abcd"},
        {"work per byte: at", kDecoded, "abcd", {kNone, kNone, 2}, NRV_OK, "abcd"},
        {"work per byte: under", kDecoded, "abcd", {kNone, 3, 1}, NRV_ERR_WORK_LIMIT, "abcd"},
        {"work base and per byte: at", kDecoded, "abcd", {kNone, 4, 1}, NRV_OK, "abcd"},
        // 4 copied, the search 4 * 3, the edited "2": 17.
        {"search: at", kFind, "abcd", {kNone, 17, kNone}, NRV_OK, "2"},
        {"search: under", kFind, "abcd", {kNone, 16, kNone}, NRV_ERR_WORK_LIMIT, "abcd"},
        // 4 copied, the set test 4 * 2, the result 8 and the edit 8: 28.
        {"set test: at", kDouble, "aaaa", {kNone, 28, kNone}, NRV_OK, "aaaaaaaa"},
        {"set test: under", kDouble, "aaaa", {kNone, 27, kNone}, NRV_ERR_WORK_LIMIT, "aaaa"},
        {"both: at", kDouble, "aaaa", {8, 28, kNone}, NRV_OK, "aaaaaaaa"},
        // A budget that does not fit a size is no budget.
        {"work: saturated", kDecoded, "abcd", {kNone, SIZE_MAX, SIZE_MAX}, NRV_OK, "abcd"},
        {"work: saturated base", kDecoded, "abcd", {kNone, SIZE_MAX, 1}, NRV_OK, "abcd"},
        {"empty scan", kDecoded, "", {kNone, 1, 1000}, NRV_OK, ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.pszCase);
        const TOutcome outcome = EditWithLimits(row.expression, row.scan, row.limits);
        EXPECT_EQ(outcome.code, row.code);
        EXPECT_EQ(outcome.text, row.text);
    }
}

// The commands that build longer texts than they are given check the
// largest text themselves: each row passes with a limit of the largest text
// it builds and fails one byte below; a budget of 1 stops them all.
TEST(Limits, GrowingCommandsCheckTheLargestText)
{
    const struct {
        const char* pszExpression;
        size_t nLargest;  // the largest text the edit builds
        NRVRESULT code;   // below that size
    } rows[] = {
        {"{DecodedDataWithoutTrailer()}", 5, NRV_ERR_TEXT_LIMIT},
        {"{InsertAfterIndex({DecodedData()},1,xyz)}", 9, NRV_ERR_TEXT_LIMIT},
        {"{InsertBeforeIndex({DecodedData()},1,xyz)}", 9, NRV_ERR_TEXT_LIMIT},
        {"{Replace({DecodedData()},b,wxyz)}", 9, NRV_ERR_TEXT_LIMIT},
        {"{ReplaceNonPrintableCharacters({DecodedData()},xyz)}", 8, NRV_ERR_TEXT_LIMIT},
        {"{EscapeCharacter(41 42 43 44 45 46 47)}", 7, NRV_ERR_TEXT_LIMIT},
    };
    const std::string scan = "abcde\r";
    for (const auto& row : rows) {
        SCOPED_TRACE(row.pszExpression);
        EXPECT_EQ(EditWithLimits(row.pszExpression, scan, {row.nLargest, kNone, kNone}).code, NRV_OK);
        EXPECT_EQ(EditWithLimits(row.pszExpression, scan, {row.nLargest - 1, kNone, kNone}).code, row.code);
        EXPECT_EQ(EditWithLimits(row.pszExpression, scan, {kNone, 1, kNone}).code, NRV_ERR_WORK_LIMIT);
    }
}

// Over literal parameters, which cost nothing, a command's own work is all
// there is beside joining its result to the output, which costs the
// result's length: a budget of just that length stops every command, and an
// ample one changes nothing. Each command's sample call, with the scan it
// reads written as a literal.
TEST(Limits, EveryCommandChargesItsWork)
{
    size_t nCount = 0;
    const TNrvCommandInfo* pTable = NrvGetCommandTable(&nCount);
    for (size_t i = 0; i < nCount; ++i) {
        const std::string call = CallOf(pTable[i], SampleArgumentsOver(pTable[i], SampleScan()));
        SCOPED_TRACE(call);
        const TOutcome unlimited = EditWithLimits(call, SampleScan(), {kNone, kNone, kNone});
        ASSERT_EQ(unlimited.code, NRV_OK);
        ASSERT_FALSE(unlimited.text.empty());  // a budget of 0 would be none
        EXPECT_EQ(EditWithLimits(call, SampleScan(), {kNone, unlimited.text.size(), kNone}).code, NRV_ERR_WORK_LIMIT);
        const TOutcome ample = EditWithLimits(call, SampleScan(), {kNone, 1000, kNone});
        EXPECT_EQ(ample.code, NRV_OK);
        EXPECT_EQ(ample.text, unlimited.text);
    }
}

// Doubling texts and searches that compare a long marker at every byte: with
// the limits a caller would set, each stops early with its code (without
// them each search below compares terabytes).
TEST(Limits, HostileExpressionsStopEarly)
{
    const TLimits limits = {16u << 20, 256u << 20, 64};
    // "a...a|" of 2^22 and 2^21 'a's: the marker matches far into the text
    // at every 'a'.
    const std::string text = Doubling(22);
    const std::string marker = Doubling(21);
    const struct {
        std::string expression;
        NRVRESULT code;
    } rows[] = {
        {Doubling(24), NRV_ERR_TEXT_LIMIT},
        {"{Extract(" + text + "," + marker + ",|)}", NRV_ERR_WORK_LIMIT},
        {"{Extract(" + text + ",|," + marker + ")}", NRV_ERR_WORK_LIMIT},
        {"{FindLastFromIndex(" + text + ",-1," + marker + ",0)}", NRV_ERR_WORK_LIMIT},
        {"{FindFirstFromIndex(" + text + ",-1," + marker + ",0)}", NRV_ERR_WORK_LIMIT},
        {"{Replace(" + text + "," + marker + ",x)}", NRV_ERR_WORK_LIMIT},
        {"{Substitute(" + text + "," + marker + ",x)}", NRV_ERR_WORK_LIMIT},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.expression.substr(0, 40));
        const TOutcome outcome = EditWithLimits(row.expression, "a|", limits);
        EXPECT_EQ(outcome.code, row.code);
        EXPECT_EQ(outcome.text, "a|");
        // Explaining it runs every node again, each under the same limits.
        EXPECT_EQ(NrvExplain(row.expression.c_str(), "a|", 2, limits).nCode, row.code);
    }
}

namespace {

// A parameter yielding a fixed text (copied on every run) or number.
class CFixedOperation : public CNrvOperation {
public:
    CFixedOperation(const char* pText, size_t nLength) : CNrvOperation(nullptr), m_pText(pText), m_nLength(nLength) {}
    explicit CFixedOperation(int nValue) : CNrvOperation(nullptr), m_pText(nullptr), m_nLength(0), m_nValue(nValue) {}
    bool CheckIfParametersAreCorrect() const override { return true; }
    NRVRESULT Run(CNrvOperationResult& Result) const override
    {
        if (m_pText == nullptr) {
            Result.SetResult(m_nValue);
            return NRV_OK;
        }
        return Result.WriteResult(m_pText, m_nLength);
    }
    int GetResultType() const override { return CNrvOperationResult::typeStringOrInt; }

private:
    const char* m_pText;
    size_t m_nLength;
    int m_nValue = 0;
};

}  // namespace

// A match past 2^31 cannot be told in a 32-bit position: the commands that
// yield or search by position refuse texts of 2 GiB and more, with or
// without limits. The text is mapped, not filled, and handed to the command
// directly, so each row costs one 2 GiB copy (seconds here, a minute under
// the address sanitizer, whose build leaves it out). FindLastFromIndex makes
// the same check as FindFirstFromIndex.
TEST(Limits, TextsOf2GiBAreRefusedByThePositionCommands)
{
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "left to the plain build";
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
    GTEST_SKIP() << "left to the plain build";
#endif
#endif
    const size_t nLength = (size_t{1} << 31) + 16;
    void* pMapped = mmap(nullptr, nLength, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (pMapped == MAP_FAILED)
        GTEST_SKIP() << "cannot map 2 GiB";
    char* pText = static_cast<char*>(pMapped);
    // Letters from 2^31 - 1 on, with an 'x' at 2^31 + 8 that a 32-bit
    // position would give as -2147483640.
    memset(pText + (size_t{1} << 31) - 1, 'a', 17);
    pText[(size_t{1} << 31) + 8] = 'x';
    const struct {
        const char* pszCommand;
        int nStart;  // for the find commands
        NRVRESULT code;
    } rows[] = {
        {"FindFirstFromIndex", 2147483647, NRV_ERR_TEXT_TOO_LONG},
        {"Extract", 0, NRV_ERR_TEXT_TOO_LONG},
    };
    CNrvOperationDictionary* pDictionary = CNrvOperationDictionary::GetLibraryDictionary();
    CNrvDataEditingProfile profile;  // without limits
    for (const auto& row : rows) {
        SCOPED_TRACE(row.pszCommand);
        CNrvOperation* pOperation = nullptr;
        ASSERT_EQ(pDictionary->GetValue(row.pszCommand, strlen(row.pszCommand))->CreateOperation(&profile, &pOperation),
                  NRV_OK);
        std::unique_ptr<CNrvOperation> owner(pOperation);
        CNrvList* pParameters = pOperation->GetOperationsList();
        pParameters->AddTail(new CFixedOperation(pText, nLength));
        if (strcmp(row.pszCommand, "Extract") == 0) {
            pParameters->AddTail(new CFixedOperation("x", 1));
            pParameters->AddTail(new CFixedOperation("y", 1));
        } else {
            pParameters->AddTail(new CFixedOperation(row.nStart));
            if (pOperation->GetParameterCount() == 4) {
                pParameters->AddTail(new CFixedOperation("x", 1));
                pParameters->AddTail(new CFixedOperation(0));
            }
        }
        ASSERT_TRUE(pOperation->CheckIfParametersAreCorrect());
        CNrvOperationResult result;
        try {
            EXPECT_EQ(pOperation->Run(result), row.code);
        } catch (const std::bad_alloc&) {
            munmap(pMapped, nLength);
            GTEST_SKIP() << "not enough memory for a copy of 2 GiB";
        }
    }
    munmap(pMapped, nLength);
}
