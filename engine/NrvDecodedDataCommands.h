#ifndef NRV_DECODED_DATA_COMMANDS_H
#define NRV_DECODED_DATA_COMMANDS_H

// Commands that bring the scanned data into an expression.

#include "NrvCommand.h"

class CNrvOperationDecodedData : public CNrvCommand<CNrvOperationDecodedData> {
public:
    static constexpr const char* kName = "DecodedData";
    explicit CNrvOperationDecodedData(CNrvDataEditingProfile* pDataEditing) : CNrvCommand(pDataEditing) {}
    NRVRESULT Run(CNrvOperationResult& Result) const override;
};
class CNrvOperationFactoryDecodedData : public CNrvOperationFactoryOf<CNrvOperationDecodedData> {};

class CNrvOperationDecodedDataWithoutTrailer : public CNrvCommand<CNrvOperationDecodedDataWithoutTrailer> {
public:
    static constexpr const char* kName = "DecodedDataWithoutTrailer";
    explicit CNrvOperationDecodedDataWithoutTrailer(CNrvDataEditingProfile* pDataEditing) : CNrvCommand(pDataEditing) {}
    NRVRESULT Run(CNrvOperationResult& Result) const override;
};
class CNrvOperationFactoryDecodedDataWithoutTrailer : public CNrvOperationFactoryOf<CNrvOperationDecodedDataWithoutTrailer> {};

#endif  // NRV_DECODED_DATA_COMMANDS_H
