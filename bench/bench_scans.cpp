#include "bench_scans.h"

// Inputs are embedded so that the figures do not depend on files at run time.
namespace nrvbench {

namespace {

// A retail code as a scanner delivers it: 13 digits, no trailer.
const char kEan13Bytes[] = "8886316200561";

// A GS1 code from an industrial label: the symbology identifier ]e0, a GTIN,
// a lot, then two fields each closed by a group separator (0x1D), and the
// CR LF that the scanner appends. 44 bytes.
const char kIndustrialBytes[] =
    "]e00198898765432106101012A\x1d""422123\x1d""21123456\r\n";

// The text of an identity card: a header with control bytes, then one
// field per line (three-letter code, value), closed by CR LF. 400 bytes.
const char kIdentityCardBytes[] =
    "@\n"
    "\x1e\rANSI 636026080102DL00410288ZA03290015DLDAQD12345678\n"
    "DCSPUBLIC\n"
    "DDEN\n"
    "DACJOHN\n"
    "DDFN\n"
    "DADQUINCY\n"
    "DDGN\n"
    "DCAD\n"
    "DCBNONE\n"
    "DCDNONE\n"
    "DBD08242015\n"
    "DBB01311970\n"
    "DBA01312035\n"
    "DBC1\n"
    "DAU069 IN\n"
    "DAYGRN\n"
    "DAG789 E OAK ST\n"
    "DAIANYTOWN\n"
    "DAJCA\n"
    "DAK902230000  \n"
    "DCF83D9BN217QO983B1\n"
    "DCGUSA\n"
    "DAW180\n"
    "DAZBRO\n"
    "DCK12345678900000000\n"
    "DDB02142014\n"
    "DDK1\n"
    "DDAF\n"
    "DDC00000000\n"
    "DDD0\rZAZAAN\n"
    "ZAB\n"
    "ZACISSUED BY THE DEPARTMENT OF MOTOR VEHICLES, ANYTOWN 90223\r\n";

// A large QR Code payload (real decoded data: the opening of a public-domain
// novel, with line feeds). 2,953 bytes.
const char kQrPayloadBytes[] =
    "THROUGH THE LOOKING-GLASS\n"
    "\n"
    "By Lewis Carroll\n"
    "\n"
    "\n"
    "CHAPTER I. Looking-Glass house\n"
    "\n"
    "One thing was certain, that the WHITE kitten had had nothing to do with\n"
    "it:--it was the black kitten's fault entirely. For the white kitten had\n"
    "been having its face washed by the old cat for the last quarter of\n"
    "an hour (and bearing it pretty well, considering); so you see that it\n"
    "COULDN'T have had any hand in the mischief.\n"
    "\n"
    "The way Dinah washed her children's faces was this: first she held the\n"
    "poor thing down by its ear with one paw, and then with the other paw she\n"
    "rubbed its face all over, the wrong way, beginning at the nose: and\n"
    "just now, as I said, she was hard at work on the white kitten, which was\n"
    "lying quite still and trying to purr--no doubt feeling that it was all\n"
    "meant for its good.\n"
    "\n"
    "But the black kitten had been finished with earlier in the afternoon,\n"
    "and so, while Alice was sitting curled up in a corner of the great\n"
    "arm-chair, half talking to herself and half asleep, the kitten had been\n"
    "having a grand game of romps with the ball of worsted Alice had been\n"
    "trying to wind up, and had been rolling it up and down till it had all\n"
    "come undone again; and there it was, spread over the hearth-rug, all\n"
    "knots and tangles, with the kitten running after its own tail in the\n"
    "middle.\n"
    "\n"
    "'Oh, you wicked little thing!' cried Alice, catching up the kitten, and\n"
    "giving it a little kiss to make it understand that it was in disgrace.\n"
    "'Really, Dinah ought to have taught you better manners! You OUGHT,\n"
    "Dinah, you know you ought!' she added, looking reproachfully at the old\n"
    "cat, and speaking in as cross a voice as she could manage--and then she\n"
    "scrambled back into the arm-chair, taking the kitten and the worsted\n"
    "with her, and began winding up the ball again. But she didn't get on\n"
    "very fast, as she was talking all the time, sometimes to the kitten, and\n"
    "sometimes to herself. Kitty sat very demurely on her knee, pretending to\n"
    "watch the progress of the winding, and now and then putting out one\n"
    "paw and gently touching the ball, as if it would be glad to help, if it\n"
    "might.\n"
    "\n"
    "'Do you know what to-morrow is, Kitty?' Alice began. 'You'd have guessed\n"
    "if you'd been up in the window with me--only Dinah was making you tidy,\n"
    "so you couldn't. I was watching the boys getting in sticks for the\n"
    "bonfire--and it wants plenty of sticks, Kitty! Only it got so cold, and\n"
    "it snowed so, they had to leave off. Never mind, Kitty, we'll go and\n"
    "see the bonfire to-morrow.' Here Alice wound two or three turns of the\n"
    "worsted round the kitten's neck, just to see how it would look: this led\n"
    "to a scramble, in which the ball rolled down upon the floor, and yards\n"
    "and yards of it got unwound again.\n"
    "\n"
    "'Do you know, I was so angry, Kitty,' Alice went on as soon as they were\n"
    "comfortably settled again, 'when I saw all the mischief you had been\n"
    "doing, I was very nearly opening the window, and putting you out into\n"
    "the snow! And you'd have deserved it, you little mischievous darling!\n"
    "Wha\n";

}  // namespace

const std::string& Ean13() { static const std::string s(kEan13Bytes, sizeof kEan13Bytes - 1); return s; }
const std::string& Industrial() { static const std::string s(kIndustrialBytes, sizeof kIndustrialBytes - 1); return s; }
const std::string& IdentityCard() { static const std::string s(kIdentityCardBytes, sizeof kIdentityCardBytes - 1); return s; }
const std::string& QrPayload() { static const std::string s(kQrPayloadBytes, sizeof kQrPayloadBytes - 1); return s; }

}  // namespace nrvbench
