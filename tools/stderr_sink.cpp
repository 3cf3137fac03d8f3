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

std::string ForMessage(const char* pText, size_t nLength)
{
    static const char kHex[] = "0123456789ABCDEF";
    std::string shown;
    shown.reserve(nLength);
    for (size_t i = 0; i < nLength; ++i) {
        const unsigned char c = static_cast<unsigned char>(pText[i]);
        if (c >= 0x20 && c != 0x7F) {
            shown.push_back(static_cast<char>(c));
        } else if (c == '\t') {
            shown += "\\t";
        } else if (c == '\r') {
            shown += "\\r";
        } else if (c == '\n') {
            shown += "\\n";
        } else {
            const char szEscape[4] = {'\\', 'x', kHex[c >> 4], kHex[c & 0x0F]};
            shown.append(szEscape, 4);
        }
    }
    return shown;
}

std::string ForMessage(const char* pszText)
{
    return ForMessage(pszText, strlen(pszText));
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
