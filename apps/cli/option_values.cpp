#include <charconv>
#include <cmath>
#include <initializer_list>
#include <limits>
#include <string_view>
#include <utility>

#include "apps/cli/options.h"
#include "apps/cli/switches.h"

namespace cli {
namespace {

struct Unit {
    std::string_view name;
    std::uint64_t factor;
};

std::string withSmallLetters(std::string_view text) {
    std::string small(text);
    for (char& c : small) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return small;
}

template <std::size_t Count>
std::optional<std::uint64_t> parseWithUnit(std::string_view text, const Unit (&units)[Count]) {
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || number == 0) return std::nullopt;
    const std::string_view unit(end, static_cast<std::size_t>(text.data() + text.size() - end));
    for (const Unit& known : units) {
        if (withSmallLetters(unit) != known.name) continue;
        if (number > std::numeric_limits<std::uint64_t>::max() / known.factor) return std::nullopt;
        return number * known.factor;
    }
    return std::nullopt;
}

/// Sets the fields that the comma-separated words name.
template <typename Fields>
std::optional<Fields> parseWords(
    const std::string& list, Fields wanted,
    std::initializer_list<std::pair<std::string_view, bool Fields::*>> words) {
    std::size_t from = 0;
    while (from <= list.size()) {
        const std::size_t comma = std::min(list.find(',', from), list.size());
        const std::string_view word = std::string_view(list).substr(from, comma - from);
        bool known = false;
        for (const auto& [name, field] : words) {
            if (name != word) continue;
            wanted.*field = known = true;
        }
        if (!known) return std::nullopt;
        from = comma + 1;
    }
    return wanted;
}

}  // namespace

std::optional<std::uint64_t> parseSize(const std::string& text) {
    constexpr Unit units[] = {{"", 1},
                              {"k", std::uint64_t{1} << 10},
                              {"m", std::uint64_t{1} << 20},
                              {"g", std::uint64_t{1} << 30},
                              {"t", std::uint64_t{1} << 40}};
    return parseWithUnit(text, units);
}

std::optional<std::uint32_t> parseDuration(const std::string& text) {
    constexpr Unit units[] = {{"", 1000}, {"s", 1000}, {"m", 60000}, {"h", 3600000}};
    const auto milliseconds = parseWithUnit(text, units);
    if (!milliseconds || *milliseconds > std::numeric_limits<std::uint32_t>::max()) {
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(*milliseconds);
}

std::optional<double> parseTolerance(const std::string& text) {
    double value = 0.0;
    const char* const end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, value, std::chars_format::fixed);
    const bool number = parsed.ec == std::errc() && parsed.ptr == end && std::isfinite(value);
    return number && value > 0.0 ? std::optional(value) : std::nullopt;
}

std::optional<ExitOn> parseExitOn(const std::string& list) {
    return parseWords(list, ExitOn{false, false, false, false, false, false},
                      {{"structure", &ExitOn::structure},
                       {"geometry", &ExitOn::geometry},
                       {"placement", &ExitOn::placement},
                       {"bom", &ExitOn::bom},
                       {"attributes", &ExitOn::attributes},
                       {"pmi", &ExitOn::pmi}});
}

std::optional<Sections> parseSections(const std::string& list) {
    return parseWords(list, Sections{false, false, false, false, false, false, false},
                      {{"structure", &Sections::structure},
                       {"file", &Sections::file},
                       {"bom", &Sections::bom},
                       {"attributes", &Sections::attributes},
                       {"parts", &Sections::parts},
                       {"pmi", &Sections::pmi},
                       {"geometry", &Sections::geometry}});
}

std::optional<SwitchSetting> parseSwitch(const std::string& text) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos) return std::nullopt;
    const std::string value = text.substr(equals + 1);
    if (value != "0" && value != "1") return std::nullopt;
    const std::string wanted = withSmallLetters(text.substr(0, equals));
    for (const Switch& known : allSwitches()) {
        if (withSmallLetters(known.name) == wanted) return SwitchSetting{known.name, value == "1"};
    }
    return std::nullopt;
}

bool isKeepable(const std::string& path) {
    const std::string small = withSmallLetters(path);
    return path.size() > 4 && (small.ends_with(".xbf") || small.ends_with(".glb"));
}

}  // namespace cli
