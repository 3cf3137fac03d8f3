#include "options.h"

#include <getopt.h>

#include <cstdio>
#include <cstring>
#include <set>
#include <utility>

#include "NrvCommandTable.h"
#include "NrvShownBytes.h"
#include "NrvSymbologies.h"

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
    kOptSeedOnly,
    kOptTest,
    kOptJunit,
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
    {"seed-only", no_argument, nullptr, kOptSeedOnly},
    {"test", required_argument, nullptr, kOptTest},
    {"junit", required_argument, nullptr, kOptJunit},
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

std::string Shown(const char* pszText)
{
    return NrvShown(pszText, kNrvBytesMessage);
}

bool Refuse(std::string* pError, std::string message)
{
    *pError = std::move(message);
    return false;
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

// The setting an option gives, or kNrvSettingCount.
ENrvSetting SettingOf(int c)
{
    switch (c) {
    case kOptMinSize: return kNrvSettingMinimumSize;
    case kOptMaxSize: return kNrvSettingMaximumSize;
    case kOptOnlySymbology: return kNrvSettingSymbologies;
    case kOptContains: return kNrvSettingContains;
    case kOptStartsWith: return kNrvSettingStartsWith;
    case kOptEndsWith: return kNrvSettingEndsWith;
    case kOptMaxText: return kNrvSettingMaximumText;
    case kOptMaxWork: return kNrvSettingMaximumWork;
    default: return kNrvSettingCount;
    }
}

// An option without a value; false for any other.
bool TakeSwitch(int c, SOptions* pOptions)
{
    switch (c) {
    case 'e': pOptions->bEscapes = true; return true;
    case 'h': pOptions->bHelp = true; return true;
    case kOptCheck: pOptions->bCheck = true; return true;
    case kOptTrace: pOptions->bTrace = true; return true;
    case kOptListCommands: pOptions->bListCommands = true; return true;
    case kOptVersion: pOptions->bVersion = true; return true;
    case kOptExplain: pOptions->bExplain = true; return true;
    case kOptJson: pOptions->bJson = true; return true;
    case kOptStats: pOptions->bStats = true; return true;
    case kOptRequireMatch: pOptions->bRequireMatch = true; return true;
    case kOptSeedOnly: pOptions->settings.SetCommandSets(kNrvCommandSetSeed); return true;
    default: return false;
    }
}

// A trigger or a limit: read into the settings, the texts only kept (-e may follow).
bool TakeSetting(ENrvSetting setting, const char* pszValue, SOptions* pOptions, std::string* pError)
{
    TNrvSettingError error;
    bool bRead = true;
    if (setting == kNrvSettingSymbologies)
        bRead = pOptions->settings.AddSymbology(pszValue, &error);
    else if (setting >= kNrvSettingContains && setting <= kNrvSettingEndsWith)
        pOptions->apszTexts[setting - kNrvSettingContains] = pszValue;
    else
        bRead = pOptions->settings.ReadSize(setting, pszValue, &error);
    if (setting <= kNrvSettingEndsWith && pOptions->firstTrigger.empty())
        pOptions->firstTrigger = kToolSettingNames.apszSetting[setting];
    return bRead || Refuse(pError, error.Describe(kToolSettingNames));
}

// An option that takes a value (optional for --color).
bool TakeValue(int c, const char* pszValue, SOptions* pOptions, std::string* pError)
{
    const ENrvSetting setting = SettingOf(c);
    if (setting != kNrvSettingCount)
        return TakeSetting(setting, pszValue, pOptions, pError);
    switch (c) {
    case 'i': pOptions->pszInput = pszValue; return true;
    case kOptRules: pOptions->pszRules = pszValue; return true;
    case kOptTest: pOptions->pszTest = pszValue; return true;
    case kOptJunit: pOptions->pszJunit = pszValue; return true;
    case kOptColor:
        return ParseColor(pszValue, &pOptions->color) ||
               Refuse(pError, "invalid value '" + Shown(pszValue) + "' for --color (auto, always or never)");
    case 's': {
        TNrvSettingError error;
        return NrvReadSymbology(pszValue, &pOptions->symbology, &error) ||
               Refuse(pError, error.Describe(kToolSettingNames));
    }
    case kOptMaxLine: return NrvReadSize(pszValue, &pOptions->nMaxLine) ||
               Refuse(pError, "invalid size '" + Shown(pszValue) + "' for --max-line (a decimal byte count)");
    default: return NrvReadSize(pszValue, &pOptions->nMaxErrors) ||
               Refuse(pError, "invalid count '" + Shown(pszValue) + "' for --max-errors (a decimal count)");
    }
}

// One option as getopt_long returned it; pszWritten is the argument it came from.
bool TakeOption(int c, const char* pszWritten, std::set<int>* pGiven, SOptions* pOptions, std::string* pError)
{
    if (optarg != nullptr && c != kOptOnlySymbology && !pGiven->insert(c).second)
        return Refuse(pError, "option '" + NameOf(c) + "' given twice (it takes one value)");
    if (c == ':')
        return Refuse(pError, "option '" + Shown(pszWritten) + "' needs a value");
    if (c == '?') {
        // A short option unknown to getopt is in optopt; a long one is the whole argument.
        const char szOption[2] = {static_cast<char>(optopt), '\0'};
        return Refuse(pError, optopt != 0 ? "unknown option '-" + Shown(szOption) + "'"
                                          : "unknown option '" + Shown(pszWritten) + "'");
    }
    return TakeSwitch(c, pOptions) || TakeValue(c, optarg, pOptions, pError);
}

}  // namespace

const TNrvSettingNames kToolSettingNames = {
    {"--min-size", "--max-size", "--only-symbology", "--contains", "--starts-with", "--ends-with", "--max-text",
     "--max-work"},
    "--help"};

bool ParseOptions(int argc, char** argv, SOptions* pOptions, std::string* pError)
{
    opterr = 0;  // our own messages, in our own format
    optind = 1;
    int c;
    std::set<int> given;  // options that take one value, seen so far
    // The leading ':' makes a missing value report ':' rather than '?'.
    while ((c = getopt_long(argc, argv, ":es:i:h", kLongOptions, nullptr)) != -1) {
        if (!TakeOption(c, argv[optind - 1], &given, pOptions, pError))
            return false;
    }
    if ((pOptions->bStats || pOptions->bRequireMatch) && pOptions->pszRules == nullptr)
        return Refuse(pError, std::string(pOptions->bStats ? "--stats" : "--require-match") + " goes with --rules only");
    // With --rules every operand is a scan (with --test, one too many).
    if (optind < argc && pOptions->pszRules == nullptr && pOptions->pszTest == nullptr)
        pOptions->pszExpression = argv[optind++];
    for (; optind < argc; ++optind)
        pOptions->data.push_back(argv[optind]);
    return true;
}

bool ReadTriggerTexts(SOptions* pOptions, std::string* pError)
{
    TNrvSettingError error;
    for (const ENrvSetting setting : {kNrvSettingContains, kNrvSettingStartsWith, kNrvSettingEndsWith}) {
        const char* pszText = pOptions->apszTexts[setting - kNrvSettingContains];
        if (pszText != nullptr && !pOptions->settings.ReadText(setting, pszText, pOptions->bEscapes, &error))
            return Refuse(pError, error.Describe(kToolSettingNames));
    }
    std::vector<TNrvSettingError> contradictions;
    if (!pOptions->settings.Check(&contradictions))
        return Refuse(pError, contradictions[0].Describe(kToolSettingNames) + ": no scan could be edited");
    return true;
}

namespace {

void PrintUsageAndOptions()
{
    fputs("Usage: nrv-edit [OPTIONS] EXPRESSION [DATA...]\n"
          "       nrv-edit [OPTIONS] --rules FILE [DATA...]\n"
          "       nrv-edit [OPTIONS] --test FILE\n"
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
          "      --seed-only          know the eighteen seed commands only, as a host that\n"
          "                           enables no extension set (GS1 commands are unknown)\n"
          "  -h, --help               show this help\n"
          "      --version            show the version\n"
          "\n",
          stdout);
}

// The defaults as the settings and the tool hold them, written nowhere else.
void PrintLimits()
{
    printf("Limits (0: none; a scan that passes one is reported and printed unchanged):\n"
           "      --max-text N         the largest text an edit may build (default %zu)\n"
           "      --max-work N         work per scan byte an edit may do, on top of %zu MiB\n"
           "                           (bytes examined or copied; default %zu)\n"
           "      --max-line N         longer lines are passed through unedited, never read\n"
           "                           whole (default %zu)\n"
           "      --max-errors N       per-scan messages shown; the rest are counted (default %zu)\n"
           "\n",
           CNrvSettings::kDefaultMaximumText, CNrvSettings::kWorkBase >> 20, CNrvSettings::kDefaultWorkPerScanByte,
           SOptions::kDefaultMaxLine, SOptions::kDefaultMaxErrors);
}

void PrintTriggersRulesAndStatus()
{
    fputs("Triggers (a scan that fails one is printed unchanged):\n"
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
          "      --test FILE          run the [[test]] tables of the rules file FILE: print\n"
          "                           each failure, then how many passed and failed\n"
          "                           (with --json, one object per test); no scan is read\n"
          "      --junit REPORT       with --test: also write a JUnit XML report to REPORT\n"
          "\n"
          "Exit status: 0 every scan edited or passed through; 1 some scan's edit failed or\n"
          "passed a limit (that scan is printed unchanged); 2 usage error, an expression\n"
          "that does not parse, a rules file with errors, or a read or write error (the\n"
          "tool stops at the first). With --test: 0 every test passed; 1 a test failed,\n"
          "or the file has none; 2 as above.\n"
          "\n",
          stdout);
}

// Straight from the library's command table, so that the list is whole:
// the seed commands, then each extension set under its own heading.
void PrintCommandNames()
{
    fputs("Commands (--list-commands shows their parameters):\n", stdout);
    size_t nCommands = 0;
    const TNrvCommandInfo* pCommands = NrvGetCommandTable(&nCommands);
    size_t nColumn = 0;
    for (size_t i = 0; i < nCommands; ++i) {
        if (i != 0 && pCommands[i].nSet != pCommands[i - 1].nSet) {
            printf("%s%s commands (an extension set, enabled unless --seed-only):\n", nColumn != 0 ? "\n" : "",
                   NrvCommandSetName(pCommands[i].nSet));
            nColumn = 0;
        }
        const size_t nName = strlen(pCommands[i].pszName);
        if (nColumn != 0 && nColumn + 1 + nName > 78) {
            putchar('\n');
            nColumn = 0;
        }
        nColumn += static_cast<size_t>(printf("%s%s", nColumn == 0 ? "  " : " ", pCommands[i].pszName));
    }
    putchar('\n');
}

void PrintSymbologyNames()
{
    fputs("\nSymbologies (names in any case, or their numbers):\n", stdout);
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

}  // namespace

void PrintHelp()
{
    PrintUsageAndOptions();
    PrintLimits();
    PrintTriggersRulesAndStatus();
    PrintCommandNames();
    PrintSymbologyNames();
}
