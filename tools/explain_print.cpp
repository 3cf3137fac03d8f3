#include "explain_print.h"

#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <vector>

#include "NrvEscapes.h"
#include "NrvShownBytes.h"

namespace {

const char* const kBold = "\033[1m";
const char* const kRed = "\033[1;31m";
const char* const kGreen = "\033[1;32m";
const char* const kReset = "\033[0m";

// The widest the expression is shown, and how much of it before the range
// when it must be cut.
const size_t kShownWidth = 100;
const size_t kContextBefore = 30;

std::string Painted(const std::string& text, const char* pszColor, bool bColor)
{
    return bColor ? pszColor + text + kReset : text;
}

// Longest text shown whole in a tree; longer ones (a scan of megabytes, a
// text a nested Substitute grew) are cut, saying how long they are, so a
// tree stays readable and its size follows the expression, not the data.
const size_t kLongestShown = 200;

std::string Quoted(const char* pData, size_t nLength)
{
    std::string text = "\"";
    NrvAppendEscaped(pData, nLength < kLongestShown ? nLength : kLongestShown, &text);
    text += "\"";
    if (nLength > kLongestShown)
        text += "... (" + std::to_string(nLength) + " bytes)";
    return text;
}

std::string Quoted(const std::string& text)
{
    return Quoted(text.data(), text.size());
}

// A sentence of the library's, as it may reach a terminal: it quotes what
// was written, and a name it suggests is written as it was.
std::string Said(const std::string& sentence)
{
    return NrvShown(sentence, kNrvBytesMessage);
}

// "(NRV_ERR_OUT_OF_RANGE, -43)".
std::string CodeSuffix(NRVRESULT nCode)
{
    const char* pszName = NrvResultCodeName(nCode);
    return std::string("(") + (pszName != nullptr ? pszName : "unknown code") + ", " +
           std::to_string(static_cast<long long>(nCode)) + ")";
}

// A node's label and what its run gave.
void AppendNode(const TNrvExplainNode& node, size_t nDepth, const TNrvExplanation& explanation, bool bColor,
                std::string* pOut)
{
    pOut->append(2 * (nDepth + 1), ' ');
    // A command's name is the table's; an integer literal's is as written (blanks included).
    *pOut += node.kind == kNrvNodeText ? Quoted(node.name) : NrvShown(node.name, kNrvBytesMessage);
    if (!node.bRun) {
        *pOut += " (not run)";
    } else if (node.nCode < 0) {
        bool bParametersRan = true;
        for (const TNrvExplainNode& parameter : node.params)
            bParametersRan = bParametersRan && parameter.bRun && parameter.nCode >= 0;
        // The command whose own Run failed says why; its callers only pass the code on.
        if (bParametersRan && node.nOffset <= explanation.failure.nOffset &&
            explanation.failure.nOffset < node.nOffset + node.nLength)
            *pOut += " => " + Painted("FAILED", kRed, bColor) + ": " + Said(explanation.failure.message) + " " +
                     CodeSuffix(node.nCode);
        else
            *pOut += " => failed " + CodeSuffix(node.nCode);
    } else {
        *pOut += " => ";
        *pOut += node.bInteger ? std::to_string(node.nInteger) : Quoted(node.value.data(), node.nValueLength);
    }
    *pOut += '\n';
    for (const TNrvExplainNode& parameter : node.params)
        AppendNode(parameter, nDepth + 1, explanation, bColor, pOut);
    // A GS1 command's text, element by element: "AI (17) EXPIRY => "141120"".
    for (const TNrvExplainGs1Element& element : node.gs1) {
        pOut->append(2 * (nDepth + 2), ' ');
        *pOut += "AI (" + element.ai + ") " + Said(element.pszTitle) + " => " + Quoted(element.data) + "\n";
    }
    if (node.bGs1More)
        pOut->append(2 * (nDepth + 2), ' ') += "AI ... (more elements)\n";
}

// The bytes [*pnFirst, *pnLast) of an expression to show around the byte at
// nOffset: all of them when they fit, otherwise some context before it and
// as much after as fits.
void ShownWindow(const std::vector<std::string>& shown, size_t nOffset, size_t* pnFirst, size_t* pnLast)
{
    size_t nFirst = nOffset, nWidth = 0;
    while (nFirst > 0 && nWidth + shown[nFirst - 1].size() <= kContextBefore)
        nWidth += shown[--nFirst].size();
    size_t nTotal = 0;
    for (const std::string& piece : shown)
        nTotal += piece.size();
    if (nTotal <= kShownWidth)
        nFirst = 0;
    size_t nLast = nFirst;
    for (size_t nUsed = 0;
         nLast < shown.size() && (nTotal <= kShownWidth || nUsed + shown[nLast].size() <= kShownWidth); ++nLast)
        nUsed += shown[nLast].size();
    *pnFirst = nFirst;
    *pnLast = nLast;
}

}  // namespace

bool UseColor(EColor color, int fd)
{
    if (color != kColorAuto)
        return color == kColorAlways;
    const char* pszNoColor = getenv("NO_COLOR");
    if (pszNoColor != nullptr && pszNoColor[0] != '\0')
        return false;
    const char* pszTerm = getenv("TERM");
    return isatty(fd) != 0 && !(pszTerm != nullptr && strcmp(pszTerm, "dumb") == 0);
}

std::string FormatParseError(const char* pszExpression, const TNrvDiagnostic& diagnostic, bool bColor)
{
    std::string message = Painted("nrv-edit:", kBold, bColor) + " " + Painted("error:", kRed, bColor) + " " +
                          Said(diagnostic.message) + " " + CodeSuffix(diagnostic.nCode) + "\n";
    // Each byte as shown, so that the carets fall under what is shown.
    const size_t nLength = strlen(pszExpression);
    std::vector<std::string> shown(nLength);
    for (size_t i = 0; i < nLength; ++i)
        NrvAppendEscaped(pszExpression + i, 1, &shown[i]);
    const size_t nOffset = std::min(diagnostic.nOffset, nLength);
    const size_t nEnd = std::min(nOffset + diagnostic.nLength, nLength);
    size_t nFirst = 0, nLast = 0;
    ShownWindow(shown, nOffset, &nFirst, &nLast);

    std::string line = "  ", carets = "  ";
    if (nFirst > 0) {
        line += "...";
        carets += "   ";
    }
    for (size_t i = nFirst; i < nLast; ++i) {
        line += shown[i];
        if (i == nOffset)
            carets += '^';  // also for an empty range, where it lies
        carets.append(shown[i].size() - (i == nOffset ? 1 : 0), i >= nOffset && i < nEnd ? '~' : ' ');
    }
    if (nOffset == nLast)  // an empty range at the end of what is shown
        carets += '^';
    if (nLast < nLength)
        line += "...";
    while (!carets.empty() && carets.back() == ' ')
        carets.pop_back();
    const size_t nMarks = carets.find_first_not_of(' ');
    if (nMarks != std::string::npos)
        carets = carets.substr(0, nMarks) + Painted(carets.substr(nMarks), kGreen, bColor);
    return message + line + "\n" + carets + "\n";
}

std::string FormatScanFailure(unsigned long long nScan, const TNrvDiagnostic& failure, const std::string& context)
{
    std::string message = "nrv-edit: scan " + std::to_string(nScan) + ": ";
    if (!context.empty())
        message += context + ": ";
    if (!failure.command.empty())
        message += failure.command + ": ";
    return message + Said(failure.message) + " " + CodeSuffix(failure.nCode) + "\n";
}

std::string FormatNotTriggered(unsigned long long nScan, const char* pData, size_t nLength)
{
    return "scan " + std::to_string(nScan) + ": " + Quoted(pData, nLength) + " not triggered, left unchanged\n";
}

std::string FormatExplanation(unsigned long long nScan, const char* pData, size_t nLength,
                              const TNrvExplanation& explanation, bool bColor)
{
    std::string text = "scan " + std::to_string(nScan) + ": " + Quoted(pData, nLength);
    if (explanation.nCode < 0)
        text += " => " + Painted("failed", kRed, bColor) + ", left unchanged " + CodeSuffix(explanation.nCode) + "\n";
    else
        text += " => " + Quoted(explanation.output) + "\n";
    for (const TNrvExplainNode& node : explanation.nodes)
        AppendNode(node, 0, explanation, bColor, &text);
    return text;
}
