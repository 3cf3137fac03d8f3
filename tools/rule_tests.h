// nrv-edit --test: runs the [[test]] tables of a rules file.
#ifndef NRV_EDIT_RULE_TESTS_H
#define NRV_EDIT_RULE_TESTS_H

#include "options.h"

// Runs every test of the file --test names with its rules, under the
// tool's limits; prints each failure (or, with --json, every test) and
// then the counts, and writes the --junit report. Returns the exit status:
// 0 every test passed; 1 a test failed, or the file has none; 2 the file
// cannot be read or has errors, or the report cannot be written.
int RunRuleTests(const SOptions& options);

#endif  // NRV_EDIT_RULE_TESTS_H
