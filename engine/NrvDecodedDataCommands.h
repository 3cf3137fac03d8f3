#ifndef NRV_DECODED_DATA_COMMANDS_H
#define NRV_DECODED_DATA_COMMANDS_H

// DecodedData and DecodedDataWithoutTrailer: the scan's bytes, whole or
// without the control bytes at its end.

#include "NrvCommand.h"

class CNrvOperationDecodedData : public CNrvCommand<CNrvOperationDecodedData> {
public:
    enum { kWhole, kWithoutTrailer };  // the row's variant
    using CNrvCommand::CNrvCommand;
    NRVRESULT Compute(CNrvOperationResult& Result) const;
};

// Each command's operation and factory by the command's name; twins are
// one class, told apart by their rows.
using CNrvOperationDecodedDataWithoutTrailer = CNrvOperationDecodedData;
using CNrvOperationFactoryDecodedData = CNrvOperationFactoryOf<CNrvOperationDecodedData>;
using CNrvOperationFactoryDecodedDataWithoutTrailer = CNrvOperationFactoryOf<CNrvOperationDecodedData>;

#endif  // NRV_DECODED_DATA_COMMANDS_H
