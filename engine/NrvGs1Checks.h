// What the GS1 reader checks inside one component of an element's data: its
// character set and the checks the AI table names for it. Internal to the
// reader; commands use NrvGs1.h.
#ifndef NRV_GS1_CHECKS_H
#define NRV_GS1_CHECKS_H

#include <cstddef>

#include "NrvGs1.h"

// Checks pData[0..nLength) against the component's character set. On a
// fault fills *pFault: the offset within the component, the length and the
// sentence, without the "AI (..): " that the reader puts in front.
bool NrvGs1CheckCharacters(char cSet, const char* pData, size_t nLength, TNrvGs1Fault* pFault);

// Runs one check over a component whose length and character set are
// already right (the table gives each check a component of the length it
// needs). True when it passes, and for the checks not made; otherwise fills
// *pFault as NrvGs1CheckCharacters does.
bool NrvGs1RunCheck(ENrvGs1Check check, const char* pData, size_t nLength, TNrvGs1Fault* pFault);

// A byte as a sentence shows it: 'A' when printable, else "byte 0xC3".
void NrvGs1DescribeByte(unsigned char c, char* pszOut, size_t nSize);

#endif  // NRV_GS1_CHECKS_H
