#include "EditRows.h"

#include <gtest/gtest.h>

#include <cstring>

#include "NrvDataEditingProfile.h"
#include "NrvOperation.h"

void ExpectEdit(const TEditRow& row, unsigned nCommandSets)
{
    SCOPED_TRACE(std::string(row.pszExpression) + " over '" + row.data + "'");
    CNrvDataEditingProfile profile;
    EXPECT_EQ(NRV_OK, profile.EnableCommandSets(nCommandSets));
    const NRVRESULT parse = profile.Parse(row.pszExpression);
    std::vector<char> buffer(row.data.begin(), row.data.end());
    char* const pValue = buffer.empty() ? nullptr : buffer.data();
    TNrvScanDecodedData record = {kNrvScanSymbologyNotSpecified, {0, nullptr}, {buffer.size(), pValue}};
    const NRVRESULT edit = profile.Edit(&record);
    if (parse < 0) {
        EXPECT_EQ(row.nCode, parse);
    }
    EXPECT_EQ(row.nCode, edit);  // a failed parse makes Edit return its code
    if (edit < 0) {
        EXPECT_EQ(pValue, record.String.pValue);
        EXPECT_EQ(buffer.size(), record.String.nLength);
        EXPECT_EQ(row.data, std::string(buffer.begin(), buffer.end()));
        return;
    }
    ASSERT_NE(nullptr, record.String.pValue);
    EXPECT_EQ(row.expected, std::string(record.String.pValue, record.String.nLength));
    EXPECT_EQ('\0', record.String.pValue[record.String.nLength]);
}

std::vector<std::string> SampleArguments(const TNrvCommandInfo& row)
{
    const std::string sample = row.pszSample;
    const size_t nOpen = sample.find('(');
    const size_t nClose = sample.rfind(')');
    std::vector<std::string> arguments;
    if (nOpen == std::string::npos || nClose == std::string::npos || nClose == nOpen + 1)
        return arguments;
    int nDepth = 0;
    arguments.emplace_back();
    for (size_t i = nOpen + 1; i < nClose; ++i) {
        const char c = sample[i];
        nDepth += c == '{' ? 1 : c == '}' ? -1 : 0;
        if (c == ',' && nDepth == 0)
            arguments.emplace_back();
        else
            arguments.back() += c;
    }
    return arguments;
}

std::vector<std::string> SampleArgumentsOver(const TNrvCommandInfo& row, const std::string& text)
{
    std::vector<std::string> arguments = SampleArguments(row);
    for (std::string& argument : arguments) {
        if (argument.find('{') != std::string::npos)
            argument = text;
    }
    return arguments;
}

std::string CallOf(const TNrvCommandInfo& row, const std::vector<std::string>& arguments)
{
    std::string call = std::string("{") + row.pszName + "(";
    for (size_t i = 0; i < arguments.size(); ++i)
        call += (i == 0 ? "" : ",") + arguments[i];
    return call + ")}";
}

CNrvOperation* MakeCommand(const char* pszName, const std::vector<const char*>& parameters,
                           CNrvDataEditingProfile* pProfile)
{
    CNrvOperationFactory* pFactory =
        CNrvOperationDictionary::GetLibraryDictionary()->GetValue(pszName, strlen(pszName));
    CNrvOperation* pOperation = nullptr;
    EXPECT_NE(nullptr, pFactory) << pszName;
    if (pFactory == nullptr || pFactory->CreateOperation(pProfile, &pOperation) < 0)
        return nullptr;
    for (const char* pszParameter : parameters) {
        CNrvParsingString text(pszParameter);
        CNrvOperation* pLiteral = text.IsNumber() ? new CNrvOperationInteger(pProfile, &text)
                                                  : new CNrvOperationString(pProfile, &text);
        EXPECT_GE(pOperation->GetOperationsList()->AddTail(pLiteral), 0);
    }
    return pOperation;
}
