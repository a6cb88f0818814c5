#include "apps/cli/failure.h"

#include <gtest/gtest.h>

namespace {

using Sentences = std::vector<std::string>;

TEST(CliFailure, UnreachableFilesAreNamedWithTheSystemsReason) {
    EXPECT_EQ(cli::explanation({.paths = {"/nonexistent/a", "/", "/dev/null/b\n"}}),
              (Sentences{"/nonexistent/a: No such file or directory",
                         "/dev/null/b\\n: Not a directory"}));
}

TEST(CliFailure, FileThatWasOpenedAloneIsNamed) {
    EXPECT_EQ(cli::explanation({.paths = {"/"}, .openedFile = "a.step"}),
              (Sentences{"nothing was compared: only a.step has anything to show"}));
}

TEST(CliFailure, StatusTextStandsInForACauseThatNobodyNamed) {
    EXPECT_EQ(cli::explanation({.statusText = "Failed to open a\x1b"}),
              (Sentences{"nothing was compared: Failed to open a\\x1b"}));
    EXPECT_EQ(cli::explanation({.statusText = "Failed to open a", .causeLogged = true}),
              (Sentences{"nothing was compared"}));
    EXPECT_EQ(cli::explanation({}), (Sentences{"nothing was compared"}));
}

TEST(CliFailure, NothingIsAddedToWhatTheHostHasSaid) {
    EXPECT_TRUE(
        cli::explanation({.paths = {"/nonexistent"}, .statusText = "x", .reasonGiven = true})
            .empty());
}

}  // namespace
