#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace fuzz {

/// Seeds in a fixed order.
using Seeds = std::vector<std::string>;

/// A damaged seed: bits turned over, bytes replaced, cut off, chunks removed or doubled, two
/// seeds joined. The same number gives the same bytes on every machine.
std::string mutated(const Seeds& seeds, std::uint64_t number);

}  // namespace fuzz
