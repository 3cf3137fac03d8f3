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

// The sets of commands. Every profile knows the eighteen seed commands;
// the others are extensions that sit beside them, and a profile knows one
// only when its host enables its set (CNrvDataEditingProfile::
// EnableCommandSets), so that a host that keeps the eighteen sees the engine
// exactly as before, trace lines included.
enum : unsigned {
    kNrvCommandSetSeed = 0,          // the eighteen commands, always known
    kNrvCommandSetGs1 = 1u << 0,     // GS1Element, GS1HumanReadable
    kNrvCommandSetsAll = kNrvCommandSetGs1,
};

// The set's name as people read it ("GS1"), or null for the seed set and
// anything that is not exactly one extension set.
const char* NrvCommandSetName(unsigned nSet);

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
    // The set the command belongs to: kNrvCommandSetSeed, or one extension set.
    unsigned nSet = kNrvCommandSetSeed;
};

// The whole table, the seed commands first, then each extension set's;
// *pnCount receives the number of rows.
const TNrvCommandInfo* NrvGetCommandTable(size_t* pnCount);
// True when a profile that enables nSets knows the row's command.
inline bool NrvCommandIsEnabled(const TNrvCommandInfo& row, unsigned nSets)
{
    return row.nSet == kNrvCommandSetSeed || (row.nSet & nSets) != 0;
}
// The row of the command named by the first nLength bytes of pszName
// (compared byte for byte), or null; extension rows included.
const TNrvCommandInfo* NrvFindCommandInfo(const char* pszName, size_t nLength);

#endif  // NRV_COMMAND_TABLE_H
