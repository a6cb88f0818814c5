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

TEST(ParentChannel, LineFeedInALineDoesNotMakeTwo) {
    const auto child = posix_test::startTestHelper({"echo", "one\nline", "next"});
    EXPECT_EQ(posix_test::waitForLine(*child), "one line");
    EXPECT_EQ(posix_test::waitForLine(*child), "next");
}

}  // namespace
