#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "backends/occt/step/value.h"

namespace occt::step {

/// Signs of drawings, as UTF-8. docs/07-pmi.md lists them with their code points.
namespace sign {
constexpr const char* Diameter = "\u2300";
constexpr const char* PlusMinus = "\u00B1";
constexpr const char* Degree = "\u00B0";
constexpr const char* Arc = "\u2312";
constexpr const char* Square = "\u25A1";
constexpr const char* Range = "\u2026";
constexpr const char* Projected = "\u24C5";
constexpr const char* Unequal = "\u24CA";
constexpr const char* SurfaceFinish = "\u221A";
}  // namespace sign

/// The sign of a name in the spelling that files use: a kind of tolerance ("flatness"), of
/// modifier ("MAXIMUM_MATERIAL_REQUIREMENT"), or of a note on a dimension ("square"). Empty for
/// an unknown name.
std::string_view toleranceSign(std::string_view kind);
std::string_view toleranceModifierSign(std::string_view modifier);
std::string_view datumModifierSign(std::string_view modifier);
std::string_view dimensionNoteSign(std::string_view note);
std::string_view drawingSymbolSign(std::string_view symbol);

/// Number without an exponent where that is readable, with at most 12 significant digits: what
/// lies behind them is noise of a writer's own conversions. `decimals`: digits that have to
/// stand behind the point, as long as they show the whole number; negative for none.
std::string drawingNumber(double number, int decimals = -1);

/// The text on one line: control characters and runs of blanks become one blank each, none at
/// the ends.
std::string oneLine(std::string_view text);

/// Bytes that a line of PMI may have: nobody reads a longer one to its end, and many items may
/// share a text of a megabyte.
constexpr std::size_t kLongestLine = 16'000;

/// oneLine(), cut between characters to the length that a line may have.
std::string shortLine(std::string_view text);

/// oneLine(), cut to the length that a name may have, between characters.
std::string shortName(std::string_view text);

/// Whether a name says something: not blank, not a number of an entity, nothing that a program
/// made up for itself.
bool saysMore(std::string_view name);

/// "DIMENSIONAL_SIZE" as "Dimensional size".
std::string asWords(std::string_view keyword);

/// Small letters for capitals of ASCII.
std::string inSmallLetters(std::string_view text);

/// Adds a word behind a blank; nothing for an empty one.
void addWord(std::string& text, std::string_view word);

}  // namespace occt::step
