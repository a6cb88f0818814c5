#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "apps/cli/console.h"
#include "apps/cli/file_names.h"

namespace cli {

/// What the imports and the comparer say beside their results. Each sentence goes to standard
/// error once, however often it is said, and is kept. Safe from any thread.
class RunLog {
public:
    /// Both outlive the log.
    RunLog(Console& console, const FileNames& names) : console_(console), names_(names) {}

    /// `text` is UTF-8 and may hold anything.
    void add(const std::string& text);
    /// Phase and fraction in [0, 1] of one file's import.
    void importing(const std::string& path, double fraction, const std::string& phase);

    /// The same of the comparison of the geometry.
    void comparing(double fraction, const std::string& phase);

    /// Sentences in the order in which they came first.
    std::vector<std::string> messages() const;

private:
    Console& console_;
    const FileNames& names_;
    mutable std::mutex mutex_;
    std::vector<std::string> messages_;
    std::vector<std::string> paths_;  // of the imports, in the order of their first progress
};

}  // namespace cli
