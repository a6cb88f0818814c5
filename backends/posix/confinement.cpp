#include "backends/posix/confinement.h"

#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "backends/posix/call_filter.h"
#include "backends/posix/file_rules.h"

namespace posix {
namespace {

/// Whoever runs this as the superuser would otherwise lend a hostile file the right to read
/// everybody's files and to lift every limit.
void dropCapabilities() {
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    const __user_cap_data_struct none[_LINUX_CAPABILITY_U32S_3] = {};
    ::syscall(SYS_capset, &header, none);
}

}  // namespace

PosixConfinement::PosixConfinement() {
    ::prctl(PR_SET_DUMPABLE, 0);
}

std::vector<std::string> PosixConfinement::confine(const os::Reach& reach) {
    std::vector<std::string> lacks;
    dropCapabilities();
    const bool privilegesGivenUp = ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0;
    if (!privilegesGivenUp || !restrictFiles(reach, fileRulesVersion())) {
        lacks.emplace_back(
            "What reads the files is not kept away from other files, because this system has no "
            "Landlock; its limits on memory and time hold.");
    }
    if (!filterCalls()) {
        lacks.emplace_back(
            "What reads the files is not kept from using the network and starting programs, "
            "because this system takes no filters on calls; its limits on memory and time hold.");
    }
    return lacks;
}

}  // namespace posix
