#ifndef NRV_BENCH_ENGINE_H
#define NRV_BENCH_ENGINE_H

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "NrvDataEditingProfile.h"

namespace nrvbench {

// A parsed profile and the record handed to Edit, as an application keeps
// them between scans.
class EngineEdit {
public:
    EngineEdit(const std::string& scan, const char* pszExpression, unsigned nCommandSets = kNrvCommandSetSeed)
        : m_Scan(scan)
    {
        m_Profile.EnableCommandSets(nCommandSets);
        const NRVRESULT result = m_Profile.Parse(pszExpression);
        if (result < 0) {
            std::fprintf(stderr, "Parse failed (%lld): %s\n", static_cast<long long>(result), pszExpression);
            std::exit(2);
        }
    }

    // One edit of the scan; the record is reset first because Edit points
    // it at the profile's buffer.
    NRVRESULT Run()
    {
        m_Record.SymbologyID = kNrvScanSymbologyCode128;
        m_Record.SymbologyName = {0, nullptr};
        m_Record.String = {m_Scan.size(), &m_Scan[0]};
        return m_Profile.Edit(&m_Record);
    }

    std::string_view Output() const { return {m_Record.String.pValue, m_Record.String.nLength}; }
    CNrvDataEditingProfile& Profile() { return m_Profile; }

private:
    std::string m_Scan;
    CNrvDataEditingProfile m_Profile;
    TNrvScanDecodedData m_Record{};
};

// Runs the three forms once and stops the program when they disagree: a
// ratio between edits that do different things would mean nothing.
template <class Hand, class Regex>
void CheckSameOutput(const char* pszName, const std::string& scan, const char* pszExpression, const Hand& hand,
                     const Regex& regex)
{
    EngineEdit engine(scan, pszExpression);
    const NRVRESULT result = engine.Run();
    std::string handOut, regexOut;
    hand(scan, handOut);
    regex(scan, regexOut);
    if (result < 0 || engine.Output() != handOut || handOut != regexOut) {
        std::fprintf(stderr, "%s: the three forms disagree (engine code %lld)\n  engine: %s\n  hand:   %s\n  regex:  %s\n",
                     pszName, static_cast<long long>(result), std::string(engine.Output()).c_str(), handOut.c_str(),
                     regexOut.c_str());
        std::exit(3);
    }
}

}  // namespace nrvbench

#endif  // NRV_BENCH_ENGINE_H
