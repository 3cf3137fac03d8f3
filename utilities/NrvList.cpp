#include "NrvList.h"

// Positions are node addresses handed out by this list; a position from
// another list, or of a removed element, is the caller's error and is not
// detected. Every failure below is an argument the list can check cheaply.

CNrvList::CNrvList() : m_pHead(nullptr), m_pTail(nullptr), m_nCount(0) {}

CNrvList::~CNrvList()
{
    while (m_pHead != nullptr) {
        node* pNext = m_pHead->pNext;
        delete m_pHead;
        m_pHead = pNext;
    }
}

NRVRESULT CNrvList::AddHead(void* pData)
{
    node* pNode = new node{m_pHead, nullptr, pData};
    if (m_pHead != nullptr)
        m_pHead->pPrevious = pNode;
    else
        m_pTail = pNode;
    m_pHead = pNode;
    ++m_nCount;
    return NRV_OK;
}

NRVRESULT CNrvList::AddTail(void* pData)
{
    node* pNode = new node{nullptr, m_pTail, pData};
    if (m_pTail != nullptr)
        m_pTail->pNext = pNode;
    else
        m_pHead = pNode;
    m_pTail = pNode;
    ++m_nCount;
    return NRV_OK;
}

NRVRESULT CNrvList::RemoveHead(void** ppData)
{
    return RemoveAt(m_pHead, ppData);
}

NRVRESULT CNrvList::RemoveTail(void** ppData)
{
    return RemoveAt(m_pTail, ppData);
}

NRVRESULT CNrvList::RemoveAt(TNrvPosition Position, void** ppData)
{
    if (Position == nullptr || ppData == nullptr)
        return NRV_ERR_INVALID_PARAMETER;
    node* pNode = static_cast<node*>(Position);
    *ppData = pNode->pData;
    RemoveNode(pNode);
    return NRV_OK;
}

NRVRESULT CNrvList::FindIndex(size_t nIndex, TNrvPosition* pPosition) const
{
    if (pPosition == nullptr || nIndex >= static_cast<size_t>(m_nCount))
        return NRV_ERR_OUT_OF_RANGE;
    node* pNode = m_pHead;
    while (nIndex-- > 0)
        pNode = pNode->pNext;
    *pPosition = pNode;
    return NRV_OK;
}

NRVRESULT CNrvList::InsertBefore(TNrvPosition Position, void* pData)
{
    if (Position == nullptr)
        return NRV_ERR_INVALID_PARAMETER;
    node* pAt = static_cast<node*>(Position);
    if (pAt == m_pHead)
        return AddHead(pData);
    node* pNode = new node{pAt, pAt->pPrevious, pData};
    pAt->pPrevious->pNext = pNode;
    pAt->pPrevious = pNode;
    ++m_nCount;
    return NRV_OK;
}

NRVRESULT CNrvList::InsertAfter(TNrvPosition Position, void* pData)
{
    if (Position == nullptr)
        return NRV_ERR_INVALID_PARAMETER;
    node* pAt = static_cast<node*>(Position);
    if (pAt == m_pTail)
        return AddTail(pData);
    node* pNode = new node{pAt->pNext, pAt, pData};
    pAt->pNext->pPrevious = pNode;
    pAt->pNext = pNode;
    ++m_nCount;
    return NRV_OK;
}

void CNrvList::RemoveNode(node* pNode)
{
    if (pNode->pPrevious != nullptr)
        pNode->pPrevious->pNext = pNode->pNext;
    else
        m_pHead = pNode->pNext;
    if (pNode->pNext != nullptr)
        pNode->pNext->pPrevious = pNode->pPrevious;
    else
        m_pTail = pNode->pPrevious;
    delete pNode;
    --m_nCount;
}
