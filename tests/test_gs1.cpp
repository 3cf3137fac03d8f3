// GS1 element strings: the reader over valid and invalid messages, the AI
// look-up, and the AI table against GS1's syntax dictionary.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "NrvDiagnostics.h"
#include "NrvGs1.h"
#include "NrvDataEditingProfile.h"

using namespace std::string_literals;

// A separate literal, so that no hexadecimal escape runs on into the text.
#define GS "\x1D"

namespace {

struct TReadRow {
    std::string text;
    const char* pszReadable;  // the human-readable form; null when the text is not a valid message
    const char* pszAi;        // valid: an AI to look for, and the data found (null: none)
    const char* pszData;
    size_t nOffset;           // not valid: the culprit and the sentence
    size_t nLength;
    const char* pszMessage;
};

TReadRow Valid(std::string text, const char* pszReadable, const char* pszAi, const char* pszData)
{
    return {std::move(text), pszReadable, pszAi, pszData, 0, 0, nullptr};
}

TReadRow Invalid(std::string text, size_t nOffset, size_t nLength, const char* pszMessage)
{
    return {std::move(text), nullptr, nullptr, nullptr, nOffset, nLength, pszMessage};
}

// The text in a heap block of its exact length, without a terminator, so
// that the sanitizer catches any read past it.
std::unique_ptr<char[]> ExactCopy(const std::string& text)
{
    std::unique_ptr<char[]> copy(new char[text.size()]);
    std::memcpy(copy.get(), text.data(), text.size());
    return copy;
}

const std::vector<TReadRow>& ReadRows()
{
    static const std::vector<TReadRow> rows = {
        // Each symbology identifier, bare, and after a leading separator.
        Valid("]C1" "0109501101530003" "17141120" "10AB-123" GS "21SER42",
              "(01)09501101530003(17)141120(10)AB-123(21)SER42", "10", "AB-123"),
        Valid("0109501101530003" "17141120" "10AB-123" GS "21SER42",
              "(01)09501101530003(17)141120(10)AB-123(21)SER42", "21", "SER42"),
        Valid("]e0" "0109501101530003" "3103000525", "(01)09501101530003(3103)000525", "3103", "000525"),
        Valid("]d2" "0109501101530003" "10LOT9", "(01)09501101530003(10)LOT9", "10", "LOT9"),
        Valid("]Q3" "10ABC" GS "0109501101530003", "(10)ABC(01)09501101530003", "01", "09501101530003"),
        Valid("]J1" "00106141412345678908", "(00)106141412345678908", "00", "106141412345678908"),
        Valid(GS "0109501101530003" "10ABC", "(01)09501101530003(10)ABC", "17", nullptr),
        Valid("]C1" GS "2001", "(20)01", "20", "01"),
        // Separators: tolerated after a predefined length and at the end; a
        // missing one leaves the rest in the variable-length data.
        Valid("0109501101530003" GS "17141120", "(01)09501101530003(17)141120", "17", "141120"),
        Valid("10ABC" GS, "(10)ABC", "10", "ABC"),
        Valid("10AB-12321SER42", "(10)AB-12321SER42", "21", nullptr),
        Valid("10A" GS "10B" GS "10C", "(10)A(10)B(10)C", "10", "A"),
        Valid("0109501101530003" GS, "(01)09501101530003", "01", "09501101530003"),
        // Every character set, and the ends of an AI range.
        Valid("8010" "0614141#-/AZ", "(8010)0614141#-/AZ", "8010", "0614141#-/AZ"),
        Valid("8030" "Ab_-09==", "(8030)Ab_-09==", "8030", "Ab_-09=="),
        Valid("91" "!\"%&'()*+,-./:;<=>?_z", "(91)!\"%&'()*+,-./:;<=>?_z", "91", "!\"%&'()*+,-./:;<=>?_z"),
        Valid("3100000100" "3105000200", "(3100)000100(3105)000200", "3105", "000200"),
        Valid("99" "X" GS "3920" "123456789012345", "(99)X(3920)123456789012345", "99", "X"),
        // Optional components, given or left out.
        Valid("7007" "230101" "230131", "(7007)230101230131", "7007", "230101230131"),
        Valid("7007" "230101" GS "10A", "(7007)230101(10)A", "7007", "230101"),
        Valid("253" "4012345000047" "ABC", "(253)4012345000047ABC", "253", "4012345000047ABC"),
        Valid("8008" "2402292359" GS "8008" "24022923", "(8008)2402292359(8008)24022923", "8008", "2402292359"),
        Valid("423" "276" "040" GS "4330" "012345-", "(423)276040(4330)012345-", "4330", "012345-"),
        Valid("8003" "0" "4012345000047" "SN1", "(8003)04012345000047SN1", "8003", "04012345000047SN1"),
        // Checks at their limits.
        Valid("17141100" "11240229" "7250" "20000229", "(17)141100(11)240229(7250)20000229", "7250", "20000229"),
        Valid("7003" "2402292359" GS "7251" "20240229" "2359", "(7003)2402292359(7251)202402292359", "7251",
              "202402292359"),
        Valid("8013" "1987654Ad4X4bL5ttr2310c2K", "(8013)1987654Ad4X4bL5ttr2310c2K", "8013",
              "1987654Ad4X4bL5ttr2310c2K"),
        Valid("8007" "GB82WEST12345698765432", "(8007)GB82WEST12345698765432", "8007", "GB82WEST12345698765432"),
        Valid("3912" "978" "1234" GS "4307" "DE", "(3912)9781234(4307)DE", "4307", "DE"),
        Valid("4309" "1800000000" "3600000000", "(4309)18000000003600000000", "4309", "18000000003600000000"),
        Valid("7040" "1AB_" GS "7030" "999" "X", "(7040)1AB_(7030)999X", "7030", "999X"),
        Valid("8006" "09501101530003" "0202", "(8006)095011015300030202", "8006", "095011015300030202"),
        Valid("8001" "0100" "00500" "001" "9" "0", "(8001)01000050000190", "8001", "01000050000190"),
        Valid("7252" "9" GS "4321" "1" GS "8011" "0" GS "8011" "10" GS "7258" "2/2",
              "(7252)9(4321)1(8011)0(8011)10(7258)2/2", "7258", "2/2"),
        Valid("8014" "1987654Ad4X4bL5ttr2310c2K", "(8014)1987654Ad4X4bL5ttr2310c2K", "8014",
              "1987654Ad4X4bL5ttr2310c2K"),
        Valid("4300" "ACME%20Corp" GS "8110" "any-thing", "(4300)ACME%20Corp(8110)any-thing", "8110", "any-thing"),
        // Identifiers and texts without an element string.
        Invalid("]C0" "0109501101530003", 0, 3,
                "]C0 is not the symbology identifier of GS1 data (]C1, ]e0, ]d2, ]Q3 or ]J1)"),
        Invalid("]\x01\xff" "10A", 0, 3,
                "]\\x01\\xFF is not the symbology identifier of GS1 data (]C1, ]e0, ]d2, ]Q3 or ]J1)"),
        Invalid("]C", 0, 2, "the text ends inside a symbology identifier"),
        Invalid("", 0, 0, "the text holds no element string"),
        Invalid("]C1", 3, 0, "the text holds no element string"),
        Invalid("]d2" GS, 4, 0, "the text holds no element string"),
        // Unknown AIs, and texts that end inside one.
        Invalid("05123", 0, 2, "no AI 05 exists"),
        Invalid("0109501101530003" "23123", 16, 3, "no AI 231 exists"),
        Invalid("3106000100", 0, 4, "no AI 3106 exists"),
        Invalid("0109501101530003" "1", 16, 1, "the text ends inside an AI, after 1"),
        Invalid("0109501101530003" "310", 16, 3, "the text ends inside an AI, after 310"),
        Invalid("AB", 0, 1, "an AI's digit expected, found 'A'"),
        Invalid("1\xff", 1, 1, "an AI's digit expected, found byte 0xFF"),
        Invalid("10A" GS GS "21B", 4, 1, "an AI's digit expected, found a separator"),
        Invalid(" 10A", 0, 1, "an AI's digit expected, found byte 0x20"),
        // Lengths: texts that end, or separators that come, inside an element.
        Invalid("0109501", 2, 5, "AI (01): 14 digits expected, the text ends after 5"),
        Invalid("01095011015" GS "10A", 2, 9, "AI (01): 14 digits expected, a separator after 9"),
        Invalid("01", 0, 2, "AI (01): 14 digits expected, the text ends right after the AI"),
        Invalid("10", 0, 2, "AI (10): at least 1 character expected, the text ends right after the AI"),
        Invalid("10" GS "21A", 0, 2, "AI (10): at least 1 character expected, a separator right after the AI"),
        Invalid("7003" "230101" GS "10A", 4, 6, "AI (7003): 10 digits expected, a separator after 6"),
        Invalid("7007" "2301012301", 4, 10, "AI (7007): 12 digits expected, the text ends after 10"),
        Invalid("421" "276", 3, 3, "AI (421): at least 4 characters expected, the text ends after 3"),
        Invalid("10" "ABCDEFGHIJKLMNOPQRSTU", 2, 21, "AI (10): 21 characters, at most 20"),
        Invalid("30" "123456789" GS "10A", 2, 9, "AI (30): 9 digits, at most 8"),
        Invalid("7007" "2301012301011", 4, 13, "AI (7007): 13 digits, at most 12"),
        // Character sets, and bytes that are not text.
        Invalid("0109501101530A03", 13, 1, "AI (01): 'A' is not a digit"),
        Invalid("10AB\x80", 4, 1, "AI (10): byte 0x80 is not one of GS1's 82 characters"),
        Invalid("10A\0B"s, 3, 1, "AI (10): byte 0x00 is not one of GS1's 82 characters"),
        Invalid("10A B", 3, 1, "AI (10): byte 0x20 is not one of GS1's 82 characters"),
        Invalid("10A#B", 3, 1, "AI (10): '#' is not one of GS1's 82 characters"),
        Invalid("8010" "abc", 4, 1, "AI (8010): 'a' is not one of GS1's 39 characters"),
        Invalid("8030" "ab+c", 6, 1, "AI (8030): '+' is not a base64url character"),
        Invalid("8030" "ab=c", 6, 1, "AI (8030): '=' pads only the end, at most twice"),
        Invalid("8030" "ab===", 6, 1, "AI (8030): '=' pads only the end, at most twice"),
        // Check digits and characters.
        Invalid("0109501101530004", 15, 1, "AI (01): check digit 4, expected 3"),
        Invalid("00106141412345678907", 19, 1, "AI (00): check digit 7, expected 8"),
        Invalid("8013" "1987654Ad4X4bL5ttr2310c2L", 27, 2, "AI (8013): check characters 2L, expected 2K"),
        Invalid("8013" "A", 4, 1, "AI (8013): too short for its two check characters"),
        Invalid("8014" "100096", 4, 6, "AI (8014): digits only, where at least one other character is needed"),
        // Dates and times.
        Invalid("17141320", 4, 2, "AI (17): month 13 is not a month"),
        Invalid("17140020", 4, 2, "AI (17): month 00 is not a month"),
        Invalid("7006" "230100", 8, 2, "AI (7006): day 00 is not a day"),
        Invalid("17230229", 6, 2, "AI (17): February has no day 29 in year 23"),
        Invalid("17230431", 6, 2, "AI (17): April has no day 31"),
        Invalid("7250" "19000229", 10, 2, "AI (7250): February has no day 29 in year 1900"),
        Invalid("7250" "20230229", 10, 2, "AI (7250): February has no day 29 in year 2023"),
        Invalid("7003" "2402292400", 10, 2, "AI (7003): hour 24 is not an hour"),
        Invalid("7003" "2402292360", 12, 2, "AI (7003): minute 60 is not a minute"),
        Invalid("8008" "24022923" "5960", 14, 2, "AI (8008): second 60 is not a second"),
        // Codes and the smaller checks.
        Invalid("423" "276" "000", 6, 3, "AI (423): 000 is not a country number of ISO 3166"),
        Invalid("7030" "000" "X", 4, 3, "AI (7030): 000 is not a country number of ISO 3166"),
        Invalid("3912" "000" "1234", 4, 3, "AI (3912): 000 is not a currency number of ISO 4217"),
        Invalid("4307" "de", 4, 2, "AI (4307): de is not a country code of ISO 3166"),
        Invalid("4307" "Dx", 4, 2, "AI (4307): Dx is not a country code of ISO 3166"),
        Invalid("4307" "DX", 4, 2, "AI (4307): DX is not a country code of ISO 3166"),
        Invalid("4309" "1800000001" "0000000000", 4, 10,
                "AI (4309): latitude 1800000001 is past 1800000000 (90 degrees north)"),
        Invalid("4309" "0000000000" "3600000001", 14, 10,
                "AI (4309): longitude 3600000001 is past 3600000000 (180 degrees east)"),
        Invalid("4321" "2", 4, 1, "AI (4321): 2 is not 0 (no) or 1 (yes)"),
        Invalid("7252" "3", 4, 1, "AI (7252): 3 is not a sex code of ISO 5218 (0, 1, 2 or 9)"),
        Invalid("8001" "0100" "00500" "001" "2" "0", 16, 1, "AI (8001): 2 is not a winding direction (0, 1 or 9)"),
        Invalid("8001" "0100" "00000" "001" "1" "0", 8, 5, "AI (8001): 00000 must not be zero"),
        Invalid("8003" "1" "4012345000047", 4, 1, "AI (8003): 1 is not 0, the only digit allowed here"),
        Invalid("4330" "012345+", 10, 1, "AI (4330): '+' is not '-', the only character allowed here"),
        Invalid("7040" "1AB+", 7, 1, "AI (7040): '+' is not an importer index (0-9, A-Z, a-z, '-' or '_')"),
        Invalid("4300" "a%2", 5, 2, "AI (4300): '%' is not followed by two hexadecimal digits"),
        Invalid("4300" "a%zz1", 5, 3, "AI (4300): '%' is not followed by two hexadecimal digits"),
        Invalid("4300" "a%2z", 5, 3, "AI (4300): '%' is not followed by two hexadecimal digits"),
        Invalid("7258" "3/2", 4, 3, "AI (7258): 3/2 is not a position in a sequence, N/M with 1 <= N <= M"),
        Invalid("7258" "0/2", 4, 3, "AI (7258): 0/2 is not a position in a sequence, N/M with 1 <= N <= M"),
        Invalid("7258" "a/2", 4, 3, "AI (7258): a/2 is not a position in a sequence, N/M with 1 <= N <= M"),
        Invalid("7258" "1-2", 4, 3, "AI (7258): 1-2 is not a position in a sequence, N/M with 1 <= N <= M"),
        Invalid("7258" "1/b", 4, 3, "AI (7258): 1/b is not a position in a sequence, N/M with 1 <= N <= M"),
        Invalid("8006" "09501101530003" "0301", 18, 4, "AI (8006): piece 03 of 01 does not exist"),
        Invalid("8006" "09501101530003" "0002", 18, 4, "AI (8006): piece 00 of 02 does not exist"),
        Invalid("8007" "GB83WEST12345698765432", 6, 2, "AI (8007): IBAN check digits 83 do not match the IBAN"),
        Invalid("8007" "GB82west12345698765432", 8, 1,
                "AI (8007): 'w' is not a capital letter or a digit, as an IBAN needs"),
        Invalid("8007" "GB8", 4, 3, "AI (8007): an IBAN starts with two capital letters and two digits"),
        Invalid("8007" "1B82WEST12345698765432", 4, 4,
                "AI (8007): an IBAN starts with two capital letters and two digits"),
        Invalid("8007" "GB8XWEST12345698765432", 4, 4,
                "AI (8007): an IBAN starts with two capital letters and two digits"),
        Invalid("8011" "012", 4, 1, "AI (8011): a leading zero is not allowed"),
        // The first fault counts: an element after it is not read.
        Invalid("17141320" "0109501101530004", 4, 2, "AI (17): month 13 is not a month"),
    };
    return rows;
}

}  // namespace

TEST(Gs1Reader, ReadsValidAndInvalidMessages)
{
    for (const TReadRow& row : ReadRows()) {
        SCOPED_TRACE(::testing::PrintToString(row.text));
        const std::unique_ptr<char[]> text = ExactCopy(row.text);
        const size_t nLength = row.text.size();
        const size_t nCapacity = NrvGs1HumanReadableCapacity(nLength);
        const std::unique_ptr<char[]> readable(new char[nCapacity > 0 ? nCapacity : 1]);
        size_t nReadable = 0;
        TNrvGs1Fault fault = {};
        const bool bValid = NrvGs1WriteHumanReadable(text.get(), nLength, readable.get(), &nReadable, &fault);
        TNrvGs1Element found = {};
        TNrvGs1Fault findFault = {};
        const char* pszAi = row.pszAi != nullptr ? row.pszAi : "10";
        EXPECT_EQ(NrvGs1FindElement(text.get(), nLength, pszAi, std::strlen(pszAi), &found, &findFault), bValid);
        TNrvGs1Fault validFault = {};
        EXPECT_EQ(NrvGs1IsValid(text.get(), nLength, &validFault), bValid);
        if (row.pszReadable != nullptr) {
            ASSERT_TRUE(bValid) << fault.szMessage;
            EXPECT_EQ(std::string(readable.get(), nReadable), row.pszReadable);
            if (row.pszData == nullptr) {
                EXPECT_EQ(found.pEntry, nullptr);
            } else {
                ASSERT_NE(found.pEntry, nullptr);
                EXPECT_EQ(std::string(text.get() + found.nAiOffset, found.nAiLength), row.pszAi);
                EXPECT_EQ(std::string(text.get() + found.nDataOffset, found.nDataLength), row.pszData);
            }
            continue;
        }
        ASSERT_FALSE(bValid);
        EXPECT_EQ(fault.nOffset, row.nOffset);
        EXPECT_EQ(fault.nLength, row.nLength);
        EXPECT_STREQ(fault.szMessage, row.pszMessage);
        EXPECT_STREQ(findFault.szMessage, row.pszMessage);
        EXPECT_STREQ(validFault.szMessage, row.pszMessage);
        EXPECT_EQ(found.pEntry, nullptr);
    }
}

// The same rows through the commands, each message the scan of a profile
// with the GS1 set: GS1HumanReadable and GS1Element give what the reader
// gives, an explanation's elements spell the human-readable form, and an
// invalid message fails both with NRV_ERR_GS1_INVALID, the scan untouched
// and the reader's sentence said at the culprit's first byte.
TEST(Gs1Commands, EveryReaderRowThroughTheCommands)
{
    const char* const kExpression = "{GS1HumanReadable({DecodedData()})}";
    for (const TReadRow& row : ReadRows()) {
        SCOPED_TRACE(::testing::PrintToString(row.text));
        const std::string element = std::string("{GS1Element({DecodedData()},") +
                                    (row.pszAi != nullptr ? row.pszAi : "10") + ")}";
        for (const std::string& expression : {std::string(kExpression), element}) {
            CNrvDataEditingProfile profile;
            ASSERT_EQ(profile.EnableCommandSets(kNrvCommandSetGs1), NRV_OK);
            ASSERT_EQ(profile.Parse(expression.c_str()), NRV_OK);
            std::string scan = row.text;
            char* const pScan = &scan[0];
            TNrvScanDecodedData record = {kNrvScanSymbologyNotSpecified, {0, nullptr}, {scan.size(), pScan}};
            const NRVRESULT code = profile.Edit(&record);
            const std::string edited(record.String.pValue, record.String.nLength);
            if (row.pszReadable == nullptr) {
                EXPECT_EQ(code, NRV_ERR_GS1_INVALID);
                EXPECT_EQ(record.String.pValue, pScan);
                continue;
            }
            ASSERT_EQ(code, NRV_OK);
            const bool bReadable = expression == kExpression;
            EXPECT_EQ(edited, bReadable ? row.pszReadable : row.pszData != nullptr ? row.pszData : "");
        }
        const TNrvExplanation explanation =
            NrvExplain(kExpression, row.text.data(), row.text.size(), TNrvLimits(), kNrvCommandSetGs1);
        ASSERT_EQ(explanation.nodes.size(), 1u);
        std::string spelt;
        for (const TNrvExplainGs1Element& shown : explanation.nodes[0].gs1)
            spelt += "(" + shown.ai + ")" + shown.data;
        if (row.pszReadable != nullptr) {
            EXPECT_EQ(spelt, row.pszReadable);
            continue;
        }
        const std::string place = row.nLength > 1 ? "at bytes " + std::to_string(row.nOffset) + " to " +
                                                        std::to_string(row.nOffset + row.nLength - 1)
                                                  : "at byte " + std::to_string(row.nOffset);
        EXPECT_EQ(explanation.failure.message.rfind(std::string(row.pszMessage) + ", " + place + " of the scan", 0),
                  0u)
            << explanation.failure.message;
    }
}

// Every prefix of every row: the reader stops inside the text, a fault's
// culprit lies within it, the elements of a valid prefix cover it (the
// identifier, the separators and the elements, nothing else), and the
// functions built on the reader agree with it.
TEST(Gs1Reader, EveryPrefixStaysWithinTheText)
{
    for (const TReadRow& row : ReadRows()) {
        for (size_t nLength = 0; nLength <= row.text.size(); ++nLength) {
            const std::string prefix = row.text.substr(0, nLength);
            SCOPED_TRACE(::testing::PrintToString(prefix));
            const std::unique_ptr<char[]> text = ExactCopy(prefix);
            CNrvGs1Reader reader(text.get(), nLength);
            TNrvGs1Element element;
            size_t nCovered = nLength >= 3 && prefix[0] == ']' ? 3 : 0;
            while (reader.Next(&element)) {
                if (element.nAiOffset > nCovered && prefix[nCovered] == '\x1D')
                    ++nCovered;
                EXPECT_EQ(element.nAiOffset, nCovered);
                EXPECT_EQ(element.nDataOffset, element.nAiOffset + element.nAiLength);
                nCovered = element.nDataOffset + element.nDataLength;
                ASSERT_LE(nCovered, nLength);
            }
            EXPECT_FALSE(reader.Next(&element));
            const std::unique_ptr<char[]> readable(new char[NrvGs1HumanReadableCapacity(nLength) + 1]);
            size_t nReadable = 0;
            EXPECT_EQ(NrvGs1WriteHumanReadable(text.get(), nLength, readable.get(), &nReadable, nullptr),
                      !reader.Failed());
            EXPECT_EQ(NrvGs1FindElement(text.get(), nLength, "10", 2, &element, nullptr), !reader.Failed());
            EXPECT_EQ(NrvGs1IsValid(text.get(), nLength, nullptr), !reader.Failed());
            if (reader.Failed()) {
                EXPECT_LE(reader.GetFault().nOffset + reader.GetFault().nLength, nLength);
                EXPECT_NE(reader.GetFault().szMessage[0], '\0');
            } else {
                EXPECT_EQ(nCovered + (nCovered < nLength && prefix[nCovered] == '\x1D' ? 1 : 0), nLength);
            }
        }
    }
}

TEST(Gs1Table, LooksUpAisAndRanges)
{
    struct TRow {
        std::string ai;
        const char* pszTitle;  // null: no such AI
    };
    const TRow rows[] = {
        {"00", "SSCC"},          {"01", "GTIN"},           {"3100", "NET WEIGHT (kg)"},
        {"3105", "NET WEIGHT (kg)"}, {"3106", nullptr},    {"3109", nullptr},
        {"3900", "AMOUNT"},      {"3909", "AMOUNT"},       {"3943", "PRCNT OFF"},
        {"3944", nullptr},       {"235", "TPX"},           {"236", nullptr},
        {"91", "INTERNAL"},      {"99", "INTERNAL"},       {"8110", ""},
        {"8200", "PRODUCT URL"}, {"04", nullptr},          {"0", nullptr},
        {"", nullptr},           {"010", nullptr},         {"31", nullptr},
        {"31000", nullptr},      {"0A", nullptr},          {"31\x00" "0"s, nullptr},
        {"\xff\xff", nullptr},   {"7041", "UFRGT UNIT TYPE"}, {"7042", nullptr},
    };
    for (const TRow& row : rows) {
        SCOPED_TRACE(::testing::PrintToString(row.ai));
        const std::unique_ptr<char[]> ai = ExactCopy(row.ai);
        const TNrvGs1Entry* pEntry = NrvGs1LookupAi(ai.get(), row.ai.size());
        if (row.pszTitle == nullptr) {
            EXPECT_EQ(pEntry, nullptr);
        } else {
            ASSERT_NE(pEntry, nullptr);
            EXPECT_STREQ(pEntry->pszTitle, row.pszTitle);
        }
    }
    EXPECT_EQ(NrvGs1LookupAi(nullptr, 2), nullptr);
    EXPECT_EQ(NrvGs1CheckName(kNrvGs1CheckNone), nullptr);
    EXPECT_EQ(NrvGs1CheckName(kNrvGs1CheckCount), nullptr);
    EXPECT_STREQ(NrvGs1CheckName(kNrvGs1CouponPosOffer), "couponposoffer");
}

namespace {

// One dictionary line as the table holds it: "3100-3105 *? N6 # NET WEIGHT
// (kg)", the attributes (pairings, Digital Link keys) left out.
std::string FromDictionary(const std::string& line)
{
    static const std::regex flags(R"([*!?"$%&'()+,\-./:;<=>@\[\\\]^_`{|}~]+)");
    static const std::regex component(R"(\[?[NXYZ](\d+|\.\.\d+)\]?(,[a-z0-9]+)*)");
    const size_t nHash = line.find('#');
    std::istringstream fields(line.substr(0, nHash));
    std::string ai, field, result;
    fields >> ai;
    result = ai;
    std::string flagText;
    while (fields >> field) {
        if (result == ai && flagText.empty() && std::regex_match(field, flags)) {
            flagText = field;
            continue;
        }
        if (!std::regex_match(field, component))
            continue;
        const bool bOptional = field[0] == '[';
        field.erase(std::remove(field.begin(), field.end(), '['), field.end());
        field.erase(std::remove(field.begin(), field.end(), ']'), field.end());
        const size_t nComma = std::min(field.find(','), field.size());
        result += bOptional ? " [" + field.substr(0, nComma) + "]" + field.substr(nComma) : " " + field;
    }
    std::string title = nHash == std::string::npos ? "" : line.substr(nHash + 1);
    title.erase(0, std::min(title.find_first_not_of(' '), title.size()));
    title.erase(title.find_last_not_of(" \r") + 1);
    std::sort(flagText.begin(), flagText.end());
    return result + " flags=" + flagText + " # " + title;
}

std::string FromTable(const TNrvGs1Entry& entry)
{
    std::string result = entry.szFirst;
    if (entry.szLast[0] != '\0')
        result += "-" + std::string(entry.szLast);
    for (const TNrvGs1Component& component : entry.aComponents) {
        if (component.cSet == 0)
            break;
        std::string text(1, component.cSet);
        if (component.nMin == component.nMax)
            text += std::to_string(component.nMin);
        else
            text += (component.nMin == 1 ? "" : std::to_string(component.nMin)) + ".." + std::to_string(component.nMax);
        result += component.bOptional ? " [" + text + "]" : " " + text;
        for (ENrvGs1Check check : component.aChecks)
            if (check != kNrvGs1CheckNone)
                result += "," + std::string(NrvGs1CheckName(check) != nullptr ? NrvGs1CheckName(check) : "?");
    }
    std::string flagText;
    if ((entry.nFlags & kNrvGs1Predefined) != 0)
        flagText += '*';
    if ((entry.nFlags & kNrvGs1DigitalLink) != 0)
        flagText += '?';
    std::sort(flagText.begin(), flagText.end());
    return result + " flags=" + flagText + " # " + entry.pszTitle;
}

}  // namespace

// The table against GS1's dictionary, row for row, when the dictionary is at
// hand (NRV_GS1_DICTIONARY in the environment names another copy).
TEST(Gs1Table, MatchesTheSyntaxDictionary)
{
    const char* pszPath = std::getenv("NRV_GS1_DICTIONARY");
#ifdef NRV_GS1_DICTIONARY
    if (pszPath == nullptr)
        pszPath = NRV_GS1_DICTIONARY;
#endif
    std::ifstream file(pszPath != nullptr ? pszPath : "");
    if (!file)
        GTEST_SKIP() << "GS1's syntax dictionary is not at " << (pszPath != nullptr ? pszPath : "(no path)");
    std::vector<std::string> dictionary;
    for (std::string line; std::getline(file, line);)
        if (!line.empty() && line[0] != '#' && line.find_first_not_of(" \t\r") != std::string::npos)
            dictionary.push_back(FromDictionary(line));
    size_t nCount = 0;
    const TNrvGs1Entry* pTable = NrvGs1Table(&nCount);
    ASSERT_GT(dictionary.size(), 200u);
    for (size_t i = 0; i < std::max(nCount, dictionary.size()); ++i) {
        EXPECT_EQ(i < nCount ? FromTable(pTable[i]) : "(none)", i < dictionary.size() ? dictionary[i] : "(none)");
        if (i < nCount) {
            // Both ends of every range find their own row.
            const TNrvGs1Entry& entry = pTable[i];
            const char* pszLast = entry.szLast[0] != '\0' ? entry.szLast : entry.szFirst;
            EXPECT_EQ(NrvGs1LookupAi(entry.szFirst, std::strlen(entry.szFirst)), &entry) << entry.szFirst;
            EXPECT_EQ(NrvGs1LookupAi(pszLast, std::strlen(pszLast)), &entry) << pszLast;
        }
    }
}
