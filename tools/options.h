// The command line of nrv-edit.
#ifndef NRV_EDIT_OPTIONS_H
#define NRV_EDIT_OPTIONS_H

#include <cstddef>
#include <string>
#include <vector>

#include "NrvScanTypes.h"
#include "NrvSettings.h"

enum EColor { kColorAuto, kColorAlways, kColorNever };

// The trigger and limit options as the settings' messages name them.
extern const TNrvSettingNames kToolSettingNames;

struct SOptions {
    bool bEscapes = false;
    bool bCheck = false;
    bool bTrace = false;
    bool bListCommands = false;
    bool bExplain = false;  // print each scan's explain tree instead of the edited line
    bool bJson = false;     // --check and --explain answer in JSON
    EColor color = kColorAuto;
    bool bHelp = false;
    bool bVersion = false;
    const char* pszInput = nullptr;  // -i FILE; null or "-" is standard input
    ENrvScanSymbologyID symbology = kNrvScanSymbologyNotSpecified;

    // The triggers and limits. The trigger texts are read into them only
    // once every option is known (ReadTriggerTexts), since -e may follow them.
    CNrvSettings settings;
    const char* apszTexts[3] = {nullptr, nullptr, nullptr};  // --contains, --starts-with, --ends-with as given
    std::string firstTrigger;  // the first trigger option given ("--min-size"), for --rules to refuse

    // --rules FILE takes the place of the expression (editor.h).
    const char* pszRules = nullptr;
    bool bStats = false;
    bool bRequireMatch = false;

    // --test FILE runs the tests of a rules file instead of editing scans;
    // --junit FILE writes their report there too.
    const char* pszTest = nullptr;
    const char* pszJunit = nullptr;

    // What the tool itself bounds (0: no bound): the longest line read as a
    // scan, and the per-scan messages shown.
    static constexpr size_t kDefaultMaxLine = 4u << 20;
    static constexpr size_t kDefaultMaxErrors = 100;
    size_t nMaxLine = kDefaultMaxLine;
    size_t nMaxErrors = kDefaultMaxErrors;

    const char* pszExpression = nullptr;
    std::vector<char*> data;  // DATA arguments, as given
};

// Fills *pOptions from argv. On a usage error returns false with the
// message (without the program name) in *pError.
bool ParseOptions(int argc, char** argv, SOptions* pOptions, std::string* pError);

// Reads the trigger texts (through the escapes with -e) and checks that the
// triggers do not contradict each other. False with the message on a usage error.
bool ReadTriggerTexts(SOptions* pOptions, std::string* pError);

void PrintHelp();

#endif  // NRV_EDIT_OPTIONS_H
