// The parser's entry points and the list, given null or out-of-range
// arguments: each answers with a code and leaves its outputs alone, so that
// a caller's mistake cannot crash the engine.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "NrvDiagnostics.h"
#include "NrvEscapes.h"
#include "NrvList.h"
#include "NrvSymbologies.h"
#include "NrvOperation.h"
#include "NrvParsingString.h"
#include "NrvRuntimeLib.h"

TEST(EntryPoints, ParserFunctionsRefuseNullArguments)
{
    CNrvDataEditingProfile profile;
    CNrvOperationDictionary* pDictionary = CNrvOperationDictionary::GetLibraryDictionary();
    CNrvParsingString text("{DecodedData()}");
    CNrvParsingString empty("");
    CNrvList list;
    CNrvOperation* pOperation = nullptr;
    CNrvParsingString* pParameters = nullptr;
    const char o = '{', c = '}';
    const struct {
        const char* pszCall;
        NRVRESULT code;
    } rows[] = {
        {"Parse: no text", CNrvOperation::Parse(&profile, pDictionary, o, c, nullptr, &list)},
        {"Parse: no list", CNrvOperation::Parse(&profile, pDictionary, o, c, &text, nullptr)},
        {"Split: no text", CNrvOperation::Split(o, c, nullptr, &list)},
        {"Split: empty text", CNrvOperation::Split(o, c, &empty, &list)},
        {"Split: no list", CNrvOperation::Split(o, c, &text, nullptr)},
        {"Lookup: no dictionary",
         CNrvOperation::LookupCommand(nullptr, &profile, &text, o, c, &pOperation, &pParameters)},
        {"Lookup: no profile",
         CNrvOperation::LookupCommand(pDictionary, nullptr, &text, o, c, &pOperation, &pParameters)},
        {"Lookup: no text", CNrvOperation::LookupCommand(pDictionary, &profile, nullptr, o, c, &pOperation, &pParameters)},
        {"Lookup: no operation out", CNrvOperation::LookupCommand(pDictionary, &profile, &text, o, c, nullptr, &pParameters)},
        {"Lookup: no parameters out", CNrvOperation::LookupCommand(pDictionary, &profile, &text, o, c, &pOperation, nullptr)},
        {"CheckParametersCount: no operation", CNrvOperation::CheckParametersCount(nullptr, &text, o, c)},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.pszCall);
        EXPECT_EQ(row.code, NRV_ERR_INVALID_PARAMETER);
    }
    EXPECT_EQ(list.GetCount(), 0);
    EXPECT_EQ(pOperation, nullptr);
    EXPECT_EQ(pParameters, nullptr);
    EXPECT_FALSE(CNrvOperation::IsCommand(nullptr));
}

TEST(EntryPoints, ListRefusesMissingPositionsAndOutputs)
{
    CNrvList list;
    int nValue = 7;
    ASSERT_EQ(list.AddTail(&nValue), NRV_OK);
    TNrvPosition position = list.GetHeadPosition();
    TNrvPosition nowhere = nullptr;
    void* pData = &nValue;
    const struct {
        const char* pszCall;
        NRVRESULT result;
        NRVRESULT code;
    } rows[] = {
        {"GetNext: no position", list.GetNext(nullptr, &pData), NRV_ERR_INVALID_PARAMETER},
        {"GetNext: past the end", list.GetNext(&nowhere, &pData), NRV_ERR_INVALID_PARAMETER},
        {"GetNext: no output", list.GetNext(&position, nullptr), NRV_ERR_INVALID_PARAMETER},
        {"GetPrevious: no position", list.GetPrevious(nullptr, &pData), NRV_ERR_INVALID_PARAMETER},
        {"GetPrevious: past the start", list.GetPrevious(&nowhere, &pData), NRV_ERR_INVALID_PARAMETER},
        {"GetPrevious: no output", list.GetPrevious(&position, nullptr), NRV_ERR_INVALID_PARAMETER},
        {"GetAt: no position", list.GetAt(nullptr, &pData), NRV_ERR_INVALID_PARAMETER},
        {"GetAt: no output", list.GetAt(position, nullptr), NRV_ERR_INVALID_PARAMETER},
        {"RemoveAt: no position", list.RemoveAt(nullptr, &pData), NRV_ERR_INVALID_PARAMETER},
        {"RemoveAt: no output", list.RemoveAt(position, nullptr), NRV_ERR_INVALID_PARAMETER},
        {"FindIndex: no output", list.FindIndex(0, nullptr), NRV_ERR_OUT_OF_RANGE},
        {"FindIndex: past the end", list.FindIndex(1, &nowhere), NRV_ERR_OUT_OF_RANGE},
        {"InsertBefore: no position", list.InsertBefore(nullptr, &nValue), NRV_ERR_INVALID_PARAMETER},
        {"InsertAfter: no position", list.InsertAfter(nullptr, &nValue), NRV_ERR_INVALID_PARAMETER},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.pszCall);
        EXPECT_EQ(row.result, row.code);
    }
    // Nothing moved: the one element is still there, the outputs untouched.
    EXPECT_EQ(list.GetCount(), 1);
    EXPECT_EQ(pData, &nValue);
    EXPECT_EQ(nowhere, nullptr);
    EXPECT_EQ(position, list.GetHeadPosition());
}

// An integer literal is read within 32 bits whatever its digits (the parser
// only makes integers of texts IsNumber accepts; the reading must still
// hold on its own).
TEST(EntryPoints, IntegerLiteralsClampToThirtyTwoBits)
{
    CNrvDataEditingProfile profile;
    const struct {
        const char* pszText;
        int nValue;
    } rows[] = {
        {"3000000000", 2147483647},   {"2147483648", 2147483647}, {"-3000000000", -2147483647 - 1},
        {"-2147483648", -2147483647 - 1}, {" +7", 7},             {"12a", 12},
        {"99999999999999999999", 2147483647},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.pszText);
        CNrvParsingString text(row.pszText);
        CNrvOperationInteger literal(&profile, &text);
        CNrvOperationResult result;
        ASSERT_EQ(literal.Run(result), NRV_OK);
        EXPECT_EQ(result.GetResultInteger(), static_cast<size_t>(static_cast<int64_t>(row.nValue)));
        EXPECT_STREQ(result.GetResultString(), row.pszText);  // and it still reads as its text
    }
    // No text at all: the empty literal.
    CNrvOperationString none(&profile, nullptr);
    CNrvOperationResult result;
    ASSERT_EQ(none.Run(result), NRV_OK);
    EXPECT_EQ(result.GetResultStringLength(), 0u);
}

namespace {

// Reaches the protected parameter splitter.
class CSplitter : public CNrvOperation {
public:
    static NRVRESULT Split(CNrvParsingString* pText, CNrvList* pList)
    {
        return SplitInParametersIfNecessary(pText, '{', '}', pList);
    }
};

int g_nTraceLines = 0;

void CountTraceLine(bool, const char*, void*)
{
    ++g_nTraceLines;
}

}  // namespace

TEST(EntryPoints, ParsingStringAndFormattingRefuseNull)
{
    CNrvParsingString text("abc");
    EXPECT_EQ(text.WriteString(nullptr), NRV_ERR_INVALID_PARAMETER);
    EXPECT_EQ(text.Remove(nullptr), NRV_ERR_INVALID_PARAMETER);
    CNrvParsingString none("");
    EXPECT_EQ(text.Remove(&none), NRV_ERR_INVALID_PARAMETER);
    EXPECT_TRUE(text.Extract('{', '}').IsEmpty());  // does not start with the opening delimiter
    EXPECT_EQ(std::string(text.GetString(), text.GetLength()), "abc");
    CNrvList list;
    EXPECT_EQ(CSplitter::Split(nullptr, &list), NRV_ERR_INVALID_PARAMETER);
    EXPECT_EQ(CSplitter::Split(&text, nullptr), NRV_ERR_INVALID_PARAMETER);
    EXPECT_EQ(list.GetCount(), 0);
    // A trace line without a format is dropped, not formatted.
    CNrvParsingString::SetTraceCallback(CountTraceLine, nullptr);
    text.DbgFormatDump(false, nullptr);
    text.DbgFormatDump(false, "%s");
    CNrvParsingString::SetTraceCallback(nullptr, nullptr);
    EXPECT_EQ(g_nTraceLines, 1);
    char szBuffer[8] = "kept";
    EXPECT_LT(CNrvRuntimeLib::Sprintf(nullptr, 8, "%d", 1), 0);
    EXPECT_LT(CNrvRuntimeLib::Sprintf(szBuffer, 0, "%d", 1), 0);
    EXPECT_LT(CNrvRuntimeLib::Sprintf(szBuffer, sizeof szBuffer, nullptr), 0);
    EXPECT_STREQ(szBuffer, "kept");
}

// A command whose parameter list does not match its kinds is refused by the
// check, never run.
TEST(EntryPoints, ParameterKindsNeedExactlyOneParameterPerKind)
{
    CNrvDataEditingProfile profile;
    CNrvOperationDictionary* pDictionary = CNrvOperationDictionary::GetLibraryDictionary();
    CNrvOperation* pOperation = nullptr;
    ASSERT_EQ(pDictionary->GetValue("MakeUpperCase", 13)->CreateOperation(&profile, &pOperation), NRV_OK);
    EXPECT_FALSE(pOperation->CheckIfParametersAreCorrect());  // none given
    CNrvParsingString text("abc");
    pOperation->GetOperationsList()->AddTail(new CNrvOperationString(&profile, &text));
    EXPECT_TRUE(pOperation->CheckIfParametersAreCorrect());
    pOperation->GetOperationsList()->AddTail(new CNrvOperationString(&profile, &text));
    EXPECT_FALSE(pOperation->CheckIfParametersAreCorrect());  // one too many
    delete pOperation;
}

// The escapes shared by the tool and the other front ends: every hex digit
// class and its neighbours, and escapes cut short.
TEST(EntryPoints, UnescapeReadsHexDigitsAndRefusesTheirNeighbours)
{
    const struct {
        std::string text;
        bool bOk;
        std::string bytes;
    } rows[] = {
        {"\\x09\\x9a\\xAf", true, std::string("\x09\x9a\xaf", 3)},
        {"\\x/0", false, ""},  {"\\x:0", false, ""}, {"\\x@0", false, ""}, {"\\xG0", false, ""},
        {"\\x`0", false, ""},  {"\\xg0", false, ""}, {"\\x0", false, ""},  {"\\x", false, ""},
        {"a\\", false, ""},    {"\\q", false, ""},   {"\\\\\\r\\n\\t", true, "\\\r\n\t"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        std::string out, error;
        EXPECT_EQ(NrvUnescape(row.text.data(), row.text.size(), &out, &error), row.bOk);
        if (row.bOk) {
            EXPECT_EQ(out, row.bytes);
            std::string shown;
            NrvAppendEscaped(out.data(), out.size(), &shown);
            std::string again, problem;
            ASSERT_TRUE(NrvUnescape(shown.data(), shown.size(), &again, &problem));
            EXPECT_EQ(again, out);
        } else {
            EXPECT_FALSE(error.empty());
        }
    }
}

TEST(EntryPoints, SymbologyNamesAndNumbers)
{
    EXPECT_EQ(NrvSymbologyName(-1), nullptr);
    EXPECT_EQ(NrvSymbologyName(kNrvScanSymbologyLastSymbologyID), nullptr);
    EXPECT_STREQ(NrvSymbologyName(kNrvScanSymbologyHanXin), "HanXin");
    const struct {
        const char* pszText;
        bool bOk;
        ENrvScanSymbologyID id;
    } rows[] = {
        {"47", true, kNrvScanSymbologyHanXin}, {"0", true, kNrvScanSymbologyNotSpecified},
        {"48", false, {}},  {"1a", false, {}}, {"1/", false, {}}, {"4:", false, {}},
        {"qrcode", true, kNrvScanSymbologyQRCode}, {"QRCod", false, {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.pszText);
        ENrvScanSymbologyID id = kNrvScanSymbologyAztec;
        EXPECT_EQ(NrvParseSymbology(row.pszText, &id), row.bOk);
        EXPECT_EQ(id, row.bOk ? row.id : kNrvScanSymbologyAztec);
    }
}
