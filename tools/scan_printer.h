// Edits scans one at a time and prints one line for each (or, with
// --explain, the scan's tree or JSON object). A scan whose edit fails,
// passes a limit or runs out of memory is reported and printed as it came;
// the batch goes on.
#ifndef NRV_EDIT_SCAN_PRINTER_H
#define NRV_EDIT_SCAN_PRINTER_H

#include <cstddef>
#include <string>

#include "NrvDiagnostics.h"
#include "NrvScanTypes.h"
#include "editor.h"
#include "line_io.h"
#include "options.h"
#include "stderr_sink.h"

class CScanPrinter {
public:
    CScanPrinter(CScanEditor* pEditor, const SOptions& options, COutput* pOutput, CScanMessages* pMessages);

    void EditAndPrint(char* pData, size_t nLength);
    // A piece of a line longer than --max-line: written as read (with -e,
    // still escaped), reported once, and counted as one scan.
    void PassThrough(const char* pData, size_t nLength, bool bFirst, bool bLast);

    bool AnyFailed() const { return m_bAnyFailed; }
    unsigned long long Count() const { return m_nScan; }

private:
    TNrvExplanation ExplainLast(NRVRESULT result, const char* pData, size_t nLength) const;
    void ReportFailure(NRVRESULT result, const char* pData, size_t nLength) const;
    void Explain(NRVRESULT result, const char* pData, size_t nLength, const TNrvScanString& edited);

    CScanEditor* m_pEditor;
    TNrvLimits m_Limits;
    bool m_bExplain;
    bool m_bJson;
    bool m_bColor;
    bool m_bEscapes;
    size_t m_nMaxLine;
    ENrvScanSymbologyID m_Symbology;
    TNrvScanString m_SymbologyName;
    COutput* m_pOutput;
    CScanMessages* m_pMessages;
    unsigned long long m_nScan = 0;
    bool m_bAnyFailed = false;
    std::string m_Escaped;
};

#endif  // NRV_EDIT_SCAN_PRINTER_H
