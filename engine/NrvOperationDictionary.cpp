#include "NrvOperationDictionary.h"

#include <cstring>
#include <memory>

#include "NrvCommandTable.h"

CNrvOperationDictionary::~CNrvOperationDictionary()
{
    while (m_List.GetCount() != 0) {
        void* pData = nullptr;
        if (m_List.RemoveHead(&pData) < 0)
            break;
        _Map* pMap = static_cast<_Map*>(pData);
        delete pMap->GetFactory();
        delete pMap;
    }
}

NRVRESULT CNrvOperationDictionary::Initialize()
{
    return Initialize(kNrvCommandSetSeed);
}

NRVRESULT CNrvOperationDictionary::Initialize(unsigned nSets)
{
    // Every row of the sets is registered whatever the others returned; the
    // table's order is the order in which look-ups try the names, so the
    // seed commands come first whatever else is enabled.
    size_t nCount = 0;
    const TNrvCommandInfo* pCommands = NrvGetCommandTable(&nCount);
    NRVRESULT result = NRV_OK;
    for (size_t i = 0; i < nCount; ++i) {
        if (!NrvCommandIsEnabled(pCommands[i], nSets))
            continue;
        std::unique_ptr<CNrvOperationFactory> factory(pCommands[i].pfnCreateFactory(pCommands[i]));
        result = Add(pCommands[i].pszName, factory.get());
        if (result >= 0)
            factory.release();  // the dictionary owns it now
    }
    return result;
}

NRVRESULT CNrvOperationDictionary::Add(const char* pszKey, CNrvOperationFactory* pFactory)
{
    std::unique_ptr<_Map> map(new _Map);
    NRVRESULT result = map->Initialize(pszKey, pFactory);
    if (result >= 0)
        result = m_List.AddTail(map.get());
    if (result >= 0)
        map.release();
    return result;
}

CNrvOperationFactory* CNrvOperationDictionary::GetValue(const char* pszCommandName, size_t nLength) const
{
    if (pszCommandName == nullptr)
        return nullptr;
    TNrvPosition position = m_List.GetHeadPosition();
    while (position != nullptr) {
        void* pData = nullptr;
        if (m_List.GetNext(&position, &pData) < 0)
            return nullptr;
        const _Map* pMap = static_cast<const _Map*>(pData);
        const char* pszKey = pMap->GetKey();
        if (strlen(pszKey) == nLength && memcmp(pszKey, pszCommandName, nLength) == 0)
            return pMap->GetFactory();
    }
    return nullptr;
}

size_t CNrvOperationDictionary::GetCount() const
{
    return static_cast<size_t>(m_List.GetCount());
}

const char* CNrvOperationDictionary::GetKey(size_t nIndex) const
{
    TNrvPosition position = m_List.GetHeadPosition();
    void* pData = nullptr;
    for (size_t i = 0; i <= nIndex; ++i) {
        if (position == nullptr || m_List.GetNext(&position, &pData) < 0)
            return nullptr;
    }
    return static_cast<const _Map*>(pData)->GetKey();
}

CNrvOperationDictionary* CNrvOperationDictionary::GetLibraryDictionary(unsigned nSets)
{
    // A function-local static is initialised exactly once, even when several
    // threads arrive together; if Initialize throws, the next call retries.
    struct CInitialized {
        CNrvOperationDictionary dictionary;
        explicit CInitialized(unsigned nWith) { dictionary.Initialize(nWith); }
    };
    static_assert(kNrvCommandSetsAll == kNrvCommandSetGs1, "one dictionary per combination of sets");
    if ((nSets & kNrvCommandSetGs1) != 0) {
        static CInitialized s_gs1(kNrvCommandSetGs1);
        return &s_gs1.dictionary;
    }
    static CInitialized s_seed(kNrvCommandSetSeed);
    return &s_seed.dictionary;
}

NRVRESULT CNrvOperationDictionary::_Map::Initialize(const char* pszKey, CNrvOperationFactory* pFactory)
{
    if (pFactory == nullptr)
        return NRV_ERR_INVALID_PARAMETER;
    const NRVRESULT result = AllocateAndCopy(pszKey);
    if (result >= 0)
        m_pFactory = pFactory;
    return result;
}

NRVRESULT CNrvOperationDictionary::_Map::AllocateAndCopy(const char* pszKey)
{
    delete[] m_pszKey;
    m_pszKey = nullptr;
    if (pszKey == nullptr || pszKey[0] == '\0')
        return NRV_ERR_INVALID_PARAMETER;
    const size_t nLength = strlen(pszKey);
    m_pszKey = new char[nLength + 1];
    memcpy(m_pszKey, pszKey, nLength + 1);
    return NRV_OK;
}
