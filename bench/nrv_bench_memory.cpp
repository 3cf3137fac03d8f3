// Allocations and memory of a profile, counted exactly (no timing): for each
// typical edit, what Parse allocates and keeps, what one Edit allocates, the
// peak above the parsed profile during an Edit, and what the profile keeps
// between scans; the same counts for the two baselines. Prints Markdown.

#include <cstdio>
#include <string>

#include "bench_alloc.h"
#include "bench_cases.h"
#include "bench_engine.h"

namespace {

using namespace nrvbench;

struct Span {
    size_t nAllocations;
    size_t nBytes;
    size_t nPeakAbove;  // peak live bytes during the span above the live bytes at its start
    long long nKept;    // live bytes at its end minus at its start
};

template <class F>
Span Measure(F f)
{
    ResetPeak();
    const AllocationStats before = GetAllocationStats();
    f();
    const AllocationStats after = GetAllocationStats();
    return Span{after.nAllocations - before.nAllocations, after.nBytes - before.nBytes,
                after.nPeakBytes - before.nLiveBytes,
                static_cast<long long>(after.nLiveBytes) - static_cast<long long>(before.nLiveBytes)};
}

struct MemorySink {
    template <class Hand, class Regex>
    void Add(CaseName name, const std::string& scan, const char* pszExpression, Hand hand, Regex regex)
    {
        CheckSameOutput(name.pszEdit, scan, pszExpression, hand, regex);

        // The profile: its construction and parse, a first edit (buffers
        // grow), then a steady edit as on every later scan. The profile
        // builds into one of two buffers that swap after each edit, so the
        // second edit still sizes the other one.
        const std::string input = scan;
        EngineEdit* pEngine = nullptr;
        const Span parse = Measure([&] { pEngine = new EngineEdit(input, pszExpression); });
        const Span first = Measure([&] { pEngine->Run(); });
        pEngine->Run();
        const Span steady = Measure([&] { pEngine->Run(); });
        const Span release = Measure([&] { delete pEngine; });

        std::string out;
        hand(scan, out);
        const Span handSpan = Measure([&] { hand(scan, out); });
        std::string regexOut;
        regex(scan, regexOut);
        const Span regexSpan = Measure([&] { regex(scan, regexOut); });

        // EngineEdit itself and its copy of the scan are not the profile's:
        // take their allocations out of the figures.
        const size_t nScanHeap = scan.size() > 15 ? scan.size() + 1 : 0;
        std::printf("| %s / %s | %zu | %zu | %lld | %zu | %zu | %zu | %lld | %zu | %zu | %zu |\n", name.pszEdit,
                    name.pszScan, scan.size(), parse.nAllocations - 1 - (nScanHeap ? 1 : 0),
                    parse.nKept - static_cast<long long>(sizeof(EngineEdit) + nScanHeap), first.nAllocations,
                    steady.nAllocations, steady.nPeakAbove, static_cast<long long>(-release.nKept) -
                        static_cast<long long>(sizeof(EngineEdit) + nScanHeap),
                    handSpan.nAllocations, regexSpan.nAllocations, regexSpan.nPeakAbove);
    }
};

}  // namespace

int main()
{
    std::printf("| edit / scan | scan bytes | parse allocs | tree bytes | first edit allocs | allocs per edit | "
                "peak bytes in edit | profile bytes after edits | hand allocs | regex allocs | regex peak bytes |\n");
    std::printf("|---|---:|---:|---:|---:|---:|---:|---:|---:|---:|---:|\n");
    MemorySink sink;
    ForEachEditCase(sink);

    std::printf("\n| parse case | allocs per parse | bytes allocated | tree bytes kept |\n|---|---:|---:|---:|\n");
    for (const ParseCase& c : ParseCases()) {
        CNrvDataEditingProfile* pProfile = nullptr;
        const Span construct = Measure([&] { pProfile = new CNrvDataEditingProfile; });
        const Span parse = Measure([&] { pProfile->Parse(c.pszExpression); });
        std::printf("| %s | %zu | %zu | %lld |\n", c.pszName, parse.nAllocations, parse.nBytes, parse.nKept);
        (void)construct;
        delete pProfile;
    }
    return 0;
}
