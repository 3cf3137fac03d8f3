#ifndef NRV_INSERT_COMMANDS_H
#define NRV_INSERT_COMMANDS_H

// InsertAfterIndex and InsertBeforeIndex: a text inserted behind or in
// front of the byte at an index.

#include "NrvCommand.h"

class CNrvOperationInsertAtIndex : public CNrvCommand<CNrvOperationInsertAtIndex> {
public:
    enum { kAfter, kBefore };  // the row's variant
    using CNrvCommand::CNrvCommand;
    // All three parameters run before the index is looked at: a failing
    // insert fails the command even when the index says to leave the text.
    NRVRESULT Compute(CNrvOperationResult& Result, CNrvOperationResult& Text, CNrvOperationResult& Index,
                      CNrvOperationResult& Insert) const;
    std::string DescribeFailure(NRVRESULT nCode, CNrvOperationResult* pParameters) const override;
};

#endif  // NRV_INSERT_COMMANDS_H
