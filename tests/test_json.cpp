// Bytes shown in each form, and the JSON writer's strings and rule field.
#include <gtest/gtest.h>

#include <string>

#include "NrvJson.h"
#include "NrvRuleSet.h"
#include "NrvShownBytes.h"

namespace {

TEST(ShownBytes, EachFormOverBytesThatAreNotText)
{
    struct Row {
        const char* pszName;
        std::string bytes;
        ENrvByteForm form;
        std::string shown;
    } rows[] = {
        {"escaped: controls, backslash, high bytes", "a\\\t\x1b\x7f\xc3\xa9", kNrvBytesEscaped,
         "a\\\\\\t\\x1B\\x7F\\xC3\\xA9"},
        {"code points: one character per byte", "A\x7f\x80\xff", kNrvBytesCodePoints, "A\x7f\xc2\x80\xc3\xbf"},
        {"display: control pictures", std::string("\0\t\r\x1f\x7f", 5), kNrvBytesDisplay,
         "\xe2\x90\x80\xe2\x90\x89\xe2\x90\x8d\xe2\x90\x9f\xe2\x90\xa1"},
        {"display: valid UTF-8 of each length", "\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80\xf4\x8f\xbf\xbf", kNrvBytesDisplay,
         "\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80\xf4\x8f\xbf\xbf"},
        {"display: overlong, surrogate, past U+10FFFF", "\xc0\x80\xed\xa0\x80\xf4\x90\x80\x80", kNrvBytesDisplay,
         "\\xC0\\x80\\xED\\xA0\\x80\\xF4\\x90\\x80\\x80"},
        {"display: a sequence cut by the end", "a\xe2\x82", kNrvBytesDisplay, "a\\xE2\\x82"},
        {"display: a lone continuation byte", "\x80" "a", kNrvBytesDisplay, "\\x80a"},
        {"message: controls escaped, UTF-8 kept", "\x1b[2J\a\t\xc3\xa9\\", kNrvBytesMessage,
         "\\x1B[2J\\x07\\t\xc3\xa9\\"},
        {"message: C1 controls escaped, U+00A0 kept", "\xc2\x9b\xc2\x80\xc2\xa0", kNrvBytesMessage,
         "\\xC2\\x9B\\xC2\\x80\xc2\xa0"},
        {"message: a lone CSI byte", "\x9b" "1m", kNrvBytesMessage, "\\x9B1m"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.pszName);
        EXPECT_EQ(NrvShown(row.bytes, row.form), row.shown);
    }
}

TEST(Json, StringsInEveryFormAreValidJsonOfTheirBytes)
{
    const std::string bytes = "q\"\\\x01\x7f\x80\xff\xc3\xa9";
    struct Row {
        ENrvByteForm form;
        std::string bytesJson;  // AppendBytes
        std::string textJson;   // AppendText: messages follow the display form outside the code-point form
    } rows[] = {
        {kNrvBytesCodePoints, "\"q\\\"\\\\\\u0001\\u007f\\u0080\\u00ff\\u00c3\\u00a9\"",
         "\"q\\\"\\\\\\u0001\\u007f\\u0080\\u00ff\\u00c3\\u00a9\""},
        {kNrvBytesEscaped, "\"q\\\"\\\\\\\\\\\\x01\\\\x7F\\\\x80\\\\xFF\\\\xC3\\\\xA9\"",
         "\"q\\\"\\\\\xe2\x90\x81\xe2\x90\xa1\\\\x80\\\\xFF\xc3\xa9\""},
        {kNrvBytesDisplay, "\"q\\\"\\\\\xe2\x90\x81\xe2\x90\xa1\\\\x80\\\\xFF\xc3\xa9\"",
         "\"q\\\"\\\\\xe2\x90\x81\xe2\x90\xa1\\\\x80\\\\xFF\xc3\xa9\""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.form);
        const CNrvJsonWriter writer(row.form);
        std::string json;
        writer.AppendBytes(bytes, &json);
        EXPECT_EQ(json, row.bytesJson);
        json.clear();
        writer.AppendText(bytes, &json);
        EXPECT_EQ(json, row.textJson);
    }
}

TEST(Json, TheRuleOfARuleSet)
{
    struct Row {
        bool bRuleSet;
        size_t nRule;
        const char* pszName;
        std::string start;
    } rows[] = {
        {false, 0, "", "{\"scan\":3,\"code\":1,"},
        {true, CNrvRuleSet::kNoRule, "", "{\"scan\":3,\"rule\":null,\"code\":1,"},
        {true, 0, "GS1 \x1d", "{\"scan\":3,\"rule\":{\"index\":1,\"name\":\"GS1 \\u001d\"},\"code\":1,"},
    };
    for (const Row& row : rows) {
        TNrvJsonScan scan;
        scan.nScan = 3;
        scan.nCode = NRV_OK_NOT_TRIGGERED;
        scan.output = "ab";
        scan.bRuleSet = row.bRuleSet;
        scan.nRule = row.nRule;
        scan.ruleName = row.pszName;
        std::string json;
        CNrvJsonWriter().AppendExplanation(scan, TNrvExplanation(), &json);
        EXPECT_EQ(json, row.start + "\"output\":\"ab\",\"nodes\":[]}");
    }
}

}  // namespace
