// What the parts of the rules-file reader share. Not installed: it needs
// toml++, which the public headers keep out of sight.
#ifndef NRV_RULES_INTERNAL_H
#define NRV_RULES_INTERNAL_H

#include <functional>
#include <string>
#include <vector>

#include <toml++/toml.h>

#include "NrvRuleTests.h"
#include "NrvSettings.h"

// Where the reader collects an error: the place in the file, and the sentence.
using NrvRulesErrorSink = std::function<void(const toml::source_region& where, std::string message)>;

// "a string", "an integer", ... for messages.
const char* NrvTomlTypeName(const toml::node& node);

// The settings' names as a rules file writes its keys.
extern const TNrvSettingNames kNrvRuleSettingNames;

// Reads the value of the file's 'test' key (written [[test]]) into
// *pTests, in file order, each error given to error. pRules is the file's
// 'rule' array, or null: a test names one of its rules.
void NrvReadTestTables(const toml::node& tests, const toml::array* pRules, const NrvRulesErrorSink& error,
                       std::vector<TNrvRuleTest>* pTests);

#endif  // NRV_RULES_INTERNAL_H
