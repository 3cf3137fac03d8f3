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

#include "NrvEscapes.h"
#include "NrvJson.h"
#include "NrvShownBytes.h"
#include "command_list.h"
#include "editor.h"
#include "line_io.h"
#include "options.h"
#include "rule_tests.h"
#include "scan_printer.h"
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

// The options that answer at once: --help, --version, --list-commands.
// False when none was given.
bool Answer(const SOptions& options, int* pnStatus)
{
    *pnStatus = kExitOk;
    if (options.bHelp)
        PrintHelp();
    else if (options.bVersion)
        printf("nrv-edit %s\n", NRV_EDIT_VERSION);
    else if (options.bListCommands)
        *pnStatus = PrintCommandList() ? kExitOk : kExitScanFailed;
    return options.bHelp || options.bVersion || options.bListCommands;
}

// What does not go with --test, or "": each test gives its own scan and
// symbology, so that every front end running the file gets the same outcomes.
std::string TestMisuse(const SOptions& options)
{
    if (!options.data.empty())
        return "--test takes no EXPRESSION or DATA: each test gives its own scan";
    if (!options.firstTrigger.empty())
        return options.firstTrigger + " does not go with --test: give each rule its triggers in the file";
    const struct {
        bool bGiven;
        const char* pszOption;
    } kOthers[] = {
        {options.pszRules != nullptr, "--rules"},
        {options.pszInput != nullptr, "-i"},
        {options.bEscapes, "-e"},
        {options.symbology != kNrvScanSymbologyNotSpecified, "-s"},
        {options.bCheck, "--check"},
        {options.bExplain, "--explain"},
    };
    for (const auto& other : kOthers)
        if (other.bGiven)
            return std::string(other.pszOption) + " does not go with --test: each test gives its own scan and symbology";
    return std::string();
}

// What is wrong with the way the options go together, or "".
std::string Misuse(const SOptions& options)
{
    if (options.pszJunit != nullptr && options.pszTest == nullptr)
        return "--junit goes with --test";
    if (options.pszTest != nullptr)
        return TestMisuse(options);
    if (options.pszExpression == nullptr && options.pszRules == nullptr)
        return "missing EXPRESSION";
    if (options.bJson && !options.bCheck && !options.bExplain)
        return "--json goes with --check, --explain or --test";
    if (!options.data.empty() && options.pszInput != nullptr)
        return "give the scans either as DATA arguments or with -i, not both";
    // The file holds each rule's triggers; one set here would leave unclear which rules it applies to.
    if (options.pszRules != nullptr && !options.firstTrigger.empty())
        return options.firstTrigger + " does not go with --rules: give each rule its triggers in the file";
    return std::string();
}

// Every usage mistake, before anything is parsed or read. With -e, the DATA
// arguments are decoded into *pDecoded.
bool Validate(SOptions* pOptions, std::vector<std::string>* pDecoded, std::string* pError)
{
    const SOptions& options = *pOptions;
    *pError = Misuse(options);
    if (!pError->empty() || !ReadTriggerTexts(pOptions, pError))
        return false;
    for (size_t i = 0; i < options.data.size() && options.bEscapes; ++i) {
        std::string decoded, problem;
        if (!NrvUnescape(options.data[i], strlen(options.data[i]), &decoded, &problem)) {
            *pError = "DATA argument " + std::to_string(i + 1) + " '" +
                      NrvShown(options.data[i], kNrvBytesMessage) + "': " + problem;
            return false;
        }
        pDecoded->push_back(std::move(decoded));
    }
    return true;
}

// The expression or the rules file, ready to edit. Null when the tool
// stops here, with its status in *pnStatus: an error was printed, or
// --check has answered.
std::unique_ptr<CScanEditor> BuildEditor(const SOptions& options, int* pnStatus)
{
    std::unique_ptr<CScanEditor> pEditor =
        options.pszRules != nullptr ? MakeRulesEditor(options) : MakeExpressionEditor(options);
    *pnStatus = pEditor == nullptr ? kExitUsage : kExitOk;
    if (pEditor != nullptr && options.bCheck) {
        std::string json;
        CNrvJsonWriter().AppendParseOutcome(TNrvDiagnostic(), &json);
        puts(options.bJson ? json.c_str() : "ok");
        return nullptr;
    }
    return pEditor;
}

// The input file, or standard input; -1 after reporting why it cannot be read.
int OpenInput(const SOptions& options, bool bStandardInput)
{
    if (bStandardInput)
        return STDIN_FILENO;
    int fd = open(options.pszInput, O_RDONLY);
    struct stat status;
    if (fd >= 0 && fstat(fd, &status) == 0 && S_ISDIR(status.st_mode)) {
        close(fd);
        fd = -1;
        errno = EISDIR;
    }
    if (fd < 0)
        UsageError("cannot read '" + NrvShown(options.pszInput, kNrvBytesMessage) + "': " + strerror(errno));
    return fd;
}

// Edits every line of fd; stops at a malformed line (with -e) or a read
// error, with status 2.
int EditLines(int fd, const char* pszInputName, const SOptions& options, COutput* pOutput, CScanPrinter* pPrinter)
{
    CLineReader reader(fd, pOutput);
    reader.SetMaximumLine(options.nMaxLine);
    std::string decoded, problem;
    char* pLine = nullptr;
    size_t nLength = 0;
    bool bInLongLine = false;
    while (!pOutput->Failed() && reader.Next(&pLine, &nLength)) {
        if (reader.Piece() != CLineReader::kWholeLine) {
            const bool bLast = reader.Piece() == CLineReader::kLongLineEnd;
            pPrinter->PassThrough(pLine, nLength, !bInLongLine, bLast);
            bInLongLine = !bLast;
        } else if (!options.bEscapes) {
            pPrinter->EditAndPrint(pLine, nLength);
        } else if (NrvUnescape(pLine, nLength, &decoded, &problem)) {
            pPrinter->EditAndPrint(&decoded[0], decoded.size());
        } else {
            pOutput->Flush();  // the lines before it were fine
            return UsageError(std::string(pszInputName) + ", line " + std::to_string(pPrinter->Count() + 1) + ": " +
                              problem);
        }
    }
    if (pOutput->Failed() || !reader.ReadFailed())
        return kExitOk;
    pOutput->Flush();
    fprintf(stderr, "nrv-edit: cannot read %s: %s\n", pszInputName, strerror(reader.Errno()));
    return kExitUsage;
}

// Says what is left to say and gives the exit status.
int Finish(COutput* pOutput, const CScanPrinter& printer, const CScanEditor& editor, const CScanMessages& messages)
{
    messages.Summarise();
    const bool bFlushed = pOutput->Flush();
    editor.Finish();  // after the output, the last thing said
    if (!bFlushed) {
        fprintf(stderr, "nrv-edit: cannot write the output: %s\n", strerror(pOutput->Errno()));
        return kExitUsage;
    }
    return printer.AnyFailed() ? kExitScanFailed : kExitOk;
}

// Edits the DATA arguments, or else the lines of the input.
int EditScans(const SOptions& options, std::vector<std::string>& decoded, CScanEditor* pEditor)
{
    COutput output(STDOUT_FILENO);
    CScanMessages messages(options.nMaxErrors);
    CScanPrinter printer(pEditor, options, &output, &messages);
    for (size_t i = 0; i < options.data.size() && !output.Failed(); ++i) {
        if (options.bEscapes)
            printer.EditAndPrint(&decoded[i][0], decoded[i].size());
        else
            printer.EditAndPrint(options.data[i], strlen(options.data[i]));
    }
    if (!options.data.empty())
        return Finish(&output, printer, *pEditor, messages);

    const bool bStandardInput = options.pszInput == nullptr || strcmp(options.pszInput, "-") == 0;
    const int fd = OpenInput(options, bStandardInput);
    if (fd < 0)
        return kExitUsage;
    const std::string inputName =
        bStandardInput ? "standard input" : NrvShown(options.pszInput, kNrvBytesMessage);
    const int status = EditLines(fd, inputName.c_str(), options, &output, &printer);
    if (!bStandardInput)
        close(fd);
    return status != kExitOk ? status : Finish(&output, printer, *pEditor, messages);
}

int Run(int argc, char** argv)
{
    SOptions options;
    std::string error;
    std::vector<std::string> decoded;
    int status = kExitOk;
    if (!ParseOptions(argc, argv, &options, &error))
        return UsageError(error);
    if (Answer(options, &status))
        return status;
    if (!Validate(&options, &decoded, &error))
        return UsageError(error);
    if (options.pszTest != nullptr)
        return RunRuleTests(options);
    const std::unique_ptr<CScanEditor> pEditor = BuildEditor(options, &status);
    return pEditor != nullptr ? EditScans(options, decoded, pEditor.get()) : status;
}

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
