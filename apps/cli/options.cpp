#include "apps/cli/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <sstream>
#include <string_view>

#include "apps/cli/text.h"
#include "backends/occt/file_formats.h"

namespace cli {
namespace {

constexpr const char* kDescription =
    "Compares two CAD files of any formats that '--formats' lists: product structure, file "
    "information with volumes, bill of materials, attributes, PMI and 3D geometry, row by row.";

constexpr const char* kFooter = R"(
Examples:
  bextora old.step new.step                 show every section, row by row
  bextora --changes-only old.step new.step  only what differs
  bextora --json old.step new.step          the same for programs (docs/06-json.md)
  bextora --geometry old.step new.step      which faces changed, where and by how much
  bextora --sections bom,pmi a.stp b.stp    these two sections alone
  bextora --parts old.step new.step         the attributes of each part as well
  bextora --report diff.csv a.stp b.stp     save a table for spreadsheets
  bextora --copy a.stp b.stp >diff.txt      the same as plain text
  bextora --set PMICompare=0 --save         leave PMI out from now on
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
  lists              different        in both files with another value
                     other quantity   the same part, more or fewer times

Exit code: 0 no differences, 1 differences, 2 trouble, 130 interrupted.)";

/// A table that reads well on a terminal and is Markdown as well.
std::string formatTable() {
    constexpr std::string_view heads[] = {"Format", "File names"};
    std::vector<std::array<std::string, 2>> rows;
    std::size_t widths[] = {heads[0].size(), heads[1].size()};
    for (const occt::FileFormat& format : occt::fileFormats()) {
        std::string patterns;
        for (const char c : format.patterns) {
            patterns += c == ';' ? std::string("`, `") : std::string(1, c);
        }
        rows.push_back({format.name, "`" + patterns + "`"});
        for (std::size_t i : {0U, 1U}) widths[i] = std::max(widths[i], rows.back()[i].size());
    }
    const auto line = [&widths](std::string_view first, std::string_view second, char filling) {
        std::string text = "|";
        for (std::size_t i : {0U, 1U}) {
            const std::string_view cell = i == 0 ? first : second;
            text += filling;
            text += cell;
            text += std::string(widths[i] - cell.size() + 1, filling) + "|";
        }
        return text + "\n";
    };
    std::string table = line(heads[0], heads[1], ' ') + line("", "", '-');
    for (const auto& row : rows) table += line(row[0], row[1], ' ');
    return table;
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
    app.add_flag("--geometry", options.geometry,
                 "Print the 3D comparison alone, with what happened to the faces of each body");
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

void addTolerance(CLI::App& app, const char* name, const char* unit, const char* what,
                  double& target) {
    app.add_option_function<std::string>(
           name, [&](const std::string& text) { target = parseTolerance(text).value_or(0.0); },
           what)
        ->check(CLI::Validator(checkedBy(parseTolerance, "a number above 0 such as 0.01"), ""))
        ->option_text(unit);
}

void addTolerances(CLI::App& app, Options& options) {
    addTolerance(app, "--tolerance", "MM",
                 "Points closer than this are one in the 3D comparison (default: 0.001)",
                 options.lengthToleranceMm);
    addTolerance(app, "--angle-tolerance", "DEG",
                 "Faces that turned by less point the same way (default: 0.05)",
                 options.angleToleranceDeg);
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
           "Differences that make the exit code 1: structure, geometry, placement, bom, "
           "attributes, pmi (default: all)")
        ->check(CLI::Validator(
            checkedBy(parseExitOn,
                      "a list of structure, geometry, placement, bom, attributes, pmi"),
            ""))
        ->option_text("LIST");
}

void addSections(CLI::App& app, Options& options) {
    app.add_option_function<std::string>(
           "--sections",
           [&](const std::string& list) {
               const bool parts = options.sections.parts;
               options.sections = parseSections(list).value_or(Sections());
               options.openStructure = options.sections.structure;
               options.sections.parts = options.sections.parts || parts;
           },
           "What to print: structure, file, bom, attributes, parts, pmi, geometry (default: all "
           "but parts)")
        ->check(CLI::Validator(
            checkedBy(parseSections,
                      "a list of structure, file, bom, attributes, parts, pmi, geometry"),
            ""))
        ->option_text("LIST");
    app.add_flag("--parts", options.sections.parts, "Print the attributes of each part as well");
}

void addResultsDialog(CLI::App& app, Options& options) {
    app.add_flag("--copy", options.copy,
                 "Print the text that the results dialog copies, and nothing else; with --parts "
                 "the parts' attributes, with '--sections structure' the trees too");
    app.add_option("--report", options.report, "Save the report of the results dialog")
        ->option_text("FILE.csv");
}

void addSwitches(CLI::App& app, Options& options) {
    app.add_flag("--settings", options.listSwitches, "List the switches and exit");
    app.add_option_function<std::vector<std::string>>(
           "--set",
           [&](const std::vector<std::string>& texts) {
               for (const std::string& text : texts) {
                   if (const auto setting = parseSwitch(text)) options.switches.push_back(*setting);
               }
           },
           "Turn a switch off or on for this run")
        ->allow_extra_args(false)
        ->check(CLI::Validator(checkedBy(parseSwitch, "NAME=0 or NAME=1 of a switch"), ""))
        ->option_text("NAME=0|1");
    app.add_flag("--save", options.saveSwitches, "Keep what --set sets for good");
}

/// What a command line must hold beyond what each option asks for itself.
void checkTogether(const Options& options, const CLI::Option& reference,
                   const CLI::Option& compare) {
    if (options.saveSwitches && options.switches.empty())
        throw CLI::RequiresError("--save", "--set");
    if (options.copy && options.json) throw CLI::ExcludesError("--copy", "--json");
    if (options.listSwitches || (options.saveSwitches && reference.empty())) return;
    if (reference.empty()) throw CLI::RequiredError("REFERENCE");
    if (compare.empty()) throw CLI::RequiredError("COMPARE");
}

std::string asError(const std::string& text) {
    return "bextora: " + text + "\nTry 'bextora --help'.";
}

}  // namespace

ParsedArguments parseArguments(int argc, const char* const* argv) {
    ParsedArguments parsed;
    Options options;
    CLI::App app(kDescription, "bextora");
    app.footer(kFooter);
    app.set_version_flag("--version", std::string("bextora ") + BEXTORA_VERSION);
    app.add_flag_callback(
        "--formats", [] { throw CLI::CallForVersion(formatTable(), 0); },
        "List the file formats that are read and exit");
    const auto* const reference =
        app.add_option("REFERENCE", options.referencePath, "The file to compare with")
            ->option_text(" ");
    const auto* const compare =
        app.add_option("COMPARE", options.comparePath, "The file that may differ from it")
            ->option_text(" ");
    addFlags(app, options);
    addSections(app, options);
    addResultsDialog(app, options);
    addTolerances(app, options);
    addOutcome(app, options);
    addLimits(app, options);
    addSwitches(app, options);
    try {
        app.parse(argc, argv);
        checkTogether(options, *reference, *compare);
        parsed.options = options;
    } catch (const CLI::CallForHelp&) {
        parsed.standardOutput = app.help() + "\n";
    } catch (const CLI::CallForVersion& version) {
        parsed.standardOutput = version.what();
        if (!parsed.standardOutput.ends_with('\n')) parsed.standardOutput += '\n';
    } catch (const CLI::Error& error) {
        parsed.exitCode = exit_code::Trouble;
        parsed.standardError = asError(printable(std::string_view(error.what())));
    }
    return parsed;
}

}  // namespace cli
