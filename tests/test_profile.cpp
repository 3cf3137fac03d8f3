// The profile end to end: parse, triggers, edit, ownership of the edited data.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "NrvDataEditingProfile.h"
#include "NrvOperation.h"

namespace {

// A decoded-data record over a caller-owned copy of the bytes.
struct Scan {
    explicit Scan(const std::string& bytes, ENrvScanSymbologyID id = kNrvScanSymbologyCode128)
        : buffer(bytes.begin(), bytes.end())
    {
        buffer.push_back('\0');
        record = {id, {0, nullptr}, {bytes.size(), buffer.data()}};
    }
    std::string Text() const { return std::string(record.String.pValue, record.String.nLength); }
    bool Untouched() const
    {
        return record.String.pValue == buffer.data() && record.String.nLength == buffer.size() - 1;
    }
    std::vector<char> buffer;
    TNrvScanDecodedData record;
};

TEST(Profile, EditsScansEndToEnd)
{
    struct Row {
        const char* pszExpression;
        std::string scan;
        std::string expected;
    } rows[] = {
        {"Code: {TruncateFromBeginning({DecodedData()},2)}", "AB1234", "Code: 1234"},
        {"Total: {DecodedData()}", "42", "Total: 42"},
        {"{DecodedData()}{DecodedData()}", "ab", "abab"},
        {"literal only", "ignored", "literal only"},
        {"", "ignored", ""},
        {"  7 ", "x", "  7 "},  // an integer literal keeps its text
        {"{DecodedData()}", std::string("A\0B\x80\xff", 5), std::string("A\0B\x80\xff", 5)},
        {"[{DecodedData()}]", "", "[]"},
        {"{DecodedData()", "unterminated", "unterminated"},
        // Decoded data without its trailer.
        {"{DecodedDataWithoutTrailer()}", "12345\r\n", "12345"},
        {"{DecodedDataWithoutTrailer()}", "A\t ", "A\t "},              // a blank stops the scan
        {"{DecodedDataWithoutTrailer()}", "A\x7f", "A\x7f"},            // 0x7F is printable
        {"{DecodedDataWithoutTrailer()}", "caf\xc3\xa9\r\n", "caf"},    // bytes from 0x80 up are trailer
        {"{DecodedDataWithoutTrailer()}", "1\r2\r\n", "1\r2"},          // only the end is cut
        {"{DecodedDataWithoutTrailer()}", std::string("\r\n\0\x90", 4), ""},
        {"{DecodedDataWithoutTrailer()}", "", ""},
        {"<{DecodedDataWithoutTrailer}>", std::string("x\0", 2), "<x>"},
    };
    for (const Row& row : rows) {
        CNrvDataEditingProfile profile;
        ASSERT_EQ(NRV_OK, profile.Parse(row.pszExpression)) << row.pszExpression;
        Scan scan(row.scan);
        EXPECT_EQ(NRV_OK, profile.Edit(&scan.record)) << row.pszExpression;
        EXPECT_EQ(row.expected, scan.Text()) << row.pszExpression;
        EXPECT_EQ('\0', scan.record.String.pValue[scan.record.String.nLength]);
        EXPECT_EQ(row.scan, std::string(scan.buffer.data(), row.scan.size())) << "caller's bytes changed";
    }
}

TEST(Profile, EveryResultCodeLeavesAFailedScanAsItWas)
{
    struct Row {
        const char* pszExpression;  // null: Parse(nullptr)
        const char* pszScan;
        NRVRESULT nParse;
        NRVRESULT nEdit;
    } rows[] = {
        {"{DecodedData()}", "AB", NRV_OK, NRV_OK},
        {nullptr, "AB", NRV_ERR_INVALID_PARAMETER, NRV_OK},  // nothing changed: no expression
        {"{TruncateFromEnd({DecodedData()},{DecodedData()})}", "AB", NRV_ERR_INVALID_PARAMETER,
         NRV_ERR_INVALID_PARAMETER},
        {"{TruncateFromEnd({DecodedData()},2)}", "AB", NRV_OK, NRV_ERR_OUT_OF_RANGE},
        {"a{Decoded{Data(", "AB", NRV_ERR_SYNTAX, NRV_ERR_SYNTAX},
        {"ok {NoSuchCommand()}", "AB", NRV_ERR_UNKNOWN_COMMAND, NRV_ERR_UNKNOWN_COMMAND},
        {"{DecodedData(1)}", "AB", NRV_ERR_PARAMETER_COUNT, NRV_ERR_PARAMETER_COUNT},
        {"x{MakeUpperCase({Nope()})}", "AB", NRV_ERR_UNKNOWN_COMMAND, NRV_ERR_UNKNOWN_COMMAND},
    };
    for (const Row& row : rows) {
        CNrvDataEditingProfile profile;
        EXPECT_EQ(row.nParse, profile.Parse(row.pszExpression)) << (row.pszExpression ? row.pszExpression : "null");
        Scan scan(row.pszScan);
        EXPECT_EQ(row.nEdit, profile.Edit(&scan.record)) << (row.pszExpression ? row.pszExpression : "null");
        if (row.nEdit != NRV_OK || row.pszExpression == nullptr) {
            EXPECT_TRUE(scan.Untouched()) << (row.pszExpression ? row.pszExpression : "null");
        }
    }
}

TEST(Profile, RefusesBadArgumentsWithoutChangingAnything)
{
    CNrvDataEditingProfile profile;
    ASSERT_EQ(NRV_OK, profile.Parse("{DecodedData()}"));
    EXPECT_EQ(NRV_ERR_INVALID_PARAMETER, profile.Edit(nullptr));
    TNrvScanDecodedData record = {kNrvScanSymbologyAztec, {0, nullptr}, {3, nullptr}};
    EXPECT_EQ(NRV_ERR_INVALID_PARAMETER, profile.Edit(&record));
    EXPECT_EQ(nullptr, record.String.pValue);
    EXPECT_EQ(3u, record.String.nLength);

    // A null text of length 0 is an empty scan.
    record.String.nLength = 0;
    EXPECT_EQ(NRV_OK, profile.Edit(&record));
    EXPECT_EQ(0u, record.String.nLength);

    // Parse(nullptr) keeps the expression it had.
    EXPECT_EQ(NRV_ERR_INVALID_PARAMETER, profile.Parse(nullptr));
    Scan scan("kept");
    EXPECT_EQ(NRV_OK, profile.Edit(&scan.record));
    EXPECT_EQ("kept", scan.Text());
}

TEST(Profile, FailedParseBlocksEditsUntilTheNextGoodOne)
{
    CNrvDataEditingProfile profile;
    Scan scan("AB");
    EXPECT_EQ(NRV_OK, profile.Edit(&scan.record));  // never given an expression
    EXPECT_TRUE(scan.Untouched());

    ASSERT_EQ(NRV_ERR_UNKNOWN_COMMAND, profile.Parse("partial {DecodedData()}{Nope()}"));
    EXPECT_EQ(NRV_ERR_UNKNOWN_COMMAND, profile.Edit(&scan.record));
    EXPECT_TRUE(scan.Untouched());

    profile.RemoveAllOperations();  // the partial tree goes, and with it the failure
    EXPECT_EQ(NRV_OK, profile.Edit(&scan.record));
    EXPECT_TRUE(scan.Untouched());

    ASSERT_EQ(NRV_OK, profile.Parse("<{DecodedData()}>"));
    EXPECT_EQ(NRV_OK, profile.Edit(&scan.record));
    EXPECT_EQ("<AB>", scan.Text());

    // A new Parse replaces the expression rather than appending to it.
    ASSERT_EQ(NRV_OK, profile.Parse("[{DecodedData()}]"));
    Scan next("CD");
    EXPECT_EQ(NRV_OK, profile.Edit(&next.record));
    EXPECT_EQ("[CD]", next.Text());
}

TEST(Profile, EditedDataSurvivesFailuresAndMayBeEditedAgain)
{
    CNrvDataEditingProfile profile;
    ASSERT_EQ(NRV_OK, profile.Parse("<{DecodedData()}>"));
    Scan scan("x");
    ASSERT_EQ(NRV_OK, profile.Edit(&scan.record));
    // The record now points at the profile's buffer; editing it again reads
    // that buffer as the original data while the next one is built.
    for (const char* pszExpected : {"<<x>>", "<<<x>>>", "<<<<x>>>>"}) {
        ASSERT_EQ(NRV_OK, profile.Edit(&scan.record));
        EXPECT_EQ(pszExpected, scan.Text());
    }

    // Grow the data well past the buffers' capacity, then shrink it again.
    Scan large(std::string(100000, 'L'));
    ASSERT_EQ(NRV_OK, profile.Edit(&large.record));
    EXPECT_EQ(100002u, large.record.String.nLength);
    Scan small("s");
    ASSERT_EQ(NRV_OK, profile.Edit(&small.record));
    EXPECT_EQ("<s>", small.Text());

    // A failing edit leaves the previous edited data in place.
    const TNrvScanString before = small.record.String;
    ASSERT_EQ(NRV_OK, profile.Parse("{TruncateFromEnd({DecodedData()},5)}"));
    EXPECT_EQ(NRV_ERR_OUT_OF_RANGE, profile.Edit(&small.record));
    EXPECT_EQ(before.pValue, small.record.String.pValue);
    EXPECT_EQ("<s>", small.Text());
}

TEST(Profile, EachEditReadsItsOwnScan)
{
    CNrvDataEditingProfile profile;
    ASSERT_EQ(NRV_OK, profile.Parse("{DecodedData()}|{DecodedDataWithoutTrailer()}"));
    for (const char* pszData : {"first\r\n", "2nd\n", "third"}) {
        Scan scan(pszData);
        ASSERT_EQ(NRV_OK, profile.Edit(&scan.record));
        std::string data = pszData;
        EXPECT_EQ(data + "|" + data.substr(0, data.find_first_of("\r\n")), scan.Text());
        EXPECT_EQ(data, std::string(profile.GetOriginalDecodedData(), profile.GetOriginalDecodedDataLength()));
    }
}

// How one trigger set-up is applied to a fresh profile.
enum TriggerKind { kMin, kMax, kSymbology, kContains, kStartsBy, kEndsWith };

struct Trigger {
    TriggerKind kind;
    size_t nValue;
    const char* pszText;
};

void Apply(CNrvDataEditingProfile& profile, const Trigger& trigger)
{
    switch (trigger.kind) {
    case kMin: profile.WriteTriggerMinimumSize(trigger.nValue); break;
    case kMax: profile.WriteTriggerMaximumSize(trigger.nValue); break;
    case kSymbology: profile.AddTriggerSymbology(static_cast<int>(trigger.nValue)); break;
    case kContains: profile.WriteTriggerContains(trigger.pszText); break;
    case kStartsBy: profile.WriteTriggerStartsBy(trigger.pszText); break;
    case kEndsWith: profile.WriteTriggerEndsWith(trigger.pszText); break;
    }
}

TEST(Profile, EditsOnlyScansThatMeetEveryTrigger)
{
    const std::string gs1("01\x1d" "10AB\x00" "Z", 9);
    struct Row {
        std::vector<Trigger> triggers;
        std::string scan;
        ENrvScanSymbologyID id;
        bool bEdited;
    } rows[] = {
        {{}, "any", kNrvScanSymbologyNotSpecified, true},
        {{{kMin, 3, nullptr}}, "abc", kNrvScanSymbologyAztec, true},
        {{{kMin, 4, nullptr}}, "abc", kNrvScanSymbologyAztec, false},
        {{{kMax, 3, nullptr}}, "abc", kNrvScanSymbologyAztec, true},
        {{{kMax, 2, nullptr}}, "abc", kNrvScanSymbologyAztec, false},
        {{{kMin, 0, nullptr}, {kMax, 0, nullptr}}, "", kNrvScanSymbologyAztec, true},  // 0 is unset
        {{{kSymbology, kNrvScanSymbologyQRCode, nullptr}}, "abc", kNrvScanSymbologyQRCode, true},
        {{{kSymbology, kNrvScanSymbologyQRCode, nullptr}}, "abc", kNrvScanSymbologyCode128, false},
        {{{kSymbology, kNrvScanSymbologyQRCode, nullptr}, {kSymbology, kNrvScanSymbologyCode128, nullptr}},
         "abc", kNrvScanSymbologyCode128, true},
        // The first of two listed symbologies matches: the search stops there.
        {{{kSymbology, kNrvScanSymbologyCode128, nullptr}, {kSymbology, kNrvScanSymbologyQRCode, nullptr}},
         "abc", kNrvScanSymbologyCode128, true},
        {{{kContains, 0, "longer than the scan"}}, "abc", kNrvScanSymbologyAztec, false},
        {{{kContains, 0, "ab"}}, "ac", kNrvScanSymbologyAztec, false},  // first byte matches at the last place
        {{{kContains, 0, "10AB"}}, gs1, kNrvScanSymbologyEan128, true},
        {{{kContains, 0, "Z"}}, gs1, kNrvScanSymbologyEan128, true},  // found behind a zero byte
        {{{kContains, 0, "ZZ"}}, gs1, kNrvScanSymbologyEan128, false},
        {{{kStartsBy, 0, "01\x1d"}}, gs1, kNrvScanSymbologyEan128, true},
        {{{kStartsBy, 0, "10"}}, gs1, kNrvScanSymbologyEan128, false},
        {{{kEndsWith, 0, "Z"}}, gs1, kNrvScanSymbologyEan128, true},
        {{{kEndsWith, 0, "AB"}}, gs1, kNrvScanSymbologyEan128, false},
        {{{kEndsWith, 0, "longer than the scan"}}, "abc", kNrvScanSymbologyEan128, false},
        {{{kStartsBy, 0, "a"}}, "", kNrvScanSymbologyEan128, false},
        {{{kContains, 0, ""}, {kStartsBy, 0, nullptr}}, "abc", kNrvScanSymbologyAztec, true},  // cleared
        {{{kMin, 2, nullptr}, {kStartsBy, 0, "a"}, {kEndsWith, 0, "c"}}, "abc", kNrvScanSymbologyAztec, true},
        {{{kMin, 2, nullptr}, {kStartsBy, 0, "a"}, {kEndsWith, 0, "x"}}, "abc", kNrvScanSymbologyAztec, false},
    };
    for (size_t i = 0; i < sizeof rows / sizeof rows[0]; ++i) {
        const Row& row = rows[i];
        CNrvDataEditingProfile profile;
        ASSERT_EQ(NRV_OK, profile.Parse("<{DecodedData()}>"));
        for (const Trigger& trigger : row.triggers)
            Apply(profile, trigger);
        Scan scan(row.scan, row.id);
        EXPECT_EQ(row.bEdited ? NRV_OK : NRV_OK_NOT_TRIGGERED, profile.Edit(&scan.record)) << "row " << i;
        EXPECT_EQ(row.bEdited ? "<" + row.scan + ">" : row.scan, scan.Text()) << "row " << i;

        // ResetTrigger lets every scan through again.
        ASSERT_EQ(NRV_OK, profile.ResetTrigger());
        Scan again(row.scan, row.id);
        EXPECT_EQ(NRV_OK, profile.Edit(&again.record)) << "row " << i;
    }
}

TEST(Profile, RefusesSymbologiesOutsideTheEnumeration)
{
    CNrvDataEditingProfile profile;
    EXPECT_EQ(NRV_ERR_INVALID_PARAMETER, profile.AddTriggerSymbology(-1));
    EXPECT_EQ(NRV_ERR_INVALID_PARAMETER, profile.AddTriggerSymbology(kNrvScanSymbologyLastSymbologyID));
    EXPECT_EQ(NRV_OK, profile.AddTriggerSymbology(kNrvScanSymbologyHanXin));
    EXPECT_EQ(NRV_OK, profile.AddTriggerSymbology(kNrvScanSymbologyHanXin));  // again: harmless
    ASSERT_EQ(NRV_OK, profile.Parse("x"));
    Scan scan("abc", kNrvScanSymbologyNotSpecified);
    EXPECT_EQ(NRV_OK_NOT_TRIGGERED, profile.Edit(&scan.record));
}

}  // namespace
