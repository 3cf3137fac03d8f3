#include "NrvRuleSet.h"

#include <utility>

CNrvRuleSet::CNrvRuleSet() = default;
CNrvRuleSet::~CNrvRuleSet() = default;
CNrvRuleSet::CNrvRuleSet(CNrvRuleSet&&) noexcept = default;
CNrvRuleSet& CNrvRuleSet::operator=(CNrvRuleSet&&) noexcept = default;

NRVRESULT CNrvRuleSet::AddRule(const char* pszExpression, const char* pszName, CNrvDataEditingProfile** ppProfile)
{
    if (pszExpression == nullptr)
        return NRV_ERR_INVALID_PARAMETER;
    // Everything is built before the set is touched, so a failure of the
    // parse or of an allocation leaves it as it was.
    SRule rule;
    rule.profile.reset(new CNrvDataEditingProfile);
    const NRVRESULT result = rule.profile->Parse(pszExpression);
    if (result < 0)
        return result;
    if (pszName != nullptr)
        rule.name = pszName;
    rule.expression = pszExpression;
    m_Rules.push_back(std::move(rule));
    if (ppProfile != nullptr)
        *ppProfile = m_Rules.back().profile.get();
    return NRV_OK;
}

CNrvDataEditingProfile* CNrvRuleSet::GetRuleProfile(size_t nRule) const
{
    return nRule < m_Rules.size() ? m_Rules[nRule].profile.get() : nullptr;
}

const char* CNrvRuleSet::GetRuleName(size_t nRule) const
{
    return nRule < m_Rules.size() ? m_Rules[nRule].name.c_str() : nullptr;
}

const char* CNrvRuleSet::GetRuleExpression(size_t nRule) const
{
    return nRule < m_Rules.size() ? m_Rules[nRule].expression.c_str() : nullptr;
}

NRVRESULT CNrvRuleSet::Edit(TNrvScanDecodedData* pDecodedData, size_t* pnRule)
{
    if (pnRule != nullptr)
        *pnRule = kNoRule;
    if (pDecodedData == nullptr || (pDecodedData->String.pValue == nullptr && pDecodedData->String.nLength != 0))
        return NRV_ERR_INVALID_PARAMETER;
    // A profile answers NRV_OK_NOT_TRIGGERED, the record untouched, when its
    // triggers do not hold; any other answer means it took the scan.
    for (size_t i = 0; i < m_Rules.size(); ++i) {
        const NRVRESULT result = m_Rules[i].profile->Edit(pDecodedData);
        if (result != NRV_OK_NOT_TRIGGERED) {
            if (pnRule != nullptr)
                *pnRule = i;
            return result;
        }
    }
    return NRV_OK_NOT_TRIGGERED;
}

void CNrvRuleSet::RemoveAllRules()
{
    m_Rules.clear();
}
