#include "options.h"

#include <getopt.h>

#include <cstdio>
#include <cstring>
#include <set>

#include "NrvCommandTable.h"
#include "NrvSymbologies.h"
#include "stderr_sink.h"

namespace {

enum {
    kOptMinSize = 256,
    kOptMaxSize,
    kOptOnlySymbology,
    kOptContains,
    kOptStartsWith,
    kOptEndsWith,
    kOptCheck,
    kOptTrace,
    kOptListCommands,
    kOptVersion,
    kOptExplain,
    kOptJson,
    kOptColor,
    kOptRules,
    kOptStats,
    kOptRequireMatch,
    kOptMaxText,
    kOptMaxWork,
    kOptMaxLine,
    kOptMaxErrors,
};

const option kLongOptions[] = {
    {"escapes", no_argument, nullptr, 'e'},
    {"symbology", required_argument, nullptr, 's'},
    {"input", required_argument, nullptr, 'i'},
    {"min-size", required_argument, nullptr, kOptMinSize},
    {"max-size", required_argument, nullptr, kOptMaxSize},
    {"only-symbology", required_argument, nullptr, kOptOnlySymbology},
    {"contains", required_argument, nullptr, kOptContains},
    {"starts-with", required_argument, nullptr, kOptStartsWith},
    {"ends-with", required_argument, nullptr, kOptEndsWith},
    {"check", no_argument, nullptr, kOptCheck},
    {"trace", no_argument, nullptr, kOptTrace},
    {"list-commands", no_argument, nullptr, kOptListCommands},
    {"help", no_argument, nullptr, 'h'},
    {"version", no_argument, nullptr, kOptVersion},
    {"explain", no_argument, nullptr, kOptExplain},
    {"json", no_argument, nullptr, kOptJson},
    {"color", optional_argument, nullptr, kOptColor},
    {"rules", required_argument, nullptr, kOptRules},
    {"stats", no_argument, nullptr, kOptStats},
    {"require-match", no_argument, nullptr, kOptRequireMatch},
    {"max-text", required_argument, nullptr, kOptMaxText},
    {"max-work", required_argument, nullptr, kOptMaxWork},
    {"max-line", required_argument, nullptr, kOptMaxLine},
    {"max-errors", required_argument, nullptr, kOptMaxErrors},
    {nullptr, 0, nullptr, 0},
};

// "--name" of an option, whichever way it was written.
std::string NameOf(int c)
{
    for (const option* p = kLongOptions; p->name != nullptr; ++p)
        if (p->val == c)
            return std::string("--") + p->name;
    return std::string();
}

// Decimal digits only: a size has no sign, and "1e3" or "" is a mistake.
bool ParseSize(const char* pszText, size_t* pnSize)
{
    if (*pszText == '\0')
        return false;
    size_t nSize = 0;
    for (const char* p = pszText; *p != '\0'; ++p) {
        if (*p < '0' || *p > '9')
            return false;
        const size_t nDigit = static_cast<size_t>(*p - '0');
        if (nSize > (static_cast<size_t>(-1) - nDigit) / 10)
            return false;
        nSize = nSize * 10 + nDigit;
    }
    *pnSize = nSize;
    return true;
}

// --color alone means always, as with other tools.
bool ParseColor(const char* pszWhen, EColor* pColor)
{
    const std::string when = pszWhen != nullptr ? pszWhen : "always";
    if (when == "auto")
        *pColor = kColorAuto;
    else if (when == "always")
        *pColor = kColorAlways;
    else if (when == "never")
        *pColor = kColorNever;
    else
        return false;
    return true;
}

}  // namespace

bool ParseOptions(int argc, char** argv, SOptions* pOptions, std::string* pError)
{
    opterr = 0;  // our own messages, in our own format
    optind = 1;
    int c;
    std::set<int> given;  // options that take one value, seen so far
    // The leading ':' makes a missing value report ':' rather than '?'.
    while ((c = getopt_long(argc, argv, ":es:i:h", kLongOptions, nullptr)) != -1) {
        const std::string option = ForMessage(argv[optind - 1]);
        if (optarg != nullptr && c != kOptOnlySymbology && !given.insert(c).second) {
            *pError = "option '" + NameOf(c) + "' given twice (it takes one value)";
            return false;
        }
        switch (c) {
        case 'e': pOptions->bEscapes = true; break;
        case 'i': pOptions->pszInput = optarg; break;
        case 'h': pOptions->bHelp = true; break;
        case kOptCheck: pOptions->bCheck = true; break;
        case kOptTrace: pOptions->bTrace = true; break;
        case kOptListCommands: pOptions->bListCommands = true; break;
        case kOptVersion: pOptions->bVersion = true; break;
        case kOptExplain: pOptions->bExplain = true; break;
        case kOptJson: pOptions->bJson = true; break;
        case kOptColor:
            if (!ParseColor(optarg, &pOptions->color)) {
                *pError = "invalid value '" + ForMessage(optarg) + "' for --color (auto, always or never)";
                return false;
            }
            break;
        case kOptContains: pOptions->pszContains = optarg; break;
        case kOptStartsWith: pOptions->pszStartsWith = optarg; break;
        case kOptEndsWith: pOptions->pszEndsWith = optarg; break;
        case kOptRules: pOptions->pszRules = optarg; break;
        case kOptStats: pOptions->bStats = true; break;
        case kOptRequireMatch: pOptions->bRequireMatch = true; break;
        case 's':
        case kOptOnlySymbology: {
            ENrvScanSymbologyID id;
            if (!NrvParseSymbology(optarg, &id)) {
                *pError = "unknown symbology '" + ForMessage(optarg) + "' (see --help for the names)";
                return false;
            }
            if (c == 's')
                pOptions->symbology = id;
            else
                pOptions->onlySymbologies.push_back(id);
            break;
        }
        case kOptMinSize:
        case kOptMaxSize:
        case kOptMaxText:
        case kOptMaxWork:
        case kOptMaxLine:
        case kOptMaxErrors: {
            size_t* const pnValue = c == kOptMinSize    ? &pOptions->nMinSize
                                    : c == kOptMaxSize  ? &pOptions->nMaxSize
                                    : c == kOptMaxText  ? &pOptions->nMaxText
                                    : c == kOptMaxWork  ? &pOptions->nMaxWork
                                    : c == kOptMaxLine  ? &pOptions->nMaxLine
                                                        : &pOptions->nMaxErrors;
            if (!ParseSize(optarg, pnValue)) {
                const std::string name = NameOf(c);
                *pError = c == kOptMaxErrors
                              ? "invalid count '" + ForMessage(optarg) + "' for " + name + " (a decimal count)"
                              : "invalid size '" + ForMessage(optarg) + "' for " + name + " (a decimal byte count)";
                return false;
            }
            break;
        }
        case ':':
            *pError = "option '" + option + "' needs a value";
            return false;
        default: {
            // A short option unknown to getopt is in optopt; a long one is the whole argument.
            const char cOption = static_cast<char>(optopt);
            *pError = optopt != 0 ? "unknown option '-" + ForMessage(&cOption, 1) + "'"
                                  : "unknown option '" + option + "'";
            return false;
        }
        }
    }
    if (pOptions->nMinSize != 0 && pOptions->nMaxSize != 0 && pOptions->nMinSize > pOptions->nMaxSize) {
        *pError = "--min-size " + std::to_string(pOptions->nMinSize) + " is above --max-size " +
                  std::to_string(pOptions->nMaxSize) + ": no scan could be edited";
        return false;
    }
    if ((pOptions->bStats || pOptions->bRequireMatch) && pOptions->pszRules == nullptr) {
        *pError = std::string(pOptions->bStats ? "--stats" : "--require-match") + " goes with --rules only";
        return false;
    }
    // With --rules every operand is a scan.
    if (optind < argc && pOptions->pszRules == nullptr)
        pOptions->pszExpression = argv[optind++];
    for (; optind < argc; ++optind)
        pOptions->data.push_back(argv[optind]);
    return true;
}

void PrintHelp()
{
    fputs("Usage: nrv-edit [OPTIONS] EXPRESSION [DATA...]\n"
          "       nrv-edit [OPTIONS] --rules FILE [DATA...]\n"
          "Applies a data-editing expression to scans and prints one edited line per scan.\n"
          "Each DATA argument is one scan; without DATA, each line of standard input\n"
          "(or of -i FILE) is one scan, its newline not included.\n"
          "\n"
          "Example: nrv-edit 'Code: {TruncateFromBeginning({DecodedData()},2)}' AB1234\n"
          "\n"
          "Options:\n"
          "  -e, --escapes            scans, trigger texts and printed results use the\n"
          "                           escapes \\\\ \\r \\n \\t \\xHH (any byte can be given and seen)\n"
          "  -i, --input FILE         read the scans from FILE ('-' is standard input)\n"
          "  -s, --symbology NAME|N   the scans' symbology (default NotSpecified)\n"
          "      --check              only parse the expression: print 'ok' or the error\n"
          "      --explain            for each scan, print what every command and literal\n"
          "                           of the expression gave, as a tree\n"
          "      --json               with --check or --explain: answer in JSON\n"
          "      --color[=WHEN]       colour the messages: auto (on a terminal, unless\n"
          "                           NO_COLOR is set), always or never\n"
          "      --trace              write the parser's trace on standard error\n"
          "      --list-commands      list the commands, their parameters and result\n"
          "  -h, --help               show this help\n"
          "      --version            show the version\n"
          "\n"
          "Limits (0: none; a scan that passes one is reported and printed unchanged):\n"
          "      --max-text N         the largest text an edit may build (default 16777216)\n"
          "      --max-work N         work per scan byte an edit may do, on top of 64 MiB\n"
          "                           (bytes examined or copied; default 4096)\n"
          "      --max-line N         longer lines are passed through unedited, never read\n"
          "                           whole (default 4194304)\n"
          "      --max-errors N       per-scan messages shown; the rest are counted (default 100)\n"
          "\n"
          "Triggers (a scan that fails one is printed unchanged):\n"
          "      --min-size N         edit only scans of at least N bytes\n"
          "      --max-size N         edit only scans of at most N bytes\n"
          "      --only-symbology NAME|N  edit only scans of this symbology (repeatable)\n"
          "      --contains TEXT      edit only scans containing TEXT\n"
          "      --starts-with TEXT   edit only scans starting with TEXT\n"
          "      --ends-with TEXT     edit only scans ending with TEXT\n"
          "\n"
          "Several rules (a TOML file of [[rule]] tables, tried in order; the first whose\n"
          "triggers hold edits the scan; a failing edit does not fall through):\n"
          "      --rules FILE         the rules in FILE take the place of EXPRESSION;\n"
          "                           with --check, print 'ok' or every error in FILE\n"
          "      --stats              at the end, on standard error: scans each rule edited,\n"
          "                           how many failed, how many no rule matched\n"
          "      --require-match      a scan no rule matched is a failure (printed unchanged)\n"
          "\n"
          "Exit status: 0 every scan edited or passed through; 1 some scan's edit failed or\n"
          "passed a limit (that scan is printed unchanged); 2 usage error, an expression\n"
          "that does not parse, a rules file with errors, or a read or write error (the\n"
          "tool stops at the first).\n"
          "\n"
          "Commands (--list-commands shows their parameters):\n",
          stdout);
    // Straight from the library's command table, so that the list is whole.
    size_t nCommands = 0;
    const TNrvCommandInfo* pCommands = NrvGetCommandTable(&nCommands);
    size_t nColumn = 0;
    for (size_t i = 0; i < nCommands; ++i) {
        const size_t nName = strlen(pCommands[i].pszName);
        if (nColumn != 0 && nColumn + 1 + nName > 78) {
            putchar('\n');
            nColumn = 0;
        }
        nColumn += static_cast<size_t>(printf("%s%s", nColumn == 0 ? "  " : " ", pCommands[i].pszName));
    }
    fputs("\n\nSymbologies (names in any case, or their numbers):\n", stdout);
    const int nColumns = 3;
    int nId = 0;
    for (; NrvSymbologyName(nId) != nullptr; ++nId) {
        printf("  %2d %-20s", nId, NrvSymbologyName(nId));
        if (nId % nColumns == nColumns - 1)
            putchar('\n');
    }
    if (nId % nColumns != 0)
        putchar('\n');
}
