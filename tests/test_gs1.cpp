// GS1 element strings: the AI look-up, and the AI table against GS1's syntax
// dictionary.

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

#include "NrvGs1.h"

using namespace std::string_literals;

namespace {

// The text in a heap block of its exact length, without a terminator, so
// that the sanitizer catches any read past it.
std::unique_ptr<char[]> ExactCopy(const std::string& text)
{
    std::unique_ptr<char[]> copy(new char[text.size()]);
    std::memcpy(copy.get(), text.data(), text.size());
    return copy;
}

}  // namespace

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
