/* Edits the scans of standard input, one per line, in one batch through the
   C interface, and prints each edited scan on a line of its own; a scan
   whose edit fails is printed unchanged and explained on standard error.
     edit_scans EXPRESSION [SETTING=VALUE...] < scans.txt
     edit_scans --rules FILE < scans.txt
   SETTING is one of nrv-edit's trigger and limit options without its
   dashes: min-size=4, symbology=Code128, starts-with=AB, max-text=1000.
   Exit status: 0 every scan edited or left alone, 1 an edit failed, 2 a
   usage error or an expression or rules file that does not read. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "NrvDataEdit.h"

/* Standard input cut into lines (without their '\n'), in one buffer. */
typedef struct {
    char* text;
    const char** lines;
    size_t* lengths;
    size_t count;
} TLines;

static int ReadLines(TLines* in)
{
    size_t size = 0, capacity = 4096;
    in->text = malloc(capacity);
    for (size_t n; in->text != NULL && (n = fread(in->text + size, 1, capacity - size, stdin)) > 0;) {
        size += n;
        if (size == capacity) {
            char* larger = realloc(in->text, capacity *= 2);
            if (larger == NULL)
                return 0;
            in->text = larger;
        }
    }
    if (in->text == NULL)
        return 0;
    size_t count = 0;
    for (size_t i = 0; i < size; ++i)
        count += in->text[i] == '\n';
    count += size > 0 && in->text[size - 1] != '\n';
    in->lines = malloc((count + 1) * sizeof *in->lines);
    in->lengths = malloc((count + 1) * sizeof *in->lengths);
    if (in->lines == NULL || in->lengths == NULL)
        return 0;
    in->count = 0;
    for (size_t start = 0; start < size; ++in->count) {
        const char* end = memchr(in->text + start, '\n', size - start);
        const size_t length = end != NULL ? (size_t)(end - (in->text + start)) : size - start;
        in->lines[in->count] = in->text + start;
        in->lengths[in->count] = length;
        start += length + 1;
    }
    return 1;
}

int main(int argc, char** argv)
{
    if (argc < 2 || (strcmp(argv[1], "--rules") == 0 && argc != 3)) {
        fprintf(stderr, "usage: %s EXPRESSION [SETTING=VALUE...] < scans\n       %s --rules FILE < scans\n", argv[0],
                argv[0]);
        return 2;
    }
    TNrvProfile* profile = NULL;
    TNrvRuleSet* rules = NULL;
    TNrvErrorInfo error;
    NRVRESULT result;
    if (strcmp(argv[1], "--rules") == 0) {
        result = NrvRuleSetNew(&rules);
        if (result >= 0)
            result = NrvRuleSetReadFile(rules, argv[2], &error);
    } else {
        result = NrvProfileNew(&profile);
        if (result >= 0)
            result = NrvProfileParse(profile, argv[1], &error);
        /* The settings as NAME=VALUE arguments. */
        const int count = argc - 2;
        const char** names = malloc((count + 1) * sizeof *names);
        const char** values = malloc((count + 1) * sizeof *values);
        for (int i = 0; result >= 0 && i < count; ++i) {
            char* equals = strchr(argv[i + 2], '=');
            if (equals == NULL || names == NULL || values == NULL) {
                fprintf(stderr, "edit_scans: expected SETTING=VALUE, got %s\n", argv[i + 2]);
                return 2;
            }
            *equals = '\0';
            names[i] = argv[i + 2];
            values[i] = equals + 1;
        }
        if (result >= 0)
            result = NrvProfileSetSettings(profile, names, values, (size_t)count, &error);
        free(names);
        free(values);
    }
    if (result < 0) {
        /* The report says where and why, with carets under the culprit. */
        fputs(result == NRV_ERR_OUT_OF_MEMORY ? "out of memory\n" : error.pszReport, stderr);
        NrvProfileFree(profile);
        NrvRuleSetFree(rules);
        return 2;
    }

    TLines in = {NULL, NULL, NULL, 0};
    if (!ReadLines(&in)) {
        fputs("edit_scans: out of memory\n", stderr);
        return 2;
    }
    NRVRESULT* codes = malloc((in.count + 1) * sizeof *codes);
    size_t* ends = malloc((in.count + 1) * sizeof *ends);
    char* outputs = NULL;
    if (codes == NULL || ends == NULL)
        result = NRV_ERR_OUT_OF_MEMORY;
    else if (profile != NULL)
        result = NrvProfileEditMany(profile, in.count, in.lines, in.lengths, kNrvScanSymbologyNotSpecified, codes,
                                    &outputs, ends);
    else
        result = NrvRuleSetEditMany(rules, in.count, in.lines, in.lengths, kNrvScanSymbologyNotSpecified, codes,
                                    &outputs, ends, NULL);
    int failed = result < 0;
    for (size_t i = 0, start = 0; result >= 0 && i < in.count; start = ends[i++]) {
        fwrite(outputs + start, 1, ends[i] - start, stdout);
        putchar('\n');
        if (codes[i] >= 0)
            continue;
        /* Asked only for a scan that failed: the edit runs once more. */
        failed = 1;
        const NRVRESULT described =
            profile != NULL
                ? NrvProfileDescribeFailure(profile, in.lines[i], in.lengths[i], kNrvScanSymbologyNotSpecified, &error)
                : NrvRuleSetDescribeFailure(rules, in.lines[i], in.lengths[i], kNrvScanSymbologyNotSpecified, &error);
        fprintf(stderr, "edit_scans: scan %zu: %s", i + 1, described >= 0 ? error.pszReport : "out of memory\n");
    }
    if (result < 0) {
        const char* name = NULL;
        NrvGetResultName(result, &name, NULL);
        fprintf(stderr, "edit_scans: %s\n", name);
    }
    NrvFree(outputs);
    free(codes);
    free(ends);
    free(in.text);
    free(in.lines);
    free(in.lengths);
    NrvProfileFree(profile);
    NrvRuleSetFree(rules);
    return failed ? 1 : 0;
}
