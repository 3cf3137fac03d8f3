#ifndef NRV_CASE_COMMANDS_H
#define NRV_CASE_COMMANDS_H

// Byte-wise rewriting: letter case and non-printable bytes.

#include "NrvOperationBase.h"
#include "NrvOperationDictionary.h"

class CNrvOperationMakeUpperCase : public CNrvOperation {
public:
    explicit CNrvOperationMakeUpperCase(CNrvDataEditingProfile* pDataEditing) : CNrvOperation(pDataEditing) {}
    size_t GetParameterCount() const override { return 1; }
    bool CheckIfParametersAreCorrect() const override;
    NRVRESULT Run(CNrvOperationResult& Result) const override;
    int GetResultType() const override { return CNrvOperationResult::typeString; }
};
class CNrvOperationFactoryMakeUpperCase : public CNrvOperationFactoryOf<CNrvOperationMakeUpperCase> {};

class CNrvOperationMakeLowerCase : public CNrvOperation {
public:
    explicit CNrvOperationMakeLowerCase(CNrvDataEditingProfile* pDataEditing) : CNrvOperation(pDataEditing) {}
    size_t GetParameterCount() const override { return 1; }
    bool CheckIfParametersAreCorrect() const override;
    NRVRESULT Run(CNrvOperationResult& Result) const override;
    int GetResultType() const override { return CNrvOperationResult::typeString; }
};
class CNrvOperationFactoryMakeLowerCase : public CNrvOperationFactoryOf<CNrvOperationMakeLowerCase> {};

class CNrvOperationReplaceNonPrintableCharacters : public CNrvOperation {
public:
    explicit CNrvOperationReplaceNonPrintableCharacters(CNrvDataEditingProfile* pDataEditing) : CNrvOperation(pDataEditing) {}
    size_t GetParameterCount() const override { return 2; }
    bool CheckIfParametersAreCorrect() const override;
    NRVRESULT Run(CNrvOperationResult& Result) const override;
    int GetResultType() const override { return CNrvOperationResult::typeString; }
};
class CNrvOperationFactoryReplaceNonPrintableCharacters : public CNrvOperationFactoryOf<CNrvOperationReplaceNonPrintableCharacters> {};

#endif  // NRV_CASE_COMMANDS_H
