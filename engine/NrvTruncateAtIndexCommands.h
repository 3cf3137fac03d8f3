#ifndef NRV_TRUNCATE_AT_INDEX_COMMANDS_H
#define NRV_TRUNCATE_AT_INDEX_COMMANDS_H

// TruncateAfterIndex and TruncateBeforeIndex: a text cut at an index plus
// an offset, keeping what lies before the cut or from it on.

#include "NrvCommand.h"

class CNrvOperationTruncateAtIndex : public CNrvCommand<CNrvOperationTruncateAtIndex> {
public:
    enum { kKeepBefore, kKeepFrom };  // the row's variant: After keeps before the cut, Before from it
    using CNrvCommand::CNrvCommand;
    NRVRESULT Compute(CNrvOperationResult& Result, CNrvOperationResult& Text, CNrvOperationResult& Index,
                      CNrvOperationResult& Offset) const;
    std::string DescribeFailure(NRVRESULT nCode, CNrvOperationResult* pParameters) const override;
};

#endif  // NRV_TRUNCATE_AT_INDEX_COMMANDS_H
