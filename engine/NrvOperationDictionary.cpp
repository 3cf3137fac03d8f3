#include "NrvOperationDictionary.h"

#include <cstring>
#include <memory>

#include "NrvOperation.h"

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

template <class TFactory>
NRVRESULT CNrvOperationDictionary::Register(const char* pszKey)
{
    std::unique_ptr<CNrvOperationFactory> factory(new TFactory);
    const NRVRESULT result = Add(pszKey, factory.get());
    if (result >= 0)
        factory.release();  // the dictionary owns it now
    return result;
}

NRVRESULT CNrvOperationDictionary::Initialize()
{
    // Every command is registered whatever the others returned; the order
    // is the order in which look-ups try the names.
    Register<CNrvOperationFactoryDecodedData>("DecodedData");
    Register<CNrvOperationFactoryTruncateFromBeginning>("TruncateFromBeginning");
    Register<CNrvOperationFactoryTruncateFromEnd>("TruncateFromEnd");
    Register<CNrvOperationFactoryReplace>("Replace");
    Register<CNrvOperationFactorySubstitute>("Substitute");
    Register<CNrvOperationFactoryEscapeCharacter>("EscapeCharacter");
    Register<CNrvOperationFactoryInsertAfterIndex>("InsertAfterIndex");
    Register<CNrvOperationFactoryInsertBeforeIndex>("InsertBeforeIndex");
    Register<CNrvOperationFactoryFindFirstFromIndex>("FindFirstFromIndex");
    Register<CNrvOperationFactoryFindLastFromIndex>("FindLastFromIndex");
    Register<CNrvOperationFactoryMakeUpperCase>("MakeUpperCase");
    Register<CNrvOperationFactoryMakeLowerCase>("MakeLowerCase");
    Register<CNrvOperationFactoryReplaceNonPrintableCharacters>("ReplaceNonPrintableCharacters");
    Register<CNrvOperationFactoryDecodedDataWithoutTrailer>("DecodedDataWithoutTrailer");
    Register<CNrvOperationFactoryTruncateAfterIndex>("TruncateAfterIndex");
    Register<CNrvOperationFactoryTruncateBeforeIndex>("TruncateBeforeIndex");
    Register<CNrvOperationFactorySubstring>("Substring");
    return Register<CNrvOperationFactoryExtract>("Extract");
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

CNrvOperationDictionary* CNrvOperationDictionary::GetLibraryDictionary()
{
    // A function-local static is initialised exactly once, even when several
    // threads arrive together; if Initialize throws, the next call retries.
    struct CInitialized {
        CNrvOperationDictionary dictionary;
        CInitialized() { dictionary.Initialize(); }
    };
    static CInitialized s_library;
    return &s_library.dictionary;
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
