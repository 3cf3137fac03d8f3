// Buffered line input and output over file descriptors. Reads are as large
// as the buffer, writes are batched, and pending output is written out
// before every read that may block, so batches stream fast and an
// interactive session still sees each answer at once.
#ifndef NRV_EDIT_LINE_IO_H
#define NRV_EDIT_LINE_IO_H

#include <cstddef>
#include <string>

class COutput {
public:
    explicit COutput(int fd);
    ~COutput();
    COutput(const COutput&) = delete;
    COutput& operator=(const COutput&) = delete;

    void Write(const char* pData, size_t nLength);
    void Write(char c);
    // False once a write has failed; the error stays.
    bool Flush();
    bool Failed() const { return m_nErrno != 0; }
    int Errno() const { return m_nErrno; }

private:
    bool WriteAll(const char* pData, size_t nLength);

    int m_fd;
    char* m_pBuffer;
    size_t m_nUsed;
    int m_nErrno;
};

class CLineReader {
public:
    // pFlushFirst, when given, is flushed before each read.
    CLineReader(int fd, COutput* pFlushFirst);
    ~CLineReader();
    CLineReader(const CLineReader&) = delete;
    CLineReader& operator=(const CLineReader&) = delete;

    // The next line without its '\n' (a last line without one counts).
    // The bytes stay valid until the next call. False at the end of the
    // input or on a read error (see ReadFailed).
    bool Next(char** ppLine, size_t* pnLength);
    bool ReadFailed() const { return m_nErrno != 0; }
    int Errno() const { return m_nErrno; }

    // A line longer than nBytes (0: no limit) is handed out in pieces as it
    // arrives instead of being held whole; Piece() tells what Next gave.
    enum EPiece { kWholeLine, kLongLinePiece, kLongLineEnd };
    void SetMaximumLine(size_t nBytes) { m_nMaximumLine = nBytes; }
    EPiece Piece() const { return m_Piece; }

private:
    bool EndLine(char* pLine, size_t nLength, char** ppLine, size_t* pnLength);
    // Reads what comes next after the unfinished line, or notes the end or
    // the error.
    void ReadMore();

    int m_fd;
    COutput* m_pFlushFirst;
    char* m_pBuffer;
    size_t m_nCapacity;
    size_t m_nStart;   // first byte not yet handed out
    size_t m_nEnd;     // end of the bytes read
    size_t m_nSearch;  // where to look for the next '\n'
    bool m_bEof;
    int m_nErrno;
    size_t m_nMaximumLine = 0;
    EPiece m_Piece = kWholeLine;
};

#endif  // NRV_EDIT_LINE_IO_H
