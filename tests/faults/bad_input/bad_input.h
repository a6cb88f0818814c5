#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/cli_runner.h"

/// What every bad input must come to: an answer, a partial answer or a refusal that names the
/// file and the cause; never a dead host, a broken limit or anything left behind.
namespace bad_input {

enum class Side { Reference, Compare };

/// Limits that the runs are given; the tests check that they hold.
constexpr const char* kTimeLimit = "60s";
constexpr const char* kMemoryLimit = "1G";
constexpr double kTimeLimitSeconds = 60;

/// A small assembly of two boxes that every comparison accepts.
std::string goodAssembly();

/// An assembly of this many boxes, no two of them alike.
std::string wall(int bricks);

/// An assembly that takes long enough for its helper to be caught at work.
std::string slowAssembly();

/// Runs the program on `bad` on this side and a good assembly on the other.
support::CliResult compareWithGood(const std::string& bad, Side side,
                                   support::CliRequest request = {});

/// Runs the program on these two files under the limits above.
support::CliResult compare(const std::string& reference, const std::string& compare,
                           support::CliRequest request = {});

/// Answered in order: by itself, with an exit code of the program, in time, nothing left.
void expectOrder(const support::CliResult& run);

/// In order, and when refused then by a line that names `file` and says more than its name.
void expectAnswered(const support::CliResult& run, const std::string& file);

/// In order, exit code 2, and a line of standard error that names `file` and matches `cause`, an
/// expression that ignores case.
void expectRefused(const support::CliResult& run, const std::string& file,
                   const std::string& cause);

/// In order, with exit code 0 or 1.
void expectCompared(const support::CliResult& run);

/// Prints one line on what an input came to, for the table of outcomes.
void printOutcome(const std::string& input, Side side, const support::CliResult& run);

const char* nameOf(Side side);

/// Suite of tests that run once for each side.
class OnEitherSide : public testing::TestWithParam<Side> {
protected:
    /// Writes a file into the test's own folder and compares it with a good one.
    support::CliResult compareBytes(const std::string& bytes) const;

    support::ScratchFolder scratch_;
};

inline std::string sideName(const testing::TestParamInfo<Side>& info) {
    return nameOf(info.param);
}

}  // namespace bad_input
