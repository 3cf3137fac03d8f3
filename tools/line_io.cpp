#include "line_io.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {

const size_t kBufferSize = 256 * 1024;

}  // namespace

COutput::COutput(int fd) : m_fd(fd), m_pBuffer(new char[kBufferSize]), m_nUsed(0), m_nErrno(0) {}

COutput::~COutput()
{
    Flush();
    delete[] m_pBuffer;
}

bool COutput::WriteAll(const char* pData, size_t nLength)
{
    while (nLength > 0 && m_nErrno == 0) {
        const ssize_t nWritten = ::write(m_fd, pData, nLength);
        if (nWritten < 0 && errno == EINTR)
            continue;
        if (nWritten <= 0) {
            m_nErrno = nWritten < 0 ? errno : EIO;
            break;
        }
        pData += nWritten;
        nLength -= static_cast<size_t>(nWritten);
    }
    return m_nErrno == 0;
}

void COutput::Write(const char* pData, size_t nLength)
{
    if (nLength > kBufferSize - m_nUsed) {
        Flush();
        if (nLength >= kBufferSize) {
            WriteAll(pData, nLength);  // too large to batch: straight through
            return;
        }
    }
    memcpy(m_pBuffer + m_nUsed, pData, nLength);
    m_nUsed += nLength;
}

void COutput::Write(char c)
{
    if (m_nUsed == kBufferSize)
        Flush();
    m_pBuffer[m_nUsed++] = c;
}

bool COutput::Flush()
{
    const size_t nUsed = m_nUsed;
    m_nUsed = 0;  // after a failure the output is lost anyway
    return WriteAll(m_pBuffer, nUsed);
}

CLineReader::CLineReader(int fd, COutput* pFlushFirst)
    : m_fd(fd),
      m_pFlushFirst(pFlushFirst),
      m_pBuffer(new char[kBufferSize]),
      m_nCapacity(kBufferSize),
      m_nStart(0),
      m_nEnd(0),
      m_nSearch(0),
      m_bEof(false),
      m_nErrno(0)
{
}

CLineReader::~CLineReader()
{
    delete[] m_pBuffer;
}

bool CLineReader::Next(char** ppLine, size_t* pnLength)
{
    for (;;) {
        char* const pNewline =
            static_cast<char*>(memchr(m_pBuffer + m_nSearch, '\n', m_nEnd - m_nSearch));
        if (pNewline != nullptr) {
            char* const pLine = m_pBuffer + m_nStart;
            m_nStart = m_nSearch = static_cast<size_t>(pNewline - m_pBuffer) + 1;
            return EndLine(pLine, static_cast<size_t>(pNewline - pLine), ppLine, pnLength);
        }
        if (m_nErrno != 0)
            return false;  // an unfinished line may be cut short: not a scan
        if (m_bEof) {
            if (m_nStart == m_nEnd && m_Piece != kLongLinePiece)
                return false;
            char* const pLine = m_pBuffer + m_nStart;  // the last line, without '\n'
            const size_t nLength = m_nEnd - m_nStart;
            m_nStart = m_nSearch = m_nEnd;
            return EndLine(pLine, nLength, ppLine, pnLength);
        }
        // Past the maximum, what is read of the line goes out at once.
        if (m_nMaximumLine != 0 && m_nEnd - m_nStart > (m_Piece == kLongLinePiece ? 0 : m_nMaximumLine)) {
            *ppLine = m_pBuffer + m_nStart;
            *pnLength = m_nEnd - m_nStart;
            m_nStart = m_nSearch = m_nEnd;
            m_Piece = kLongLinePiece;
            return true;
        }
        ReadMore();
    }
}

void CLineReader::ReadMore()
{
    // Keep the unfinished line, at the front; grow only for a line longer
    // than the buffer, so memory follows the longest line.
    if (m_nStart != 0) {
        memmove(m_pBuffer, m_pBuffer + m_nStart, m_nEnd - m_nStart);
        m_nEnd -= m_nStart;
        m_nStart = 0;
    }
    m_nSearch = m_nEnd;
    if (m_nEnd == m_nCapacity) {
        char* const pBigger = new char[m_nCapacity * 2];
        memcpy(pBigger, m_pBuffer, m_nEnd);
        delete[] m_pBuffer;
        m_pBuffer = pBigger;
        m_nCapacity *= 2;
    }
    if (m_pFlushFirst != nullptr) {
        m_pFlushFirst->Flush();
        fflush(stderr);  // buffered too: the messages about the lines just written
    }
    const ssize_t nRead = ::read(m_fd, m_pBuffer + m_nEnd, m_nCapacity - m_nEnd);
    if (nRead < 0 && errno != EINTR)  // interrupted: the caller's loop reads again
        m_nErrno = errno;
    else if (nRead == 0)
        m_bEof = true;
    else if (nRead > 0)
        m_nEnd += static_cast<size_t>(nRead);
}

bool CLineReader::EndLine(char* pLine, size_t nLength, char** ppLine, size_t* pnLength)
{
    const bool bLong = m_Piece == kLongLinePiece || (m_nMaximumLine != 0 && nLength > m_nMaximumLine);
    m_Piece = bLong ? kLongLineEnd : kWholeLine;
    *ppLine = pLine;
    *pnLength = nLength;
    return true;
}
