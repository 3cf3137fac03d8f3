// The content checks of GS1 element strings: character sets, check digits
// and characters, dates and times, country and currency codes, and the
// smaller rules the AI table attaches to components.

#include "NrvGs1Checks.h"

#include <array>
#include <cstdarg>
#include <cstdint>
#include <cstdio>

#include "NrvEscapes.h"

namespace {

// GS1's 82 characters (printable ASCII without the space and # $ @ [ \ ] ^ `
// { | } ~) in the order that gives each its value for the check character
// pair, and the 32 characters the pair is written with.
constexpr char kSet82[] = "!\"%&'()*+,-./0123456789:;<=>?ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz";
constexpr char kSet32[] = "23456789ABCDEFGHJKLMNPQRSTUVWXYZ";
static_assert(sizeof kSet82 == 82 + 1 && sizeof kSet32 == 32 + 1, "the two sets");

// Character sets by bit: N digits; X the 82; Y GS1's 39 (# - / 0-9 A-Z);
// Z base64url (0-9 A-Z a-z - _).
constexpr uint8_t kSetN = 1, kSetX = 2, kSetY = 4, kSetZ = 8;

constexpr std::array<uint8_t, 256> MakeSets()
{
    std::array<uint8_t, 256> sets{};
    for (size_t i = 0; kSet82[i] != '\0'; ++i)
        sets[static_cast<unsigned char>(kSet82[i])] = kSetX;
    for (int c = '0'; c <= '9'; ++c)
        sets[c] |= kSetN | kSetY | kSetZ;
    for (int c = 'A'; c <= 'Z'; ++c)
        sets[c] |= kSetY | kSetZ;
    for (int c = 'a'; c <= 'z'; ++c)
        sets[c] |= kSetZ;
    sets['#'] |= kSetY;
    sets['-'] |= kSetY | kSetZ;
    sets['/'] |= kSetY;
    sets['_'] |= kSetZ;
    return sets;
}
constexpr std::array<uint8_t, 256> kSets = MakeSets();

uint8_t SetBit(char cSet)
{
    switch (cSet) {
    case 'N': return kSetN;
    case 'X': return kSetX;
    case 'Y': return kSetY;
    default: return kSetZ;
    }
}

// ISO 3166-1 countries (two-letter code and number), as Debian's iso-codes
// 4.15 lists them.
struct TCountry {
    char szAlpha2[3];
    uint16_t nNumber;
};
constexpr TCountry kCountries[] = {
    {"AD", 20}, {"AE", 784}, {"AF", 4}, {"AG", 28}, {"AI", 660}, {"AL", 8}, {"AM", 51}, {"AO", 24},
    {"AQ", 10}, {"AR", 32}, {"AS", 16}, {"AT", 40}, {"AU", 36}, {"AW", 533}, {"AX", 248}, {"AZ", 31},
    {"BA", 70}, {"BB", 52}, {"BD", 50}, {"BE", 56}, {"BF", 854}, {"BG", 100}, {"BH", 48}, {"BI", 108},
    {"BJ", 204}, {"BL", 652}, {"BM", 60}, {"BN", 96}, {"BO", 68}, {"BQ", 535}, {"BR", 76}, {"BS", 44},
    {"BT", 64}, {"BV", 74}, {"BW", 72}, {"BY", 112}, {"BZ", 84}, {"CA", 124}, {"CC", 166}, {"CD", 180},
    {"CF", 140}, {"CG", 178}, {"CH", 756}, {"CI", 384}, {"CK", 184}, {"CL", 152}, {"CM", 120}, {"CN", 156},
    {"CO", 170}, {"CR", 188}, {"CU", 192}, {"CV", 132}, {"CW", 531}, {"CX", 162}, {"CY", 196}, {"CZ", 203},
    {"DE", 276}, {"DJ", 262}, {"DK", 208}, {"DM", 212}, {"DO", 214}, {"DZ", 12}, {"EC", 218}, {"EE", 233},
    {"EG", 818}, {"EH", 732}, {"ER", 232}, {"ES", 724}, {"ET", 231}, {"FI", 246}, {"FJ", 242}, {"FK", 238},
    {"FM", 583}, {"FO", 234}, {"FR", 250}, {"GA", 266}, {"GB", 826}, {"GD", 308}, {"GE", 268}, {"GF", 254},
    {"GG", 831}, {"GH", 288}, {"GI", 292}, {"GL", 304}, {"GM", 270}, {"GN", 324}, {"GP", 312}, {"GQ", 226},
    {"GR", 300}, {"GS", 239}, {"GT", 320}, {"GU", 316}, {"GW", 624}, {"GY", 328}, {"HK", 344}, {"HM", 334},
    {"HN", 340}, {"HR", 191}, {"HT", 332}, {"HU", 348}, {"ID", 360}, {"IE", 372}, {"IL", 376}, {"IM", 833},
    {"IN", 356}, {"IO", 86}, {"IQ", 368}, {"IR", 364}, {"IS", 352}, {"IT", 380}, {"JE", 832}, {"JM", 388},
    {"JO", 400}, {"JP", 392}, {"KE", 404}, {"KG", 417}, {"KH", 116}, {"KI", 296}, {"KM", 174}, {"KN", 659},
    {"KP", 408}, {"KR", 410}, {"KW", 414}, {"KY", 136}, {"KZ", 398}, {"LA", 418}, {"LB", 422}, {"LC", 662},
    {"LI", 438}, {"LK", 144}, {"LR", 430}, {"LS", 426}, {"LT", 440}, {"LU", 442}, {"LV", 428}, {"LY", 434},
    {"MA", 504}, {"MC", 492}, {"MD", 498}, {"ME", 499}, {"MF", 663}, {"MG", 450}, {"MH", 584}, {"MK", 807},
    {"ML", 466}, {"MM", 104}, {"MN", 496}, {"MO", 446}, {"MP", 580}, {"MQ", 474}, {"MR", 478}, {"MS", 500},
    {"MT", 470}, {"MU", 480}, {"MV", 462}, {"MW", 454}, {"MX", 484}, {"MY", 458}, {"MZ", 508}, {"NA", 516},
    {"NC", 540}, {"NE", 562}, {"NF", 574}, {"NG", 566}, {"NI", 558}, {"NL", 528}, {"NO", 578}, {"NP", 524},
    {"NR", 520}, {"NU", 570}, {"NZ", 554}, {"OM", 512}, {"PA", 591}, {"PE", 604}, {"PF", 258}, {"PG", 598},
    {"PH", 608}, {"PK", 586}, {"PL", 616}, {"PM", 666}, {"PN", 612}, {"PR", 630}, {"PS", 275}, {"PT", 620},
    {"PW", 585}, {"PY", 600}, {"QA", 634}, {"RE", 638}, {"RO", 642}, {"RS", 688}, {"RU", 643}, {"RW", 646},
    {"SA", 682}, {"SB", 90}, {"SC", 690}, {"SD", 729}, {"SE", 752}, {"SG", 702}, {"SH", 654}, {"SI", 705},
    {"SJ", 744}, {"SK", 703}, {"SL", 694}, {"SM", 674}, {"SN", 686}, {"SO", 706}, {"SR", 740}, {"SS", 728},
    {"ST", 678}, {"SV", 222}, {"SX", 534}, {"SY", 760}, {"SZ", 748}, {"TC", 796}, {"TD", 148}, {"TF", 260},
    {"TG", 768}, {"TH", 764}, {"TJ", 762}, {"TK", 772}, {"TL", 626}, {"TM", 795}, {"TN", 788}, {"TO", 776},
    {"TR", 792}, {"TT", 780}, {"TV", 798}, {"TW", 158}, {"TZ", 834}, {"UA", 804}, {"UG", 800}, {"UM", 581},
    {"US", 840}, {"UY", 858}, {"UZ", 860}, {"VA", 336}, {"VC", 670}, {"VE", 862}, {"VG", 92}, {"VI", 850},
    {"VN", 704}, {"VU", 548}, {"WF", 876}, {"WS", 882}, {"YE", 887}, {"YT", 175}, {"ZA", 710}, {"ZM", 894},
    {"ZW", 716},
};

// ISO 4217 currencies (code and number), as Debian's iso-codes 4.15 lists
// them, and ZWG (924), added in 2024. Withdrawn codes still listed there
// are accepted: old labels stay readable.
struct TCurrency {
    char szCode[4];
    uint16_t nNumber;
};
constexpr TCurrency kCurrencies[] = {
    {"AED", 784}, {"AFN", 971}, {"ALL", 8}, {"AMD", 51}, {"ANG", 532}, {"AOA", 973}, {"ARS", 32}, {"AUD", 36},
    {"AWG", 533}, {"AZN", 944}, {"BAM", 977}, {"BBD", 52}, {"BDT", 50}, {"BGN", 975}, {"BHD", 48}, {"BIF", 108},
    {"BMD", 60}, {"BND", 96}, {"BOB", 68}, {"BOV", 984}, {"BRL", 986}, {"BSD", 44}, {"BTN", 64}, {"BWP", 72},
    {"BYN", 933}, {"BZD", 84}, {"CAD", 124}, {"CDF", 976}, {"CHE", 947}, {"CHF", 756}, {"CHW", 948}, {"CLF", 990},
    {"CLP", 152}, {"CNY", 156}, {"COP", 170}, {"COU", 970}, {"CRC", 188}, {"CUC", 931}, {"CUP", 192}, {"CVE", 132},
    {"CZK", 203}, {"DJF", 262}, {"DKK", 208}, {"DOP", 214}, {"DZD", 12}, {"EGP", 818}, {"ERN", 232}, {"ETB", 230},
    {"EUR", 978}, {"FJD", 242}, {"FKP", 238}, {"GBP", 826}, {"GEL", 981}, {"GHS", 936}, {"GIP", 292}, {"GMD", 270},
    {"GNF", 324}, {"GTQ", 320}, {"GYD", 328}, {"HKD", 344}, {"HNL", 340}, {"HRK", 191}, {"HTG", 332}, {"HUF", 348},
    {"IDR", 360}, {"ILS", 376}, {"INR", 356}, {"IQD", 368}, {"IRR", 364}, {"ISK", 352}, {"JMD", 388}, {"JOD", 400},
    {"JPY", 392}, {"KES", 404}, {"KGS", 417}, {"KHR", 116}, {"KMF", 174}, {"KPW", 408}, {"KRW", 410}, {"KWD", 414},
    {"KYD", 136}, {"KZT", 398}, {"LAK", 418}, {"LBP", 422}, {"LKR", 144}, {"LRD", 430}, {"LSL", 426}, {"LYD", 434},
    {"MAD", 504}, {"MDL", 498}, {"MGA", 969}, {"MKD", 807}, {"MMK", 104}, {"MNT", 496}, {"MOP", 446}, {"MRU", 929},
    {"MUR", 480}, {"MVR", 462}, {"MWK", 454}, {"MXN", 484}, {"MXV", 979}, {"MYR", 458}, {"MZN", 943}, {"NAD", 516},
    {"NGN", 566}, {"NIO", 558}, {"NOK", 578}, {"NPR", 524}, {"NZD", 554}, {"OMR", 512}, {"PAB", 590}, {"PEN", 604},
    {"PGK", 598}, {"PHP", 608}, {"PKR", 586}, {"PLN", 985}, {"PYG", 600}, {"QAR", 634}, {"RON", 946}, {"RSD", 941},
    {"RUB", 643}, {"RWF", 646}, {"SAR", 682}, {"SBD", 90}, {"SCR", 690}, {"SDG", 938}, {"SEK", 752}, {"SGD", 702},
    {"SHP", 654}, {"SLE", 925}, {"SLL", 694}, {"SOS", 706}, {"SRD", 968}, {"SSP", 728}, {"STN", 930}, {"SVC", 222},
    {"SYP", 760}, {"SZL", 748}, {"THB", 764}, {"TJS", 972}, {"TMT", 934}, {"TND", 788}, {"TOP", 776}, {"TRY", 949},
    {"TTD", 780}, {"TWD", 901}, {"TZS", 834}, {"UAH", 980}, {"UGX", 800}, {"USD", 840}, {"USN", 997}, {"UYI", 940},
    {"UYU", 858}, {"UYW", 927}, {"UZS", 860}, {"VED", 926}, {"VES", 928}, {"VND", 704}, {"VUV", 548}, {"WST", 882},
    {"XAF", 950}, {"XAG", 961}, {"XAU", 959}, {"XBA", 955}, {"XBB", 956}, {"XBC", 957}, {"XBD", 958}, {"XCD", 951},
    {"XDR", 960}, {"XOF", 952}, {"XPD", 964}, {"XPF", 953}, {"XPT", 962}, {"XSU", 994}, {"XTS", 963}, {"XUA", 965},
    {"XXX", 999}, {"YER", 886}, {"ZAR", 710}, {"ZMW", 967}, {"ZWG", 924}, {"ZWL", 932},
};

// Membership of the numbers 0 to 999, and of the two-letter codes AA to ZZ.
using TNumberSet = std::array<uint8_t, 125>;
using TLetterPairSet = std::array<uint8_t, 85>;

constexpr TNumberSet MakeCountryNumbers()
{
    TNumberSet set{};
    for (const TCountry& country : kCountries)
        set[country.nNumber / 8] = static_cast<uint8_t>(set[country.nNumber / 8] | 1u << (country.nNumber % 8));
    return set;
}
constexpr TLetterPairSet MakeCountryLetters()
{
    TLetterPairSet set{};
    for (const TCountry& country : kCountries) {
        const unsigned n =
            static_cast<unsigned>(country.szAlpha2[0] - 'A') * 26 + static_cast<unsigned>(country.szAlpha2[1] - 'A');
        set[n / 8] = static_cast<uint8_t>(set[n / 8] | 1u << (n % 8));
    }
    return set;
}
constexpr TNumberSet MakeCurrencyNumbers()
{
    TNumberSet set{};
    for (const TCurrency& currency : kCurrencies)
        set[currency.nNumber / 8] = static_cast<uint8_t>(set[currency.nNumber / 8] | 1u << (currency.nNumber % 8));
    return set;
}
constexpr TNumberSet kCountryNumbers = MakeCountryNumbers();
constexpr TLetterPairSet kCountryLetters = MakeCountryLetters();
constexpr TNumberSet kCurrencyNumbers = MakeCurrencyNumbers();

template <size_t N>
bool Contains(const std::array<uint8_t, N>& set, unsigned n)
{
    return (set[n / 8] >> (n % 8) & 1u) != 0;
}

// The weights of the check character pair: the primes, the first for the
// last character before the pair.
constexpr std::array<uint16_t, 256> MakePrimes()
{
    std::array<uint16_t, 256> primes{};
    size_t nFound = 0;
    for (uint16_t n = 2; nFound < primes.size(); ++n) {
        bool bPrime = true;
        for (size_t i = 0; i < nFound && primes[i] * primes[i] <= n; ++i)
            bPrime = bPrime && n % primes[i] != 0;
        if (bPrime)
            primes[nFound++] = n;
    }
    return primes;
}
constexpr std::array<uint16_t, 256> kPrimes = MakePrimes();

constexpr std::array<uint8_t, 256> MakeSet82Values()
{
    std::array<uint8_t, 256> values{};
    for (size_t i = 0; kSet82[i] != '\0'; ++i)
        values[static_cast<unsigned char>(kSet82[i])] = static_cast<uint8_t>(i);
    return values;
}
constexpr std::array<uint8_t, 256> kSet82Values = MakeSet82Values();

const char* const kMonthNames[] = {"January", "February", "March",     "April",   "May",      "June",
                                   "July",    "August",   "September", "October", "November", "December"};

bool Fail(TNrvGs1Fault* pFault, size_t nOffset, size_t nLength, const char* pszFormat, ...) NRV_GS1_PRINTF(4, 5);

bool Fail(TNrvGs1Fault* pFault, size_t nOffset, size_t nLength, const char* pszFormat, ...)
{
    pFault->nOffset = nOffset;
    pFault->nLength = nLength;
    va_list args;
    va_start(args, pszFormat);
    std::vsnprintf(pFault->szMessage, sizeof pFault->szMessage, pszFormat, args);
    va_end(args);
    return false;
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool IsUpper(char c)
{
    return c >= 'A' && c <= 'Z';
}

// The value of n digits, n at most 19.
uint64_t Number(const char* p, size_t n)
{
    uint64_t nValue = 0;
    for (size_t i = 0; i < n; ++i)
        nValue = nValue * 10 + static_cast<uint64_t>(p[i] - '0');
    return nValue;
}

bool CheckDigit(const char* p, size_t n, TNrvGs1Fault* pFault)
{
    // Weights 3 and 1 in turn, 3 for the digit next to the check digit.
    unsigned nSum = 0;
    for (size_t i = 0; i + 1 < n; ++i)
        nSum += static_cast<unsigned>(p[i] - '0') * ((n - 2 - i) % 2 == 0 ? 3 : 1);
    const unsigned nExpected = (10 - nSum % 10) % 10;
    if (static_cast<unsigned>(p[n - 1] - '0') != nExpected)
        return Fail(pFault, n - 1, 1, "check digit %c, expected %u", p[n - 1], nExpected);
    return true;
}

bool CheckCharacterPair(const char* p, size_t n, TNrvGs1Fault* pFault)
{
    if (n < 2)
        return Fail(pFault, 0, n, "too short for its two check characters");
    unsigned nSum = 0;
    for (size_t i = 0; i + 2 < n; ++i)
        nSum += kSet82Values[static_cast<unsigned char>(p[i])] * kPrimes[n - 3 - i];
    nSum %= 1021;
    const char cFirst = kSet32[nSum / 32];
    const char cSecond = kSet32[nSum % 32];
    if (p[n - 2] != cFirst || p[n - 1] != cSecond)
        return Fail(pFault, n - 2, 2, "check characters %c%c, expected %c%c", p[n - 2], p[n - 1], cFirst, cSecond);
    return true;
}

// Years of two digits are taken as 2000 to 2099 for February. GS1 places
// them from 49 years back to 50 ahead of the present; the century years that
// differ, 1900 and 2100, stay outside that window until 2050.
bool LeapYear(unsigned nYear, size_t nYearDigits)
{
    if (nYearDigits == 2)
        return nYear % 4 == 0;
    return (nYear % 4 == 0 && nYear % 100 != 0) || nYear % 400 == 0;
}

bool CheckDate(const char* p, size_t nYearDigits, bool bDayZero, TNrvGs1Fault* pFault)
{
    const unsigned nYear = static_cast<unsigned>(Number(p, nYearDigits));
    const unsigned nMonth = static_cast<unsigned>(Number(p + nYearDigits, 2));
    const unsigned nDay = static_cast<unsigned>(Number(p + nYearDigits + 2, 2));
    if (nMonth < 1 || nMonth > 12)
        return Fail(pFault, nYearDigits, 2, "month %02u is not a month", nMonth);
    if (nDay == 0) {
        if (bDayZero)
            return true;
        return Fail(pFault, nYearDigits + 2, 2, "day 00 is not a day");
    }
    static const unsigned char kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const unsigned nDays = kDays[nMonth - 1] + (nMonth == 2 && LeapYear(nYear, nYearDigits) ? 1 : 0);
    if (nDay <= nDays)
        return true;
    if (nMonth == 2)
        return Fail(pFault, nYearDigits + 2, 2, "February has no day %02u in year %0*u", nDay,
                    static_cast<int>(nYearDigits), nYear);
    return Fail(pFault, nYearDigits + 2, 2, "%s has no day %02u", kMonthNames[nMonth - 1], nDay);
}

// Two digits at p[nOffset] that must not pass nMaximum ("hour", "an hour").
bool CheckAtMost(const char* p, size_t nOffset, unsigned nMaximum, const char* pszName, const char* pszWhat,
                 TNrvGs1Fault* pFault)
{
    const unsigned nValue = static_cast<unsigned>(Number(p + nOffset, 2));
    if (nValue > nMaximum)
        return Fail(pFault, nOffset, 2, "%s %02u is not %s", pszName, nValue, pszWhat);
    return true;
}

bool CheckPercentEscapes(const char* p, size_t n, TNrvGs1Fault* pFault)
{
    for (size_t i = 0; i < n; ++i) {
        if (p[i] != '%')
            continue;
        if (n - i < 3 || NrvHexDigitValue(p[i + 1]) < 0 || NrvHexDigitValue(p[i + 2]) < 0)
            return Fail(pFault, i, n - i < 3 ? n - i : 3, "'%%' is not followed by two hexadecimal digits");
        i += 2;
    }
    return true;
}

bool CheckIban(const char* p, size_t n, TNrvGs1Fault* pFault)
{
    // Two capital letters (the country), two digits, and at least one more.
    bool bShape = n >= 5;
    for (size_t i = 0; bShape && i < 4; ++i)
        bShape = i < 2 ? IsUpper(p[i]) : IsDigit(p[i]);
    if (!bShape)
        return Fail(pFault, 0, n < 4 ? n : 4, "an IBAN starts with two capital letters and two digits");
    // The country and check digits moved to the end, letters read as 10 to
    // 35: the number is 1 modulo 97.
    unsigned nRemainder = 0;
    for (size_t k = 0; k < n; ++k) {
        const size_t i = (k + 4) % n;
        const char c = p[i];
        if (IsDigit(c)) {
            nRemainder = (nRemainder * 10 + static_cast<unsigned>(c - '0')) % 97;
        } else if (IsUpper(c)) {
            nRemainder = (nRemainder * 100 + static_cast<unsigned>(c - 'A' + 10)) % 97;
        } else {
            char szByte[16];
            NrvGs1DescribeByte(static_cast<unsigned char>(c), szByte, sizeof szByte);
            return Fail(pFault, i, 1, "%s is not a capital letter or a digit, as an IBAN needs", szByte);
        }
    }
    if (nRemainder != 1)
        return Fail(pFault, 2, 2, "IBAN check digits %c%c do not match the IBAN", p[2], p[3]);
    return true;
}

// N/M in three characters, 1 <= N <= M.
bool CheckPositionInSequence(const char* p, TNrvGs1Fault* pFault)
{
    if (!IsDigit(p[0]) || p[1] != '/' || !IsDigit(p[2]) || p[0] == '0' || p[0] > p[2])
        return Fail(pFault, 0, 3, "%.3s is not a position in a sequence, N/M with 1 <= N <= M", p);
    return true;
}

bool CheckPieceOfTotal(const char* p, size_t n, TNrvGs1Fault* pFault)
{
    const uint64_t nPiece = Number(p, n / 2);
    const uint64_t nTotal = Number(p + n / 2, n - n / 2);
    if (nPiece < 1 || nPiece > nTotal)
        return Fail(pFault, 0, n, "piece %.*s of %.*s does not exist", static_cast<int>(n / 2), p,
                    static_cast<int>(n - n / 2), p + n / 2);
    return true;
}

// One character out of pszAllowed. A digit shows as itself, anything else
// in quotes.
bool CheckOneOf(const char* p, const char* pszAllowed, const char* pszWhat, TNrvGs1Fault* pFault)
{
    for (const char* pc = pszAllowed; *pc != '\0'; ++pc)
        if (*pc == p[0])
            return true;
    char szShown[16] = {p[0], '\0'};
    if (!IsDigit(p[0]))
        NrvGs1DescribeByte(static_cast<unsigned char>(p[0]), szShown, sizeof szShown);
    return Fail(pFault, 0, 1, "%s is not %s", szShown, pszWhat);
}

}  // namespace

void NrvGs1DescribeByte(unsigned char c, char* pszOut, size_t nSize)
{
    if (c > 0x20 && c < 0x7F)
        std::snprintf(pszOut, nSize, "'%c'", c);
    else
        std::snprintf(pszOut, nSize, "byte 0x%02X", c);
}

bool NrvGs1CheckCharacters(char cSet, const char* pData, size_t nLength, TNrvGs1Fault* pFault)
{
    // base64url may end in one or two '=' of padding.
    size_t nEnd = nLength;
    if (cSet == 'Z')
        while (nEnd > 1 && nLength - nEnd < 2 && pData[nEnd - 1] == '=')
            --nEnd;
    const uint8_t nBit = SetBit(cSet);
    for (size_t i = 0; i < nEnd; ++i) {
        const unsigned char c = static_cast<unsigned char>(pData[i]);
        if ((kSets[c] & nBit) != 0)
            continue;
        char szByte[16];
        NrvGs1DescribeByte(c, szByte, sizeof szByte);
        switch (cSet) {
        case 'N': return Fail(pFault, i, 1, "%s is not a digit", szByte);
        case 'X': return Fail(pFault, i, 1, "%s is not one of GS1's 82 characters", szByte);
        case 'Y': return Fail(pFault, i, 1, "%s is not one of GS1's 39 characters", szByte);
        default:
            if (c == '=')
                return Fail(pFault, i, 1, "'=' pads only the end, at most twice");
            return Fail(pFault, i, 1, "%s is not a base64url character", szByte);
        }
    }
    return true;
}

bool NrvGs1RunCheck(ENrvGs1Check check, const char* p, size_t n, TNrvGs1Fault* pFault)
{
    switch (check) {
    case kNrvGs1Csum: return CheckDigit(p, n, pFault);
    case kNrvGs1CsumAlpha: return CheckCharacterPair(p, n, pFault);
    case kNrvGs1Yymmd0: return CheckDate(p, 2, true, pFault);
    case kNrvGs1Yymmdd: return CheckDate(p, 2, false, pFault);
    case kNrvGs1Yyyymmdd: return CheckDate(p, 4, false, pFault);
    case kNrvGs1Hhmi:
        return CheckAtMost(p, 0, 23, "hour", "an hour", pFault) && CheckAtMost(p, 2, 59, "minute", "a minute", pFault);
    case kNrvGs1Hh: return CheckAtMost(p, 0, 23, "hour", "an hour", pFault);
    case kNrvGs1Mi: return CheckAtMost(p, 0, 59, "minute", "a minute", pFault);
    case kNrvGs1Ss: return CheckAtMost(p, 0, 59, "second", "a second", pFault);
    case kNrvGs1NonZero:
        for (size_t i = 0; i < n; ++i)
            if (p[i] != '0')
                return true;
        return Fail(pFault, 0, n, "%.*s must not be zero", static_cast<int>(n), p);
    case kNrvGs1Zero: return CheckOneOf(p, "0", "0, the only digit allowed here", pFault);
    case kNrvGs1Iso3166:
    case kNrvGs1Iso3166999: {
        const unsigned nNumber = static_cast<unsigned>(Number(p, 3));
        if (Contains(kCountryNumbers, nNumber) || (check == kNrvGs1Iso3166999 && nNumber == 999))
            return true;
        return Fail(pFault, 0, 3, "%.3s is not a country number of ISO 3166", p);
    }
    case kNrvGs1Iso3166Alpha2:
        if (IsUpper(p[0]) && IsUpper(p[1]) &&
            Contains(kCountryLetters, static_cast<unsigned>(p[0] - 'A') * 26 + static_cast<unsigned>(p[1] - 'A')))
            return true;
        return Fail(pFault, 0, 2, "%.2s is not a country code of ISO 3166", p);
    case kNrvGs1Iso4217:
        if (Contains(kCurrencyNumbers, static_cast<unsigned>(Number(p, 3))))
            return true;
        return Fail(pFault, 0, 3, "%.3s is not a currency number of ISO 4217", p);
    case kNrvGs1Iso5218: return CheckOneOf(p, "0129", "a sex code of ISO 5218 (0, 1, 2 or 9)", pFault);
    case kNrvGs1PcEnc: return CheckPercentEscapes(p, n, pFault);
    case kNrvGs1YesNo: return CheckOneOf(p, "01", "0 (no) or 1 (yes)", pFault);
    case kNrvGs1Latitude:
        if (Number(p, 10) <= 1800000000u)
            return true;
        return Fail(pFault, 0, 10, "latitude %.10s is past 1800000000 (90 degrees north)", p);
    case kNrvGs1Longitude:
        if (Number(p, 10) <= 3600000000u)
            return true;
        return Fail(pFault, 0, 10, "longitude %.10s is past 3600000000 (180 degrees east)", p);
    case kNrvGs1Hyphen: return CheckOneOf(p, "-", "'-', the only character allowed here", pFault);
    case kNrvGs1ImporterIdx:
        return CheckOneOf(p, "-0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz",
                          "an importer index (0-9, A-Z, a-z, '-' or '_')", pFault);
    case kNrvGs1PosInSeqSlash: return CheckPositionInSequence(p, pFault);
    case kNrvGs1Winding: return CheckOneOf(p, "019", "a winding direction (0, 1 or 9)", pFault);
    case kNrvGs1PieceOfTotal: return CheckPieceOfTotal(p, n, pFault);
    case kNrvGs1Iban: return CheckIban(p, n, pFault);
    case kNrvGs1NoZeroPrefix:
        if (n > 1 && p[0] == '0')
            return Fail(pFault, 0, 1, "a leading zero is not allowed");
        return true;
    case kNrvGs1HasNonDigit:
        for (size_t i = 0; i < n; ++i)
            if (!IsDigit(p[i]))
                return true;
        return Fail(pFault, 0, n, "digits only, where at least one other character is needed");
    default:
        // gcppos1 and gcppos2 need GS1's company prefixes; packagetype,
        // mediatype and the coupon checks need code lists and formats that
        // the library does not hold.
        return true;
    }
}
