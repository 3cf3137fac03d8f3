// Instruction counts per edit, for figures that a shared machine cannot
// disturb. Run under valgrind --tool=callgrind (see docs/performance.md):
// each measured block zeroes the counters, runs its edit kRounds times and
// dumps the counts under the block's name. Outside valgrind it only checks
// that the three forms of each edit agree.

#include <cstdio>
#include <cstdlib>
#include <string>

#include <valgrind/callgrind.h>

#include "bench_cases.h"
#include "bench_engine.h"
#include "bench_typical.h"

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

// The six typical edits in every form this build has, checked to agree.
void CountTypical(const TypicalEdit& edit)
{
    const std::string& scan = *edit.pScan;
    std::string expected;
    edit.pHand(scan, expected);
    const std::string prefix = std::string("typical/") + edit.pszName + "/" + edit.pszScanName + "/";
    EngineEdit engine(scan, edit.pszExpression);
    if (engine.Run() < 0 || engine.Output() != expected) {
        std::fprintf(stderr, "%s: engine and hand-written disagree\n", edit.pszName);
        std::exit(3);
    }
    Block(prefix + "engine", [&] { engine.Run(); });
    FloorProfile floor;
    Block(prefix + "floor", [&] { edit.pFloor(scan, floor); });
    std::string out;
    Block(prefix + "hand", [&] { edit.pHand(scan, out); });
    auto regex = [&](const char* pszForm, const auto& f) {
        f(scan, out);
        if (out != expected) {
            std::fprintf(stderr, "%s: %s gives \"%s\", not \"%s\"\n", edit.pszName, pszForm, out.c_str(),
                         expected.c_str());
            std::exit(3);
        }
        Block(prefix + pszForm, [&] { f(scan, out); });
    };
    regex("std::regex", StdRegexEdit(edit.regex));
#ifdef NRV_HAVE_RE2
    regex("RE2", Re2Edit(edit.regex));
#endif
#ifdef NRV_HAVE_PCRE2
    regex("PCRE2-JIT", Pcre2Edit(edit.regex));
#endif
}

// The lot out of a 40-byte GS1 message: GS1Element, which reads and checks
// the whole message, beside Extract between markers that this one message
// happens to allow (they hold its expiry date), and the human-readable form.
void CountGs1()
{
    const std::string message = "0109501101530003" "17141120" "10LOT1234" "\x1D" "21S420";
    const struct {
        const char* pszName;
        const char* pszExpression;
        const char* pszOutput;
    } edits[] = {
        {"GS1Element", "{GS1Element({DecodedData()},10)}", "LOT1234"},
        {"Extract", "{Extract({DecodedData()},112010,{EscapeCharacter(1D)})}", "LOT1234"},
        {"GS1HumanReadable", "{GS1HumanReadable({DecodedData()})}", "(01)09501101530003(17)141120(10)LOT1234(21)S420"},
    };
    for (const auto& edit : edits) {
        EngineEdit engine(message, edit.pszExpression, kNrvCommandSetGs1);
        if (message.size() != 40 || engine.Run() < 0 || engine.Output() != edit.pszOutput) {
            std::fprintf(stderr, "gs1/%s: not \"%s\"\n", edit.pszName, edit.pszOutput);
            std::exit(3);
        }
        Block(std::string("gs1/") + edit.pszName, [&] { engine.Run(); });
    }
}

}  // namespace

int main()
{
    ForEachTypicalEdit(CountTypical);
    CountGs1();
    CountSink sink;
    ForEachEditCase(sink);
    for (const ParseCase& c : ParseCases()) {
        CNrvDataEditingProfile profile;
        Block(std::string("parse/") + c.pszName, [&] { profile.Parse(c.pszExpression); });
    }
    std::printf("rounds per block: %d\n", kRounds);
    return 0;
}
