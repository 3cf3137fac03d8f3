// Wall-time benchmarks: parse, typical edits against two baselines, and the
// growth of each command with the scan's size. Counters report allocations
// per iteration, counted by the replaced operator new (bench_alloc.cpp).

#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "bench_alloc.h"
#include "bench_cases.h"
#include "bench_engine.h"

namespace {

using namespace nrvbench;

// Allocation calls and bytes per iteration of the loop that just ran.
void ReportAllocations(benchmark::State& state, const AllocationStats& before)
{
    const AllocationStats after = GetAllocationStats();
    const double nIterations = static_cast<double>(state.iterations());
    if (nIterations == 0)
        return;
    state.counters["allocs"] = static_cast<double>(after.nAllocations - before.nAllocations) / nIterations;
    state.counters["alloc_bytes"] = static_cast<double>(after.nBytes - before.nBytes) / nIterations;
}

void ReportSizes(benchmark::State& state, const std::string& scan)
{
    state.counters["scan_bytes"] = static_cast<double>(scan.size());
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(scan.size()));
}

// ---- Parse: Parse replaces the previous tree, so each iteration also frees
// the tree built by the one before, as re-configuring a profile does.
void RegisterParse()
{
    for (const ParseCase& c : ParseCases()) {
        const std::string name = std::string("parse/") + c.pszName;
        const char* pszExpression = c.pszExpression;
        benchmark::RegisterBenchmark(name.c_str(), [pszExpression](benchmark::State& state) {
            CNrvDataEditingProfile profile;
            const AllocationStats before = GetAllocationStats();
            for (auto _ : state) {
                NRVRESULT result = profile.Parse(pszExpression);
                benchmark::DoNotOptimize(result);
            }
            ReportAllocations(state, before);
            if (profile.Parse(pszExpression) < 0)
                state.SkipWithError("parse failed");
        });
    }
    // What the regex baselines pay once, for comparison with a parse.
    benchmark::RegisterBenchmark("parse/regex_compile_controls", [](benchmark::State& state) {
        for (auto _ : state) {
            std::regex pattern("[\\x00-\\x1f\\x80-\\xff]+$");
            benchmark::DoNotOptimize(pattern);
        }
    });
}

// ---- Typical edits, three forms each.
struct EditSink {
    template <class Hand, class Regex>
    void Add(CaseName name, const std::string& scan, const char* pszExpression, Hand hand, Regex regex)
    {
        const std::string prefix = std::string("edit/") + name.pszEdit + "/" + name.pszScan + "/";
        CheckSameOutput(prefix.c_str(), scan, pszExpression, hand, regex);

        auto engine = std::make_shared<EngineEdit>(scan, pszExpression);
        benchmark::RegisterBenchmark((prefix + "engine").c_str(), [engine, &scan](benchmark::State& state) {
            engine->Run();  // both of the profile's swapping buffers reach their size
            engine->Run();
            const AllocationStats before = GetAllocationStats();
            for (auto _ : state) {
                NRVRESULT result = engine->Run();
                benchmark::DoNotOptimize(result);
                benchmark::ClobberMemory();
            }
            ReportAllocations(state, before);
            ReportSizes(state, scan);
        });
        benchmark::RegisterBenchmark((prefix + "hand").c_str(), [hand, &scan](benchmark::State& state) {
            std::string out;
            hand(scan, out);
            const AllocationStats before = GetAllocationStats();
            for (auto _ : state) {
                hand(scan, out);
                benchmark::DoNotOptimize(out.data());
                benchmark::ClobberMemory();
            }
            ReportAllocations(state, before);
            ReportSizes(state, scan);
        });
        benchmark::RegisterBenchmark((prefix + "regex").c_str(), [regex, &scan](benchmark::State& state) {
            std::string out;
            regex(scan, out);
            const AllocationStats before = GetAllocationStats();
            for (auto _ : state) {
                regex(scan, out);
                benchmark::DoNotOptimize(out.data());
                benchmark::ClobberMemory();
            }
            ReportAllocations(state, before);
            ReportSizes(state, scan);
        });
    }
};

// ---- Growth: one command over scans from 1 byte to 1 MB.
void RegisterGrowth()
{
    for (const GrowthCase& c : GrowthCases()) {
        const std::string name = "growth/" + c.command;
        const GrowthCase growth = c;
        auto* pBenchmark = benchmark::RegisterBenchmark(name.c_str(), [growth](benchmark::State& state) {
            const size_t nSize = static_cast<size_t>(state.range(0));
            const std::string scan = growth.bHexScan   ? GrowthHexScan(nSize)
                                     : growth.bGs1Scan ? GrowthGs1Scan(nSize)
                                                       : GrowthScan(nSize);
            EngineEdit engine(scan, growth.expression.c_str(), kNrvCommandSetsAll);
            if (engine.Run() < 0) {
                state.SkipWithError("edit failed");
                return;
            }
            const AllocationStats before = GetAllocationStats();
            for (auto _ : state) {
                NRVRESULT result = engine.Run();
                benchmark::DoNotOptimize(result);
                benchmark::ClobberMemory();
            }
            ReportAllocations(state, before);
            state.SetComplexityN(static_cast<int64_t>(nSize));
        });
        std::vector<int64_t> sizes;
        for (int64_t n : {1, 64, 512, 4096, 16384, 65536, 262144, 1048576})
            if (static_cast<size_t>(n) >= c.nMinimumSize)
                sizes.push_back(n);
        pBenchmark->ArgName("bytes")->ArgsProduct({sizes})->Complexity();
    }
}

}  // namespace

int main(int argc, char** argv)
{
    RegisterParse();
    EditSink sink;
    ForEachEditCase(sink);
    RegisterGrowth();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
