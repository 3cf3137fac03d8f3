// What every named command shares: its parameter count, its parameter check
// and its result type all come from its row of the command table, so that a
// command class holds only its name, its Run and the sentence that says why
// a Run failed.
#ifndef NRV_COMMAND_H
#define NRV_COMMAND_H

#include <cstring>
#include <string>

#include "NrvCommandTable.h"
#include "NrvOperationBase.h"
#include "NrvOperationDictionary.h"

class CNrvCommandOperation : public CNrvOperation {
public:
    // The command's row of the command table.
    virtual const TNrvCommandInfo& GetCommandInfo() const = 0;

    // Why Run returned nCode although every parameter ran, said with the
    // parameters' values (pParameters holds one record per parameter),
    // without the command's name: "count 20 is not less than the length 3
    // of the text". Only explanations ask; Run never calls it.
    virtual std::string DescribeFailure(NRVRESULT nCode, CNrvOperationResult* pParameters) const;

protected:
    explicit CNrvCommandOperation(CNrvDataEditingProfile* pDataEditing) : CNrvOperation(pDataEditing) {}

    // Exactly one parameter per entry of the row, each of a type its
    // position takes.
    bool CheckParametersAgainst(const TNrvCommandInfo& row) const;
};

// For DescribeFailure: a parameter's integer as a signed 32-bit value, and
// the sentence for a position or count that does not lie in a text:
// "index -5 is negative", "count 20 is not less than the length 3 of the text".
int NrvIntegerOf(const CNrvOperationResult& Value);
std::string NrvDescribePositionFailure(const char* pszName, int nValue, size_t nTextLength);

// The base of each command class TCommand, which names itself with
// static constexpr const char* kName. The row is found once per class and
// kept in no operation, so a command is no larger than any operation.
template <class TCommand>
class CNrvCommand : public CNrvCommandOperation {
public:
    size_t GetParameterCount() const override { return Row().nParameterCount; }
    bool CheckIfParametersAreCorrect() const override { return CheckParametersAgainst(Row()); }
    int GetResultType() const override { return Row().nResultType; }
    const TNrvCommandInfo& GetCommandInfo() const override { return Row(); }

protected:
    explicit CNrvCommand(CNrvDataEditingProfile* pDataEditing) : CNrvCommandOperation(pDataEditing) {}

private:
    static const TNrvCommandInfo& Row()
    {
        static const TNrvCommandInfo* const s_pRow = NrvFindCommandInfo(TCommand::kName, strlen(TCommand::kName));
        return *s_pRow;
    }
};

#endif  // NRV_COMMAND_H
