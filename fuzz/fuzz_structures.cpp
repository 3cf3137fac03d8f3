// Drives the linked list, the value record and the parsing string through
// random sequences of their operations, each against a plain model of what
// it must hold, and checks every invariant after every step.
#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "FuzzSupport.h"
#include "NrvList.h"
#include "NrvOperationBase.h"
#include "NrvOperationResult.h"
#include "NrvParsingString.h"

namespace {

// ---------------------------------------------------------------- list

void* Element(unsigned n)
{
    return reinterpret_cast<void*>(static_cast<uintptr_t>(n) * 16 + 16);
}

void CheckList(const CNrvList& list, const std::vector<void*>& model)
{
    NRV_FUZZ_CHECK(list.GetCount() == static_cast<int>(model.size()));
    NRV_FUZZ_CHECK((list.GetHeadPosition() == nullptr) == model.empty());
    NRV_FUZZ_CHECK((list.GetTailPosition() == nullptr) == model.empty());
    TNrvPosition position = list.GetHeadPosition();
    for (void* pExpected : model) {
        void* pData = nullptr;
        NRV_FUZZ_CHECK(list.GetNext(&position, &pData) >= 0 && pData == pExpected);
    }
    NRV_FUZZ_CHECK(position == nullptr);
    position = list.GetTailPosition();
    for (auto it = model.rbegin(); it != model.rend(); ++it) {
        void* pData = nullptr;
        NRV_FUZZ_CHECK(list.GetPrevious(&position, &pData) >= 0 && pData == *it);
    }
    NRV_FUZZ_CHECK(position == nullptr);
}

TNrvPosition PositionOf(const CNrvList& list, size_t nIndex)
{
    TNrvPosition position = nullptr;
    NRV_FUZZ_CHECK(list.FindIndex(nIndex, &position) >= 0 && position != nullptr);
    return position;
}

void DriveList(FuzzedDataProvider& in)
{
    CNrvList list;
    std::vector<void*> model;
    unsigned nNext = 0;
    void* const pSentinel = Element(0xFFFFFu);
    const int nSteps = in.ConsumeIntegralInRange<int>(0, 64);
    for (int step = 0; step < nSteps && in.remaining_bytes() > 0; ++step) {
        const size_t nCount = model.size();
        const size_t nAt = in.ConsumeIntegralInRange<size_t>(0, nCount + 1);
        void* pData = pSentinel;
        switch (in.ConsumeIntegralInRange<int>(0, 9)) {
        case 0:
            NRV_FUZZ_CHECK(list.AddHead(Element(nNext)) >= 0);
            model.insert(model.begin(), Element(nNext++));
            break;
        case 1:
            NRV_FUZZ_CHECK(list.AddTail(Element(nNext)) >= 0);
            model.push_back(Element(nNext++));
            break;
        case 2:
        case 3: {
            const bool bHead = nAt % 2 == 0;
            const NRVRESULT result = bHead ? list.RemoveHead(&pData) : list.RemoveTail(&pData);
            if (model.empty()) {
                NRV_FUZZ_CHECK(result < 0 && pData == pSentinel);
            } else {
                NRV_FUZZ_CHECK(result >= 0 && pData == (bHead ? model.front() : model.back()));
                if (bHead)
                    model.erase(model.begin());
                else
                    model.pop_back();
            }
            break;
        }
        case 4: {
            TNrvPosition position = pSentinel;
            const NRVRESULT result = list.FindIndex(nAt, &position);
            if (nAt < nCount) {
                NRV_FUZZ_CHECK(result >= 0 && list.GetAt(position, &pData) >= 0 && pData == model[nAt]);
            } else {
                NRV_FUZZ_CHECK(result < 0);
            }
            break;
        }
        case 5:
            if (nAt < nCount) {
                NRV_FUZZ_CHECK(list.RemoveAt(PositionOf(list, nAt), &pData) >= 0 && pData == model[nAt]);
                model.erase(model.begin() + static_cast<std::ptrdiff_t>(nAt));
            }
            break;
        case 6:
        case 7:
            if (nAt < nCount) {
                const bool bBefore = (step % 2) == 0;
                const TNrvPosition position = PositionOf(list, nAt);
                NRV_FUZZ_CHECK((bBefore ? list.InsertBefore(position, Element(nNext))
                                        : list.InsertAfter(position, Element(nNext))) >= 0);
                model.insert(model.begin() + static_cast<std::ptrdiff_t>(bBefore ? nAt : nAt + 1), Element(nNext++));
            }
            break;
        case 8: {
            // A null position fails and leaves the out-value alone.
            TNrvPosition position = nullptr;
            NRV_FUZZ_CHECK(list.GetNext(&position, &pData) < 0 && pData == pSentinel);
            NRV_FUZZ_CHECK(list.GetPrevious(&position, &pData) < 0 && pData == pSentinel);
            NRV_FUZZ_CHECK(list.GetAt(nullptr, &pData) < 0 && pData == pSentinel);
            break;
        }
        case 9: {
            // Remove the element just walked past: the walk goes on from its neighbour.
            TNrvPosition position = list.GetHeadPosition();
            size_t nIndex = 0;
            std::vector<void*> kept;
            while (position != nullptr) {
                const TNrvPosition current = position;
                NRV_FUZZ_CHECK(list.GetNext(&position, &pData) >= 0 && pData == model[nIndex]);
                if ((nIndex + nAt) % 3 == 0) {
                    void* pRemoved = nullptr;
                    NRV_FUZZ_CHECK(list.RemoveAt(current, &pRemoved) >= 0 && pRemoved == model[nIndex]);
                } else {
                    kept.push_back(model[nIndex]);
                }
                ++nIndex;
            }
            NRV_FUZZ_CHECK(nIndex == nCount);
            model.swap(kept);
            break;
        }
        }
        CheckList(list, model);
    }
    // Emptying from the head delivers the elements in order, then fails.
    for (void* pExpected : model) {
        void* pData = nullptr;
        NRV_FUZZ_CHECK(list.RemoveHead(&pData) >= 0 && pData == pExpected);
    }
    void* pData = pSentinel;
    NRV_FUZZ_CHECK(list.RemoveHead(&pData) < 0 && pData == pSentinel && list.GetCount() == 0);
    // Left filled on purpose half of the time: the destructor frees the nodes.
    for (unsigned i = 0; i < nNext % 5; ++i)
        list.AddTail(Element(i));
}

// ---------------------------------------------------------------- value record

struct TRecordModel {
    int nType = CNrvOperationResult::typeInt;
    int nInteger = 0;
    bool bText = false;  // a stored text, which SetResult leaves in place
    std::string text;
    size_t nLength = 0;  // the recorded length, also kept by SetResult
    NRVRESULT error = NRV_OK;
};

void CheckRecord(CNrvOperationResult& record, TRecordModel& model)
{
    NRV_FUZZ_CHECK(record.GetType() == model.nType);
    NRV_FUZZ_CHECK(record.GetError() == model.error);
    NRV_FUZZ_CHECK(record.GetResultInteger() == static_cast<size_t>(static_cast<int64_t>(model.nInteger)));
    if (!model.bText && model.nType == CNrvOperationResult::typeInt) {
        // The decimal text is made on first demand and kept.
        char szDecimal[16];
        std::snprintf(szDecimal, sizeof szDecimal, "%d", model.nInteger);
        model.bText = true;
        model.text = szDecimal;
        model.nLength = model.text.size();
    }
    const char* pszText = record.GetResultString();
    const size_t nLength = record.GetResultStringLength();
    NRV_FUZZ_CHECK(nLength == model.nLength);
    if (!model.bText) {
        NRV_FUZZ_CHECK(pszText == nullptr && nLength == 0);
        return;
    }
    NRV_FUZZ_CHECK(pszText != nullptr && pszText[nLength] == '\0');
    NRV_FUZZ_CHECK(std::string(pszText, nLength) == model.text);
}

TRecordModel CopiedModel(const TRecordModel& source)
{
    TRecordModel copy = source;
    if (!source.bText || source.text.empty()) {
        // A 0-byte text gives a copy without text.
        copy.bText = false;
        copy.text.clear();
    }
    return copy;
}

void DriveRecords(FuzzedDataProvider& in)
{
    CNrvOperationResult records[3];
    TRecordModel models[3];
    const int nSteps = in.ConsumeIntegralInRange<int>(0, 48);
    for (int step = 0; step < nSteps && in.remaining_bytes() > 0; ++step) {
        const size_t i = in.ConsumeIntegralInRange<size_t>(0, 2);
        const size_t j = in.ConsumeIntegralInRange<size_t>(0, 2);
        switch (in.ConsumeIntegralInRange<int>(0, 6)) {
        case 0: {
            const std::string text = in.ConsumeRandomLengthString(64);
            // A text at the very end of its own allocation, zero bytes included.
            std::unique_ptr<char[]> exact(new char[text.size() + 1]);
            std::memcpy(exact.get(), text.data(), text.size());
            NRV_FUZZ_CHECK(records[i].WriteResult(text.empty() ? nullptr : exact.get(), text.size()) >= 0);
            models[i].nType = CNrvOperationResult::typeString;
            models[i].bText = true;
            models[i].text = text;
            models[i].nLength = text.size();
            break;
        }
        case 1: {
            const int nValue = in.ConsumeIntegral<int>();
            records[i].SetResult(nValue);
            models[i].nType = CNrvOperationResult::typeInt;
            models[i].nInteger = nValue;
            break;
        }
        case 2: {
            const NRVRESULT error = in.ConsumeIntegralInRange<int>(-100, 1);
            records[i].SetError(error);
            models[i].error = error;
            break;
        }
        case 3:
            records[i] = records[j];  // self-assignment included
            if (i != j)
                models[i] = CopiedModel(models[j]);
            break;
        case 4: {
            CNrvOperationResult copy(records[j]);
            TRecordModel copyModel = CopiedModel(models[j]);
            CheckRecord(copy, copyModel);
            records[i] = copy;
            models[i] = CopiedModel(copyModel);
            break;
        }
        case 5:
            records[i].~CNrvOperationResult();
            new (&records[i]) CNrvOperationResult();
            models[i] = TRecordModel();
            break;
        case 6:
            CheckRecord(records[i], models[i]);
            break;
        }
        // Not every step asks for the texts: a record whose text was never
        // asked for must copy and assign as well.
        if (in.ConsumeBool())
            CheckRecord(records[j], models[j]);
    }
    for (size_t i = 0; i < 3; ++i)
        CheckRecord(records[i], models[i]);
}

// ---------------------------------------------------------------- parsing string

std::string g_traceLine;
bool g_bTraceError = false;

void KeepTrace(bool bError, const char* pszLine, void*)
{
    g_traceLine = pszLine;
    g_bTraceError = bError;
}

bool ModelIsNumber(const std::string& text)
{
    size_t i = 0;
    while (i < text.size() && std::isspace(static_cast<unsigned char>(text[i])))
        ++i;
    bool bNegative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-'))
        bNegative = text[i++] == '-';
    const size_t nDigits = i;
    while (i < text.size() && text[i] >= '0' && text[i] <= '9')
        ++i;
    if (i == nDigits)
        return false;
    std::string digits = text.substr(nDigits, i - nDigits);
    while (i < text.size() && std::isspace(static_cast<unsigned char>(text[i])))
        ++i;
    if (i != text.size())
        return false;
    digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size()));
    const std::string limit = bNegative ? "2147483648" : "2147483647";
    return digits.size() < limit.size() || (digits.size() == limit.size() && digits <= limit);
}

struct TWindow {
    std::unique_ptr<CNrvParsingString> window;
    std::string model;
};

void CheckWindow(const TWindow& w)
{
    NRV_FUZZ_CHECK(w.window->GetLength() == w.model.size());
    NRV_FUZZ_CHECK(w.window->IsEmpty() == w.model.empty());
    NRV_FUZZ_CHECK(w.model.empty() || std::memcmp(w.window->GetString(), w.model.data(), w.model.size()) == 0);
}

void DriveParsingStrings(FuzzedDataProvider& in)
{
    // The text every window lies on; it outlives them all, as the profile's
    // expression outlives the parse.
    std::string base = in.ConsumeRandomLengthString(256);
    base.erase(std::remove(base.begin(), base.end(), '\0'), base.end());
    std::vector<TWindow> windows;
    windows.push_back({std::unique_ptr<CNrvParsingString>(new CNrvParsingString(base.c_str())), base});
    const char kPairs[][2] = {{'{', '}'}, {'(', ')'}, {'<', '>'}};
    static const std::string kSets[] = {",", "{}", "()", "", "a{"};

    const int nSteps = in.ConsumeIntegralInRange<int>(0, 48);
    for (int step = 0; step < nSteps && in.remaining_bytes() > 0 && !windows.empty(); ++step) {
        TWindow& w = windows[in.ConsumeIntegralInRange<size_t>(0, windows.size() - 1)];
        const char c = in.ConsumeBool() ? in.ConsumeIntegral<char>() : (w.model.empty() ? ',' : w.model[0]);
        TWindow piece;
        switch (in.ConsumeIntegralInRange<int>(0, 9)) {
        case 0: {
            const size_t nAt = std::min(w.model.find(c), w.model.size());
            piece.window.reset(new CNrvParsingString(w.window->ExtractBefore(c)));
            piece.model = w.model.substr(0, nAt);
            w.model.erase(0, nAt);
            break;
        }
        case 1: {
            const size_t nIndex = in.ConsumeIntegralInRange<size_t>(0, w.model.size());
            piece.window.reset(new CNrvParsingString(w.window->ExtractBeforeIndex(nIndex)));
            piece.model = w.model.substr(0, nIndex);
            w.model.erase(0, nIndex);
            break;
        }
        case 2: {
            const char* pPair = kPairs[in.ConsumeIntegralInRange<size_t>(0, 2)];
            if (!w.model.empty() && w.model[0] != pPair[0])
                break;  // only called on a window that begins with the opening character
            piece.window.reset(new CNrvParsingString(w.window->Extract(pPair[0], pPair[1])));
            if (w.model.empty())
                break;
            size_t nLevel = 1, i = 1;
            for (; i < w.model.size(); ++i) {
                if (w.model[i] == pPair[0])
                    ++nLevel;
                else if (w.model[i] == pPair[1] && --nLevel == 0)
                    break;
            }
            if (i < w.model.size()) {
                piece.model = w.model.substr(1, i - 1);
                w.model.erase(0, i);
            } else {
                NRV_FUZZ_CHECK(piece.window->GetFlag() == CNrvOperation::kFlagCommand);
                piece.model = w.model.substr(1);
                w.model.clear();
            }
            break;
        }
        case 3: {
            const std::string& set = kSets[in.ConsumeIntegralInRange<size_t>(0, 4)];
            CNrvParsingString setWindow(set.c_str());
            const NRVRESULT result = w.window->Remove(&setWindow);
            if (w.model.empty()) {
                NRV_FUZZ_CHECK(result == NRV_OK);
            } else if (set.find(w.model[0]) != std::string::npos) {
                NRV_FUZZ_CHECK(result == NRV_OK);
                w.model.erase(0, 1);
            } else {
                NRV_FUZZ_CHECK(result < 0);
            }
            break;
        }
        case 4:
            piece.window.reset(new CNrvParsingString(*w.window));
            piece.model = w.model;
            break;
        case 5: {
            TWindow& target = windows[in.ConsumeIntegralInRange<size_t>(0, windows.size() - 1)];
            *target.window = *w.window;  // self-assignment included
            target.model = w.model;
            break;
        }
        case 6: {
            std::string text = in.ConsumeRandomLengthString(32);
            text.erase(std::remove(text.begin(), text.end(), '\0'), text.end());
            NRV_FUZZ_CHECK(w.window->WriteString(text.c_str()) == NRV_OK);
            w.model = text;
            break;
        }
        case 7: {
            // Pieces cut from a window outlive it.
            const size_t nVictim = in.ConsumeIntegralInRange<size_t>(0, windows.size() - 1);
            windows.erase(windows.begin() + static_cast<std::ptrdiff_t>(nVictim));
            break;
        }
        case 8: {
            NRV_FUZZ_CHECK(w.window->IsNumber() == ModelIsNumber(w.model));
            const int nFound = w.window->Find(c);
            const size_t nAt = w.model.find(c);
            NRV_FUZZ_CHECK(nAt == std::string::npos ? nFound == -1 : nFound == static_cast<int>(nAt));
            const int nFlag = in.ConsumeIntegralInRange<int>(0, 3);
            w.window->SetFlag(nFlag);
            NRV_FUZZ_CHECK(w.window->GetFlag() == nFlag);
            break;
        }
        case 9: {
            static const char* const kFormats[] = {"%s", "Parsing String:%s", "The string %s is a command", "none"};
            const std::string format = kFormats[in.ConsumeIntegralInRange<size_t>(0, 3)];
            const bool bError = in.ConsumeBool();
            g_traceLine = "unset";
            w.window->DbgFormatDump(bError, format.c_str());
            std::string expected = format;
            const size_t nAt = expected.find("%s");
            if (nAt != std::string::npos)
                expected.replace(nAt, 2, w.model);
            NRV_FUZZ_CHECK(g_bTraceError == bError);
            // The line is a C string: a window is shown up to a zero byte at most.
            NRV_FUZZ_CHECK(g_traceLine == expected.substr(0, std::strlen(expected.c_str())));
            break;
        }
        }
        if (piece.window)
            windows.push_back(std::move(piece));
        for (const TWindow& each : windows)
            CheckWindow(each);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    static const bool s_bTracing = (CNrvParsingString::SetTraceCallback(&KeepTrace, nullptr), true);
    (void)s_bTracing;
    FuzzedDataProvider in(pData, nSize);
    CNrvFuzzAllocationLimit limit;
    while (in.remaining_bytes() > 0) {
        switch (in.ConsumeIntegralInRange<int>(0, 2)) {
        case 0:
            DriveList(in);
            break;
        case 1:
            DriveRecords(in);
            break;
        case 2:
            DriveParsingStrings(in);
            break;
        }
    }
    return 0;
}
