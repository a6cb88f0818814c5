#include "backends/posix/file_writer.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "platform/os/utf8.h"

namespace {

std::string content(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

class PosixWriter : public testing::Test {
protected:
    PosixWriter() { std::filesystem::create_directories(folder); }
    ~PosixWriter() override { std::filesystem::remove_all(folder); }
    std::wstring named(const wchar_t* name) const {
        return os::toWide((folder / "").string()) + name;
    }

    std::filesystem::path folder =
        std::filesystem::temp_directory_path() /
        ("bextora_writer_" +
         std::string(testing::UnitTest::GetInstance()->current_test_info()->name()));
    posix::PosixFileWriter writer;
};

TEST_F(PosixWriter, WritesBytesAsTheyAreInPlaceOfWhatWasThere) {
    std::ofstream(folder / "r.csv") << "a long text that was there";
    auto file = writer.create(named(L"r.csv"));
    ASSERT_TRUE(file);
    EXPECT_EQ(content(folder / "r.csv"), "");
    EXPECT_TRUE(file->write("a\r\r\n"));
    EXPECT_TRUE(file->write(std::string_view("\0b", 2)));
    EXPECT_TRUE(file->close());
    EXPECT_EQ(content(folder / "r.csv"), std::string("a\r\r\n\0b", 6));
    EXPECT_FALSE(writer.takeFailure());
}

TEST_F(PosixWriter, NamesOfAnyLettersAndOfBackslashesAreTakenAsTheyAre) {
    ASSERT_TRUE(writer.create(named(L"\u00fcn\\\u65e5.csv")));
    EXPECT_TRUE(std::filesystem::exists(folder / "\xc3\xbcn\\\xe6\x97\xa5.csv"));
}

TEST_F(PosixWriter, WhatCannotBeOpenedGivesNothing) {
    EXPECT_FALSE(writer.create(L""));
    EXPECT_FALSE(writer.create(named(L"none/r.csv")));
    EXPECT_FALSE(writer.create(os::toWide(folder.string())));
    EXPECT_FALSE(writer.create(named(L"a") + std::wstring(1, L'\0') + L"b"));
    EXPECT_TRUE(std::filesystem::is_empty(folder));
    EXPECT_FALSE(writer.takeFailure());
}

TEST_F(PosixWriter, AFullDiskIsRememberedUntilItIsAskedFor) {
    auto file = writer.create(L"/dev/full");
    if (!file) GTEST_SKIP() << "NOT TESTED: this machine has no /dev/full";
    EXPECT_FALSE(file->write("x"));
    file.reset();
    EXPECT_TRUE(writer.takeFailure());
    EXPECT_FALSE(writer.takeFailure());
}

TEST_F(PosixWriter, NothingIsWrittenAfterClosing) {
    auto file = writer.create(named(L"r.csv"));
    ASSERT_TRUE(file->close());
    EXPECT_FALSE(file->write("x"));
    EXPECT_FALSE(file->close());
    EXPECT_TRUE(writer.takeFailure());
    EXPECT_EQ(content(folder / "r.csv"), "");
}

}  // namespace
