#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/os/child_process.h"

namespace comparer {

/// What a helper says to its host.
class Reporter {
public:
    explicit Reporter(os::ParentChannel& channel) : channel_(channel) {}

    void progress(double fraction, const std::string& phase);
    void partial(const std::string& text);
    void result(const std::string& name, const std::string& value);
    void failure(const std::string& code, const std::string& text);

private:
    os::ParentChannel& channel_;
};

/// Values by option name, without the dashes. Empty when the arguments don't come in pairs.
std::optional<std::map<std::string, std::string>> parseOptions(
    const std::vector<std::string>& arguments);

/// Finite and positive, or empty. Takes the decimal point in every locale.
std::optional<double> parsePositive(const std::string& text);

/// The folder that a file stands in, without a separator at the end.
std::string folderOf(const std::string& file);

/// Runs a helper's body: third-party exceptions and exhausted memory become failures with a
/// cause. Returns the exit code.
int runGuarded(Reporter& reporter, const std::function<bool()>& body);

}  // namespace comparer
