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
    std::string line, carets;
    NrvShowCulprit(pszExpression, diagnostic.nOffset, diagnostic.nLength, &line, &carets);
    const size_t nMarks = carets.find_first_not_of(' ');
    if (nMarks != std::string::npos)
        carets = carets.substr(0, nMarks) + Painted(carets.substr(nMarks), kGreen, bColor);
    return message + "  " + line + "\n  " + carets + "\n";
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
