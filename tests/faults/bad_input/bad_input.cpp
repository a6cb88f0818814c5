#include "tests/faults/bad_input/bad_input.h"

#include <regex.h>

#include <filesystem>
#include <iostream>
#include <sstream>

#include "tests/support/step_builder.h"

namespace bad_input {
namespace {

/// Both imports run at once, the comparison follows; each may take its limit, and the machine is
/// shared with other tests.
constexpr double kLongestSeconds = 2 * kTimeLimitSeconds + 10;

std::vector<std::string> linesNaming(const std::string& text, const std::string& file) {
    std::vector<std::string> found;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        if (line.find(file) != std::string::npos) found.push_back(line);
    }
    return found;
}

std::string fileName(const std::string& path) {
    return std::filesystem::path(path).filename().string();
}

/// POSIX, because GCC 12 warns about std::regex itself when a sanitizer is on.
bool matches(const std::string& text, const std::string& pattern) {
    regex_t compiled;
    if (regcomp(&compiled, pattern.c_str(), REG_EXTENDED | REG_ICASE | REG_NOSUB) != 0) {
        ADD_FAILURE() << "not a pattern: " << pattern;
        return false;
    }
    const bool found = regexec(&compiled, text.c_str(), 0, nullptr, 0) == 0;
    regfree(&compiled);
    return found;
}

}  // namespace

std::string goodAssembly() {
    support::StepBuilder builder;
    const auto top = builder.addAssembly("stand");
    const auto base = builder.addBox("base", {100, 50, 10});
    const auto post = builder.addBox("post", {10, 10, 80});
    builder.use(top, base, {0, 0, 0});
    builder.use(top, post, {20, 20, 10});
    builder.use(top, post, {70, 20, 10});
    return builder.write();
}

std::string wall(int bricks) {
    support::StepBuilder builder;
    const auto top = builder.addAssembly("wall");
    for (int i = 0; i < bricks; ++i) {
        const double edge = 10 + 0.01 * i;
        const auto brick = builder.addBox("brick " + std::to_string(i), {edge, edge, edge});
        builder.use(top, brick, {40.0 * i, 0, 0});
    }
    return builder.write();
}

std::string slowAssembly() {
    return wall(400);
}

support::CliResult compare(const std::string& reference, const std::string& compare,
                           support::CliRequest request) {
    std::vector<std::string> all = {"--time-limit", kTimeLimit, "--memory-limit", kMemoryLimit};
    all.insert(all.end(), request.arguments.begin(), request.arguments.end());
    all.insert(all.end(), {"--", reference, compare});
    request.arguments = all;
    return support::runProgram(request);
}

support::CliResult compareWithGood(const std::string& bad, Side side, support::CliRequest request) {
    const support::ScratchFolder scratch;
    const std::string good = scratch.write("good.stp", goodAssembly());
    return side == Side::Reference ? compare(bad, good, std::move(request))
                                   : compare(good, bad, std::move(request));
}

support::CliResult OnEitherSide::compareBytes(const std::string& bytes) const {
    return compareWithGood(scratch_.write("bad.stp", bytes), GetParam());
}

void expectOrder(const support::CliResult& run) {
    EXPECT_FALSE(run.timedOut) << run.description();
    EXPECT_EQ(run.signal, 0) << run.description();
    EXPECT_TRUE(run.exitCode >= 0 && run.exitCode <= 2) << run.description();
    EXPECT_LT(run.seconds, kLongestSeconds) << run.description();
    EXPECT_TRUE(run.leftFiles.empty()) << run.description();
    EXPECT_TRUE(run.leftProcesses.empty()) << run.description();
}

void expectAnswered(const support::CliResult& run, const std::string& file) {
    expectOrder(run);
    if (run.exitCode != 2) return;
    const std::string name = fileName(file);
    const auto lines = linesNaming(run.standardError, name);
    ASSERT_FALSE(lines.empty()) << "nothing names " << name << "\n" << run.description();
    // "Failed to open FILE" names no cause: some line must have words after the name as well.
    bool reasoned = false;
    for (const std::string& line : lines) {
        const std::size_t after = line.find(name) + name.size();
        reasoned = reasoned || line.size() > after + 10;
    }
    EXPECT_TRUE(reasoned) << "no cause is given\n" << run.description();
}

void expectRefused(const support::CliResult& run, const std::string& file,
                   const std::string& cause) {
    expectOrder(run);
    EXPECT_EQ(run.exitCode, 2) << run.description();
    bool found = false;
    for (const std::string& line : linesNaming(run.standardError, fileName(file))) {
        std::string rest = line;
        // The cause must not be found in the file's own name.
        rest.erase(rest.find(fileName(file)), fileName(file).size());
        found = found || matches(rest, cause);
    }
    EXPECT_TRUE(found) << "no line names " << file << " and says " << cause << "\n"
                       << run.description();
}

void expectCompared(const support::CliResult& run) {
    expectOrder(run);
    EXPECT_TRUE(run.exitCode == 0 || run.exitCode == 1) << run.description();
}

void printOutcome(const std::string& input, Side side, const support::CliResult& run) {
    std::string message = run.standardError.substr(0, run.standardError.find('\n'));
    std::cout << "[ OUTCOME ] " << input << " | " << nameOf(side) << " | exit " << run.exitCode
              << " | " << run.seconds << " s | " << run.peakKiB / 1024 << " MiB | " << message
              << "\n";
}

const char* nameOf(Side side) {
    return side == Side::Reference ? "Reference" : "Compare";
}

}  // namespace bad_input
