#include "NrvDataEditingProfile.h"

#include <cstring>

#include "NrvOperation.h"
#include "NrvParsingString.h"
#include "NrvUtilities.h"

namespace {

// From this size on, an edit frees buffers large enough for the C library to
// hand the top of its heap back to the system (glibc does once more than
// 128 KB lie free there), and the next edit faults every page in again: 8
// to 100 times the cost per byte measured from 48 KB on.
constexpr size_t kLargeEdit = 16 * 1024;

// Grows *ppBuffer to hold nNeeded bytes, keeping its first nKeep bytes.
// The new buffer is allocated before the old one is released, so an
// allocation failure leaves everything as it was.
//
// The value records and work buffers of an edit are freed below the root's
// result when the edit buffer grows, so a request larger than all of them
// cannot be placed there: the first of the two edit buffers to reach a large
// size (nOtherCapacity still smaller) takes four times the size, lies above
// the freed buffers, and keeps them inside the heap for the next edits.
void Grow(char** ppBuffer, size_t* pnCapacity, size_t nNeeded, size_t nKeep, size_t nOtherCapacity)
{
    size_t nCapacity = *pnCapacity * 2;
    if (nCapacity < nNeeded)
        nCapacity = nNeeded;
    if (nNeeded >= kLargeEdit && nOtherCapacity < nNeeded && nNeeded <= static_cast<size_t>(-1) / 4 &&
        nCapacity < nNeeded * 4)
        nCapacity = nNeeded * 4;
    char* pBuffer = new char[nCapacity];
    if (nKeep != 0)
        memcpy(pBuffer, *ppBuffer, nKeep);
    delete[] *ppBuffer;
    *ppBuffer = pBuffer;
    *pnCapacity = nCapacity;
}

// Makes room for nNeeded bytes. Called for every root operation of every
// edit, and the buffers keep their size between edits, so the test is kept
// inline and the growth out of line.
inline void Reserve(char** ppBuffer, size_t* pnCapacity, size_t nNeeded, size_t nKeep, size_t nOtherCapacity)
{
    if (nNeeded > *pnCapacity)
        Grow(ppBuffer, pnCapacity, nNeeded, nKeep, nOtherCapacity);
}

}  // namespace

CNrvDataEditingProfile::CNrvDataEditingProfile()
    : m_pszOriginalDecodedData(nullptr),
      m_nOriginalDecodedDataLength(0),
      m_nTriggerMinimumSize(0),
      m_nTriggerMaximumSize(0),
      m_pTriggerSymbologyId(nullptr),
      m_nTriggerSymbologyIdCount(0),
      m_pszTriggerContains(nullptr),
      m_pszTriggerStartsBy(nullptr),
      m_pszTriggerEndsWith(nullptr),
      m_ParseResult(NRV_OK),
      m_nOriginalDecodedDataCapacity(0),
      m_pszEditedData(nullptr),
      m_nEditedDataLength(0),
      m_nEditedDataCapacity(0),
      m_pszEditBuffer(nullptr),
      m_nEditBufferCapacity(0),
      m_nCommandSets(kNrvCommandSetSeed),
      m_bLimits(false),
      m_nLimitMaximumTextSize(0),
      m_nLimitWorkBase(0),
      m_nLimitWorkPerScanByte(0),
      m_nWorkLeft(0)
{
}

CNrvDataEditingProfile::~CNrvDataEditingProfile()
{
    RemoveAllOperations();
    ResetTrigger();
    delete[] m_pszOriginalDecodedData;
    delete[] m_pszEditedData;
    delete[] m_pszEditBuffer;
}

void CNrvDataEditingProfile::RemoveAllOperations()
{
    while (m_Operations.GetCount() > 0) {
        void* pData = nullptr;
        if (m_Operations.RemoveHead(&pData) >= 0)
            delete static_cast<CNrvOperation*>(pData);
    }
    m_ParseResult = NRV_OK;
}

NRVRESULT CNrvDataEditingProfile::Parse(const char* pszExpression)
{
    return Parse(pszExpression, nullptr);
}

NRVRESULT CNrvDataEditingProfile::Parse(const char* pszExpression, CNrvParseObserver* pObserver)
{
    if (pszExpression == nullptr)
        return NRV_ERR_INVALID_PARAMETER;
    RemoveAllOperations();
    CNrvParsingString expression(pszExpression);
    try {
        m_ParseResult = CNrvOperation::Parse(this, CNrvOperationDictionary::GetLibraryDictionary(m_nCommandSets),
                                             kDelimiterOpen, kDelimiterClose, &expression, &m_Operations, pObserver);
    } catch (...) {
        // Never leave a half-built tree that Edit would run.
        RemoveAllOperations();
        throw;
    }
    return m_ParseResult;
}

NRVRESULT CNrvDataEditingProfile::EnableCommandSets(unsigned nSets)
{
    if ((nSets & ~static_cast<unsigned>(kNrvCommandSetsAll)) != 0)
        return NRV_ERR_INVALID_PARAMETER;
    m_nCommandSets = nSets;
    return NRV_OK;
}

// Runs on every edit, and most profiles set no trigger: defined inline here,
// where Edit alone calls it, so the all-unset case costs no call.
inline bool CNrvDataEditingProfile::CheckIfTriggerConditionAreMet(TNrvScanDecodedData* pDecodedData)
{
    const char* pszData = pDecodedData->String.pValue;
    const size_t nLength = pDecodedData->String.nLength;
    if (m_nTriggerMinimumSize != 0 && nLength < m_nTriggerMinimumSize)
        return false;
    if (m_nTriggerMaximumSize != 0 && nLength > m_nTriggerMaximumSize)
        return false;
    if (m_nTriggerSymbologyIdCount > 0) {
        bool bListed = false;
        for (int i = 0; i < m_nTriggerSymbologyIdCount && !bListed; ++i)
            bListed = m_pTriggerSymbologyId[i] == static_cast<int>(pDecodedData->SymbologyID);
        if (!bListed)
            return false;
    }
    if (m_pszTriggerContains != nullptr && !DoesContain(pszData, m_pszTriggerContains, nLength))
        return false;
    if (m_pszTriggerStartsBy != nullptr && !DoesStartBy(pszData, m_pszTriggerStartsBy, nLength))
        return false;
    if (m_pszTriggerEndsWith != nullptr && !DoesEndWith(pszData, m_pszTriggerEndsWith, nLength))
        return false;
    return true;
}

NRVRESULT CNrvDataEditingProfile::Edit(TNrvScanDecodedData* pDecodedData)
{
    if (pDecodedData == nullptr || (pDecodedData->String.pValue == nullptr && pDecodedData->String.nLength != 0))
        return NRV_ERR_INVALID_PARAMETER;
    if (m_ParseResult < 0)
        return m_ParseResult;
    if (m_Operations.GetCount() == 0)
        return NRV_OK;
    if (!CheckIfTriggerConditionAreMet(pDecodedData))
        return NRV_OK_NOT_TRIGGERED;

    NRVRESULT result = PrepareRun(pDecodedData->String.pValue, pDecodedData->String.nLength);
    if (result < 0)
        return result;

    // Built in the spare buffer: the record may still point at the previous
    // edited data, which must survive a failure.
    size_t nLength = 0;
    TNrvPosition position = m_Operations.GetHeadPosition();
    while (position != nullptr) {
        void* pData = nullptr;
        result = m_Operations.GetNext(&position, &pData);
        if (result < 0)
            return result;
        CNrvOperationResult value;
        result = static_cast<CNrvOperation*>(pData)->Run(value);
        if (result < 0)
            return result;
        const char* pszText = value.GetResultString();
        const size_t nText = pszText != nullptr ? value.GetResultStringLength() : 0;
        if (m_bLimits) {
            result = ChargeWork(nLength + nText, nText);
            if (result < 0)
                return result;
        }
        Reserve(&m_pszEditBuffer, &m_nEditBufferCapacity, nLength + nText + 1, nLength, m_nEditedDataCapacity);
        if (nText != 0)
            CNrvUtilities::CopyBytes(m_pszEditBuffer + nLength, pszText, nText);
        nLength += nText;
    }
    Reserve(&m_pszEditBuffer, &m_nEditBufferCapacity, nLength + 1, nLength, m_nEditedDataCapacity);
    m_pszEditBuffer[nLength] = '\0';

    char* const pszEdited = m_pszEditBuffer;
    const size_t nEditedCapacity = m_nEditBufferCapacity;
    m_pszEditBuffer = m_pszEditedData;
    m_nEditBufferCapacity = m_nEditedDataCapacity;
    m_pszEditedData = pszEdited;
    m_nEditedDataCapacity = nEditedCapacity;
    m_nEditedDataLength = nLength;

    pDecodedData->String.pValue = m_pszEditedData;
    pDecodedData->String.nLength = m_nEditedDataLength;
    return NRV_OK;
}

NRVRESULT CNrvDataEditingProfile::WriteOriginalDecodedData(const char* pszData, size_t nLength)
{
    if (pszData == nullptr && nLength != 0)
        return NRV_ERR_INVALID_PARAMETER;
    if (nLength + 1 > m_nOriginalDecodedDataCapacity) {
        char* pszCopy = new char[nLength + 1];
        if (nLength != 0)
            memcpy(pszCopy, pszData, nLength);
        delete[] m_pszOriginalDecodedData;
        m_pszOriginalDecodedData = pszCopy;
        m_nOriginalDecodedDataCapacity = nLength + 1;
    } else if (nLength != 0) {
        memmove(m_pszOriginalDecodedData, pszData, nLength);  // the data may be our own copy
    }
    m_pszOriginalDecodedData[nLength] = '\0';
    m_nOriginalDecodedDataLength = nLength;
    return NRV_OK;
}

bool CNrvDataEditingProfile::DoesStartBy(const char* pszData, const char* pszText, size_t nDataLength)
{
    const size_t nText = strlen(pszText);
    return nText <= nDataLength && memcmp(pszData, pszText, nText) == 0;
}

bool CNrvDataEditingProfile::DoesEndWith(const char* pszData, const char* pszText, size_t nDataLength)
{
    const size_t nText = strlen(pszText);
    return nText <= nDataLength && memcmp(pszData + nDataLength - nText, pszText, nText) == 0;
}

bool CNrvDataEditingProfile::DoesContain(const char* pszData, const char* pszText, size_t nDataLength)
{
    // Over the record's length: the data may hold zero bytes.
    const size_t nText = strlen(pszText);
    if (nText > nDataLength)
        return false;
    const char* p = pszData;
    const char* const pLast = pszData + (nDataLength - nText);
    while (p <= pLast) {
        p = static_cast<const char*>(memchr(p, pszText[0], static_cast<size_t>(pLast - p) + 1));
        if (p == nullptr)
            return false;
        if (memcmp(p, pszText, nText) == 0)
            return true;
        ++p;
    }
    return false;
}

NRVRESULT CNrvDataEditingProfile::ResetTrigger()
{
    m_nTriggerMinimumSize = 0;
    m_nTriggerMaximumSize = 0;
    delete[] m_pTriggerSymbologyId;
    m_pTriggerSymbologyId = nullptr;
    m_nTriggerSymbologyIdCount = 0;
    WriteTriggerText(&m_pszTriggerContains, nullptr);
    WriteTriggerText(&m_pszTriggerStartsBy, nullptr);
    WriteTriggerText(&m_pszTriggerEndsWith, nullptr);
    return NRV_OK;
}

NRVRESULT CNrvDataEditingProfile::AddTriggerSymbology(int nSymbologyId)
{
    if (nSymbologyId < 0 || nSymbologyId >= kNrvScanSymbologyLastSymbologyID)
        return NRV_ERR_INVALID_PARAMETER;
    for (int i = 0; i < m_nTriggerSymbologyIdCount; ++i)
        if (m_pTriggerSymbologyId[i] == nSymbologyId)
            return NRV_OK;
    int* pIds = new int[m_nTriggerSymbologyIdCount + 1];
    if (m_nTriggerSymbologyIdCount != 0)
        memcpy(pIds, m_pTriggerSymbologyId, sizeof(int) * m_nTriggerSymbologyIdCount);
    pIds[m_nTriggerSymbologyIdCount] = nSymbologyId;
    delete[] m_pTriggerSymbologyId;
    m_pTriggerSymbologyId = pIds;
    ++m_nTriggerSymbologyIdCount;
    return NRV_OK;
}

NRVRESULT CNrvDataEditingProfile::WriteTriggerText(char** ppszTrigger, const char* pszText)
{
    char* pszCopy = nullptr;
    if (pszText != nullptr && pszText[0] != '\0') {
        const size_t nLength = strlen(pszText);
        pszCopy = new char[nLength + 1];
        memcpy(pszCopy, pszText, nLength + 1);
    }
    delete[] *ppszTrigger;
    *ppszTrigger = pszCopy;
    return NRV_OK;
}

NRVRESULT CNrvDataEditingProfile::WriteTriggerContains(const char* pszText)
{
    return WriteTriggerText(&m_pszTriggerContains, pszText);
}

NRVRESULT CNrvDataEditingProfile::WriteTriggerStartsBy(const char* pszText)
{
    return WriteTriggerText(&m_pszTriggerStartsBy, pszText);
}

NRVRESULT CNrvDataEditingProfile::WriteTriggerEndsWith(const char* pszText)
{
    return WriteTriggerText(&m_pszTriggerEndsWith, pszText);
}

NRVRESULT CNrvDataEditingProfile::WriteTriggerMinimumSize(size_t nSize)
{
    m_nTriggerMinimumSize = nSize;
    return NRV_OK;
}

NRVRESULT CNrvDataEditingProfile::WriteTriggerMaximumSize(size_t nSize)
{
    m_nTriggerMaximumSize = nSize;
    return NRV_OK;
}

NRVRESULT CNrvDataEditingProfile::WriteLimitMaximumTextSize(size_t nBytes)
{
    m_nLimitMaximumTextSize = nBytes;
    m_bLimits = (m_nLimitMaximumTextSize | m_nLimitWorkBase | m_nLimitWorkPerScanByte) != 0;
    return NRV_OK;
}

NRVRESULT CNrvDataEditingProfile::WriteLimitWorkBudget(size_t nBase, size_t nPerScanByte)
{
    m_nLimitWorkBase = nBase;
    m_nLimitWorkPerScanByte = nPerScanByte;
    m_bLimits = (m_nLimitMaximumTextSize | m_nLimitWorkBase | m_nLimitWorkPerScanByte) != 0;
    return NRV_OK;
}

void CNrvDataEditingProfile::StartWorkBudget(size_t nScanLength)
{
    // Saturates: a budget too large for a size is no limit at all.
    const size_t nMax = static_cast<size_t>(-1);
    size_t nBudget = nMax;
    if (nScanLength == 0 || m_nLimitWorkPerScanByte <= nMax / nScanLength) {
        const size_t nPerScan = m_nLimitWorkPerScanByte * nScanLength;
        if (nPerScan <= nMax - m_nLimitWorkBase)
            nBudget = m_nLimitWorkBase + nPerScan;
    }
    m_nWorkLeft = nBudget;
}

NRVRESULT CNrvDataEditingProfile::ChargeWork(size_t nResultSize, size_t nWork)
{
    if (m_nLimitMaximumTextSize != 0 && nResultSize > m_nLimitMaximumTextSize)
        return NRV_ERR_TEXT_LIMIT;
    if ((m_nLimitWorkBase | m_nLimitWorkPerScanByte) == 0)
        return NRV_OK;
    if (nWork > m_nWorkLeft) {
        m_nWorkLeft = 0;
        return NRV_ERR_WORK_LIMIT;
    }
    m_nWorkLeft -= nWork;
    return NRV_OK;
}
