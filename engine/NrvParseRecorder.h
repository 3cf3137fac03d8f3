// The parse observer of the diagnostics: it keeps where the parser cut each
// operation from and, when the parse fails, the diagnostic of the failure.
// The parse diagnosis reports the failure; explanations use the places to
// name and place every node they run.
#ifndef NRV_PARSE_RECORDER_H
#define NRV_PARSE_RECORDER_H

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "NrvParseDiagnosis.h"
#include "NrvParseObserver.h"

class CNrvOperation;

struct TNrvTextRange {
    size_t nOffset = 0;
    size_t nLength = 0;
};

// Where the parser took one operation from.
struct TNrvNodePlace {
    CNrvOperation* pOperation = nullptr;
    bool bCommand = false;
    size_t nDepth = 0;                         // 0 for a root operation
    TNrvTextRange range;                       // a literal's text; a command from its '{' through its '}'
    TNrvTextRange name;                        // a command's name as written
    TNrvTextRange parameters;                  // the text between a command's parentheses
    std::vector<TNrvTextRange> parameterTexts;  // that text as cut at its commas
};

// Listens to one parse of one expression (handed to the profile's Parse).
class CNrvParseRecorder : public CNrvParseObserver {
public:
    // nCommandSets: the sets the observed parse knows, for the sentences.
    explicit CNrvParseRecorder(const char* pszExpression, unsigned nCommandSets = 0);
    CNrvParseRecorder(const CNrvParseRecorder&) = delete;
    CNrvParseRecorder& operator=(const CNrvParseRecorder&) = delete;

    void OnCall(const CNrvParsingString& name, const CNrvParsingString& parameters,
                const CNrvParsingString& rest) override;
    void OnCommand(CNrvOperation* pOperation, size_t nDepth) override;
    void OnLiteral(CNrvOperation* pOperation, const CNrvParsingString& text, size_t nDepth) override;
    void OnParameter(CNrvOperation* pOwner, const CNrvParsingString& text) override;
    void OnFailure(NRVRESULT nCode, const CNrvParsingString& at, CNrvOperation* pOperation, bool bTooDeep) override;

    // The diagnostic of the failure the parse stopped on.
    const TNrvDiagnostic& Failure() const { return m_Failure; }
    // Every operation put in a tree, in the order the parser made them.
    const std::vector<TNrvNodePlace>& Nodes() const { return m_Nodes; }
    // The parser announces every operation it puts in a tree, so each one
    // met in a parsed tree has its place.
    const TNrvNodePlace& NodeOf(const CNrvOperation* pOperation) const { return m_Nodes[m_Index.at(pOperation)]; }
    std::string Text(const TNrvTextRange& range) const
    {
        return std::string(m_pszExpression + range.nOffset, range.nLength);
    }

private:
    void Add(const TNrvNodePlace& node);
    TNrvTextRange RangeOf(const CNrvParsingString& window) const;
    void SetRange(size_t nOffset, size_t nLength);
    void DescribeUnknown(const TNrvTextRange& name);
    void DescribeCount(const TNrvTextRange& name, CNrvOperation* pOperation);
    CNrvParsingString ParametersWindow() const;
    std::string Describe(const CNrvOperation* pOperation) const;
    void DescribeMisfit(CNrvOperation* pOperation);
    bool LooksLikeANumber(const TNrvNodePlace& node) const;

    const char* m_pszExpression;
    size_t m_nLength;
    unsigned m_nCommandSets;
    TNrvNodePlace m_Call;  // the last call cut, until its command is appended
    std::vector<TNrvNodePlace> m_Nodes;
    std::unordered_map<const CNrvOperation*, size_t> m_Index;
    TNrvDiagnostic m_Failure;
};

// An operation's parameters, in order.
std::vector<CNrvOperation*> NrvParametersOf(CNrvOperation* pOperation);

#endif  // NRV_PARSE_RECORDER_H
