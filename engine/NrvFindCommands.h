#ifndef NRV_FIND_COMMANDS_H
#define NRV_FIND_COMMANDS_H

// FindFirstFromIndex and FindLastFromIndex: where a text occurs, searched
// forwards or backwards from an index; they yield positions.

#include "NrvCommand.h"

class CNrvOperationFindFromIndex : public CNrvCommand<CNrvOperationFindFromIndex> {
public:
    enum { kFirst, kLast };  // the row's variant
    using CNrvCommand::CNrvCommand;
    NRVRESULT Compute(CNrvOperationResult& Result, CNrvOperationResult& Text, CNrvOperationResult& Start,
                      CNrvOperationResult& Search, CNrvOperationResult& Offset) const;
    std::string DescribeFailure(NRVRESULT nCode, CNrvOperationResult* pParameters) const override;

private:
    // The body for one variant, so that each is compiled for its own.
    template <bool bLast>
    NRVRESULT Find(CNrvOperationResult& Result, CNrvOperationResult& Text, size_t nStart, CNrvOperationResult& Search,
                   CNrvOperationResult& Offset) const;
    // The backward search of FindLastFromIndex: see its definition.
    static int FindLast(CNrvOperationResult& Text, size_t nStart, CNrvOperationResult& Search);
};

// Each command's operation and factory by the command's name; twins are
// one class, told apart by their rows.
using CNrvOperationFindFirstFromIndex = CNrvOperationFindFromIndex;
using CNrvOperationFindLastFromIndex = CNrvOperationFindFromIndex;
using CNrvOperationFactoryFindFirstFromIndex = CNrvOperationFactoryOf<CNrvOperationFindFromIndex>;
using CNrvOperationFactoryFindLastFromIndex = CNrvOperationFactoryOf<CNrvOperationFindFromIndex>;

#endif  // NRV_FIND_COMMANDS_H
