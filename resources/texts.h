#pragma once

#include <cstdint>
#include <span>

namespace resources {

/// One text of one language.
struct Text {
    std::uint32_t id;
    const wchar_t* text;
};

/// Each language has a file of its own, texts_<code>.cpp, with its list in ascending order of
/// ids; a list may leave ids out, the English one then stands in.
std::span<const Text> englishTexts();

}  // namespace resources
