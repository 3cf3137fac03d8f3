// GS1 element strings: the table of Application Identifiers (AIs) and a
// reader that walks a message element by element and checks each one.
//
// The table holds, per AI or range of AIs, what GS1's syntax dictionary says
// of it: whether its length is predefined (no separator needed after it), the
// components of its data (character set, length, optional or not), the checks
// on each component, and its title. The reader accepts a message bare, after
// one of the symbology identifiers ]C1 ]e0 ]d2 ]Q3 ]J1, or after a leading
// group separator (0x1D); variable-length elements end at a separator, and a
// separator after a predefined-length element is tolerated. Pairings between
// AIs (one AI requiring or excluding another) are not checked: one scan may be
// only one of several codes on an item.
//
// Standard library only; nothing here allocates. Texts are bytes with their
// length: zero bytes and bytes from 0x80 up are data like any other, and no
// byte past the length is ever read.
#ifndef NRV_GS1_H
#define NRV_GS1_H

#include <cstddef>
#include <cstdint>

#if defined(__GNUC__)
#define NRV_GS1_PRINTF(nFormat, nFirst) __attribute__((format(printf, nFormat, nFirst)))
#else
#define NRV_GS1_PRINTF(nFormat, nFirst)
#endif

// The checks a component's content may carry, named in comments as the
// dictionary names them. The reader makes every one except those marked
// "not checked", which need data the library does not hold.
enum ENrvGs1Check : uint8_t {
    kNrvGs1CheckNone = 0,
    kNrvGs1Csum,            // csum: GS1 mod-10 check digit, the component's last digit
    kNrvGs1CsumAlpha,       // csumalpha: two check characters at the end (mod 1021, prime weights)
    kNrvGs1GcpPos1,         // gcppos1: a GS1 Company Prefix from the first character (not checked)
    kNrvGs1GcpPos2,         // gcppos2: a GS1 Company Prefix from the second character (not checked)
    kNrvGs1Yymmd0,          // yymmd0: a date YYMMDD, day 00 allowed
    kNrvGs1Yymmdd,          // yymmdd: a date YYMMDD
    kNrvGs1Yyyymmdd,        // yyyymmdd: a date YYYYMMDD
    kNrvGs1Hhmi,            // hhmi: a time HHMM
    kNrvGs1Hh,              // hh: an hour, 00 to 23
    kNrvGs1Mi,              // mi: a minute, 00 to 59
    kNrvGs1Ss,              // ss: a second, 00 to 59
    kNrvGs1NonZero,         // nonzero: not all zeros
    kNrvGs1Zero,            // zero: the digit 0
    kNrvGs1Iso3166,         // iso3166: an ISO 3166-1 numeric country code
    kNrvGs1Iso3166999,      // iso3166999: the same, or 999
    kNrvGs1Iso3166Alpha2,   // iso3166alpha2: an ISO 3166-1 two-letter country code
    kNrvGs1Iso4217,         // iso4217: an ISO 4217 numeric currency code
    kNrvGs1Iso5218,         // iso5218: a sex code of ISO 5218 (0, 1, 2 or 9)
    kNrvGs1PcEnc,           // pcenc: every '%' starts a %XX escape
    kNrvGs1YesNo,           // yesno: 0 or 1
    kNrvGs1Latitude,        // latitude: 0 to 1800000000 (degrees + 90, times 10^7)
    kNrvGs1Longitude,       // longitude: 0 to 3600000000 (degrees + 180, times 10^7)
    kNrvGs1Hyphen,          // hyphen: the character '-'
    kNrvGs1ImporterIdx,     // importeridx: one of 0-9 A-Z a-z '-' '_'
    kNrvGs1PackageType,     // packagetype: a UN/ECE package type code (not checked)
    kNrvGs1MediaType,       // mediatype: a GS1 AIDC media type code (not checked)
    kNrvGs1PosInSeqSlash,   // posinseqslash: N/M with 1 <= N <= M
    kNrvGs1Winding,         // winding: 0, 1 or 9
    kNrvGs1PieceOfTotal,    // pieceoftotal: NNMM with 1 <= NN <= MM
    kNrvGs1Iban,            // iban: an IBAN (letters, digits, mod-97 check)
    kNrvGs1NoZeroPrefix,    // nozeroprefix: no leading zero unless the whole value is 0
    kNrvGs1HasNonDigit,     // hasnondigit: at least one character that is not a digit
    kNrvGs1CouponCode,      // couponcode: a North American coupon code (not checked)
    kNrvGs1CouponPosOffer,  // couponposoffer: a positive offer file coupon (not checked)
    kNrvGs1CheckCount
};

// The check's name in the dictionary ("csum", "yymmd0", ...); null for
// kNrvGs1CheckNone and anything out of range.
const char* NrvGs1CheckName(ENrvGs1Check check);

// An entry's flags.
enum : uint8_t {
    kNrvGs1Predefined = 1,   // predefined length: no separator needed after it
    kNrvGs1DigitalLink = 2,  // allowed as a GS1 Digital Link data attribute
};

constexpr size_t kNrvGs1MaxComponents = 5;
constexpr size_t kNrvGs1MaxChecks = 3;

// One component of an AI's data. Only the last may vary in length; none that
// is mandatory follows an optional one.
struct TNrvGs1Component {
    char cSet;        // 'N' digits, 'X' GS1's 82 characters, 'Y' its 39, 'Z' base64url;
                      // 0 marks the end of the entry's components
    uint8_t nMin;     // length bounds in characters; equal for a fixed length
    uint8_t nMax;
    bool bOptional;   // may be left out once the data is used up
    ENrvGs1Check aChecks[kNrvGs1MaxChecks];  // in the dictionary's order, then kNrvGs1CheckNone
};

// One AI, or a range of AIs that share everything (3100 to 3105).
struct TNrvGs1Entry {
    char szFirst[5];  // the AI's digits; the range's first AI
    char szLast[5];   // the range's last AI; empty for a single AI
    uint8_t nFlags;   // kNrvGs1Predefined, kNrvGs1DigitalLink
    TNrvGs1Component aComponents[kNrvGs1MaxComponents];
    const char* pszTitle;  // the dictionary's title (UTF-8); empty where it has none
};

// The whole table in AI order, and its number of entries.
const TNrvGs1Entry* NrvGs1Table(size_t* pnCount);

// How many digits the AIs that start with these two bytes have (GS1 fixes it
// by the first two digits): 2, 3 or 4, or 0 when no AI starts with them.
size_t NrvGs1AiLength(char cFirst, char cSecond);

// The entry of the AI written in pAi[0..nLength) as digits ("01", "3103"),
// or null when no such AI exists. A few comparisons, no allocation.
const TNrvGs1Entry* NrvGs1LookupAi(const char* pAi, size_t nLength);

// One element string of a message. Offsets count from the start of the text
// given to the reader, symbology identifier included.
struct TNrvGs1Element {
    const TNrvGs1Entry* pEntry;  // its AI's entry: title, components, flags
    size_t nAiOffset;            // the AI's digits
    size_t nAiLength;            // 2 to 4
    size_t nDataOffset;          // its data, right after the AI, without the
    size_t nDataLength;          // separator that may end it
};

constexpr size_t kNrvGs1MessageSize = 128;

// Why a text is not a valid GS1 message: the culprit's bytes and one sentence
// ("AI (17): month 13 is not a month"). The culprit is the byte or digits at
// fault, the data of an element whose length is wrong (the AI when it has no
// data), the AI of an unknown AI, or the identifier; a text that holds no
// element string gives the length 0 at the offset where one should start.
struct TNrvGs1Fault {
    size_t nOffset;
    size_t nLength;
    char szMessage[kNrvGs1MessageSize];
};

// Reads a message one element string at a time, checking each as it goes:
//
//     CNrvGs1Reader reader(pText, nLength);
//     TNrvGs1Element element;
//     while (reader.Next(&element)) { ... }
//     if (reader.Failed()) { ... reader.GetFault() ... }
//
// The elements given before a fault were valid, but the message is not: a
// caller that needs a valid message reads to the end before using them.
//
// Cost: one pass. Each byte of an element is looked at by the search for the
// separator, the character set and at most three checks of its component;
// each element adds its AI's look-up (at most 4 digits read, then 5 steps of
// a binary search over at most 31 rows, 4 bytes compared in each, and the 2
// bounds compared: 32 looks) and an element is at least 3 bytes long, so a
// byte costs at most 5 + 32 / 3 < 16 looks. NrvGs1ReadWork(nLength) is that
// bound in the units of the profile's work budget (bytes examined).
class CNrvGs1Reader {
public:
    CNrvGs1Reader(const char* pText, size_t nLength);

    // True with the next element in *pElement; false at the end of the text
    // or at the first fault (then Failed() is true), and on every call after.
    bool Next(TNrvGs1Element* pElement);
    bool Failed() const { return m_bFailed; }
    // Meaningful once Failed() is true.
    const TNrvGs1Fault& GetFault() const { return m_Fault; }

private:
    bool Start();
    bool ReadAi(const TNrvGs1Entry** ppEntry, size_t* pnDigits);
    bool ReadData(const TNrvGs1Entry* pEntry, size_t nAiOffset, size_t nAiLength, size_t* pnDataLength);
    bool Fail(size_t nOffset, size_t nLength, const char* pszFormat, ...) NRV_GS1_PRINTF(4, 5);

    const char* m_pText;
    size_t m_nLength;
    size_t m_nPos;
    bool m_bStarted;
    bool m_bFailed;
    TNrvGs1Fault m_Fault;
};

// What the reader costs, at most, over a text of nLength bytes.
constexpr size_t NrvGs1ReadWork(size_t nLength)
{
    return 16 * nLength + 16;
}

// True when the whole text is a valid GS1 message; otherwise false, with the
// first fault in *pFault when pFault is not null.
bool NrvGs1IsValid(const char* pText, size_t nLength, TNrvGs1Fault* pFault);

// Reads the whole text. False when it is not a valid GS1 message (*pFault
// says why, when pFault is not null). Otherwise true, with the first element
// whose AI is pAi[0..nAiLength) in *pFound, or pFound->pEntry null when there
// is none (and always when the text is not valid).
bool NrvGs1FindElement(const char* pText, size_t nLength, const char* pAi, size_t nAiLength,
                       TNrvGs1Element* pFound, TNrvGs1Fault* pFault);

// The most bytes NrvGs1WriteHumanReadable writes for a text of nLength bytes:
// two parentheses per element, and an element is at least three bytes.
constexpr size_t NrvGs1HumanReadableCapacity(size_t nLength)
{
    return nLength + 2 * (nLength / 3);
}

// Writes the message as people read it, "(01)09501101530003(17)141120(10)AB-123",
// into pOut, which holds NrvGs1HumanReadableCapacity(nLength) bytes; its
// length goes to *pnOutLength (no terminating zero). False when the text is
// not a valid GS1 message (*pFault says why, when pFault is not null; pOut
// then holds the elements before the fault).
bool NrvGs1WriteHumanReadable(const char* pText, size_t nLength, char* pOut, size_t* pnOutLength,
                              TNrvGs1Fault* pFault);

#endif  // NRV_GS1_H
