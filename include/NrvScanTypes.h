// Types shared between the scanning library and its data-editing engine:
// result codes, the symbology identifiers and the decoded-data record.
#ifndef NRV_SCAN_TYPES_H
#define NRV_SCAN_TYPES_H

#include <cstddef>
#include <cstdint>

// Result of every fallible call. Zero or above is success; callers test the
// sign only, so a positive informational code is a success as well.
typedef int64_t NRVRESULT;

#define NRV_OK ((NRVRESULT)0)
// Edit left the record as it was because the trigger conditions did not hold.
#define NRV_OK_NOT_TRIGGERED ((NRVRESULT)1)
#define NRV_ERR_INVALID_PARAMETER ((NRVRESULT)-18)
#define NRV_ERR_OUT_OF_RANGE ((NRVRESULT)-43)
#define NRV_ERR_SYNTAX ((NRVRESULT)-52)
#define NRV_ERR_UNKNOWN_COMMAND ((NRVRESULT)-83)
#define NRV_ERR_PARAMETER_COUNT ((NRVRESULT)-84)
// A result would be larger than the profile's largest text (a limit the
// application sets; none by default).
#define NRV_ERR_TEXT_LIMIT ((NRVRESULT)-60)
// The edit used up the work budget the application gave the profile.
#define NRV_ERR_WORK_LIMIT ((NRVRESULT)-61)
// A text of 2 GiB or more reached a command whose positions travel in 32
// bits: refused rather than answered wrongly. Always checked.
#define NRV_ERR_TEXT_TOO_LONG ((NRVRESULT)-62)
// A GS1 command was given a text that is not a valid GS1 message (an
// unknown AI, a wrong length, character, check digit, date, ...).
#define NRV_ERR_GS1_INVALID ((NRVRESULT)-63)

#define NRV_SUCCEEDED(result) ((result) >= 0)
#define NRV_FAILED(result) ((result) < 0)

// The values are part of the library's interface: never reorder.
enum ENrvScanSymbologyID : int32_t {
    kNrvScanSymbologyNotSpecified = 0,
    kNrvScanSymbologyAustraliaPost,
    kNrvScanSymbologyAztec,
    kNrvScanSymbologyBooklandEan,
    kNrvScanSymbologyBritishPost,
    kNrvScanSymbologyCanadaPost,
    kNrvScanSymbologyChinese2of5,
    kNrvScanSymbologyCodabar,
    kNrvScanSymbologyCodablockA,
    kNrvScanSymbologyCodablockF,
    kNrvScanSymbologyCode11,
    kNrvScanSymbologyCode39,
    kNrvScanSymbologyCode39Extended,
    kNrvScanSymbologyCode39Trioptic,
    kNrvScanSymbologyCode93,
    kNrvScanSymbologyCode128,
    kNrvScanSymbologyDataMatrix,
    kNrvScanSymbologyDutchPost,
    kNrvScanSymbologyEan8,
    kNrvScanSymbologyEan13,
    kNrvScanSymbologyEan128,
    kNrvScanSymbologyEan128Irregular,
    kNrvScanSymbologyEanUccCompositeAB,
    kNrvScanSymbologyEanUccCompositeC,
    kNrvScanSymbologyGs1Databar,
    kNrvScanSymbologyGs1DatabarLimited,
    kNrvScanSymbologyGs1DatabarExpanded,
    kNrvScanSymbologyInterleaved2of5,
    kNrvScanSymbologyIsbt128,
    kNrvScanSymbologyJapanPost,
    kNrvScanSymbologyMatrix2of5,
    kNrvScanSymbologyMaxicode,
    kNrvScanSymbologyMsi,
    kNrvScanSymbologyPdf417,
    kNrvScanSymbologyPdf417Micro,
    kNrvScanSymbologyPlanet,
    kNrvScanSymbologyPlessey,
    kNrvScanSymbologyPostnet,
    kNrvScanSymbologyQRCode,
    kNrvScanSymbologyStandard2of5,
    kNrvScanSymbologyTelepen,
    kNrvScanSymbologyTlc39,
    kNrvScanSymbologyUpcA,
    kNrvScanSymbologyUpcE0,
    kNrvScanSymbologyUpcE1,
    kNrvScanSymbologyUspsIntelligentMail,
    kNrvScanSymbologyDirectPartMarking,
    kNrvScanSymbologyHanXin,
    kNrvScanSymbologyLastSymbologyID  // count marker, not a symbology
};

// A byte text with its length; it may hold zero bytes.
struct TNrvScanString {
    size_t nLength;
    char* pValue;
};

struct TNrvScanDecodedData {
    ENrvScanSymbologyID SymbologyID;
    TNrvScanString SymbologyName;
    TNrvScanString String;
};

#endif  // NRV_SCAN_TYPES_H
