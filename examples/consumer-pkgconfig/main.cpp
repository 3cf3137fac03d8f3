// Edits scans read from standard input, one per line, with the expression
// given on the command line, and prints each edited scan with its code.
//   nrv_filter [-t] EXPRESSION < scans.txt
// -t prints the parser's trace lines to standard error.
#include <cstdio>
#include <cstring>
#include <string>

#include "NrvDataEditingProfile.h"
#include "NrvTrace.h"

namespace {

void PrintTrace(bool bError, const char* pszLine, void* /*pContext*/)
{
    fprintf(stderr, "%s %s\n", bError ? "error:" : "trace:", pszLine);
}

}  // namespace

int main(int argc, char** argv)
{
    int nArg = 1;
    if (nArg < argc && strcmp(argv[nArg], "-t") == 0) {
        NrvSetTraceCallback(PrintTrace, nullptr);
        ++nArg;
    }
    if (nArg + 1 != argc) {
        fprintf(stderr, "usage: %s [-t] EXPRESSION < scans\n", argv[0]);
        return 2;
    }

    CNrvDataEditingProfile profile;
    NRVRESULT result = profile.Parse(argv[nArg]);
    NrvSetTraceCallback(nullptr, nullptr);
    if (result < 0) {
        fprintf(stderr, "cannot parse the expression: code %lld\n", static_cast<long long>(result));
        return 1;
    }

    // Each line is one scan; the line break is not part of it. Editing
    // points the record at the profile's buffer, so the line keeps its text.
    std::string line;
    int c;
    bool bMore = true;
    while (bMore) {
        line.clear();
        while ((c = getchar()) != EOF && c != '\n')
            line.push_back(static_cast<char>(c));
        bMore = c != EOF;
        if (!bMore && line.empty())
            break;
        TNrvScanDecodedData record = {kNrvScanSymbologyNotSpecified, {0, nullptr}, {line.size(), &line[0]}};
        result = profile.Edit(&record);
        // The edited data may hold zero bytes: write it by its length.
        fwrite(record.String.pValue, 1, record.String.nLength, stdout);
        printf("\t%lld\n", static_cast<long long>(result));
    }
    return 0;
}
