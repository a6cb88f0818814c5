#pragma once

#include <cstdint>
#include <string>

namespace torture {

/// Numbers that are the same on every machine for the same seed and case.
class Chance {
public:
    Chance(std::uint64_t seed, std::uint64_t number);

    std::uint64_t next();
    /// In [0, end); 0 for an empty range.
    std::size_t below(std::size_t end);
    bool oneIn(std::size_t n) { return below(n) == 0; }

private:
    std::uint64_t state_;
};

/// What was done to a file, and how many bytes of it were touched at most.
struct Damage {
    std::string what;
    std::size_t touched = 0;
};

/// Damages a file in one to four ways. `isText` adds the ways that know numbers, references and
/// lines; `donor` is another file of the format, from which blocks are taken.
Damage damage(std::string& bytes, bool isText, const std::string& donor, Chance& chance);

}  // namespace torture
