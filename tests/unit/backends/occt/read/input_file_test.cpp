#include "backends/occt/read/input_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "tests/support/cli_runner.h"

namespace {

std::string refusal(const std::string& path) {
    std::string bytes;
    const auto cause = occt::readInput(path, bytes);
    return cause ? cause->code + ": " + cause->text : std::string();
}

TEST(InputFile, TheWholeFileIsRead) {
    const support::ScratchFolder scratch;
    const std::string content = std::string("a\0b\r\n", 5) + std::string(100'000, 'x');
    std::string bytes = "before";
    EXPECT_FALSE(occt::readInput(scratch.write("Wälle 'x'.step", content), bytes));
    EXPECT_EQ(bytes, content);
}

TEST(InputFile, AByteOrderMarkIsNoPartOfTheText) {
    const support::ScratchFolder scratch;
    std::string bytes;
    EXPECT_FALSE(occt::readInput(scratch.write("a.step", "\xEF\xBB\xBFISO"), bytes));
    EXPECT_EQ(bytes, "ISO");
}

TEST(InputFile, WhatCantBeReadHasItsCause) {
    const support::ScratchFolder scratch;
    const std::string folder = scratch.path().string();
    EXPECT_EQ(refusal(folder + "/none"), "missing: " + folder + "/none does not exist.");
    EXPECT_EQ(refusal(folder), "unreadable: " + folder + " is a folder, not a file.");
    const std::string empty = scratch.write("empty", "");
    EXPECT_EQ(refusal(empty), "unreadable: " + empty + " is empty.");
    const std::string pipe = folder + "/pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(refusal(pipe), "unreadable: " + pipe + " is not a regular file.")
        << "and nobody waits for its other end";
    EXPECT_EQ(refusal(folder + "/" + std::string(300, 'x')).substr(0, 12), "unreadable: ");
}

TEST(InputFile, AFileWithoutPermissionIsUnreadable) {
    if (geteuid() == 0) GTEST_SKIP() << "SKIPPED: nothing is forbidden to this user";
    const support::ScratchFolder scratch;
    const std::string path = scratch.write("a.step", "x");
    ASSERT_EQ(chmod(path.c_str(), 0), 0);
    EXPECT_EQ(refusal(path), "unreadable: " + path + " cannot be read; check its permissions.");
}

TEST(InputFile, FilesPastTheLimitAreRefusedUnread) {
    const support::ScratchFolder scratch;
    const std::string path = scratch.write("large", "x");
    // A hole: it takes no space.
    ASSERT_EQ(truncate(path.c_str(), (off_t{4} << 30) + 1), 0);
    EXPECT_EQ(refusal(path), "too-large: " + path +
                                 " is too large: it has 4294967297 bytes; the limit is "
                                 "4294967296.");
}

}  // namespace
