#ifndef NRV_DECODED_DATA_COMMANDS_H
#define NRV_DECODED_DATA_COMMANDS_H

// Commands that bring the scanned data into an expression.

#include "NrvOperationBase.h"
#include "NrvOperationDictionary.h"

class CNrvOperationDecodedData : public CNrvOperation {
public:
    explicit CNrvOperationDecodedData(CNrvDataEditingProfile* pDataEditing) : CNrvOperation(pDataEditing) {}
    bool CheckIfParametersAreCorrect() const override;
    NRVRESULT Run(CNrvOperationResult& Result) const override;
    int GetResultType() const override { return CNrvOperationResult::typeString; }
};
class CNrvOperationFactoryDecodedData : public CNrvOperationFactoryOf<CNrvOperationDecodedData> {};

class CNrvOperationDecodedDataWithoutTrailer : public CNrvOperation {
public:
    explicit CNrvOperationDecodedDataWithoutTrailer(CNrvDataEditingProfile* pDataEditing) : CNrvOperation(pDataEditing) {}
    size_t GetParameterCount() const override { return 0; }
    bool CheckIfParametersAreCorrect() const override;
    NRVRESULT Run(CNrvOperationResult& Result) const override;
    int GetResultType() const override { return CNrvOperationResult::typeString; }
};
class CNrvOperationFactoryDecodedDataWithoutTrailer : public CNrvOperationFactoryOf<CNrvOperationDecodedDataWithoutTrailer> {};

#endif  // NRV_DECODED_DATA_COMMANDS_H
