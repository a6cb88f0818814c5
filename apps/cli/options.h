#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace cli {

/// The program's exit codes, those of diff.
namespace exit_code {
constexpr int Same = 0;
constexpr int Different = 1;
constexpr int Trouble = 2;
constexpr int Interrupted = 130;  ///< as a shell reports a program that SIGINT ended
}  // namespace exit_code

enum class Colour { Auto, Always, Never };

/// Which differences make the exit code 1.
struct ExitOn {
    bool structure = true;  ///< a node of a tree that is not the same
    bool geometry = true;   ///< an instance that is added, removed, changed or was not compared
    bool placement = true;  ///< an instance that moved
};

/// What the command line asks for. Paths are the bytes of the command line, untouched.
struct Options {
    std::string referencePath;
    std::string comparePath;
    bool json = false;
    bool changesOnly = false;
    bool geometry = false;           ///< the 3D comparison alone, in full
    double lengthToleranceMm = 0.0;  ///< 0: the comparer's default
    double angleToleranceDeg = 0.0;  ///< 0: the comparer's default
    Colour colour = Colour::Auto;
    bool status = false;
    std::uint64_t memoryLimitBytes = 0;  ///< per helper; 0: the default
    std::uint32_t timeLimitMs = 0;       ///< per helper; 0: the default
    std::string keepResult;              ///< empty: not kept
    ExitOn exitOn;
};

/// What came out of a command line: options, or what to print and the code to exit with.
struct ParsedArguments {
    std::optional<Options> options;
    int exitCode = 0;
    std::string standardOutput;
    std::string standardError;
};

ParsedArguments parseArguments(int argc, const char* const* argv);

/// "512M", "2G", "100000": bytes. Empty for anything else, zero and what does not fit.
std::optional<std::uint64_t> parseSize(const std::string& text);

/// "90", "90s", "10m", "2h": milliseconds. Empty for anything else, zero and what does not fit.
std::optional<std::uint32_t> parseDuration(const std::string& text);

/// A finite number above zero with a full stop for the point, "0.01". Empty for anything else.
std::optional<double> parseTolerance(const std::string& text);

/// Comma-separated words "structure", "geometry", "placement". Empty for any other word and for
/// an empty list.
std::optional<ExitOn> parseExitOn(const std::string& list);

/// True when a result can be kept under that name, by its extension.
bool isKeepable(const std::string& path);

}  // namespace cli
