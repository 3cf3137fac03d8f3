#include "NrvCommandTable.h"

#include <cstring>

#include "NrvOperation.h"

namespace {

constexpr int kText = CNrvOperationResult::typeString;
constexpr int kNumber = CNrvOperationResult::typeInt;

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

template <class TFactory>
CNrvOperationFactory* CreateFactory()
{
    return new TFactory;
}

#define NRV_PARAMETERS(table) sizeof(table) / sizeof(table[0]), table

const TNrvCommandInfo kCommands[] = {
    {"DecodedData", 0, nullptr, kText, "the scan's bytes, exactly as read",
     &CreateFactory<CNrvOperationFactoryDecodedData>},
    {"TruncateFromBeginning", NRV_PARAMETERS(kTextCount), kText, "text without its first count bytes",
     &CreateFactory<CNrvOperationFactoryTruncateFromBeginning>},
    {"TruncateFromEnd", NRV_PARAMETERS(kTextCount), kText, "text without its last count bytes",
     &CreateFactory<CNrvOperationFactoryTruncateFromEnd>},
    {"Replace", NRV_PARAMETERS(kTextSearchReplacement), kText,
     "text with the first occurrence of search replaced by replacement",
     &CreateFactory<CNrvOperationFactoryReplace>},
    {"Substitute", NRV_PARAMETERS(kTextSetReplacement), kText,
     "text with every byte that occurs in set replaced by replacement",
     &CreateFactory<CNrvOperationFactorySubstitute>},
    {"EscapeCharacter", NRV_PARAMETERS(kHex), kText, "the bytes spelled by pairs of hexadecimal digits",
     &CreateFactory<CNrvOperationFactoryEscapeCharacter>},
    {"InsertAfterIndex", NRV_PARAMETERS(kTextIndexInsert), kText, "insert put behind the byte at index",
     &CreateFactory<CNrvOperationFactoryInsertAfterIndex>},
    {"InsertBeforeIndex", NRV_PARAMETERS(kTextIndexInsert), kText, "insert put in front of the byte at index",
     &CreateFactory<CNrvOperationFactoryInsertBeforeIndex>},
    {"FindFirstFromIndex", NRV_PARAMETERS(kTextStartSearchOffset), kNumber,
     "where the first search at or after start begins, plus offset",
     &CreateFactory<CNrvOperationFactoryFindFirstFromIndex>},
    {"FindLastFromIndex", NRV_PARAMETERS(kTextStartSearchOffset), kNumber,
     "where the last search begins (the first at or after start, else the last before it), plus offset",
     &CreateFactory<CNrvOperationFactoryFindLastFromIndex>},
    {"MakeUpperCase", NRV_PARAMETERS(kTextOnly), kText, "text with a-z made A-Z",
     &CreateFactory<CNrvOperationFactoryMakeUpperCase>},
    {"MakeLowerCase", NRV_PARAMETERS(kTextOnly), kText, "text with A-Z made a-z",
     &CreateFactory<CNrvOperationFactoryMakeLowerCase>},
    {"ReplaceNonPrintableCharacters", NRV_PARAMETERS(kTextReplacement), kText,
     "text with every byte below 0x20 or from 0x80 up replaced by replacement",
     &CreateFactory<CNrvOperationFactoryReplaceNonPrintableCharacters>},
    {"DecodedDataWithoutTrailer", 0, nullptr, kText, "the scan without the control bytes at its end",
     &CreateFactory<CNrvOperationFactoryDecodedDataWithoutTrailer>},
    {"TruncateAfterIndex", NRV_PARAMETERS(kTextIndexOffset), kText, "the bytes of text before index + offset",
     &CreateFactory<CNrvOperationFactoryTruncateAfterIndex>},
    {"TruncateBeforeIndex", NRV_PARAMETERS(kTextIndexOffset), kText, "the bytes of text from index + offset on",
     &CreateFactory<CNrvOperationFactoryTruncateBeforeIndex>},
    {"Substring", NRV_PARAMETERS(kTextStartStop), kText, "the bytes of text from start up to, not including, stop",
     &CreateFactory<CNrvOperationFactorySubstring>},
    {"Extract", NRV_PARAMETERS(kTextMarkers), kText,
     "the bytes after the first startMarker and before the last stopMarker",
     &CreateFactory<CNrvOperationFactoryExtract>},
};

#undef NRV_PARAMETERS

}  // namespace

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
