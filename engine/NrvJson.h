// The library's diagnostics and explanations as JSON, in one schema for
// every front end (nrv-edit's --check --json and --explain --json, the
// playground's replies):
//
//   parse outcome  {"ok":true}, or {"ok":false,<diagnostic>}
//   diagnostic     "code":C,"name":"NRV_...","offset":O,"length":L,
//                  "command":"..."|null,"message":"..."
//   explanation    {"scan":N,["rule":{"index":I,"name":"..."}|null,]"code":C,
//                  "output":"...","nodes":[<node>...][,"failure":{<diagnostic>}]}
//   node           {"kind":"command"|"text"|"integer","name":"...","offset":O,
//                  "length":L,"code":C|null,"value":"..."|N|null,
//                  ["valueLength":V,]"params":[...][,"gs1":[<element>...]
//                  [,"gs1More":true]]}
//   element        {"ai":"01","title":"GTIN","data":"..."}
//
// "name" of a code is null for a code the library does not define. A
// node's code is null when it was not run, its value null when it was not
// run or failed, and a number for an integer result; a text value is at
// most its first kNrvExplainValueBytes, and "valueLength", there only when
// it is cut, gives its whole length. "gs1" is there for a GS1 command
// whose text held elements before its first fault: at most
// kNrvExplainGs1Elements, "gs1More" when it holds more. "rule" is there only
// for a rule set: null when no rule took the scan. "failure" only when the
// code is negative. A scan left alone by the triggers (code 1) has no nodes.
#ifndef NRV_JSON_H
#define NRV_JSON_H

#include <cstddef>
#include <string>
#include <string_view>

#include "NrvDiagnostics.h"
#include "NrvShownBytes.h"

// One scan as an explanation reports it.
struct TNrvJsonScan {
    unsigned long long nScan = 0;  // from 1
    NRVRESULT nCode = NRV_OK;      // what the edit returned
    std::string_view output;       // the edited data; the scan itself when the edit left it alone
    // For a rule set: the rule that took the scan (from 0), or
    // CNrvRuleSet::kNoRule, and its name.
    bool bRuleSet = false;
    size_t nRule = 0;
    std::string_view ruleName;
};

class CNrvJsonWriter {
public:
    // form: how the bytes of scans, outputs, values and literals are shown.
    // Texts the library writes (messages, names) are shown as bytes in the
    // code-point form, and as kNrvBytesDisplay in the others.
    explicit CNrvJsonWriter(ENrvByteForm form = kNrvBytesCodePoints) : m_Form(form) {}

    // A JSON string of the bytes in the writer's form.
    void AppendBytes(std::string_view bytes, std::string* pOut) const;
    // A JSON string of a text: a message, a name.
    void AppendText(std::string_view text, std::string* pOut) const;
    // A JSON string of text that is valid UTF-8 as it stands: only quotes,
    // backslashes and control bytes escaped.
    static void AppendUtf8(std::string_view text, std::string* pOut);

    void AppendParseOutcome(const TNrvDiagnostic& diagnostic, std::string* pOut) const;
    // A rule of a set (nRule from 0) as {"index":I,"name":"..."}, I from 1;
    // null for CNrvRuleSet::kNoRule.
    void AppendRule(size_t nRule, std::string_view name, std::string* pOut) const;
    // The diagnostic as an object of its own.
    void AppendDiagnostic(const TNrvDiagnostic& diagnostic, std::string* pOut) const;
    void AppendExplanation(const TNrvJsonScan& scan, const TNrvExplanation& explanation, std::string* pOut) const;

private:
    void AppendString(std::string_view bytes, ENrvByteForm form, std::string* pOut) const;
    void AppendDiagnosticFields(const TNrvDiagnostic& diagnostic, std::string* pOut) const;
    void AppendNode(const TNrvExplainNode& node, std::string* pOut) const;

    ENrvByteForm m_Form;
};

#endif  // NRV_JSON_H
