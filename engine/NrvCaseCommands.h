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

// Each command's operation and factory by the command's name; twins are
// one class, told apart by their rows.
using CNrvOperationMakeUpperCase = CNrvOperationMakeCase;
using CNrvOperationMakeLowerCase = CNrvOperationMakeCase;
using CNrvOperationFactoryMakeUpperCase = CNrvOperationFactoryOf<CNrvOperationMakeCase>;
using CNrvOperationFactoryMakeLowerCase = CNrvOperationFactoryOf<CNrvOperationMakeCase>;
using CNrvOperationFactoryReplaceNonPrintableCharacters = CNrvOperationFactoryOf<CNrvOperationReplaceNonPrintableCharacters>;

#endif  // NRV_CASE_COMMANDS_H
