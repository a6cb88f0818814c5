#include "tests/unit/backends/posix/confined_actions.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sched.h>
#include <spawn.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <thread>

#include "backends/posix/file_rules.h"
#include "backends/posix/posix.h"

namespace posix_test {
namespace {

struct Scene {
    std::string readable;
    std::string own;
    std::string target;
    int opened = -1;  // the target, from before the confinement
};

/// 0, or errno.
int outcome(long result) {
    return result >= 0 ? 0 : errno;
}

int tryOpen(const std::string& path, int flags) {
    return outcome(::open(path.c_str(), flags | O_CLOEXEC, 0600));
}

int trySocket(int family, int type) {
    return outcome(::socket(family, type, 0));
}

int trySpawn() {
    char name[] = "/bin/true";
    char* const arguments[] = {name, nullptr};
    pid_t child = 0;
    return ::posix_spawn(&child, name, nullptr, nullptr, arguments, environ);
}

int tryFork() {
    const pid_t child = ::fork();
    if (child == 0) ::_exit(0);
    return outcome(child);
}

int tryExec() {
    char name[] = "/bin/true";
    char* const arguments[] = {name, nullptr};
    return outcome(::execve(name, arguments, environ));
}

int tryLimit() {
    const rlimit more{RLIM_INFINITY, RLIM_INFINITY};
    return outcome(::setrlimit(RLIMIT_CPU, &more));
}

int tryReadingParent() {
    char bytes[8];
    const iovec here{bytes, sizeof bytes};
    const iovec there{bytes, sizeof bytes};
    return outcome(::process_vm_readv(::getppid(), &here, 1, &there, 1, 0));
}

std::string ofParent(const char* entry) {
    return "/proc/" + std::to_string(::getppid()) + '/' + entry;
}

using Action = std::function<int(const Scene&)>;

std::map<std::string, Action> networkActions() {
    return {
        {"tcp", [](const Scene&) { return trySocket(AF_INET, SOCK_STREAM); }},
        {"tcp6", [](const Scene&) { return trySocket(AF_INET6, SOCK_STREAM); }},
        {"udp", [](const Scene&) { return trySocket(AF_INET, SOCK_DGRAM); }},
        {"unix", [](const Scene&) { return trySocket(AF_UNIX, SOCK_STREAM); }},
        {"netlink", [](const Scene&) { return trySocket(AF_NETLINK, SOCK_RAW); }},
        {"packet", [](const Scene&) { return trySocket(AF_PACKET, SOCK_RAW); }},
        {"socketpair",
         [](const Scene&) {
             int ends[2];
             return outcome(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends));
         }},
        {"io_uring",
         [](const Scene&) { return outcome(::syscall(SYS_io_uring_setup, 1, nullptr)); }},
    };
}

std::map<std::string, Action> fileActions() {
    return {
        {"read", [](const Scene& s) { return tryOpen(s.target, O_RDONLY); }},
        {"list", [](const Scene& s) { return tryOpen(s.target, O_RDONLY | O_DIRECTORY); }},
        {"write", [](const Scene& s) { return tryOpen(s.target, O_WRONLY); }},
        {"create", [](const Scene& s) { return tryOpen(s.target, O_WRONLY | O_CREAT | O_EXCL); }},
        {"empty", [](const Scene& s) { return outcome(::truncate(s.target.c_str(), 0)); }},
        {"mkdir", [](const Scene& s) { return outcome(::mkdir(s.target.c_str(), 0700)); }},
        {"fifo", [](const Scene& s) { return outcome(::mkfifo(s.target.c_str(), 0600)); }},
        {"unlink", [](const Scene& s) { return outcome(::unlink(s.target.c_str())); }},
        {"rename",
         [](const Scene& s) {
             return outcome(::rename(s.target.c_str(), (s.own + "/taken").c_str()));
         }},
        {"link",
         [](const Scene& s) {
             return outcome(::link(s.target.c_str(), (s.own + "/linked").c_str()));
         }},
        {"symlink",
         [](const Scene& s) {
             return outcome(::symlink("/etc/passwd", (s.own + "/link").c_str()));
         }},
        {"chmod", [](const Scene& s) { return outcome(::chmod(s.target.c_str(), 0777)); }},
        {"chown", [](const Scene& s) { return outcome(::chown(s.target.c_str(), 0, 0)); }},
        {"touch",
         [](const Scene& s) {
             return outcome(::utimensat(AT_FDCWD, s.target.c_str(), nullptr, 0));
         }},
        {"parent-memory", [](const Scene&) { return tryOpen(ofParent("mem"), O_RDONLY); }},
        {"parent-environment", [](const Scene&) { return tryOpen(ofParent("environ"), O_RDONLY); }},
    };
}

std::map<std::string, Action> processActions() {
    return {
        {"exec", [](const Scene&) { return tryExec(); }},
        {"fork", [](const Scene&) { return tryFork(); }},
        {"spawn", [](const Scene&) { return trySpawn(); }},
        {"system", [](const Scene&) { return std::system("/bin/true") == 0 ? 0 : EPERM; }},
        {"trace",
         [](const Scene&) {
             return outcome(::ptrace(PTRACE_ATTACH, ::getppid(), nullptr, nullptr));
         }},
        {"read-parent", [](const Scene&) { return tryReadingParent(); }},
        {"kill-parent", [](const Scene&) { return outcome(::kill(::getppid(), SIGTERM)); }},
        {"probe-parent", [](const Scene&) { return outcome(::kill(::getppid(), 0)); }},
        {"kill-all", [](const Scene&) { return outcome(::kill(-1, 0)); }},
        {"thread-kill-parent",
         [](const Scene&) {
             return outcome(::syscall(SYS_tgkill, ::getppid(), ::getppid(), SIGTERM));
         }},
        {"mount",
         [](const Scene& s) {
             return outcome(::mount("none", s.own.c_str(), "tmpfs", 0, nullptr));
         }},
        {"unshare", [](const Scene&) { return outcome(::unshare(CLONE_NEWUSER)); }},
        {"keys", [](const Scene&) { return outcome(::syscall(SYS_keyctl, 0, -3, 0)); }},
        {"bpf", [](const Scene&) { return outcome(::syscall(SYS_bpf, 0, nullptr, 0)); }},
        {"lift-limit", [](const Scene&) { return tryLimit(); }},
        {"become-root", [](const Scene&) { return outcome(::setuid(0)); }},
        {"outlive-host",
         [](const Scene&) { return outcome(::prctl(PR_SET_PDEATHSIG, 0, 0, 0, 0)); }},
        {"leave-group", [](const Scene&) { return outcome(::setsid()); }},
        {"abort",
         [](const Scene&) {
             ::signal(SIGABRT, SIG_DFL);  // sanitizers have handlers of their own
             std::abort();
             return 0;
         }},
    };
}

/// Eight threads at once, of which each starts another one.
int tryThreads() {
    std::atomic<int> ran = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&ran] { std::thread([&ran] { ++ran; }).join(); });
    }
    for (std::thread& thread : threads) thread.join();
    return ran == 8 ? 0 : ECANCELED;
}

/// All that a document's way to the disk takes.
int tryOwnFolder(const Scene& scene) {
    std::ofstream(scene.own + "/one") << std::string(1 << 20, 'x');
    std::error_code error;
    std::filesystem::create_directories(scene.own + "/deep/er", error);
    if (!error) std::filesystem::rename(scene.own + "/one", scene.own + "/two", error);
    if (!error) std::filesystem::remove(scene.own + "/deep/er", error);
    if (error) return error.value();
    std::ofstream(scene.own + "/two", std::ios::trunc) << "new";
    std::string text;
    std::ifstream(scene.own + "/two") >> text;
    return text == "new" ? 0 : ECANCELED;
}

std::map<std::string, Action> permittedActions() {
    return {
        {"nothing", [](const Scene&) { return 0; }},
        {"read-input", [](const Scene& s) { return tryOpen(s.readable, O_RDONLY); }},
        {"read-opened",
         [](const Scene& s) {
             char byte = 0;
             return ::read(s.opened, &byte, 1) == 1 ? 0 : errno;
         }},
        {"own-folder", tryOwnFolder},
        {"threads", [](const Scene&) { return tryThreads(); }},
        {"memory",
         [](const Scene&) {
             const auto block = std::make_unique<char[]>(std::size_t{64} << 20);
             std::memset(block.get(), 1, std::size_t{64} << 20);
             return 0;
         }},
        {"maps", [](const Scene&) { return tryOpen("/proc/self/maps", O_RDONLY); }},
        {"chance", [](const Scene&) { return tryOpen("/dev/urandom", O_RDONLY); }},
        {"library",
         [](const Scene&) { return ::dlopen("libz.so.1", RTLD_NOW) != nullptr ? 0 : ENOENT; }},
    };
}

int actionNamed(const std::string& name, const Scene& scene) {
    for (const auto& actions :
         {networkActions(), fileActions(), processActions(), permittedActions()}) {
        const auto found = actions.find(name);
        if (found != actions.end()) return found->second(scene);
    }
    return ENOTSUP;
}

}  // namespace

int actConfined(const std::vector<std::string>& arguments, os::ParentChannel& channel) {
    Scene scene{arguments.at(1), arguments.at(2), arguments.size() > 3 ? arguments[3] : "", -1};
    scene.opened = ::open(scene.target.c_str(), O_RDONLY | O_CLOEXEC);
    const auto confinement = posix::makeConfinement();
    for (const std::string& lack : confinement->confine({{scene.readable}, {scene.own}})) {
        channel.send("lack " + lack);
    }
    channel.send("confined");
    const int error = actionNamed(arguments.at(0), scene);
    channel.send(error == 0 ? "done" : "errno " + std::to_string(error));
    return 0;
}

int actRestricted(const std::vector<std::string>& arguments, os::ParentChannel& channel) {
    const std::string readable = arguments.at(1);
    const std::string own = arguments.at(2);
    const std::string target = arguments.at(3);
    ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    if (!posix::restrictFiles({{readable}, {own}}, std::stoi(arguments.at(0)))) return 1;
    const int wrong = tryOpen(target, O_RDONLY);
    const int beside = tryOpen(readable + ".new", O_WRONLY | O_CREAT);
    channel.send(wrong == EACCES && beside == EACCES ? "kept out" : "let in");
    const int right = tryOpen(readable, O_RDONLY);
    channel.send(right == 0 && tryOwnFolder({readable, own, target}) == 0 ? "works" : "broken");
    return 0;
}

int runWithout(const std::vector<std::string>& arguments, os::ParentChannel&) {
    const bool landlock = arguments.at(0) != "seccomp";
    const bool seccomp = arguments.at(0) != "landlock";
    std::vector<sock_filter> program;
    const auto refuse = [&program](unsigned number, unsigned error) {
        program.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, number, 0, 1));
        program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | error));
    };
    program.push_back(BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)));
    if (landlock) {
        for (const unsigned number : {444U, 445U, 446U}) refuse(number, ENOSYS);
    }
    if (seccomp) refuse(SYS_seccomp, ENOSYS);
    if (seccomp) {
        // prctl by its option.
        program.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_prctl, 0, 3));
        program.push_back(BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args[0])));
        program.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, PR_SET_SECCOMP, 0, 1));
        program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EINVAL));
    }
    program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
    const sock_fprog filter{static_cast<unsigned short>(program.size()), program.data()};
    ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    if (::syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, 0U, &filter) != 0) return 70;
    std::vector<std::string> copies(arguments.begin() + 1, arguments.end());
    std::vector<char*> raw;
    for (std::string& copy : copies) raw.push_back(copy.data());
    raw.push_back(nullptr);
    ::execv(raw.front(), raw.data());
    return 71;
}

}  // namespace posix_test
