#include "NrvSettings.h"

#include "NrvEscapes.h"
#include "NrvShownBytes.h"
#include "NrvSymbologies.h"

namespace {

const size_t kLargestSize = static_cast<size_t>(-1);

std::string Quoted(std::string_view text)
{
    return "'" + NrvShown(text, kNrvBytesMessage) + "'";
}

bool Fail(TNrvSettingError::EProblem problem, ENrvSetting setting, std::string shown, TNrvSettingError* pError,
          std::string detail = std::string())
{
    pError->problem = problem;
    pError->setting = setting;
    pError->shown = std::move(shown);
    pError->detail = std::move(detail);
    pError->nValue = pError->nLimit = 0;
    return false;
}

}  // namespace

std::string TNrvSettingError::Describe(const TNrvSettingNames& names) const
{
    const std::string name = names.apszSetting[setting];
    switch (problem) {
    case kBadEscape: return name + " " + shown + ": " + detail;
    case kZeroByte: return name + " " + shown + ": a trigger text cannot hold a zero byte";
    case kNotASize:
    case kTooLarge: return "invalid size " + shown + " for " + name + " (" + detail + ")";
    case kUnknownSymbology:
        if (!detail.empty())
            return "unknown symbology " + shown + " (" + detail + ")";
        if (names.pszSymbologyList != nullptr)
            return "unknown symbology " + shown + " (see " + names.pszSymbologyList + " for the names)";
        return "unknown symbology " + shown;
    case kMinimumAboveMaximum:
        return name + " " + std::to_string(nValue) + " is above " + names.apszSetting[kNrvSettingMaximumSize] + " " +
               std::to_string(nLimit);
    case kTextAboveMaximum:
        return name + " holds " + std::to_string(nValue) + " bytes, more than " +
               names.apszSetting[kNrvSettingMaximumSize] + " " + std::to_string(nLimit);
    }
    return name;
}

bool NrvReadSize(std::string_view text, size_t* pnSize)
{
    if (text.empty())
        return false;
    size_t nSize = 0;
    for (const char c : text) {
        if (c < '0' || c > '9')
            return false;
        const size_t nDigit = static_cast<size_t>(c - '0');
        if (nSize > (kLargestSize - nDigit) / 10)
            return false;
        nSize = nSize * 10 + nDigit;
    }
    *pnSize = nSize;
    return true;
}

bool NrvReadSymbology(std::string_view text, ENrvScanSymbologyID* pId, TNrvSettingError* pError)
{
    // Names hold no zero byte; one would cut the text short.
    const std::string name(text);
    if (name.empty() || name.find('\0') != std::string::npos || !NrvParseSymbology(name.c_str(), pId))
        return Fail(TNrvSettingError::kUnknownSymbology, kNrvSettingSymbologies, Quoted(text), pError);
    return true;
}

size_t CNrvSettings::*CNrvSettings::SizeMember(ENrvSetting setting)
{
    switch (setting) {
    case kNrvSettingMinimumSize: return &CNrvSettings::m_nMinimumSize;
    case kNrvSettingMaximumSize: return &CNrvSettings::m_nMaximumSize;
    case kNrvSettingMaximumText: return &CNrvSettings::m_nMaximumText;
    default: return &CNrvSettings::m_nMaximumWork;
    }
}

size_t CNrvSettings::Size(ENrvSetting setting) const
{
    return this->*SizeMember(setting);
}

const std::string& CNrvSettings::Text(ENrvSetting setting) const
{
    return m_Texts[setting - kNrvSettingContains];
}

bool CNrvSettings::ReadSize(ENrvSetting setting, std::string_view text, TNrvSettingError* pError)
{
    if (NrvReadSize(text, &(this->*SizeMember(setting))))
        return true;
    // All digits, yet not read: too many of them.
    const bool bDigits = !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
    if (bDigits)
        return Fail(TNrvSettingError::kTooLarge, setting, Quoted(text), pError,
                    "at most " + std::to_string(kLargestSize));
    return Fail(TNrvSettingError::kNotASize, setting, Quoted(text), pError, "a decimal byte count");
}

bool CNrvSettings::SetSize(ENrvSetting setting, long long nValue, TNrvSettingError* pError)
{
    if (nValue < 0)
        return Fail(TNrvSettingError::kNotASize, setting, std::to_string(nValue), pError, "a byte count, 0 or more");
    if (static_cast<unsigned long long>(nValue) > kLargestSize)
        return Fail(TNrvSettingError::kTooLarge, setting, std::to_string(nValue), pError,
                    "at most " + std::to_string(kLargestSize));
    this->*SizeMember(setting) = static_cast<size_t>(nValue);
    return true;
}

bool CNrvSettings::ReadText(ENrvSetting setting, std::string_view text, bool bEscapes, TNrvSettingError* pError)
{
    std::string decoded, problem;
    if (!bEscapes)
        decoded = text;
    else if (!NrvUnescape(text.data(), text.size(), &decoded, &problem))
        return Fail(TNrvSettingError::kBadEscape, setting, Quoted(text), pError, problem);
    if (decoded.find('\0') != std::string::npos)
        return Fail(TNrvSettingError::kZeroByte, setting, Quoted(text), pError);
    m_Texts[setting - kNrvSettingContains] = std::move(decoded);
    return true;
}

bool CNrvSettings::AddSymbology(std::string_view text, TNrvSettingError* pError)
{
    ENrvScanSymbologyID id;
    if (!NrvReadSymbology(text, &id, pError))
        return false;
    m_Symbologies.push_back(id);
    return true;
}

bool CNrvSettings::AddSymbology(long long nId, TNrvSettingError* pError)
{
    if (nId < 0 || nId >= kNrvScanSymbologyLastSymbologyID)
        return Fail(TNrvSettingError::kUnknownSymbology, kNrvSettingSymbologies, std::to_string(nId), pError,
                    "numbers run from 0 to " + std::to_string(kNrvScanSymbologyLastSymbologyID - 1));
    m_Symbologies.push_back(static_cast<int>(nId));
    return true;
}

bool CNrvSettings::Check(std::vector<TNrvSettingError>* pErrors) const
{
    const size_t nBefore = pErrors->size();
    if (m_nMaximumSize == 0)
        return true;
    TNrvSettingError error;
    error.nLimit = m_nMaximumSize;
    if (m_nMinimumSize > m_nMaximumSize) {
        error.problem = TNrvSettingError::kMinimumAboveMaximum;
        error.setting = kNrvSettingMinimumSize;
        error.nValue = m_nMinimumSize;
        pErrors->push_back(error);
    }
    for (const ENrvSetting setting : {kNrvSettingContains, kNrvSettingStartsWith, kNrvSettingEndsWith}) {
        if (Text(setting).size() > m_nMaximumSize) {
            error.problem = TNrvSettingError::kTextAboveMaximum;
            error.setting = setting;
            error.nValue = Text(setting).size();
            pErrors->push_back(error);
        }
    }
    return pErrors->size() == nBefore;
}

void CNrvSettings::Apply(CNrvDataEditingProfile* pProfile) const
{
    // Empty texts and sizes of 0 leave a trigger unset, as the profile defines.
    pProfile->ResetTrigger();
    pProfile->WriteTriggerMinimumSize(m_nMinimumSize);
    pProfile->WriteTriggerMaximumSize(m_nMaximumSize);
    for (const int nId : m_Symbologies)
        pProfile->AddTriggerSymbology(nId);
    pProfile->WriteTriggerContains(m_Texts[0].c_str());
    pProfile->WriteTriggerStartsBy(m_Texts[1].c_str());
    pProfile->WriteTriggerEndsWith(m_Texts[2].c_str());
    pProfile->EnableCommandSets(m_nCommandSets);
    ApplyLimits(pProfile);
}

void CNrvSettings::ApplyLimits(CNrvDataEditingProfile* pProfile) const
{
    const TNrvLimits limits = Limits();
    pProfile->WriteLimitMaximumTextSize(limits.nMaximumTextSize);
    pProfile->WriteLimitWorkBudget(limits.nWorkBase, limits.nWorkPerScanByte);
}

TNrvLimits CNrvSettings::Limits() const
{
    TNrvLimits limits;
    limits.nMaximumTextSize = m_nMaximumText;
    limits.nWorkBase = m_nMaximumWork != 0 ? kWorkBase : 0;
    limits.nWorkPerScanByte = m_nMaximumWork;
    return limits;
}
