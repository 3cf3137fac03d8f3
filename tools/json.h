// nrv-edit's JSON answers. Every byte of a text maps to the code point of
// the same value (U+0000..U+00FF), so that no byte is lost.
#ifndef NRV_EDIT_JSON_H
#define NRV_EDIT_JSON_H

#include <cstddef>
#include <string>

#include "NrvDiagnostics.h"

void AppendJsonString(const char* pData, size_t nLength, std::string* pOut);

// --check --json: {"ok":true}, or the diagnostic with "ok":false.
std::string JsonParseOutcome(const TNrvDiagnostic& diagnostic);

// --explain --json, one object per scan: {"scan":N,"code":C,"output":...,
// "nodes":[...]} and, when the edit failed, "failure":{...}. nCode and the
// output are those of the edit itself (NRV_OK_NOT_TRIGGERED leaves the
// scan as it was, with no nodes). A non-empty rule (JSON of the rule that
// took the scan, or null) is added as "rule".
std::string JsonExplanation(unsigned long long nScan, NRVRESULT nCode, const std::string& output,
                            const TNrvExplanation& explanation, const std::string& rule = std::string());

#endif  // NRV_EDIT_JSON_H
