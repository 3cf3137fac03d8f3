#ifndef NRV_TRUNCATE_COMMANDS_H
#define NRV_TRUNCATE_COMMANDS_H

// TruncateFromBeginning and TruncateFromEnd: a count of bytes cut from
// either end of a text.

#include "NrvCommand.h"

class CNrvOperationTruncate : public CNrvCommand<CNrvOperationTruncate> {
public:
    enum { kFromBeginning, kFromEnd };  // the row's variant
    using CNrvCommand::CNrvCommand;
    NRVRESULT Compute(CNrvOperationResult& Result, CNrvOperationResult& Text, CNrvOperationResult& Count) const;
    std::string DescribeFailure(NRVRESULT nCode, CNrvOperationResult* pParameters) const override;
};

#endif  // NRV_TRUNCATE_COMMANDS_H
