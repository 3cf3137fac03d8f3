#ifndef NRV_FIND_COMMANDS_H
#define NRV_FIND_COMMANDS_H

// Finding a text forwards or backwards from an index; they yield positions.

#include "NrvCommand.h"

class CNrvOperationFindFirstFromIndex : public CNrvCommand<CNrvOperationFindFirstFromIndex> {
public:
    static constexpr const char* kName = "FindFirstFromIndex";
    explicit CNrvOperationFindFirstFromIndex(CNrvDataEditingProfile* pDataEditing) : CNrvCommand(pDataEditing) {}
    NRVRESULT Run(CNrvOperationResult& Result) const override;
    std::string DescribeFailure(NRVRESULT nCode, CNrvOperationResult* pParameters) const override;
};
class CNrvOperationFactoryFindFirstFromIndex : public CNrvOperationFactoryOf<CNrvOperationFindFirstFromIndex> {};

class CNrvOperationFindLastFromIndex : public CNrvCommand<CNrvOperationFindLastFromIndex> {
public:
    static constexpr const char* kName = "FindLastFromIndex";
    explicit CNrvOperationFindLastFromIndex(CNrvDataEditingProfile* pDataEditing) : CNrvCommand(pDataEditing) {}
    NRVRESULT Run(CNrvOperationResult& Result) const override;
    std::string DescribeFailure(NRVRESULT nCode, CNrvOperationResult* pParameters) const override;

private:
    // Backward search: see Run.
    int FindIndex(CNrvOperationResult& OriginalString, size_t fromIndex, CNrvOperationResult& SearchString) const;
};
class CNrvOperationFactoryFindLastFromIndex : public CNrvOperationFactoryOf<CNrvOperationFindLastFromIndex> {};

#endif  // NRV_FIND_COMMANDS_H
