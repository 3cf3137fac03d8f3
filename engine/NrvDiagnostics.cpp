// Diagnostics are made from the engine's own work: a parse observer records
// where the parser cut each operation from and where it stopped, and an
// explanation runs the parsed operations themselves.
#include "NrvDiagnostics.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <unordered_map>

#include "NrvCommand.h"
#include "NrvCommandTable.h"
#include "NrvDataEditingProfile.h"
#include "NrvEscapes.h"
#include "NrvOperationBase.h"
#include "NrvParseObserver.h"

namespace {

struct SCode {
    NRVRESULT value;
    const char* pszName;
    const char* pszMeaning;
};

const SCode kCodes[] = {
    {NRV_OK, "NRV_OK", "success"},
    {NRV_OK_NOT_TRIGGERED, "NRV_OK_NOT_TRIGGERED", "a trigger condition did not hold, the scan is left alone"},
    {NRV_ERR_INVALID_PARAMETER, "NRV_ERR_INVALID_PARAMETER",
     "a parameter of the wrong kind (text where a number is needed, or the reverse) or an invalid argument"},
    {NRV_ERR_OUT_OF_RANGE, "NRV_ERR_OUT_OF_RANGE",
     "a command's input does not fit what it must do (count or index past the end, empty text)"},
    {NRV_ERR_SYNTAX, "NRV_ERR_SYNTAX", "a '{' or '}' without its partner, or commands nested too deeply"},
    {NRV_ERR_TEXT_LIMIT, "NRV_ERR_TEXT_LIMIT", "a result would be larger than the profile's largest text"},
    {NRV_ERR_WORK_LIMIT, "NRV_ERR_WORK_LIMIT", "the edit used up its work budget"},
    {NRV_ERR_TEXT_TOO_LONG, "NRV_ERR_TEXT_TOO_LONG",
     "a text of 2 GiB or more reached a command whose positions travel in 32 bits"},
    {NRV_ERR_UNKNOWN_COMMAND, "NRV_ERR_UNKNOWN_COMMAND", "a name that is not a command"},
    {NRV_ERR_PARAMETER_COUNT, "NRV_ERR_PARAMETER_COUNT",
     "the number of parameters written differs from what the command takes"},
};

const SCode* FindCode(NRVRESULT nCode)
{
    for (const SCode& code : kCodes) {
        if (code.value == nCode)
            return &code;
    }
    return nullptr;
}

constexpr char kOpen = CNrvDataEditingProfile::kDelimiterOpen;
constexpr char kClose = CNrvDataEditingProfile::kDelimiterClose;

struct SRange {
    size_t nOffset = 0;
    size_t nLength = 0;
};

// The '{' just before a piece or a name the parser cut (always after one;
// clamped all the same, so an offset never wraps).
size_t BraceBefore(size_t nOffset)
{
    return std::max<size_t>(nOffset, 1) - 1;
}

// Where the parser took one operation from.
struct SNode {
    CNrvOperation* pOperation = nullptr;
    bool bCommand = false;
    size_t nDepth = 0;
    SRange range;       // a literal's text; a command from its '{' through its '}'
    SRange name;        // a command's name as written
    SRange parameters;  // the text between a command's parentheses
    std::vector<SRange> parameterTexts;  // that text as cut at its commas
};

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

// Edits needed to turn one name into the other, a swap of two neighbours
// counting as one.
size_t EditDistance(const std::string& a, const std::string& b)
{
    std::vector<std::vector<size_t>> d(a.size() + 1, std::vector<size_t>(b.size() + 1));
    for (size_t i = 0; i <= a.size(); ++i)
        d[i][0] = i;
    for (size_t j = 0; j <= b.size(); ++j)
        d[0][j] = j;
    for (size_t i = 1; i <= a.size(); ++i) {
        for (size_t j = 1; j <= b.size(); ++j) {
            const size_t nCost = a[i - 1] == b[j - 1] ? 0 : 1;
            d[i][j] = std::min({d[i - 1][j] + 1, d[i][j - 1] + 1, d[i - 1][j - 1] + nCost});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                d[i][j] = std::min(d[i][j], d[i - 2][j - 2] + 1);
        }
    }
    return d[a.size()][b.size()];
}

bool EqualIgnoringCase(const std::string& a, const char* pszB)
{
    if (a.size() != strlen(pszB))
        return false;
    for (size_t i = 0; i < a.size(); ++i) {
        if (tolower(static_cast<unsigned char>(a[i])) != tolower(static_cast<unsigned char>(pszB[i])))
            return false;
    }
    return true;
}

// The command a mistyped name most likely meant: the same name in another
// case, or one within two edits (the nearest, the first in the table on a
// tie); null when none is that close.
const char* Suggest(const std::string& name)
{
    size_t nCount = 0;
    const TNrvCommandInfo* pCommands = NrvGetCommandTable(&nCount);
    for (size_t i = 0; i < nCount; ++i) {
        if (EqualIgnoringCase(name, pCommands[i].pszName))
            return pCommands[i].pszName;
    }
    const char* pszBest = nullptr;
    size_t nBest = 3;
    for (size_t i = 0; i < nCount; ++i) {
        const size_t nDistance = EditDistance(name, pCommands[i].pszName);
        if (nDistance < nBest) {
            nBest = nDistance;
            pszBest = pCommands[i].pszName;
        }
    }
    return pszBest;
}

// An operation's parameters in order. GetNext fails only on a null
// position, which the loop never passes.
std::vector<CNrvOperation*> ParametersOf(CNrvOperation* pOperation)
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

// Listens to one parse of one expression and keeps where everything lies
// and, when the parse fails, the diagnostic of the failure.
class CRecorder : public CNrvParseObserver {
public:
    explicit CRecorder(const char* pszExpression)
        : m_pszExpression(pszExpression), m_nLength(strlen(pszExpression)), m_pPrevious(NrvSetParseObserver(this))
    {
    }
    ~CRecorder() override { NrvSetParseObserver(m_pPrevious); }
    CRecorder(const CRecorder&) = delete;
    CRecorder& operator=(const CRecorder&) = delete;

    void OnCall(const CNrvParsingString& name, const CNrvParsingString& parameters,
                const CNrvParsingString& rest) override
    {
        m_Call.name = RangeOf(name);
        m_Call.parameters = RangeOf(parameters);
        // The piece runs from just after its '{' to the end of what the
        // call left; its '}' follows when the expression has one there.
        const size_t nStart = BraceBefore(m_Call.name.nOffset);
        const SRange restRange = RangeOf(rest);
        size_t nEnd = restRange.nOffset + restRange.nLength;
        if (nEnd < m_nLength && m_pszExpression[nEnd] == kClose)
            ++nEnd;
        m_Call.range = {nStart, nEnd - nStart};
    }

    void OnCommand(CNrvOperation* pOperation, size_t nDepth) override
    {
        SNode node = m_Call;
        node.pOperation = pOperation;
        node.bCommand = true;
        node.nDepth = nDepth;
        Add(node);
    }

    void OnLiteral(CNrvOperation* pOperation, const CNrvParsingString& text, size_t nDepth) override
    {
        SNode node;
        node.pOperation = pOperation;
        node.nDepth = nDepth;
        node.range = RangeOf(text);
        Add(node);
    }

    void OnParameter(CNrvOperation* pOwner, const CNrvParsingString& text) override
    {
        m_Nodes[m_Index.at(pOwner)].parameterTexts.push_back(RangeOf(text));
    }

    // The parser reports every failure it stops on, with one of these codes.
    void OnFailure(NRVRESULT nCode, const CNrvParsingString& at, CNrvOperation* pOperation, bool bTooDeep) override
    {
        m_Failure = TNrvDiagnostic();
        m_Failure.nCode = nCode;
        const SRange range = RangeOf(at);
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

    const TNrvDiagnostic& Failure() const { return m_Failure; }
    const std::vector<SNode>& Nodes() const { return m_Nodes; }
    // The parser announces every operation it puts in a tree, so each one
    // met in a parsed tree has its node.
    const SNode& NodeOf(const CNrvOperation* pOperation) const { return m_Nodes[m_Index.at(pOperation)]; }
    std::string Text(const SRange& range) const { return std::string(m_pszExpression + range.nOffset, range.nLength); }

private:
    void Add(const SNode& node)
    {
        m_Index[node.pOperation] = m_Nodes.size();
        m_Nodes.push_back(node);
    }

    // The window's place in the expression; a window that is not on it
    // (none is, the parser cuts every window from the text) reads as 0.
    SRange RangeOf(const CNrvParsingString& window) const
    {
        const char* p = window.GetString();
        if (p < m_pszExpression || p > m_pszExpression + m_nLength)
            return SRange();
        const size_t nOffset = static_cast<size_t>(p - m_pszExpression);
        return {nOffset, std::min(window.GetLength(), m_nLength - nOffset)};
    }

    void SetRange(size_t nOffset, size_t nLength)
    {
        m_Failure.nOffset = nOffset;
        m_Failure.nLength = nLength;
    }

    void DescribeUnknown(const SRange& name)
    {
        const std::string written = Text(name);
        if (written.empty()) {
            SetRange(BraceBefore(name.nOffset), 1);
            m_Failure.message = "a command name is missing after this {";
            return;
        }
        SetRange(name.nOffset, name.nLength);
        m_Failure.message = "unknown command " + Quoted(written);
        const size_t nFirst = written.find_first_not_of(' ');
        const size_t nLast = written.find_last_not_of(' ');
        const std::string trimmed = nFirst == std::string::npos ? "" : written.substr(nFirst, nLast - nFirst + 1);
        if (trimmed != written && NrvFindCommandInfo(trimmed.data(), trimmed.size()) != nullptr) {
            m_Failure.message += ": spaces are part of a name; did you mean " + trimmed + "?";
            return;
        }
        const char* pszSuggestion = Suggest(written);
        if (pszSuggestion != nullptr)
            m_Failure.message += "; did you mean " + std::string(pszSuggestion) + "?";
    }

    void DescribeCount(const SRange& name, CNrvOperation* pOperation)
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
    CNrvParsingString ParametersWindow() const
    {
        CNrvParsingString whole(m_pszExpression);
        whole.ExtractBeforeIndex(m_Call.parameters.nOffset);
        return whole.ExtractBeforeIndex(m_Call.parameters.nLength);
    }

    // What an operation is, for a sentence: a command by its name, a literal
    // by its text.
    std::string Describe(const CNrvOperation* pOperation) const
    {
        const SNode& node = NodeOf(pOperation);
        if (node.bCommand)
            return Text(node.name);
        return node.range.nLength == 0 ? "an empty text" : Quoted(Text(node.range));
    }

    void DescribeMisfit(CNrvOperation* pOperation)
    {
        const CNrvCommandOperation* pCommand = dynamic_cast<const CNrvCommandOperation*>(pOperation);
        if (pCommand == nullptr) {
            m_Failure.message = "the parameters do not fit the command";
            return;
        }
        const SNode& node = NodeOf(pOperation);
        const TNrvCommandInfo& row = pCommand->GetCommandInfo();
        const std::string command = Text(node.name);
        m_Failure.command = command;
        SetRange(node.parameters.nOffset, node.parameters.nLength);

        const std::vector<CNrvOperation*> parameters = ParametersOf(pOperation);
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
            const SRange& text = node.parameterTexts[i];
            std::vector<std::string> pieces;
            for (const CNrvOperation* pParameter : parameters) {
                const SNode& piece = NodeOf(pParameter);
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
            const bool bNumber = row.pParameters[i].nKind == CNrvOperationResult::typeInt;
            if (bNumber ? pParameter->CanResultBeAnInteger() : pParameter->CanResultBeAString())
                continue;
            SetRange(node.parameterTexts[i].nOffset, node.parameterTexts[i].nLength);
            const SNode& piece = NodeOf(pParameter);
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
    bool LooksLikeANumber(const SNode& node) const
    {
        const std::string text = Text(node.range);
        const size_t nFirst = text.find_first_not_of(" \t+-");
        return nFirst != std::string::npos && text.find_first_not_of("0123456789 \t", nFirst) == std::string::npos;
    }

    const char* m_pszExpression;
    size_t m_nLength;
    CNrvParseObserver* m_pPrevious;
    SNode m_Call;
    std::vector<SNode> m_Nodes;
    std::unordered_map<const CNrvOperation*, size_t> m_Index;
    TNrvDiagnostic m_Failure;
};

// The outcome of a parse as a diagnostic: the parser reported the failure
// it stopped on to the recorder.
TNrvDiagnostic ParseDiagnostic(NRVRESULT nCode, const CRecorder& recorder)
{
    return nCode >= 0 ? TNrvDiagnostic() : recorder.Failure();
}

// Runs the parsed operations one node at a time, the way Run runs them: a
// command's parameters in order until one fails, then the command itself.
class CExplainer {
public:
    CExplainer(const CRecorder& recorder, CNrvDataEditingProfile* pProfile, TNrvExplanation* pExplanation)
        : m_Recorder(recorder), m_pProfile(pProfile), m_pExplanation(pExplanation)
    {
    }

    void Explain(CNrvOperation* pOperation, bool bRun, TNrvExplainNode* pNode, CNrvOperationResult* pValue)
    {
        const SNode& info = m_Recorder.NodeOf(pOperation);
        pNode->nOffset = info.range.nOffset;
        pNode->nLength = info.range.nLength;
        pNode->name = m_Recorder.Text(info.bCommand ? info.name : info.range);
        pNode->kind = info.bCommand ? kNrvNodeCommand
                      : pOperation->GetResultType() == CNrvOperationResult::typeStringOrInt ? kNrvNodeInteger
                                                                                             : kNrvNodeText;
        pNode->bRun = bRun;
        if (bRun) {
            // A node's run repeats part of what the edit ran, so it gets
            // the edit's whole budget again.
            m_pProfile->RestartWorkBudget();
            pNode->nCode = pOperation->Run(*pValue);
            if (pNode->nCode >= 0)
                Record(*pValue, pNode);
        }

        const std::vector<CNrvOperation*> operations = ParametersOf(pOperation);
        std::vector<CNrvOperationResult> parameters(operations.size());
        bool bRunNext = bRun;
        for (size_t i = 0; i < operations.size(); ++i) {
            pNode->params.emplace_back();
            Explain(operations[i], bRunNext, &pNode->params.back(), &parameters[i]);
            if (bRunNext && pNode->params.back().nCode < 0)
                bRunNext = false;
        }
        // The first command whose own Run failed, every parameter having run.
        if (bRun && pNode->nCode < 0 && bRunNext && !m_bFailureFound) {
            m_bFailureFound = true;
            TNrvDiagnostic& failure = m_pExplanation->failure;
            failure.nCode = pNode->nCode;
            failure.command = pNode->name;
            failure.nOffset = info.name.nOffset;
            failure.nLength = info.name.nLength;
            const CNrvCommandOperation* pCommand = dynamic_cast<const CNrvCommandOperation*>(pOperation);
            failure.message = pCommand != nullptr ? pCommand->DescribeFailure(pNode->nCode, parameters.data())
                                                  : NrvDescribeCode(pNode->nCode);
        }
    }

    bool FailureFound() const { return m_bFailureFound; }

private:
    static void Record(CNrvOperationResult& value, TNrvExplainNode* pNode)
    {
        pNode->bInteger = value.GetType() == CNrvOperationResult::typeInt;
        if (pNode->bInteger)
            pNode->nInteger = NrvIntegerOf(value);
        const char* pszText = value.GetResultString();
        if (pszText != nullptr)
            pNode->value.assign(pszText, value.GetResultStringLength());
    }

    const CRecorder& m_Recorder;
    CNrvDataEditingProfile* m_pProfile;
    TNrvExplanation* m_pExplanation;
    bool m_bFailureFound = false;
};

}  // namespace

TNrvDiagnostic NrvDiagnoseParse(const char* pszExpression)
{
    if (pszExpression == nullptr) {
        TNrvDiagnostic diagnostic;
        diagnostic.nCode = NRV_ERR_INVALID_PARAMETER;
        diagnostic.message = "no expression was given";
        return diagnostic;
    }
    CNrvDataEditingProfile profile;
    CRecorder recorder(pszExpression);
    const NRVRESULT nCode = profile.Parse(pszExpression);
    return ParseDiagnostic(nCode, recorder);
}

TNrvExplanation NrvExplain(const char* pszExpression, const char* pData, size_t nLength, const TNrvLimits& limits)
{
    TNrvExplanation explanation;
    if (pszExpression == nullptr) {
        explanation.failure = NrvDiagnoseParse(pszExpression);
        explanation.nCode = explanation.failure.nCode;
        return explanation;
    }
    CNrvDataEditingProfile profile;
    CRecorder recorder(pszExpression);
    const NRVRESULT parsed = profile.Parse(pszExpression);
    if (parsed < 0) {
        explanation.nCode = parsed;
        explanation.failure = ParseDiagnostic(parsed, recorder);
        return explanation;
    }

    profile.WriteLimitMaximumTextSize(limits.nMaximumTextSize);
    profile.WriteLimitWorkBudget(limits.nWorkBase, limits.nWorkPerScanByte);
    // The profile's own Edit gives the code and the output; it also leaves
    // the scan in the profile, where the data commands read it while the
    // nodes are run one by one below.
    TNrvScanDecodedData record = {kNrvScanSymbologyNotSpecified, {0, nullptr}, {nLength, const_cast<char*>(pData)}};
    explanation.nCode = profile.Edit(&record);
    if (explanation.nCode >= 0)
        explanation.output.assign(record.String.pValue, record.String.nLength);
    const bool bRan = !(pData == nullptr && nLength != 0);

    CExplainer explainer(recorder, &profile, &explanation);
    bool bRun = bRan;
    for (const SNode& node : recorder.Nodes()) {
        if (node.nDepth != 0)
            continue;
        explanation.nodes.emplace_back();
        CNrvOperationResult value;
        explainer.Explain(node.pOperation, bRun, &explanation.nodes.back(), &value);
        if (bRun && explanation.nodes.back().nCode < 0)
            bRun = false;
    }
    // No node failed alone: the scan was missing, or under limits the
    // roots together passed what each passes alone.
    if (explanation.nCode < 0 && !explainer.FailureFound()) {
        explanation.failure.nCode = explanation.nCode;
        explanation.failure.message = bRan ? NrvDescribeCode(explanation.nCode) : "no scan data was given";
    }
    return explanation;
}

const char* NrvResultCodeName(NRVRESULT nCode)
{
    const SCode* pCode = FindCode(nCode);
    return pCode != nullptr ? pCode->pszName : nullptr;
}

const char* NrvResultCodeMeaning(NRVRESULT nCode)
{
    const SCode* pCode = FindCode(nCode);
    return pCode != nullptr ? pCode->pszMeaning : nullptr;
}

bool NrvResultCodeAt(size_t nIndex, NRVRESULT* pnCode)
{
    if (nIndex >= sizeof kCodes / sizeof kCodes[0])
        return false;
    *pnCode = kCodes[nIndex].value;
    return true;
}
