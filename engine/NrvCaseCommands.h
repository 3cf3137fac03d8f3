#ifndef NRV_CASE_COMMANDS_H
#define NRV_CASE_COMMANDS_H

// Byte-wise rewriting: letter case and non-printable bytes.

#include "NrvCommand.h"

class CNrvOperationMakeUpperCase : public CNrvCommand<CNrvOperationMakeUpperCase> {
public:
    static constexpr const char* kName = "MakeUpperCase";
    explicit CNrvOperationMakeUpperCase(CNrvDataEditingProfile* pDataEditing) : CNrvCommand(pDataEditing) {}
    NRVRESULT Run(CNrvOperationResult& Result) const override;
};
class CNrvOperationFactoryMakeUpperCase : public CNrvOperationFactoryOf<CNrvOperationMakeUpperCase> {};

class CNrvOperationMakeLowerCase : public CNrvCommand<CNrvOperationMakeLowerCase> {
public:
    static constexpr const char* kName = "MakeLowerCase";
    explicit CNrvOperationMakeLowerCase(CNrvDataEditingProfile* pDataEditing) : CNrvCommand(pDataEditing) {}
    NRVRESULT Run(CNrvOperationResult& Result) const override;
};
class CNrvOperationFactoryMakeLowerCase : public CNrvOperationFactoryOf<CNrvOperationMakeLowerCase> {};

class CNrvOperationReplaceNonPrintableCharacters : public CNrvCommand<CNrvOperationReplaceNonPrintableCharacters> {
public:
    static constexpr const char* kName = "ReplaceNonPrintableCharacters";
    explicit CNrvOperationReplaceNonPrintableCharacters(CNrvDataEditingProfile* pDataEditing) : CNrvCommand(pDataEditing) {}
    NRVRESULT Run(CNrvOperationResult& Result) const override;
};
class CNrvOperationFactoryReplaceNonPrintableCharacters : public CNrvOperationFactoryOf<CNrvOperationReplaceNonPrintableCharacters> {};

#endif  // NRV_CASE_COMMANDS_H
