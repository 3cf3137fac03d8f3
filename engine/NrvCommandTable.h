// The commands of the expression language, one row each, in the order the
// dictionary registers them. A row says everything about a command but how
// it computes: its name, each parameter's name and kind, its result kind, a
// summary, a sample call, and what the common frame of every command checks
// for it. Everything that lists or covers the commands (the dictionary, the
// tool, the page, the tests, the benchmarks) reads this table.
#ifndef NRV_COMMAND_TABLE_H
#define NRV_COMMAND_TABLE_H

#include <cstddef>

class CNrvOperationFactory;

// Reserved index values. They travel as signed 32-bit integers and are read
// back widened to sizes, hence the two spellings.
enum : int {
    kNrvIndexNone = -1,      // no index given: the command's own default
    kNrvIndexNotFound = -2,  // a find command found nothing
};
constexpr size_t kNrvSizeIndexNone = static_cast<size_t>(-1);
constexpr size_t kNrvSizeIndexNotFound = static_cast<size_t>(-2);

// What a parameter takes and a command yields: the values of the value
// record's typeString and typeInt.
enum : int { kNrvKindText = 0, kNrvKindNumber = 1 };

struct TNrvParameterInfo {
    const char* pszName;  // text, count, start, search, offset, index, ...
    int nKind;            // kNrvKindText or kNrvKindNumber
};

struct TNrvCommandInfo {
    const char* pszName;
    size_t nParameterCount;
    const TNrvParameterInfo* pParameters;  // nParameterCount entries
    int nResultType;                       // kNrvKindText or kNrvKindNumber
    const char* pszSummary;
    // A whole call, ready to paste: "{TruncateFromBeginning({DecodedData()},2)}".
    // Its arguments are plain literals but for a first text parameter that
    // reads the scan, written {DecodedData()}; it edits the scan AB-CD-EF
    // without failing.
    const char* pszSample;
    // Which of the commands that share a class and its body this row is
    // (from the beginning or the end, upper or lower case, ...); 0 for a
    // command with a class of its own.
    int nVariant;
    // The parameters whose texts the result is copied from (bit i for
    // parameter i). The frame charges their copy, and checks that it fits
    // the largest text, before the body computes; a command whose result's
    // size depends on what it computes charges it in its body instead.
    unsigned nCopiedParameters;
    // Makes the factory the dictionary registers for this row; the caller
    // owns it.
    CNrvOperationFactory* (*pfnCreateFactory)(const TNrvCommandInfo& row);
};

// The whole table; *pnCount receives the number of rows.
const TNrvCommandInfo* NrvGetCommandTable(size_t* pnCount);
// The row of the command named by the first nLength bytes of pszName
// (compared byte for byte), or null.
const TNrvCommandInfo* NrvFindCommandInfo(const char* pszName, size_t nLength);

#endif  // NRV_COMMAND_TABLE_H
