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
    bool structure = true;   ///< a node of a tree that is not the same
    bool geometry = true;    ///< an instance that is added, removed, changed or was not compared
    bool placement = true;   ///< an instance that moved
    bool bom = true;         ///< a part name on one side only, or in another quantity
    bool attributes = true;  ///< an attribute of a file or part, its name and time stamp aside
    bool pmi = true;         ///< an item on one side only, or with another text
};

/// What is printed, as far as the user's switches leave it.
struct Sections {
    bool structure = true;
    bool file = true;
    bool bom = true;
    bool attributes = true;
    bool parts = false;  ///< the attributes of each part
    bool pmi = true;
    bool geometry = true;
};

/// One of the switches in the user's key store, and what it is to be.
struct SwitchSetting {
    std::string name;  ///< as the store spells it
    bool on = false;
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
    Sections sections;
    bool openStructure = false;           ///< sections were named, the structure among them
    bool copy = false;                    ///< print what Copy gives in place of the report
    std::string report;                   ///< where Save saves; empty: it is not pressed
    bool listSwitches = false;            ///< print the switches; no files are needed
    std::vector<SwitchSetting> switches;  ///< for this run, the last of a name counts
    bool saveSwitches = false;            ///< for good; no files are needed
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

/// Comma-separated words "structure", "geometry", "placement", "bom", "attributes", "pmi". Empty
/// for any other word and for an empty list.
std::optional<ExitOn> parseExitOn(const std::string& list);

/// Comma-separated words "structure", "file", "bom", "attributes", "parts", "pmi", "geometry".
/// Empty for any other word and for an empty list.
std::optional<Sections> parseSections(const std::string& list);

/// "NAME=0" or "NAME=1" of a known switch, letters of either case. Empty for anything else.
std::optional<SwitchSetting> parseSwitch(const std::string& text);

/// True when a result can be kept under that name, by its extension.
bool isKeepable(const std::string& path);

}  // namespace cli
