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

#endif  // NRV_DECODED_DATA_COMMANDS_H
