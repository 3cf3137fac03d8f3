// Instruction counts per edit, for figures that a shared machine cannot
// disturb. Run under valgrind --tool=callgrind (see docs/performance.md):
// each measured block zeroes the counters, runs its edit kRounds times and
// dumps the counts under the block's name. Outside valgrind it only checks
// that the three forms of each edit agree.

#include <cstdio>
#include <string>

#include <valgrind/callgrind.h>

#include "bench_cases.h"
#include "bench_engine.h"

namespace {

using namespace nrvbench;

constexpr int kRounds = 1000;

template <class F>
void Block(const std::string& name, F f)
{
    f();  // warm: buffers sized, caches and branch history as in steady use
    CALLGRIND_ZERO_STATS;
    for (int i = 0; i < kRounds; ++i)
        f();
    CALLGRIND_DUMP_STATS_AT(name.c_str());
}

struct CountSink {
    template <class Hand, class Regex>
    void Add(CaseName name, const std::string& scan, const char* pszExpression, Hand hand, Regex regex)
    {
        CheckSameOutput(name.pszEdit, scan, pszExpression, hand, regex);
        const std::string prefix = std::string("edit/") + name.pszEdit + "/" + name.pszScan + "/";
        EngineEdit engine(scan, pszExpression);
        Block(prefix + "engine", [&] { engine.Run(); });
        std::string out;
        Block(prefix + "hand", [&] { hand(scan, out); });
        Block(prefix + "regex", [&] { regex(scan, out); });
    }
};

}  // namespace

int main()
{
    CountSink sink;
    ForEachEditCase(sink);
    for (const ParseCase& c : ParseCases()) {
        CNrvDataEditingProfile profile;
        Block(std::string("parse/") + c.pszName, [&] { profile.Parse(c.pszExpression); });
    }
    std::printf("rounds per block: %d\n", kRounds);
    return 0;
}
