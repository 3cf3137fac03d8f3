#include "stderr_sink.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {

char g_StandardErrorBuffer[64 * 1024];

}  // namespace

void BufferStandardError()
{
    setvbuf(stderr, g_StandardErrorBuffer, _IOFBF, sizeof g_StandardErrorBuffer);
}

void CScanMessages::Report(unsigned long long nScan, const std::string& what)
{
    if (Admit())
        fprintf(stderr, "nrv-edit: scan %llu: %s\n", nScan, what.c_str());
}

void CScanMessages::Summarise() const
{
    if (m_nMaximum != 0 && m_nCount > m_nMaximum)
        fprintf(stderr, "nrv-edit: %llu scan messages in all, %llu not shown (--max-errors %zu; 0 shows all)\n",
                m_nCount, m_nCount - m_nMaximum, m_nMaximum);
}

int FinishStandardStreams(int nStatus)
{
    if (fflush(stdout) != 0 || ferror(stdout)) {
        fprintf(stderr, "nrv-edit: cannot write the output: %s\n", strerror(errno));
        nStatus = 2;
    }
    if (fflush(stderr) != 0 || ferror(stderr))
        nStatus = 2;
    return nStatus;
}
