// The table of GS1 Application Identifiers, written from GS1's syntax
// dictionary (gs1-syntax-dictionary.txt, Apache License 2.0): one row per AI
// or range of AIs, in AI order, with the dictionary's flags, components,
// checks and title. A test reads the dictionary, when it is at hand, and
// compares it with this table row for row; the checks below (static_assert)
// hold the table to the rules the look-up and the reader rely on.

#include "NrvGs1.h"

#include <array>
#include <cstring>

namespace {

constexpr uint8_t kPredefined = kNrvGs1Predefined;
constexpr uint8_t kDigitalLink = kNrvGs1DigitalLink;
constexpr ENrvGs1Check kNone = kNrvGs1CheckNone;

constexpr TNrvGs1Component Component(char cSet, uint8_t nMin, uint8_t nMax, ENrvGs1Check a, ENrvGs1Check b,
                                     ENrvGs1Check c)
{
    return {cSet, nMin, nMax, false, {a, b, c}};
}

// The dictionary's N6 and N..6 (one to six digits), and so for X, Y and Z.
constexpr TNrvGs1Component N(uint8_t n, ENrvGs1Check a = kNone, ENrvGs1Check b = kNone, ENrvGs1Check c = kNone)
{
    return Component('N', n, n, a, b, c);
}
constexpr TNrvGs1Component NUpTo(uint8_t n, ENrvGs1Check a = kNone, ENrvGs1Check b = kNone, ENrvGs1Check c = kNone)
{
    return Component('N', 1, n, a, b, c);
}
constexpr TNrvGs1Component X(uint8_t n, ENrvGs1Check a = kNone, ENrvGs1Check b = kNone, ENrvGs1Check c = kNone)
{
    return Component('X', n, n, a, b, c);
}
constexpr TNrvGs1Component XUpTo(uint8_t n, ENrvGs1Check a = kNone, ENrvGs1Check b = kNone, ENrvGs1Check c = kNone)
{
    return Component('X', 1, n, a, b, c);
}
constexpr TNrvGs1Component YUpTo(uint8_t n, ENrvGs1Check a = kNone, ENrvGs1Check b = kNone, ENrvGs1Check c = kNone)
{
    return Component('Y', 1, n, a, b, c);
}
constexpr TNrvGs1Component ZUpTo(uint8_t n, ENrvGs1Check a = kNone, ENrvGs1Check b = kNone, ENrvGs1Check c = kNone)
{
    return Component('Z', 1, n, a, b, c);
}
// The dictionary's [N6]: left out when the data ends before it.
constexpr TNrvGs1Component Opt(TNrvGs1Component component)
{
    component.bOptional = true;
    return component;
}

constexpr TNrvGs1Entry kTable[] = {
    {"00", "", kPredefined | kDigitalLink, {N(18, kNrvGs1Csum, kNrvGs1GcpPos2)}, "SSCC"},
    {"01", "", kPredefined | kDigitalLink, {N(14, kNrvGs1Csum, kNrvGs1GcpPos2)}, "GTIN"},
    {"02", "", kPredefined | kDigitalLink, {N(14, kNrvGs1Csum, kNrvGs1GcpPos2)}, "CONTENT"},
    {"03", "", kPredefined, {N(14, kNrvGs1Csum, kNrvGs1GcpPos2)}, "MTO GTIN"},
    {"10", "", kDigitalLink, {XUpTo(20)}, "BATCH/LOT"},
    {"11", "", kPredefined | kDigitalLink, {N(6, kNrvGs1Yymmd0)}, "PROD DATE"},
    {"12", "", kPredefined | kDigitalLink, {N(6, kNrvGs1Yymmd0)}, "DUE DATE"},
    {"13", "", kPredefined | kDigitalLink, {N(6, kNrvGs1Yymmd0)}, "PACK DATE"},
    {"15", "", kPredefined | kDigitalLink, {N(6, kNrvGs1Yymmd0)}, "BEST BEFORE or BEST BY"},
    {"16", "", kPredefined | kDigitalLink, {N(6, kNrvGs1Yymmd0)}, "SELL BY"},
    {"17", "", kPredefined | kDigitalLink, {N(6, kNrvGs1Yymmd0)}, "USE BY or EXPIRY"},
    {"20", "", kPredefined | kDigitalLink, {N(2)}, "VARIANT"},
    {"21", "", 0, {XUpTo(20)}, "SERIAL"},
    {"22", "", 0, {XUpTo(20)}, "CPV"},
    {"235", "", 0, {XUpTo(28)}, "TPX"},
    {"240", "", kDigitalLink, {XUpTo(30)}, "ADDITIONAL ID"},
    {"241", "", kDigitalLink, {XUpTo(30)}, "CUST. PART No."},
    {"242", "", kDigitalLink, {NUpTo(6)}, "MTO VARIANT"},
    {"243", "", kDigitalLink, {XUpTo(20)}, "PCN"},
    {"250", "", kDigitalLink, {XUpTo(30)}, "SECONDARY SERIAL"},
    {"251", "", kDigitalLink, {XUpTo(30)}, "REF. TO SOURCE"},
    {"253", "", kDigitalLink, {N(13, kNrvGs1Csum, kNrvGs1GcpPos1), Opt(XUpTo(17))}, "GDTI"},
    {"254", "", 0, {XUpTo(20)}, "GLN EXTENSION COMPONENT"},
    {"255", "", kDigitalLink, {N(13, kNrvGs1Csum, kNrvGs1GcpPos1), Opt(NUpTo(12))}, "GCN"},
    {"30", "", kDigitalLink, {NUpTo(8)}, "VAR. COUNT"},
    {"3100", "3105", kPredefined | kDigitalLink, {N(6)}, "NET WEIGHT (kg)"},
    {"3110", "3115", kPredefined | kDigitalLink, {N(6)}, "LENGTH (m)"},
    {"3120", "3125", kPredefined | kDigitalLink, {N(6)}, "WIDTH (m)"},
    {"3130", "3135", kPredefined | kDigitalLink, {N(6)}, "HEIGHT (m)"},
    {"3140", "3145", kPredefined | kDigitalLink, {N(6)}, "AREA (m²)"},
    {"3150", "3155", kPredefined | kDigitalLink, {N(6)}, "NET VOLUME (l)"},
    {"3160", "3165", kPredefined | kDigitalLink, {N(6)}, "NET VOLUME (m³)"},
    {"3200", "3205", kPredefined | kDigitalLink, {N(6)}, "NET WEIGHT (lb)"},
    {"3210", "3215", kPredefined | kDigitalLink, {N(6)}, "LENGTH (in)"},
    {"3220", "3225", kPredefined | kDigitalLink, {N(6)}, "LENGTH (ft)"},
    {"3230", "3235", kPredefined | kDigitalLink, {N(6)}, "LENGTH (yd)"},
    {"3240", "3245", kPredefined | kDigitalLink, {N(6)}, "WIDTH (in)"},
    {"3250", "3255", kPredefined | kDigitalLink, {N(6)}, "WIDTH (ft)"},
    {"3260", "3265", kPredefined | kDigitalLink, {N(6)}, "WIDTH (yd)"},
    {"3270", "3275", kPredefined | kDigitalLink, {N(6)}, "HEIGHT (in)"},
    {"3280", "3285", kPredefined | kDigitalLink, {N(6)}, "HEIGHT (ft)"},
    {"3290", "3295", kPredefined | kDigitalLink, {N(6)}, "HEIGHT (yd)"},
    {"3300", "3305", kPredefined | kDigitalLink, {N(6)}, "GROSS WEIGHT (kg)"},
    {"3310", "3315", kPredefined | kDigitalLink, {N(6)}, "LENGTH (m), log"},
    {"3320", "3325", kPredefined | kDigitalLink, {N(6)}, "WIDTH (m), log"},
    {"3330", "3335", kPredefined | kDigitalLink, {N(6)}, "HEIGHT (m), log"},
    {"3340", "3345", kPredefined | kDigitalLink, {N(6)}, "AREA (m²), log"},
    {"3350", "3355", kPredefined | kDigitalLink, {N(6)}, "VOLUME (l), log"},
    {"3360", "3365", kPredefined | kDigitalLink, {N(6)}, "VOLUME (m³), log"},
    {"3370", "3375", kPredefined | kDigitalLink, {N(6)}, "KG PER m²"},
    {"3400", "3405", kPredefined | kDigitalLink, {N(6)}, "GROSS WEIGHT (lb)"},
    {"3410", "3415", kPredefined | kDigitalLink, {N(6)}, "LENGTH (in), log"},
    {"3420", "3425", kPredefined | kDigitalLink, {N(6)}, "LENGTH (ft), log"},
    {"3430", "3435", kPredefined | kDigitalLink, {N(6)}, "LENGTH (yd), log"},
    {"3440", "3445", kPredefined | kDigitalLink, {N(6)}, "WIDTH (in), log"},
    {"3450", "3455", kPredefined | kDigitalLink, {N(6)}, "WIDTH (ft), log"},
    {"3460", "3465", kPredefined | kDigitalLink, {N(6)}, "WIDTH (yd), log"},
    {"3470", "3475", kPredefined | kDigitalLink, {N(6)}, "HEIGHT (in), log"},
    {"3480", "3485", kPredefined | kDigitalLink, {N(6)}, "HEIGHT (ft), log"},
    {"3490", "3495", kPredefined | kDigitalLink, {N(6)}, "HEIGHT (yd), log"},
    {"3500", "3505", kPredefined | kDigitalLink, {N(6)}, "AREA (in²)"},
    {"3510", "3515", kPredefined | kDigitalLink, {N(6)}, "AREA (ft²)"},
    {"3520", "3525", kPredefined | kDigitalLink, {N(6)}, "AREA (yd²)"},
    {"3530", "3535", kPredefined | kDigitalLink, {N(6)}, "AREA (in²), log"},
    {"3540", "3545", kPredefined | kDigitalLink, {N(6)}, "AREA (ft²), log"},
    {"3550", "3555", kPredefined | kDigitalLink, {N(6)}, "AREA (yd²), log"},
    {"3560", "3565", kPredefined | kDigitalLink, {N(6)}, "NET WEIGHT (tr oz)"},
    {"3570", "3575", kPredefined | kDigitalLink, {N(6)}, "NET VOLUME (oz)"},
    {"3600", "3605", kPredefined | kDigitalLink, {N(6)}, "NET VOLUME (qt (US))"},
    {"3610", "3615", kPredefined | kDigitalLink, {N(6)}, "NET VOLUME (gal.)"},
    {"3620", "3625", kPredefined | kDigitalLink, {N(6)}, "VOLUME (qt (US)), log"},
    {"3630", "3635", kPredefined | kDigitalLink, {N(6)}, "VOLUME (gal (US)), log"},
    {"3640", "3645", kPredefined | kDigitalLink, {N(6)}, "NET VOLUME (in³)"},
    {"3650", "3655", kPredefined | kDigitalLink, {N(6)}, "NET VOLUME (ft³)"},
    {"3660", "3665", kPredefined | kDigitalLink, {N(6)}, "NET VOLUME (yd³)"},
    {"3670", "3675", kPredefined | kDigitalLink, {N(6)}, "VOLUME (in³), log"},
    {"3680", "3685", kPredefined | kDigitalLink, {N(6)}, "VOLUME (ft³), log"},
    {"3690", "3695", kPredefined | kDigitalLink, {N(6)}, "VOLUME (yd³), log"},
    {"37", "", kDigitalLink, {NUpTo(8)}, "COUNT"},
    {"3900", "3909", kDigitalLink, {NUpTo(15)}, "AMOUNT"},
    {"3910", "3919", kDigitalLink, {N(3, kNrvGs1Iso4217), NUpTo(15)}, "AMOUNT"},
    {"3920", "3929", kDigitalLink, {NUpTo(15)}, "PRICE"},
    {"3930", "3939", kDigitalLink, {N(3, kNrvGs1Iso4217), NUpTo(15)}, "PRICE"},
    {"3940", "3943", kDigitalLink, {N(4)}, "PRCNT OFF"},
    {"3950", "3955", kDigitalLink, {N(6)}, "PRICE/UoM"},
    {"400", "", kDigitalLink, {XUpTo(30)}, "ORDER NUMBER"},
    {"401", "", kDigitalLink, {XUpTo(30, kNrvGs1GcpPos1)}, "GINC"},
    {"402", "", kDigitalLink, {N(17, kNrvGs1Csum, kNrvGs1GcpPos1)}, "GSIN"},
    {"403", "", kDigitalLink, {XUpTo(30)}, "ROUTE"},
    {"410", "", kPredefined | kDigitalLink, {N(13, kNrvGs1Csum, kNrvGs1GcpPos1)}, "SHIP TO LOC"},
    {"411", "", kPredefined | kDigitalLink, {N(13, kNrvGs1Csum, kNrvGs1GcpPos1)}, "BILL TO"},
    {"412", "", kPredefined | kDigitalLink, {N(13, kNrvGs1Csum, kNrvGs1GcpPos1)}, "PURCHASE FROM"},
    {"413", "", kPredefined | kDigitalLink, {N(13, kNrvGs1Csum, kNrvGs1GcpPos1)}, "SHIP FOR LOC"},
    {"414", "", kPredefined | kDigitalLink, {N(13, kNrvGs1Csum, kNrvGs1GcpPos1)}, "LOC No."},
    {"415", "", kPredefined | kDigitalLink, {N(13, kNrvGs1Csum, kNrvGs1GcpPos1)}, "PAY TO"},
    {"416", "", kPredefined | kDigitalLink, {N(13, kNrvGs1Csum, kNrvGs1GcpPos1)}, "PROD/SERV LOC"},
    {"417", "", kPredefined | kDigitalLink, {N(13, kNrvGs1Csum, kNrvGs1GcpPos1)}, "PARTY"},
    {"420", "", kDigitalLink, {XUpTo(20)}, "SHIP TO POST"},
    {"421", "", kDigitalLink, {N(3, kNrvGs1Iso3166), XUpTo(9)}, "SHIP TO POST"},
    {"422", "", kDigitalLink, {N(3, kNrvGs1Iso3166)}, "ORIGIN"},
    {"423", "", kDigitalLink,
     {N(3, kNrvGs1Iso3166), Opt(N(3, kNrvGs1Iso3166)), Opt(N(3, kNrvGs1Iso3166)), Opt(N(3, kNrvGs1Iso3166)),
      Opt(N(3, kNrvGs1Iso3166))},
     "COUNTRY - INITIAL PROCESS"},
    {"424", "", kDigitalLink, {N(3, kNrvGs1Iso3166)}, "COUNTRY - PROCESS"},
    {"425", "", kDigitalLink,
     {N(3, kNrvGs1Iso3166), Opt(N(3, kNrvGs1Iso3166)), Opt(N(3, kNrvGs1Iso3166)), Opt(N(3, kNrvGs1Iso3166)),
      Opt(N(3, kNrvGs1Iso3166))},
     "COUNTRY - DISASSEMBLY"},
    {"426", "", kDigitalLink, {N(3, kNrvGs1Iso3166)}, "COUNTRY - FULL PROCESS"},
    {"427", "", kDigitalLink, {XUpTo(3)}, "ORIGIN SUBDIVISION"},
    {"4300", "", kDigitalLink, {XUpTo(35, kNrvGs1PcEnc)}, "SHIP TO COMP"},
    {"4301", "", kDigitalLink, {XUpTo(35, kNrvGs1PcEnc)}, "SHIP TO NAME"},
    {"4302", "", kDigitalLink, {XUpTo(70, kNrvGs1PcEnc)}, "SHIP TO ADD1"},
    {"4303", "", kDigitalLink, {XUpTo(70, kNrvGs1PcEnc)}, "SHIP TO ADD2"},
    {"4304", "", kDigitalLink, {XUpTo(70, kNrvGs1PcEnc)}, "SHIP TO SUB"},
    {"4305", "", kDigitalLink, {XUpTo(70, kNrvGs1PcEnc)}, "SHIP TO LOC"},
    {"4306", "", kDigitalLink, {XUpTo(70, kNrvGs1PcEnc)}, "SHIP TO REG"},
    {"4307", "", kDigitalLink, {X(2, kNrvGs1Iso3166Alpha2)}, "SHIP TO COUNTRY"},
    {"4308", "", kDigitalLink, {XUpTo(30)}, "SHIP TO PHONE"},
    {"4309", "", kDigitalLink, {N(10, kNrvGs1Latitude), N(10, kNrvGs1Longitude)}, "SHIP TO GEO"},
    {"4310", "", kDigitalLink, {XUpTo(35, kNrvGs1PcEnc)}, "RTN TO COMP"},
    {"4311", "", kDigitalLink, {XUpTo(35, kNrvGs1PcEnc)}, "RTN TO NAME"},
    {"4312", "", kDigitalLink, {XUpTo(70, kNrvGs1PcEnc)}, "RTN TO ADD1"},
    {"4313", "", kDigitalLink, {XUpTo(70, kNrvGs1PcEnc)}, "RTN TO ADD2"},
    {"4314", "", kDigitalLink, {XUpTo(70, kNrvGs1PcEnc)}, "RTN TO SUB"},
    {"4315", "", kDigitalLink, {XUpTo(70, kNrvGs1PcEnc)}, "RTN TO LOC"},
    {"4316", "", kDigitalLink, {XUpTo(70, kNrvGs1PcEnc)}, "RTN TO REG"},
    {"4317", "", kDigitalLink, {X(2, kNrvGs1Iso3166Alpha2)}, "RTN TO COUNTRY"},
    {"4318", "", kDigitalLink, {XUpTo(20)}, "RTN TO POST"},
    {"4319", "", kDigitalLink, {XUpTo(30)}, "RTN TO PHONE"},
    {"4320", "", kDigitalLink, {XUpTo(35, kNrvGs1PcEnc)}, "SRV DESCRIPTION"},
    {"4321", "", kDigitalLink, {N(1, kNrvGs1YesNo)}, "DANGEROUS GOODS"},
    {"4322", "", kDigitalLink, {N(1, kNrvGs1YesNo)}, "AUTH TO LEAVE"},
    {"4323", "", kDigitalLink, {N(1, kNrvGs1YesNo)}, "SIG REQUIRED"},
    {"4324", "", kDigitalLink, {N(6, kNrvGs1Yymmd0), N(4, kNrvGs1Hhmi)}, "NOT BEF DEL DT"},
    {"4325", "", kDigitalLink, {N(6, kNrvGs1Yymmd0), N(4, kNrvGs1Hhmi)}, "NOT AFT DEL DT"},
    {"4326", "", kDigitalLink, {N(6, kNrvGs1Yymmdd)}, "REL DATE"},
    {"4330", "", kDigitalLink, {N(6), Opt(X(1, kNrvGs1Hyphen))}, "MAX TEMP F."},
    {"4331", "", kDigitalLink, {N(6), Opt(X(1, kNrvGs1Hyphen))}, "MAX TEMP C."},
    {"4332", "", kDigitalLink, {N(6), Opt(X(1, kNrvGs1Hyphen))}, "MIN TEMP F."},
    {"4333", "", kDigitalLink, {N(6), Opt(X(1, kNrvGs1Hyphen))}, "MIN TEMP C."},
    {"7001", "", kDigitalLink, {N(13)}, "NSN"},
    {"7002", "", kDigitalLink, {XUpTo(30)}, "MEAT CUT"},
    {"7003", "", kDigitalLink, {N(6, kNrvGs1Yymmdd), N(4, kNrvGs1Hhmi)}, "EXPIRY TIME"},
    {"7004", "", kDigitalLink, {NUpTo(4)}, "ACTIVE POTENCY"},
    {"7005", "", kDigitalLink, {XUpTo(12)}, "CATCH AREA"},
    {"7006", "", kDigitalLink, {N(6, kNrvGs1Yymmdd)}, "FIRST FREEZE DATE"},
    {"7007", "", kDigitalLink, {N(6, kNrvGs1Yymmdd), Opt(N(6, kNrvGs1Yymmdd))}, "HARVEST DATE"},
    {"7008", "", kDigitalLink, {XUpTo(3)}, "AQUATIC SPECIES"},
    {"7009", "", kDigitalLink, {XUpTo(10)}, "FISHING GEAR TYPE"},
    {"7010", "", kDigitalLink, {XUpTo(2)}, "PROD METHOD"},
    {"7011", "", kDigitalLink, {N(6, kNrvGs1Yymmdd), Opt(N(4, kNrvGs1Hhmi))}, "TEST BY DATE"},
    {"7020", "", kDigitalLink, {XUpTo(20)}, "REFURB LOT"},
    {"7021", "", kDigitalLink, {XUpTo(20)}, "FUNC STAT"},
    {"7022", "", kDigitalLink, {XUpTo(20)}, "REV STAT"},
    {"7023", "", kDigitalLink, {XUpTo(30, kNrvGs1GcpPos1)}, "GIAI - ASSEMBLY"},
    {"7030", "", kDigitalLink, {N(3, kNrvGs1Iso3166999), XUpTo(27)}, "PROCESSOR # 0"},
    {"7031", "", kDigitalLink, {N(3, kNrvGs1Iso3166999), XUpTo(27)}, "PROCESSOR # 1"},
    {"7032", "", kDigitalLink, {N(3, kNrvGs1Iso3166999), XUpTo(27)}, "PROCESSOR # 2"},
    {"7033", "", kDigitalLink, {N(3, kNrvGs1Iso3166999), XUpTo(27)}, "PROCESSOR # 3"},
    {"7034", "", kDigitalLink, {N(3, kNrvGs1Iso3166999), XUpTo(27)}, "PROCESSOR # 4"},
    {"7035", "", kDigitalLink, {N(3, kNrvGs1Iso3166999), XUpTo(27)}, "PROCESSOR # 5"},
    {"7036", "", kDigitalLink, {N(3, kNrvGs1Iso3166999), XUpTo(27)}, "PROCESSOR # 6"},
    {"7037", "", kDigitalLink, {N(3, kNrvGs1Iso3166999), XUpTo(27)}, "PROCESSOR # 7"},
    {"7038", "", kDigitalLink, {N(3, kNrvGs1Iso3166999), XUpTo(27)}, "PROCESSOR # 8"},
    {"7039", "", kDigitalLink, {N(3, kNrvGs1Iso3166999), XUpTo(27)}, "PROCESSOR # 9"},
    {"7040", "", 0, {N(1), X(1), X(1), X(1, kNrvGs1ImporterIdx)}, "UIC+EXT"},
    {"7041", "", 0, {XUpTo(4, kNrvGs1PackageType)}, "UFRGT UNIT TYPE"},
    {"710", "", kDigitalLink, {XUpTo(20)}, "NHRN PZN"},
    {"711", "", kDigitalLink, {XUpTo(20)}, "NHRN CIP"},
    {"712", "", kDigitalLink, {XUpTo(20)}, "NHRN CN"},
    {"713", "", kDigitalLink, {XUpTo(20)}, "NHRN DRN"},
    {"714", "", kDigitalLink, {XUpTo(20)}, "NHRN AIM"},
    {"715", "", kDigitalLink, {XUpTo(20)}, "NHRN NDC"},
    {"716", "", kDigitalLink, {XUpTo(20)}, "NHRN AIC"},
    {"717", "", kDigitalLink, {XUpTo(20)}, "NHRN SRN"},
    {"7230", "", kDigitalLink, {X(2), XUpTo(28)}, "CERT # 1"},
    {"7231", "", kDigitalLink, {X(2), XUpTo(28)}, "CERT # 2"},
    {"7232", "", kDigitalLink, {X(2), XUpTo(28)}, "CERT # 3"},
    {"7233", "", kDigitalLink, {X(2), XUpTo(28)}, "CERT # 4"},
    {"7234", "", kDigitalLink, {X(2), XUpTo(28)}, "CERT # 5"},
    {"7235", "", kDigitalLink, {X(2), XUpTo(28)}, "CERT # 6"},
    {"7236", "", kDigitalLink, {X(2), XUpTo(28)}, "CERT # 7"},
    {"7237", "", kDigitalLink, {X(2), XUpTo(28)}, "CERT # 8"},
    {"7238", "", kDigitalLink, {X(2), XUpTo(28)}, "CERT # 9"},
    {"7239", "", kDigitalLink, {X(2), XUpTo(28)}, "CERT # 10"},
    {"7240", "", kDigitalLink, {XUpTo(20)}, "PROTOCOL"},
    {"7241", "", kDigitalLink, {N(2, kNrvGs1MediaType)}, "AIDC MEDIA TYPE"},
    {"7242", "", kDigitalLink, {XUpTo(25)}, "VCN"},
    {"7250", "", kDigitalLink, {N(8, kNrvGs1Yyyymmdd)}, "DOB"},
    {"7251", "", kDigitalLink, {N(8, kNrvGs1Yyyymmdd), N(4, kNrvGs1Hhmi)}, "DOB TIME"},
    {"7252", "", kDigitalLink, {N(1, kNrvGs1Iso5218)}, "BIO SEX"},
    {"7253", "", kDigitalLink, {XUpTo(40, kNrvGs1PcEnc)}, "FAMILY NAME"},
    {"7254", "", kDigitalLink, {XUpTo(40, kNrvGs1PcEnc)}, "GIVEN NAME"},
    {"7255", "", kDigitalLink, {XUpTo(10)}, "SUFFIX"},
    {"7256", "", kDigitalLink, {XUpTo(90, kNrvGs1PcEnc)}, "FULL NAME"},
    {"7257", "", kDigitalLink, {XUpTo(70, kNrvGs1PcEnc)}, "PERSON ADDR"},
    {"7258", "", kDigitalLink, {X(3, kNrvGs1PosInSeqSlash)}, "BIRTH SEQUENCE"},
    {"7259", "", kDigitalLink, {XUpTo(40, kNrvGs1PcEnc)}, "BABY"},
    {"8001", "", kDigitalLink,
     {N(4, kNrvGs1NonZero), N(5, kNrvGs1NonZero), N(3, kNrvGs1NonZero), N(1, kNrvGs1Winding), N(1)}, "DIMENSIONS"},
    {"8002", "", kDigitalLink, {XUpTo(20)}, "CMT No."},
    {"8003", "", kDigitalLink, {N(1, kNrvGs1Zero), N(13, kNrvGs1Csum, kNrvGs1GcpPos1), Opt(XUpTo(16))}, "GRAI"},
    {"8004", "", kDigitalLink, {XUpTo(30, kNrvGs1GcpPos1)}, "GIAI"},
    {"8005", "", kDigitalLink, {N(6)}, "PRICE PER UNIT"},
    {"8006", "", kDigitalLink, {N(14, kNrvGs1Csum, kNrvGs1GcpPos2), N(4, kNrvGs1PieceOfTotal)}, "ITIP"},
    {"8007", "", kDigitalLink, {XUpTo(34, kNrvGs1Iban)}, "IBAN"},
    {"8008", "", kDigitalLink,
     {N(6, kNrvGs1Yymmdd), N(2, kNrvGs1Hh), Opt(N(2, kNrvGs1Mi)), Opt(N(2, kNrvGs1Ss))}, "PROD TIME"},
    {"8009", "", kDigitalLink, {XUpTo(50)}, "OPTSEN"},
    {"8010", "", kDigitalLink, {YUpTo(30, kNrvGs1GcpPos1)}, "CPID"},
    {"8011", "", 0, {NUpTo(12, kNrvGs1NoZeroPrefix)}, "CPID SERIAL"},
    {"8012", "", kDigitalLink, {XUpTo(20)}, "VERSION"},
    {"8013", "", kDigitalLink, {XUpTo(25, kNrvGs1CsumAlpha, kNrvGs1GcpPos1)}, "GMN"},
    {"8014", "", 0, {XUpTo(25, kNrvGs1CsumAlpha, kNrvGs1GcpPos1, kNrvGs1HasNonDigit)}, "MUDI"},
    {"8017", "", kDigitalLink, {N(18, kNrvGs1Csum, kNrvGs1GcpPos1)}, "GSRN - PROVIDER"},
    {"8018", "", kDigitalLink, {N(18, kNrvGs1Csum, kNrvGs1GcpPos1)}, "GSRN - RECIPIENT"},
    {"8019", "", 0, {NUpTo(10)}, "SRIN"},
    {"8020", "", 0, {XUpTo(25)}, "REF No."},
    {"8026", "", kDigitalLink, {N(14, kNrvGs1Csum, kNrvGs1GcpPos2), N(4, kNrvGs1PieceOfTotal)}, "ITIP CONTENT"},
    {"8030", "", kDigitalLink, {ZUpTo(90)}, "DIGSIG"},
    {"8040", "", 0, {N(15)}, "IMEI"},
    {"8041", "", 0, {N(15)}, "IMEI2"},
    {"8042", "", 0, {N(32)}, "ESIM"},
    {"8043", "", 0, {N(18), Opt(NUpTo(2))}, "PSIM"},
    {"8110", "", kDigitalLink, {XUpTo(70, kNrvGs1CouponCode)}, ""},
    {"8111", "", kDigitalLink, {N(4)}, "POINTS"},
    {"8112", "", kDigitalLink, {XUpTo(70, kNrvGs1CouponPosOffer)}, ""},
    {"8200", "", 0, {XUpTo(70)}, "PRODUCT URL"},
    {"90", "", kDigitalLink, {XUpTo(30)}, "INTERNAL"},
    {"91", "99", kDigitalLink, {XUpTo(90)}, "INTERNAL"},
};
constexpr size_t kTableSize = sizeof kTable / sizeof kTable[0];

// The dictionary's names of the checks, in the order of ENrvGs1Check.
constexpr const char* kCheckNames[] = {
    nullptr,     "csum",        "csumalpha",     "gcppos1",     "gcppos2",    "yymmd0",       "yymmdd",
    "yyyymmdd",  "hhmi",        "hh",            "mi",          "ss",         "nonzero",      "zero",
    "iso3166",   "iso3166999",  "iso3166alpha2", "iso4217",     "iso5218",    "pcenc",        "yesno",
    "latitude",  "longitude",   "hyphen",        "importeridx", "packagetype", "mediatype",   "posinseqslash",
    "winding",   "pieceoftotal", "iban",         "nozeroprefix", "hasnondigit", "couponcode", "couponposoffer",
};
static_assert(sizeof kCheckNames / sizeof kCheckNames[0] == kNrvGs1CheckCount, "one name per check");

constexpr size_t Length(const char* psz)
{
    size_t n = 0;
    while (psz[n] != '\0')
        ++n;
    return n;
}

constexpr bool AllDigits(const char* psz)
{
    for (; *psz != '\0'; ++psz)
        if (*psz < '0' || *psz > '9')
            return false;
    return true;
}

// Compares two AIs of the same length as numbers (and so as texts).
constexpr int Compare(const char* a, const char* b, size_t n)
{
    for (size_t i = 0; i < n; ++i)
        if (a[i] != b[i])
            return a[i] < b[i] ? -1 : 1;
    return 0;
}

constexpr const char* LastOf(const TNrvGs1Entry& entry)
{
    return entry.szLast[0] != '\0' ? entry.szLast : entry.szFirst;
}

// The first two digits of an AI as a number.
constexpr size_t PrefixOf(const char* pszAi)
{
    return static_cast<size_t>(pszAi[0] - '0') * 10 + static_cast<size_t>(pszAi[1] - '0');
}

// The checks that read a fixed number of digits or characters get a
// component of that length and set.
constexpr bool CheckFits(ENrvGs1Check check, const TNrvGs1Component& c)
{
    const bool bDigits = c.cSet == 'N' && c.nMin == c.nMax;
    switch (check) {
    case kNrvGs1Csum: return bDigits && c.nMin >= 2;
    case kNrvGs1Yymmd0:
    case kNrvGs1Yymmdd: return bDigits && c.nMin == 6;
    case kNrvGs1Yyyymmdd: return bDigits && c.nMin == 8;
    case kNrvGs1Hhmi:
    case kNrvGs1PieceOfTotal: return bDigits && c.nMin == 4;
    case kNrvGs1Hh:
    case kNrvGs1Mi:
    case kNrvGs1Ss: return bDigits && c.nMin == 2;
    case kNrvGs1Iso3166:
    case kNrvGs1Iso3166999:
    case kNrvGs1Iso4217: return bDigits && c.nMin == 3;
    case kNrvGs1Latitude:
    case kNrvGs1Longitude: return bDigits && c.nMin == 10;
    case kNrvGs1Zero:
    case kNrvGs1YesNo:
    case kNrvGs1Iso5218:
    case kNrvGs1Winding:
    case kNrvGs1Hyphen:
    case kNrvGs1ImporterIdx: return c.nMin == 1 && c.nMax == 1;
    case kNrvGs1Iso3166Alpha2: return c.nMin == 2 && c.nMax == 2;
    case kNrvGs1PosInSeqSlash: return c.nMin == 3 && c.nMax == 3;
    default: return true;
    }
}

constexpr bool ComponentsWellFormed(const TNrvGs1Entry& entry)
{
    bool bOptionalSeen = false;
    bool bEnded = false;
    for (size_t i = 0; i < kNrvGs1MaxComponents; ++i) {
        const TNrvGs1Component& c = entry.aComponents[i];
        if (c.cSet == 0) {
            bEnded = true;
            continue;
        }
        const bool bLast = i + 1 == kNrvGs1MaxComponents || entry.aComponents[i + 1].cSet == 0;
        if (bEnded || c.nMin == 0 || c.nMin > c.nMax || (c.nMin != c.nMax && !bLast) ||
            (bOptionalSeen && !c.bOptional))
            return false;
        if ((entry.nFlags & kPredefined) != 0 && (c.nMin != c.nMax || c.bOptional))
            return false;
        bOptionalSeen = bOptionalSeen || c.bOptional;
        for (size_t k = 0; k < kNrvGs1MaxChecks; ++k)
            if (!CheckFits(c.aChecks[k], c) || (k > 0 && c.aChecks[k - 1] == kNone && c.aChecks[k] != kNone))
                return false;
    }
    return entry.aComponents[0].cSet != 0;
}

// What the look-up relies on: AIs of 2 to 4 digits in increasing order,
// ranges that do not overlap and keep their length, and one length for every
// AI that starts with the same two digits (as GS1 allocates them).
constexpr bool TableWellFormed()
{
    for (size_t i = 0; i < kTableSize; ++i) {
        const TNrvGs1Entry& entry = kTable[i];
        const size_t nDigits = Length(entry.szFirst);
        if (nDigits < 2 || nDigits > 4 || !AllDigits(entry.szFirst) || !AllDigits(entry.szLast) ||
            Length(LastOf(entry)) != nDigits || Compare(entry.szFirst, LastOf(entry), nDigits) > 0 ||
            !ComponentsWellFormed(entry))
            return false;
        if (i > 0) {
            const TNrvGs1Entry& previous = kTable[i - 1];
            if (PrefixOf(LastOf(previous)) > PrefixOf(entry.szFirst))
                return false;
            if (PrefixOf(LastOf(previous)) == PrefixOf(entry.szFirst) &&
                (Length(previous.szFirst) != nDigits || Compare(LastOf(previous), entry.szFirst, nDigits) >= 0))
                return false;
        }
    }
    return true;
}
static_assert(TableWellFormed(), "the AI table is out of order or malformed");

// The rows whose AIs start with each pair of digits, and their AIs' length
// (a range of two-digit AIs, 91 to 99, spans several pairs).
struct TPrefix {
    uint16_t nFirst;
    uint8_t nCount;
    uint8_t nDigits;  // 0: no AI starts with these two digits
};

constexpr std::array<TPrefix, 100> MakePrefixes()
{
    std::array<TPrefix, 100> prefixes{};
    for (size_t i = kTableSize; i-- > 0;) {
        for (size_t p = PrefixOf(kTable[i].szFirst); p <= PrefixOf(LastOf(kTable[i])); ++p) {
            TPrefix& prefix = prefixes[p];
            prefix.nFirst = static_cast<uint16_t>(i);
            prefix.nCount = static_cast<uint8_t>(prefix.nCount + 1);
            prefix.nDigits = static_cast<uint8_t>(Length(kTable[i].szFirst));
        }
    }
    return prefixes;
}
constexpr std::array<TPrefix, 100> kPrefixes = MakePrefixes();
static_assert(kTableSize < 65536, "row numbers fit the prefix index");

// The reader's cost (NrvGs1.h) counts at most 5 steps of the binary search.
constexpr bool PrefixesShort()
{
    for (const TPrefix& prefix : kPrefixes)
        if (prefix.nCount > 31)
            return false;
    return true;
}
static_assert(PrefixesShort(), "a look-up takes at most 5 steps");

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

}  // namespace

const char* NrvGs1CheckName(ENrvGs1Check check)
{
    return check < kNrvGs1CheckCount ? kCheckNames[check] : nullptr;
}

const TNrvGs1Entry* NrvGs1Table(size_t* pnCount)
{
    *pnCount = kTableSize;
    return kTable;
}

size_t NrvGs1AiLength(char cFirst, char cSecond)
{
    if (!IsDigit(cFirst) || !IsDigit(cSecond))
        return 0;
    const char szPair[] = {cFirst, cSecond};
    return kPrefixes[PrefixOf(szPair)].nDigits;
}

const TNrvGs1Entry* NrvGs1LookupAi(const char* pAi, size_t nLength)
{
    if (pAi == nullptr || nLength < 2 || NrvGs1AiLength(pAi[0], pAi[1]) != nLength)
        return nullptr;
    for (size_t i = 2; i < nLength; ++i)
        if (!IsDigit(pAi[i]))
            return nullptr;
    // The last row of the prefix whose first AI is not above pAi; pAi is in
    // it when it is not above that row's last AI either.
    const TPrefix& prefix = kPrefixes[PrefixOf(pAi)];
    size_t nLow = prefix.nFirst;
    size_t nHigh = prefix.nFirst + prefix.nCount;
    while (nHigh - nLow > 1) {
        const size_t nMiddle = nLow + (nHigh - nLow) / 2;
        if (std::memcmp(kTable[nMiddle].szFirst, pAi, nLength) <= 0)
            nLow = nMiddle;
        else
            nHigh = nMiddle;
    }
    const TNrvGs1Entry& entry = kTable[nLow];
    if (std::memcmp(entry.szFirst, pAi, nLength) > 0 || std::memcmp(LastOf(entry), pAi, nLength) < 0)
        return nullptr;
    return &entry;
}
