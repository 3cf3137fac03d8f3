#include "NrvCommandTable.h"

#include <cstring>

#include "NrvOperation.h"

namespace {

constexpr int kText = kNrvKindText;
constexpr int kNumber = kNrvKindNumber;
static_assert(kText == static_cast<int>(CNrvOperationResult::typeString) &&
                  kNumber == static_cast<int>(CNrvOperationResult::typeInt),
              "a kind is the value record's type");

const TNrvParameterInfo kTextCount[] = {{"text", kText}, {"count", kNumber}};
const TNrvParameterInfo kTextSearchReplacement[] = {{"text", kText}, {"search", kText}, {"replacement", kText}};
const TNrvParameterInfo kTextSetReplacement[] = {{"text", kText}, {"set", kText}, {"replacement", kText}};
const TNrvParameterInfo kHex[] = {{"hex", kText}};
const TNrvParameterInfo kTextIndexInsert[] = {{"text", kText}, {"index", kNumber}, {"insert", kText}};
const TNrvParameterInfo kTextStartSearchOffset[] = {
    {"text", kText}, {"start", kNumber}, {"search", kText}, {"offset", kNumber}};
const TNrvParameterInfo kTextOnly[] = {{"text", kText}};
const TNrvParameterInfo kTextReplacement[] = {{"text", kText}, {"replacement", kText}};
const TNrvParameterInfo kTextIndexOffset[] = {{"text", kText}, {"index", kNumber}, {"offset", kNumber}};
const TNrvParameterInfo kTextStartStop[] = {{"text", kText}, {"start", kNumber}, {"stop", kNumber}};
const TNrvParameterInfo kTextMarkers[] = {{"text", kText}, {"startMarker", kText}, {"stopMarker", kText}};
const TNrvParameterInfo kTextAi[] = {{"text", kText}, {"ai", kText}};

template <class TOperation>
constexpr CNrvOperationFactory* (*kFactory)(const TNrvCommandInfo&) = &CNrvOperationFactoryOf<TOperation>::Create;

#define NRV_PARAMETERS(table) sizeof(table) / sizeof(table[0]), table

// Bit i: the result copies parameter i's text (see nCopiedParameters).
constexpr unsigned kCopiesText = 1u << 0;
constexpr unsigned kCopiesTextAndInsert = (1u << 0) | (1u << 2);

const TNrvCommandInfo kCommands[] = {
    {"DecodedData", 0, nullptr, kText, "the scan's bytes, exactly as read", "{DecodedData()}",
     CNrvOperationDecodedData::kWhole, 0, kFactory<CNrvOperationDecodedData>},
    {"TruncateFromBeginning", NRV_PARAMETERS(kTextCount), kText, "text without its first count bytes",
     "{TruncateFromBeginning({DecodedData()},2)}", CNrvOperationTruncate::kFromBeginning, kCopiesText,
     kFactory<CNrvOperationTruncateFromBeginning>},
    {"TruncateFromEnd", NRV_PARAMETERS(kTextCount), kText, "text without its last count bytes",
     "{TruncateFromEnd({DecodedData()},2)}", CNrvOperationTruncate::kFromEnd, kCopiesText,
     kFactory<CNrvOperationTruncateFromEnd>},
    {"Replace", NRV_PARAMETERS(kTextSearchReplacement), kText,
     "text with the first occurrence of search replaced by replacement", "{Replace({DecodedData()},-,_)}", 0, 0,
     kFactory<CNrvOperationReplace>},
    {"Substitute", NRV_PARAMETERS(kTextSetReplacement), kText,
     "text with every byte that occurs in set replaced by replacement", "{Substitute({DecodedData()},-,_)}", 0, 0,
     kFactory<CNrvOperationSubstitute>},
    {"EscapeCharacter", NRV_PARAMETERS(kHex), kText, "the bytes spelled by pairs of hexadecimal digits",
     "{EscapeCharacter(1D)}", 0, 0, kFactory<CNrvOperationEscapeCharacter>},
    {"InsertAfterIndex", NRV_PARAMETERS(kTextIndexInsert), kText, "insert put behind the byte at index",
     "{InsertAfterIndex({DecodedData()},1,-)}", CNrvOperationInsertAtIndex::kAfter, kCopiesTextAndInsert,
     kFactory<CNrvOperationInsertAfterIndex>},
    {"InsertBeforeIndex", NRV_PARAMETERS(kTextIndexInsert), kText, "insert put in front of the byte at index",
     "{InsertBeforeIndex({DecodedData()},0,-)}", CNrvOperationInsertAtIndex::kBefore, kCopiesTextAndInsert,
     kFactory<CNrvOperationInsertBeforeIndex>},
    {"FindFirstFromIndex", NRV_PARAMETERS(kTextStartSearchOffset), kNumber,
     "where the first search at or after start begins, plus offset", "{FindFirstFromIndex({DecodedData()},0,-,0)}",
     CNrvOperationFindFromIndex::kFirst, 0, kFactory<CNrvOperationFindFirstFromIndex>},
    {"FindLastFromIndex", NRV_PARAMETERS(kTextStartSearchOffset), kNumber,
     "where the last search begins (the first at or after start, else the last before it), plus offset",
     "{FindLastFromIndex({DecodedData()},-1,-,0)}", CNrvOperationFindFromIndex::kLast, 0,
     kFactory<CNrvOperationFindLastFromIndex>},
    {"MakeUpperCase", NRV_PARAMETERS(kTextOnly), kText, "text with a-z made A-Z", "{MakeUpperCase({DecodedData()})}",
     CNrvOperationMakeCase::kUpper, kCopiesText, kFactory<CNrvOperationMakeUpperCase>},
    {"MakeLowerCase", NRV_PARAMETERS(kTextOnly), kText, "text with A-Z made a-z", "{MakeLowerCase({DecodedData()})}",
     CNrvOperationMakeCase::kLower, kCopiesText, kFactory<CNrvOperationMakeLowerCase>},
    {"ReplaceNonPrintableCharacters", NRV_PARAMETERS(kTextReplacement), kText,
     "text with every byte below 0x20 or from 0x80 up replaced by replacement",
     "{ReplaceNonPrintableCharacters({DecodedData()},.)}", 0, 0, kFactory<CNrvOperationReplaceNonPrintableCharacters>},
    {"DecodedDataWithoutTrailer", 0, nullptr, kText, "the scan without the control bytes at its end",
     "{DecodedDataWithoutTrailer()}", CNrvOperationDecodedData::kWithoutTrailer, 0,
     kFactory<CNrvOperationDecodedDataWithoutTrailer>},
    {"TruncateAfterIndex", NRV_PARAMETERS(kTextIndexOffset), kText, "the bytes of text before index + offset",
     "{TruncateAfterIndex({DecodedData()},2,0)}", CNrvOperationTruncateAtIndex::kKeepBefore, kCopiesText,
     kFactory<CNrvOperationTruncateAfterIndex>},
    {"TruncateBeforeIndex", NRV_PARAMETERS(kTextIndexOffset), kText, "the bytes of text from index + offset on",
     "{TruncateBeforeIndex({DecodedData()},2,1)}", CNrvOperationTruncateAtIndex::kKeepFrom, kCopiesText,
     kFactory<CNrvOperationTruncateBeforeIndex>},
    {"Substring", NRV_PARAMETERS(kTextStartStop), kText, "the bytes of text from start up to, not including, stop",
     "{Substring({DecodedData()},2,5)}", 0, 0, kFactory<CNrvOperationSubstring>},
    {"Extract", NRV_PARAMETERS(kTextMarkers), kText,
     "the bytes after the first startMarker and before the last stopMarker", "{Extract({DecodedData()},-,-)}", 0, 0,
     kFactory<CNrvOperationExtract>},
    // The GS1 set. Their samples read a literal message: the sample scan is
    // not one. Each charges its own copy, whose size it learns by reading.
    {"GS1Element", NRV_PARAMETERS(kTextAi), kText,
     "the data of the first element string of the GS1 message text whose AI is ai (empty when none)",
     "{GS1Element(0109501101530003,01)}", 0, 0, kFactory<CNrvOperationGS1Element>, kNrvCommandSetGs1},
    {"GS1HumanReadable", NRV_PARAMETERS(kTextOnly), kText,
     "the GS1 message text as people read it: (01)09501101530003(17)141120",
     "{GS1HumanReadable(0109501101530003)}", 0, 0, kFactory<CNrvOperationGS1HumanReadable>, kNrvCommandSetGs1},
};

#undef NRV_PARAMETERS

}  // namespace

const char* NrvCommandSetName(unsigned nSet)
{
    return nSet == kNrvCommandSetGs1 ? "GS1" : nullptr;
}

const TNrvCommandInfo* NrvGetCommandTable(size_t* pnCount)
{
    if (pnCount != nullptr)
        *pnCount = sizeof(kCommands) / sizeof(kCommands[0]);
    return kCommands;
}

const TNrvCommandInfo* NrvFindCommandInfo(const char* pszName, size_t nLength)
{
    if (pszName == nullptr)
        return nullptr;
    for (const TNrvCommandInfo& command : kCommands) {
        if (strlen(command.pszName) == nLength && memcmp(command.pszName, pszName, nLength) == 0)
            return &command;
    }
    return nullptr;
}
