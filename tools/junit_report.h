// A JUnit XML report, the form CI systems read test results in: one
// <testsuite> of <testcase> elements, a <failure> in each that failed.
#ifndef NRV_EDIT_JUNIT_REPORT_H
#define NRV_EDIT_JUNIT_REPORT_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

struct SJunitCase {
    std::string name;
    size_t nLine = 0;     // in the suite's file, from 1
    bool bFailed = false;
    std::string message;  // the failure in one line
    std::string detail;   // the failure as a person reads it, lines and all
};

// The whole report. Texts may hold any bytes: valid UTF-8 stays as it is,
// markup characters become references, and every byte that XML cannot
// carry (control bytes, bytes that start no valid UTF-8 sequence, the
// non-characters U+FFFE and U+FFFF) is written \xHH, so the report is
// always well-formed.
std::string FormatJunitReport(std::string_view suite, const std::vector<SJunitCase>& cases);

// Appends text as XML character data (bAttribute: for a double-quoted
// attribute value, where line breaks and tabs become references too).
void AppendXmlText(std::string_view text, bool bAttribute, std::string* pOut);

// The text with every byte XML cannot carry written \xHH and the rest as
// it is: what a reader of the report gets back of it, column for column.
std::string XmlCarriable(std::string_view text);

#endif  // NRV_EDIT_JUNIT_REPORT_H
