#include "scan_printer.h"

#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <new>

#include "NrvEscapes.h"
#include "NrvJson.h"
#include "NrvSymbologies.h"
#include "explain_print.h"

namespace {

// A code that says the edit passed one of the profile's limits: explaining
// it would only say so again.
bool IsLimit(NRVRESULT result)
{
    return result == NRV_ERR_TEXT_LIMIT || result == NRV_ERR_WORK_LIMIT || result == NRV_ERR_TEXT_TOO_LONG;
}

}  // namespace

CScanPrinter::CScanPrinter(CScanEditor* pEditor, const SOptions& options, COutput* pOutput,
                           CScanMessages* pMessages)
    : m_pEditor(pEditor),
      m_Limits(options.settings.Limits()),
      m_bExplain(options.bExplain),
      m_bJson(options.bJson),
      m_bColor(UseColor(options.color, STDOUT_FILENO)),
      m_bEscapes(options.bEscapes),
      m_nMaxLine(options.nMaxLine),
      m_Symbology(options.symbology),
      // The engine never writes through the name; the record type is not const.
      m_SymbologyName{strlen(NrvSymbologyName(options.symbology)), const_cast<char*>(NrvSymbologyName(options.symbology))},
      m_pOutput(pOutput),
      m_pMessages(pMessages)
{
}

void CScanPrinter::EditAndPrint(char* pData, size_t nLength)
{
    ++m_nScan;
    TNrvScanDecodedData record = {m_Symbology, m_SymbologyName, {nLength, pData}};
    NRVRESULT result;
    try {
        result = m_pEditor->Edit(&record);
    } catch (const std::bad_alloc&) {
        // The profile leaves the record untouched and stays usable.
        m_pMessages->Report(m_nScan, "out of memory; the scan is printed unchanged");
        m_bAnyFailed = true;
        result = NRV_OK;
    }
    if (m_bExplain) {
        Explain(result, pData, nLength, record.String);
        return;
    }
    if (result < 0) {
        // The record is untouched: the scan goes out as it came in.
        ReportFailure(result, pData, nLength);
        m_bAnyFailed = true;
    }
    if (m_bEscapes) {
        m_Escaped.clear();
        NrvAppendEscaped(record.String.pValue, record.String.nLength, &m_Escaped);
        m_pOutput->Write(m_Escaped.data(), m_Escaped.size());
    } else {
        m_pOutput->Write(record.String.pValue, record.String.nLength);
    }
    m_pOutput->Write('\n');
}

void CScanPrinter::PassThrough(const char* pData, size_t nLength, bool bFirst, bool bLast)
{
    if (bFirst) {
        ++m_nScan;
        m_bAnyFailed = true;
        m_pMessages->Report(m_nScan,
                            "longer than --max-line " + std::to_string(m_nMaxLine) + " bytes; passed through unedited");
    }
    m_pOutput->Write(pData, nLength);
    if (bLast)
        m_pOutput->Write('\n');
}

// The last scan explained under the limits the edit ran with. Running out
// of memory while explaining is said in place of the explanation.
TNrvExplanation CScanPrinter::ExplainLast(NRVRESULT result, const char* pData, size_t nLength) const
{
    try {
        return NrvExplain(m_pEditor->LastExpression(), pData, nLength, m_Limits, m_pEditor->LastCommandSets());
    } catch (const std::bad_alloc&) {
        TNrvExplanation explanation;
        explanation.nCode = explanation.failure.nCode = result;
        explanation.failure.message = "out of memory while explaining the edit";
        return explanation;
    }
}

// Only a failing scan is explained, to say which command failed, so the
// edits that succeed cost nothing more.
void CScanPrinter::ReportFailure(NRVRESULT result, const char* pData, size_t nLength) const
{
    if (!m_pMessages->Admit())
        return;  // past --max-errors: only counted, not explained
    if (result == CScanEditor::kNoRuleMatched) {
        fprintf(stderr, "nrv-edit: scan %llu: no rule matched\n", m_nScan);
        return;
    }
    if (IsLimit(result)) {
        fprintf(stderr, "nrv-edit: scan %llu: %s (%s, %lld)\n", m_nScan, NrvResultCodeMeaning(result),
                NrvResultCodeName(result), static_cast<long long>(result));
        return;
    }
    TNrvDiagnostic failure;
    try {
        failure = NrvExplainFailure(m_pEditor->LastExpression(), pData, nLength, m_Limits,
                                    m_pEditor->LastCommandSets());
    } catch (const std::bad_alloc&) {
        failure.nCode = result;
        failure.message = "out of memory while explaining the edit";
    }
    fputs(FormatScanFailure(m_nScan, failure, m_pEditor->LastRuleLabel()).c_str(), stderr);
}

// --explain: the scan's tree (or JSON object) instead of its edited line.
void CScanPrinter::Explain(NRVRESULT result, const char* pData, size_t nLength, const TNrvScanString& edited)
{
    m_bAnyFailed = m_bAnyFailed || result < 0;
    const bool bRan = result != NRV_OK_NOT_TRIGGERED && m_pEditor->LastExpression() != nullptr;
    const TNrvExplanation explanation = bRan ? ExplainLast(result, pData, nLength) : TNrvExplanation();
    std::string text;
    if (m_bJson) {
        TNrvJsonScan scan;
        scan.nScan = m_nScan;
        scan.nCode = result;
        scan.output = std::string_view(edited.pValue, edited.nLength);
        m_pEditor->DescribeLastRule(&scan);
        CNrvJsonWriter().AppendExplanation(scan, explanation, &text);
        text += '\n';
    } else {
        text = m_pEditor->AppliedRuleLine();
        if (!text.empty())
            text += '\n';
        text += bRan ? FormatExplanation(m_nScan, pData, nLength, explanation, m_bColor)
                     : FormatNotTriggered(m_nScan, pData, nLength);
    }
    m_pOutput->Write(text.data(), text.size());
}
