/* The C interface from C: every call, its errors, and who owns each buffer.
   Usage: test_capi GROUP (one of the groups at the end; "all" runs them all). */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "NrvDataEdit.h"
#include "counting_allocator.h"

static int g_nChecks, g_nFailed;

#ifdef NRV_C_TEST_HAVE_RULES
#define HAVE_RULES 1
#else
#define HAVE_RULES 0
#endif

#define CHECK(condition, row)                                                                    \
    do {                                                                                         \
        ++g_nChecks;                                                                             \
        if (!(condition)) {                                                                      \
            ++g_nFailed;                                                                         \
            fprintf(stderr, "%s:%d: row %d: %s\n", __FILE__, __LINE__, (int)(row), #condition);  \
        }                                                                                        \
    } while (0)

#define COUNT(array) (sizeof(array) / sizeof((array)[0]))

static int Contains(const char* text, const char* part)
{
    return text != NULL && strstr(text, part) != NULL;
}

static int SameBytes(const char* data, size_t length, const char* expected, size_t expectedLength)
{
    return length == expectedLength && (length == 0 || memcmp(data, expected, length) == 0);
}

static TNrvProfile* NewProfile(const char* expression)
{
    TNrvProfile* profile = NULL;
    if (NrvProfileNew(&profile) < 0 || NrvProfileParse(profile, expression, NULL) < 0) {
        fprintf(stderr, "cannot make a profile of %s\n", expression);
        exit(2);
    }
    return profile;
}

/* ---- the library: version, code names, symbologies ------------------- */

static void TestLibrary(void)
{
    int major = -1, minor = -1, patch = -1;
    char text[64];
    CHECK(NrvGetVersion(&major, &minor, &patch) == NRV_OK, 0);
    snprintf(text, sizeof text, "%d.%d.%d", major, minor, patch);
    CHECK(strcmp(text, NRV_VERSION_STRING) == 0, 0);
    CHECK(NrvGetVersion(NULL, &minor, &patch) == NRV_ERR_INVALID_PARAMETER, 0);
    /* The whole code table is the C++ tests'; here the C interface's codes. */
    static const struct {
        NRVRESULT code;
        const char* name; /* NULL: not a code of the library */
    } codes[] = {{NRV_ERR_OUT_OF_MEMORY, "NRV_ERR_OUT_OF_MEMORY"},
                 {NRV_ERR_BUFFER_TOO_SMALL, "NRV_ERR_BUFFER_TOO_SMALL"},
                 {NRV_ERR_RULES_FILE, "NRV_ERR_RULES_FILE"},
                 {-67, NULL},
                 {INT64_MIN, NULL}};
    for (size_t i = 0; i < COUNT(codes); ++i) {
        const char* name = "unset";
        const char* meaning = "unset";
        const NRVRESULT result = NrvGetResultName(codes[i].code, &name, &meaning);
        CHECK(codes[i].name == NULL ? result == NRV_ERR_INVALID_PARAMETER && name == NULL && meaning == NULL
                                    : result == NRV_OK && strcmp(name, codes[i].name) == 0 && meaning[0] != '\0',
              i);
    }
    static const struct {
        const char* text;
        int expected; /* -1: refused */
    } symbologies[] = {{"qrcode", kNrvScanSymbologyQRCode}, {"47", kNrvScanSymbologyHanXin},
                       {"48", -1} /* the count marker */,   {"", -1},
                       {"Code 128", -1}};
    for (size_t i = 0; i < COUNT(symbologies); ++i) {
        int id = 12345;
        const NRVRESULT result = NrvGetSymbology(symbologies[i].text, &id);
        CHECK(symbologies[i].expected < 0 ? result == NRV_ERR_INVALID_PARAMETER && id == 12345
                                          : result == NRV_OK && id == symbologies[i].expected,
              i);
    }
}

/* ---- parse -------------------------------------------------------------- */

static void TestParse(void)
{
    static const struct {
        const char* expression;
        NRVRESULT code;
        size_t offset, length;
        const char* command;
        const char* reportPart; /* a piece of the report */
    } rows[] = {
        {"Code: {TruncateFromBeginning({DecodedData()},2)}", NRV_OK, 0, 0, "", ""},
        {"", NRV_OK, 0, 0, "", ""},
        {"{TruncateFromBeginning({DecodedData()},2,3)}", NRV_ERR_PARAMETER_COUNT, 1, 21, "TruncateFromBeginning",
         "TruncateFromBeginning takes 2 parameters (text, count), but 3 are written (NRV_ERR_PARAMETER_COUNT, -84)\n"
         "  {TruncateFromBeginning({DecodedData()},2,3)}\n"
         "   ^~~~~~~~~~~~~~~~~~~~~\n"},
        {"{TruncateFromBegining({DecodedData()},2)}", NRV_ERR_UNKNOWN_COMMAND, 1, 20, "",
         "did you mean TruncateFromBeginning? (NRV_ERR_UNKNOWN_COMMAND, -83)\n"
         "  {TruncateFromBegining({DecodedData()},2)}\n"
         "   ^~~~~~~~~~~~~~~~~~~~\n"},
        /* The culprit's bytes are shown escaped, and the carets follow them. */
        {"\x01{Nope}", NRV_ERR_UNKNOWN_COMMAND, 2, 4, "", "  \\x01{Nope}\n       ^~~~\n"},
        {"{TruncateFromBeginning({DecodedData()},{DecodedData()})}", NRV_ERR_INVALID_PARAMETER, 39, 15,
         "TruncateFromBeginning", "must be a number"},
    };
    for (size_t i = 0; i < COUNT(rows); ++i) {
        TNrvProfile* profile = NULL;
        TNrvErrorInfo info;
        memset(&info, 0xA5, sizeof info);
        CHECK(NrvProfileNew(&profile) == NRV_OK, i);
        const NRVRESULT result = NrvProfileParse(profile, rows[i].expression, &info);
        CHECK(result == rows[i].code && info.nCode == rows[i].code, i);
        if (rows[i].code < 0) {
            CHECK(info.nOffset == rows[i].offset && info.nLength == rows[i].length, i);
            CHECK(strcmp(info.pszCommand, rows[i].command) == 0, i);
            CHECK(info.pszMessage[0] != '\0' && Contains(info.pszReport, rows[i].reportPart), i);
            CHECK(strncmp(info.pszReport, info.pszMessage, strlen(info.pszMessage)) == 0, i);
        } else {
            CHECK(info.pszMessage[0] == '\0' && info.pszReport[0] == '\0' && info.pszCommand[0] == '\0', i);
        }
        CHECK(info.nRule == NRV_NO_RULE && info.nLine == 0 && info.nErrorCount == 0, i);
        /* Until an expression parses, every edit answers with the parse's code. */
        char* output = NULL;
        size_t length = 99;
        const NRVRESULT edit = NrvProfileEdit(profile, "AB1234", 6, 0, &output, &length);
        CHECK(rows[i].code < 0 ? edit == rows[i].code && output == NULL && length == 0 : edit == NRV_OK, i);
        NrvFree(output);
        CHECK(NrvProfileParse(profile, "[{DecodedData()}]", NULL) == NRV_OK, i);
        CHECK(NrvProfileEdit(profile, "AB", 2, 0, &output, &length) == NRV_OK, i);
        CHECK(SameBytes(output, length, "[AB]", 4), i);
        NrvFree(output);
        NrvProfileFree(profile);
    }
}

/* The GS1 commands are known only once the host enables their set. */
static void TestCommandSets(void)
{
    static const char kMessage[] = "]C1010950110153000317141120\x1d" "10AB-123\x1d" "21SER42";
    static const char kBadCheckDigit[] = "]C1010950110153000417141120\x1d" "10AB-123";
    static const struct {
        unsigned sets;
        NRVRESULT parse; /* what enabling the sets returns: the expression parsed again */
        const char* scan;
        NRVRESULT edit;
        const char* output; /* or a piece of the failure's report */
    } rows[] = {
        {0, NRV_ERR_UNKNOWN_COMMAND, kMessage, NRV_ERR_UNKNOWN_COMMAND, "(NRV_ERR_UNKNOWN_COMMAND, -83)"},
        {NRV_COMMAND_SET_GS1, NRV_OK, kMessage, NRV_OK, "lot AB-123"},
        {NRV_COMMAND_SET_GS1, NRV_OK, kBadCheckDigit, NRV_ERR_GS1_INVALID,
         "GS1Element: AI (01): check digit 4, expected 3"},
        {NRV_COMMAND_SET_GS1 << 1, NRV_ERR_INVALID_PARAMETER, kMessage, NRV_OK, "lot AB-123"}, /* no such set */
        {0, NRV_ERR_UNKNOWN_COMMAND, kMessage, NRV_ERR_UNKNOWN_COMMAND, "GS1"}, /* and off again */
    };
    TNrvProfile* profile = NULL;
    TNrvErrorInfo info;
    CHECK(NrvProfileNew(&profile) == NRV_OK, 0);
    CHECK(NrvProfileParse(profile, "lot {GS1Element({DecodedData()},10)}", &info) == NRV_ERR_UNKNOWN_COMMAND, 0);
    for (size_t i = 0; i < COUNT(rows); ++i) {
        CHECK(NrvProfileEnableCommandSets(profile, rows[i].sets, &info) == rows[i].parse, i);
        char* output = NULL;
        size_t length = 0;
        CHECK(NrvProfileEdit(profile, rows[i].scan, strlen(rows[i].scan), 0, &output, &length) == rows[i].edit, i);
        if (rows[i].edit >= 0) {
            CHECK(SameBytes(output, length, rows[i].output, strlen(rows[i].output)), i);
        } else {
            CHECK(NrvProfileDescribeFailure(profile, rows[i].scan, strlen(rows[i].scan), 0, &info) == NRV_OK, i);
            CHECK(info.nCode == rows[i].edit && Contains(info.pszReport, rows[i].output), i);
        }
        NrvFree(output);
    }
    NrvProfileFree(profile);
}

/* ---- edit ---------------------------------------------------------------- */

static void TestEdit(void)
{
    static const struct {
        const char* expression;
        const char* scan;
        size_t scanLength;
        int symbology;
        NRVRESULT code;
        const char* output; /* what the caller gets; for a failed edit, its report */
        size_t outputLength;
    } rows[] = {
        {"Code: {TruncateFromBeginning({DecodedData()},2)}", "AB1234", 6, 0, NRV_OK, "Code: 1234", 10},
        {"{Extract({DecodedData()},[,])}", "LOT[A17]EXP", 11, 0, NRV_OK, "A17", 3},
        {"{DecodedDataWithoutTrailer()}", "12345\r\n", 7, 0, NRV_OK, "12345", 5},
        /* Zero bytes and bytes from 0x80 up pass through whole. */
        {"<{DecodedData()}>", "\0\x80\xff\0", 4, 0, NRV_OK, "<\0\x80\xff\0>", 6},
        {"{MakeUpperCase({DecodedData()})}", "a\0b\xe9", 4, 0, NRV_OK, "A\0B\xe9", 4},
        {"{DecodedData()}", "", 0, 0, NRV_OK, "", 0},
        {"{TruncateFromBeginning({DecodedData()},2)}", "AB", 2, 0, NRV_ERR_OUT_OF_RANGE,
         "TruncateFromBeginning: count 2 is not less than the length 2 of the text (NRV_ERR_OUT_OF_RANGE, -43)\n", 0},
        {"{Extract({DecodedData()},,])}", "x", 1, 0, NRV_ERR_OUT_OF_RANGE, "Extract: ", 0},
        {"", "AB", 2, 0, NRV_OK, "", 0}, /* nothing written: nothing out */
        /* The symbology must be one of the enumeration. */
        {"{DecodedData()}", "AB", 2, kNrvScanSymbologyLastSymbologyID, NRV_ERR_INVALID_PARAMETER, NULL, 0},
        {"{DecodedData()}", "AB", 2, -1, NRV_ERR_INVALID_PARAMETER, NULL, 0},
        {"{DecodedData()}", "AB", 2, kNrvScanSymbologyHanXin, NRV_OK, "AB", 2},
    };
    for (size_t i = 0; i < COUNT(rows); ++i) {
        TNrvProfile* profile = NewProfile(rows[i].expression);
        char* output = (char*)"stale";
        size_t length = 99;
        const NRVRESULT result =
            NrvProfileEdit(profile, rows[i].scan, rows[i].scanLength, rows[i].symbology, &output, &length);
        CHECK(result == rows[i].code, i);
        if (result >= 0) {
            CHECK(output != NULL && SameBytes(output, length, rows[i].output, rows[i].outputLength), i);
            CHECK(output != NULL && output[length] == '\0', i);
        } else {
            CHECK(output == NULL && length == 0, i);
        }
        /* Why it failed, named as nrv-edit names it; nothing to say when it did not. */
        TNrvErrorInfo info;
        const NRVRESULT described =
            NrvProfileDescribeFailure(profile, rows[i].scan, rows[i].scanLength, rows[i].symbology, &info);
        if (result == NRV_ERR_INVALID_PARAMETER)
            CHECK(described == NRV_ERR_INVALID_PARAMETER, i);
        else if (result < 0)
            CHECK(info.nCode == result && strstr(info.pszReport, rows[i].output) == info.pszReport, i);
        else
            CHECK(info.nCode == result && info.pszReport[0] == '\0' && info.pszCommand[0] == '\0', i);
        NrvFree(output);
        NrvProfileFree(profile);
    }
    /* An empty scan may come without bytes. */
    TNrvProfile* profile = NewProfile("[{DecodedData()}]");
    char* output = NULL;
    size_t length = 0;
    CHECK(NrvProfileEdit(profile, NULL, 0, 0, &output, &length) == NRV_OK, COUNT(rows));
    CHECK(SameBytes(output, length, "[]", 2), COUNT(rows));
    NrvFree(output);
    CHECK(NrvProfileEdit(profile, NULL, 1, 0, &output, &length) == NRV_ERR_INVALID_PARAMETER && output == NULL,
          COUNT(rows) + 1);
    NrvProfileFree(profile);
}

static void TestEditInto(void)
{
    static const struct {
        const char* scan;
        size_t bufferSize; /* "[" + scan + "]" and a zero byte */
        NRVRESULT code;
    } rows[] = {
        {"AB", 5, NRV_OK},
        {"AB", 4, NRV_ERR_BUFFER_TOO_SMALL}, /* room for the output, none for the zero byte */
        {"AB", 1, NRV_ERR_BUFFER_TOO_SMALL},
        {"AB", 0, NRV_ERR_BUFFER_TOO_SMALL}, /* asks for the size */
        {"", 3, NRV_OK},
        {"", 2, NRV_ERR_BUFFER_TOO_SMALL},
    };
    TNrvProfile* profile = NewProfile("[{DecodedData()}]");
    for (size_t i = 0; i < COUNT(rows); ++i) {
        char buffer[8];
        memset(buffer, '#', sizeof buffer);
        size_t length = 99;
        const size_t scanLength = strlen(rows[i].scan);
        const NRVRESULT result = NrvProfileEditInto(profile, rows[i].scan, scanLength, 0,
                                                    rows[i].bufferSize != 0 ? buffer : NULL, rows[i].bufferSize,
                                                    &length);
        CHECK(result == rows[i].code, i);
        CHECK(length == scanLength + 2, i);
        if (result == NRV_OK)
            CHECK(buffer[0] == '[' && buffer[length - 1] == ']' && buffer[length] == '\0', i);
        else
            CHECK(buffer[0] == '#', i); /* nothing written */
        CHECK(buffer[rows[i].bufferSize < sizeof buffer ? rows[i].bufferSize : sizeof buffer - 1] == '#', i);
    }
    char buffer[4];
    size_t length = 99;
    /* A failed edit reports no size; a buffer without bytes is refused. */
    TNrvProfile* failing = NewProfile("{TruncateFromEnd({DecodedData()},5)}");
    CHECK(NrvProfileEditInto(failing, "AB", 2, 0, buffer, sizeof buffer, &length) == NRV_ERR_OUT_OF_RANGE &&
              length == 0,
          COUNT(rows));
    CHECK(NrvProfileEditInto(profile, "AB", 2, 0, NULL, 4, &length) == NRV_ERR_INVALID_PARAMETER, COUNT(rows) + 1);
    NrvProfileFree(failing);
    NrvProfileFree(profile);
}

static void TestEditMany(void)
{
    /* A prefix cut: scans of 2 bytes or fewer fail and come back unchanged. */
    static const struct {
        const char* scan;
        size_t length;
        NRVRESULT code;
        const char* output;
        size_t outputLength;
    } rows[] = {
        {"AB1234", 6, NRV_OK, "1234", 4},
        {"AB", 2, NRV_ERR_OUT_OF_RANGE, "AB", 2},
        {NULL, 0, NRV_ERR_OUT_OF_RANGE, "", 0},
        {"\0\0\x01\xfe", 4, NRV_OK, "\x01\xfe", 2},
        {"XY9", 3, NRV_OK, "9", 1},
    };
    const char* data[COUNT(rows)];
    size_t lengths[COUNT(rows)];
    for (size_t i = 0; i < COUNT(rows); ++i) {
        data[i] = rows[i].scan;
        lengths[i] = rows[i].length;
    }
    TNrvProfile* profile = NewProfile("{TruncateFromBeginning({DecodedData()},2)}");
    NRVRESULT codes[COUNT(rows)];
    size_t ends[COUNT(rows)];
    char* outputs = NULL;
    CHECK(NrvProfileEditMany(profile, COUNT(rows), data, lengths, 0, codes, &outputs, ends) == NRV_OK, 0);
    size_t start = 0;
    for (size_t i = 0; i < COUNT(rows); ++i) {
        CHECK(codes[i] == rows[i].code, i);
        CHECK(ends[i] >= start && SameBytes(outputs + start, ends[i] - start, rows[i].output, rows[i].outputLength),
              i);
        start = ends[i];
    }
    CHECK(outputs != NULL && outputs[start] == '\0', COUNT(rows));
    NrvFree(outputs);

    /* No scans: no arrays needed, an empty buffer. */
    outputs = NULL;
    CHECK(NrvProfileEditMany(profile, 0, NULL, NULL, 0, NULL, &outputs, NULL) == NRV_OK && outputs != NULL &&
              outputs[0] == '\0',
          COUNT(rows) + 1);
    NrvFree(outputs);
    /* A missing scan of non-zero length fails the whole call. */
    lengths[2] = 1;
    outputs = (char*)"stale";
    CHECK(NrvProfileEditMany(profile, COUNT(rows), data, lengths, 0, codes, &outputs, ends) ==
                  NRV_ERR_INVALID_PARAMETER &&
              outputs == NULL,
          COUNT(rows) + 2);
    NrvProfileFree(profile);
}

/* ---- triggers and limits ------------------------------------------------ */

#define MAX_SETTINGS 3

static void TestSettings(void)
{
    static const struct {
        const char* names[MAX_SETTINGS];
        const char* values[MAX_SETTINGS];
        NRVRESULT code;      /* of NrvProfileSetSettings */
        const char* message; /* a piece of the sentence when refused */
        const char* scan;    /* then edited with {DecodedData()}! as Code 128 */
        NRVRESULT edit;
    } rows[] = {
        {{"min-size"}, {"3"}, NRV_OK, NULL, "AB", NRV_OK_NOT_TRIGGERED},
        {{"min-size", "max-size"}, {"2", "2"}, NRV_OK, NULL, "AB", NRV_OK},
        {{"max_size"}, {"1"}, NRV_OK, NULL, "AB", NRV_OK_NOT_TRIGGERED},
        {{"symbology", "symbology"}, {"qrcode", "15"}, NRV_OK, NULL, "AB", NRV_OK},
        {{"ends-with"}, {"A"}, NRV_OK, NULL, "AB", NRV_OK_NOT_TRIGGERED},
        {{"contains"}, {"\\x1D"}, NRV_OK, NULL, "A\x1d", NRV_OK},
        {{"contains"}, {"\\x1D"}, NRV_OK, NULL, "A\\x1D", NRV_OK_NOT_TRIGGERED},
        {{"contains"}, {""}, NRV_OK, NULL, "AB", NRV_OK}, /* empty: unset */
        /* Refused, and the profile keeps what it had (no trigger). */
        {{"min-size"}, {"-1"}, NRV_ERR_INVALID_PARAMETER, "invalid size '-1' for 'min-size'", "AB", NRV_OK},
        {{"min_size"}, {"1k"}, NRV_ERR_INVALID_PARAMETER, "for 'min_size'", "AB", NRV_OK},
        {{"min-size", "max-size"}, {"3", "2"}, NRV_ERR_INVALID_PARAMETER, "'min-size' 3 is above 'max-size' 2", "AB",
         NRV_OK},
        {{"contains"}, {"\\x00"}, NRV_ERR_INVALID_PARAMETER, "zero byte", "AB", NRV_OK},
        {{"starts-width"}, {"A"}, NRV_ERR_INVALID_PARAMETER, "did you mean 'starts-with'?", "AB", NRV_OK},
        {{"Min-Size"}, {"1"}, NRV_ERR_INVALID_PARAMETER, "unknown setting 'Min-Size'", "AB", NRV_OK},
    };
    for (size_t i = 0; i < COUNT(rows); ++i) {
        TNrvProfile* profile = NewProfile("{DecodedData()}!");
        size_t count = 0;
        while (count < MAX_SETTINGS && rows[i].names[count] != NULL)
            ++count;
        TNrvErrorInfo info;
        const NRVRESULT result = NrvProfileSetSettings(profile, rows[i].names, rows[i].values, count, &info);
        CHECK(result == rows[i].code && info.nCode == result, i);
        if (rows[i].message != NULL) {
            CHECK(Contains(info.pszMessage, rows[i].message), i);
            CHECK(Contains(info.pszReport, rows[i].message), i);
        } else {
            CHECK(info.pszMessage[0] == '\0', i);
        }
        char* output = NULL;
        size_t length = 0;
        const size_t scanLength = strlen(rows[i].scan);
        CHECK(NrvProfileEdit(profile, rows[i].scan, scanLength, kNrvScanSymbologyCode128, &output, &length) ==
                  rows[i].edit,
              i);
        /* Left alone, the scan comes back as it was; edited, it gains its '!'. */
        CHECK(length == scanLength + (rows[i].edit == NRV_OK ? 1 : 0) && memcmp(output, rows[i].scan, scanLength) == 0,
              i);
        NrvFree(output);
        NrvProfileFree(profile);
    }
}

/* Every profile starts with the default limits of the front ends. */
static void TestLimits(void)
{
    /* 23 nested doublings: "AA" grows to 16 MiB, the default largest text. */
    char doubling[1024] = "";
    for (int i = 0; i < 23; ++i)
        strcat(doubling, "{Substitute(");
    strcat(doubling, "{DecodedData()}");
    for (int i = 0; i < 23; ++i)
        strcat(doubling, ",A,AA)}");
    /* A search charged its worst case: 1 MiB times the marker's 100 bytes and one. */
    char search[256] = "{FindFirstFromIndex({DecodedData()},0,";
    memset(search + strlen(search), 'B', 100);
    strcat(search, ",0)}");
    char* megabyte = malloc(1 << 20);
    memset(megabyte, 'A', 1 << 20);
    static const struct {
        int search; /* the search, over a megabyte; otherwise the doubling */
        const char* names[2];
        const char* values[2];
        const char* scan;
        NRVRESULT code;
    } rows[] = {
        {0, {"max-work"}, {"0"}, "AA", NRV_OK}, /* exactly the default largest text */
        {0, {"max-work"}, {"0"}, "AAA", NRV_ERR_TEXT_LIMIT},
        {0, {"max-work", "max-text"}, {"0", "0"}, "AAA", NRV_OK},
        {0, {"max-work", "max-text"}, {"0", "8388607"}, "A", NRV_ERR_TEXT_LIMIT},
        {0, {"max-work", "max-text"}, {"0", "8388608"}, "A", NRV_OK},
        {1, {NULL}, {NULL}, NULL, NRV_OK}, /* the default budget: 64 MiB and 4096 per scan byte */
        {1, {"max-work"}, {"1"}, NULL, NRV_ERR_WORK_LIMIT},
        {1, {"max-work"}, {"0"}, NULL, NRV_OK},
    };
    for (size_t i = 0; i < COUNT(rows); ++i) {
        TNrvProfile* profile = NewProfile(rows[i].search ? search : doubling);
        const size_t count = rows[i].names[0] == NULL ? 0 : rows[i].names[1] == NULL ? 1 : 2;
        CHECK(NrvProfileSetSettings(profile, rows[i].names, rows[i].values, count, NULL) == NRV_OK, i);
        char* output = NULL;
        size_t length = 0;
        const size_t scanLength = rows[i].search ? (size_t)1 << 20 : strlen(rows[i].scan);
        const NRVRESULT result =
            NrvProfileEdit(profile, rows[i].search ? megabyte : rows[i].scan, scanLength, 0, &output, &length);
        CHECK(result == rows[i].code, i);
        if (result >= 0)
            CHECK(rows[i].search ? SameBytes(output, length, "-2", 2) : length == scanLength << 23, i);
        NrvFree(output);
        NrvProfileFree(profile);
    }
    free(megabyte);
}

/* ---- what an edit does, explained ---------------------------------------- */

static void TestExplain(void)
{
    static const struct {
        const char* expression;
        const char* scan;
        size_t length;
        const char* setting; /* starts-with, or NULL */
        const char* parts[3];
    } rows[] = {
        {"{TruncateFromBeginning({DecodedData()},2)}", "A", 1, NULL,
         {"{\"scan\":1,\"code\":-43,\"output\":\"A\",\"nodes\":[{\"kind\":\"command\",\"name\":\"TruncateFromBeginning\"",
          "\"failure\":{\"code\":-43,\"name\":\"NRV_ERR_OUT_OF_RANGE\",\"offset\":1,\"length\":21,",
          "\"value\":null"}},
        /* Bytes that are not text travel as the characters of their values. */
        {"{DecodedData()}", "\0\xff\"", 3, NULL, {"\"output\":\"\\u0000\\u00ff\\\"\"", "\"value\":\"\\u0000", NULL}},
        /* A scan the triggers leave alone has no nodes. */
        {"{DecodedData()}", "AB", 2, "X", {"\"code\":1,\"output\":\"AB\",\"nodes\":[]}", NULL, NULL}},
    };
    for (size_t i = 0; i < COUNT(rows); ++i) {
        TNrvProfile* profile = NewProfile(rows[i].expression);
        const char* name = "starts-with";
        if (rows[i].setting != NULL)
            CHECK(NrvProfileSetSettings(profile, &name, &rows[i].setting, 1, NULL) == NRV_OK, i);
        char* json = NULL;
        size_t length = 0;
        CHECK(NrvProfileExplain(profile, rows[i].scan, rows[i].length, 0, &json, &length) == NRV_OK, i);
        CHECK(json != NULL && strlen(json) == length && json[0] == '{' && json[length - 1] == '}', i);
        for (size_t part = 0; part < 3 && rows[i].parts[part] != NULL; ++part)
            CHECK(Contains(json, rows[i].parts[part]), i);
        CHECK(!Contains(json, "\"rule\""), i);
        NrvFree(json);
        NrvProfileFree(profile);
    }
}

/* ---- rule sets ------------------------------------------------------------ */

static const char kRules[] =
    "[[rule]]\n"
    "name = \"Part numbers\"\n"
    "starts-with = \"PN\"\n"
    "expression = '{TruncateFromBeginning({DecodedData()},2)}'\n"
    "[[rule]]\n"
    "symbologies = [\"qrcode\"]\n"
    "expression = 'QR {DecodedData()}'\n";

static void TestRuleSets(void)
{
    TNrvRuleSet* rules = NULL;
    TNrvErrorInfo info;
    CHECK(NrvRuleSetNew(&rules) == NRV_OK, 0);
    size_t count = 99;
    CHECK(NrvRuleSetGetRuleCount(rules, &count) == NRV_OK && count == 0, 0);
#ifdef NRV_C_TEST_HAVE_RULES
    CHECK(NrvRuleSetReadText(rules, kRules, strlen(kRules), NULL, &info) == NRV_OK && info.nCode == NRV_OK, 0);
    CHECK(NrvRuleSetGetRuleCount(rules, &count) == NRV_OK && count == 2, 0);
    const char* name = NULL;
    CHECK(NrvRuleSetGetRuleName(rules, 0, &name) == NRV_OK && strcmp(name, "Part numbers") == 0, 0);
    CHECK(NrvRuleSetGetRuleName(rules, 1, &name) == NRV_OK && strcmp(name, "") == 0, 0);
    CHECK(NrvRuleSetGetRuleName(rules, 2, &name) == NRV_ERR_OUT_OF_RANGE && name == NULL, 0);

    static const struct {
        const char* scan;
        int symbology;
        NRVRESULT code;
        size_t rule;
        const char* output;
    } rows[] = {
        {"PN1234", 0, NRV_OK, 0, "1234"},
        {"PN", kNrvScanSymbologyQRCode, NRV_ERR_OUT_OF_RANGE, 0, NULL}, /* no fall-through to rule 2 */
        {"AB", kNrvScanSymbologyQRCode, NRV_OK, 1, "QR AB"},
        {"AB", 0, NRV_OK_NOT_TRIGGERED, NRV_NO_RULE, "AB"},
    };
    for (size_t i = 0; i < COUNT(rows); ++i) {
        const size_t length = strlen(rows[i].scan);
        char* output = NULL;
        size_t outputLength = 0, rule = 99;
        CHECK(NrvRuleSetEdit(rules, rows[i].scan, length, rows[i].symbology, &output, &outputLength, &rule) ==
                  rows[i].code,
              i);
        CHECK(rule == rows[i].rule, i);
        CHECK(rows[i].output == NULL ? output == NULL
                                     : SameBytes(output, outputLength, rows[i].output, strlen(rows[i].output)),
              i);
        NrvFree(output);
        CHECK(NrvRuleSetDescribeFailure(rules, rows[i].scan, length, rows[i].symbology, &info) == NRV_OK, i);
        CHECK(info.nCode == rows[i].code && info.nRule == rows[i].rule, i);
        CHECK(rows[i].code < 0 ? Contains(info.pszReport, "rule 1 (Part numbers): TruncateFromBeginning: count 2")
                               : info.pszReport[0] == '\0',
              i);
        char* json = NULL;
        CHECK(NrvRuleSetExplain(rules, rows[i].scan, length, rows[i].symbology, &json, &outputLength) == NRV_OK, i);
        CHECK(Contains(json, rows[i].rule == 0   ? "\"rule\":{\"index\":1,\"name\":\"Part numbers\"}"
                             : rows[i].rule == 1 ? "\"rule\":{\"index\":2,\"name\":\"\"}"
                                                 : "\"rule\":null"),
              i);
        NrvFree(json);
    }
    const char* data[COUNT(rows)];
    size_t lengths[COUNT(rows)], ends[COUNT(rows)], rulesOf[COUNT(rows)];
    NRVRESULT codes[COUNT(rows)];
    for (size_t i = 0; i < COUNT(rows); ++i) {
        data[i] = rows[i].scan;
        lengths[i] = strlen(rows[i].scan);
    }
    char* outputs = NULL;
    CHECK(NrvRuleSetEditMany(rules, COUNT(rows), data, lengths, kNrvScanSymbologyQRCode, codes, &outputs, ends,
                             rulesOf) == NRV_OK,
          0);
    CHECK(codes[0] == NRV_OK && rulesOf[0] == 0 && codes[1] == NRV_ERR_OUT_OF_RANGE && rulesOf[1] == 0, 0);
    CHECK(codes[3] == NRV_OK && rulesOf[3] == 1 && SameBytes(outputs + ends[2], ends[3] - ends[2], "QR AB", 5), 0);
    NrvFree(outputs);

    /* A file with errors: each one placed, all in the report; the rules stay. */
    static const char kBad[] = "[[rule]]\nstart-with = \"A\"\nexpression = '{Nope}'\n";
    CHECK(NrvRuleSetReadText(rules, kBad, strlen(kBad), "bad.toml", &info) == NRV_ERR_RULES_FILE, 1);
    CHECK(info.nCode == NRV_ERR_RULES_FILE && info.nErrorCount == 2 && info.nLine == 2 && info.nColumn == 1, 1);
    CHECK(Contains(info.pszMessage, "did you mean 'starts-with'?"), 1);
    CHECK(Contains(info.pszReport, "bad.toml:2:1: ") && Contains(info.pszReport, "bad.toml:3:"), 1);
    CHECK(NrvRuleSetGetRuleCount(rules, &count) == NRV_OK && count == 2, 1);
    CHECK(NrvRuleSetReadFile(rules, NRV_C_TEST_RULES_FILE, &info) == NRV_OK, 2);
    CHECK(NrvRuleSetGetRuleCount(rules, &count) == NRV_OK && count >= 3, 2);
    CHECK(NrvRuleSetReadFile(rules, "/nonexistent/rules.toml", &info) == NRV_ERR_RULES_FILE, 3);
    CHECK(Contains(info.pszMessage, "cannot read") && info.nLine == 0 && info.nErrorCount == 1, 3);
    CHECK(NrvRuleSetGetRuleCount(rules, &count) == NRV_OK && count >= 3, 3);
    CHECK(NrvRuleSetReadText(rules, "", 0, NULL, &info) == NRV_ERR_RULES_FILE, 4); /* no rule at all */
#else
    /* Without the TOML reader every text is refused, and the set says why. */
    CHECK(NrvRuleSetReadText(rules, kRules, strlen(kRules), NULL, &info) == NRV_ERR_RULES_FILE, 0);
    CHECK(Contains(info.pszMessage, "toml++"), 0);
    CHECK(NrvRuleSetReadFile(rules, "rules.toml", &info) == NRV_ERR_RULES_FILE, 0);
#endif
    /* A set without rules leaves every scan alone. */
    NrvRuleSetFree(rules);
    CHECK(NrvRuleSetNew(&rules) == NRV_OK, 5);
    char* output = NULL;
    size_t length = 0, rule = 0;
    CHECK(NrvRuleSetEdit(rules, "AB", 2, 0, &output, &length, &rule) == NRV_OK_NOT_TRIGGERED && rule == NRV_NO_RULE &&
              SameBytes(output, length, "AB", 2),
          5);
    NrvFree(output);
    NrvRuleSetFree(rules);
}

/* ---- null arguments -------------------------------------------------------- */

static void TestNullArguments(void)
{
    TNrvProfile* profile = NewProfile("{DecodedData()}");
    TNrvRuleSet* rules = NULL;
    NrvRuleSetNew(&rules);
    TNrvErrorInfo info;
    char* output = (char*)"stale";
    char buffer[8];
    size_t length = 99, rule = 99, count = 0, ends[1];
    NRVRESULT codes[1];
    const char* data[1] = {"A"};
    const size_t lengths[1] = {1};
    const char* name = "min-size";
    const char* value = "1";
    const char* text = NULL;
    int symbology = 0;
    const NRVRESULT results[] = {
        NrvGetSymbology(NULL, &symbology),
        NrvGetSymbology("qrcode", NULL),
        NrvProfileNew(NULL),
        NrvProfileParse(NULL, "x", &info),
        NrvProfileParse(profile, NULL, &info),
        NrvProfileSetSettings(NULL, &name, &value, 1, &info),
        NrvProfileSetSettings(profile, NULL, &value, 1, &info),
        NrvProfileSetSettings(profile, &name, NULL, 1, &info),
        NrvProfileSetSettings(profile, &name, &text, 1, &info), /* a null value */
        NrvProfileEnableCommandSets(NULL, 0, &info),
        NrvProfileEdit(NULL, "A", 1, 0, &output, &length),
        NrvProfileEdit(profile, "A", 1, 0, NULL, &length),
        NrvProfileEdit(profile, "A", 1, 0, &output, NULL),
        NrvProfileEditInto(NULL, "A", 1, 0, buffer, sizeof buffer, &length),
        NrvProfileEditInto(profile, "A", 1, 0, buffer, sizeof buffer, NULL),
        NrvProfileEditMany(NULL, 1, data, lengths, 0, codes, &output, ends),
        NrvProfileEditMany(profile, 1, NULL, lengths, 0, codes, &output, ends),
        NrvProfileEditMany(profile, 1, data, NULL, 0, codes, &output, ends),
        NrvProfileEditMany(profile, 1, data, lengths, 0, NULL, &output, ends),
        NrvProfileEditMany(profile, 1, data, lengths, 0, codes, NULL, ends),
        NrvProfileEditMany(profile, 1, data, lengths, 0, codes, &output, NULL),
        NrvProfileDescribeFailure(NULL, "A", 1, 0, &info),
        NrvProfileDescribeFailure(profile, "A", 1, 0, NULL),
        NrvProfileDescribeFailure(profile, NULL, 1, 0, &info),
        NrvProfileExplain(NULL, "A", 1, 0, &output, &length),
        NrvProfileExplain(profile, "A", 1, 0, NULL, &length),
        NrvProfileExplain(profile, "A", 1, 0, &output, NULL),
        NrvProfileExplain(profile, NULL, 1, 0, &output, &length),
        NrvRuleSetNew(NULL),
        NrvRuleSetReadFile(NULL, "rules.toml", &info),
        NrvRuleSetReadFile(rules, NULL, &info),
        NrvRuleSetReadText(NULL, "", 0, NULL, &info),
        NrvRuleSetReadText(rules, NULL, 1, NULL, &info),
        NrvRuleSetGetRuleCount(NULL, &count),
        NrvRuleSetGetRuleCount(rules, NULL),
        NrvRuleSetGetRuleName(NULL, 0, &text),
        NrvRuleSetGetRuleName(rules, 0, NULL),
        NrvRuleSetEdit(NULL, "A", 1, 0, &output, &length, &rule),
        NrvRuleSetEdit(rules, "A", 1, 0, NULL, &length, &rule),
        NrvRuleSetEdit(rules, "A", 1, 0, &output, NULL, &rule),
        NrvRuleSetEdit(rules, NULL, 1, 0, &output, &length, &rule),
        NrvRuleSetEditInto(NULL, "A", 1, 0, buffer, sizeof buffer, &length, &rule),
        NrvRuleSetEditInto(rules, "A", 1, 0, NULL, sizeof buffer, &length, &rule),
        NrvRuleSetEditInto(rules, "A", 1, 0, buffer, sizeof buffer, NULL, &rule),
        NrvRuleSetEditMany(NULL, 1, data, lengths, 0, codes, &output, ends, NULL),
        NrvRuleSetEditMany(rules, 1, data, lengths, 0, codes, NULL, ends, NULL),
        NrvRuleSetEditMany(rules, 1, data, NULL, 0, codes, &output, ends, NULL),
        NrvRuleSetDescribeFailure(NULL, "A", 1, 0, &info),
        NrvRuleSetDescribeFailure(rules, "A", 1, 0, NULL),
        NrvRuleSetExplain(NULL, "A", 1, 0, &output, &length),
        NrvRuleSetExplain(rules, "A", 1, 0, NULL, &length),
        NrvRuleSetExplain(rules, "A", 1, 0, &output, NULL),
    };
    for (size_t i = 0; i < COUNT(results); ++i)
        CHECK(results[i] == NRV_ERR_INVALID_PARAMETER, i);
    /* Out pointers that were given are cleared, never left stale. */
    CHECK(output == NULL && length == 0 && rule == NRV_NO_RULE, COUNT(results));
    /* The frees take null, as free() does. */
    NrvFree(NULL);
    NrvProfileFree(NULL);
    NrvRuleSetFree(NULL);
    NrvRuleSetFree(rules);
    NrvProfileFree(profile);
}

/* ---- memory: who owns what, and every allocation failing ----------------- */

typedef struct {
    TNrvProfile* profile;
    TNrvRuleSet* rules;
} TFixture;

enum ECall { kNewProfile, kParse, kEnableSets, kSettings, kSettingsRefused, kEdit, kEditInto, kEditMany, kDescribe, kExplain,
             kReadRules, kRulesEdit, kRulesDescribe, kRulesExplain, kParseFailing };

/* One call of the C interface, its buffers released; the code of a call
   that is meant to be refused counts as success. */
static NRVRESULT Call(enum ECall call, TFixture* f)
{
    static const char* const names[] = {"min-size", "contains", "symbology", "max-size"};
    static const char* const values[] = {"1", "\\x41", "Code128", "0"};
    static const char* const refused[] = {"5", "x", "qrcode", "4"};
    const char* data[] = {"ABC", "A", "XYZ"};
    const size_t lengths[] = {3, 1, 3};
    NRVRESULT codes[3], result = NRV_OK;
    size_t ends[3], length = 0, rule = 0;
    char buffer[8];
    char* output = NULL;
    TNrvErrorInfo info;
    TNrvProfile* profile = NULL;
    switch (call) {
    case kNewProfile:
        result = NrvProfileNew(&profile);
        CHECK(result < 0 ? profile == NULL : profile != NULL, call);
        NrvProfileFree(profile);
        return result;
    case kParse: return NrvProfileParse(f->profile, "<{TruncateFromEnd({DecodedData()},1)}>", &info);
    case kEnableSets: return NrvProfileEnableCommandSets(f->profile, NRV_COMMAND_SET_GS1, &info);
    case kParseFailing:
        result = NrvProfileParse(f->profile, "{TruncateFromEnd({Nope()},1)}", &info);
        return result == NRV_ERR_UNKNOWN_COMMAND ? NRV_OK : result;
    case kSettings: return NrvProfileSetSettings(f->profile, names, values, 4, NULL);
    case kSettingsRefused: /* a minimum above the maximum */
        result = NrvProfileSetSettings(f->profile, names, refused, 4, &info);
        return result == NRV_ERR_INVALID_PARAMETER ? NRV_OK : result;
    case kEdit: result = NrvProfileEdit(f->profile, "ABC", 3, kNrvScanSymbologyCode128, &output, &length); break;
    case kEditInto:
        return NrvProfileEditInto(f->profile, "ABC", 3, kNrvScanSymbologyCode128, buffer, sizeof buffer, &length);
    case kEditMany:
        result = NrvProfileEditMany(f->profile, 3, data, lengths, kNrvScanSymbologyCode128, codes, &output, ends);
        break;
    case kDescribe: return NrvProfileDescribeFailure(f->profile, "A", 1, kNrvScanSymbologyCode128, &info);
    case kExplain: result = NrvProfileExplain(f->profile, "ABC", 3, kNrvScanSymbologyCode128, &output, &length); break;
    case kReadRules:
        result = NrvRuleSetReadText(f->rules, kRules, strlen(kRules), "rules.toml", &info);
#ifndef NRV_C_TEST_HAVE_RULES
        result = result == NRV_ERR_RULES_FILE ? NRV_OK : result;
#endif
        return result;
    case kRulesEdit: result = NrvRuleSetEdit(f->rules, "PN1", 3, 0, &output, &length, &rule); break;
    case kRulesDescribe: return NrvRuleSetDescribeFailure(f->rules, "PN", 2, 0, &info);
    case kRulesExplain: result = NrvRuleSetExplain(f->rules, "PN", 2, 0, &output, &length); break;
    }
    /* A buffer comes with success, never with a failure. */
    CHECK(result < 0 ? output == NULL : output != NULL, call);
    NrvFree(output);
    return result;
}

/* The reference edit: after any failed call the profile edits as before. */
static void CheckProfileWorks(TFixture* f, size_t row)
{
    char* output = NULL;
    size_t length = 0;
    NrvTestFailAllocation(0);
    const NRVRESULT result = NrvProfileEdit(f->profile, "ABC", 3, kNrvScanSymbologyCode128, &output, &length);
    CHECK(result == NRV_OK && SameBytes(output, length, "<AB>", 4), row);
    NrvFree(output);
}

static void TestMemory(void)
{
    static const struct {
        enum ECall call;
        int allocates; /* then the sweep must make at least one allocation fail */
    } rows[] = {
        {kNewProfile, 1}, {kParse, 1}, {kEnableSets, 1}, {kSettings, 1}, {kSettingsRefused, 1}, {kEdit, 1},
        {kEditInto, 0}, /* allocates only while the profile grows its buffers */
        {kEditMany, 1}, {kDescribe, 1}, {kExplain, 1}, {kReadRules, 1}, {kRulesEdit, 1}, {kRulesDescribe, HAVE_RULES},
        {kRulesExplain, 1},
        {kParseFailing, 1}, /* last: it leaves an expression that does not parse */
    };
    /* What the library keeps for good (a command dictionary for each
       combination of sets) is made first. */
    TFixture warm = {NewProfile("{DecodedData()}"), NULL};
    CHECK(NrvProfileEnableCommandSets(warm.profile, NRV_COMMAND_SET_GS1, NULL) == NRV_OK, 0);
    NrvProfileFree(warm.profile);
    const long baseline = NrvTestLiveBlocks();

    TFixture f = {NULL, NULL};
    CHECK(NrvProfileNew(&f.profile) == NRV_OK && NrvRuleSetNew(&f.rules) == NRV_OK, 0);
    CHECK(Call(kParse, &f) == NRV_OK, 0);
    for (size_t i = 0; i < COUNT(rows); ++i) {
        const int failedBefore = g_nFailed;
        /* Twice first, so that what a profile keeps from edit to edit (the
           capacity of the two buffers it swaps) is made: a failure must
           then keep nothing. */
        for (int warm = 0; warm < 2 && rows[i].call != kParseFailing; ++warm)
            CHECK(Call(rows[i].call, &f) >= 0, i);
        /* Each allocation of the call fails in turn, until the call needs no more. */
        long nth = 1;
        for (;; ++nth) {
            const long before = NrvTestLiveBlocks();
            NrvTestFailAllocation(nth);
            const NRVRESULT result = Call(rows[i].call, &f);
            const int failed = NrvTestAllocationFailed();
            NrvTestFailAllocation(0);
            if (!failed) {
                CHECK(result >= 0, i);
                break;
            }
            CHECK(result == NRV_ERR_OUT_OF_MEMORY, i);
            CHECK(NrvTestLiveBlocks() == before, i); /* nothing kept from the failed call */
            CheckProfileWorks(&f, i);
        }
        CHECK(nth > 1 || !rows[i].allocates, i);
        if (g_nFailed != failedBefore)
            fprintf(stderr, "  (call %d, allocation %ld)\n", (int)rows[i].call, nth);
        if (rows[i].call != kParseFailing)
            CheckProfileWorks(&f, i);
    }
    NrvRuleSetFree(f.rules);
    NrvProfileFree(f.profile);
    CHECK(NrvTestLiveBlocks() == baseline, COUNT(rows));

    /* Each buffer handed out is one block the caller holds until NrvFree. */
    TNrvProfile* profile = NewProfile("{DecodedData()}");
    char* outputs[3] = {NULL, NULL, NULL};
    size_t length = 0;
    /* The profile keeps the capacity of the two buffers it edits in. */
    for (int i = 0; i < 2; ++i) {
        CHECK(NrvProfileEdit(profile, "A", 1, 0, &outputs[0], &length) == NRV_OK, 0);
        NrvFree(outputs[0]);
    }
    const long before = NrvTestLiveBlocks();
    CHECK(NrvProfileEdit(profile, "A", 1, 0, &outputs[0], &length) == NRV_OK, 0);
    const long afterEdit = NrvTestLiveBlocks();
    CHECK(NrvProfileExplain(profile, "A", 1, 0, &outputs[1], &length) == NRV_OK, 0);
    CHECK(NrvProfileEdit(profile, "B", 1, 0, &outputs[2], &length) == NRV_OK, 0);
    CHECK(strcmp(outputs[0], "A") == 0 && strcmp(outputs[2], "B") == 0, 0); /* independent of later edits */
    NrvFree(outputs[1]);
    NrvFree(outputs[2]);
    CHECK(NrvTestLiveBlocks() == afterEdit, 0);
    NrvFree(outputs[0]);
    CHECK(NrvTestLiveBlocks() == before, 0);
    /* The strings of an error stay valid until the same handle fills the next one. */
    TNrvErrorInfo first, second;
    TNrvProfile* other = NewProfile("{DecodedData()}");
    CHECK(NrvProfileParse(profile, "{Nope}", &first) == NRV_ERR_UNKNOWN_COMMAND, 1);
    CHECK(NrvProfileParse(other, "{Nada}", &second) == NRV_ERR_UNKNOWN_COMMAND, 1);
    CHECK(Contains(first.pszMessage, "Nope") && Contains(second.pszMessage, "Nada"), 1);
    NrvProfileFree(other);
    NrvProfileFree(profile);
    CHECK(NrvTestLiveBlocks() == baseline, 2);
}

/* ---- the groups ------------------------------------------------------------- */

int main(int argc, char** argv)
{
    static const struct {
        const char* name;
        void (*test)(void);
    } groups[] = {
        {"library", TestLibrary},
        {"parse", TestParse},
        {"command-sets", TestCommandSets},
        {"edit", TestEdit},
        {"edit-into", TestEditInto},
        {"edit-many", TestEditMany},
        {"settings", TestSettings},
        {"limits", TestLimits},
        {"explain", TestExplain},
        {"rule-sets", TestRuleSets},
        {"null-arguments", TestNullArguments},
        {"memory", TestMemory},
    };
    const char* wanted = argc > 1 ? argv[1] : "all";
    int ran = 0;
    for (size_t i = 0; i < COUNT(groups); ++i) {
        if (strcmp(wanted, "all") == 0 || strcmp(wanted, groups[i].name) == 0) {
            groups[i].test();
            ++ran;
        }
    }
    if (ran == 0) {
        fprintf(stderr, "test_capi: no group '%s'\n", wanted);
        return 2;
    }
    printf("%d passed, %d failed\n", g_nChecks - g_nFailed, g_nFailed);
    return g_nFailed == 0 ? 0 : 1;
}
