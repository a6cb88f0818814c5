#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include "backends/posix/posix.h"
#include "tests/unit/backends/posix/support.h"

namespace {

using posix_test::Program;
using posix_test::ScopedVariable;

TEST(ParentChannel, WithoutAHostWritesNowhere) {
    Program program({"lines", "100"});
    EXPECT_EQ(program.readAll(), "");
    EXPECT_EQ(program.wait(), 0);
}

TEST(ParentChannel, VariableWithoutAPipeIsNoHost) {
    for (const char* const value : {"3", "", "7", "x"}) {
        const ScopedVariable variable("BEXTORA_CHANNEL", value);
        Program program({"lines", "100"});
        EXPECT_EQ(program.readAll(), "");
        EXPECT_EQ(program.wait(), 0) << value;
    }
}

TEST(ParentChannel, FileInThePlaceOfThePipeIsNotWrittenTo) {
    posix_test::ScratchFolder scratch;
    const ScopedVariable variable("BEXTORA_CHANNEL", "3");
    const posix::UniqueFd file(
        ::open(scratch.file("innocent").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    const posix::UniqueFd high(::fcntl(file.get(), F_DUPFD_CLOEXEC, 20));
    Program program({"lines", "100"}, high.get());
    EXPECT_EQ(program.wait(), 0);
    EXPECT_EQ(posix_test::readFile(scratch.file("innocent")), "");
}

TEST(ParentChannel, LineFeedInALineDoesNotMakeTwo) {
    const auto child = posix_test::startTestHelper({"echo", "one\nline", "next"});
    EXPECT_EQ(posix_test::waitForLine(*child), "one line");
    EXPECT_EQ(posix_test::waitForLine(*child), "next");
}

}  // namespace
