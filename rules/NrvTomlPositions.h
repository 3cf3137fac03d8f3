// Positions in a TOML text as its reader counts them: lines from 1, a new
// one after each '\n'; columns from 1 in characters (UTF-8 code points).
// And the way back from a byte of a string's value to the byte of the file
// that wrote it, so that a place inside a value can be shown in the file.
#ifndef NRV_TOML_POSITIONS_H
#define NRV_TOML_POSITIONS_H

#include <cstddef>
#include <string_view>

struct TNrvTextPosition {
    size_t nLine;
    size_t nColumn;
};

// The byte offset of a position, or std::string_view::npos when the text
// has no such place (the end of a line counts as its last column plus one).
size_t NrvTomlByteOffset(std::string_view text, TNrvTextPosition position);

// The position of byte nOffset (nOffset may be the text's length).
TNrvTextPosition NrvTomlPosition(std::string_view text, size_t nOffset);

// For the TOML string (basic or literal, one line or several) whose opening
// quote is at byte nQuote: the byte of the text that wrote byte nOffset of
// its value (an escape counts as written by its backslash; nOffset equal to
// the value's length gives the closing quote). False when the string at
// nQuote does not spell value: the caller then keeps to the string's start.
bool NrvTomlStringByte(std::string_view text, size_t nQuote, std::string_view value, size_t nOffset, size_t* pnByte);

#endif  // NRV_TOML_POSITIONS_H
