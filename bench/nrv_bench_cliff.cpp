// Large scans: CPU time per byte and page faults per edit from 4 KB to 1 MB,
// for commands that hold one, two or three scan-sized buffers during an
// edit, next to the same new[]/memcpy/delete[] calls made without the
// engine. When the C library hands freed memory at the top of its heap back
// to the system, the next edit faults every page in again; the second
// line of each size shows that the same calls without the engine are enough
// to cause it. Run each size in a fresh process (--size=N) so that what the
// allocator learned from one size does not carry over to the next; with no
// argument, the program runs itself once per size.

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "bench_engine.h"
#include "bench_scans.h"
#include "bench_typical.h"

namespace {

using namespace nrvbench;

constexpr int kEdits = 200;

long MinorFaults()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_minflt;
}

double CpuSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

// Runs f kEdits times after two warm-up runs; prints ns per byte and faults
// per run.
template <class F>
void Measure(const char* pszName, size_t nSize, F f)
{
    f();
    f();
    const long nFaults = MinorFaults();
    const double dStart = CpuSeconds();
    for (int i = 0; i < kEdits; ++i)
        f();
    const double dSeconds = CpuSeconds() - dStart;
    std::printf("%s\t%zu\t%.3f\t%.1f\n", pszName, nSize, dSeconds * 1e9 / kEdits / static_cast<double>(nSize),
                static_cast<double>(MinorFaults() - nFaults) / kEdits);
}

// The buffers a byte-wise command takes over a scan of n bytes, in the
// engine's order, without the engine: the parameter's record, the work
// buffer, the result record, then the result copied out.
void ThreeBuffers(const std::string& scan, std::string& out)
{
    const size_t n = scan.size();
    char* pParameter = FloorCopy(scan.data(), n);
    char* pWork = FloorWork(n);
    memcpy(pWork, pParameter, n);
    char* pResult = FloorCopy(pWork, n);
    delete[] pWork;
    delete[] pParameter;
    memcpy(&out[0], pResult, n);
    delete[] pResult;
}

void RunSize(size_t nSize)
{
    const std::string scan = GrowthScan(nSize);
    // First, while the heap is fresh, as an application that edits nothing.
    std::string out(nSize, ' ');
    Measure("same 3 buffers, no engine", nSize, [&] { ThreeBuffers(scan, out); });
    const struct {
        const char* pszName;
        const char* pszExpression;
    } commands[] = {
        {"DecodedData (1 buffer)", "{DecodedData()}"},
        {"TruncateFromBeginning (2)", "{TruncateFromBeginning({DecodedData()},0)}"},
        {"MakeUpperCase (3)", "{MakeUpperCase({DecodedData()})}"},
        {"Substitute (3)", "{Substitute({DecodedData()},-/,_)}"},
    };
    for (const auto& c : commands) {
        EngineEdit engine(scan, c.pszExpression);
        Measure(c.pszName, nSize, [&] { engine.Run(); });
    }
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc == 2 && std::strncmp(argv[1], "--size=", 7) == 0) {
        RunSize(static_cast<size_t>(std::strtoul(argv[1] + 7, nullptr, 10)));
        return 0;
    }
    std::printf("edit\tscan bytes\tCPU ns per byte\tpage faults per edit\n");
    std::fflush(stdout);
    for (size_t nSize : {4096, 16384, 32768, 49152, 65536, 131072, 262144, 524288, 1048576}) {
        const pid_t pid = fork();
        if (pid == 0) {
            const std::string size = "--size=" + std::to_string(nSize);
            execl("/proc/self/exe", argv[0], size.c_str(), static_cast<char*>(nullptr));
            _exit(127);
        }
        int status = 0;
        waitpid(pid, &status, 0);
    }
    return 0;
}
