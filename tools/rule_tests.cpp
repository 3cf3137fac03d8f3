#include "rule_tests.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "NrvEscapes.h"
#include "NrvShownBytes.h"
#include "editor.h"
#include "junit_report.h"

namespace {

enum { kExitPassed = 0, kExitFailed = 1, kExitError = 2 };

#ifdef NRV_EDIT_HAVE_RULES
// A report case's name: the test's number and its scan, cut short.
std::string CaseName(size_t nTest, const TNrvRuleTest& test)
{
    const size_t kShown = 48;
    std::string name = "test " + std::to_string(nTest) + ": \"";
    NrvAppendEscaped(test.scan.data(), std::min(test.scan.size(), kShown), &name);
    name += test.scan.size() > kShown ? "\"..." : "\"";
    return name;
}

SJunitCase ReportCase(const char* pszFile, size_t nTest, const TNrvRuleTest& test,
                      const TNrvRuleTestOutcome& outcome, const CNrvRuleSet& rules)
{
    SJunitCase report;
    report.name = CaseName(nTest, test);
    report.nLine = test.nLine;
    report.bFailed = !outcome.bPassed;
    if (report.bFailed) {
        report.message = "expected " + NrvDescribeExpected(test, rules) + " got " + NrvDescribeOutcome(outcome, rules);
        // The file's name as the report carries it, so that the caret stays under its byte.
        report.detail = NrvFormatRuleTestFailure(XmlCarriable(pszFile).c_str(), nTest, test, outcome, rules);
    }
    return report;
}

bool WriteReport(const char* pszPath, const std::string& report)
{
    FILE* pFile = fopen(pszPath, "wb");
    int nErrno = errno;
    bool bWritten = pFile != nullptr;
    if (bWritten) {
        bWritten = fwrite(report.data(), 1, report.size(), pFile) == report.size();
        nErrno = errno;
        if (fclose(pFile) != 0 && bWritten) {
            bWritten = false;
            nErrno = errno;
        }
    }
    if (!bWritten)
        fprintf(stderr, "nrv-edit: cannot write the report %s: %s\n", NrvShown(pszPath, kNrvBytesMessage).c_str(),
                strerror(nErrno));
    return bWritten;
}
#endif

}  // namespace

int RunRuleTests(const SOptions& options)
{
    if (!HaveRules("--test"))
        return kExitError;
#ifdef NRV_EDIT_HAVE_RULES
    CNrvRuleSet rules;
    std::vector<TNrvRuleTest> tests;
    if (!ReadRulesFile(options, options.pszTest, &rules, &tests))
        return kExitError;
    const std::string fileName = NrvShown(options.pszTest, kNrvBytesMessage);
    std::vector<SJunitCase> cases;
    size_t nFailed = 0;
    std::string out;
    for (size_t i = 0; i < tests.size(); ++i) {
        const TNrvRuleTestOutcome outcome = NrvRunRuleTest(&rules, tests[i]);
        nFailed += outcome.bPassed ? 0 : 1;
        out.clear();
        if (options.bJson) {
            NrvAppendRuleTestJson(i + 1, tests[i], outcome, rules, &out);
            out += '\n';
        } else if (!outcome.bPassed) {
            out = NrvFormatRuleTestFailure(options.pszTest, i + 1, tests[i], outcome, rules);
        }
        fwrite(out.data(), 1, out.size(), stdout);
        if (options.pszJunit != nullptr)
            cases.push_back(ReportCase(options.pszTest, i + 1, tests[i], outcome, rules));
    }
    if (options.pszJunit != nullptr && !WriteReport(options.pszJunit, FormatJunitReport(fileName, cases)))
        return kExitError;
    if (tests.empty()) {
        fprintf(stderr, "nrv-edit: the rules file %s holds no [[test]] table: nothing was checked\n",
                fileName.c_str());
        return kExitFailed;
    }
    if (!options.bJson)
        printf("%zu passed, %zu failed\n", tests.size() - nFailed, nFailed);
    return nFailed == 0 ? kExitPassed : kExitFailed;
#else
    return kExitError;
#endif
}
