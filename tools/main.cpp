// nrv-edit: tries a data-editing expression on scans given on the command
// line, or applies it to every line of a file or of standard input.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "NrvDataEditingProfile.h"
#include "NrvDiagnostics.h"
#include "NrvEscapes.h"
#include "NrvParsingString.h"
#include "NrvScanTypes.h"
#include "NrvSymbologies.h"
#include "command_list.h"
#include "explain_print.h"
#include "json.h"
#include "line_io.h"
#include "options.h"
#include "rules_mode.h"
#include "stderr_sink.h"

#ifndef NRV_EDIT_VERSION
#define NRV_EDIT_VERSION "unknown"
#endif

namespace {

enum { kExitOk = 0, kExitScanFailed = 1, kExitUsage = 2 };

int UsageError(const std::string& message)
{
    fprintf(stderr, "nrv-edit: %s\nTry 'nrv-edit --help' for more information.\n", message.c_str());
    return kExitUsage;
}

void OnTraceLine(bool bError, const char* pszLine, void*)
{
    fprintf(stderr, "trace: %s%s\n", bError ? "ERROR: " : "", pszLine);
}

// Unescapes a trigger text given with -e. Triggers are zero-terminated
// texts, so a zero byte cannot be one of their bytes.
bool DecodeTrigger(const char* pszName, const char* pszText, bool bEscapes, std::string* pOut, std::string* pError)
{
    if (!bEscapes) {
        *pOut = pszText;
        return true;
    }
    std::string problem;
    if (!NrvUnescape(pszText, strlen(pszText), pOut, &problem)) {
        *pError = std::string(pszName) + " '" + ForMessage(pszText) + "': " + problem;
        return false;
    }
    if (pOut->find('\0') != std::string::npos) {
        *pError = std::string(pszName) + " '" + ForMessage(pszText) + "': a trigger text cannot hold a zero byte";
        return false;
    }
    return true;
}

struct STriggerTexts {
    std::string contains, startsWith, endsWith;
};

// A code that says the edit passed one of the profile's limits: explaining
// it would run the expression again without them.
bool IsLimit(NRVRESULT result)
{
    return result == NRV_ERR_TEXT_LIMIT || result == NRV_ERR_WORK_LIMIT || result == NRV_ERR_TEXT_TOO_LONG;
}

// Edits scans one at a time and prints one line for each. A scan whose edit
// fails, passes a limit or runs out of memory is reported and printed as
// it came; the batch goes on. Printing stops at the first write error.
class CScanPrinter {
public:
    // pRules, when given, edits in the profile's place (--rules).
    CScanPrinter(CNrvDataEditingProfile* pProfile, CRulesMode* pRules, const SOptions& options, COutput* pOutput,
                 CScanMessages* pMessages)
        : m_pProfile(pProfile),
          m_pRules(pRules),
          m_pszExpression(options.pszExpression),
          m_Limits(options.Limits()),
          m_bExplain(options.bExplain),
          m_bJson(options.bJson),
          m_bColor(UseColor(options.color, STDOUT_FILENO)),
          m_Symbology(options.symbology),
          // The engine never writes through the name; the record type is not const.
          m_SymbologyName{strlen(NrvSymbologyName(options.symbology)),
                          const_cast<char*>(NrvSymbologyName(options.symbology))},
          m_bEscapes(options.bEscapes),
          m_pOutput(pOutput),
          m_pMessages(pMessages),
          m_nScan(0),
          m_bAnyFailed(false)
    {
    }

    void EditAndPrint(char* pData, size_t nLength)
    {
        ++m_nScan;
        TNrvScanDecodedData record = {m_Symbology, m_SymbologyName, {nLength, pData}};
        NRVRESULT result;
        try {
            result = m_pRules != nullptr ? m_pRules->Edit(&record) : m_pProfile->Edit(&record);
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

    // A piece of a line longer than --max-line: written as read (with -e,
    // still escaped), reported once, and counted as one scan.
    void PassThrough(const char* pData, size_t nLength, bool bFirst, bool bLast, size_t nMaximum)
    {
        if (bFirst) {
            ++m_nScan;
            m_bAnyFailed = true;
            m_pMessages->Report(m_nScan, "longer than --max-line " + std::to_string(nMaximum) +
                                             " bytes; passed through unedited");
        }
        m_pOutput->Write(pData, nLength);
        if (bLast)
            m_pOutput->Write('\n');
    }

    bool AnyFailed() const { return m_bAnyFailed; }

private:
    // --explain: the scan's tree (or JSON object) instead of its edited line.
    // The expression the last scan went through: the profile's, or the one
    // of the rule that took it.
    const char* LastExpression() const
    {
        return m_pRules != nullptr ? m_pRules->LastExpression() : m_pszExpression;
    }

    // The last scan explained under the limits the edit ran with. Running
    // out of memory while explaining is said in place of the explanation.
    TNrvExplanation ExplainLast(NRVRESULT result, const char* pData, size_t nLength) const
    {
        try {
            return NrvExplain(LastExpression(), pData, nLength, m_Limits);
        } catch (const std::bad_alloc&) {
            TNrvExplanation explanation;
            explanation.nCode = explanation.failure.nCode = result;
            explanation.failure.message = "out of memory while explaining the edit";
            return explanation;
        }
    }

    // Only a failing scan is explained, to say which command failed, so
    // the edits that succeed cost nothing more.
    void ReportFailure(NRVRESULT result, const char* pData, size_t nLength) const
    {
        if (!m_pMessages->Admit())
            return;  // past --max-errors: only counted, not explained
        if (m_pRules != nullptr && result == CRulesMode::kNoRuleMatched) {
            fprintf(stderr, "nrv-edit: scan %llu: no rule matched\n", m_nScan);
            return;
        }
        if (IsLimit(result)) {
            const char* pszName = NrvResultCodeName(result);
            fprintf(stderr, "nrv-edit: scan %llu: %s (%s, %lld)\n", m_nScan, NrvResultCodeMeaning(result), pszName,
                    static_cast<long long>(result));
            return;
        }
        TNrvDiagnostic failure;
        try {
            failure = NrvExplainFailure(LastExpression(), pData, nLength, m_Limits);
        } catch (const std::bad_alloc&) {
            failure.nCode = result;
            failure.message = "out of memory while explaining the edit";
        }
        const std::string context = m_pRules != nullptr ? m_pRules->LastRuleLabel() : std::string();
        fputs(FormatScanFailure(m_nScan, failure, context).c_str(), stderr);
    }

    void Explain(NRVRESULT result, const char* pData, size_t nLength, const TNrvScanString& edited)
    {
        m_bAnyFailed = m_bAnyFailed || result < 0;
        const bool bRan = result != NRV_OK_NOT_TRIGGERED && LastExpression() != nullptr;
        const TNrvExplanation explanation = bRan ? ExplainLast(result, pData, nLength) : TNrvExplanation();
        std::string text;
        if (m_bJson) {
            const std::string rule = m_pRules != nullptr ? m_pRules->LastRuleJson() : std::string();
            text = JsonExplanation(m_nScan, result, std::string(edited.pValue, edited.nLength), explanation, rule) +
                   "\n";
        } else {
            if (m_pRules != nullptr)
                text = m_pRules->DescribeAppliedRule() + "\n";
            text += bRan ? FormatExplanation(m_nScan, pData, nLength, explanation, m_bColor)
                         : FormatNotTriggered(m_nScan, pData, nLength);
        }
        m_pOutput->Write(text.data(), text.size());
    }

public:
    unsigned long long Count() const { return m_nScan; }

private:
    CNrvDataEditingProfile* m_pProfile;
    CRulesMode* m_pRules;
    const char* m_pszExpression;
    TNrvLimits m_Limits;
    bool m_bExplain;
    bool m_bJson;
    bool m_bColor;
    ENrvScanSymbologyID m_Symbology;
    TNrvScanString m_SymbologyName;
    bool m_bEscapes;
    COutput* m_pOutput;
    CScanMessages* m_pMessages;
    unsigned long long m_nScan;
    bool m_bAnyFailed;
    std::string m_Escaped;
};

int Finish(COutput* pOutput, const CScanPrinter& printer, const CRulesMode* pRules, const CScanMessages& messages)
{
    messages.Summarise();
    const bool bFlushed = pOutput->Flush();
    if (pRules != nullptr && pRules->WantsStats())
        pRules->PrintStats(stderr);  // after the output, the last thing said
    if (!bFlushed) {
        fprintf(stderr, "nrv-edit: cannot write the output: %s\n", strerror(pOutput->Errno()));
        return kExitUsage;
    }
    return printer.AnyFailed() ? kExitScanFailed : kExitOk;
}

// A trigger text longer than --max-size can never hold.
bool CheckTriggerAgainstMaxSize(const char* pszName, const std::string& text, size_t nMaxSize, std::string* pError)
{
    if (nMaxSize == 0 || text.size() <= nMaxSize)
        return true;
    *pError = std::string(pszName) + " holds " + std::to_string(text.size()) + " bytes, more than --max-size " +
              std::to_string(nMaxSize) + ": no scan could be edited";
    return false;
}

int Run(int argc, char** argv);

}  // namespace

int main(int argc, char** argv)
{
    BufferStandardError();
    int status;
    try {
        status = Run(argc, argv);
    } catch (const std::bad_alloc&) {
        // Everything printed so far has been flushed on the way out.
        fprintf(stderr, "nrv-edit: out of memory\n");
        status = kExitUsage;
    }
    return FinishStandardStreams(status);
}

namespace {

int Run(int argc, char** argv)
{
    SOptions options;
    std::string error;
    if (!ParseOptions(argc, argv, &options, &error))
        return UsageError(error);
    if (options.bHelp) {
        PrintHelp();
        return kExitOk;
    }
    if (options.bVersion) {
        printf("nrv-edit %s\n", NRV_EDIT_VERSION);
        return kExitOk;
    }
    if (options.bListCommands)
        return PrintCommandList() ? kExitOk : kExitScanFailed;
    if (options.pszExpression == nullptr && options.pszRules == nullptr)
        return UsageError("missing EXPRESSION");
    if (options.bJson && !options.bCheck && !options.bExplain)
        return UsageError("--json goes with --check or --explain");

    // Every usage mistake is reported before anything is parsed or read.
    const bool bFromArguments = !options.data.empty();
    if (bFromArguments && options.pszInput != nullptr)
        return UsageError("give the scans either as DATA arguments or with -i, not both");
    STriggerTexts triggers;
    if (options.pszContains != nullptr &&
        !DecodeTrigger("--contains", options.pszContains, options.bEscapes, &triggers.contains, &error))
        return UsageError(error);
    if (options.pszStartsWith != nullptr &&
        !DecodeTrigger("--starts-with", options.pszStartsWith, options.bEscapes, &triggers.startsWith, &error))
        return UsageError(error);
    if (options.pszEndsWith != nullptr &&
        !DecodeTrigger("--ends-with", options.pszEndsWith, options.bEscapes, &triggers.endsWith, &error))
        return UsageError(error);
    if (!CheckTriggerAgainstMaxSize("--contains", triggers.contains, options.nMaxSize, &error) ||
        !CheckTriggerAgainstMaxSize("--starts-with", triggers.startsWith, options.nMaxSize, &error) ||
        !CheckTriggerAgainstMaxSize("--ends-with", triggers.endsWith, options.nMaxSize, &error))
        return UsageError(error);
    std::vector<std::string> decodedArguments;
    if (options.bEscapes) {
        for (size_t i = 0; i < options.data.size(); ++i) {
            std::string decoded, problem;
            if (!NrvUnescape(options.data[i], strlen(options.data[i]), &decoded, &problem))
                return UsageError("DATA argument " + std::to_string(i + 1) + " '" + ForMessage(options.data[i]) +
                                  "': " + problem);
            decodedArguments.push_back(std::move(decoded));
        }
    }

    // --rules: the file's rules take the place of the expression.
    std::unique_ptr<CRulesMode> pRules;
    if (options.pszRules != nullptr) {
        int nStatus = kExitOk;
        pRules = CRulesMode::Load(options, &nStatus);
        if (pRules == nullptr)
            return nStatus;
    }

    CNrvDataEditingProfile profile;
    CNrvParsingString::SetTraceCallback(options.bTrace ? OnTraceLine : nullptr, nullptr);
    const NRVRESULT parsed = pRules != nullptr ? NRV_OK : profile.Parse(options.pszExpression);
    CNrvParsingString::SetTraceCallback(nullptr, nullptr);
    if (parsed < 0) {
        // Asked only now: the diagnostic parses the expression once more.
        const TNrvDiagnostic diagnostic = NrvDiagnoseParse(options.pszExpression);
        if (options.bJson)
            puts(JsonParseOutcome(diagnostic).c_str());
        else
            fputs(FormatParseError(options.pszExpression, diagnostic, UseColor(options.color, STDERR_FILENO)).c_str(),
                  stderr);
        return kExitUsage;
    }
    if (options.bCheck) {
        puts(options.bJson ? JsonParseOutcome(TNrvDiagnostic()).c_str() : "ok");
        return kExitOk;
    }

    // Empty texts leave a trigger unset, as the profile defines.
    profile.WriteTriggerMinimumSize(options.nMinSize);
    profile.WriteTriggerMaximumSize(options.nMaxSize);
    for (ENrvScanSymbologyID id : options.onlySymbologies)
        profile.AddTriggerSymbology(id);
    profile.WriteTriggerContains(triggers.contains.c_str());
    profile.WriteTriggerStartsBy(triggers.startsWith.c_str());
    profile.WriteTriggerEndsWith(triggers.endsWith.c_str());
    const TNrvLimits limits = options.Limits();
    profile.WriteLimitMaximumTextSize(limits.nMaximumTextSize);
    profile.WriteLimitWorkBudget(limits.nWorkBase, limits.nWorkPerScanByte);

    COutput output(STDOUT_FILENO);
    CScanMessages messages(options.nMaxErrors);
    CScanPrinter printer(&profile, pRules.get(), options, &output, &messages);

    if (bFromArguments) {
        for (size_t i = 0; i < options.data.size() && !output.Failed(); ++i) {
            if (options.bEscapes)
                printer.EditAndPrint(&decodedArguments[i][0], decodedArguments[i].size());
            else
                printer.EditAndPrint(options.data[i], strlen(options.data[i]));
        }
        return Finish(&output, printer, pRules.get(), messages);
    }

    const bool bStandardInput = options.pszInput == nullptr || strcmp(options.pszInput, "-") == 0;
    const char* const pszInputName = bStandardInput ? "standard input" : options.pszInput;
    int fd = STDIN_FILENO;
    if (!bStandardInput) {
        fd = open(options.pszInput, O_RDONLY);
        struct stat status;
        if (fd >= 0 && fstat(fd, &status) == 0 && S_ISDIR(status.st_mode)) {
            close(fd);
            fd = -1;
            errno = EISDIR;
        }
        if (fd < 0)
            return UsageError("cannot read '" + ForMessage(options.pszInput) + "': " + strerror(errno));
    }

    int status = kExitOk;
    {
        CLineReader reader(fd, &output);
        reader.SetMaximumLine(options.nMaxLine);
        std::string decoded, problem;
        char* pLine = nullptr;
        size_t nLength = 0;
        bool bInLongLine = false;
        while (!output.Failed() && reader.Next(&pLine, &nLength)) {
            if (reader.Piece() != CLineReader::kWholeLine) {
                const bool bLast = reader.Piece() == CLineReader::kLongLineEnd;
                printer.PassThrough(pLine, nLength, !bInLongLine, bLast, options.nMaxLine);
                bInLongLine = !bLast;
                continue;
            }
            if (!options.bEscapes) {
                printer.EditAndPrint(pLine, nLength);
                continue;
            }
            if (!NrvUnescape(pLine, nLength, &decoded, &problem)) {
                output.Flush();  // the lines before it were fine
                status = UsageError(std::string(pszInputName) + ", line " + std::to_string(printer.Count() + 1) +
                                    ": " + problem);
                break;
            }
            printer.EditAndPrint(&decoded[0], decoded.size());
        }
        if (status == kExitOk && !output.Failed() && reader.ReadFailed()) {
            output.Flush();
            fprintf(stderr, "nrv-edit: cannot read %s: %s\n", pszInputName, strerror(reader.Errno()));
            status = kExitUsage;
        }
    }
    if (!bStandardInput)
        close(fd);
    return status != kExitOk ? status : Finish(&output, printer, pRules.get(), messages);
}

}  // namespace
