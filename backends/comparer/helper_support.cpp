#include "backends/comparer/helper_support.h"

#include <charconv>
#include <cmath>
#include <exception>
#include <new>

#include <Standard_Failure.hxx>
#include <Standard_OutOfMemory.hxx>

#include "platform/os/helper_messages.h"

namespace comparer {

void Reporter::progress(double fraction, const std::string& phase) {
    channel_.send(
        os::formatHelperMessage({os::HelperMessage::Kind::Progress, fraction, phase, {}}));
}

void Reporter::partial(const std::string& text) {
    channel_.send(os::formatHelperMessage({os::HelperMessage::Kind::Partial, 0.0, {}, text}));
}

void Reporter::result(const std::string& name, const std::string& value) {
    channel_.send(os::formatHelperMessage({os::HelperMessage::Kind::Result, 0.0, name, value}));
}

void Reporter::failure(const std::string& code, const std::string& text) {
    channel_.send(os::formatHelperMessage({os::HelperMessage::Kind::Failure, 0.0, code, text}));
}

std::optional<std::map<std::string, std::string>> parseOptions(
    const std::vector<std::string>& arguments) {
    std::size_t at = !arguments.empty() && arguments[0].rfind("--", 0) != 0 ? 1 : 0;
    std::map<std::string, std::string> options;
    for (; at + 1 < arguments.size(); at += 2) {
        if (arguments[at].rfind("--", 0) != 0) return std::nullopt;
        options[arguments[at].substr(2)] = arguments[at + 1];
    }
    if (at != arguments.size()) return std::nullopt;
    return options;
}

std::optional<double> parsePositive(const std::string& text) {
    double value = 0.0;
    const char* const end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, value);
    const bool number = parsed.ec == std::errc() && parsed.ptr == end;
    if (!number || !std::isfinite(value) || value <= 0.0) return std::nullopt;
    return value;
}

std::string folderOf(const std::string& file) {
    const std::size_t slash = file.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : file.substr(0, slash);
}

int runGuarded(Reporter& reporter, const std::function<bool()>& body) try {
    return body() ? 0 : 1;
} catch (const std::bad_alloc&) {
    return os::kMemoryLimitExitCode;
} catch (const Standard_OutOfMemory&) {
    return os::kMemoryLimitExitCode;
} catch (const Standard_Failure& problem) {
    reporter.failure("internal",
                     std::string("The geometry library gave up: ") + problem.GetMessageString());
    return 1;
} catch (const std::exception& problem) {
    reporter.failure("internal", std::string("The comparison gave up: ") + problem.what());
    return 1;
}

}  // namespace comparer
