// An ordered set of rules, each a profile (an expression and its trigger
// conditions) with an optional name. A scan is edited by the first rule
// whose triggers all hold; later rules are not tried.
#ifndef NRV_RULE_SET_H
#define NRV_RULE_SET_H

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "NrvDataEditingProfile.h"
#include "NrvScanTypes.h"

// What a rule may ask of a scan's GS1 content beside its profile's
// triggers. Each part that is set must hold.
struct TNrvGs1Condition {
    enum EMessage {
        kAnyScan,        // no condition on the message
        kValidMessage,   // the scan is a valid GS1 message (NrvGs1IsValid)
        kNotAMessage,    // the scan is not one
    };
    EMessage message = kAnyScan;
    // AIs the scan must hold, each at least once, as digits ("17", "3103");
    // a scan that is not a valid GS1 message holds none.
    std::vector<std::string> ais;

    bool IsSet() const { return message != kAnyScan || !ais.empty(); }
    // True when the scan pData[0..nLength) meets it. One read of the scan.
    bool Holds(const char* pData, size_t nLength) const;
};

// One thread at a time, as the profiles it holds.
class CNrvRuleSet {
public:
    // What Edit reports when no rule's triggers held.
    static constexpr size_t kNoRule = static_cast<size_t>(-1);

    CNrvRuleSet();
    ~CNrvRuleSet();
    CNrvRuleSet(const CNrvRuleSet&) = delete;
    CNrvRuleSet& operator=(const CNrvRuleSet&) = delete;
    CNrvRuleSet(CNrvRuleSet&&) noexcept;
    CNrvRuleSet& operator=(CNrvRuleSet&&) noexcept;

    // Appends a rule: a new profile with pszExpression parsed, named
    // pszName (null or empty: unnamed). On a parse failure returns the
    // parser's code and the set is unchanged. On success *ppProfile, when
    // given, receives the rule's profile, which the set owns, so that the
    // caller can set its triggers; it stays where it is when the set is
    // moved. Replacing its expression with Parse is allowed, but a profile
    // whose last Parse failed, or that RemoveAllOperations emptied, answers
    // every scan without testing its triggers, so such a rule would claim
    // every scan.
    // The profile enables nCommandSets before the parse (none by default,
    // as a profile).
    NRVRESULT AddRule(const char* pszExpression, const char* pszName, CNrvDataEditingProfile** ppProfile,
                      unsigned nCommandSets = kNrvCommandSetSeed);
    // Adds a GS1 condition to the rule: the rule takes a scan only when it
    // holds as well as the profile's triggers. NRV_ERR_INVALID_PARAMETER,
    // and nothing changed, past the last rule or for an AI that GS1 does not
    // define.
    NRVRESULT SetRuleGs1Condition(size_t nRule, const TNrvGs1Condition& condition);

    size_t GetRuleCount() const { return m_Rules.size(); }
    // The rule's profile, or null past the end.
    CNrvDataEditingProfile* GetRuleProfile(size_t nRule) const;
    // The rule's name ("" when unnamed), or null past the end.
    const char* GetRuleName(size_t nRule) const;
    // The expression the rule was added with (for diagnostics, which parse
    // it again), or null past the end.
    const char* GetRuleExpression(size_t nRule) const;

    // Tries the rules in order; the first whose triggers (and GS1
    // condition) all hold edits the record, as CNrvDataEditingProfile::Edit does, and its code is
    // returned. *pnRule (when given) receives that rule's index, or kNoRule.
    // - No rule's triggers hold (or there is no rule): NRV_OK_NOT_TRIGGERED,
    //   the record untouched.
    // - The chosen rule's edit fails: its negative code, the record
    //   untouched. The scan does not fall through to the rules after it.
    // - A null record, or one with a null text of non-zero length:
    //   NRV_ERR_INVALID_PARAMETER.
    // The edited data belongs to the chosen rule's profile: it stays valid
    // until the set's next Edit, AddRule, RemoveAllRules or destruction.
    // An allocation failure throws std::bad_alloc with the record untouched.
    NRVRESULT Edit(TNrvScanDecodedData* pDecodedData, size_t* pnRule = nullptr);

    void RemoveAllRules();

private:
    struct SRule {
        std::unique_ptr<CNrvDataEditingProfile> profile;
        std::string name;
        std::string expression;
        TNrvGs1Condition gs1;
    };
    std::vector<SRule> m_Rules;
};

#endif  // NRV_RULE_SET_H
