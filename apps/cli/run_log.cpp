#include "apps/cli/run_log.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "apps/cli/text.h"

namespace cli {
namespace {

constexpr std::size_t kImportParts = 2;

std::string percent(double fraction) {
    return std::to_string(std::lround(100.0 * std::clamp(fraction, 0.0, 1.0))) + " %";
}

}  // namespace

void RunLog::add(const std::string& text) {
    const std::string named = names_.withGivenNames(text);
    {
        const std::lock_guard lock(mutex_);
        if (std::find(messages_.begin(), messages_.end(), named) != messages_.end()) return;
        messages_.push_back(named);
    }
    console_.line("bextora: " + printable(std::string_view(named)));
}

void RunLog::importing(const std::string& path, double fraction, const std::string& phase) {
    std::size_t part = 0;
    {
        const std::lock_guard lock(mutex_);
        const auto known = std::find(paths_.begin(), paths_.end(), path);
        part = static_cast<std::size_t>(known - paths_.begin());
        if (known == paths_.end()) paths_.push_back(path);
    }
    if (part >= kImportParts) return;
    const std::string name = std::filesystem::path(path).filename().string();
    console_.progress(static_cast<int>(part), printable(std::string_view(name)) + ": " +
                                                  printable(std::string_view(phase)) + " " +
                                                  percent(fraction));
}

void RunLog::comparing(double fraction, const std::string& phase) {
    // The models are there by now; what is left of the line belongs to the comparison.
    for (std::size_t part = 0; part < kImportParts; ++part) {
        console_.progress(static_cast<int>(part), "");
    }
    console_.progress(progress_part::Comparison,
                      "comparing: " + printable(std::string_view(phase)) + " " + percent(fraction));
}

std::vector<std::string> RunLog::messages() const {
    const std::lock_guard lock(mutex_);
    return messages_;
}

}  // namespace cli
