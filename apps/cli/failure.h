#pragma once

#include <string>
#include <vector>

namespace cli {

/// What is known about a run that left no result. All texts UTF-8 as they came.
struct Failure {
    std::vector<std::string> paths = {};  ///< of the two files, as the user gave them
    std::string openedFile = {};  ///< that the host opened instead of a result; may be empty
    std::string statusText = {};  ///< the host's last one; may be empty
    bool reasonGiven = false;     ///< the host has told the user why
    bool causeLogged = false;     ///< an import or the comparer has named a cause
};

/// Printable sentences for the user. Files that can't be reached are named with the system's own
/// reason; otherwise there is exactly one sentence, or none when the user knows all there is.
std::vector<std::string> explanation(const Failure& failure);

}  // namespace cli
