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
    size_t GetParameterCount() const override { return m_Row.nParameterCount; }
    // Exactly one parameter per row entry, each of a type its position takes.
    bool CheckIfParametersAreCorrect() const override;
    int GetResultType() const override { return m_Row.nResultType; }

    const TNrvCommandInfo& GetCommandInfo() const { return m_Row; }

    // Why Run returned nCode although every parameter ran, said with the
    // parameters' values (pParameters holds one record per parameter),
    // without the command's name: "count 20 is not less than the length 3
    // of the text". Only explanations ask; Run never calls it.
    virtual std::string DescribeFailure(NRVRESULT nCode, CNrvOperationResult* pParameters) const;

protected:
    CNrvCommandOperation(CNrvDataEditingProfile* pDataEditing, const TNrvCommandInfo& row)
        : CNrvOperation(pDataEditing), m_Row(row)
    {
    }

private:
    const TNrvCommandInfo& m_Row;
};

// For DescribeFailure: a parameter's integer as a signed 32-bit value, and
// the sentence for a position or count that does not lie in a text:
// "index -5 is negative", "count 20 is not less than the length 3 of the text".
int NrvIntegerOf(const CNrvOperationResult& Value);
std::string NrvDescribePositionFailure(const char* pszName, int nValue, size_t nTextLength);

// The base of each command class TCommand, which names itself with
// static constexpr const char* kName; the row is looked up once per class.
template <class TCommand>
class CNrvCommand : public CNrvCommandOperation {
protected:
    explicit CNrvCommand(CNrvDataEditingProfile* pDataEditing) : CNrvCommandOperation(pDataEditing, Row()) {}

private:
    static const TNrvCommandInfo& Row()
    {
        static const TNrvCommandInfo* const s_pRow = NrvFindCommandInfo(TCommand::kName, strlen(TCommand::kName));
        return *s_pRow;
    }
};

#endif  // NRV_COMMAND_H
