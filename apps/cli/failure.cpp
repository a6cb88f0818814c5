#include "apps/cli/failure.h"

#include <sys/stat.h>

#include <cerrno>
#include <system_error>

#include "apps/cli/text.h"

namespace cli {
namespace {

std::string shown(const std::string& text) {
    return printable(std::string_view(text));
}

/// The system's own reason why a file can't be reached; empty when it can.
std::string reasonAgainst(const std::string& path) {
    struct stat found = {};
    if (::stat(path.c_str(), &found) == 0) return {};
    return shown(path) + ": " + std::generic_category().message(errno);
}

}  // namespace

std::vector<std::string> explanation(const Failure& failure) {
    std::vector<std::string> sentences;
    if (failure.reasonGiven) return sentences;
    for (const std::string& path : failure.paths) {
        const std::string reason = reasonAgainst(path);
        if (!reason.empty()) sentences.push_back(reason);
    }
    if (!sentences.empty()) return sentences;
    if (!failure.openedFile.empty()) {
        return {"nothing was compared: only " + shown(failure.openedFile) +
                " has anything to show"};
    }
    if (failure.causeLogged || failure.statusText.empty()) return {"nothing was compared"};
    return {"nothing was compared: " + shown(failure.statusText)};
}

}  // namespace cli
