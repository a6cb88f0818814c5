#pragma once

#include <mutex>

#include "platform/os/debug_output.h"

namespace posix {

/// Debug texts as UTF-8 on standard error, if the environment asks for them.
class StderrDebugOutput final : public os::DebugOutput {
public:
    /// `wanted` false: everything is dropped.
    explicit StderrDebugOutput(bool wanted) : wanted_(wanted) {}

    void write(std::wstring_view text) override;

private:
    const bool wanted_;
    std::mutex mutex_;
};

}  // namespace posix
