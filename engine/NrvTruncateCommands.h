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

// Each command's operation and factory by the command's name; twins are
// one class, told apart by their rows.
using CNrvOperationTruncateFromBeginning = CNrvOperationTruncate;
using CNrvOperationTruncateFromEnd = CNrvOperationTruncate;
using CNrvOperationFactoryTruncateFromBeginning = CNrvOperationFactoryOf<CNrvOperationTruncate>;
using CNrvOperationFactoryTruncateFromEnd = CNrvOperationFactoryOf<CNrvOperationTruncate>;

#endif  // NRV_TRUNCATE_COMMANDS_H
