#include "backends/occt/options_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <vector>

namespace occt {
namespace {

using HPS::Exchange::BRepMode;
using HPS::Exchange::ImportOptions;
using HPS::Exchange::Tessellation::Level;

constexpr std::array kSwitches = {
    &ImportOptions::solids,
    &ImportOptions::surfaces,
    &ImportOptions::wireframes,
    &ImportOptions::attributes,
    &ImportOptions::constructionAndReferences,
    &ImportOptions::pmi,
    &ImportOptions::featureTrees,
    &ImportOptions::pmiColorOverridesFile,
};

std::uint32_t byteOf(float channel) {
    const float clamped = channel >= 0.0F ? std::min(channel, 1.0F) : 0.0F;
    return static_cast<std::uint32_t>(std::lround(clamped * 255.0F));
}

}  // namespace

std::string formatOptions(const ImportOptions& options) {
    std::string text;
    for (const auto option : kSwitches) text += options.*option ? '1' : '0';
    text += '-';
    text += std::to_string(
        std::min<std::uint32_t>(static_cast<std::uint32_t>(options.tessellationLevel),
                                static_cast<std::uint32_t>(Level::ExtraHigh)));
    text += '-';
    text += std::to_string(
        std::min<std::uint32_t>(static_cast<std::uint32_t>(options.brepMode),
                                static_cast<std::uint32_t>(BRepMode::BRepAndTessellation)));
    text += '-';
    if (!options.pmiDefaultColor) return text + "none";
    const HPS::RGBColor& color = *options.pmiDefaultColor;
    return text +
           std::to_string(byteOf(color.red) | byteOf(color.green) << 8 | byteOf(color.blue) << 16);
}

std::optional<ImportOptions> parseOptions(const std::string& text) {
    ImportOptions options;
    if (text.size() < kSwitches.size() + 6) return std::nullopt;
    for (std::size_t i = 0; i < kSwitches.size(); ++i) {
        if (text[i] != '0' && text[i] != '1') return std::nullopt;
        options.*kSwitches[i] = text[i] == '1';
    }
    const std::string rest = text.substr(kSwitches.size());
    const bool shaped = rest[0] == '-' && rest[1] >= '0' && rest[1] <= '4' && rest[2] == '-' &&
                        rest[3] >= '0' && rest[3] <= '2' && rest[4] == '-';
    if (!shaped) return std::nullopt;
    options.tessellationLevel = static_cast<Level>(rest[1] - '0');
    options.brepMode = static_cast<BRepMode>(rest[3] - '0');
    if (rest.substr(5) == "none") return options;
    std::uint32_t packed = 0;
    const char* const end = rest.data() + rest.size();
    const auto parsed = std::from_chars(rest.data() + 5, end, packed);
    if (parsed.ec != std::errc() || parsed.ptr != end || packed > 0xFFFFFF) return std::nullopt;
    options.pmiDefaultColor = HPS::RGBColor{static_cast<float>(packed & 0xFF) / 255.0F,
                                            static_cast<float>((packed >> 8) & 0xFF) / 255.0F,
                                            static_cast<float>(packed >> 16) / 255.0F};
    // Keys are compared as text: the same colour with zeros in front would be another one.
    if (formatOptions(options) != text) return std::nullopt;
    return options;
}

}  // namespace occt
