#include "tests/support/cli_runner.h"

#include <signal.h>
#include <unistd.h>

#include <cstdlib>

#include <gtest/gtest.h>

// The checks that the other tests rely on must bite: each is shown something to find.

namespace {

support::CliResult shell(const std::string& script, support::CliRequest request = {}) {
    request.arguments = {"-c", script};
    return support::runProgram("/bin/sh", request);
}

}  // namespace

TEST(CliRunner, TellsExitCodesStreamsAndSignals) {
    const auto exited = shell("echo out; echo err >&2; exit 7");
    EXPECT_EQ(exited.exitCode, 7);
    EXPECT_EQ(exited.signal, 0);
    EXPECT_EQ(exited.standardOutput, "out\n");
    EXPECT_EQ(exited.standardError, "err\n");
    const auto killed = shell("kill -SEGV $$");
    EXPECT_EQ(killed.exitCode, -1);
    EXPECT_EQ(killed.signal, SIGSEGV);
}

TEST(CliRunner, ReadsMoreThanAPipeHolds) {
    const auto run = shell("head -c 3000000 /dev/zero; head -c 3000000 /dev/zero >&2");
    EXPECT_EQ(run.standardOutput.size(), 3000000U);
    EXPECT_EQ(run.standardError.size(), 3000000U);
}

TEST(CliRunner, FindsFilesLeftInTheTemporaryFolder) {
    const auto run = shell("mkdir \"$TMPDIR/a\"; : > \"$TMPDIR/a/b\"");
    EXPECT_EQ(run.leftFiles, (std::vector<std::string>{"a", "a/b"}));
    EXPECT_TRUE(shell("exit 0").leftFiles.empty());
}

TEST(CliRunner, FindsAndEndsProcessesThatStayBehind) {
    const auto run = shell("setsid sleep 100 > /dev/null 2>&1 & exit 0");
    ASSERT_EQ(run.leftProcesses.size(), 1U);
    EXPECT_TRUE(run.leftProcesses[0].starts_with("sleep ")) << run.leftProcesses[0];
}

TEST(CliRunner, EndsWhatTakesTooLong) {
    support::CliRequest request;
    request.timeoutMs = 200;
    const auto run = shell("sleep 100", request);
    EXPECT_TRUE(run.timedOut);
    EXPECT_EQ(run.signal, SIGKILL);
    EXPECT_TRUE(run.leftProcesses.empty());
    EXPECT_LT(run.seconds, 10);
}

TEST(CliRunner, KeepsTheUsersOwnSettingsOutOfTheRun) {
    ASSERT_EQ(setenv("BEXTORA_HOSTILE", "yes", 1), 0);
    const auto run = shell("echo \"$BEXTORA_HOSTILE|$LC_ALL|$HOME|$XDG_CONFIG_HOME\"");
    unsetenv("BEXTORA_HOSTILE");
    EXPECT_TRUE(run.standardOutput.starts_with("|C.UTF-8|")) << run.standardOutput;
    const auto firstOwn = run.standardOutput.find("/bextora-test-");
    EXPECT_NE(firstOwn, std::string::npos);
    EXPECT_NE(run.standardOutput.find("/bextora-test-", firstOwn + 1), std::string::npos);
}

TEST(CliRunner, LimitsTheSizeOfFilesWithoutKillingTheWriter) {
    support::CliRequest request;
    request.largestFileBytes = 4096;
    const auto run = shell(
        "head -c 100000 /dev/zero > \"$TMPDIR/x\" 2> /dev/null; echo $?;"
        "wc -c < \"$TMPDIR/x\"; rm \"$TMPDIR/x\"",
        request);
    EXPECT_EQ(run.standardOutput, "1\n4096\n");
}

TEST(CliRunner, CanBeSomebodyElse) {
    if (geteuid() != 0) GTEST_SKIP() << "SKIPPED, NOTHING WAS TESTED: only root can change users";
    support::CliRequest request;
    request.userId = 65534;
    const auto run = shell("id -u; : > \"$TMPDIR/x\" && rm \"$TMPDIR/x\" && echo written", request);
    EXPECT_EQ(run.standardOutput, "65534\nwritten\n");
}
