#pragma once

#include <optional>
#include <string>

namespace os {

/// One line of the channel between a helper and its host. On the wire: the kind, a tab, the
/// fields separated by tabs; backslash, tab, CR and LF inside a field are escaped by a backslash.
struct HelperMessage {
    enum class Kind {
        Progress,  ///< fraction in [0, 1] and the name of the phase
        Warning,   ///< something the user should know; the work goes on
        Partial,   ///< what is missing from an otherwise good result
        Failure,   ///< the reason why there will be no result
        Result,    ///< a named value of the result
    };

    Kind kind = Kind::Warning;
    double fraction = 0.0;  ///< Progress only
    std::string name;       ///< Progress: phase; Failure: cause code; Result: name
    std::string text;       ///< UTF-8
};

/// The line for a message, without a line feed. The same message gives the same bytes whatever
/// the locale.
std::string formatHelperMessage(const HelperMessage& message);

/// Empty for a line that is no message: a damaged helper may send anything.
std::optional<HelperMessage> parseHelperMessage(const std::string& line);

}  // namespace os
