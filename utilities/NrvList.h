#ifndef NRV_LIST_H
#define NRV_LIST_H

#include "NrvScanTypes.h"

// Opaque handle to one element of a CNrvList; null means "no element". It
// stays valid until that very element is removed.
typedef void* TNrvPosition;

// Doubly linked list of untyped pointers. The list owns its nodes only:
// whoever puts an object in takes it out and deletes it.
class CNrvList {
public:
    CNrvList();
    ~CNrvList();
    CNrvList(const CNrvList&) = delete;
    CNrvList& operator=(const CNrvList&) = delete;

    NRVRESULT AddHead(void* pData);
    NRVRESULT AddTail(void* pData);
    NRVRESULT RemoveHead(void** ppData);
    NRVRESULT RemoveTail(void** ppData);
    // The walks run for every operation of every edit: defined inline below.
    TNrvPosition GetHeadPosition() const { return m_pHead; }
    TNrvPosition GetTailPosition() const { return m_pTail; }
    NRVRESULT GetNext(TNrvPosition* pPosition, void** ppData) const;
    NRVRESULT GetPrevious(TNrvPosition* pPosition, void** ppData) const;
    NRVRESULT GetAt(TNrvPosition Position, void** ppData) const;
    NRVRESULT RemoveAt(TNrvPosition Position, void** ppData);
    // nIndex counts from 0; an index at or past GetCount() fails.
    NRVRESULT FindIndex(size_t nIndex, TNrvPosition* pPosition) const;
    NRVRESULT InsertBefore(TNrvPosition Position, void* pData);
    NRVRESULT InsertAfter(TNrvPosition Position, void* pData);
    int GetCount() const { return m_nCount; }

private:
    struct node {
        node* pNext;
        node* pPrevious;
        void* pData;
    };

    void RemoveNode(node* pNode);

    node* m_pHead;
    node* m_pTail;
    int m_nCount;
};

inline NRVRESULT CNrvList::GetNext(TNrvPosition* pPosition, void** ppData) const
{
    if (pPosition == nullptr || *pPosition == nullptr || ppData == nullptr)
        return NRV_ERR_INVALID_PARAMETER;
    const node* pNode = static_cast<const node*>(*pPosition);
    *ppData = pNode->pData;
    *pPosition = pNode->pNext;
    return NRV_OK;
}

inline NRVRESULT CNrvList::GetPrevious(TNrvPosition* pPosition, void** ppData) const
{
    if (pPosition == nullptr || *pPosition == nullptr || ppData == nullptr)
        return NRV_ERR_INVALID_PARAMETER;
    const node* pNode = static_cast<const node*>(*pPosition);
    *ppData = pNode->pData;
    *pPosition = pNode->pPrevious;
    return NRV_OK;
}

inline NRVRESULT CNrvList::GetAt(TNrvPosition Position, void** ppData) const
{
    if (Position == nullptr || ppData == nullptr)
        return NRV_ERR_INVALID_PARAMETER;
    *ppData = static_cast<const node*>(Position)->pData;
    return NRV_OK;
}

#endif  // NRV_LIST_H
