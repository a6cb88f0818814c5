#include "backends/posix/call_filter.h"

#include <fcntl.h>
#include <linux/seccomp.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <initializer_list>
#include <memory>

#include <seccomp.h>

#include "backends/posix/instrumented.h"
#include "backends/posix/unique_fd.h"

namespace posix {
namespace {

/// A filter under construction. One rule that cannot be added makes the whole filter void: better
/// a sentence in the log than a hole that nobody knows of.
class Filter {
public:
    Filter() : context_(::seccomp_init(SCMP_ACT_ALLOW), &::seccomp_release) {}

    void refuse(int error, std::initializer_list<const char*> names) {
        for (const char* const name : names) add(SCMP_ACT_ERRNO(error), number(name), {});
    }
    void kill(std::initializer_list<const char*> names) {
        for (const char* const name : names) add(SCMP_ACT_KILL_PROCESS, number(name), {});
    }
    void refuseWhere(int error, const char* name, std::initializer_list<scmp_arg_cmp> conditions) {
        add(SCMP_ACT_ERRNO(error), number(name), conditions);
    }

    bool good() const { return good_ && context_; }
    scmp_filter_ctx get() const { return context_.get(); }

private:
    /// Calls by name, since the kernel may know more than the headers do.
    static int number(const char* name) { return ::seccomp_syscall_resolve_name(name); }

    void add(std::uint32_t action, int call, std::initializer_list<scmp_arg_cmp> conditions) {
        // Neither this machine nor the library knows it, so the kernel won't obey it by a number
        // that is ours; calls of other machines end the process by themselves.
        if (call == __NR_SCMP_ERROR || !context_) return;
        const int result = ::seccomp_rule_add_array(
            context_.get(), action, call, static_cast<unsigned>(conditions.size()),
            conditions.size() == 0 ? nullptr : conditions.begin());
        if (result != 0) good_ = false;
    }

    std::unique_ptr<void, decltype(&::seccomp_release)> context_;
    bool good_ = true;
};

/// A condition on the lower half of an argument: what the kernel reads as an int.
scmp_arg_cmp lowIs(unsigned argument, std::uint32_t value) {
    return {argument, SCMP_CMP_MASKED_EQ, 0xFFFFFFFFU, value};
}

scmp_arg_cmp lowIsNot(unsigned argument, std::uint32_t value) {
    return {argument, SCMP_CMP_NE, value, 0};
}

void forbidNetwork(Filter& filter) {
    // Looking up a user's name asks a daemon by a socket first and then goes on without it.
    filter.refuse(EACCES, {"socket", "socketpair", "connect", "bind", "listen", "accept", "accept4",
                           "shmget", "msgget", "semget", "mq_open"});
    filter.refuse(ENOSYS, {"io_uring_setup", "io_uring_enter", "io_uring_register"});
}

void forbidTheSystem(Filter& filter) {
    filter.kill({"process_vm_readv", "process_vm_writev", "pidfd_getfd", "kcmp", "bpf",
                 "perf_event_open", "userfaultfd", "add_key", "keyctl", "request_key"});
    filter.kill({"mount", "umount2", "pivot_root", "chroot", "unshare", "setns", "open_tree",
                 "move_mount", "fsopen", "fsconfig", "fsmount", "fspick", "mount_setattr"});
    filter.kill(
        {"init_module",   "finit_module", "delete_module", "kexec_load",    "kexec_file_load",
         "reboot",        "swapon",       "swapoff",       "acct",          "iopl",
         "ioperm",        "quotactl",     "syslog",        "settimeofday",  "clock_settime",
         "clock_adjtime", "adjtimex",     "sethostname",   "setdomainname", "open_by_handle_at"});
    if (!instrumentedBuild()) filter.kill({"ptrace"});
    // Typing into the terminal that shows our errors would be starting programs by other hands.
    filter.refuseWhere(EPERM, "ioctl", {lowIs(1, TIOCSTI)});
    filter.refuseWhere(EPERM, "ioctl", {lowIs(1, TIOCLINUX)});
}

void forbidProcesses(Filter& filter) {
    filter.kill({"execve", "execveat"});
    if (instrumentedBuild()) return;
    filter.refuse(EPERM, {"fork", "vfork"});
    filter.refuseWhere(EPERM, "clone", {{0, SCMP_CMP_MASKED_EQ, CLONE_THREAD, 0}});
    // Its flags lie in memory, where a filter can't read. The C library then takes the older call.
    filter.refuse(ENOSYS, {"clone3"});
}

void forbidSignals(Filter& filter) {
    const auto self = static_cast<std::uint32_t>(::getpid());
    for (const char* const name : {"kill", "tgkill", "rt_sigqueueinfo", "rt_tgsigqueueinfo"}) {
        filter.refuseWhere(EPERM, name, {lowIsNot(0, self)});
    }
    filter.refuse(EPERM, {"tkill", "pidfd_send_signal"});
    filter.refuseWhere(EPERM, "fcntl", {lowIs(1, F_SETOWN)});
    filter.refuseWhere(EPERM, "fcntl", {lowIs(1, 15 /* F_SETOWN_EX */)});
    if (instrumentedBuild()) return;
    filter.refuseWhere(EPERM, "prctl", {lowIs(0, PR_SET_PDEATHSIG)});
    filter.refuseWhere(EPERM, "prctl", {lowIs(0, PR_SET_DUMPABLE)});
}

void forbidLiftingLimits(Filter& filter) {
    filter.refuse(EPERM, {"setrlimit", "setpriority", "setsid", "setpgid", "capset", "setuid",
                          "setgid", "setreuid", "setregid", "setresuid", "setresgid", "setgroups",
                          "setfsuid", "setfsgid"});
    filter.refuseWhere(EPERM, "prlimit64", {{2, SCMP_CMP_NE, 0, 0}});
    filter.refuseWhere(EPERM, "prlimit64", {{2, SCMP_CMP_EQ, 0, 0}, lowIsNot(0, 0)});
}

/// Landlock says nothing about these, and about the first not before its version 3.
void forbidChangingFiles(Filter& filter) {
    filter.refuse(
        EPERM, {"truncate", "chmod", "fchmod", "fchmodat", "fchmodat2", "chown", "lchown", "fchown",
                "fchownat", "setxattr", "lsetxattr", "fsetxattr", "removexattr", "lremovexattr",
                "fremovexattr", "utime", "utimes", "utimensat", "futimesat"});
}

std::vector<sock_filter> exported(const Filter& filter) {
    const UniqueFd memory(::memfd_create("filter", MFD_CLOEXEC));
    if (!filter.good() || !memory.valid()) return {};
    if (::seccomp_export_bpf(filter.get(), memory.get()) != 0) return {};
    const off_t bytes = ::lseek(memory.get(), 0, SEEK_END);
    if (bytes <= 0) return {};
    std::vector<sock_filter> program(static_cast<std::size_t>(bytes) / sizeof(sock_filter));
    const std::size_t size = program.size() * sizeof(sock_filter);
    if (::pread(memory.get(), program.data(), size, 0) != static_cast<ssize_t>(size)) return {};
    return program;
}

std::vector<sock_filter> makeStartFilter() {
    Filter filter;
    forbidNetwork(filter);
    forbidTheSystem(filter);
    return exported(filter);
}

}  // namespace

const std::vector<sock_filter>& startFilter() {
    static const std::vector<sock_filter> filter = makeStartFilter();
    return filter;
}

bool setFilter(const std::vector<sock_filter>& filter) {
    const sock_fprog program{static_cast<unsigned short>(filter.size()),
                             const_cast<sock_filter*>(filter.data())};  // the kernel only reads it
    return !filter.empty() && ::syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, 0U, &program) == 0;
}

bool filterCalls() {
    Filter filter;
    forbidNetwork(filter);
    forbidTheSystem(filter);
    forbidProcesses(filter);
    forbidSignals(filter);
    forbidLiftingLimits(filter);
    forbidChangingFiles(filter);
    return filter.good() && ::seccomp_attr_set(filter.get(), SCMP_FLTATR_CTL_TSYNC, 1) == 0 &&
           ::seccomp_load(filter.get()) == 0;
}

}  // namespace posix
