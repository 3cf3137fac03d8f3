#ifndef NRV_SUBSTRING_COMMANDS_H
#define NRV_SUBSTRING_COMMANDS_H

// Taking a piece of a text by positions or between markers.

#include "NrvCommand.h"

class CNrvOperationSubstring : public CNrvCommand<CNrvOperationSubstring> {
public:
    static constexpr const char* kName = "Substring";
    explicit CNrvOperationSubstring(CNrvDataEditingProfile* pDataEditing) : CNrvCommand(pDataEditing) {}
    NRVRESULT Run(CNrvOperationResult& Result) const override;
};
class CNrvOperationFactorySubstring : public CNrvOperationFactoryOf<CNrvOperationSubstring> {};

class CNrvOperationExtract : public CNrvCommand<CNrvOperationExtract> {
public:
    static constexpr const char* kName = "Extract";
    explicit CNrvOperationExtract(CNrvDataEditingProfile* pDataEditing) : CNrvCommand(pDataEditing) {}
    NRVRESULT Run(CNrvOperationResult& Result) const override;
    std::string DescribeFailure(NRVRESULT nCode, CNrvOperationResult* pParameters) const override;

private:
    // With bFirst, the index just past the first occurrence of pszSearch in
    // pszInput; otherwise the start of the last one; kNrvIndexNotFound if none.
    int GetOccurrenceIndex(const char* pszInput, const char* pszSearch, bool bFirst) const;
};
class CNrvOperationFactoryExtract : public CNrvOperationFactoryOf<CNrvOperationExtract> {};

#endif  // NRV_SUBSTRING_COMMANDS_H
