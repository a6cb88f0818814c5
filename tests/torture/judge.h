#pragma once

#include <string>
#include <vector>

#include "tests/torture/declared.h"
#include "tests/torture/loaded.h"

namespace torture {

enum class Outcome { Complete, Partial, Refused, Crashed, Limit };

/// A word for the table and for the line between the host and its watcher.
const char* nameOf(Outcome outcome);

/// How one import ended.
struct Ended {
    bool success = false;
    std::string causeCode;
    std::string causeText;
    std::vector<std::string> gaps;
    Loaded loaded;
    double seconds = 0;
};

struct Verdict {
    Outcome outcome = Outcome::Refused;
    std::string violation;  ///< empty when all is as it has to be
};

/// `slack` is the number of declared things that may be missing without a word, since the count
/// of a format is an upper bound only and `touched` bytes of it were changed.
Verdict judge(const std::string& path, const Ended& ended, const Declared& declared,
              std::uint64_t slack, double limitSeconds);

}  // namespace torture
