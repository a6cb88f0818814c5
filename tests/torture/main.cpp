// Imports damaged files for as long as it is told, and looks whether every one of them ends as
// it has to. The watcher starts hosts, each for some cases, so that a dead host is seen too.

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "tests/torture/host.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr std::uint64_t kCasesOfOneHost = 150;

struct Options {
    torture::Settings settings;
    bool isHost = false;
    std::uint64_t count = 20'000;
    double seconds = 0;  // 0: no box
};

struct Row {
    std::map<std::string, std::uint64_t> outcomes;
    std::uint64_t cases = 0;
    std::uint64_t violations = 0;
};

struct Tally {
    std::map<std::string, Row> rows;
    std::vector<std::string> violations;
    std::uint64_t cases = 0;
};

std::optional<Options> optionsFrom(int count, char** values) {
    Options options;
    const char* const data = std::getenv("BEXTORA_TEST_DATA");
    options.settings.dataFolder = data == nullptr ? "" : data;
    options.settings.samplesFolder = TORTURE_SAMPLES;
    for (int i = 1; i < count; ++i) {
        const std::string name = values[i];
        if (name == "--host") {
            options.isHost = true;
            continue;
        }
        if (name == "--sound") {
            options.settings.soundFiles = true;
            continue;
        }
        if (name == "--keep-all") {
            options.settings.keepAll = true;
            continue;
        }
        if (++i >= count) return std::nullopt;
        const std::string value = values[i];
        torture::Settings& settings = options.settings;
        if (name == "--seed")
            settings.seed = std::stoull(value);
        else if (name == "--count")
            options.count = std::stoull(value);
        else if (name == "--seconds")
            options.seconds = std::stod(value);
        else if (name == "--keep")
            settings.keepFolder = value;
        else if (name == "--helper")
            settings.helper = value;
        else if (name == "--at-once")
            settings.atOnce = static_cast<unsigned>(std::stoul(value));
        else if (name == "--limit-ms")
            settings.limitMs = static_cast<std::uint32_t>(std::stoul(value));
        else if (name == "--first")
            settings.first = std::stoull(value);
        else if (name == "--end")
            settings.end = std::stoull(value);
        else if (name == "--work")
            settings.workFolder = value;
        else if (name == "--case") {
            settings.first = std::stoull(value);
            options.count = 1;
            settings.keepAll = true;
            settings.atOnce = 1;
        } else
            return std::nullopt;
    }
    return options;
}

/// Files below a folder.
std::string filesBelow(const fs::path& folder) {
    std::string names;
    std::error_code error;
    for (fs::recursive_directory_iterator it(folder, error), end; !error && it != end;
         it.increment(error)) {
        names += ' ' + it->path().string();
    }
    return names;
}

/// One host process: its output line by line.
class HostProcess {
public:
    HostProcess(std::vector<std::string> arguments, const fs::path& temporary,
                const fs::path& working) {
        int ends[2] = {-1, -1};
        if (::pipe2(ends, O_CLOEXEC) != 0) std::abort();
        std::vector<char*> raw;
        for (std::string& argument : arguments) raw.push_back(argument.data());
        raw.push_back(nullptr);
        pid_ = ::fork();
        if (pid_ == 0) {
            ::setenv("TMPDIR", temporary.c_str(), 1);
            ::dup2(ends[1], STDOUT_FILENO);
            if (::chdir(working.c_str()) == 0) ::execv("/proc/self/exe", raw.data());
            ::_exit(127);
        }
        ::close(ends[1]);
        output_ = ends[0];
    }
    ~HostProcess() { ::close(output_); }
    HostProcess(const HostProcess&) = delete;
    HostProcess& operator=(const HostProcess&) = delete;

    /// Nothing at the end, or when nothing came for `patienceMs`; isSilent() then tells which.
    std::optional<std::string> line(int patienceMs) {
        for (;;) {
            const std::size_t end = waiting_.find('\n');
            if (end != std::string::npos) {
                std::string line = waiting_.substr(0, end);
                waiting_.erase(0, end + 1);
                return line;
            }
            pollfd event{output_, POLLIN, 0};
            silent_ = ::poll(&event, 1, patienceMs) == 0;
            if (silent_) return std::nullopt;
            char chunk[4096];
            const ssize_t got = ::read(output_, chunk, sizeof chunk);
            if (got <= 0) return std::nullopt;
            waiting_.append(chunk, static_cast<std::size_t>(got));
        }
    }
    bool isSilent() const { return silent_; }
    void kill() const { ::kill(pid_, SIGKILL); }
    int wait() const {
        int status = 0;
        ::waitpid(pid_, &status, 0);
        return status;
    }

private:
    pid_t pid_ = -1;
    int output_ = -1;
    std::string waiting_;
    bool silent_ = false;
};

void count(const std::string& line, Tally& tally) {
    std::vector<std::string> fields;
    std::istringstream in(line);
    for (std::string field; std::getline(in, field, '\t');) fields.push_back(field);
    if (fields.size() < 7 || fields[0] != "case") return;
    Row& row = tally.rows[fields[2]];
    ++tally.cases;
    ++row.cases;
    ++row.outcomes[fields[3]];
    if (fields[5].empty()) return;
    ++row.violations;
    tally.violations.push_back("case " + fields[1] + " (" + fields[2] + ", " + fields[6] +
                               "): " + fields[5]);
    std::cout << tally.violations.back() << std::endl;
}

void addViolation(const std::string& text, Tally& tally) {
    tally.violations.push_back(text);
    std::cout << text << std::endl;
}

std::vector<std::string> hostArguments(const Options& options, std::uint64_t first,
                                       std::uint64_t end, const fs::path& work) {
    const torture::Settings& settings = options.settings;
    std::vector<std::string> arguments = {"torture",    "--host",
                                          "--seed",     std::to_string(settings.seed),
                                          "--first",    std::to_string(first),
                                          "--end",      std::to_string(end),
                                          "--work",     work.string(),
                                          "--at-once",  std::to_string(settings.atOnce),
                                          "--limit-ms", std::to_string(settings.limitMs)};
    if (!settings.keepFolder.empty()) {
        arguments.insert(arguments.end(), {"--keep", fs::absolute(settings.keepFolder).string()});
    }
    if (!settings.helper.empty()) arguments.insert(arguments.end(), {"--helper", settings.helper});
    if (settings.keepAll) arguments.emplace_back("--keep-all");
    if (settings.soundFiles) arguments.emplace_back("--sound");
    return arguments;
}

/// The cases [first, end) by one host. The cases of a host that dies are lost to the count.
void runOneHost(const Options& options, std::uint64_t first, std::uint64_t end, Tally& tally) {
    const fs::path root = fs::temp_directory_path() / ("torture-" + std::to_string(::getpid()));
    for (const char* const name : {"tmp", "cwd", "work"}) fs::create_directories(root / name);
    HostProcess host(hostArguments(options, first, end, root / "work"), root / "tmp", root / "cwd");
    const int patienceMs = static_cast<int>(options.settings.limitMs) + 60'000;
    while (const auto line = host.line(patienceMs)) {
        if (options.settings.keepAll || options.settings.soundFiles) std::cout << *line << '\n';
        count(*line, tally);
    }
    const std::string cases = "cases " + std::to_string(first) + " to " + std::to_string(end - 1);
    if (host.isSilent()) {
        addViolation(cases + ": the host hangs", tally);
        host.kill();
    }
    const int status = host.wait();
    if (WIFSIGNALED(status) && !host.isSilent()) {
        addViolation(cases + ": the host died of signal " + std::to_string(WTERMSIG(status)),
                     tally);
    } else if (WIFEXITED(status) && WEXITSTATUS(status) != 0) {
        addViolation(cases + ": the host ended with " + std::to_string(WEXITSTATUS(status)), tally);
    }
    const std::string left = filesBelow(root / "tmp") + filesBelow(root / "cwd");
    if (!left.empty()) addViolation(cases + ": left behind:" + left, tally);
    std::error_code ignored;
    fs::remove_all(root, ignored);
}

void printTable(const Tally& tally, double seconds) {
    std::printf(
        "\n| format | cases | complete | partial | refused | crashed | limit | violations |\n"
        "|---|---|---|---|---|---|---|---|\n");
    Row all;
    const auto print = [](const std::string& name, const Row& row) {
        const auto of = [&row](const char* outcome) {
            const auto found = row.outcomes.find(outcome);
            return static_cast<unsigned long>(found == row.outcomes.end() ? 0 : found->second);
        };
        std::printf("| %s | %lu | %lu | %lu | %lu | %lu | %lu | %lu |\n", name.c_str(),
                    static_cast<unsigned long>(row.cases), of("complete"), of("partial"),
                    of("refused"), of("crashed"), of("limit"),
                    static_cast<unsigned long>(row.violations));
    };
    for (const auto& [kind, row] : tally.rows) {
        print(kind, row);
        all.cases += row.cases;
        all.violations += row.violations;
        for (const auto& [outcome, number] : row.outcomes) all.outcomes[outcome] += number;
    }
    print("all", all);
    std::printf("\n%lu cases in %.0f s, %.1f a second; %zu violations\n",
                static_cast<unsigned long>(tally.cases), seconds,
                static_cast<double>(tally.cases) / seconds, tally.violations.size());
}

int watch(const Options& options) {
    const auto start = Clock::now();
    const auto elapsed = [start] {
        return std::chrono::duration<double>(Clock::now() - start).count();
    };
    Tally tally;
    const std::uint64_t first = options.settings.first;
    const std::uint64_t end = options.settings.soundFiles ? first + 1000 : first + options.count;
    // A box of time ends between two hosts, so they are small ones then.
    const std::uint64_t step = options.settings.soundFiles ? 1000
                               : options.seconds > 0       ? kCasesOfOneHost / 3
                                                           : kCasesOfOneHost;
    for (std::uint64_t at = first; at < end; at += step) {
        if (options.seconds > 0 && elapsed() > options.seconds) break;
        runOneHost(options, at, std::min(at + step, end), tally);
    }
    printTable(tally, elapsed());
    return tally.violations.empty() && tally.cases > 0 ? 0 : 1;
}

}  // namespace

int main(int count, char** values) {
    const auto options = optionsFrom(count, values);
    if (!options) {
        std::fputs(
            "usage: torture [--count N | --seconds N | --case N | --sound] [--seed N]\n"
            "               [--first N] [--keep FOLDER] [--at-once N] [--limit-ms N]\n"
            "               [--helper PROGRAM]\n",
            stderr);
        return 2;
    }
    return options->isHost ? torture::runHost(options->settings) : watch(*options);
}
