// Robustness: an allocation failure at every allocation of a parse and an
// edit, and hostile expressions and scans. Every case checks that the engine
// answers with a result code (never a crash), that a failed Edit leaves the
// record as it was, and that a successful one hands back a zero-terminated
// buffer of the length it reports. Leaks and stray reads are the
// sanitizers' to find; the allocation test also counts live allocations, so
// it catches leaks in a plain build too.
#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include "EditRows.h"
#include "NrvCommandTable.h"
#include "NrvDataEditingProfile.h"
#include "NrvDiagnostics.h"
#include "NrvParsingString.h"
#include "NrvRuleSet.h"
#include "NrvScanTypes.h"

#if defined(__SANITIZE_ADDRESS__)
#define NRV_TEST_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define NRV_TEST_ASAN 1
#endif
#endif
#ifdef NRV_TEST_ASAN
#include <sanitizer/asan_interface.h>
#endif

// ---------------------------------------------------------------------------
// Replaced global allocation functions. They affect the whole test binary, so
// they stay inert (a plain malloc) unless a test arms the failure countdown.
// Each block carries a 16-byte header with its size and its form (scalar or
// array), so that the new/delete pairing that the sanitizer can no longer see
// through the replacement is still checked here; under AddressSanitizer the
// header is poisoned, so an underflow into it is still reported.
// ---------------------------------------------------------------------------
namespace {

enum : uint32_t { kFormScalar = 0x5ca1a7u, kFormArray = 0xa77a7u };
struct alignas(16) TBlockHeader {
    size_t nSize;
    uint32_t nForm;
    uint32_t nMagic;
};
static_assert(sizeof(TBlockHeader) == 16, "the header keeps the block aligned");
constexpr uint32_t kBlockMagic = 0x4e52564du;

// -1: inert. n >= 0: the allocation after n more succeed throws, once.
long long g_nAllocationsBeforeFailure = -1;
long long g_nLiveAllocations = 0;
// Bytes: held now, the most held since the last ResetPeak, and allocated
// in all (a measure of work that a machine's load cannot disturb).
size_t g_nLiveBytes = 0;
size_t g_nPeakBytes = 0;
size_t g_nAllocatedBytes = 0;

void* AllocateBlock(size_t nSize, uint32_t nForm)
{
    if (g_nAllocationsBeforeFailure == 0) {
        g_nAllocationsBeforeFailure = -1;
        throw std::bad_alloc();
    }
    if (g_nAllocationsBeforeFailure > 0)
        --g_nAllocationsBeforeFailure;
    void* pRaw = std::malloc(sizeof(TBlockHeader) + (nSize != 0 ? nSize : 1));
    if (pRaw == nullptr)
        throw std::bad_alloc();
    TBlockHeader* pHeader = static_cast<TBlockHeader*>(pRaw);
    pHeader->nSize = nSize;
    pHeader->nForm = nForm;
    pHeader->nMagic = kBlockMagic;
#ifdef NRV_TEST_ASAN
    __asan_poison_memory_region(pHeader, sizeof(TBlockHeader));
#endif
    ++g_nLiveAllocations;
    g_nLiveBytes += nSize;
    g_nAllocatedBytes += nSize;
    if (g_nLiveBytes > g_nPeakBytes)
        g_nPeakBytes = g_nLiveBytes;
    return pHeader + 1;
}

[[noreturn]] void BadRelease(const char* pszWhat, const void* p)
{
    std::fprintf(stderr, "allocation check: %s (block %p)\n", pszWhat, p);
    std::abort();
}

void ReleaseBlock(void* p, uint32_t nForm, size_t nSize, bool bSized) noexcept
{
    if (p == nullptr)
        return;
    TBlockHeader* pHeader = static_cast<TBlockHeader*>(p) - 1;
#ifdef NRV_TEST_ASAN
    __asan_unpoison_memory_region(pHeader, sizeof(TBlockHeader));
#endif
    if (pHeader->nMagic != kBlockMagic)
        BadRelease("released a block that operator new did not make", p);
    if (pHeader->nForm != nForm)
        BadRelease(nForm == kFormArray ? "delete[] of a block made by new" : "delete of a block made by new[]", p);
    if (bSized && pHeader->nSize != nSize)
        BadRelease("sized delete with a size other than the allocation's", p);
    pHeader->nMagic = 0;
    --g_nLiveAllocations;
    g_nLiveBytes -= pHeader->nSize;
    std::free(pHeader);
}

// What running f costs: the most bytes it held at once beyond what was held
// before, and the bytes it allocated in all.
struct TCost {
    size_t nPeakBytes;
    size_t nAllocatedBytes;
};

template <class F>
TCost CostOf(F f)
{
    const size_t nLiveBefore = g_nLiveBytes;
    const size_t nAllocatedBefore = g_nAllocatedBytes;
    g_nPeakBytes = g_nLiveBytes;
    f();
    return {g_nPeakBytes - nLiveBefore, g_nAllocatedBytes - nAllocatedBefore};
}

// Arms the countdown so that the n-th allocation from now (n >= 1) throws.
void FailAllocation(long long n)
{
    g_nAllocationsBeforeFailure = n - 1;
}

// Disarms; true when the armed failure was thrown.
bool DisarmAllocationFailure()
{
    const bool bThrown = g_nAllocationsBeforeFailure < 0;
    g_nAllocationsBeforeFailure = -1;
    return bThrown;
}

}  // namespace

void* operator new(size_t nSize)
{
    return AllocateBlock(nSize, kFormScalar);
}
void* operator new[](size_t nSize)
{
    return AllocateBlock(nSize, kFormArray);
}
void* operator new(size_t nSize, const std::nothrow_t&) noexcept
{
    try {
        return AllocateBlock(nSize, kFormScalar);
    } catch (...) {
        return nullptr;
    }
}
void* operator new[](size_t nSize, const std::nothrow_t&) noexcept
{
    try {
        return AllocateBlock(nSize, kFormArray);
    } catch (...) {
        return nullptr;
    }
}
void operator delete(void* p) noexcept
{
    ReleaseBlock(p, kFormScalar, 0, false);
}
void operator delete[](void* p) noexcept
{
    ReleaseBlock(p, kFormArray, 0, false);
}
void operator delete(void* p, size_t nSize) noexcept
{
    ReleaseBlock(p, kFormScalar, nSize, true);
}
void operator delete[](void* p, size_t nSize) noexcept
{
    ReleaseBlock(p, kFormArray, nSize, true);
}
void operator delete(void* p, const std::nothrow_t&) noexcept
{
    ReleaseBlock(p, kFormScalar, 0, false);
}
void operator delete[](void* p, const std::nothrow_t&) noexcept
{
    ReleaseBlock(p, kFormArray, 0, false);
}

namespace {

// ---------------------------------------------------------------------------
// Helpers
// ---------------------------------------------------------------------------

std::string Repeat(const std::string& piece, size_t nTimes)
{
    std::string text;
    text.reserve(piece.size() * nTimes);
    for (size_t i = 0; i < nTimes; ++i)
        text += piece;
    return text;
}

std::string Bytes(size_t nLength, int (*pfnByte)(size_t))
{
    std::string text(nLength, '\0');
    for (size_t i = 0; i < nLength; ++i)
        text[i] = static_cast<char>(pfnByte(i));
    return text;
}

// `Cmd(x)` nested nDepth times around the innermost text.
std::string Nest(const std::string& command, size_t nDepth, const std::string& innermost)
{
    return Repeat("{" + command + "(", nDepth) + innermost + Repeat(")}", nDepth);
}

struct TOutcome {
    NRVRESULT parse;
    NRVRESULT edit;
    std::string text;  // the edited bytes when edit >= 0
};

// Edits one scan and checks what every edit must keep: a failed Edit leaves
// the record as it was; a successful one (not merely untriggered) gives a
// buffer of the reported length followed by a zero byte.
NRVRESULT EditChecked(CNrvDataEditingProfile& profile, const std::string& scan, std::string* pText, bool bNullWhenEmpty)
{
    std::vector<char> input(scan.begin(), scan.end());
    char* const pInput = (bNullWhenEmpty && input.empty()) ? nullptr : input.data();
    TNrvScanDecodedData record = {kNrvScanSymbologyCode128, {0, nullptr}, {input.size(), pInput}};
    const NRVRESULT result = profile.Edit(&record);
    if (result < 0 || result == NRV_OK_NOT_TRIGGERED) {
        EXPECT_EQ(record.String.pValue, pInput);
        EXPECT_EQ(record.String.nLength, input.size());
        EXPECT_EQ(std::string(input.begin(), input.end()), scan) << "the caller's bytes were written";
        pText->clear();
        return result;
    }
    EXPECT_TRUE(record.String.pValue != nullptr);
    if (record.String.pValue == nullptr)
        return result;
    EXPECT_EQ(record.String.pValue[record.String.nLength], '\0');
    pText->assign(record.String.pValue, record.String.nLength);
    return result;
}

// Every command set is enabled: the seed commands parse and edit alike
// either way, and "every command" takes in the extensions.
TOutcome EditOnce(const std::string& expression, const std::string& scan, bool bNullWhenEmpty = false)
{
    CNrvDataEditingProfile profile;
    profile.EnableCommandSets(kNrvCommandSetsAll);
    TOutcome outcome = {profile.Parse(expression.c_str()), 0, std::string()};
    outcome.edit = EditChecked(profile, scan, &outcome.text, bNullWhenEmpty);
    if (outcome.parse < 0) {
        EXPECT_EQ(outcome.edit, outcome.parse) << "Edit after a failed Parse returns its code";
    } else {
        // A parsed tree is not changed by a run: the same scan edits the same way.
        std::string again;
        EXPECT_EQ(EditChecked(profile, scan, &again, bNullWhenEmpty), outcome.edit);
        EXPECT_EQ(again, outcome.text);
    }
    return outcome;
}

constexpr size_t kMegabyte = 1024 * 1024;

int ByteLetter(size_t)
{
    return 'a';
}
int ByteZero(size_t)
{
    return 0;
}
int ByteHigh(size_t i)
{
    return 0x80 + static_cast<int>(i % 0x80);
}
int ByteAny(size_t i)
{
    return static_cast<int>((i * 7 + 3) % 256);
}

std::string Int(long long n)
{
    return std::to_string(n);
}

// ---------------------------------------------------------------------------
// Allocation failure
// ---------------------------------------------------------------------------

struct TAllocationCase {
    std::string expression;
    std::string scan;
    std::string longerScan;  // for the second edit, so that buffers must grow
};

const TAllocationCase kAllocationCases[] = {
    {"Code: {TruncateFromBeginning({DecodedData()},2)}", "AB1234", "AB123456789012345678901234567890"},
    {"{MakeUpperCase({Substring({DecodedData()},{FindFirstFromIndex({DecodedData()},-1,-,1)},-1)})}|"
     "{MakeLowerCase({TruncateBeforeIndex({DecodedData()},{FindLastFromIndex({DecodedData()},-1,-,0)},1)})}",
     "ab-cd-EF", "ab-cd-EF-gh-ij-kl-mn-op-qr-st-uv-wx-YZ"},
    {"{Replace({DecodedData()},-,+)}{Substitute({DecodedData()},-c,<>)}{TruncateFromEnd({DecodedData()},1)}",
     "ab-cd-ef", "ab-cd-ef-ab-cd-ef-ab-cd-ef-ab-cd-ef-ab-cd-ef"},
    {"{InsertAfterIndex({DecodedDataWithoutTrailer()},1,{EscapeCharacter(2D3e)})}"
     "{InsertBeforeIndex({DecodedData()},-1,x)}{TruncateAfterIndex({DecodedData()},3,-1)}",
     "12345\r\n", "1234567890123456789012345678901234567890\r\n"},
    {"[{Extract({DecodedData()},<,>)}] {ReplaceNonPrintableCharacters({DecodedData()},?)} 0042",
     "x<in\x01side>y", "xx<in\x01si\x1d\x1e" "de and more inside>yy\x80\xff"},
    // Failing parses and edits allocate before they fail, and must not leak then either.
    {"{TruncateFromEnd({DecodedData()},2)}{MakeUpperCase({NoSuchCommand()})}", "abc", "abcdef"},
    {"{TruncateFromBeginning({DecodedData()},99)}{DecodedData()}", "abc", "abcdefghij"},
};

void Trace(bool, const char* pszLine, void* pContext)
{
    *static_cast<size_t*>(pContext) += std::strlen(pszLine);
}

// For n = 1, 2, ...: on a fresh profile, prepared by bSecondEdit's choice,
// the n-th allocation of the step under test throws. The exception must
// reach the caller, the record must be untouched, nothing may leak, and the
// same profile must then parse and edit as if nothing had happened. Ends when
// an n is reached that no allocation sees. The step is a Parse and an Edit
// of the scan, or (bSecondEdit) an Edit of the longer scan on a profile that
// has already edited the scan, so that its buffers must grow.
void CheckEveryAllocationFailureOf(const TAllocationCase& row, bool bSecondEdit)
{
    const std::string& expression = row.expression;
    const std::string& scan = bSecondEdit ? row.longerScan : row.scan;
    const TOutcome reference = EditOnce(expression, scan);

    bool bDone = false;
    long long n = 1;
    for (; !bDone && n < 100000; ++n) {
        const long long nLiveBefore = g_nLiveAllocations;
        {
            CNrvDataEditingProfile profile;
            profile.EnableCommandSets(kNrvCommandSetsAll);
            std::string text;
            if (bSecondEdit) {
                ASSERT_EQ(profile.Parse(expression.c_str()), reference.parse);
                EditChecked(profile, row.scan, &text, false);
            }
            std::vector<char> input(scan.begin(), scan.end());
            TNrvScanDecodedData record = {kNrvScanSymbologyCode128, {0, nullptr}, {input.size(), input.data()}};
            NRVRESULT parse = reference.parse, edit = 0;
            bool bCaught = false;
            FailAllocation(n);
            try {
                if (!bSecondEdit)
                    parse = profile.Parse(expression.c_str());
                edit = profile.Edit(&record);
            } catch (const std::bad_alloc&) {
                bCaught = true;
            }
            const bool bThrown = DisarmAllocationFailure();
            ASSERT_EQ(bCaught, bThrown) << "allocation " << n << ": the failure did not reach the caller";
            if (!bThrown) {
                bDone = true;  // fewer than n allocations: nothing more to fail
                EXPECT_EQ(parse, reference.parse);
                EXPECT_EQ(edit, reference.edit);
            } else {
                EXPECT_EQ(record.String.pValue, input.data()) << "allocation " << n;
                EXPECT_EQ(record.String.nLength, input.size()) << "allocation " << n;
            }
            // Still usable.
            EXPECT_EQ(profile.Parse(expression.c_str()), reference.parse) << "allocation " << n;
            EXPECT_EQ(EditChecked(profile, scan, &text, false), reference.edit) << "allocation " << n;
            EXPECT_EQ(text, reference.text) << "allocation " << n;
        }
        EXPECT_EQ(g_nLiveAllocations, nLiveBefore) << "allocation " << n << ": blocks leaked";
    }
    EXPECT_TRUE(bDone);
    if (!bSecondEdit || reference.edit == NRV_OK) {
        EXPECT_GT(n, 5) << "a parse and an edit allocate more than that";
    }
}

void CheckEveryAllocationFailure(const TAllocationCase& row)
{
    CheckEveryAllocationFailureOf(row, false);
    CheckEveryAllocationFailureOf(row, true);
}

TEST(RobustnessAllocation, EveryAllocationOfAParseAndAnEditMayFail)
{
    for (const TAllocationCase& row : kAllocationCases) {
        SCOPED_TRACE(row.expression);
        CheckEveryAllocationFailure(row);
    }
    // And every command's sample call, all in one expression.
    TAllocationCase samples = {"", SampleScan(), std::string(SampleScan()) + "-gh-ij-kl-mn-op-qr-st-uv-wx-yz"};
    size_t nCount = 0;
    const TNrvCommandInfo* pTable = NrvGetCommandTable(&nCount);
    for (size_t i = 0; i < nCount; ++i)
        samples.expression += pTable[i].pszSample;
    SCOPED_TRACE(samples.expression);
    CheckEveryAllocationFailure(samples);
}

TEST(RobustnessAllocation, FailuresWhileTracingAreHandledToo)
{
    // With a trace sink installed the parser formats every line, and each
    // line is one more allocation that may fail.
    size_t nTraced = 0;
    CNrvParsingString::SetTraceCallback(&Trace, &nTraced);
    CheckEveryAllocationFailure(kAllocationCases[1]);
    CheckEveryAllocationFailure(kAllocationCases[5]);
    CNrvParsingString::SetTraceCallback(nullptr, nullptr);
    EXPECT_GT(nTraced, 0u);
}

// A rule set adds rules and edits through its profiles: every allocation of
// that may fail too. The exception reaches the caller, the set keeps the
// rules it had, the record is untouched and nothing leaks.
TEST(RobustnessAllocation, ARuleSetPassesEveryAllocationFailureThrough)
{
    const char* const kExpressions[] = {"gs1:{TruncateFromBeginning({DecodedData()},3)}", "{MakeUpperCase({DecodedData()})}"};
    {
        CNrvDataEditingProfile warmUp;  // the command dictionary is made once, at the first parse
        ASSERT_EQ(warmUp.Parse(kExpressions[0]), NRV_OK);
    }
    bool bDone = false;
    long long n = 1;
    for (; !bDone && n < 100000; ++n) {
        const long long nLiveBefore = g_nLiveAllocations;
        {
            CNrvRuleSet set;
            CNrvDataEditingProfile* pProfile = nullptr;
            ASSERT_EQ(set.AddRule(kExpressions[0], "GS1", &pProfile), NRV_OK);
            pProfile->WriteTriggerStartsBy("]C1");
            char data[] = "part-42";
            TNrvScanDecodedData record = {kNrvScanSymbologyCode128, {0, nullptr}, {7, data}};
            bool bCaught = false;
            NRVRESULT result = NRV_OK;
            size_t nRule = 0;
            FailAllocation(n);
            try {
                result = set.AddRule(kExpressions[1], "a name long enough to be allocated on its own", nullptr);
                result = set.Edit(&record, &nRule);
            } catch (const std::bad_alloc&) {
                bCaught = true;
            }
            const bool bThrown = DisarmAllocationFailure();
            ASSERT_EQ(bCaught, bThrown) << "allocation " << n;
            if (bThrown) {
                EXPECT_EQ(record.String.pValue, data) << "allocation " << n;
                EXPECT_EQ(record.String.nLength, 7u) << "allocation " << n;
                EXPECT_GE(set.GetRuleCount(), 1u);
                EXPECT_STREQ(set.GetRuleName(0), "GS1");
            } else {
                bDone = true;
                EXPECT_EQ(result, NRV_OK);
                EXPECT_EQ(nRule, 1u);
                EXPECT_EQ(std::string(record.String.pValue, record.String.nLength), "PART-42");
            }
            // Still usable.
            char again[] = "]C1x";
            TNrvScanDecodedData other = {kNrvScanSymbologyCode128, {0, nullptr}, {4, again}};
            EXPECT_EQ(set.Edit(&other, &nRule), NRV_OK) << "allocation " << n;
            EXPECT_EQ(std::string(other.String.pValue, other.String.nLength), "gs1:x");
        }
        EXPECT_EQ(g_nLiveAllocations, nLiveBefore) << "allocation " << n << ": blocks leaked";
    }
    EXPECT_TRUE(bDone);
    EXPECT_GT(n, 5);
}

// ---------------------------------------------------------------------------
// Hostile expressions
// ---------------------------------------------------------------------------

struct THostileExpression {
    const char* pszName;
    std::string expression;
    NRVRESULT parse;
    NRVRESULT edit;
    std::string text;  // checked when edit is NRV_OK
};

TEST(RobustnessHostile, HugeAndDeepExpressions)
{
    const std::string scan = "xy";
    const std::string megaLetters(kMegabyte, 'a');
    // Every byte but zero and the opening delimiter.
    const std::string megaBytes = Bytes(kMegabyte, [](size_t i) {
        const int nByte = 1 + static_cast<int>(i % 254);
        return nByte >= '{' ? nByte + 1 : nByte;
    });
    const std::string oneDeep = "{MakeUpperCase(";
    const THostileExpression rows[] = {
        {"1 MB literal", megaLetters, NRV_OK, NRV_OK, megaLetters},
        {"1 MB of other bytes as a literal", megaBytes, NRV_OK, NRV_OK, megaBytes},
        {"1 MB of opening delimiters", std::string(kMegabyte, '{'), NRV_ERR_SYNTAX, NRV_ERR_SYNTAX, ""},
        {"1 MB of closing delimiters", std::string(kMegabyte, '}'), NRV_OK, NRV_OK, std::string(kMegabyte, '}')},
        {"1 MB of commas and parentheses", Repeat(",()", kMegabyte / 3), NRV_OK, NRV_OK, Repeat(",()", kMegabyte / 3)},
        {"80,000 commands side by side", Repeat("{DecodedData}", 80000), NRV_OK, NRV_OK, Repeat(scan, 80000)},
        {"1 MB command name", "{" + megaLetters + "}", NRV_ERR_UNKNOWN_COMMAND, NRV_ERR_UNKNOWN_COMMAND, ""},
        {"1 MB parameter", "{MakeUpperCase(" + megaLetters + ")}", NRV_OK, NRV_OK, std::string(kMegabyte, 'A')},
        {"1 MB of spaces as parameters", "{DecodedData(" + std::string(kMegabyte, ' ') + ")}",
         NRV_ERR_INVALID_PARAMETER, NRV_ERR_INVALID_PARAMETER, ""},
        {"unbalanced parentheses", "{DecodedData(" + std::string(kMegabyte, '(') + "}", NRV_ERR_PARAMETER_COUNT,
         NRV_ERR_PARAMETER_COUNT, ""},
        {"100,000 nested empty delimiters", std::string(100000, '{') + std::string(100000, '}'),
         NRV_ERR_UNKNOWN_COMMAND, NRV_ERR_UNKNOWN_COMMAND, ""},
        {"nesting at the bound", Nest("MakeUpperCase", 100, "x"), NRV_OK, NRV_OK, "X"},
        {"nesting one beyond the bound", Nest("MakeUpperCase", 101, "x"), NRV_ERR_SYNTAX, NRV_ERR_SYNTAX, ""},
        {"nesting far beyond the bound", Nest("MakeUpperCase", 20000, "x"), NRV_ERR_SYNTAX, NRV_ERR_SYNTAX, ""},
        {"deep nesting left open", Repeat(oneDeep, 20000) + "x", NRV_ERR_SYNTAX, NRV_ERR_SYNTAX, ""},
        {"100,000 parameters", "{Replace(" + Repeat("a,", 99999) + "a)}", NRV_ERR_PARAMETER_COUNT,
         NRV_ERR_PARAMETER_COUNT, ""},
        {"100,000 empty parameters", "{DecodedData(" + std::string(99999, ',') + ")}", NRV_ERR_PARAMETER_COUNT,
         NRV_ERR_PARAMETER_COUNT, ""},
        {"100,000 command parameters", "{Substring(" + Repeat("{DecodedData},", 99999) + "{DecodedData})}",
         NRV_ERR_PARAMETER_COUNT, NRV_ERR_PARAMETER_COUNT, ""},
        {"100,000 commas inside a nested command", "{MakeUpperCase({Replace(" + std::string(99999, ',') + ")})}",
         NRV_ERR_PARAMETER_COUNT, NRV_ERR_PARAMETER_COUNT, ""},
        {"1 MB integer literal out of range", "{TruncateFromBeginning(abc," + std::string(kMegabyte, '9') + ")}",
         NRV_ERR_INVALID_PARAMETER, NRV_ERR_INVALID_PARAMETER, ""},
        {"1 MB integer literal of leading zeros", "{TruncateFromBeginning(abc," + std::string(kMegabyte, '0') + "1)}",
         NRV_OK, NRV_OK, "bc"},
        {"1 MB parameter text for a find", "{FindFirstFromIndex(" + megaLetters + "b,-1,b,0)}", NRV_OK, NRV_OK,
         Int(static_cast<long long>(kMegabyte))},
    };
    for (const THostileExpression& row : rows) {
        SCOPED_TRACE(row.pszName);
        const TOutcome outcome = EditOnce(row.expression, scan);
        EXPECT_EQ(outcome.parse, row.parse);
        EXPECT_EQ(outcome.edit, row.edit);
        if (row.edit == NRV_OK && outcome.edit == NRV_OK) {
            EXPECT_TRUE(outcome.text == row.text) << "got " << outcome.text.size() << " bytes";
        }
    }
}

TEST(RobustnessHostile, AFailedParseLeavesTheProfileUsable)
{
    CNrvDataEditingProfile profile;
    const std::string bad[] = {std::string(kMegabyte, '{'), Nest("MakeUpperCase", 101, "x"),
                               "{Replace(" + Repeat("a,", 99999) + "a)}", "{TruncateFromEnd({NoSuch()},1)}"};
    for (const std::string& expression : bad) {
        EXPECT_LT(profile.Parse(expression.c_str()), 0);
        ASSERT_EQ(profile.Parse("<{DecodedData}>"), NRV_OK);
        std::string text;
        EXPECT_EQ(EditChecked(profile, "abc", &text, false), NRV_OK);
        EXPECT_EQ(text, "<abc>");
    }
}

// ---------------------------------------------------------------------------
// Hostile scans: every command over 0 bytes, 1 MB, zero bytes and high bytes
// ---------------------------------------------------------------------------

// Uses of the commands over {DecodedData()}, each with a bound on the
// edited length for a scan of n bytes: n * nTimes + nPlus.
struct TCommandUse {
    std::string expression;
    size_t nTimes;
    size_t nPlus;
};

// Every command's sample call with the scan as its first text, bounded by
// what its other arguments could add per byte; then uses that feed the
// commands texts and positions that other commands computed over the scan.
std::vector<TCommandUse> EveryCommandOverTheScan()
{
    std::vector<TCommandUse> uses;
    size_t nCount = 0;
    const TNrvCommandInfo* pTable = NrvGetCommandTable(&nCount);
    for (size_t i = 0; i < nCount; ++i) {
        std::vector<std::string> arguments = SampleArguments(pTable[i]);
        size_t nOthers = 0;
        for (size_t j = 0; j < arguments.size(); ++j) {
            if (j == 0 && pTable[i].pParameters[0].nKind == kNrvKindText)
                arguments[0] = "{DecodedData()}";
            else
                nOthers += arguments[j].size();
        }
        uses.push_back({CallOf(pTable[i], arguments), 1 + nOthers, nOthers + 11});
    }
    const std::string e = "{DecodedData()}";
    const TCommandUse nested[] = {
        {"{TruncateFromEnd(" + e + ",-2)}", 1, 0},
        {"{Replace(" + e + ",{TruncateFromEnd(" + e + ",1)},x)}", 1, 16},
        {"{Substitute(" + e + ",a,bb)}", 2, 16},
        {"{Substitute(" + e + ",{EscapeCharacter(00)},.)}", 1, 0},
        {"{InsertAfterIndex(" + e + ",-1,<>)}", 1, 16},
        {"{InsertBeforeIndex(" + e + ",-1,<>)}", 1, 16},
        {"{InsertBeforeIndex(" + e + ",0," + e + ")}", 2, 16},
        {"{FindFirstFromIndex(" + e + ",-1,x,0)}", 0, 11},
        {"{FindFirstFromIndex(" + e + ",0," + e + ",-1)}", 0, 11},
        {"{FindLastFromIndex(" + e + ",-1,{Substring(" + e + ",0,1)},0)}", 0, 11},
        {"{FindLastFromIndex(" + e + ",0,a,0)}", 0, 11},
        {"{ReplaceNonPrintableCharacters(" + e + ",<>)}", 2, 16},
        {"{TruncateAfterIndex(" + e + ",{FindFirstFromIndex(" + e + ",-1,a,0)},1)}", 1, 0},
        {"{TruncateBeforeIndex(" + e + ",{FindLastFromIndex(" + e + ",-1,{Substring(" + e + ",1,2)},0)},0)}", 1, 0},
        {"{Substring(" + e + ",1,-1)}", 1, 0},
        {"{Extract(" + e + ",{EscapeCharacter(00)},{EscapeCharacter(FF)})}", 1, 0},
    };
    uses.insert(uses.end(), std::begin(nested), std::end(nested));
    return uses;
}

// A use may refuse a scan it does not fit (-43; a GS1 command, one that is
// no GS1 message: -63), but nothing else.
TEST(RobustnessHostile, EveryCommandOverHostileScans)
{
    struct TScan {
        const char* pszName;
        std::string bytes;
        bool bNullPointer;
    };
    const TScan scans[] = {
        {"0 bytes, null pointer", std::string(), true},
        {"0 bytes", std::string(), false},
        {"1 MB of letters", Bytes(kMegabyte, &ByteLetter), false},
        {"1 MB of zero bytes", Bytes(kMegabyte, &ByteZero), false},
        {"1 MB from 0x80 up", Bytes(kMegabyte, &ByteHigh), false},
        {"64 kB of every byte", Bytes(64 * 1024, &ByteAny), false},
        {"one zero byte", std::string(1, '\0'), false},
        {"one 0xFF byte", std::string(1, '\xff'), false},
    };
    for (const TCommandUse& use : EveryCommandOverTheScan()) {
        for (const TScan& scan : scans) {
            SCOPED_TRACE(use.expression + " over " + scan.pszName);
            const TOutcome outcome = EditOnce(use.expression, scan.bytes, scan.bNullPointer);
            ASSERT_EQ(outcome.parse, NRV_OK);
            if (outcome.edit == NRV_ERR_OUT_OF_RANGE || outcome.edit == NRV_ERR_GS1_INVALID)
                continue;
            ASSERT_EQ(outcome.edit, NRV_OK);
            EXPECT_LE(outcome.text.size(), scan.bytes.size() * use.nTimes + use.nPlus);
        }
    }
}

size_t CountNodes(const std::vector<TNrvExplainNode>& nodes)
{
    size_t nCount = nodes.size();
    for (const TNrvExplainNode& node : nodes)
        nCount += CountNodes(node.params);
    return nCount;
}

// Telling why an expression fails costs about what parsing and editing
// cost: an explanation computes each node once, under the edit's one work
// budget, and keeps a prefix of each node's value; the failure alone keeps
// none; an unknown name is compared only with commands of about its length.
TEST(RobustnessHostile, DiagnosticsCostAboutWhatTheEditCosts)
{
    const std::string letters(64 * 1024, 'a');
    const std::string chain = Nest("MakeUpperCase", 40, "{DecodedData()}");
    const std::string roots = Repeat("{Substitute({DecodedData()},a,aa)}", 30);
    const struct {
        const char* pszName;
        std::string expression;
        std::string scan;
        TNrvLimits limits;
        NRVRESULT code;
    } rows[] = {
        {"a chain of 40", chain, letters, {}, NRV_OK},
        {"a chain of 40 that fails at its top", "{TruncateFromBeginning(" + chain + ",99999999)}", letters, {},
         NRV_ERR_OUT_OF_RANGE},
        // Each root alone is at the largest text; the second passes it together with the first.
        {"roots that pass the largest text together", roots, letters.substr(0, 4096), {8192, 0, 0},
         NRV_ERR_TEXT_LIMIT},
        {"an unknown name of 256 KB", "{" + std::string(256 * 1024, 'x') + "()}", "", {}, NRV_ERR_UNKNOWN_COMMAND},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.pszName);
        const TCost edit = CostOf([&] {
            CNrvDataEditingProfile profile;
            profile.Parse(row.expression.c_str());
            profile.WriteLimitMaximumTextSize(row.limits.nMaximumTextSize);
            std::string text;
            EXPECT_EQ(EditChecked(profile, row.scan, &text, false), row.code);
        });
        TNrvExplanation explanation;
        const TCost explain = CostOf([&] {
            explanation = NrvExplain(row.expression.c_str(), row.scan.data(), row.scan.size(), row.limits);
        });
        TNrvDiagnostic failure;
        const TCost failing = CostOf([&] {
            failure = NrvExplainFailure(row.expression.c_str(), row.scan.data(), row.scan.size(), row.limits);
        });
        const TCost diagnose = CostOf([&] { NrvDiagnoseParse(row.expression.c_str()); });
        EXPECT_EQ(explanation.nCode, row.code);
        EXPECT_EQ(failure.nCode, row.code);
        EXPECT_EQ(failure.message, explanation.failure.message);
        // Per node its place, name and value prefix, and a sentence that
        // quotes the expression's words, escaped; with room to spare.
        const size_t nKept =
            CountNodes(explanation.nodes) * (kNrvExplainValueBytes + 1024) + 16 * row.expression.size();
        EXPECT_LE(explain.nPeakBytes, 3 * edit.nPeakBytes + nKept);
        EXPECT_LE(explain.nAllocatedBytes, 3 * edit.nAllocatedBytes + nKept);
        EXPECT_LE(failing.nPeakBytes, 3 * edit.nPeakBytes + nKept);
        EXPECT_LE(failing.nAllocatedBytes, 3 * edit.nAllocatedBytes + nKept);
        EXPECT_LE(diagnose.nPeakBytes, 3 * edit.nPeakBytes + nKept);
    }
}

// FindLastFromIndex steps back from its start towards the beginning of the
// text; without a match it must still take time about proportional to the
// text, not to its square (a search from every step would take minutes for
// 1 MB under the sanitizers).
TEST(RobustnessHostile, FindLastWithoutAMatchInAMegabyte)
{
    const std::string letters = Bytes(kMegabyte, &ByteLetter);
    const struct {
        const char* pszExpression;
        std::string text;
    } rows[] = {
        {"{FindLastFromIndex({DecodedData()},-1,x,0)}", "-2"},
        {"{FindLastFromIndex({DecodedData()},1048570,x,3)}", "1"},
        {"{TruncateBeforeIndex({DecodedData()},{FindLastFromIndex({DecodedData()},-1,b,1)},0)}", letters},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.pszExpression);
        const TOutcome outcome = EditOnce(row.pszExpression, letters);
        EXPECT_EQ(outcome.edit, NRV_OK);
        EXPECT_TRUE(outcome.text == row.text);
    }
}

TEST(RobustnessHostile, ScansThatAreNotText)
{
    const std::string zeros = Bytes(kMegabyte, &ByteZero);
    const std::string high = Bytes(kMegabyte, &ByteHigh);
    const std::string mixed = std::string("12\0" "34\x80\xff", 7) + "\r\n";
    struct TRow {
        const char* pszExpression;
        std::string scan;
        NRVRESULT edit;
        std::string text;
    };
    const TRow rows[] = {
        // Zero bytes travel through the engine like any other byte.
        {"{DecodedData()}", zeros, NRV_OK, zeros},
        {"<{DecodedData()}>", mixed, NRV_OK, "<" + mixed + ">"},
        {"{MakeUpperCase({DecodedData()})}", zeros, NRV_OK, zeros},
        {"{MakeLowerCase({DecodedData()})}", high, NRV_OK, high},
        {"{MakeUpperCase({DecodedData()})}", high, NRV_OK, high},
        {"{TruncateFromBeginning({DecodedData()},1)}", zeros, NRV_OK, zeros.substr(1)},
        {"{TruncateFromEnd({DecodedData()},1)}", high, NRV_OK, high.substr(0, kMegabyte - 1)},
        {"{Substring({DecodedData()},3,7)}", mixed, NRV_OK, mixed.substr(3, 4)},
        {"{TruncateAfterIndex({DecodedData()},5,0)}", mixed, NRV_OK, mixed.substr(0, 5)},
        {"{TruncateBeforeIndex({DecodedData()},2,0)}", mixed, NRV_OK, mixed.substr(2)},
        {"{InsertAfterIndex({DecodedData()},2,-)}", mixed, NRV_OK, mixed.substr(0, 3) + "-" + mixed.substr(3)},
        // Both ends of the non-printable range: bytes below 0x20 and from 0x80 up.
        {"{DecodedDataWithoutTrailer()}", zeros, NRV_OK, ""},
        {"{DecodedDataWithoutTrailer()}", high, NRV_OK, ""},
        {"{DecodedDataWithoutTrailer()}", mixed, NRV_OK, std::string("12\0" "34", 5)},
        {"{ReplaceNonPrintableCharacters({DecodedData()},)}", high, NRV_OK, ""},
        {"{ReplaceNonPrintableCharacters({DecodedData()},.)}", mixed, NRV_OK, "12.34...."},
        {"{ReplaceNonPrintableCharacters({DecodedData()},.)}", zeros, NRV_OK, std::string(kMegabyte, '.')},
        // Searches stop at the first zero byte; lengths do not.
        {"{FindFirstFromIndex({DecodedData()},-1,4,0)}", mixed, NRV_OK, "-2"},
        {"{FindFirstFromIndex({DecodedData()},-1,2,0)}", mixed, NRV_OK, "1"},
        {"{FindLastFromIndex({DecodedData()},-1,1,0)}", zeros, NRV_OK, "-2"},
        {"{FindFirstFromIndex({DecodedData()},3,4,0)}", mixed, NRV_OK, "4"},
    };
    for (const TRow& row : rows) {
        SCOPED_TRACE(row.pszExpression);
        const TOutcome outcome = EditOnce(row.pszExpression, row.scan);
        ASSERT_EQ(outcome.parse, NRV_OK);
        EXPECT_EQ(outcome.edit, row.edit);
        EXPECT_TRUE(outcome.text == row.text) << "got " << outcome.text.size() << " bytes";
    }
}

TEST(RobustnessHostile, EditingTheProfilesOwnOutputAgain)
{
    // The record may come back pointing at the profile's own buffer.
    CNrvDataEditingProfile profile;
    ASSERT_EQ(profile.Parse("{DecodedData()}{TruncateFromEnd({DecodedData()},1)}"), NRV_OK);
    std::string input = "ab";
    TNrvScanDecodedData record = {kNrvScanSymbologyCode128, {0, nullptr}, {input.size(), &input[0]}};
    std::string expected = input;
    for (int i = 0; i < 12; ++i) {
        ASSERT_EQ(profile.Edit(&record), NRV_OK);
        expected += expected.substr(0, expected.size() - 1);
    }
    EXPECT_EQ(record.String.nLength, 4097u);  // 2n - 1 each time, from 2
    EXPECT_EQ(record.String.pValue[record.String.nLength], '\0');
    EXPECT_EQ(std::string(record.String.pValue, record.String.nLength), expected);
}

// ---------------------------------------------------------------------------
// Empty texts and index edges for every command
// ---------------------------------------------------------------------------

TEST(RobustnessHostile, EveryCommandGivenEmptyTexts)
{
    // {DecodedData()} over a 0-byte scan is the empty text in every text
    // position; a literal cannot be empty where a number is required.
    const std::string e = "{DecodedData()}";
    // Every command's sample call with each of its text parameters empty in
    // turn, then all of them: any answer but a crash, a code other than
    // -43, or a text longer than the literals could make.
    std::vector<std::string> calls;
    size_t nCount = 0;
    const TNrvCommandInfo* pTable = NrvGetCommandTable(&nCount);
    for (size_t i = 0; i < nCount; ++i) {
        const std::vector<std::string> arguments = SampleArgumentsOver(pTable[i], SampleScan());
        std::vector<std::string> allEmpty = arguments;
        for (size_t j = 0; j < arguments.size(); ++j) {
            if (pTable[i].pParameters[j].nKind != kNrvKindText)
                continue;
            std::vector<std::string> oneEmpty = arguments;
            oneEmpty[j] = allEmpty[j] = e;
            calls.push_back(CallOf(pTable[i], oneEmpty));
        }
        calls.push_back(CallOf(pTable[i], allEmpty));
    }
    for (const std::string& call : calls) {
        SCOPED_TRACE(call);
        for (bool bNull : {true, false}) {
            const TOutcome outcome = EditOnce(call, std::string(), bNull);
            ASSERT_EQ(outcome.parse, NRV_OK);
            EXPECT_TRUE(outcome.edit == NRV_OK || outcome.edit == NRV_ERR_OUT_OF_RANGE ||
                        outcome.edit == NRV_ERR_GS1_INVALID)
                << outcome.edit;
            EXPECT_LE(outcome.text.size(), call.size() * call.size());
        }
    }

    // What the empty text means where the commands' own tables do not say.
    struct TRow {
        std::string expression;
        NRVRESULT edit;
        std::string text;
    };
    const TRow rows[] = {
        {"{InsertAfterIndex(" + e + ",-1," + e + ")}", NRV_OK, ""},
        {"{InsertBeforeIndex(" + e + ",-2,x)}", NRV_OK, ""},
        {"{FindLastFromIndex(" + e + ",-1," + e + ",0)}", NRV_OK, "-2"},  // as long as the text: never found
        {"{ReplaceNonPrintableCharacters(" + e + "," + e + ")}", NRV_OK, ""},
        {"{TruncateAfterIndex(" + e + ",5,-9)}", NRV_OK, ""},
        {"{Substring(" + e + ",5,2)}", NRV_OK, ""},
    };
    for (const TRow& row : rows) {
        SCOPED_TRACE(row.expression);
        for (bool bNull : {true, false}) {
            const TOutcome outcome = EditOnce(row.expression, std::string(), bNull);
            ASSERT_EQ(outcome.parse, NRV_OK);
            EXPECT_EQ(outcome.edit, row.edit);
            EXPECT_EQ(outcome.text, row.text);
        }
    }
}

// The edges of the 32-bit index range, the reserved values and the text's
// own edges, in every position that takes a number.
const long long kIndexEdges[] = {INT_MIN, INT_MIN + 1LL, -3, -2, -1, 0, 1, 7, 8, 9, INT_MAX - 1LL, INT_MAX};

TEST(RobustnessHostile, EveryIndexPositionAtTheEdgesOfTheRange)
{
    const std::string text = "AB-CD-EF";  // 8 bytes
    // '#' stands for the value under test, '@' for 0.
    const char* const uses[] = {
        "{TruncateFromBeginning(AB-CD-EF,#)}",
        "{TruncateFromEnd(AB-CD-EF,#)}",
        "{InsertAfterIndex(AB-CD-EF,#,+)}",
        "{InsertBeforeIndex(AB-CD-EF,#,+)}",
        "{FindFirstFromIndex(AB-CD-EF,#,-,@)}",
        "{FindFirstFromIndex(AB-CD-EF,-1,-,#)}",
        "{FindFirstFromIndex(AB-CD-EF,-1,x,#)}",
        "{FindLastFromIndex(AB-CD-EF,#,-,@)}",
        "{FindLastFromIndex(AB-CD-EF,4,-,#)}",
        "{FindLastFromIndex(AB-CD-EF,4,x,#)}",
        "{TruncateAfterIndex(AB-CD-EF,#,@)}",
        "{TruncateAfterIndex(AB-CD-EF,3,#)}",
        "{TruncateAfterIndex(AB-CD-EF,#,#)}",
        "{TruncateBeforeIndex(AB-CD-EF,#,@)}",
        "{TruncateBeforeIndex(AB-CD-EF,3,#)}",
        "{TruncateBeforeIndex(AB-CD-EF,#,#)}",
        "{Substring(AB-CD-EF,#,@)}",
        "{Substring(AB-CD-EF,@,#)}",
        "{Substring(AB-CD-EF,#,#)}",
        // The value as a text: it is written as it stands.
        "{MakeLowerCase(#)}",
        "{InsertAfterIndex(#,-1,#)}",
        // And through a find command's result, offset included.
        "{Substring(AB-CD-EF,{FindFirstFromIndex(AB-CD-EF,-1,x,#)},-1)}",
        "{TruncateAfterIndex(AB-CD-EF,{FindFirstFromIndex(AB-CD-EF,-1,-,#)},#)}",
        "{InsertBeforeIndex(AB-CD-EF,{FindLastFromIndex(AB-CD-EF,-1,x,#)},+)}",
    };
    for (const char* pszUse : uses) {
        for (long long nValue : kIndexEdges) {
            std::string expression = pszUse;
            for (size_t at; (at = expression.find('#')) != std::string::npos;)
                expression.replace(at, 1, Int(nValue));
            for (size_t at; (at = expression.find('@')) != std::string::npos;)
                expression.replace(at, 1, "0");
            SCOPED_TRACE(expression);
            const TOutcome outcome = EditOnce(expression, text);
            ASSERT_EQ(outcome.parse, NRV_OK);
            ASSERT_TRUE(outcome.edit == NRV_OK || outcome.edit == NRV_ERR_OUT_OF_RANGE) << outcome.edit;
            EXPECT_LE(outcome.text.size(), 2 * 11 + text.size());
        }
    }
}

}  // namespace
