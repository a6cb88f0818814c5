#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/os/child_process.h"

namespace comparer {

/// How a helper process of this folder ended.
struct HelperOutcome {
    os::ProcessEnd end = os::ProcessEnd::NotStarted;
    bool good = false;                           ///< exited with 0
    std::map<std::string, std::string> results;  ///< by name
    std::string cause;  ///< the sentence why it is not good; empty when it is or was killed
};

struct HelperEvents {
    std::function<void(double fraction, const std::string& phase)> progress;
    std::function<void(const std::string& text)> log;
};

/// Starts a helper and waits for its end. A kill of the calling worker ends it at once; the
/// outcome is then Killed. Must not be called before the process services are installed.
HelperOutcome runHelper(const std::vector<std::string>& arguments, const HelperEvents& events);

}  // namespace comparer
