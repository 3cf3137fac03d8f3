/*
 * The data-editing engine for every host language: a C interface (C99 and
 * C++) over opaque handles, for programs in C and for the wrappers of other
 * languages (JNI, Swift, .NET, Go, Python). Link Nrv::DataEditC (CMake) or
 * nrvdataedit-c (pkg-config).
 *
 *   TNrvProfile* profile = NULL;
 *   TNrvErrorInfo error;
 *   char* output = NULL;
 *   size_t length = 0;
 *   if (NrvProfileNew(&profile) < 0) return 1;
 *   if (NrvProfileParse(profile, "Code: {TruncateFromBeginning({DecodedData()},2)}", &error) < 0)
 *       fputs(error.pszReport, stderr);                 // the sentence, the expression and a caret
 *   else if (NrvProfileEdit(profile, "AB1234", 6, kNrvScanSymbologyCode128, &output, &length) >= 0)
 *       printf("%.*s\n", (int)length, output);        // Code: 1234
 *   NrvFree(output);
 *   NrvProfileFree(profile);
 *
 * Conventions, for every call:
 * - It returns an NRVRESULT: zero or above is success (NRV_OK, or
 *   NRV_OK_NOT_TRIGGERED when a scan was left alone), a negative value an
 *   error (the table in NrvScanTypes.h; NrvGetResultName names each one).
 *   Only the frees return nothing: like free(), they accept null and cannot
 *   fail.
 * - A null pointer argument is refused with NRV_ERR_INVALID_PARAMETER (-18),
 *   except where a parameter says "may be null". Scan bytes may be null when
 *   their length is 0.
 * - No C++ exception crosses: an allocation that fails makes the call return
 *   NRV_ERR_OUT_OF_MEMORY, and a call that fails changes nothing (the handle
 *   stays as it was and usable, out pointers are null or 0).
 * - Scans and results are bytes with a length: they may hold zero bytes and
 *   any byte from 0x80 up. Expressions, settings, paths and names are
 *   zero-terminated texts.
 * - Buffers the library allocates (char** out parameters) belong to the
 *   caller, who releases each with NrvFree. They are zero-terminated (the
 *   terminator not counted in the length). Strings of a TNrvErrorInfo and
 *   names returned as const char* belong to the library: see each.
 *
 * Threads: a handle is used by one thread at a time; separate handles may
 * be used on separate threads at once, without locks. NrvGetVersion,
 * NrvGetResultName, NrvGetSymbology and NrvFree may be called from any
 * thread at any time.
 */
#ifndef NRV_DATA_EDIT_H
#define NRV_DATA_EDIT_H

#include <stddef.h>

#include "NrvScanTypes.h"

/* The version of this header; NrvGetVersion gives the library's. */
#define NRV_VERSION_MAJOR 1
#define NRV_VERSION_MINOR 0
#define NRV_VERSION_PATCH 0
#define NRV_VERSION_STRING "1.0.0"

/* What a rule-set call reports when no rule took the scan. */
#define NRV_NO_RULE ((size_t)-1)

#ifdef __cplusplus
extern "C" {
#endif

/* A parsed expression with its triggers and limits. */
typedef struct TNrvProfile TNrvProfile;
/* Rules in order, each an expression with its own triggers: the first rule
   whose triggers all hold edits a scan. */
typedef struct TNrvRuleSet TNrvRuleSet;

/*
 * Why a call failed, for a person and for a program. The strings belong to
 * the handle whose call filled the structure: they stay valid until the
 * next call on that handle that fills a TNrvErrorInfo, or until the handle
 * is freed. Copy them to keep them longer; never free them. On success the
 * structure is filled too (nCode not negative, empty strings).
 */
typedef struct TNrvErrorInfo {
    NRVRESULT nCode;        /* what the call returned */
    size_t nOffset;         /* an expression's culprit: its byte range in the expression */
    size_t nLength;
    const char* pszCommand; /* the command concerned, "" when none */
    const char* pszMessage; /* one sentence without a final stop, "" when nothing went wrong */
    size_t nRule;           /* a rule set's: the rule concerned (from 0), or NRV_NO_RULE */
    size_t nLine;           /* a rules text's first error: line and column (from 1, the column in */
    size_t nColumn;         /* characters); 0 when the error concerns the whole text or there is none */
    size_t nErrorCount;     /* a rules text's: how many errors it holds (all are in pszReport) */
    /* Everything said, ready to print, each line ending in '\n': for an
       expression, the sentence with the code's name and value, then the
       expression and a line of carets under the culprit, as nrv-edit shows
       them; for a rules text, every error as nrv-edit shows it; for a
       failed edit, "Command: sentence (NAME, code)". "" on success. */
    const char* pszReport;
} TNrvErrorInfo;

/* ---- The library ---------------------------------------------------- */

/* The library's version (which may differ from the header's when the
   library is shared). */
NRVRESULT NrvGetVersion(int* pnMajor, int* pnMinor, int* pnPatch);
/* The name ("NRV_ERR_SYNTAX") and the meaning in a few words of a code the
   library defines: static texts. NRV_ERR_INVALID_PARAMETER for any other
   value. ppszMeaning may be null. */
NRVRESULT NrvGetResultName(NRVRESULT nCode, const char** ppszName, const char** ppszMeaning);
/* A symbology by name, in any case ("Code128", "qrcode"), or by number
   ("38"). NRV_ERR_INVALID_PARAMETER for any other text. */
NRVRESULT NrvGetSymbology(const char* pszName, int* pnSymbology);
/* Releases a buffer the library allocated for the caller. Null is ignored. */
void NrvFree(void* pBuffer);

/* ---- Profiles ------------------------------------------------------- */

/* A new profile without an expression, which leaves every scan as it is
   until NrvProfileParse gives it one, with the default limits (see
   NrvProfileSetSettings) and the eighteen seed commands only (see
   NrvProfileEnableCommandSets). */
NRVRESULT NrvProfileNew(TNrvProfile** ppProfile);
void NrvProfileFree(TNrvProfile* pProfile);

/* Replaces the expression. When it does not parse, the code says why
   (NRV_ERR_SYNTAX, NRV_ERR_UNKNOWN_COMMAND, NRV_ERR_PARAMETER_COUNT,
   NRV_ERR_INVALID_PARAMETER), pInfo (may be null) where, and every edit
   returns that code until an expression parses. */
NRVRESULT NrvProfileParse(TNrvProfile* pProfile, const char* pszExpression, TNrvErrorInfo* pInfo);

/*
 * Replaces the profile's triggers and limits with nCount settings, each a
 * name and a value written as nrv-edit's options and a rules file's keys
 * are (a '_' may stand for a '-'):
 *   "min-size", "max-size"  trigger: edit only scans of at least / at most
 *                           this many bytes (decimal; 0: unset)
 *   "symbology"             trigger: edit only scans of this symbology, by
 *                           name in any case or number (repeat for several)
 *   "contains", "starts-with", "ends-with"
 *                           trigger texts, read through the escapes \\ \r
 *                           \n \t \xHH as in a rules file (so a backslash is
 *                           written \\); a zero byte is refused
 *   "max-text"              limit: the largest text an edit may build, in
 *                           bytes (default 16 MiB; 0: none)
 *   "max-work"              limit: the work an edit may do per scan byte, on
 *                           top of 64 MiB (default 4096; 0: no budget)
 * A setting not given is unset (a trigger) or takes its default (a limit):
 * the defaults of nrv-edit, the rules files and the playground, which every
 * new profile starts with. A value that cannot be read, an unknown name or
 * settings that no scan could meet (a minimum above the maximum, a trigger
 * text longer than the maximum) are refused with NRV_ERR_INVALID_PARAMETER,
 * pInfo (may be null) saying why, and the profile keeps its settings.
 * nCount may be 0 (everything unset, the default limits); the arrays may
 * then be null.
 */
NRVRESULT NrvProfileSetSettings(TNrvProfile* pProfile, const char* const* ppszNames, const char* const* ppszValues,
                                size_t nCount, TNrvErrorInfo* pInfo);

/* The command sets beyond the eighteen seed commands that every profile
   knows, which a host enables on a profile. */
#define NRV_COMMAND_SET_GS1 1u /* GS1Element, GS1HumanReadable */

/* Replaces the command sets the profile knows besides the eighteen (0, the
   default: none; or NRV_COMMAND_SET_GS1) and parses its expression again
   under them, returning that parse's code (pInfo, may be null, says why it
   fails). NRV_ERR_INVALID_PARAMETER for a bit that is no set, the profile
   unchanged. Rule sets take theirs from the rules file, as nrv-edit --rules
   does: every set, unless a rule says seed-only = true. */
NRVRESULT NrvProfileEnableCommandSets(TNrvProfile* pProfile, unsigned nSets, TNrvErrorInfo* pInfo);

/*
 * Edits one scan (nLength bytes of pData, of the symbology nSymbology, a
 * value of ENrvScanSymbologyID) into a new buffer, *ppOutput, of
 * *pnOutputLength bytes, which the caller releases with NrvFree.
 * - NRV_OK: the edited data.
 * - NRV_OK_NOT_TRIGGERED: a trigger did not hold; the output is the scan.
 * - A negative code: the edit failed (NrvProfileDescribeFailure says why);
 *   *ppOutput is null and *pnOutputLength 0.
 */
NRVRESULT NrvProfileEdit(TNrvProfile* pProfile, const char* pData, size_t nLength, int nSymbology, char** ppOutput,
                         size_t* pnOutputLength);
/* The same into the caller's buffer of nBufferSize bytes: the output and a
   zero byte after it. *pnOutputLength receives the output's length whenever
   the edit succeeds; when nBufferSize is not more than that, the call
   returns NRV_ERR_BUFFER_TOO_SMALL and writes nothing, and a buffer of
   *pnOutputLength + 1 bytes will do. pBuffer may be null when nBufferSize
   is 0, to ask for the size. */
NRVRESULT NrvProfileEditInto(TNrvProfile* pProfile, const char* pData, size_t nLength, int nSymbology, char* pBuffer,
                             size_t nBufferSize, size_t* pnOutputLength);
/*
 * Edits nCount scans (ppData[i], pnLengths[i] bytes) of one symbology in
 * one call. pCodes[i] receives each edit's code. The outputs lie back to
 * back in one new buffer, *ppOutputs, which the caller releases with
 * NrvFree: output i is the bytes from pnEnds[i - 1] (0 for the first) to
 * pnEnds[i]. A scan whose edit failed or that a trigger left alone appears
 * unchanged, as nrv-edit prints it. The arrays may be null when nCount is
 * 0. The call itself fails only for its arguments (a null scan of non-zero
 * length among them) or memory, and then fills nothing.
 */
NRVRESULT NrvProfileEditMany(TNrvProfile* pProfile, size_t nCount, const char* const* ppData,
                             const size_t* pnLengths, int nSymbology, NRVRESULT* pCodes, char** ppOutputs,
                             size_t* pnEnds);
/* Why the edit of this scan fails: the edit's code, the command that failed
   first, its place in the expression and a sentence, in *pInfo (its nCode
   not negative when the edit does not fail). It runs the edit again: ask
   only after an edit failed. The call's own code is NRV_OK unless the call
   itself fails. */
NRVRESULT NrvProfileDescribeFailure(TNrvProfile* pProfile, const char* pData, size_t nLength, int nSymbology,
                                    TNrvErrorInfo* pInfo);
/* What the expression does to one scan, node by node, as a JSON object of
   nrv-edit --explain --json (bytes as the characters U+0000 to U+00FF of
   their values, so nothing is lost; "scan" is 1), in a new zero-terminated
   buffer the caller releases with NrvFree. The edit's code is the JSON's
   "code": a failed edit is explained, and the call returns NRV_OK. */
NRVRESULT NrvProfileExplain(TNrvProfile* pProfile, const char* pData, size_t nLength, int nSymbology, char** ppJson,
                            size_t* pnJsonLength);

/* ---- Rule sets ------------------------------------------------------ */

/* A new rule set without rules (it leaves every scan alone). */
NRVRESULT NrvRuleSetNew(TNrvRuleSet** ppRuleSet);
void NrvRuleSetFree(TNrvRuleSet* pRuleSet);

/*
 * Replaces the rules with those of a rules file (TOML, as nrv-edit --rules
 * reads it), or of nLength bytes of text named pszName in messages (may be
 * null: "rules"). Each rule edits under the default limits. A file that
 * cannot be read or holds an error returns NRV_ERR_RULES_FILE with every
 * error in pInfo (may be null), and the rules stay as they were. Rules
 * files need toml++: a library built without it returns NRV_ERR_RULES_FILE
 * for every file and text, and says so in pInfo.
 */
NRVRESULT NrvRuleSetReadFile(TNrvRuleSet* pRuleSet, const char* pszPath, TNrvErrorInfo* pInfo);
NRVRESULT NrvRuleSetReadText(TNrvRuleSet* pRuleSet, const char* pText, size_t nLength, const char* pszName,
                             TNrvErrorInfo* pInfo);
NRVRESULT NrvRuleSetGetRuleCount(const TNrvRuleSet* pRuleSet, size_t* pnCount);
/* The rule's name, "" when it has none: valid until the rules are replaced
   or the set freed. NRV_ERR_OUT_OF_RANGE past the last rule. */
NRVRESULT NrvRuleSetGetRuleName(const TNrvRuleSet* pRuleSet, size_t nRule, const char** ppszName);

/* As the profile's calls, with the rule that took each scan (from 0), or
   NRV_NO_RULE, in *pnRule (may be null). A scan no rule takes is
   NRV_OK_NOT_TRIGGERED; when the rule that takes it fails, its code is
   returned and no later rule is tried. */
NRVRESULT NrvRuleSetEdit(TNrvRuleSet* pRuleSet, const char* pData, size_t nLength, int nSymbology, char** ppOutput,
                         size_t* pnOutputLength, size_t* pnRule);
NRVRESULT NrvRuleSetEditInto(TNrvRuleSet* pRuleSet, const char* pData, size_t nLength, int nSymbology, char* pBuffer,
                             size_t nBufferSize, size_t* pnOutputLength, size_t* pnRule);
/* pnRules (may be null) receives the rule of each scan. */
NRVRESULT NrvRuleSetEditMany(TNrvRuleSet* pRuleSet, size_t nCount, const char* const* ppData, const size_t* pnLengths,
                             int nSymbology, NRVRESULT* pCodes, char** ppOutputs, size_t* pnEnds, size_t* pnRules);
/* pInfo->nRule is the rule that took the scan; the report names it as
   nrv-edit does. */
NRVRESULT NrvRuleSetDescribeFailure(TNrvRuleSet* pRuleSet, const char* pData, size_t nLength, int nSymbology,
                                    TNrvErrorInfo* pInfo);
/* The JSON holds "rule": {"index": from 1, "name": ...}, or null when no
   rule took the scan. */
NRVRESULT NrvRuleSetExplain(TNrvRuleSet* pRuleSet, const char* pData, size_t nLength, int nSymbology, char** ppJson,
                            size_t* pnJsonLength);

#ifdef __cplusplus
}
#endif

#endif /* NRV_DATA_EDIT_H */
