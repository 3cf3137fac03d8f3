// The playground's work in plain C++: what the page's binding (binding.cpp)
// exports to JavaScript, without the export. Every text comes with its
// length, so a zero byte is a byte like any other, and every reply is a
// JSON text. Diagnostics and explanations are in the library's JSON schema
// (NrvJson.h); bytes are shown with the escapes of nrv-edit -e when the
// page's escapes are on, and in the display form otherwise.
#ifndef NRV_PLAYGROUND_H
#define NRV_PLAYGROUND_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "NrvDataEditingProfile.h"
#include "NrvSettings.h"

// The lines of a text as nrv-edit reads a file: cut at '\n', a last line
// without one counts, an empty last line does not.
std::vector<std::string_view> NrvSplitLines(std::string_view text);

// A dropped file as the scans box shows it. Valid UTF-8 whose only control
// bytes are '\t' and '\n' stays as it is, unless the escapes are on; any
// other file becomes one escaped line per line, each ended by '\n' (so an
// empty last line still counts), and switches the escapes on.
std::string NrvScansOfFile(std::string_view bytes, bool bEscapes, bool* pbEscapes);

// The page's fields as the settings' messages name them.
extern const TNrvSettingNames kPageSettingNames;

class CNrvPlayground {
public:
    // Edits run under the default limits of every front end, with every
    // command set enabled.
    CNrvPlayground();

    // The page's switch: the eighteen seed commands only (a host that
    // enables no extension set), or every set. Parses the last expression
    // again and replies with its parse outcome, as Parse does.
    std::string SetSeedOnly(bool bSeedOnly);

    // Parses the expression for the next edits. Replies with its parse
    // outcome; an expression with a zero byte is refused
    // (NRV_ERR_INVALID_PARAMETER), as the rules files refuse it.
    std::string Parse(std::string_view expression);

    // Sets the triggers for the next edits from the page's fields: sizes as
    // typed (empty: unset), symbologies by number or name separated by
    // commas, the texts through the escapes when bEscapes. Replies
    // {"ok":true}, or {"ok":false,"setting":"starts with","message":"..."}
    // for the first one refused; the scans are then not edited.
    std::string SetTriggers(std::string_view minimumSize, std::string_view maximumSize, std::string_view symbologies,
                            std::string_view contains, std::string_view startsWith, std::string_view endsWith,
                            bool bEscapes);

    // Reads the scans for the next edits, one per line (NrvSplitLines),
    // through the escapes when bEscapes. Replies with their number.
    std::string SetScans(std::string_view text, bool bEscapes);

    // Edits nCount scans from nFirst on (clamped to the scans read). Replies
    // {"rows":[row, ...]}, a row [code, shown] and for a failed edit a third
    // item, the failure's diagnostic. A line whose escapes are malformed is
    // [null, the line as written, why]. Without an expression that parses,
    // or else with triggers refused, every row has the code that says so
    // (the parse's, or NRV_ERR_INVALID_PARAMETER) and the scan unchanged.
    std::string EditScans(int nSymbology, size_t nFirst, size_t nCount);

    // What the expression does to one scan line (scan number nScan), node by
    // node, triggers not applied: the library's explanation, or
    // {"line":false,"message":"..."} when the line's escapes are malformed.
    std::string Explain(std::string_view expression, std::string_view line, bool bEscapes, unsigned long long nScan);

    // The command table: [{"name","summary","result","set","parameters":[{"name","kind"}]}],
    // "set" null for a seed command and the set's name ("GS1") for an extension's.
    static std::string Commands();
    // The symbology names, indexed by identifier.
    static std::string Symbologies();
    // {"escapes":true|false,"text":"..."}: the dropped file (NrvScansOfFile).
    static std::string ReadFile(std::string_view bytes, bool bEscapes);

private:
    struct SScan {
        std::string bytes;  // the scan, or the line as written when it cannot be read
        bool bRead = true;
        std::string problem;
    };

    CNrvDataEditingProfile m_Profile;
    CNrvSettings m_Settings;
    std::string m_Expression;
    NRVRESULT m_ParseResult = NRV_OK;
    bool m_bTriggersRefused = false;
    std::vector<SScan> m_Scans;
    bool m_bScansEscaped = false;
};

#endif  // NRV_PLAYGROUND_H
