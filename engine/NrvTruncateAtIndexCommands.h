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

// Each command's operation and factory by the command's name; twins are
// one class, told apart by their rows.
using CNrvOperationTruncateAfterIndex = CNrvOperationTruncateAtIndex;
using CNrvOperationTruncateBeforeIndex = CNrvOperationTruncateAtIndex;
using CNrvOperationFactoryTruncateAfterIndex = CNrvOperationFactoryOf<CNrvOperationTruncateAtIndex>;
using CNrvOperationFactoryTruncateBeforeIndex = CNrvOperationFactoryOf<CNrvOperationTruncateAtIndex>;

#endif  // NRV_TRUNCATE_AT_INDEX_COMMANDS_H
