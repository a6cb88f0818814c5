// What stands on a helper's command line: import options as one word, pairs of names and values,
// positive numbers.

#include <cmath>

#include "backends/comparer/helper_support.h"
#include "backends/occt/options_text.h"
#include "tests/fuzz/bytes.h"
#include "tests/fuzz/fuzz.h"

namespace {

using HPS::Exchange::BRepMode;
using HPS::Exchange::ImportOptions;
using HPS::Exchange::Tessellation::Level;

void parseText(const std::string& text) {
    if (const auto options = occt::parseOptions(text)) {
        fuzz::require(occt::formatOptions(*options) == text, "options have one form only");
    }
    if (const auto number = comparer::parsePositive(text)) {
        fuzz::require(std::isfinite(*number) && *number > 0.0, "a positive number is one");
    }
    std::vector<std::string> words(1);
    for (const char c : text) {
        if (c == '\n')
            words.emplace_back();
        else
            words.back() += c;
    }
    if (const auto pairs = comparer::parseOptions(words)) {
        fuzz::require(pairs->size() <= words.size() / 2, "two words make a pair");
    }
}

ImportOptions madeOptions(fuzz::Bytes& bytes) {
    ImportOptions options;
    options.solids = bytes.flag();
    options.surfaces = bytes.flag();
    options.wireframes = bytes.flag();
    options.attributes = bytes.flag();
    options.constructionAndReferences = bytes.flag();
    options.pmi = bytes.flag();
    options.featureTrees = bytes.flag();
    options.pmiColorOverridesFile = bytes.flag();
    options.tessellationLevel = static_cast<Level>(bytes.below(7));
    options.brepMode = static_cast<BRepMode>(bytes.below(5));
    const auto channel = [&bytes] { return static_cast<float>(bytes.real()); };
    if (bytes.flag()) options.pmiDefaultColor = HPS::RGBColor{channel(), channel(), channel()};
    return options;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Bytes bytes(data, size);
    parseText(std::string(bytes.rest()));
    const ImportOptions options = madeOptions(bytes);
    const std::string text = occt::formatOptions(options);
    const auto again = occt::parseOptions(text);
    fuzz::require(again.has_value(), "options that were written can be read");
    fuzz::require(occt::formatOptions(*again) == text, "options read again are the same");
    fuzz::require(again->solids == options.solids && again->surfaces == options.surfaces &&
                      again->wireframes == options.wireframes &&
                      again->attributes == options.attributes &&
                      again->constructionAndReferences == options.constructionAndReferences &&
                      again->pmi == options.pmi && again->featureTrees == options.featureTrees &&
                      again->pmiColorOverridesFile == options.pmiColorOverridesFile,
                  "each switch comes back");
    fuzz::require(again->tessellationLevel == std::min(options.tessellationLevel, Level::ExtraHigh),
                  "the level comes back");
    fuzz::require(again->brepMode == std::min(options.brepMode, BRepMode::BRepAndTessellation),
                  "the mode comes back");
    fuzz::require(again->pmiDefaultColor.has_value() == options.pmiDefaultColor.has_value(),
                  "the colour comes back");
    return 0;
}
