// The command line of nrv-edit.
#ifndef NRV_EDIT_OPTIONS_H
#define NRV_EDIT_OPTIONS_H

#include <cstddef>
#include <string>
#include <vector>

#include "NrvDiagnostics.h"
#include "NrvScanTypes.h"

enum EColor { kColorAuto, kColorAlways, kColorNever };

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

    // Triggers, as given (texts not yet unescaped); 0 and null mean unset.
    size_t nMinSize = 0;
    size_t nMaxSize = 0;
    std::vector<ENrvScanSymbologyID> onlySymbologies;
    const char* pszContains = nullptr;
    const char* pszStartsWith = nullptr;
    const char* pszEndsWith = nullptr;

    // --rules FILE takes the place of the expression (rules_mode.h).
    const char* pszRules = nullptr;
    bool bStats = false;
    bool bRequireMatch = false;

    // What one scan may cost (0: no limit): the largest text an edit may
    // build, the work budget per scan byte (on top of kWorkBase), the
    // longest line read as a scan, and the per-scan messages shown.
    static constexpr size_t kWorkBase = 64u << 20;
    // The limits above as the library takes them.
    TNrvLimits Limits() const
    {
        TNrvLimits limits;
        limits.nMaximumTextSize = nMaxText;
        limits.nWorkBase = nMaxWork != 0 ? kWorkBase : 0;
        limits.nWorkPerScanByte = nMaxWork;
        return limits;
    }
    size_t nMaxText = 16u << 20;
    size_t nMaxWork = 4096;
    size_t nMaxLine = 4u << 20;
    size_t nMaxErrors = 100;

    const char* pszExpression = nullptr;
    std::vector<char*> data;  // DATA arguments, as given
};

// Fills *pOptions from argv. On a usage error returns false with the
// message (without the program name) in *pError.
bool ParseOptions(int argc, char** argv, SOptions* pOptions, std::string* pError);

void PrintHelp();

#endif  // NRV_EDIT_OPTIONS_H
