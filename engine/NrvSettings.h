// A profile's triggers and limits as the front ends take them from people
// (the tool's options, a rules file's keys, the page's fields): the texts
// decoded, the sizes and symbologies read, contradictions refused, and the
// defaults every front end documents, held once. What it refuses is said in
// a sentence that names each setting the way the front end calls it.
#ifndef NRV_SETTINGS_H
#define NRV_SETTINGS_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "NrvDataEditingProfile.h"
#include "NrvDiagnostics.h"
#include "NrvScanTypes.h"

enum ENrvSetting {
    kNrvSettingMinimumSize,  // trigger: the smallest scan edited, in bytes (0: unset)
    kNrvSettingMaximumSize,  // trigger: the largest scan edited (0: unset)
    kNrvSettingSymbologies,  // trigger: the symbologies edited (none: every one)
    kNrvSettingContains,     // trigger texts (empty: unset)
    kNrvSettingStartsWith,
    kNrvSettingEndsWith,
    kNrvSettingMaximumText,  // limit: the largest text an edit may build (0: none)
    kNrvSettingMaximumWork,  // limit: work per scan byte, on top of kWorkBase (0: no budget)
    kNrvSettingCount
};

// How a front end calls each setting in its messages ("--min-size",
// "'min-size'", "minimum size"), and where it lists the symbology names
// ("--help"; null when it needs no hint).
struct TNrvSettingNames {
    const char* apszSetting[kNrvSettingCount];
    const char* pszSymbologyList;
};

// What is wrong with one setting, or with two that contradict each other.
struct TNrvSettingError {
    enum EProblem {
        kBadEscape,           // detail says which escape
        kZeroByte,            // a trigger text cannot hold one
        kNotASize,            // not a decimal byte count, or negative
        kTooLarge,            // does not fit a size here
        kUnknownSymbology,
        kMinimumAboveMaximum, // contradictions: no scan could be edited
        kTextAboveMaximum,
    };
    EProblem problem = kNotASize;
    ENrvSetting setting = kNrvSettingMinimumSize;  // the one at fault: where to point
    std::string shown;   // the value as a message shows it: a text quoted, a number bare
    std::string detail;  // what is wrong with an escape; what a size must be
    size_t nValue = 0;  // a contradiction's sizes: the text's length or the minimum,
    size_t nLimit = 0;  // and the maximum

    // True when no setting is wrong alone, but no scan could ever be edited.
    bool CannotMatch() const { return problem == kMinimumAboveMaximum || problem == kTextAboveMaximum; }
    // One sentence (without a final stop) with the settings named as the
    // front end calls them, values shown as kNrvBytesMessage.
    std::string Describe(const TNrvSettingNames& names) const;
};

// Decimal digits only, and a value that fits a size: "", "+1", "1e3", "12k"
// and "-1" are not sizes. False leaves *pnSize as it was.
bool NrvReadSize(std::string_view text, size_t* pnSize);

class CNrvSettings {
public:
    // The defaults of every front end: the largest text an edit may build,
    // and its work budget, kWorkBase and kDefaultWorkPerScanByte per scan byte.
    static constexpr size_t kDefaultMaximumText = 16u << 20;
    static constexpr size_t kWorkBase = 64u << 20;
    static constexpr size_t kDefaultWorkPerScanByte = 4096;

    // Each reader sets one setting and returns true, or returns false with
    // *pError filled and the setting as it was.
    // A size as typed: setting is one of the two sizes or the two limits.
    bool ReadSize(ENrvSetting setting, std::string_view text, TNrvSettingError* pError);
    // A size given as an integer (a rules file's): 0 or more, and fitting.
    bool SetSize(ENrvSetting setting, long long nValue, TNrvSettingError* pError);
    // A trigger text, through the escapes \\ \r \n \t \xHH when bEscapes;
    // a zero byte is refused either way (the profile's texts end at one).
    bool ReadText(ENrvSetting setting, std::string_view text, bool bEscapes, TNrvSettingError* pError);
    // Adds a symbology to the trigger: a name in any case, or a number.
    bool AddSymbology(std::string_view text, TNrvSettingError* pError);
    bool AddSymbology(long long nId, TNrvSettingError* pError);

    // The contradictions among the triggers (minimum above maximum, a text
    // longer than the maximum), appended to *pErrors; false when any.
    bool Check(std::vector<TNrvSettingError>* pErrors) const;

    // The command sets a profile knows besides the seed commands: every
    // front end enables them all by default (kNrvCommandSetsAll), and turns
    // them off to check expressions against a host that keeps the eighteen
    // (nrv-edit --seed-only, a rule's seed-only key, the page's switch).
    // Bits outside kNrvCommandSetsAll are dropped.
    void SetCommandSets(unsigned nSets) { m_nCommandSets = nSets & kNrvCommandSetsAll; }
    unsigned CommandSets() const { return m_nCommandSets; }

    // Replaces the profile's triggers, limits and command sets with these
    // (the sets take effect at its next Parse). Allocation failure throws
    // std::bad_alloc, the profile's triggers then partly set.
    void Apply(CNrvDataEditingProfile* pProfile) const;
    // The limits alone, as a profile and NrvExplain take them.
    void ApplyLimits(CNrvDataEditingProfile* pProfile) const;
    TNrvLimits Limits() const;

    size_t Size(ENrvSetting setting) const;  // a size or a limit
    const std::string& Text(ENrvSetting setting) const;  // a trigger text, decoded
    const std::vector<int>& Symbologies() const { return m_Symbologies; }

private:
    // The member of a size setting; the maximum work for any other.
    static size_t CNrvSettings::*SizeMember(ENrvSetting setting);

    size_t m_nMinimumSize = 0;
    size_t m_nMaximumSize = 0;
    std::vector<int> m_Symbologies;
    std::string m_Texts[3];  // contains, starts with, ends with
    size_t m_nMaximumText = kDefaultMaximumText;
    size_t m_nMaximumWork = kDefaultWorkPerScanByte;
    unsigned m_nCommandSets = kNrvCommandSetsAll;
};

// Reads a symbology by name (any case) or number, for the scans'
// symbology as well as for the triggers.
bool NrvReadSymbology(std::string_view text, ENrvScanSymbologyID* pId, TNrvSettingError* pError);

#endif  // NRV_SETTINGS_H
