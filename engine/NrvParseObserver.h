// A listener the parser tells what it makes and where, for the diagnostics
// that explain an expression. It is handed to the parse that it observes
// (CNrvDataEditingProfile::Parse, CNrvOperation::Parse) and is absent from
// an ordinary parse, which pays only the test for it. Every window handed
// over lies on the text given to the parse, so its GetString() minus that
// text is its offset.
#ifndef NRV_PARSE_OBSERVER_H
#define NRV_PARSE_OBSERVER_H

#include <cstddef>

#include "NrvParsingString.h"
#include "NrvScanTypes.h"

class CNrvOperation;

class CNrvParseObserver {
public:
    virtual ~CNrvParseObserver() {}

    // A command piece was cut into its name and its parameter text; rest is
    // what follows the parameter text, and ends where the piece ends.
    virtual void OnCall(const CNrvParsingString& name, const CNrvParsingString& parameters,
                        const CNrvParsingString& rest) = 0;
    // The command of the last call was appended to a list at nDepth (0 for
    // the root list).
    virtual void OnCommand(CNrvOperation* pOperation, size_t nDepth) = 0;
    // A literal made from text was appended to a list at nDepth.
    virtual void OnLiteral(CNrvOperation* pOperation, const CNrvParsingString& text, size_t nDepth) = 0;
    // One parameter text of pOwner is about to be parsed into its list.
    virtual void OnParameter(CNrvOperation* pOwner, const CNrvParsingString& text) = 0;
    // The parse fails with nCode at this point:
    //   NRV_ERR_UNKNOWN_COMMAND   at is the name, pOperation null;
    //   NRV_ERR_PARAMETER_COUNT   at is the name, pOperation the command
    //                             (deleted right after this call);
    //   NRV_ERR_INVALID_PARAMETER at is the piece, pOperation the command
    //                             whose parameters do not fit;
    //   NRV_ERR_SYNTAX            at is the command piece that has no
    //                             closing delimiter, or (bTooDeep) the piece
    //                             whose nesting passes the limit.
    virtual void OnFailure(NRVRESULT nCode, const CNrvParsingString& at, CNrvOperation* pOperation,
                           bool bTooDeep) = 0;
};

#endif  // NRV_PARSE_OBSERVER_H
