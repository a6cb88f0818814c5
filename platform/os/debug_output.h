#pragma once

#include <string_view>

namespace os {

/// Where developers read along. Users never see it.
class DebugOutput {
public:
    virtual ~DebugOutput() = default;

    /// Writes the text as it stands, without adding a line feed. Safe from any thread.
    virtual void write(std::wstring_view text) = 0;
};

/// Writes to the installed debug output; does nothing when none is installed.
void debugOutput(std::wstring_view text);

}  // namespace os
