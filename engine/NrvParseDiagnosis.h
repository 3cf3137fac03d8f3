// Where and why an expression does not parse, for the people who write
// expressions. Nothing here runs unless asked for: the profile's Parse is
// unchanged and pays nothing for it, and every code reported equals what
// the profile's Parse returns for the same expression.
#ifndef NRV_PARSE_DIAGNOSIS_H
#define NRV_PARSE_DIAGNOSIS_H

#include <cstddef>
#include <string>

#include "NrvResultCodes.h"
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

// Parses the expression as CNrvDataEditingProfile::Parse does in a profile
// that enables the command sets nCommandSets (kNrvCommandSetGs1, ...; none
// by default, as a profile), and explains the outcome (nCode NRV_OK and an
// empty message when it parses). Its memory and time are those of the
// parse, plus the sentence: an unknown name is compared only with the
// commands the profile knows of about its length, and the name of a command
// whose set is not enabled is said to be one, with how to enable it.
TNrvDiagnostic NrvDiagnoseParse(const char* pszExpression, unsigned nCommandSets = 0);

#endif  // NRV_PARSE_DIAGNOSIS_H
