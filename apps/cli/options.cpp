#include "apps/cli/options.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <limits>
#include <sstream>
#include <string_view>

#include "apps/cli/text.h"

namespace cli {
namespace {

constexpr const char* kDescription =
    "Compares two STEP files: product structure and 3D geometry, row by row.";

constexpr const char* kFooter = R"(
Examples:
  bextora old.step new.step                 show both trees and what changed
  bextora --changes-only old.step new.step  only what differs
  bextora --json old.step new.step          the same for programs (docs/06-json.md)
  bextora --exit-on geometry a.stp b.stp    moved or renamed parts still exit with 0
  bextora --keep-result diff.glb a.stp b.stp
                                            keep the coloured 3D result for any viewer
  bextora -- -odd-name.step new.step        a name that begins with a dash

Words:
  product structure  added, deleted   only in COMPARE, only in REFERENCE
                     moved            listed at another position among its siblings, perhaps only
                                      because one before it was added or removed
                     modified         something below it is not the same
  3D comparison      moved            the same body, standing elsewhere or turned
                     changed          a body of another shape in its place

Exit code: 0 no differences, 1 differences, 2 trouble, 130 interrupted.)";

struct Unit {
    std::string_view name;
    std::uint64_t factor;
};

template <std::size_t Count>
std::optional<std::uint64_t> parseWithUnit(std::string_view text, const Unit (&units)[Count]) {
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || number == 0) return std::nullopt;
    const std::string_view unit(end, static_cast<std::size_t>(text.data() + text.size() - end));
    for (const Unit& known : units) {
        if (unit != known.name) continue;
        if (number > std::numeric_limits<std::uint64_t>::max() / known.factor) return std::nullopt;
        return number * known.factor;
    }
    return std::nullopt;
}

/// CLI11 reports a wrong value by what a check returns; empty means right.
template <typename Parser>
auto checkedBy(Parser parser, const std::string& what) {
    return [parser, what](const std::string& text) {
        return parser(text) ? std::string() : printable(text) + " is not " + what;
    };
}

void addFlags(CLI::App& app, Options& options) {
    app.add_flag("--json", options.json, "Print JSON instead of text");
    app.add_flag("--changes-only", options.changesOnly, "Leave out what is the same on both sides");
    const std::map<std::string, Colour> colours = {
        {"auto", Colour::Auto}, {"always", Colour::Always}, {"never", Colour::Never}};
    app.add_option("--color", options.colour,
                   "Colour the states; auto: when standard output is a terminal")
        ->transform(CLI::CheckedTransformer(colours).description(""))
        ->option_text("auto|always|never");
    app.add_flag("--status", options.status,
                 "Show the host's status bar texts on standard error as they appear");
}

void addLimits(CLI::App& app, Options& options) {
    app.add_option_function<std::string>(
           "--memory-limit",
           [&](const std::string& text) { options.memoryLimitBytes = parseSize(text).value_or(0); },
           "Memory that each of the two helpers may use (default: 45 % of the machine's)")
        ->check(CLI::Validator(checkedBy(parseSize, "a size such as 512M or 2G"), ""))
        ->option_text("SIZE");
    app.add_option_function<std::string>(
           "--time-limit",
           [&](const std::string& text) { options.timeLimitMs = parseDuration(text).value_or(0); },
           "Time that each helper may take (default: 30m)")
        ->check(CLI::Validator(checkedBy(parseDuration, "a time such as 90s, 10m or 2h"), ""))
        ->option_text("TIME");
}

void addOutcome(CLI::App& app, Options& options) {
    app.add_option("--keep-result", options.keepResult,
                   "Keep the 3D result of the comparison in a file (.xbf or .glb)")
        ->check(CLI::Validator(
            [](const std::string& path) {
                return isKeepable(path) ? std::string()
                                        : printable(path) + " must end in .xbf or .glb";
            },
            ""))
        ->option_text("FILE");
    app.add_option_function<std::string>(
           "--exit-on",
           [&](const std::string& list) { options.exitOn = parseExitOn(list).value_or(ExitOn()); },
           "Differences that make the exit code 1: structure, geometry, placement (default: all)")
        ->check(
            CLI::Validator(checkedBy(parseExitOn, "a list of structure, geometry, placement"), ""))
        ->option_text("LIST");
}

std::string asError(const std::string& text) {
    return "bextora: " + text + "\nTry 'bextora --help'.";
}

}  // namespace

std::optional<std::uint64_t> parseSize(const std::string& text) {
    constexpr Unit units[] = {{"", 1},
                              {"K", std::uint64_t{1} << 10},
                              {"M", std::uint64_t{1} << 20},
                              {"G", std::uint64_t{1} << 30},
                              {"T", std::uint64_t{1} << 40}};
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

std::optional<ExitOn> parseExitOn(const std::string& list) {
    ExitOn wanted{false, false, false};
    std::size_t from = 0;
    while (from <= list.size()) {
        const std::size_t comma = std::min(list.find(',', from), list.size());
        const std::string word = list.substr(from, comma - from);
        if (word == "structure") {
            wanted.structure = true;
        } else if (word == "geometry") {
            wanted.geometry = true;
        } else if (word == "placement") {
            wanted.placement = true;
        } else {
            return std::nullopt;
        }
        from = comma + 1;
    }
    return wanted;
}

bool isKeepable(const std::string& path) {
    return path.size() > 4 && (path.ends_with(".xbf") || path.ends_with(".glb"));
}

ParsedArguments parseArguments(int argc, const char* const* argv) {
    ParsedArguments parsed;
    Options options;
    CLI::App app(kDescription, "bextora");
    app.footer(kFooter);
    app.set_version_flag("--version", std::string("bextora ") + BEXTORA_VERSION);
    app.add_option("REFERENCE", options.referencePath, "The file to compare with")
        ->required()
        ->option_text(" ");
    app.add_option("COMPARE", options.comparePath, "The file that may differ from it")
        ->required()
        ->option_text(" ");
    addFlags(app, options);
    addOutcome(app, options);
    addLimits(app, options);
    try {
        app.parse(argc, argv);
        parsed.options = options;
    } catch (const CLI::CallForHelp&) {
        parsed.standardOutput = app.help() + "\n";
    } catch (const CLI::CallForVersion& version) {
        parsed.standardOutput = std::string(version.what()) + "\n";
    } catch (const CLI::Error& error) {
        parsed.exitCode = exit_code::Trouble;
        parsed.standardError = asError(printable(std::string_view(error.what())));
    }
    return parsed;
}

}  // namespace cli
