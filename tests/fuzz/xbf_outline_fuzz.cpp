// Binary documents without their reader: how many labels and attributes the bytes declare.

#include "backends/occt/read/xbf_outline.h"
#include "tests/fuzz/fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    // The smallest label is three words and the end of its attributes, an attribute three words.
    constexpr std::size_t word = 4;
    const auto outline = occt::xbfOutline(bytes);
    if (outline) {
        const std::size_t least = word * (3 * outline->labels + 3 * outline->attributes);
        fuzz::require(least <= size, "what is counted stands in the bytes");
        fuzz::require(!outline->isWhole || outline->labels > 0, "a whole document has a label");
    }
    // A prefix never declares more than the whole.
    const auto half = occt::xbfOutline(bytes.substr(0, size / 2));
    if (half && outline && half->labels > 0) {
        fuzz::require(half->labels <= outline->labels, "a cut adds no label");
        fuzz::require(half->attributes <= outline->attributes, "and no attribute");
    }
    fuzz::requireLinear(
        bytes, [](const std::string& grown) { static_cast<void>(occt::xbfOutline(grown)); });
    return 0;
}
