#include "junit_report.h"

#include "NrvShownBytes.h"

namespace {

void AppendByteEscape(unsigned char c, std::string* pOut)
{
    static const char kHex[] = "0123456789ABCDEF";
    const char szEscape[4] = {'\\', 'x', kHex[c >> 4], kHex[c & 0x0F]};
    pOut->append(szEscape, 4);
}

void AppendAttribute(const char* pszName, std::string_view value, std::string* pOut)
{
    *pOut += ' ';
    *pOut += pszName;
    *pOut += "=\"";
    AppendXmlText(value, true, pOut);
    *pOut += '"';
}

}  // namespace

std::string XmlCarriable(std::string_view text)
{
    std::string out;
    const unsigned char* p = reinterpret_cast<const unsigned char*>(text.data());
    for (size_t i = 0; i < text.size();) {
        if (p[i] < 0x80) {
            // A carriage return is a character, but a reader turns it into a line feed.
            const bool bControl = (p[i] < 0x20 && p[i] != '\n' && p[i] != '\t') || p[i] == 0x7F;
            if (bControl)
                AppendByteEscape(p[i], &out);
            else
                out += static_cast<char>(p[i]);
            ++i;
            continue;
        }
        // 0 for a byte that starts no valid sequence: it is escaped alone.
        const size_t nSequence = NrvUtf8SequenceLength(p + i, text.size() - i);
        // U+FFFE and U+FFFF are not XML characters; the C1 controls are, but
        // a terminal showing the report would act on them.
        const bool bNonCharacter = nSequence == 3 && p[i] == 0xEF && p[i + 1] == 0xBF && p[i + 2] >= 0xBE;
        const bool bC1 = nSequence == 2 && p[i] == 0xC2 && p[i + 1] < 0xA0;
        if (nSequence != 0 && !bNonCharacter && !bC1) {
            out.append(text.data() + i, nSequence);
            i += nSequence;
        } else {
            for (size_t n = nSequence != 0 ? nSequence : 1; n > 0; --n)
                AppendByteEscape(p[i++], &out);
        }
    }
    return out;
}

void AppendXmlText(std::string_view text, bool bAttribute, std::string* pOut)
{
    for (const char c : XmlCarriable(text)) {
        switch (c) {
        case '&': *pOut += "&amp;"; break;
        case '<': *pOut += "&lt;"; break;
        case '>': *pOut += "&gt;"; break;
        case '"': *pOut += bAttribute ? "&quot;" : "\""; break;
        case '\n': *pOut += bAttribute ? "&#10;" : "\n"; break;
        case '\t': *pOut += bAttribute ? "&#9;" : "\t"; break;
        default: *pOut += c;
        }
    }
}

std::string FormatJunitReport(std::string_view suite, const std::vector<SJunitCase>& cases)
{
    size_t nFailed = 0;
    for (const SJunitCase& test : cases)
        nFailed += test.bFailed ? 1 : 0;
    const std::string counts[] = {std::to_string(cases.size()), std::to_string(nFailed)};
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites";
    AppendAttribute("tests", counts[0], &xml);
    AppendAttribute("failures", counts[1], &xml);
    xml += " errors=\"0\">\n  <testsuite";
    AppendAttribute("name", suite, &xml);
    AppendAttribute("tests", counts[0], &xml);
    AppendAttribute("failures", counts[1], &xml);
    xml += " errors=\"0\" skipped=\"0\">\n";
    for (const SJunitCase& test : cases) {
        xml += "    <testcase";
        AppendAttribute("classname", suite, &xml);
        AppendAttribute("name", test.name, &xml);
        AppendAttribute("file", suite, &xml);
        AppendAttribute("line", std::to_string(test.nLine), &xml);
        if (!test.bFailed) {
            xml += "/>\n";
            continue;
        }
        xml += ">\n      <failure";
        AppendAttribute("message", test.message, &xml);
        xml += ">";
        AppendXmlText(test.detail, false, &xml);
        xml += "</failure>\n    </testcase>\n";
    }
    xml += "  </testsuite>\n</testsuites>\n";
    return xml;
}
