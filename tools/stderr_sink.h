// Standard error for nrv-edit: buffered (a flood of failing scans costs one
// write per buffer, not one per message), with at most a given number of
// per-scan messages and the rest summed up at the end. Whatever is echoed
// in a message goes through the library's message form (NrvShownBytes.h),
// so that no control byte reaches the terminal raw.
#ifndef NRV_EDIT_STDERR_SINK_H
#define NRV_EDIT_STDERR_SINK_H

#include <cstddef>
#include <string>

// Gives standard error a full buffer; flushed with standard output before
// every read that may block, and at the end.
void BufferStandardError();

// Per-scan messages: the first nMaximum are written (0: all), the others
// only counted.
class CScanMessages {
public:
    explicit CScanMessages(size_t nMaximum) : m_nMaximum(nMaximum), m_nCount(0) {}

    // Counts one message; true when it is to be written.
    bool Admit() { return ++m_nCount <= m_nMaximum || m_nMaximum == 0; }
    // Writes "nrv-edit: scan N: <what>" if admitted.
    void Report(unsigned long long nScan, const std::string& what);
    unsigned long long Count() const { return m_nCount; }
    // Writes how many messages were left out, if any.
    void Summarise() const;

private:
    size_t m_nMaximum;
    unsigned long long m_nCount;
};

// Flushes standard output and standard error. A write that failed on
// standard output is reported, and turns nStatus into 2 (as does a failure
// of standard error itself, which can no longer be reported).
int FinishStandardStreams(int nStatus);

#endif  // NRV_EDIT_STDERR_SINK_H
