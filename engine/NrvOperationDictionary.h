#ifndef NRV_OPERATION_DICTIONARY_H
#define NRV_OPERATION_DICTIONARY_H

#include "NrvList.h"
#include "NrvOperationBase.h"

// Makes the operation of one command.
class CNrvOperationFactory {
public:
    virtual ~CNrvOperationFactory() {}
    // Stores a new operation bound to pDataEditing in *ppOperation; the
    // caller owns it. NRV_ERR_INVALID_PARAMETER for a null argument.
    virtual NRVRESULT CreateOperation(CNrvDataEditingProfile* pDataEditing, CNrvOperation** ppOperation) = 0;

protected:
    CNrvOperationFactory() {}
};

// The factory of every command: it makes TOperation for one row of the
// command table. A row whose parameter count is not the count of its
// class's body makes no operation (NRV_ERR_INVALID_PARAMETER), so that a
// mismatch fails every parse that uses it instead of running the body on
// too few or too many parameters.
template <class TOperation>
class CNrvOperationFactoryOf : public CNrvOperationFactory {
public:
    explicit CNrvOperationFactoryOf(const TNrvCommandInfo& row) : m_Row(row) {}

    NRVRESULT CreateOperation(CNrvDataEditingProfile* pDataEditing, CNrvOperation** ppOperation) override
    {
        if (pDataEditing == nullptr || ppOperation == nullptr || m_Row.nParameterCount != TOperation::ParameterCount())
            return NRV_ERR_INVALID_PARAMETER;
        *ppOperation = new TOperation(pDataEditing, m_Row);
        return NRV_OK;
    }

    // For the row's pfnCreateFactory.
    static CNrvOperationFactory* Create(const TNrvCommandInfo& row) { return new CNrvOperationFactoryOf(row); }

private:
    const TNrvCommandInfo& m_Row;
};

// Maps command names to factories, in registration order. Filled once by
// Initialize and only read afterwards.
class CNrvOperationDictionary {
public:
    CNrvOperationDictionary() {}
    CNrvOperationDictionary(const CNrvOperationDictionary&) = delete;
    CNrvOperationDictionary& operator=(const CNrvOperationDictionary&) = delete;
    virtual ~CNrvOperationDictionary();

    // Registers the seed commands of the command table, in its order;
    // returns the last registration's code.
    NRVRESULT Initialize();
    // The same, with the commands of the extension sets in nSets after them
    // (kNrvCommandSetGs1, ...), in the table's order.
    NRVRESULT Initialize(unsigned nSets);
    // The factory registered under the first nLength bytes of
    // pszCommandName (compared byte for byte), or null.
    CNrvOperationFactory* GetValue(const char* pszCommandName, size_t nLength) const;
    // The entries in registration order: their count, and the name of one
    // (null past the last).
    size_t GetCount() const;
    const char* GetKey(size_t nIndex) const;

    // The library's dictionary of the seed commands and the extension sets
    // in nSets (bits outside kNrvCommandSetsAll are ignored): one per
    // combination, initialised on first use (safe from any thread) and only
    // read afterwards.
    static CNrvOperationDictionary* GetLibraryDictionary(unsigned nSets = kNrvCommandSetSeed);

protected:
    // Appends one entry. NRV_ERR_INVALID_PARAMETER for a null factory or a
    // null or empty key; on failure the factory stays with the caller.
    NRVRESULT Add(const char* pszKey, CNrvOperationFactory* pFactory);

private:
    class _Map {
    public:
        _Map() : m_pszKey(nullptr), m_pFactory(nullptr) {}
        _Map(const _Map&) = delete;
        _Map& operator=(const _Map&) = delete;
        ~_Map() { delete[] m_pszKey; }
        NRVRESULT Initialize(const char* pszKey, CNrvOperationFactory* pFactory);
        const char* GetKey() const { return m_pszKey; }
        CNrvOperationFactory* GetFactory() const { return m_pFactory; }

    private:
        NRVRESULT AllocateAndCopy(const char* pszKey);

        char* m_pszKey;
        CNrvOperationFactory* m_pFactory;
    };

    CNrvList m_List;
};

#endif  // NRV_OPERATION_DICTIONARY_H
