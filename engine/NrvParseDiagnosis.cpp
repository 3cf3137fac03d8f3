// The parse diagnosis is made from the parser's own work: the recorder,
// handed to the parse, hears where each operation was cut from and where
// the parse stopped.
#include "NrvParseDiagnosis.h"

#include <algorithm>
#include <cstring>

#include "NrvCommand.h"
#include "NrvCommandTable.h"
#include "NrvDataEditingProfile.h"
#include "NrvEscapes.h"
#include "NrvOperationBase.h"
#include "NrvParseRecorder.h"
#include "NrvSuggest.h"

namespace {

constexpr char kOpen = CNrvDataEditingProfile::kDelimiterOpen;
constexpr char kClose = CNrvDataEditingProfile::kDelimiterClose;

// The '{' just before a piece or a name the parser cut (always after one;
// clamped all the same, so an offset never wraps).
size_t BraceBefore(size_t nOffset)
{
    return std::max<size_t>(nOffset, 1) - 1;
}

std::string Quoted(const std::string& text)
{
    std::string quoted = "\"";
    NrvAppendEscaped(text.data(), text.size(), &quoted);
    return quoted + "\"";
}

std::string Plural(size_t nCount, const char* pszOne, const char* pszMany)
{
    return std::to_string(nCount) + " " + (nCount == 1 ? pszOne : pszMany);
}

// "2 parameters (text, count)", "1 parameter (hex)", "no parameters".
std::string TakesWhat(const TNrvCommandInfo& row)
{
    if (row.nParameterCount == 0)
        return "no parameters";
    std::string names;
    for (size_t i = 0; i < row.nParameterCount; ++i)
        names += std::string(i != 0 ? ", " : "") + row.pParameters[i].pszName;
    return Plural(row.nParameterCount, "parameter", "parameters") + " (" + names + ")";
}

// The command a mistyped name most likely meant among those the profile
// knows, or null.
const char* SuggestCommand(const std::string& name, unsigned nCommandSets)
{
    size_t nCount = 0;
    const TNrvCommandInfo* pCommands = NrvGetCommandTable(&nCount);
    std::vector<const char*> names;
    for (size_t i = 0; i < nCount; ++i)
        if (NrvCommandIsEnabled(pCommands[i], nCommandSets))
            names.push_back(pCommands[i].pszName);
    return NrvSuggest(name, names.data(), names.size());
}

}  // namespace

// An operation's parameters in order. GetNext fails only on a null
// position, which the loop never passes.
std::vector<CNrvOperation*> NrvParametersOf(CNrvOperation* pOperation)
{
    std::vector<CNrvOperation*> parameters;
    const CNrvList* pList = pOperation->GetOperationsList();
    for (TNrvPosition position = pList->GetHeadPosition(); position != nullptr;) {
        void* pData = nullptr;
        pList->GetNext(&position, &pData);
        parameters.push_back(static_cast<CNrvOperation*>(pData));
    }
    return parameters;
}

CNrvParseRecorder::CNrvParseRecorder(const char* pszExpression, unsigned nCommandSets)
    : m_pszExpression(pszExpression), m_nLength(strlen(pszExpression)), m_nCommandSets(nCommandSets)
{
}

void CNrvParseRecorder::OnCall(const CNrvParsingString& name, const CNrvParsingString& parameters,
                               const CNrvParsingString& rest)
{
    m_Call.name = RangeOf(name);
    m_Call.parameters = RangeOf(parameters);
    // The piece runs from just after its '{' to the end of what the
    // call left; its '}' follows when the expression has one there.
    const size_t nStart = BraceBefore(m_Call.name.nOffset);
    const TNrvTextRange restRange = RangeOf(rest);
    size_t nEnd = restRange.nOffset + restRange.nLength;
    if (nEnd < m_nLength && m_pszExpression[nEnd] == kClose)
        ++nEnd;
    m_Call.range = {nStart, nEnd - nStart};
}

void CNrvParseRecorder::OnCommand(CNrvOperation* pOperation, size_t nDepth)
{
    TNrvNodePlace node = m_Call;
    node.pOperation = pOperation;
    node.bCommand = true;
    node.nDepth = nDepth;
    Add(node);
}

void CNrvParseRecorder::OnLiteral(CNrvOperation* pOperation, const CNrvParsingString& text, size_t nDepth)
{
    TNrvNodePlace node;
    node.pOperation = pOperation;
    node.nDepth = nDepth;
    node.range = RangeOf(text);
    Add(node);
}

void CNrvParseRecorder::OnParameter(CNrvOperation* pOwner, const CNrvParsingString& text)
{
    m_Nodes[m_Index.at(pOwner)].parameterTexts.push_back(RangeOf(text));
}

// The parser reports every failure it stops on, with one of these codes.
void CNrvParseRecorder::OnFailure(NRVRESULT nCode, const CNrvParsingString& at, CNrvOperation* pOperation,
                                  bool bTooDeep)
{
    m_Failure = TNrvDiagnostic();
    m_Failure.nCode = nCode;
    const TNrvTextRange range = RangeOf(at);
    switch (nCode) {
    case NRV_ERR_UNKNOWN_COMMAND: DescribeUnknown(range); break;
    case NRV_ERR_PARAMETER_COUNT: DescribeCount(range, pOperation); break;
    case NRV_ERR_INVALID_PARAMETER: DescribeMisfit(pOperation); break;
    default:  // NRV_ERR_SYNTAX, an unpaired '{' or one nested too deep
        // Both point at the '{' just before the piece.
        SetRange(BraceBefore(range.nOffset), 1);
        m_Failure.message = bTooDeep ? "commands are nested more than " +
                                           std::to_string(kNrvMaximumNestingDepth) +
                                           " deep: this { opens one level too many"
                                     : "this { has no matching }";
        break;
    }
}

void CNrvParseRecorder::Add(const TNrvNodePlace& node)
{
    m_Index[node.pOperation] = m_Nodes.size();
    m_Nodes.push_back(node);
}

// The window's place in the expression; a window that is not on it
// (none is, the parser cuts every window from the text) reads as 0.
TNrvTextRange CNrvParseRecorder::RangeOf(const CNrvParsingString& window) const
{
    const char* p = window.GetString();
    if (p < m_pszExpression || p > m_pszExpression + m_nLength)
        return TNrvTextRange();
    const size_t nOffset = static_cast<size_t>(p - m_pszExpression);
    return {nOffset, std::min(window.GetLength(), m_nLength - nOffset)};
}

void CNrvParseRecorder::SetRange(size_t nOffset, size_t nLength)
{
    m_Failure.nOffset = nOffset;
    m_Failure.nLength = nLength;
}

void CNrvParseRecorder::DescribeUnknown(const TNrvTextRange& name)
{
    const std::string written = Text(name);
    if (written.empty()) {
        SetRange(BraceBefore(name.nOffset), 1);
        m_Failure.message = "a command name is missing after this {";
        return;
    }
    SetRange(name.nOffset, name.nLength);
    m_Failure.message = "unknown command " + Quoted(written);
    const TNrvCommandInfo* pRow = NrvFindCommandInfo(written.data(), written.size());
    if (pRow != nullptr) {
        // Only an extension's command can be in the table and unknown here.
        m_Failure.message += ": " + written + " is a command of the " + NrvCommandSetName(pRow->nSet) +
                             " extension set, which this profile does not enable (its host enables it with "
                             "EnableCommandSets; nrv-edit, rules files and the playground do unless they are "
                             "told to keep the seed commands only)";
        return;
    }
    const size_t nFirst = written.find_first_not_of(' ');
    const size_t nLast = written.find_last_not_of(' ');
    const std::string trimmed = nFirst == std::string::npos ? "" : written.substr(nFirst, nLast - nFirst + 1);
    if (trimmed != written && NrvFindCommandInfo(trimmed.data(), trimmed.size()) != nullptr) {
        m_Failure.message += ": spaces are part of a name; did you mean " + trimmed + "?";
        return;
    }
    const char* pszSuggestion = SuggestCommand(written, m_nCommandSets);
    if (pszSuggestion != nullptr)
        m_Failure.message += "; did you mean " + std::string(pszSuggestion) + "?";
}

void CNrvParseRecorder::DescribeCount(const TNrvTextRange& name, CNrvOperation* pOperation)
{
    SetRange(name.nOffset, name.nLength);
    m_Failure.command = Text(name);
    const CNrvCommandOperation* pCommand = dynamic_cast<const CNrvCommandOperation*>(pOperation);
    const size_t nWritten = CNrvOperation::CountWrittenParameters(ParametersWindow(), kOpen, kClose);
    const std::string written = nWritten == 0 ? "none is written" : nWritten == 1 ? "1 is written"
                                                                  : std::to_string(nWritten) + " are written";
    if (pCommand == nullptr) {
        m_Failure.message = m_Failure.command + " takes " + std::to_string(pOperation->GetParameterCount()) +
                            " parameters, but " + written;
        return;
    }
    m_Failure.message = m_Failure.command + " takes " + TakesWhat(pCommand->GetCommandInfo()) + ", but " + written;
    const std::string parameters = Text(m_Call.parameters);
    const size_t nFirst = parameters.find_first_not_of(' ');
    if (nFirst != std::string::npos && parameters[nFirst] == ',')
        m_Failure.message += " (a comma before the first parameter does not count)";
}

// The parameter text of the last call, as a window on the expression.
CNrvParsingString CNrvParseRecorder::ParametersWindow() const
{
    CNrvParsingString whole(m_pszExpression);
    whole.ExtractBeforeIndex(m_Call.parameters.nOffset);
    return whole.ExtractBeforeIndex(m_Call.parameters.nLength);
}

// What an operation is, for a sentence: a command by its name, a literal
// by its text.
std::string CNrvParseRecorder::Describe(const CNrvOperation* pOperation) const
{
    const TNrvNodePlace& node = NodeOf(pOperation);
    if (node.bCommand)
        return Text(node.name);
    return node.range.nLength == 0 ? "an empty text" : Quoted(Text(node.range));
}

void CNrvParseRecorder::DescribeMisfit(CNrvOperation* pOperation)
{
    const CNrvCommandOperation* pCommand = dynamic_cast<const CNrvCommandOperation*>(pOperation);
    if (pCommand == nullptr) {
        m_Failure.message = "the parameters do not fit the command";
        return;
    }
    const TNrvNodePlace& node = NodeOf(pOperation);
    const TNrvCommandInfo& row = pCommand->GetCommandInfo();
    const std::string command = Text(node.name);
    m_Failure.command = command;
    SetRange(node.parameters.nOffset, node.parameters.nLength);

    const std::vector<CNrvOperation*> parameters = NrvParametersOf(pOperation);
    if (row.nParameterCount == 0) {
        m_Failure.message = command + " takes no parameters, but " + Quoted(Text(node.parameters)) +
                            " is written between its parentheses";
        return;
    }
    // The count check passed, so the texts differ from it only where a
    // comma first opened an empty parameter that the count skips.
    if (node.parameterTexts.size() != row.nParameterCount) {
        m_Failure.message = command + " takes " + TakesWhat(row) + ", but " + Quoted(Text(node.parameters)) +
                            " is cut into " + std::to_string(node.parameterTexts.size()) +
                            " at its commas (a comma first opens an empty parameter)";
        return;
    }
    // A parameter text that gave more than one operation.
    for (size_t i = 0; i < node.parameterTexts.size(); ++i) {
        const TNrvTextRange& text = node.parameterTexts[i];
        std::vector<std::string> pieces;
        for (const CNrvOperation* pParameter : parameters) {
            const TNrvNodePlace& piece = NodeOf(pParameter);
            if (piece.range.nOffset >= text.nOffset &&
                piece.range.nOffset + piece.range.nLength <= text.nOffset + text.nLength)
                pieces.push_back(Describe(pParameter));
        }
        if (pieces.size() < 2)
            continue;
        SetRange(text.nOffset, text.nLength);
        std::string list;
        for (size_t j = 0; j < pieces.size(); ++j)
            list += (j == 0 ? "" : j + 1 == pieces.size() ? " and " : ", ") + pieces[j];
        m_Failure.message = "parameter " + std::to_string(i + 1) + " (" + row.pParameters[i].pszName + ") of " +
                            command + " is written as " + std::to_string(pieces.size()) + " pieces, " + list +
                            "; a parameter is one text, one number or one command";
        return;
    }
    // One operation per text from here on, as many as the command takes.
    for (size_t i = 0; i < parameters.size(); ++i) {
        const CNrvOperation* pParameter = parameters[i];
        const bool bNumber = row.pParameters[i].nKind == kNrvKindNumber;
        if (bNumber ? pParameter->CanResultBeAnInteger() : pParameter->CanResultBeAString())
            continue;
        SetRange(node.parameterTexts[i].nOffset, node.parameterTexts[i].nLength);
        const TNrvNodePlace& piece = NodeOf(pParameter);
        std::string why = Describe(pParameter);
        // A literal can always be a text: one that misfits is in a number's place.
        if (piece.bCommand)
            why += bNumber ? " gives a text" : " gives a number";
        else if (piece.range.nLength == 0)
            why = "it is empty";
        else if (LooksLikeANumber(piece))
            why += " does not fit in 32 bits";
        else
            why += " is a text";
        m_Failure.message = "parameter " + std::to_string(i + 1) + " (" + row.pParameters[i].pszName + ") of " +
                            command + " must be a " + (bNumber ? "number" : "text") + ", but " + why;
        return;
    }
    m_Failure.message = "the parameters do not fit " + command;
}

// Digits, perhaps with a sign and spaces: a number too large to be one.
bool CNrvParseRecorder::LooksLikeANumber(const TNrvNodePlace& node) const
{
    const std::string text = Text(node.range);
    const size_t nFirst = text.find_first_not_of(" \t+-");
    return nFirst != std::string::npos && text.find_first_not_of("0123456789 \t", nFirst) == std::string::npos;
}

TNrvDiagnostic NrvDiagnoseParse(const char* pszExpression, unsigned nCommandSets)
{
    if (pszExpression == nullptr) {
        TNrvDiagnostic diagnostic;
        diagnostic.nCode = NRV_ERR_INVALID_PARAMETER;
        diagnostic.message = "no expression was given";
        return diagnostic;
    }
    CNrvDataEditingProfile profile;
    if (profile.EnableCommandSets(nCommandSets) < 0) {
        TNrvDiagnostic diagnostic;
        diagnostic.nCode = NRV_ERR_INVALID_PARAMETER;
        diagnostic.message = "no such command set: " + std::to_string(nCommandSets);
        return diagnostic;
    }
    CNrvParseRecorder recorder(pszExpression, nCommandSets);
    return profile.Parse(pszExpression, &recorder) >= 0 ? TNrvDiagnostic() : recorder.Failure();
}
