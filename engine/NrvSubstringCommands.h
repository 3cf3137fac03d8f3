#ifndef NRV_SUBSTRING_COMMANDS_H
#define NRV_SUBSTRING_COMMANDS_H

// Taking a piece of a text by positions or between markers.

#include "NrvOperationBase.h"
#include "NrvOperationDictionary.h"

class CNrvOperationSubstring : public CNrvOperation {
public:
    explicit CNrvOperationSubstring(CNrvDataEditingProfile* pDataEditing) : CNrvOperation(pDataEditing) {}
    size_t GetParameterCount() const override { return 3; }
    bool CheckIfParametersAreCorrect() const override;
    NRVRESULT Run(CNrvOperationResult& Result) const override;
    int GetResultType() const override { return CNrvOperationResult::typeString; }
};
class CNrvOperationFactorySubstring : public CNrvOperationFactoryOf<CNrvOperationSubstring> {};

class CNrvOperationExtract : public CNrvOperation {
public:
    explicit CNrvOperationExtract(CNrvDataEditingProfile* pDataEditing) : CNrvOperation(pDataEditing) {}
    size_t GetParameterCount() const override { return 3; }
    bool CheckIfParametersAreCorrect() const override;
    NRVRESULT Run(CNrvOperationResult& Result) const override;
    int GetResultType() const override { return CNrvOperationResult::typeString; }

private:
    // With bFirst, the index just past the first occurrence of pszSearch in
    // pszInput; otherwise the start of the last one; kNrvIndexNotFound if none.
    int GetOccurrenceIndex(const char* pszInput, const char* pszSearch, bool bFirst) const;
};
class CNrvOperationFactoryExtract : public CNrvOperationFactoryOf<CNrvOperationExtract> {};

#endif  // NRV_SUBSTRING_COMMANDS_H
