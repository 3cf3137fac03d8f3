#include "NrvTomlPositions.h"

#include <string>
#include <vector>

namespace {

// A byte that continues a UTF-8 sequence does not start a column.
bool StartsCharacter(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
}

// The reader skips a byte-order mark without counting it.
size_t FirstByte(std::string_view text)
{
    return text.substr(0, 3) == "\xEF\xBB\xBF" ? 3 : 0;
}

void AppendUtf8(unsigned long nCode, std::string* pOut)
{
    if (nCode < 0x80) {
        *pOut += static_cast<char>(nCode);
    } else if (nCode < 0x800) {
        *pOut += static_cast<char>(0xC0 | (nCode >> 6));
        *pOut += static_cast<char>(0x80 | (nCode & 0x3F));
    } else if (nCode < 0x10000) {
        *pOut += static_cast<char>(0xE0 | (nCode >> 12));
        *pOut += static_cast<char>(0x80 | ((nCode >> 6) & 0x3F));
        *pOut += static_cast<char>(0x80 | (nCode & 0x3F));
    } else {
        *pOut += static_cast<char>(0xF0 | (nCode >> 18));
        *pOut += static_cast<char>(0x80 | ((nCode >> 12) & 0x3F));
        *pOut += static_cast<char>(0x80 | ((nCode >> 6) & 0x3F));
        *pOut += static_cast<char>(0x80 | (nCode & 0x3F));
    }
}

bool ReadHex(std::string_view text, size_t nAt, size_t nDigits, unsigned long* pnCode)
{
    if (nAt + nDigits > text.size())
        return false;
    unsigned long nCode = 0;
    for (size_t i = nAt; i < nAt + nDigits; ++i) {
        const char c = text[i];
        int nDigit;
        if (c >= '0' && c <= '9')
            nDigit = c - '0';
        else if (c >= 'a' && c <= 'f')
            nDigit = c - 'a' + 10;
        else if (c >= 'A' && c <= 'F')
            nDigit = c - 'A' + 10;
        else
            return false;
        nCode = nCode * 16 + static_cast<unsigned long>(nDigit);
    }
    *pnCode = nCode;
    return true;
}

bool IsBlank(char c)
{
    return c == ' ' || c == '\t';
}

}  // namespace

size_t NrvTomlByteOffset(std::string_view text, TNrvTextPosition position)
{
    size_t nLine = 1, nColumn = 1;
    for (size_t i = FirstByte(text); i <= text.size(); ++i) {
        if (i < text.size() && !StartsCharacter(text[i]))
            continue;
        if (nLine == position.nLine && nColumn == position.nColumn)
            return i;
        if (i == text.size() || nLine > position.nLine)
            break;
        if (text[i] == '\n') {
            ++nLine;
            nColumn = 1;
        } else {
            ++nColumn;
        }
    }
    return std::string_view::npos;
}

TNrvTextPosition NrvTomlPosition(std::string_view text, size_t nOffset)
{
    TNrvTextPosition position = {1, 1};
    for (size_t i = FirstByte(text); i < nOffset && i < text.size(); ++i) {
        if (text[i] == '\n') {
            ++position.nLine;
            position.nColumn = 1;
        } else if (StartsCharacter(text[i])) {
            ++position.nColumn;
        }
    }
    return position;
}

bool NrvTomlStringByte(std::string_view text, size_t nQuote, std::string_view value, size_t nOffset, size_t* pnByte)
{
    if (nQuote >= text.size() || (text[nQuote] != '"' && text[nQuote] != '\''))
        return false;
    const char quote = text[nQuote];
    const bool bBasic = quote == '"';
    const std::string triple(3, quote);
    const bool bMultiLine = text.substr(nQuote, 3) == triple;
    size_t i = nQuote + (bMultiLine ? 3 : 1);
    // A newline right after the opening quotes is not part of the value.
    if (bMultiLine && text.substr(i, 1) == "\n")
        i += 1;
    else if (bMultiLine && text.substr(i, 2) == "\r\n")
        i += 2;

    std::string decoded;
    std::vector<size_t> source;  // the byte that wrote each decoded byte
    auto Append = [&](std::string_view bytes, size_t nFrom) {
        decoded.append(bytes.data(), bytes.size());
        source.insert(source.end(), bytes.size(), nFrom);
    };
    for (;;) {
        if (i >= text.size())
            return false;
        const char c = text[i];
        if (c == quote) {
            if (!bMultiLine)
                break;
            size_t nRun = 0;
            while (i + nRun < text.size() && text[i + nRun] == quote)
                ++nRun;
            if (nRun >= 3) {
                // Up to two quotes just before the closing ones belong to the value.
                for (size_t k = 0; k < nRun - 3; ++k)
                    Append(text.substr(i + k, 1), i + k);
                i += nRun - 3;
                break;
            }
            for (size_t k = 0; k < nRun; ++k)
                Append(text.substr(i + k, 1), i + k);
            i += nRun;
            continue;
        }
        if (!bBasic || c != '\\') {
            if (bMultiLine && c == '\r' && text.substr(i, 2) == "\r\n") {
                Append("\n", i);  // the reader keeps a line break as '\n'
                i += 2;
                continue;
            }
            Append(text.substr(i, 1), i);
            ++i;
            continue;
        }
        if (i + 1 >= text.size())
            return false;
        const char escape = text[i + 1];
        static const char kSimple[] = "b\bt\tn\nf\fr\r\"\"\\\\";
        bool bSimple = false;
        for (size_t k = 0; kSimple[k] != '\0'; k += 2) {
            if (escape == kSimple[k]) {
                Append(std::string_view(&kSimple[k + 1], 1), i);
                i += 2;
                bSimple = true;
                break;
            }
        }
        if (bSimple)
            continue;
        if (escape == 'u' || escape == 'U') {
            const size_t nDigits = escape == 'u' ? 4 : 8;
            unsigned long nCode = 0;
            if (!ReadHex(text, i + 2, nDigits, &nCode))
                return false;
            std::string bytes;
            AppendUtf8(nCode, &bytes);
            Append(bytes, i);
            i += 2 + nDigits;
            continue;
        }
        if (!bMultiLine)
            return false;
        // A backslash at the end of a line joins it to the next one, less
        // the blanks and line breaks between them.
        size_t j = i + 1;
        while (j < text.size() && IsBlank(text[j]))
            ++j;
        if (text.substr(j, 1) != "\n" && text.substr(j, 2) != "\r\n")
            return false;
        while (j < text.size() && (IsBlank(text[j]) || text[j] == '\n' || text[j] == '\r'))
            ++j;
        i = j;
    }
    if (decoded != value || nOffset > decoded.size())
        return false;
    *pnByte = nOffset < decoded.size() ? source[nOffset] : i;
    return true;
}
