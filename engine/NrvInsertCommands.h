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

// Each command's operation and factory by the command's name; twins are
// one class, told apart by their rows.
using CNrvOperationInsertAfterIndex = CNrvOperationInsertAtIndex;
using CNrvOperationInsertBeforeIndex = CNrvOperationInsertAtIndex;
using CNrvOperationFactoryInsertAfterIndex = CNrvOperationFactoryOf<CNrvOperationInsertAtIndex>;
using CNrvOperationFactoryInsertBeforeIndex = CNrvOperationFactoryOf<CNrvOperationInsertAtIndex>;

#endif  // NRV_INSERT_COMMANDS_H
