// Drives the C interface (NrvDataEdit.h) through random sequences of its
// calls on one profile and one rule set. Every call must answer with a
// known code and clear or fill its out parameters as the header says; the
// three ways of editing a scan (a new buffer, the caller's buffer, a batch)
// must agree with each other, with the failure description and with the
// explanation's code; a profile whose settings were never set must edit
// exactly as a C++ profile with the default limits; a rules text must read
// exactly when the C++ reader reads it. An allocation over the fuzzing
// limit must come back as NRV_ERR_OUT_OF_MEMORY and leave the handle usable.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "FuzzSupport.h"
#include "NrvDataEdit.h"
#include "NrvDataEditingProfile.h"
#include "NrvSettings.h"
#ifdef NRV_FUZZ_HAVE_RULES
#include "NrvRulesFile.h"
#endif

namespace {

bool IsCallResult(NRVRESULT result)
{
    return NrvFuzzIsKnownResult(result) || result == NRV_ERR_OUT_OF_MEMORY || result == NRV_ERR_TEXT_LIMIT ||
           result == NRV_ERR_WORK_LIMIT || result == NRV_ERR_BUFFER_TOO_SMALL;
}

struct TEdited {
    NRVRESULT result;
    std::string output;
    size_t nRule;
};

// One scan edited the three ways, which must agree; the batch also checks
// that a scan left alone or failed comes back as it was.
TEdited EditThreeWays(TNrvProfile* pProfile, TNrvRuleSet* pRules, const std::string& scan, int nSymbology)
{
    // Exactly the scan's bytes, so that a read past them is reported.
    std::vector<char> bytes(scan.begin(), scan.end());
    const char* pData = bytes.empty() ? nullptr : bytes.data();
    char* pOutput = reinterpret_cast<char*>(1);
    size_t nLength = 99, nRule = 99;
    TEdited edited = {pProfile != nullptr
                          ? NrvProfileEdit(pProfile, pData, bytes.size(), nSymbology, &pOutput, &nLength)
                          : NrvRuleSetEdit(pRules, pData, bytes.size(), nSymbology, &pOutput, &nLength, &nRule),
                      std::string(), pProfile != nullptr ? NRV_NO_RULE : nRule};
    NRV_FUZZ_CHECK(IsCallResult(edited.result));
    if (edited.result < 0) {
        NRV_FUZZ_CHECK(pOutput == nullptr && nLength == 0);
        if (edited.result == NRV_ERR_OUT_OF_MEMORY)
            return edited;
    } else {
        NRV_FUZZ_CHECK(pOutput != nullptr && pOutput[nLength] == '\0');
        edited.output.assign(pOutput, nLength);
        if (edited.result == NRV_OK_NOT_TRIGGERED)
            NRV_FUZZ_CHECK(edited.output == scan);
    }
    NrvFree(pOutput);
    NRV_FUZZ_CHECK(pProfile != nullptr || edited.nRule == NRV_NO_RULE || edited.result != NRV_OK_NOT_TRIGGERED);

    // Into a buffer one byte too small, then into one that fits.
    const size_t nNeeded = edited.output.size() + 1;
    std::vector<char> buffer(nNeeded);
    for (const size_t nSize : {nNeeded - 1, nNeeded}) {
        size_t nInto = 99, nRuleInto = 99;
        const NRVRESULT result =
            pProfile != nullptr
                ? NrvProfileEditInto(pProfile, pData, bytes.size(), nSymbology, buffer.data(), nSize, &nInto)
                : NrvRuleSetEditInto(pRules, pData, bytes.size(), nSymbology, buffer.data(), nSize, &nInto,
                                     &nRuleInto);
        if (result == NRV_ERR_OUT_OF_MEMORY)
            continue;
        if (edited.result < 0) {
            NRV_FUZZ_CHECK(result == edited.result && nInto == 0);
        } else if (nSize < nNeeded) {
            NRV_FUZZ_CHECK(result == NRV_ERR_BUFFER_TOO_SMALL && nInto == edited.output.size());
        } else {
            NRV_FUZZ_CHECK(result == edited.result && std::string(buffer.data(), nInto) == edited.output);
            NRV_FUZZ_CHECK(buffer[nInto] == '\0');
        }
        NRV_FUZZ_CHECK(pProfile != nullptr || nRuleInto == edited.nRule);
    }

    // In a batch of two: the scan, then the empty scan.
    const char* apData[2] = {pData, nullptr};
    const size_t anLengths[2] = {bytes.size(), 0};
    NRVRESULT anCodes[2];
    size_t anEnds[2], anRules[2];
    char* pOutputs = nullptr;
    const NRVRESULT batch =
        pProfile != nullptr
            ? NrvProfileEditMany(pProfile, 2, apData, anLengths, nSymbology, anCodes, &pOutputs, anEnds)
            : NrvRuleSetEditMany(pRules, 2, apData, anLengths, nSymbology, anCodes, &pOutputs, anEnds, anRules);
    if (batch == NRV_OK) {
        const std::string first(pOutputs, anEnds[0]);
        if (anCodes[0] != NRV_ERR_OUT_OF_MEMORY && edited.result != NRV_ERR_OUT_OF_MEMORY)
            NRV_FUZZ_CHECK(anCodes[0] == edited.result && first == (edited.result < 0 ? scan : edited.output));
        NRV_FUZZ_CHECK(anEnds[1] >= anEnds[0] && pOutputs[anEnds[1]] == '\0');
    } else {
        NRV_FUZZ_CHECK(batch == NRV_ERR_INVALID_PARAMETER || batch == NRV_ERR_OUT_OF_MEMORY);
        NRV_FUZZ_CHECK(pOutputs == nullptr);
    }
    NrvFree(pOutputs);

    // The failure description and the explanation say the same code.
    TNrvErrorInfo info;
    const NRVRESULT described = pProfile != nullptr
                                    ? NrvProfileDescribeFailure(pProfile, pData, bytes.size(), nSymbology, &info)
                                    : NrvRuleSetDescribeFailure(pRules, pData, bytes.size(), nSymbology, &info);
    if (described == NRV_OK && info.nCode != NRV_ERR_OUT_OF_MEMORY) {
        NRV_FUZZ_CHECK(info.nCode == edited.result);
        NRV_FUZZ_CHECK((info.nCode < 0) == (info.pszReport[0] != '\0'));
    }
    char* pJson = nullptr;
    size_t nJson = 0;
    const NRVRESULT explained =
        pProfile != nullptr ? NrvProfileExplain(pProfile, pData, bytes.size(), nSymbology, &pJson, &nJson)
                            : NrvRuleSetExplain(pRules, pData, bytes.size(), nSymbology, &pJson, &nJson);
    if (explained == NRV_OK) {
        NRV_FUZZ_CHECK(strlen(pJson) == nJson && pJson[nJson - 1] == '}');
        const std::string code = "\"code\":" + std::to_string(static_cast<long long>(edited.result)) + ",";
        NRV_FUZZ_CHECK(edited.result == NRV_ERR_OUT_OF_MEMORY || std::string(pJson).find(code) != std::string::npos);
    } else {
        NRV_FUZZ_CHECK(explained == NRV_ERR_INVALID_PARAMETER || explained == NRV_ERR_OUT_OF_MEMORY);
    }
    NrvFree(pJson);
    return edited;
}

const char* const kSettingNames[] = {"min-size", "max_size", "symbology", "contains", "starts-with",
                                     "ends_with", "max-text", "max-work",  "min-sise"};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    const CNrvFuzzAllocationLimit limit;
    FuzzedDataProvider in(pData, nSize);
    TNrvProfile* pProfile = nullptr;
    TNrvRuleSet* pRules = nullptr;
    if (NrvProfileNew(&pProfile) < 0 || NrvRuleSetNew(&pRules) < 0) {
        NrvProfileFree(pProfile);
        return 0;
    }
    // The model: the same expression in a C++ profile under the default
    // limits, while the C profile's settings are untouched.
    CNrvDataEditingProfile model;
    CNrvSettings defaults;
    defaults.SetCommandSets(kNrvCommandSetSeed);  // a C profile knows the eighteen until the host enables more
    defaults.Apply(&model);
    bool bModel = true;
    std::string parsed;  // the model's expression, parsed again when the sets change
    bool bParsed = false;
    size_t nRuleCount = 0;

    for (int nStep = 0; nStep < 16 && in.remaining_bytes() > 0; ++nStep) {
        switch (in.ConsumeIntegralInRange<int>(0, 4)) {
        case 0: {
            const std::string expression = in.ConsumeRandomLengthString(512);
            TNrvErrorInfo info;
            const NRVRESULT result = NrvProfileParse(pProfile, expression.c_str(), &info);
            NRV_FUZZ_CHECK(IsCallResult(result));
            if (result == NRV_ERR_OUT_OF_MEMORY)
                break;
            NRV_FUZZ_CHECK(info.nCode == result && (result < 0) == (info.pszReport[0] != '\0'));
            NRV_FUZZ_CHECK(info.nOffset <= strlen(expression.c_str()));
            try {
                NRV_FUZZ_CHECK(model.Parse(expression.c_str()) == result);
                parsed = expression;
                bParsed = true;
            } catch (const std::bad_alloc&) {
                bModel = false;
            }
            break;
        }
        case 4: {
            // 2 is no set: refused, the profile unchanged.
            const unsigned nSets = in.ConsumeIntegralInRange<unsigned>(0, 2);
            TNrvErrorInfo info;
            const NRVRESULT result = NrvProfileEnableCommandSets(pProfile, nSets, &info);
            if (nSets > kNrvCommandSetsAll) {
                NRV_FUZZ_CHECK(result == NRV_ERR_INVALID_PARAMETER);
                break;
            }
            NRV_FUZZ_CHECK(IsCallResult(result));
            if (result == NRV_ERR_OUT_OF_MEMORY || !bModel)
                break;
            try {
                model.EnableCommandSets(nSets);
                NRV_FUZZ_CHECK((bParsed ? model.Parse(parsed.c_str()) : NRV_OK) == result);
            } catch (const std::bad_alloc&) {
                bModel = false;
            }
            break;
        }
        case 1: {
            const size_t nCount = in.ConsumeIntegralInRange<size_t>(0, 3);
            std::vector<std::string> values;
            std::vector<const char*> names, texts;
            for (size_t i = 0; i < nCount; ++i) {
                names.push_back(kSettingNames[in.ConsumeIntegralInRange<size_t>(0, 8)]);
                values.push_back(in.ConsumeRandomLengthString(16));
            }
            for (const std::string& value : values)
                texts.push_back(value.c_str());
            TNrvErrorInfo info;
            const NRVRESULT result = NrvProfileSetSettings(pProfile, names.data(), texts.data(), nCount, &info);
            NRV_FUZZ_CHECK(result == NRV_OK || result == NRV_ERR_INVALID_PARAMETER || result == NRV_ERR_OUT_OF_MEMORY);
            if (result != NRV_ERR_OUT_OF_MEMORY)
                NRV_FUZZ_CHECK(info.nCode == result && (result < 0) == (info.pszMessage[0] != '\0'));
            bModel = bModel && result != NRV_OK;  // refused settings change nothing
            break;
        }
        case 2: {
            const std::string text = in.ConsumeRandomLengthString(1024);
            TNrvErrorInfo info;
            const NRVRESULT result = NrvRuleSetReadText(pRules, text.data(), text.size(), "fuzz.toml", &info);
            NRV_FUZZ_CHECK(result == NRV_OK || result == NRV_ERR_RULES_FILE || result == NRV_ERR_OUT_OF_MEMORY);
#ifdef NRV_FUZZ_HAVE_RULES
            if (result != NRV_ERR_OUT_OF_MEMORY) {
                CNrvRuleSet rules;
                std::vector<TNrvRulesError> errors;
                try {
                    NRV_FUZZ_CHECK(NrvReadRules(text.data(), text.size(), &rules, &errors) == (result == NRV_OK));
                    NRV_FUZZ_CHECK(result == NRV_OK || info.nErrorCount == errors.size());
                } catch (const std::bad_alloc&) {
                }
            }
#endif
            NRV_FUZZ_CHECK(NrvRuleSetGetRuleCount(pRules, &nRuleCount) == NRV_OK);
            break;
        }
        default: {
            // Symbologies just past either end of the enumeration are refused.
            const int nSymbology = in.ConsumeIntegralInRange<int>(-1, kNrvScanSymbologyLastSymbologyID);
            const std::string scan = in.ConsumeRandomLengthString(256);
            const TEdited edited = EditThreeWays(pProfile, nullptr, scan, nSymbology);
            if (nSymbology < 0 || nSymbology >= kNrvScanSymbologyLastSymbologyID)
                NRV_FUZZ_CHECK(edited.result == NRV_ERR_INVALID_PARAMETER);
            if (bModel && edited.result != NRV_ERR_OUT_OF_MEMORY && edited.result != NRV_ERR_INVALID_PARAMETER) {
                std::string copy = scan;
                TNrvScanDecodedData record = {static_cast<ENrvScanSymbologyID>(nSymbology),
                                              {0, nullptr},
                                              {copy.size(), copy.empty() ? nullptr : &copy[0]}};
                try {
                    NRV_FUZZ_CHECK(model.Edit(&record) == edited.result);
                    if (edited.result >= 0)
                        NRV_FUZZ_CHECK(std::string(record.String.pValue, record.String.nLength) == edited.output);
                } catch (const std::bad_alloc&) {
                }
            }
            const TEdited ruled = EditThreeWays(nullptr, pRules, scan, nSymbology);
            NRV_FUZZ_CHECK(ruled.nRule == NRV_NO_RULE || ruled.nRule < nRuleCount);
            break;
        }
        }
    }
    NrvRuleSetFree(pRules);
    NrvProfileFree(pProfile);
    return 0;
}
