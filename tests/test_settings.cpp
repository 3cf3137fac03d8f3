// The settings layer: what each front-end input becomes, or the sentence
// that refuses it, and the profile the settings make.
#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <string>
#include <vector>

#include "NrvSettings.h"

namespace {

const TNrvSettingNames kTool = {
    {"--min-size", "--max-size", "--only-symbology", "--contains", "--starts-with", "--ends-with", "--max-text",
     "--max-work"},
    "--help"};
const TNrvSettingNames kPage = {
    {"minimum size", "maximum size", "only symbologies", "contains", "starts with", "ends with", "largest text",
     "work"},
    nullptr};

// One input as a front end hands it over.
enum EInput { kSizeText, kSizeInteger, kRawText, kEscapedText, kSymbologyName, kSymbologyNumber };

struct InputRow {
    const char* pszName;
    EInput input;
    ENrvSetting setting;
    std::string text;
    long long nValue;
    std::string expected;  // the setting read (a size or a symbology in decimal, a text's bytes), or the message
    bool bRead;
};

std::string ReadOne(const InputRow& row, const TNrvSettingNames& names, bool* pbRead)
{
    CNrvSettings settings;
    TNrvSettingError error;
    switch (row.input) {
    case kSizeText: *pbRead = settings.ReadSize(row.setting, row.text, &error); break;
    case kSizeInteger: *pbRead = settings.SetSize(row.setting, row.nValue, &error); break;
    case kRawText:
    case kEscapedText: *pbRead = settings.ReadText(row.setting, row.text, row.input == kEscapedText, &error); break;
    case kSymbologyName: *pbRead = settings.AddSymbology(row.text, &error); break;
    case kSymbologyNumber: *pbRead = settings.AddSymbology(row.nValue, &error); break;
    }
    if (!*pbRead) {
        EXPECT_FALSE(error.CannotMatch());
        return error.Describe(names);
    }
    if (row.input == kSymbologyName || row.input == kSymbologyNumber)
        return settings.Symbologies().size() == 1 ? std::to_string(settings.Symbologies()[0]) : "none";
    if (row.input == kRawText || row.input == kEscapedText)
        return settings.Text(row.setting);
    return std::to_string(settings.Size(row.setting));
}

TEST(Settings, EachInputReadOrRefusedInOneSentence)
{
    const std::string kLargest = std::to_string(SIZE_MAX);
    // SIZE_MAX + 1 in decimal (SIZE_MAX ends in 5 on 32 and 64 bits).
    const std::string kPastLargest = kLargest.substr(0, kLargest.size() - 1) + "6";
    const std::string kZeroInside("A\0X", 3);
    const InputRow rows[] = {
        {"a size", kSizeText, kNrvSettingMinimumSize, "12", 0, "12", true},
        {"0 is a size", kSizeText, kNrvSettingMaximumText, "0", 0, "0", true},
        {"the largest size", kSizeText, kNrvSettingMaximumSize, kLargest, 0, kLargest, true},
        {"one past the largest", kSizeText, kNrvSettingMaximumText, kPastLargest, 0,
         "invalid size '" + kPastLargest + "' for --max-text (at most " + kLargest + ")", false},
        {"a suffix", kSizeText, kNrvSettingMinimumSize, "12k", 0,
         "invalid size '12k' for --min-size (a decimal byte count)", false},
        {"a sign", kSizeText, kNrvSettingMaximumWork, "+1", 0, "invalid size '+1' for --max-work (a decimal byte count)",
         false},
        {"empty", kSizeText, kNrvSettingMaximumSize, "", 0, "invalid size '' for --max-size (a decimal byte count)",
         false},
        {"a control byte shown escaped", kSizeText, kNrvSettingMinimumSize, "1\x1b", 0,
         "invalid size '1\\x1B' for --min-size (a decimal byte count)", false},
        {"an integer", kSizeInteger, kNrvSettingMaximumSize, "", 7, "7", true},
        {"a negative integer", kSizeInteger, kNrvSettingMaximumSize, "", -1,
         "invalid size -1 for --max-size (a byte count, 0 or more)", false},
        {"the smallest integer", kSizeInteger, kNrvSettingMinimumSize, "", LLONG_MIN,
         "invalid size " + std::to_string(LLONG_MIN) + " for --min-size (a byte count, 0 or more)", false},
        {"a raw text keeps its backslash", kRawText, kNrvSettingContains, "a\\x", 0, "a\\x", true},
        {"an escaped text", kEscapedText, kNrvSettingEndsWith, "\\x41\\r\\n\\t\\\\", 0, "A\r\n\t\\", true},
        {"bytes from 0x80 up", kEscapedText, kNrvSettingStartsWith, "\\xFF\\x80", 0, "\xFF\x80", true},
        {"an unknown escape", kEscapedText, kNrvSettingContains, "a\\q", 0,
         "--contains 'a\\q': unknown escape \\q (known: \\\\ \\r \\n \\t \\xHH)", false},
        {"a short \\x", kEscapedText, kNrvSettingEndsWith, "\\x4", 0,
         "--ends-with '\\x4': \\x must be followed by two hexadecimal digits", false},
        {"an escaped zero byte", kEscapedText, kNrvSettingStartsWith, "A\\x00X", 0,
         "--starts-with 'A\\x00X': a trigger text cannot hold a zero byte", false},
        {"a raw zero byte", kRawText, kNrvSettingStartsWith, kZeroInside, 0,
         "--starts-with 'A\\x00X': a trigger text cannot hold a zero byte", false},
        {"a name in any case", kSymbologyName, kNrvSettingSymbologies, "qrCODE", 0, "38", true},
        {"a number as text", kSymbologyName, kNrvSettingSymbologies, "47", 0, "47", true},
        {"past the last number", kSymbologyName, kNrvSettingSymbologies, "48", 0,
         "unknown symbology '48' (see --help for the names)", false},
        {"a name with a zero byte", kSymbologyName, kNrvSettingSymbologies, std::string("Aztec\0", 6), 0,
         "unknown symbology 'Aztec\\x00' (see --help for the names)", false},
        {"BEL in a name", kSymbologyName, kNrvSettingSymbologies, "Az\a", 0,
         "unknown symbology 'Az\\x07' (see --help for the names)", false},
        {"a number", kSymbologyNumber, kNrvSettingSymbologies, "", 0, "0", true},
        {"a negative number", kSymbologyNumber, kNrvSettingSymbologies, "", -1,
         "unknown symbology -1 (numbers run from 0 to 47)", false},
        {"the count marker", kSymbologyNumber, kNrvSettingSymbologies, "", kNrvScanSymbologyLastSymbologyID,
         "unknown symbology 48 (numbers run from 0 to 47)", false},
    };
    for (const InputRow& row : rows) {
        SCOPED_TRACE(row.pszName);
        bool bRead = false;
        EXPECT_EQ(ReadOne(row, kTool, &bRead), row.expected);
        EXPECT_EQ(bRead, row.bRead);
    }
    // Each front end names the setting its way.
    bool bRead = true;
    EXPECT_EQ(ReadOne(rows[16], kPage, &bRead), "starts with 'A\\x00X': a trigger text cannot hold a zero byte");
    EXPECT_EQ(ReadOne(rows[20], kPage, &bRead), "unknown symbology '48'");
}

TEST(Settings, ContradictionsAreRefused)
{
    struct Row {
        const char* pszName;
        const char* pszMinimum;
        const char* pszMaximum;
        const char* pszStartsWith;  // escaped
        std::vector<std::string> messages;
    } rows[] = {
        {"minimum above maximum", "5", "4", "", {"--min-size 5 is above --max-size 4"}},
        {"minimum at maximum", "4", "4", "", {}},
        {"no maximum", "9", "0", "ABCDEFGHIJ", {}},
        {"a text longer than the maximum", "0", "3", "ABCD", {"--starts-with holds 4 bytes, more than --max-size 3"}},
        {"a text as long as the maximum", "0", "3", "ABC", {}},
        {"the decoded length counts", "0", "2", "\\x41\\x42", {}},
        {"both", "4", "3", "ABCD",
         {"--min-size 4 is above --max-size 3", "--starts-with holds 4 bytes, more than --max-size 3"}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.pszName);
        CNrvSettings settings;
        TNrvSettingError error;
        ASSERT_TRUE(settings.ReadSize(kNrvSettingMinimumSize, row.pszMinimum, &error));
        ASSERT_TRUE(settings.ReadSize(kNrvSettingMaximumSize, row.pszMaximum, &error));
        ASSERT_TRUE(settings.ReadText(kNrvSettingStartsWith, row.pszStartsWith, true, &error));
        std::vector<TNrvSettingError> errors;
        EXPECT_EQ(settings.Check(&errors), row.messages.empty());
        std::vector<std::string> messages;
        for (const TNrvSettingError& found : errors) {
            EXPECT_TRUE(found.CannotMatch());
            messages.push_back(found.Describe(kTool));
        }
        EXPECT_EQ(messages, row.messages);
    }
}

// The settings replace whatever the profile held, triggers and limits.
TEST(Settings, AppliedToAProfile)
{
    CNrvDataEditingProfile profile;
    ASSERT_EQ(profile.Parse("<{DecodedData()}>"), NRV_OK);
    profile.WriteTriggerContains("never");
    CNrvSettings settings;
    TNrvSettingError error;
    ASSERT_TRUE(settings.ReadSize(kNrvSettingMaximumSize, "4", &error));
    ASSERT_TRUE(settings.ReadText(kNrvSettingStartsWith, "A\\t", true, &error));
    ASSERT_TRUE(settings.AddSymbology("Code128", &error));
    ASSERT_TRUE(settings.ReadSize(kNrvSettingMaximumText, "5", &error));
    settings.Apply(&profile);
    struct Row {
        std::string scan;
        ENrvScanSymbologyID id;
        NRVRESULT nCode;
    } rows[] = {
        {"A\tB", kNrvScanSymbologyCode128, NRV_OK},
        {"A\tBC", kNrvScanSymbologyCode128, NRV_ERR_TEXT_LIMIT},  // <A\tBC> is 6 bytes
        {"A\tBCD", kNrvScanSymbologyCode128, NRV_OK_NOT_TRIGGERED},
        {"A\tB", kNrvScanSymbologyQRCode, NRV_OK_NOT_TRIGGERED},
        {"AB", kNrvScanSymbologyCode128, NRV_OK_NOT_TRIGGERED},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.scan);
        std::string bytes = row.scan;
        TNrvScanDecodedData record = {row.id, {0, nullptr}, {bytes.size(), &bytes[0]}};
        EXPECT_EQ(profile.Edit(&record), row.nCode);
    }
    // A work limit of 0 is no budget at all, not a base without a share per byte.
    ASSERT_TRUE(settings.ReadSize(kNrvSettingMaximumWork, "0", &error));
    EXPECT_EQ(settings.Limits().nWorkBase, 0u);
}

}  // namespace
