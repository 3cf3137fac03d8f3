#include "NrvRuleSet.h"

#include <cstring>
#include <utility>

#include "NrvGs1.h"

bool TNrvGs1Condition::Holds(const char* pData, size_t nLength) const
{
    if (!IsSet())
        return true;
    CNrvGs1Reader reader(pData, nLength);
    TNrvGs1Element element;
    std::vector<bool> found(ais.size(), false);
    size_t nFound = 0;
    while (reader.Next(&element)) {
        for (size_t i = 0; i < ais.size(); ++i) {
            if (!found[i] && ais[i].size() == element.nAiLength &&
                memcmp(ais[i].data(), pData + element.nAiOffset, element.nAiLength) == 0) {
                found[i] = true;
                ++nFound;
            }
        }
    }
    const bool bValid = !reader.Failed();
    if (message == kNotAMessage)
        return !bValid && ais.empty();
    return bValid && nFound == ais.size();
}

CNrvRuleSet::CNrvRuleSet() = default;
CNrvRuleSet::~CNrvRuleSet() = default;
CNrvRuleSet::CNrvRuleSet(CNrvRuleSet&&) noexcept = default;
CNrvRuleSet& CNrvRuleSet::operator=(CNrvRuleSet&&) noexcept = default;

NRVRESULT CNrvRuleSet::AddRule(const char* pszExpression, const char* pszName, CNrvDataEditingProfile** ppProfile,
                               unsigned nCommandSets)
{
    if (pszExpression == nullptr)
        return NRV_ERR_INVALID_PARAMETER;
    // Everything is built before the set is touched, so a failure of the
    // parse or of an allocation leaves it as it was.
    SRule rule;
    rule.profile.reset(new CNrvDataEditingProfile);
    NRVRESULT result = rule.profile->EnableCommandSets(nCommandSets);
    if (result >= 0)
        result = rule.profile->Parse(pszExpression);
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

NRVRESULT CNrvRuleSet::SetRuleGs1Condition(size_t nRule, const TNrvGs1Condition& condition)
{
    if (nRule >= m_Rules.size())
        return NRV_ERR_INVALID_PARAMETER;
    for (const std::string& ai : condition.ais)
        if (NrvGs1LookupAi(ai.data(), ai.size()) == nullptr)
            return NRV_ERR_INVALID_PARAMETER;
    m_Rules[nRule].gs1 = condition;
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
        const TNrvGs1Condition& gs1 = m_Rules[i].gs1;
        if (gs1.IsSet() && !gs1.Holds(pDecodedData->String.pValue, pDecodedData->String.nLength))
            continue;
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
