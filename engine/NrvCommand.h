// What every named command shares. A command is its row of the command
// table and its body: the row gives the parameter count, the parameter
// check, the result type and the limits the frame checks; the body, a
// class's Compute, computes the result from the parameters' values. The
// frame around it (run the parameters, check the row's limits, compute)
// is written once, here.
#ifndef NRV_COMMAND_H
#define NRV_COMMAND_H

#include <cstring>
#include <string>
#include <utility>

#include "NrvCommandTable.h"
#include "NrvOperationBase.h"
#include "NrvOperationDictionary.h"

class CNrvCommandOperation : public CNrvOperation {
public:
    // The command's row of the command table.
    const TNrvCommandInfo& GetCommandInfo() const { return *m_pRow; }

    size_t GetParameterCount() const override { return m_pRow->nParameterCount; }
    // Exactly one parameter per entry of the row, each of a type its
    // position takes.
    bool CheckIfParametersAreCorrect() const override;
    int GetResultType() const override { return m_pRow->nResultType; }

    // A new command of the same row and profile, without parameters: for
    // explanations, which give it parameters of their own. The caller owns it.
    virtual CNrvCommandOperation* NewSameCommand() const = 0;

    // Why Run returned nCode although every parameter ran, said with the
    // parameters' values (pParameters holds one record per parameter),
    // without the command's name: "count 20 is not less than the length 3
    // of the text". Only explanations ask; Run never calls it.
    virtual std::string DescribeFailure(NRVRESULT nCode, CNrvOperationResult* pParameters) const;

protected:
    CNrvCommandOperation(CNrvDataEditingProfile* pDataEditing, const TNrvCommandInfo& row)
        : CNrvOperation(pDataEditing), m_pRow(&row)
    {
    }

    // The row's variant, which tells apart the commands that share a body.
    int Variant() const { return m_pRow->nVariant; }

    // The frame's limit check: a copy of the parameters the row names.
    // Without limits, or for a row that names none, the lengths are not
    // read. A command is made by its factory, which refuses a null profile.
    NRVRESULT CheckCopiedParameters(CNrvOperationResult* pParameters) const
    {
        return !m_pDataEditing->HasLimits() || m_pRow->nCopiedParameters == 0 ? NRV_OK
                                                                              : ChargeCopiedParameters(pParameters);
    }

private:
    NRVRESULT ChargeCopiedParameters(CNrvOperationResult* pParameters) const;

    const TNrvCommandInfo* m_pRow;
};

// For DescribeFailure: a parameter's integer as a signed 32-bit value, and
// the sentence for a position or count that does not lie in a text:
// "index -5 is negative", "count 20 is not less than the length 3 of the text".
int NrvIntegerOf(const CNrvOperationResult& Value);
std::string NrvDescribePositionFailure(const char* pszName, int nValue, size_t nTextLength);

// The number of parameters a body takes: the arguments of its Compute
// after the record it writes.
template <class TCommand, class... TParameters>
constexpr size_t NrvBodyParameterCount(NRVRESULT (TCommand::*)(CNrvOperationResult&, TParameters...) const)
{
    return sizeof...(TParameters);
}

// The base of each command class TCommand, whose body is
//   NRVRESULT Compute(CNrvOperationResult& Result, CNrvOperationResult& First, ...) const;
// with one record per parameter, each holding that parameter's value.
// Compute is called without a virtual call, and its parameters' records
// live on the stack of Run.
template <class TCommand>
class CNrvCommand : public CNrvCommandOperation {
public:
    CNrvCommand(CNrvDataEditingProfile* pDataEditing, const TNrvCommandInfo& row)
        : CNrvCommandOperation(pDataEditing, row)
    {
    }

    // How many parameters the body takes, which must be the row's count.
    static constexpr size_t ParameterCount() { return NrvBodyParameterCount(&TCommand::Compute); }

    CNrvCommandOperation* NewSameCommand() const final { return new TCommand(m_pDataEditing, GetCommandInfo()); }

    // The frame: run the parameters in order, stopping at the first
    // failure and leaving Result as it was; check the limits the row
    // declares; compute. Run is the body's only caller, so that an
    // optimised build makes the two one function, as if each command had
    // written its own frame.
    NRVRESULT Run(CNrvOperationResult& Result) const final
    {
        if constexpr (ParameterCount() == 0) {
            return Body(nullptr, Result, std::index_sequence<>());
        } else {
            CNrvOperationResult parameters[ParameterCount()];
            NRVRESULT result = RunParameters(parameters, ParameterCount());
            if (result >= 0)
                result = CheckCopiedParameters(parameters);
            if (result < 0)
                return result;
            return Body(parameters, Result, std::make_index_sequence<ParameterCount()>());
        }
    }

private:
    template <size_t... nIndexes>
    NRVRESULT Body(CNrvOperationResult* pParameters, CNrvOperationResult& Result,
                   std::index_sequence<nIndexes...>) const
    {
        (void)pParameters;  // a command without parameters reads none
        return static_cast<const TCommand*>(this)->Compute(Result, pParameters[nIndexes]...);
    }
};

#endif  // NRV_COMMAND_H
