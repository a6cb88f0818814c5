#pragma once

#include <string>

namespace bxt {

/// The host's count of what its users do. User-interface thread.
class Analytics {
public:
    /// One use of a command. Nothing happens in a host that does not count.
    static void addCommandEvent(const std::wstring& category, const std::wstring& action);
};

}  // namespace bxt
