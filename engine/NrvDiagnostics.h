// Diagnostics for the people who write expressions: where and why an
// expression does not parse (NrvParseDiagnosis.h), what every node of an
// expression yields for one scan and why an edit fails (NrvExplain.h), and
// the names and meanings of the result codes (NrvResultCodes.h).
#ifndef NRV_DIAGNOSTICS_H
#define NRV_DIAGNOSTICS_H

#include "NrvExplain.h"
#include "NrvParseDiagnosis.h"
#include "NrvResultCodes.h"

#endif  // NRV_DIAGNOSTICS_H
