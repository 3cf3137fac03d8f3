// Diagnostics for the people who write expressions: where and why an
// expression does not parse, why an edit fails, and what every node of an
// expression yields for one scan. Nothing here runs unless asked for: the
// profile's Parse and Edit are unchanged and pay nothing for it. Every code
// reported here equals what the profile's Parse or Edit returns for the same
// expression and scan.
#ifndef NRV_DIAGNOSTICS_H
#define NRV_DIAGNOSTICS_H

#include <cstddef>
#include <string>
#include <vector>

#include "NrvScanTypes.h"

// The outcome of a parse or an edit, for a person. The range is the
// culprit's: an unknown name as written (the '{' when the name is empty),
// the name of a command given the wrong number of parameters or whose Run
// failed, the parameter that does not fit (or the whole parameter text), or
// the '{' without a partner or nested one level too deep.
struct TNrvDiagnostic {
    NRVRESULT nCode = NRV_OK;  // what Parse (or Edit) returned
    size_t nOffset = 0;        // the culprit's byte range in the expression
    size_t nLength = 0;
    std::string command;       // the command concerned; empty when none
    // One sentence; empty when nothing went wrong. A parse's names the
    // command itself; a failed Run's does not ("count 20 is not less than
    // the length 3 of the text"), since command holds it.
    std::string message;
};

enum ENrvNodeKind { kNrvNodeCommand, kNrvNodeText, kNrvNodeInteger };

// One operation of a parsed expression and what its run gave for one scan.
struct TNrvExplainNode {
    ENrvNodeKind kind = kNrvNodeText;
    std::string name;                 // a command's name; a literal's text as written
    size_t nOffset = 0;               // the node's byte range in the expression: a
                                      // command's from its '{' through its '}'
    size_t nLength = 0;
    bool bRun = false;                // false: not run, because a node before it failed
    NRVRESULT nCode = NRV_OK;         // the code its run returned (when bRun)
    bool bInteger = false;            // the value is an integer, not a text
    int nInteger = 0;                 // the integer, when bInteger
    std::string value;                // the text's bytes; an integer's decimal text
                                      // (an integer literal's as written)
    std::vector<TNrvExplainNode> params;
};

// What an expression does to one scan, node by node.
struct TNrvExplanation {
    NRVRESULT nCode = NRV_OK;             // what Edit returns (triggers aside)
    std::string output;                   // the edited data, when nCode is not negative
    TNrvDiagnostic failure;               // when nCode is negative: which command failed and why
    std::vector<TNrvExplainNode> nodes;   // the root operations, in text order
};

// Parses the expression as CNrvDataEditingProfile::Parse does and explains
// the outcome (nCode NRV_OK and an empty message when it parses).
TNrvDiagnostic NrvDiagnoseParse(const char* pszExpression);

// The limits an explanation runs under, as a profile's
// WriteLimitMaximumTextSize and WriteLimitWorkBudget give them; 0 is none.
struct TNrvLimits {
    size_t nMaximumTextSize = 0;
    size_t nWorkBase = 0;
    size_t nWorkPerScanByte = 0;
};

// Parses the expression and runs it over one scan (nLength bytes, zero
// bytes allowed) with the engine's own operations, recording every node's
// value; code and output are those of the profile's Edit. Triggers are not
// applied. When the expression does not parse, nCode and failure are the
// parse's and nodes is empty. Each node runs its own subtree again, so the
// cost grows with the depth of nesting: ask only when something failed.
// Under limits, the edit and each node's run get the whole work budget, so
// an expression is explained in bounded time wherever Edit with the same
// limits runs in bounded time.
TNrvExplanation NrvExplain(const char* pszExpression, const char* pData, size_t nLength,
                           const TNrvLimits& limits = TNrvLimits());

// The name of a code the library defines ("NRV_ERR_SYNTAX"), or null.
const char* NrvResultCodeName(NRVRESULT nCode);
// What such a code means, in a few words, or null.
const char* NrvResultCodeMeaning(NRVRESULT nCode);
// The codes the library defines, one by one from nIndex 0 (NRV_OK first,
// then NRV_OK_NOT_TRIGGERED, then the errors): false past the last.
bool NrvResultCodeAt(size_t nIndex, NRVRESULT* pnCode);

#endif  // NRV_DIAGNOSTICS_H
