#ifndef NRV_CASE_COMMANDS_H
#define NRV_CASE_COMMANDS_H

// Byte-wise rewriting: letter case (MakeUpperCase, MakeLowerCase) and
// non-printable bytes (ReplaceNonPrintableCharacters).

#include "NrvCommand.h"

class CNrvOperationMakeCase : public CNrvCommand<CNrvOperationMakeCase> {
public:
    enum { kUpper, kLower };  // the row's variant
    using CNrvCommand::CNrvCommand;
    NRVRESULT Compute(CNrvOperationResult& Result, CNrvOperationResult& Text) const;
};

class CNrvOperationReplaceNonPrintableCharacters : public CNrvCommand<CNrvOperationReplaceNonPrintableCharacters> {
public:
    using CNrvCommand::CNrvCommand;
    NRVRESULT Compute(CNrvOperationResult& Result, CNrvOperationResult& Text, CNrvOperationResult& Replacement) const;
};

#endif  // NRV_CASE_COMMANDS_H
