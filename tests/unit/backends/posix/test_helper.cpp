// A helper that misbehaves on request, and a host for tests that need a second process.

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <map>
#include <new>
#include <string>
#include <thread>
#include <vector>

#include "backends/posix/files.h"
#include "backends/posix/key_store.h"
#include "backends/posix/posix.h"
#include "platform/os/utf8.h"
#include "tests/unit/backends/posix/confined_actions.h"

namespace {

using Arguments = std::vector<std::string>;

[[noreturn]] void sleepForEver() {
    for (;;) ::pause();
}

void dieBy(int number) {
    ::signal(number, SIG_DFL);  // sanitizers have handlers of their own
    ::raise(number);
}

int sendLines(const Arguments& arguments, os::ParentChannel& channel) {
    const int count = std::stoi(arguments.at(0));
    for (int i = 0; i < count; ++i) channel.send("line " + std::to_string(i));
    return 0;
}

int sendFromThreads(const Arguments& arguments, os::ParentChannel& channel) {
    const int count = std::stoi(arguments.at(0));
    std::vector<std::thread> threads;
    for (const char name : {'a', 'b', 'c', 'd'}) {
        threads.emplace_back([&channel, count, name] {
            for (int i = 0; i < count; ++i) channel.send(std::string(10'000, name));
        });
    }
    for (std::thread& thread : threads) thread.join();
    return 0;
}

int flood(const Arguments&, os::ParentChannel& channel) {
    for (;;) channel.send(std::string(1000, 'f'));
}

int sendLong(const Arguments& arguments, os::ParentChannel& channel) {
    channel.send("before");
    channel.send(std::string(std::stoul(arguments.at(0)), 'x'));
    channel.send("after");
    return 0;
}

int sendHalf(const Arguments& arguments, os::ParentChannel& channel) {
    channel.send("whole");
    const std::string half = "result\t0\tname\thal";
    if (::write(3, half.data(), half.size()) < 0) return 1;
    dieBy(std::stoi(arguments.at(0)));
    return 0;
}

int hang(const Arguments&, os::ParentChannel& channel) {
    channel.send("pid " + std::to_string(::getpid()));
    sleepForEver();
}

int spin(const Arguments&, os::ParentChannel& channel) {
    channel.send("pid " + std::to_string(::getpid()));
    for (std::atomic<unsigned> turns = 0;;) turns.fetch_add(1, std::memory_order_relaxed);
}

int exitSilently(const Arguments& arguments, os::ParentChannel&) {
    return std::stoi(arguments.at(0));
}

int closeChannelAndHang(const Arguments&, os::ParentChannel&) {
    ::close(3);
    sleepForEver();
}

int crash(const Arguments& arguments, os::ParentChannel& channel) {
    channel.send("about to crash");
    dieBy(std::stoi(arguments.at(0)));
    return 0;
}

/// Takes memory until it is refused; by the handler or by the exception.
int allocate(const Arguments& arguments, os::ParentChannel& channel) {
    if (arguments.at(0) == "handler") posix::exitWhenMemoryIsRefused();
    std::vector<std::unique_ptr<char[]>> blocks;
    try {
        for (;;) {
            constexpr std::size_t kBlock = std::size_t{16} << 20;
            blocks.push_back(std::make_unique<char[]>(kBlock));
            channel.send("MiB " + std::to_string(blocks.size() * 16));
        }
    } catch (const std::bad_alloc&) {
        return arguments.at(0) == "handler" ? 3 : os::kMemoryLimitExitCode;
    }
}

int startGrandchild(const Arguments& arguments, os::ParentChannel& channel) {
    const pid_t child = ::fork();
    if (child == 0) sleepForEver();
    channel.send("pid " + std::to_string(child));
    if (arguments.at(0) == "hang") sleepForEver();
    return 0;
}

/// Writes to a file for ever, in step with the lines that it sends.
int growFile(const Arguments& arguments, os::ParentChannel& channel) {
    std::ofstream out(arguments.at(0), std::ios::binary | std::ios::app);
    for (int i = 0;; ++i) {
        out << i << std::endl;
        channel.send(std::to_string(i));
    }
}

std::string openDescriptors() {
    std::string list;
    DIR* const folder = ::opendir("/proc/self/fd");
    std::vector<int> numbers;
    while (const dirent* const entry = ::readdir(folder)) {
        const int fd = std::atoi(entry->d_name);
        if (entry->d_name[0] != '.' && fd != ::dirfd(folder)) numbers.push_back(fd);
    }
    ::closedir(folder);
    std::sort(numbers.begin(), numbers.end());
    for (const int fd : numbers) list += (list.empty() ? "" : ",") + std::to_string(fd);
    return list;
}

std::string targetOf(const char* link) {
    char target[256] = {};
    return ::readlink(link, target, sizeof target - 1) < 0 ? "" : target;
}

bool ignored(int number) {
    struct sigaction action {};
    ::sigaction(number, nullptr, &action);
    return action.sa_handler == SIG_IGN;
}

int describe(const Arguments&, os::ParentChannel& channel) {
    const auto tell = [&channel](const std::string& name, const std::string& value) {
        channel.send(name + '=' + value);
    };
    rlimit core{};
    rlimit memory{};
    int deathSignal = 0;
    sigset_t mask;
    ::getrlimit(RLIMIT_CORE, &core);
    ::getrlimit(RLIMIT_AS, &memory);
    ::prctl(PR_GET_PDEATHSIG, &deathSignal);
    ::sigprocmask(SIG_BLOCK, nullptr, &mask);
    tell("descriptors", openDescriptors());
    tell("stdin", targetOf("/proc/self/fd/0"));
    tell("stdout", targetOf("/proc/self/fd/1"));
    tell("stderr", targetOf("/proc/self/fd/2"));
    tell("group", ::getpgrp() == ::getpid() ? "own" : "shared");
    tell("core", std::to_string(core.rlim_cur));
    tell("memory", std::to_string(memory.rlim_cur));
    rlimit processor{};
    ::getrlimit(RLIMIT_CPU, &processor);
    tell("processor", std::to_string(processor.rlim_cur));
    tell("death", std::to_string(deathSignal));
    tell("pipe", ignored(SIGPIPE) ? "ignored" : "default");
    tell("usr1", ignored(SIGUSR1) ? "ignored" : "default");
    tell("term", ::sigismember(&mask, SIGTERM) == 1 ? "blocked" : "free");
    tell("variable", std::getenv("BEXTORA_CHANNEL") == nullptr ? "gone" : "left");
    tell("inherited", (::fcntl(3, F_GETFD) & FD_CLOEXEC) == 0 ? "yes" : "no");
    return 0;
}

int echo(const Arguments& arguments, os::ParentChannel& channel) {
    for (const std::string& argument : arguments) channel.send(argument);
    return 0;
}

int print(const Arguments&, os::ParentChannel& channel) {
    std::cout << "to output" << std::endl;
    std::cerr << "to error" << std::endl;
    channel.send("printed");
    return 0;
}

/// A host that starts a helper which hangs, from a thread that ends at once, tells both numbers
/// on standard output, and hangs itself until it is killed.
int host(const Arguments& arguments, os::ParentChannel&) {
    ::unsetenv("BEXTORA_CHANNEL");
    posix::Options options;
    options.helperPath = "/proc/self/exe";
    const os::Services services = posix::makeServices(options);
    std::unique_ptr<os::ChildProcess> child;
    std::thread([&] { child = services.processes->startHelper({arguments.at(0)}, {}); }).join();
    for (;;) {
        child->wait(1000);
        if (const auto line = child->nextLine()) {
            std::cout << *line << std::endl;
            break;
        }
    }
    sleepForEver();
}

/// A host of a helper with these arguments, whose lines it prints.
int relay(const Arguments& arguments, os::ParentChannel&) {
    posix::Options options;
    options.helperPath = "/proc/self/exe";
    const os::Services services = posix::makeServices(options);
    const auto child = services.processes->startHelper(arguments, {});
    while (child->poll() == os::ProcessEnd::Running) child->wait(1000);
    while (const auto line = child->nextLine()) std::cout << *line << std::endl;
    return 0;
}

/// A host whose helper crashes in a folder, where the limit on cores is lifted for itself.
int crashIn(const Arguments& arguments, os::ParentChannel&) {
    rlimit core{};
    ::getrlimit(RLIMIT_CORE, &core);
    core.rlim_cur = core.rlim_max;
    ::setrlimit(RLIMIT_CORE, &core);
    if (::chdir(arguments.at(0).c_str()) != 0) return 1;
    posix::Options options;
    options.helperPath = "/proc/self/exe";
    const os::Services services = posix::makeServices(options);
    const auto child = services.processes->startHelper({"crash", std::to_string(SIGSEGV)}, {});
    while (child->poll() == os::ProcessEnd::Running) child->wait(1000);
    std::cout << (child->poll() == os::ProcessEnd::Crashed ? "crashed " : "ended ")
              << child->exitCode() << std::endl;
    return 0;
}

/// What the system says of this process, and whether it gets a socket.
int tellStatus(const Arguments&, os::ParentChannel& channel) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("NoNewPrivs:") || line.starts_with("Seccomp:")) channel.send(line);
    }
    const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
    channel.send("socket " + std::to_string(socket < 0 ? errno : 0));
    return 0;
}

/// A helper's loop whose host is gone without a death signal.
int sendUntilHostIsGone(const Arguments&, os::ParentChannel& channel) {
    ::prctl(PR_SET_PDEATHSIG, 0);
    channel.send("pid " + std::to_string(::getpid()));
    for (;;) {
        channel.send("still here");
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

/// Makes two private folders with a file in each, tells the first one's path, waits for the end
/// of its input, then ends in the way asked for.
int privateFolders(const Arguments& arguments, os::ParentChannel&) {
    // Static: neither destroyed at exit nor lost to a leak checker.
    static auto* const files = new posix::PosixFiles;
    std::vector<std::wstring> folders;
    for (const wchar_t* const purpose : {L"import", L"compare"}) {
        folders.push_back(files->makePrivateFolder(purpose));
        const std::string folder = os::toUtf8(folders.back());
        std::ofstream(folder + "/document.xbf") << "data";
        std::cout << folder << std::endl;
    }
    std::string ignoredInput;
    while (std::getline(std::cin, ignoredInput)) {
    }
    const std::string& way = arguments.at(0);
    if (way == "delete") {
        delete files;
        return 0;
    }
    if (way == "exit") std::exit(0);
    if (way == "crash") dieBy(SIGKILL);
    if (way == "fork") {
        // A child that ends normally must not take its parent's folder along.
        const pid_t child = ::fork();
        if (child == 0) std::exit(0);
        ::waitpid(child, nullptr, 0);
        std::cout << (files->exists(folders.front()) ? "kept" : "lost") << std::endl;
    }
    return 0;
}

/// Only looks after left-overs.
int sweep(const Arguments&, os::ParentChannel&) {
    const posix::PosixFiles files;
    return 0;
}

int writeStore(const Arguments& arguments, os::ParentChannel&) {
    posix::FileKeyStore store(arguments.at(0));
    const std::wstring prefix = os::toWide(arguments.at(1));
    const auto count = static_cast<std::uint32_t>(std::stoul(arguments.at(2)));
    for (std::uint32_t i = 0; i < count; ++i) {
        const auto key = store.create(L"Software\\" + prefix, os::KeyAccess::Full);
        if (!key || !key->writeNumber(prefix + std::to_wstring(i), i)) return 1;
        if (i == 0) std::cout << "started" << std::endl;
    }
    return 0;
}

/// Writes to a store whose file may not grow past a limit, as on a full disk.
int writeStoreWithoutRoom(const Arguments& arguments, os::ParentChannel&) {
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit room{64, 64};
    ::setrlimit(RLIMIT_FSIZE, &room);
    posix::FileKeyStore store(arguments.at(0));
    const auto key = store.open(L"Software", os::KeyAccess::Full);
    if (!key) return 1;
    const bool written = key->writeText(L"Long", std::wstring(200, L'x'));
    std::cout << (written ? "written" : "refused") << ' ' << key->readNumber(L"Old").value_or(0)
              << std::endl;
    return 0;
}

int leaveStoreLocked(const Arguments& arguments, os::ParentChannel&) {
    posix::StoreFile file(arguments.at(0));
    file.change([](posix::IniDocument&) {
        std::cout << "locked" << std::endl;
        sleepForEver();
    });
    return 0;
}

}  // namespace

int main(int count, char** values) {
    const std::map<std::string, int (*)(const Arguments&, os::ParentChannel&)> commands = {
        {"lines", sendLines},
        {"threads", sendFromThreads},
        {"flood", flood},
        {"long", sendLong},
        {"half", sendHalf},
        {"hang", hang},
        {"spin", spin},
        {"exit", exitSilently},
        {"close-channel", closeChannelAndHang},
        {"crash", crash},
        {"allocate", allocate},
        {"confined", posix_test::actConfined},
        {"restricted", posix_test::actRestricted},
        {"without", posix_test::runWithout},
        {"relay", relay},
        {"crash-in", crashIn},
        {"status", tellStatus},
        {"grandchild", startGrandchild},
        {"grow", growFile},
        {"describe", describe},
        {"echo", echo},
        {"print", print},
        {"host", host},
        {"until-gone", sendUntilHostIsGone},
        {"private-folders", privateFolders},
        {"sweep", sweep},
        {"write-store", writeStore},
        {"write-store-without-room", writeStoreWithoutRoom},
        {"leave-store-locked", leaveStoreLocked},
    };
    const Arguments all(values + 1, values + count);
    const auto command = all.empty() ? commands.end() : commands.find(all.front());
    if (command == commands.end()) return 64;
    const auto channel = posix::parentChannel();
    return command->second({all.begin() + 1, all.end()}, *channel);
}
