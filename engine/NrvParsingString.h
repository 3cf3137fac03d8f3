#ifndef NRV_PARSING_STRING_H
#define NRV_PARSING_STRING_H

#include <cstddef>

#include "NrvScanTypes.h"
#include "NrvTrace.h"

// A window [m_nStartIndex, m_nStopIndex) onto a character text. Windows cut
// from another window, and copies, share the text given to the first
// constructor and stay valid as long as that text does; only WriteString
// gives a window a text of its own.
class CNrvParsingString {
public:
    CNrvParsingString();
    explicit CNrvParsingString(char const* pszString);
    CNrvParsingString(CNrvParsingString const& source);
    virtual ~CNrvParsingString();
    CNrvParsingString& operator=(CNrvParsingString const& source);

    // Called on a window that begins with cStart (or is empty): returns what
    // lies between cStart and the cEnd that balances it, and leaves this
    // window beginning at that cEnd. Without a balancing cEnd, returns all
    // after cStart flagged as a command and leaves this window empty.
    CNrvParsingString Extract(char cStart, char cEnd);
    // Cuts and returns what lies before the first c (all of it when c does
    // not occur); this window then begins with c, or is empty.
    CNrvParsingString ExtractBefore(char c);
    // Cuts and returns the first nIndex characters (at most the window).
    CNrvParsingString ExtractBeforeIndex(size_t nIndex);
    // Drops the first character when it is one of pString's characters.
    // An empty window stays empty. Otherwise NRV_ERR_INVALID_PARAMETER.
    NRVRESULT Remove(CNrvParsingString* pString);

    bool IsEmpty() const { return m_nStopIndex == m_nStartIndex; }
    // An integer literal: optional white space, one optional sign, decimal
    // digits, optional white space, and a value that fits 32 bits.
    bool IsNumber() const;
    const char* GetString() const { return m_pszString != nullptr ? m_pszString + m_nStartIndex : ""; }
    // Makes the window an owned copy of the zero-terminated text.
    NRVRESULT WriteString(const char* pszString);
    size_t GetLength() const { return m_nStopIndex - m_nStartIndex; }
    int GetFlag() const { return m_nFlag; }
    void SetFlag(int nFlag) { m_nFlag = nFlag; }
    // Position of the first c in the window, or -1.
    int Find(char c) const;
    // Hands one trace line to the installed callback: pszFormat with its
    // single %s replaced by the window's characters. Does nothing, not even
    // the formatting or a call, while no callback is installed.
    void DbgFormatDump(bool bError, const char* pszFormat)
    {
        if (s_pfnTrace != nullptr)
            Trace(bError, pszFormat);
    }

    // The calling thread's trace sink (NrvSetTraceCallback, for hosts).
    static void SetTraceCallback(PFNNRVTRACE pfnTrace, void* pContext);

protected:
    bool m_bToDelete;
    char* m_pszString;
    size_t m_nStartIndex;
    size_t m_nStopIndex;
    int m_nFlag;

private:
    void Trace(bool bError, const char* pszFormat) const;

    // The calling thread's trace sink, tested where each trace line is made:
    // each thread has its own, so two threads parsing at once never receive
    // each other's lines.
    static inline thread_local PFNNRVTRACE s_pfnTrace = nullptr;
    static inline thread_local void* s_pTraceContext = nullptr;

    // The window [nStart, nStop) of this window's text: shared, or copied
    // when this window owns its text and may die before the piece.
    CNrvParsingString Piece(size_t nStart, size_t nStop, int nFlag) const;
    void Release();
};

#endif  // NRV_PARSING_STRING_H
