#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

#include "backends/occt/step/part21.h"

namespace occt::step {

using Color = std::array<float, 3>;  ///< channels in [0, 1]

/// Finds the colour behind a style. Looks at each entity once, however many share it. `file`
/// must outlive it; not from two threads.
class ColorReader {
public:
    explicit ColorReader(const Part21& file) : file_(file) {}

    /// Colour that the entities (styles of an annotation or body) lead to, that of surfaces
    /// before that of lines; nothing when none is near.
    std::optional<Color> colorOf(const std::vector<std::uint64_t>& styles) const;

private:
    struct Node {
        std::optional<Color> color;
        bool isOfLines = false;
        std::vector<std::uint64_t> next;
    };

    const Node& node(std::uint64_t id) const;
    std::optional<Color> search(std::vector<std::uint64_t> open, bool lines) const;

    const Part21& file_;
    mutable std::unordered_map<std::uint64_t, Node> nodes_;
};

}  // namespace occt::step
