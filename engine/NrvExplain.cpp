// An explanation runs the parsed operations themselves, each node once and
// bottom up: the parameters of a command first, then the command over their
// values, through a copy of the command whose parameters hand those values
// on. The command's own Run (its frame, its limits, its body) computes it,
// so every node gives and charges exactly what it does in Edit.
#include "NrvExplain.h"

#include <algorithm>
#include <memory>

#include "NrvCommand.h"
#include "NrvDataEditingProfile.h"
#include "NrvGs1.h"
#include "NrvParseRecorder.h"

namespace {

// A parameter whose value is already computed: its run hands that value on
// as the parameter's own run left it (a text, or a number with its text),
// and charges nothing, as the parameter was charged when it ran.
class CNrvComputedValue : public CNrvOperation {
public:
    explicit CNrvComputedValue(CNrvOperationResult* pValue) : CNrvOperation(nullptr), m_pValue(pValue) {}

    bool CheckIfParametersAreCorrect() const override { return true; }
    int GetResultType() const override { return CNrvOperationResult::typeStringOrInt; }
    NRVRESULT Run(CNrvOperationResult& Result) const override
    {
        // A value that ran has its text (a number's is made here if need be).
        const char* pszText = m_pValue->GetResultString();
        const NRVRESULT result = Result.WriteResult(pszText, m_pValue->GetResultStringLength());
        if (m_pValue->GetType() == CNrvOperationResult::typeInt)
            Result.SetResult(NrvIntegerOf(*m_pValue));
        return result;
    }

private:
    CNrvOperationResult* m_pValue;
};

// Runs the operations of one parsed expression, each node once, the way
// Run runs them: a command's parameters in order until one fails, then the
// command itself. Records every node when asked, and the first command
// whose own run failed.
class CEvaluator {
public:
    explicit CEvaluator(const CNrvParseRecorder& recorder) : m_Recorder(recorder) {}

    NRVRESULT Evaluate(CNrvOperation* pOperation, CNrvOperationResult& Value, TNrvExplainNode* pNode);
    // A node that is not run, and its parameters.
    void Skip(CNrvOperation* pOperation, TNrvExplainNode* pNode) const;

    bool FailureFound() const { return m_bFailureFound; }
    const TNrvDiagnostic& Failure() const { return m_Failure; }

private:
    NRVRESULT RunOnValues(const CNrvCommandOperation& command, std::vector<CNrvOperationResult>& values,
                          CNrvOperationResult& Value) const;
    void Describe(CNrvOperation* pOperation, TNrvExplainNode* pNode) const;
    static void Record(CNrvOperationResult& Value, TNrvExplainNode* pNode);
    static void RecordGs1Elements(CNrvOperationResult& Text, TNrvExplainNode* pNode);

    const CNrvParseRecorder& m_Recorder;
    bool m_bFailureFound = false;
    TNrvDiagnostic m_Failure;
};

NRVRESULT CEvaluator::Evaluate(CNrvOperation* pOperation, CNrvOperationResult& Value, TNrvExplainNode* pNode)
{
    if (pNode != nullptr) {
        Describe(pOperation, pNode);
        pNode->bRun = true;
    }
    const CNrvCommandOperation* pCommand = dynamic_cast<const CNrvCommandOperation*>(pOperation);
    const std::vector<CNrvOperation*> operations = NrvParametersOf(pOperation);
    std::vector<CNrvOperationResult> values(operations.size());
    NRVRESULT nCode = NRV_OK;
    for (size_t i = 0; i < operations.size(); ++i) {
        TNrvExplainNode* pParameter = nullptr;
        if (pNode != nullptr) {
            pNode->params.emplace_back();
            pParameter = &pNode->params.back();
        }
        if (nCode < 0)
            Skip(operations[i], pParameter);
        else
            nCode = Evaluate(operations[i], values[i], pParameter);
    }
    if (nCode >= 0 && pCommand == nullptr) {
        nCode = pOperation->Run(Value);  // a literal
    } else if (nCode >= 0) {
        // A command without parameters is its own run.
        nCode = operations.empty() ? pOperation->Run(Value) : RunOnValues(*pCommand, values, Value);
        if (pNode != nullptr && pCommand->GetCommandInfo().nSet == kNrvCommandSetGs1 && !values.empty())
            RecordGs1Elements(values[0], pNode);
        // Every parameter ran: this command's own run failed, the first
        // to fail (the run stops there), and the failure is told of it.
        if (nCode < 0) {
            m_bFailureFound = true;
            const TNrvNodePlace& place = m_Recorder.NodeOf(pOperation);
            m_Failure.nCode = nCode;
            m_Failure.command = m_Recorder.Text(place.name);
            m_Failure.nOffset = place.name.nOffset;
            m_Failure.nLength = place.name.nLength;
            m_Failure.message = pCommand->DescribeFailure(nCode, values.data());
        }
    }
    if (pNode != nullptr) {
        pNode->nCode = nCode;
        if (nCode >= 0)
            Record(Value, pNode);
    }
    return nCode;
}

// The command's Run over a copy of it whose parameters hand the computed
// values on: its frame checks and charges what it does in Edit, no more.
NRVRESULT CEvaluator::RunOnValues(const CNrvCommandOperation& command, std::vector<CNrvOperationResult>& values,
                                  CNrvOperationResult& Value) const
{
    std::unique_ptr<CNrvOperation> copy(command.NewSameCommand());
    for (CNrvOperationResult& value : values) {
        std::unique_ptr<CNrvOperation> parameter(new CNrvComputedValue(&value));
        const NRVRESULT added = copy->GetOperationsList()->AddTail(parameter.get());
        if (added < 0)
            return added;
        parameter.release();
    }
    return copy->Run(Value);
}

void CEvaluator::Skip(CNrvOperation* pOperation, TNrvExplainNode* pNode) const
{
    if (pNode == nullptr)
        return;
    Describe(pOperation, pNode);
    for (CNrvOperation* pParameter : NrvParametersOf(pOperation)) {
        pNode->params.emplace_back();
        Skip(pParameter, &pNode->params.back());
    }
}

void CEvaluator::Describe(CNrvOperation* pOperation, TNrvExplainNode* pNode) const
{
    const TNrvNodePlace& place = m_Recorder.NodeOf(pOperation);
    pNode->nOffset = place.range.nOffset;
    pNode->nLength = place.range.nLength;
    pNode->name = m_Recorder.Text(place.bCommand ? place.name : place.range);
    pNode->kind = place.bCommand ? kNrvNodeCommand
                  : pOperation->GetResultType() == CNrvOperationResult::typeStringOrInt ? kNrvNodeInteger
                                                                                         : kNrvNodeText;
}

void CEvaluator::Record(CNrvOperationResult& Value, TNrvExplainNode* pNode)
{
    pNode->bInteger = Value.GetType() == CNrvOperationResult::typeInt;
    if (pNode->bInteger)
        pNode->nInteger = NrvIntegerOf(Value);
    // A value that ran has its text (a number's is made here if need be).
    const char* pszText = Value.GetResultString();
    pNode->nValueLength = Value.GetResultStringLength();
    pNode->value.assign(pszText, std::min(pNode->nValueLength, kNrvExplainValueBytes));
}

// The elements of a GS1 command's text, read once more by the reader the
// command used: those before the first fault, whether the command failed
// or not.
void CEvaluator::RecordGs1Elements(CNrvOperationResult& Text, TNrvExplainNode* pNode)
{
    const char* pText = Text.GetResultString();
    CNrvGs1Reader reader(pText, Text.GetResultStringLength());
    TNrvGs1Element element;
    while (reader.Next(&element)) {
        if (pNode->gs1.size() == kNrvExplainGs1Elements) {
            pNode->bGs1More = true;
            break;
        }
        TNrvExplainGs1Element shown;
        shown.ai.assign(pText + element.nAiOffset, element.nAiLength);
        shown.pszTitle = element.pEntry->pszTitle;
        shown.data.assign(pText + element.nDataOffset, std::min(element.nDataLength, kNrvExplainValueBytes));
        pNode->gs1.push_back(std::move(shown));
    }
}

// Runs the parsed expression over the scan as Edit does: the root
// operations in order, each charged as Edit charges joining it to the
// output. Fills pExplanation's nodes and output when it is given, and
// *pFailure when the run fails; returns the code Edit returns.
NRVRESULT RunExplained(CNrvDataEditingProfile& profile, const CNrvParseRecorder& recorder, const char* pData,
                       size_t nLength, TNrvExplanation* pExplanation, TNrvDiagnostic* pFailure)
{
    NRVRESULT nCode = profile.PrepareRun(pData, nLength);
    const bool bScan = nCode >= 0;
    CEvaluator evaluator(recorder);
    size_t nOutput = 0;
    for (const TNrvNodePlace& root : recorder.Nodes()) {
        if (root.nDepth != 0)
            continue;
        TNrvExplainNode* pNode = nullptr;
        if (pExplanation != nullptr) {
            pExplanation->nodes.emplace_back();
            pNode = &pExplanation->nodes.back();
        }
        if (nCode < 0) {
            evaluator.Skip(root.pOperation, pNode);
            continue;
        }
        CNrvOperationResult value;
        nCode = evaluator.Evaluate(root.pOperation, value, pNode);
        if (nCode < 0)
            continue;
        const char* pszText = value.GetResultString();
        const size_t nText = value.GetResultStringLength();
        if (profile.HasLimits())
            nCode = profile.ChargeWork(nOutput + nText, nText);
        if (nCode < 0)
            continue;
        nOutput += nText;
        if (pExplanation != nullptr && nText != 0)
            pExplanation->output.append(pszText, nText);
    }
    if (nCode >= 0)
        return nCode;
    if (pExplanation != nullptr)
        pExplanation->output.clear();
    if (evaluator.FailureFound()) {
        *pFailure = evaluator.Failure();
    } else {
        // No command failed: the scan was missing, or under limits the
        // roots passed together what each passes alone.
        pFailure->nCode = nCode;
        pFailure->message = bScan ? NrvDescribeCode(nCode) : "no scan data was given";
    }
    return nCode;
}

// Parses the expression into the profile under the limits; on failure
// fills *pFailure with the parse's diagnostic.
NRVRESULT ParseExplained(const char* pszExpression, const TNrvLimits& limits, unsigned nCommandSets,
                         CNrvDataEditingProfile& profile, CNrvParseRecorder& recorder, TNrvDiagnostic* pFailure)
{
    NRVRESULT nCode = profile.EnableCommandSets(nCommandSets);
    if (nCode < 0) {
        *pFailure = NrvDiagnoseParse(pszExpression, nCommandSets);
        return nCode;
    }
    nCode = profile.Parse(pszExpression, &recorder);
    if (nCode < 0) {
        *pFailure = recorder.Failure();
        return nCode;
    }
    profile.WriteLimitMaximumTextSize(limits.nMaximumTextSize);
    profile.WriteLimitWorkBudget(limits.nWorkBase, limits.nWorkPerScanByte);
    return nCode;
}

}  // namespace

TNrvExplanation NrvExplain(const char* pszExpression, const char* pData, size_t nLength, const TNrvLimits& limits,
                           unsigned nCommandSets)
{
    TNrvExplanation explanation;
    if (pszExpression == nullptr) {
        explanation.failure = NrvDiagnoseParse(pszExpression);
        explanation.nCode = explanation.failure.nCode;
        return explanation;
    }
    CNrvDataEditingProfile profile;
    CNrvParseRecorder recorder(pszExpression, nCommandSets);
    explanation.nCode = ParseExplained(pszExpression, limits, nCommandSets, profile, recorder, &explanation.failure);
    if (explanation.nCode >= 0)
        explanation.nCode = RunExplained(profile, recorder, pData, nLength, &explanation, &explanation.failure);
    return explanation;
}

TNrvDiagnostic NrvExplainFailure(const char* pszExpression, const char* pData, size_t nLength,
                                 const TNrvLimits& limits, unsigned nCommandSets)
{
    if (pszExpression == nullptr)
        return NrvDiagnoseParse(pszExpression);
    TNrvDiagnostic failure;
    CNrvDataEditingProfile profile;
    CNrvParseRecorder recorder(pszExpression, nCommandSets);
    failure.nCode = ParseExplained(pszExpression, limits, nCommandSets, profile, recorder, &failure);
    if (failure.nCode >= 0)
        failure.nCode = RunExplained(profile, recorder, pData, nLength, nullptr, &failure);
    return failure;
}
