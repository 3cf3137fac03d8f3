#include "EditRows.h"

#include <gtest/gtest.h>

#include "NrvDataEditingProfile.h"

void ExpectEdit(const TEditRow& row)
{
    SCOPED_TRACE(std::string(row.pszExpression) + " over '" + row.data + "'");
    CNrvDataEditingProfile profile;
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
