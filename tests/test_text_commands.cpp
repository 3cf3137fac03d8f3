// The text commands, run as whole expressions over decoded data that may hold
// zero bytes, control bytes and bytes from 0x80 up.

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "EditRows.h"
#include "NrvDataEditingProfile.h"
#include "NrvOperation.h"

using namespace std::string_literals;

namespace {

constexpr NRVRESULT kRange = NRV_ERR_OUT_OF_RANGE;

}  // namespace

TEST(TextCommands, ChangeCaseOfAsciiLettersOnly)
{
    ExpectEdits({
        {"{MakeUpperCase({DecodedData()})}", "aBc-9z", NRV_OK, "ABC-9Z"},
        {"{MakeLowerCase({DecodedData()})}", "aBc-9z", NRV_OK, "abc-9z"},
        {"{MakeUpperCase({DecodedData()})}", "a\0b\t\x7f"s, NRV_OK, "A\0B\t\x7f"s},
        {"{MakeLowerCase({DecodedData()})}", "@[`{Z"s, NRV_OK, "@[`{z"s},
        // Bytes from 0x80 up are never converted, whatever they spell.
        {"{MakeUpperCase({DecodedData()})}", "\xc3\xa9t\xe9\xff\x80", NRV_OK, "\xc3\xa9T\xe9\xff\x80"},
        {"{MakeLowerCase({DecodedData()})}", "\xc3\x89T\xc9\xdd", NRV_OK, "\xc3\x89t\xc9\xdd"},
        // Eight-byte blocks: a high byte at either end of a block, block
        // boundaries at 8 and 16, a tail after the last whole block.
        {"{MakeUpperCase({DecodedData()})}", "abcdefgh", NRV_OK, "ABCDEFGH"},
        {"{MakeUpperCase({DecodedData()})}", "abcdefg\xe9ijklmnopq", NRV_OK, "ABCDEFG\xe9IJKLMNOPQ"},
        {"{MakeUpperCase({DecodedData()})}", "abcdefgh\xe9jklmno\0q"s, NRV_OK, "ABCDEFGH\xe9JKLMNO\0Q"s},
        {"{MakeLowerCase({DecodedData()})}", "ABCDEFGHIJKLMNOP\xc9", NRV_OK, "abcdefghijklmnop\xc9"},
        {"{MakeUpperCase(42)}", "x", NRV_OK, "42"},
        {"{MakeUpperCase({DecodedData()})}", "", NRV_OK, ""},
        {"{MakeLowerCase({FindFirstFromIndex({DecodedData()},-1,a,0)})}", "a", NRV_ERR_INVALID_PARAMETER, ""},
    });
}

TEST(TextCommands, ReplaceNonPrintableCharacters)
{
    const char* const pszSpace = "{ReplaceNonPrintableCharacters({DecodedData()}, )}";
    const char* const pszXY = "{ReplaceNonPrintableCharacters({DecodedData()},XY)}";
    const char* const pszEmpty = "{ReplaceNonPrintableCharacters({DecodedData()},)}";
    ExpectEdits({
        {pszSpace, "A\tB", NRV_OK, "A B"},
        {pszXY, "ABC\r\n", NRV_OK, "ABCXYXY"},
        {pszEmpty, "A\tB", NRV_OK, "AB"},
        // 0x7F is printable; 0x1F, 0x00 and everything from 0x80 up are not.
        {pszXY, "\x7f\x1f\x80\xff"s, NRV_OK, "\x7fXYXYXY"s},
        {pszEmpty, "\0a\0"s, NRV_OK, "a"},
        {pszXY, "plain text", NRV_OK, "plain text"},
        {pszEmpty, "\r\n\x81"s, NRV_OK, ""},
        {pszXY, "", NRV_OK, ""},
        {"{ReplaceNonPrintableCharacters({DecodedData()},0)}", "1\r\n2", NRV_OK, "1002"},
        {"{ReplaceNonPrintableCharacters({DecodedData()},{EscapeCharacter(00)})}", "a\tb", NRV_OK, "a\0b"s},
        {"{ReplaceNonPrintableCharacters({DecodedData()},{FindLastFromIndex({DecodedData()},-1,a,0)})}", "a",
         NRV_ERR_INVALID_PARAMETER, ""},
        {"{ReplaceNonPrintableCharacters({Replace({DecodedData()},ABC,x)},-)}", "ABC", kRange, ""},
    });
}

TEST(TextCommands, ReplaceFirstOccurrence)
{
    ExpectEdits({
        {"{Replace({DecodedData()},BC,x)}", "ABCABC", NRV_OK, "AxABC"},
        {"{Replace({DecodedData()},Z,x)}", "ABC", NRV_OK, "ABC"},
        {"{Replace({DecodedData()},ABC,x)}", "ABC", kRange, ""},
        {"{Replace({DecodedData()},ABC,x)}", "AB", kRange, ""},
        {"{Replace({DecodedData()},-,)}", "A-B-D", NRV_OK, "AB-D"},
        {"{Replace({DecodedData()},,x)}", "ABC", NRV_OK, "xABC"},
        {"{Replace({DecodedData()},aa,b)}", "aaaa", NRV_OK, "baa"},
        {"{Replace({DecodedData()},C,xyz)}", "ABC", NRV_OK, "ABxyz"},
        {"{Replace({DecodedData()},,x)}", "", kRange, ""},
        {"{Replace({DecodedData()},0,)}", "2024-01-02", NRV_OK, "224-01-02"},
        {"{Replace(12345,34,-)}", "", NRV_OK, "12-5"},
        // Bytes that are not text are copied and matched as they are.
        {"{Replace({DecodedData()},{EscapeCharacter(0D0A)},|)}", "a\r\nb\r\n", NRV_OK, "a|b\r\n"},
        {"{Replace({DecodedData()},{EscapeCharacter(C3A9)},e)}", "caf\xc3\xa9!", NRV_OK, "cafe!"},
        // The search sees the text only up to its first zero byte.
        {"{Replace({DecodedData()},BC,x)}", "A\0BC"s, NRV_OK, "A\0BC"s},
        {"{Replace({DecodedData()},{EscapeCharacter(00)},x)}", "AB\0C"s, NRV_OK, "xB\0C"s},
        // A search text with a zero byte is matched up to that byte but cuts
        // its whole length, when that length still fits in the text.
        {"{Replace({DecodedData()},{EscapeCharacter(4100)},-)}", "xA\0B"s, NRV_OK, "x-B"},
        {"{Replace({DecodedData()},{EscapeCharacter(4100)},-)}", "zxA"s, NRV_OK, "zxA"},
        {"{Replace({DecodedData()},{EscapeCharacter(410000)},-)}", "xyzA"s, NRV_OK, "xyzA"},
        {"{Replace({DecodedData()},{FindFirstFromIndex({DecodedData()},-1,a,0)},x)}", "a",
         NRV_ERR_INVALID_PARAMETER, ""},
    });
}

TEST(TextCommands, SubstituteEveryByteOfTheSet)
{
    ExpectEdits({
        {"{Substitute({DecodedData()},- ,_)}", "A-B D", NRV_OK, "A_B_D"},
        {"{Substitute({DecodedData()},12,#)}", "a1b22", NRV_OK, "a#b##"},
        {"{Substitute({DecodedData()},a,yz)}", "aXa", NRV_OK, "yzXyz"},
        {"{Substitute({DecodedData()},-,)}", "A-B", NRV_OK, "AB"},
        {"{Substitute({DecodedData()},-,x)}", "", NRV_OK, ""},
        {"{Substitute({DecodedData()},,x)}", "AB", kRange, ""},
        {"{Substitute({DecodedData()},A,)}", "aAa", NRV_OK, "aa"},
        {"{Substitute({DecodedData()},--,+)}", "a-b", NRV_OK, "a+b"},
        {"{Substitute({DecodedData()},ab,ba)}", "ab", NRV_OK, "baba"},
        {"{Substitute({DecodedData()},0,)}", "2024-01-02", NRV_OK, "224-1-2"},
        // The set and the text are taken at their recorded lengths.
        {"{Substitute({DecodedData()},{EscapeCharacter(00)},-)}", "A\0B\0"s, NRV_OK, "A-B-"},
        {"{Substitute({DecodedData()},{EscapeCharacter(0D0A)},)}", "1\r\n2\n", NRV_OK, "12"},
        {"{Substitute({DecodedData()},{EscapeCharacter(FF)},{EscapeCharacter(00)})}", "\xff" "a\xff", NRV_OK,
         "\0a\0"s},
        // Every byte value is its own member: the high half is not read as
        // negative, and neighbours of members stay.
        {"{Substitute({DecodedData()},{EscapeCharacter(0080)},_)}", "\x7f\x80\x81\0\x01"s, NRV_OK,
         "\x7f_\x81_\x01"},
        {"{Substitute({DecodedData()},{EscapeCharacter(FF80)},<>)}", "a\xff\xfe\x80\x7f"s, NRV_OK,
         "a<>\xfe<>\x7f"},
        {"{Substitute({DecodedData()},{EscapeCharacter(00FF)},)}", "\xff\0x\xff"s, NRV_OK, "x"},
        {"{Substitute({DecodedData()},ab,a)}", "abcab", NRV_OK, "aacaa"},
        {"{Substitute({DecodedData()},-,+)}", "--a-", NRV_OK, "++a+"},
        {"{Substitute({DecodedData()},{EscapeCharacter(FF)},{EscapeCharacter(80)})}", "\xff\x7f\xff"s, NRV_OK,
         "\x80\x7f\x80"},
        {"{Substitute({DecodedData()},{FindFirstFromIndex({DecodedData()},-1,a,0)},x)}", "a",
         NRV_ERR_INVALID_PARAMETER, ""},
    });
}

TEST(TextCommands, EscapeCharacterTurnsHexDigitsIntoBytes)
{
    const char* const pszDecoded = "{EscapeCharacter({DecodedData()})}";
    ExpectEdits({
        {pszDecoded, "0D0A", NRV_OK, "\r\n"},
        {pszDecoded, "0d0a", NRV_OK, "\r\n"},
        {pszDecoded, "41 42", NRV_OK, "AB"},
        {pszDecoded, "41-42-43", NRV_OK, "ABC"},
        {pszDecoded, "A1B", NRV_OK, "\xa1\x0b"},
        {pszDecoded, "414", NRV_OK, "A\x04"},
        {pszDecoded, "7", NRV_OK, "\x07"},
        {pszDecoded, "0", NRV_OK, ""},
        {pszDecoded, "00", NRV_OK, "\0"s},
        {pszDecoded, "FF", NRV_OK, "\xff"},
        {pszDecoded, "4g1", NRV_OK, "\x01"},
        {pszDecoded, "1 2", NRV_OK, "\x02"},
        {pszDecoded, "7 ", NRV_OK, "\x70"},
        {pszDecoded, "8 ", NRV_OK, ""},
        {pszDecoded, "7  ", NRV_OK, ""},
        {pszDecoded, "41 7 ", NRV_OK, "A\x70"},
        {pszDecoded, "ZZ", NRV_OK, ""},
        {pszDecoded, "", kRange, ""},
        {"{EscapeCharacter(13)}", "", NRV_OK, "\x13"},
        {pszDecoded, "aF0080", NRV_OK, "\xaf\0\x80"s},
        // Zero bytes and bytes from 0x80 up are separators like any other.
        {pszDecoded, "4\0001"s, NRV_OK, "\x01"},
        {pszDecoded, "41\00042"s, NRV_OK, "AB"},
        {pszDecoded, "\xc3\xa9" "41", NRV_OK, "A"},
        {"{EscapeCharacter({FindFirstFromIndex({DecodedData()},-1,a,0)})}", "a", NRV_ERR_INVALID_PARAMETER, ""},
    });
}

TEST(TextCommands, SubstringClampsItsIndexes)
{
    const std::string T = "AB-CD-EF";
    ExpectEdits({
        {"{Substring({DecodedData()},0,2)}", T, NRV_OK, "AB"},
        {"{Substring({DecodedData()},3,5)}", T, NRV_OK, "CD"},
        {"{Substring({DecodedData()},3,-1)}", T, NRV_OK, "CD-EF"},
        {"{Substring({DecodedData()},-1,2)}", T, NRV_OK, "AB"},
        {"{Substring({DecodedData()},-2,-2)}", T, NRV_OK, T},
        {"{Substring({DecodedData()},3,3)}", T, NRV_OK, ""},
        {"{Substring({DecodedData()},5,3)}", T, NRV_OK, ""},
        {"{Substring({DecodedData()},6,20)}", T, NRV_OK, "EF"},
        {"{Substring({DecodedData()},20,30)}", T, NRV_OK, ""},
        {"{Substring({DecodedData()},-5,4)}", T, NRV_OK, ""},
        {"{Substring({DecodedData()},2,-5)}", T, NRV_OK, "-CD-EF"},
        {"{Substring({DecodedData()},0,0)}", "", NRV_OK, ""},
        {"{Substring({DecodedData()},2,5)}", T, NRV_OK, "-CD"},
        {"{Substring({DecodedData()},-2147483648,2147483647)}", T, NRV_OK, ""},
        {"{Substring({DecodedData()},7,2147483647)}", T, NRV_OK, "F"},
        {"{Substring(123456,1,3)}", "", NRV_OK, "23"},
        // Zero bytes and other bytes are counted like any other.
        {"{Substring({DecodedData()},1,4)}", "\0\x01\0\xff\0"s, NRV_OK, "\x01\0\xff"s},
        // Positions found by the find commands: between the first and last '-'.
        {"{Substring({DecodedData()},{FindFirstFromIndex({DecodedData()},-1,-,1)},"
         "{FindLastFromIndex({DecodedData()},-1,-,0)})}",
         T, NRV_OK, "CD"},
        {"{Substring({DecodedData()},{FindFirstFromIndex({DecodedData()},-1,-,1)},"
         "{FindLastFromIndex({DecodedData()},-1,-,0)})}",
         "ABCDEFGH", NRV_OK, "ABCDEFGH"},
        {"{Substring({DecodedData()},{DecodedData()},2)}", "1234", NRV_ERR_INVALID_PARAMETER, ""},
        {"{Substring({FindFirstFromIndex({DecodedData()},-1,a,0)},0,1)}", "a", NRV_ERR_INVALID_PARAMETER, ""},
    });
}

TEST(TextCommands, ExtractBetweenMarkers)
{
    ExpectEdits({
        {"{Extract({DecodedData()},[,])}", "[123]x", NRV_OK, "123"},
        {"{Extract({DecodedData()},[,])}", "[123]", NRV_OK, "123"},
        {"{Extract({DecodedData()},[,])}", "abc]d", NRV_OK, "abc"},
        {"{Extract({DecodedData()},[,])}", "[abc", NRV_OK, "abc"},
        {"{Extract({DecodedData()},[,])}", "x]y[z", NRV_OK, ""},
        {"{Extract({DecodedData()},<a>,</a>)}", "<a>x</a><a>y</a>Z", NRV_OK, "x</a><a>y"},
        {"{Extract({DecodedData()},abc,b)}", "ab", NRV_OK, "a"},
        {"{Extract({DecodedData()},AB,x)}", "AB", NRV_OK, "AB"},
        {"{Extract({DecodedData()},x,AB)}", "AB", NRV_OK, "AB"},
        {"{Extract({DecodedData()},[,])}", "", kRange, ""},
        {"{Extract({DecodedData()},,])}", "[1]x", kRange, ""},
        {"{Extract({DecodedData()},[,)}", "[1]x", kRange, ""},
        // Overlapping occurrences: the last 'aa' starts at 2.
        {"{Extract({DecodedData()},x,aa)}", "aaaa", NRV_OK, "aa"},
        {"{Extract({DecodedData()},1,2)}", "1234512", NRV_OK, "23451"},
        // A marker's first byte alone is not a match, from either end.
        {"{Extract({DecodedData()},<b,ab)}", "<a<b1ab2ac", NRV_OK, "1"},
        {"{Extract({DecodedData()},<,ab)}", "<ab1ab2ac", NRV_OK, "ab1"},
        // A marker that starts with a zero byte is found at the text's end.
        {"{Extract({DecodedData()},{EscapeCharacter(00)},])}", "a]b", NRV_OK, ""},
        {"{Extract({DecodedData()},[,{EscapeCharacter(00)})}", "[ab", NRV_OK, "ab"},
        // Markers are looked for only up to the text's first zero byte; the
        // piece may still run to the recorded end.
        {"{Extract({DecodedData()},[,])}", "[1]\0]x"s, NRV_OK, "1"},
        {"{Extract({DecodedData()},[,])}", "[1\0]x"s, NRV_OK, "1\0]x"s},
        {"{Extract({DecodedData()},[,])}", "\0[1]"s, NRV_OK, "\0[1]"s},
        {"{Extract({DecodedData()},{EscapeCharacter(02)},{EscapeCharacter(03)})}", "\x02\xc3\xa9\x03\r\n", NRV_OK,
         "\xc3\xa9"},
        {"{Extract({DecodedData()},[,{FindFirstFromIndex({DecodedData()},-1,a,0)})}", "a",
         NRV_ERR_INVALID_PARAMETER, ""},
    });
}

namespace {

// A parameter that fails with a code of its own.
class CFailingOperation : public CNrvOperation {
public:
    CFailingOperation() : CNrvOperation(nullptr) {}
    bool CheckIfParametersAreCorrect() const override { return true; }
    NRVRESULT Run(CNrvOperationResult&) const override { return NRV_ERR_SYNTAX; }
    int GetResultType() const override { return CNrvOperationResult::typeStringOrInt; }
};

// A parameter that counts its runs.
class CCountingOperation : public CNrvOperation {
public:
    explicit CCountingOperation(int* pnRuns) : CNrvOperation(nullptr), m_pnRuns(pnRuns) {}
    bool CheckIfParametersAreCorrect() const override { return true; }
    NRVRESULT Run(CNrvOperationResult& Result) const override
    {
        ++*m_pnRuns;
        return Result.WriteResult("1", 1);
    }
    int GetResultType() const override { return CNrvOperationResult::typeStringOrInt; }

private:
    int* m_pnRuns;
};

}  // namespace

// Every command with parameters: the first failure ends the run with its
// code, later parameters never run, the caller's record keeps what it held,
// and deleting the command deletes its parameters (the sanitizer checks).
TEST(Commands, FailingFirstParameterStopsTheRun)
{
    CNrvDataEditingProfile profile;
    CNrvOperationDictionary* pDictionary = CNrvOperationDictionary::GetLibraryDictionary(kNrvCommandSetsAll);
    ASSERT_NE(nullptr, pDictionary);
    size_t nCommands = 0;
    const TNrvCommandInfo* pCommands = NrvGetCommandTable(&nCommands);
    for (size_t nCommand = 0; nCommand < nCommands; ++nCommand) {
        const char* const pszCommand = pCommands[nCommand].pszName;
        if (pCommands[nCommand].nParameterCount == 0)
            continue;
        SCOPED_TRACE(pszCommand);
        CNrvOperationFactory* pFactory = pDictionary->GetValue(pszCommand, strlen(pszCommand));
        ASSERT_NE(nullptr, pFactory);
        CNrvOperation* pOperation = nullptr;
        ASSERT_EQ(NRV_OK, pFactory->CreateOperation(&profile, &pOperation));
        int nRuns = 0;
        ASSERT_GE(pOperation->GetOperationsList()->AddTail(new CFailingOperation()), 0);
        for (size_t i = 1; i < pOperation->GetParameterCount(); ++i)
            ASSERT_GE(pOperation->GetOperationsList()->AddTail(new CCountingOperation(&nRuns)), 0);
        ASSERT_TRUE(pOperation->CheckIfParametersAreCorrect());

        CNrvOperationResult result;
        ASSERT_EQ(NRV_OK, result.WriteResult("kept", 4));
        EXPECT_EQ(NRV_ERR_SYNTAX, pOperation->Run(result));
        EXPECT_EQ(0, nRuns);
        EXPECT_STREQ("kept", result.GetResultString());
        delete pOperation;  // deletes its parameters with it
    }
}

// Every hexadecimal digit, in both cases, in both halves of a byte: a digit
// misread (or read as a separator) changes the byte or the byte count.
TEST(Commands, EscapeCharacterReadsEveryHexDigitInBothCases)
{
    const std::string digits = "0123456789abcdefABCDEF";
    std::vector<std::string> expressions;  // kept alive for the rows' pointers
    std::vector<std::string> bytes;
    for (const char c : digits) {
        const int nValue = c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10;
        // "d1" is d * 16 + 1; "1d" is 16 + d.
        expressions.push_back("{EscapeCharacter(" + std::string(1, c) + "1)}");
        bytes.emplace_back(1, static_cast<char>(nValue * 16 + 1));
        expressions.push_back("{EscapeCharacter(1" + std::string(1, c) + ")}");
        bytes.emplace_back(1, static_cast<char>(16 + nValue));
    }
    std::vector<TEditRow> rows;
    for (size_t i = 0; i < expressions.size(); ++i)
        rows.push_back({expressions[i].c_str(), "", NRV_OK, bytes[i]});
    ExpectEdits(rows);
}
