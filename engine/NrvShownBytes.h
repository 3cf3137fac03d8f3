// How the bytes of a scan, a result or an echoed argument are shown to a
// person or written into JSON. Scans are bytes, not text: each form says
// what becomes of the bytes that are not printable text.
#ifndef NRV_SHOWN_BYTES_H
#define NRV_SHOWN_BYTES_H

#include <cstddef>
#include <string>
#include <string_view>

enum ENrvByteForm {
    // Every byte as the character of the same code point, U+0000 to U+00FF:
    // nothing is lost (nrv-edit's JSON, where the writer spells the
    // characters outside printable ASCII \u00XX).
    kNrvBytesCodePoints,
    // The escapes of nrv-edit -e: printable ASCII as it is, \\ \r \n \t,
    // and \xHH for every other byte; one line that reads back to the bytes.
    kNrvBytesEscaped,
    // Text to look at: valid UTF-8 as it is, control bytes as their control
    // pictures (U+2400 + byte, U+2421 for 0x7F), \xHH for a byte that starts
    // no valid UTF-8 sequence.
    kNrvBytesDisplay,
    // Text echoed in a message on a terminal: as kNrvBytesDisplay, but
    // control bytes as \t \r \n or \xHH, and the C1 controls (U+0080 to
    // U+009F) as the \xHH of their two bytes, so that nothing a terminal
    // would act on reaches it raw.
    kNrvBytesMessage,
};

// Appends pData[0..nLength) in the given form to *pOut.
void NrvAppendShown(const char* pData, size_t nLength, ENrvByteForm form, std::string* pOut);
// The same, as a new string.
std::string NrvShown(std::string_view bytes, ENrvByteForm form);

// An expression on one line, and under it a line of carets that marks the
// culprit's byte range [nOffset, nOffset + nLength) (a single '^' for an
// empty range). Bytes are shown in kNrvBytesEscaped, the carets following
// them; an expression too wide to show whole is cut to a window around the
// range, "..." where it is cut. The caret line has no trailing blanks.
void NrvShowCulprit(const char* pszExpression, size_t nOffset, size_t nLength, std::string* pLine,
                    std::string* pCarets);

// Length of the valid UTF-8 sequence (no overlong form, no surrogate, at
// most U+10FFFF) that starts at p[0..n), or 0 when none does.
size_t NrvUtf8SequenceLength(const unsigned char* p, size_t n);

#endif  // NRV_SHOWN_BYTES_H
