// What an expression does to one scan, node by node, and why an edit fails,
// for the people who write expressions. Nothing here runs unless asked for:
// the profile's Edit is unchanged and pays nothing for it, and every code
// and output reported equals what the profile's Edit gives (triggers aside)
// for the same expression, scan and limits.
//
// Cost. An explanation parses the expression and runs it once, computing
// each node once, under one work budget and the largest text of the limits
// given, exactly as Edit would: it stops where Edit stops, with the same
// code. Its time is the edit's plus a copy of each command's parameter
// values; its memory is the edit's, twice the values of one command's
// parameters, and per node of the expression its place and name (a
// literal's text as written) and at most kNrvExplainValueBytes of its value.
// So under limits an explanation is bounded as the edit it explains is, and
// its size beyond that follows the expression, not the data.
#ifndef NRV_EXPLAIN_H
#define NRV_EXPLAIN_H

#include <cstddef>
#include <string>
#include <vector>

#include "NrvLimits.h"
#include "NrvParseDiagnosis.h"
#include "NrvScanTypes.h"

enum ENrvNodeKind { kNrvNodeCommand, kNrvNodeText, kNrvNodeInteger };

// The most of a node's value an explanation keeps: longer values are cut,
// with their whole length kept beside them.
constexpr size_t kNrvExplainValueBytes = 256;

// The most element strings a GS1 command's node lists.
constexpr size_t kNrvExplainGs1Elements = 32;

// One element string of the text a GS1 command read: its AI, the AI's
// title and the data, as the reader found them.
struct TNrvExplainGs1Element {
    std::string ai;            // "01", "3103"
    const char* pszTitle = "";  // the AI's title in the library's table (UTF-8): "GTIN"
    std::string data;          // at most kNrvExplainValueBytes of it
};

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
    std::string value;                // the text's first bytes, at most kNrvExplainValueBytes;
                                      // an integer's decimal text (an integer literal's as written)
    size_t nValueLength = 0;          // the whole text's length: value is cut when it is longer
    std::vector<TNrvExplainNode> params;
    // For a GS1 command whose parameters ran: the elements of its text, in
    // order, up to the first fault and at most kNrvExplainGs1Elements
    // (bGs1More when there are more).
    std::vector<TNrvExplainGs1Element> gs1;
    bool bGs1More = false;
};

// What an expression does to one scan, node by node.
struct TNrvExplanation {
    NRVRESULT nCode = NRV_OK;             // what Edit returns (triggers aside)
    std::string output;                   // the edited data, whole, when nCode is not negative
    TNrvDiagnostic failure;               // when nCode is negative: which command failed and why
    std::vector<TNrvExplainNode> nodes;   // the root operations, in text order
};

// Parses the expression in a profile that enables nCommandSets (as
// NrvDiagnoseParse) and runs it over one scan (nLength bytes, zero bytes
// allowed) under the limits, recording every node. Triggers are not
// applied. When the expression does not parse, nCode and failure are the
// parse's and nodes is empty.
TNrvExplanation NrvExplain(const char* pszExpression, const char* pData, size_t nLength,
                           const TNrvLimits& limits = TNrvLimits(), unsigned nCommandSets = 0);

// Just the failure of that edit: the command that failed first, its range
// and why (nCode and an empty message when the edit succeeds). It keeps no
// node's value, so its memory is about the edit's own: for the messages of
// failing scans.
TNrvDiagnostic NrvExplainFailure(const char* pszExpression, const char* pData, size_t nLength,
                                 const TNrvLimits& limits = TNrvLimits(), unsigned nCommandSets = 0);

#endif  // NRV_EXPLAIN_H
