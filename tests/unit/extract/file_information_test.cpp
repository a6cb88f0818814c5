#include "extract/file_information.h"

#include <gtest/gtest.h>

namespace {

using Texts = std::vector<std::wstring>;

Texts valuesOf(const std::wstring& path, wchar_t separator = L'\\') {
    Texts names, values;
    extract::AddFileInformation(path, names, values, separator);
    EXPECT_EQ(names, (Texts{L"File Path", L"File Name", L"Volume", L"Difference"}));
    return values;
}

TEST(FileInformation, SplitsAtTheLastBackslash) {
    EXPECT_EQ(valuesOf(L"C:\\models\\gear.box.stp"),
              (Texts{L"C:\\models", L"gear.box.stp", L"", L"-"}));
    EXPECT_EQ(valuesOf(L"C:\\models\\"), (Texts{L"C:\\models", L"", L"", L"-"}));
    EXPECT_EQ(valuesOf(L"\\gear.stp"), (Texts{L"", L"gear.stp", L"", L"-"}));
}

TEST(FileInformation, APathWithoutABackslashIsFolderAndName) {
    EXPECT_EQ(valuesOf(L"gear.stp"), (Texts{L"gear.stp", L"gear.stp", L"", L"-"}));
    EXPECT_EQ(valuesOf(L"/models/gear.stp"),
              (Texts{L"/models/gear.stp", L"/models/gear.stp", L"", L"-"}));
    EXPECT_EQ(valuesOf(L""), (Texts{L"", L"", L"", L"-"}));
}

TEST(FileInformation, SplitsAtTheMachinesOwnSeparator) {
    EXPECT_EQ(valuesOf(L"/models/a\\b.stp", L'/'), (Texts{L"/models", L"a\\b.stp", L"", L"-"}));
    EXPECT_EQ(valuesOf(L"/gear.stp", L'/'), (Texts{L"", L"gear.stp", L"", L"-"}));
}

TEST(FileInformation, IsAppended) {
    Texts names = {L"name"}, values = {L"value"};
    extract::AddFileInformation(L"a\\b", names, values);
    EXPECT_EQ(names.size(), 5U);
    EXPECT_EQ(values, (Texts{L"value", L"a", L"b", L"", L"-"}));
}

}  // namespace
