#ifndef NRV_DATA_EDITING_PROFILE_H
#define NRV_DATA_EDITING_PROFILE_H

#include <cstddef>

#include "NrvCommandTable.h"
#include "NrvList.h"
#include "NrvScanTypes.h"

class CNrvParseObserver;

// Holds one parsed expression and the trigger conditions, and applies the
// expression to each decoded-data record handed to Edit. Commands are written
// between kDelimiterOpen and kDelimiterClose. One thread at a time.
class CNrvDataEditingProfile {
public:
    static constexpr char kDelimiterOpen = '{';
    static constexpr char kDelimiterClose = '}';

    CNrvDataEditingProfile();
    CNrvDataEditingProfile(const CNrvDataEditingProfile&) = delete;
    CNrvDataEditingProfile& operator=(const CNrvDataEditingProfile&) = delete;
    virtual ~CNrvDataEditingProfile();

    // The command sets the next Parse knows besides the eighteen seed
    // commands: kNrvCommandSetGs1, or kNrvCommandSetSeed (the default) for
    // none. The expression parsed already is kept as it is; a profile that
    // never enables a set parses, edits and traces exactly as one without
    // this call. NRV_ERR_INVALID_PARAMETER, and nothing changed, for a bit
    // outside kNrvCommandSetsAll.
    NRVRESULT EnableCommandSets(unsigned nSets);
    unsigned GetCommandSets() const { return m_nCommandSets; }

    // Replaces the expression. On failure returns the parser's code, and Edit
    // refuses to run with that code until an expression parses.
    NRVRESULT Parse(const char* pszExpression);
    // The same, telling pObserver what the parser makes and where it stops
    // (the diagnostics' way in; an ordinary parse passes none).
    NRVRESULT Parse(const char* pszExpression, CNrvParseObserver* pObserver);
    // When the triggers hold, replaces the record's String with the edited
    // data: a zero-terminated buffer that the profile owns until the next
    // Edit, the next Parse or its destruction. Returns NRV_OK_NOT_TRIGGERED
    // when the triggers do not hold. On any failure the record is untouched.
    NRVRESULT Edit(TNrvScanDecodedData* pDecodedData);

    // Triggers: every condition that is set must hold. A null or empty text,
    // a size of 0 and an empty symbology list mean "not set".
    NRVRESULT ResetTrigger();
    // NRV_ERR_INVALID_PARAMETER for an identifier outside the enumeration.
    NRVRESULT AddTriggerSymbology(int nSymbologyId);
    NRVRESULT WriteTriggerContains(const char* pszText);
    NRVRESULT WriteTriggerStartsBy(const char* pszText);
    NRVRESULT WriteTriggerEndsWith(const char* pszText);
    // Inclusive bounds on the decoded data's length.
    NRVRESULT WriteTriggerMinimumSize(size_t nSize);
    NRVRESULT WriteTriggerMaximumSize(size_t nSize);

    // Limits on one edit, none by default (0). A command that would build a
    // text longer than nBytes fails with NRV_ERR_TEXT_LIMIT. Every edit may
    // examine and copy nBase + nPerScanByte * (scan length) bytes (searches
    // are charged a bound of their worst case before they start); past that
    // a command fails with NRV_ERR_WORK_LIMIT. Either way the edit fails as
    // any other: the record is left as it was.
    NRVRESULT WriteLimitMaximumTextSize(size_t nBytes);
    NRVRESULT WriteLimitWorkBudget(size_t nBase, size_t nPerScanByte);

    // For the commands: true when a limit is set, so that the check below
    // costs one branch when none is.
    bool HasLimits() const { return m_bLimits; }
    // Checks a result of nResultSize bytes against the largest text and
    // takes nWork from the edit's budget.
    NRVRESULT ChargeWork(size_t nResultSize, size_t nWork);
    // What Edit does before it runs the expression: keeps nLength bytes of
    // pData as the decoded data the commands read and gives the edit its
    // whole work budget. For explanations, which run the expression's
    // operations themselves; NRV_ERR_INVALID_PARAMETER for null data of
    // non-zero length.
    NRVRESULT PrepareRun(const char* pData, size_t nLength)
    {
        if (m_bLimits)
            StartWorkBudget(nLength);
        return WriteOriginalDecodedData(pData, nLength);
    }

    // The decoded data of the record being edited, read by the commands.
    const char* GetOriginalDecodedData() const { return m_pszOriginalDecodedData; }
    size_t GetOriginalDecodedDataLength() const { return m_nOriginalDecodedDataLength; }

    // Deletes the expression; the profile then edits nothing.
    void RemoveAllOperations();

private:
    bool CheckIfTriggerConditionAreMet(TNrvScanDecodedData* pDecodedData);
    bool DoesStartBy(const char* pszData, const char* pszText, size_t nDataLength);
    bool DoesEndWith(const char* pszData, const char* pszText, size_t nDataLength);
    bool DoesContain(const char* pszData, const char* pszText, size_t nDataLength);
    NRVRESULT WriteOriginalDecodedData(const char* pszData, size_t nLength);
    static NRVRESULT WriteTriggerText(char** ppszTrigger, const char* pszText);
    void StartWorkBudget(size_t nScanLength);

    CNrvList m_Operations;
    char* m_pszOriginalDecodedData;
    size_t m_nOriginalDecodedDataLength;
    size_t m_nTriggerMinimumSize;
    size_t m_nTriggerMaximumSize;
    int* m_pTriggerSymbologyId;
    int m_nTriggerSymbologyIdCount;
    char* m_pszTriggerContains;
    char* m_pszTriggerStartsBy;
    char* m_pszTriggerEndsWith;

    // The outcome of the last Parse (Edit refuses to run after a failed
    // one), the capacity of the scan's copy, and the two buffers the edited
    // data is built in. Both buffers keep their capacity between
    // edits; they swap after a successful one, so the record's previous
    // text stays intact while the next one is built.
    NRVRESULT m_ParseResult;
    size_t m_nOriginalDecodedDataCapacity;
    char* m_pszEditedData;
    size_t m_nEditedDataLength;
    size_t m_nEditedDataCapacity;
    char* m_pszEditBuffer;
    size_t m_nEditBufferCapacity;

    // The extension sets the next Parse knows.
    unsigned m_nCommandSets;

    // The limits (0: none), and what is left of the budget of this edit.
    bool m_bLimits;
    size_t m_nLimitMaximumTextSize;
    size_t m_nLimitWorkBase;
    size_t m_nLimitWorkPerScanByte;
    size_t m_nWorkLeft;
};

#endif  // NRV_DATA_EDITING_PROFILE_H
