#include "backends/occt/step/pmi_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>

namespace occt::step {
namespace {

struct Sign {
    std::string_view name;
    std::string_view text;
};

// Each table in alphabetical order of the names as files write them.
constexpr Sign kTolerances[] = {
    {"angularity", "\u2220"},      {"circular runout", "\u2197"}, {"coaxiality", "\u25CE"},
    {"concentricity", "\u25CE"},   {"cylindricity", "\u232D"},    {"flatness", "\u23E5"},
    {"line profile", "\u2312"},    {"parallelism", "\u2225"},     {"perpendicularity", "\u27C2"},
    {"position", "\u2316"},        {"roundness", "\u25CB"},       {"straightness", "\u23E4"},
    {"surface profile", "\u2313"}, {"symmetry", "\u232F"},        {"total runout", "\u2330"},
};

constexpr Sign kToleranceModifiers[] = {
    {"ANY_CROSS_SECTION", "ACS"},
    {"COMMON_ZONE", "CZ"},
    {"EACH_RADIAL_ELEMENT", "EACH RADIAL ELEMENT"},
    {"FREE_STATE", "\u24BB"},
    {"LEAST_MATERIAL_CONDITION", "\u24C1"},
    {"LEAST_MATERIAL_REQUIREMENT", "\u24C1"},
    {"LINE_ELEMENT", "LE"},
    {"MAJOR_DIAMETER", "MD"},
    {"MAXIMUM_MATERIAL_CONDITION", "\u24C2"},
    {"MAXIMUM_MATERIAL_REQUIREMENT", "\u24C2"},
    {"MINOR_DIAMETER", "LD"},
    {"NOT_CONVEX", "NC"},
    {"PITCH_DIAMETER", "PD"},
    {"RECIPROCITY_REQUIREMENT", "\u24C7"},
    {"REGARDLESS_OF_FEATURE_SIZE", "\u24C8"},
    {"SEPARATE_REQUIREMENT", "SEP REQT"},
    {"SEPARATE_ZONE", "SZ"},
    {"STATISTICAL_TOLERANCE", "ST"},
    {"TANGENT_PLANE", "\u24C9"},
    {"UNITED_FEATURE", "UF"},
};

constexpr Sign kDatumModifiers[] = {
    {"ANY_CROSS_SECTION", "ACS"},
    {"ANY_LONGITUDINAL_SECTION", "ALS"},
    {"BASIC", "BSC"},
    {"CIRCULAR_OR_CYLINDRICAL", "\u2300"},
    {"CONTACTING_FEATURE", "CF"},
    {"DEGREE_OF_FREEDOM_CONSTRAINT_U", "[u]"},
    {"DEGREE_OF_FREEDOM_CONSTRAINT_V", "[v]"},
    {"DEGREE_OF_FREEDOM_CONSTRAINT_W", "[w]"},
    {"DEGREE_OF_FREEDOM_CONSTRAINT_X", "[x]"},
    {"DEGREE_OF_FREEDOM_CONSTRAINT_Y", "[y]"},
    {"DEGREE_OF_FREEDOM_CONSTRAINT_Z", "[z]"},
    {"DISTANCE", "DISTANCE"},
    {"DISTANCE_VARIABLE", "DV"},
    {"FREE_STATE", "\u24BB"},
    {"LEAST_MATERIAL_CONDITION", "\u24C1"},
    {"LEAST_MATERIAL_REQUIREMENT", "\u24C1"},
    {"LINE", "SL"},
    {"MAJOR_DIAMETER", "MD"},
    {"MAXIMUM_MATERIAL_CONDITION", "\u24C2"},
    {"MAXIMUM_MATERIAL_REQUIREMENT", "\u24C2"},
    {"MINOR_DIAMETER", "LD"},
    {"ORIENTATION", "><"},
    {"PITCH_DIAMETER", "PD"},
    {"PLANE", "PL"},
    {"POINT", "PT"},
    {"PROJECTED", "\u24C5"},
    {"REGARDLESS_OF_FEATURE_SIZE", "\u24C8"},
    {"SPHERICAL", "S\u2300"},
    {"TRANSLATION", "\u25B7"},
};

constexpr Sign kDimensionNotes[] = {
    {"any cross section", "ACS"},
    {"any part of the feature", "/0"},
    {"area diameter calculated size", "CA"},
    {"average rank order size", "SA"},
    {"circumference diameter calculated size", "CC"},
    {"common tolerance", "CT"},
    {"continuous feature", "CF"},
    {"controlled radius", "CR"},
    {"envelope requirement", "\u24BA"},
    {"free state condition", "\u24BB"},
    {"independency requirement", "\u24BE"},
    {"least square association criterion", "GG"},
    {"local size defined by a sphere", "LS"},
    {"maximum inscribed association criterion", "GX"},
    {"maximum rank order size", "SX"},
    {"median rank order size", "SM"},
    {"mid range rank order size", "SD"},
    {"minimum circumscribed association criterion", "GN"},
    {"minimum rank order size", "SN"},
    {"range rank order size", "SR"},
    {"specific fixed cross section", "SCS"},
    {"square", "\u25A1"},
    {"statistical", "ST"},
    {"two point size", "LP"},
    {"volume diameter calculated size", "CV"},
};

constexpr Sign kDrawingSymbols[] = {
    {"arc", "\u2312"},
    {"conical taper", "\u2332"},
    {"counterbore", "\u2334"},
    {"countersink", "\u2335"},
    {"depth", "\u21A7"},
    {"diameter", "\u2300"},
    {"dimension origin", ""},
    {"plus minus", "\u00B1"},
    {"radius", "R"},
    {"slope", "\u2333"},
    {"spherical diameter", "S\u2300"},
    {"spherical radius", "SR"},
    {"square", "\u25A1"},
};

template <std::size_t N>
std::string_view find(const Sign (&table)[N], std::string_view name) {
    const auto* const found =
        std::find_if(table, table + N, [name](const Sign& sign) { return sign.name == name; });
    return found == table + N ? std::string_view() : found->text;
}

// Names that are longer are shown by nobody, and texts of a megabyte exist.
constexpr std::size_t kLongestName = 200;
constexpr int kDigits = 12;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isTail(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

/// Length of the control character at `at`, 0 when there is none.
std::size_t controlLength(std::string_view text, std::size_t at) {
    const auto byte = static_cast<unsigned char>(text[at]);
    if (byte <= 0x20 || byte == 0x7F) return 1;
    // U+0080 to U+00A0: the second set of control characters, and a blank that looks like one.
    if (byte != 0xC2 || at + 1 >= text.size()) return 0;
    const auto next = static_cast<unsigned char>(text[at + 1]);
    return next >= 0x80 && next <= 0xA0 ? 2 : 0;
}

/// oneLine() of the text, of `most` bytes at most before the sign that says that it was cut.
std::string cut(std::string_view text, std::size_t most) {
    // Behind what is cut off nothing has to be cleaned.
    const std::size_t looked = 4 * most;
    std::string out = oneLine(text.substr(0, looked));
    if (out.size() <= most) return text.size() <= looked ? out : out + sign::Range;
    std::size_t end = most;
    while (end > 0 && isTail(out[end])) --end;
    return out.substr(0, end) + sign::Range;
}

std::string written(double number, std::chars_format format, int precision) {
    // The largest double has 309 digits before the point.
    char buffer[400];
    const auto end = std::to_chars(std::begin(buffer), std::end(buffer), number, format, precision);
    return {std::begin(buffer), end.ptr};
}

double rounded(double number) {
    const std::string text = written(number, std::chars_format::scientific, kDigits - 1);
    double value = number;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

}  // namespace

std::string_view toleranceSign(std::string_view kind) {
    return find(kTolerances, kind);
}

std::string_view toleranceModifierSign(std::string_view modifier) {
    return find(kToleranceModifiers, modifier);
}

std::string_view datumModifierSign(std::string_view modifier) {
    return find(kDatumModifiers, modifier);
}

std::string_view dimensionNoteSign(std::string_view note) {
    return find(kDimensionNotes, note);
}

std::string_view drawingSymbolSign(std::string_view symbol) {
    const std::string_view sign = find(kDrawingSymbols, symbol);
    return sign.empty() ? find(kTolerances, symbol) : sign;
}

std::string drawingNumber(double number, int decimals) {
    if (!std::isfinite(number)) return {};
    const double value = rounded(number);
    if (value == 0.0) number = 0.0;
    constexpr int mostDecimals = 15;
    if (decimals >= 0 && decimals <= mostDecimals && std::abs(value) < 1e15) {
        const std::string text = written(value, std::chars_format::fixed, decimals);
        double shown = 0.0;
        std::from_chars(text.data(), text.data() + text.size(), shown);
        if (shown == value) return value == 0.0 && text[0] == '-' ? text.substr(1) : text;
    }
    if (value == 0.0) return "0";
    const double size = std::abs(value);
    const bool readable = size >= 1e-6 && size < 1e15;
    char buffer[400];
    const auto end =
        std::to_chars(std::begin(buffer), std::end(buffer), value,
                      readable ? std::chars_format::fixed : std::chars_format::general);
    return {std::begin(buffer), end.ptr};
}

std::string oneLine(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    bool gap = false;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t control = controlLength(text, at);
        if (control > 0) {
            gap = !out.empty();
            at += control;
            continue;
        }
        if (gap) out += ' ';
        gap = false;
        out += text[at++];
    }
    return out;
}

std::string shortLine(std::string_view text) {
    return cut(text, kLongestLine);
}

std::string shortName(std::string_view text) {
    return cut(text, kLongestName);
}

bool saysMore(std::string_view name) {
    const auto hasMeaning = [](char c) {
        return static_cast<unsigned char>(c) >= 0x80 || (c >= 'A' && c <= 'Z') ||
               (c >= 'a' && c <= 'z') || isDigit(c);
    };
    if (std::none_of(name.begin(), name.end(), hasMeaning)) return false;
    const std::size_t begin = name.find_first_not_of(" \t");
    if (name[begin] != '#') return true;
    return !std::all_of(name.begin() + static_cast<std::ptrdiff_t>(begin) + 1, name.end(),
                        [](char c) { return isDigit(c) || c == ' '; });
}

std::string asWords(std::string_view keyword) {
    std::string out;
    for (const char c : keyword) {
        if (c == '_')
            out += ' ';
        else if (c >= 'A' && c <= 'Z' && !out.empty())
            out += static_cast<char>(c - 'A' + 'a');
        else if (c >= 'a' && c <= 'z' && out.empty())
            out += static_cast<char>(c - 'a' + 'A');
        else
            out += c;
    }
    return out;
}

std::string inSmallLetters(std::string_view text) {
    std::string out(text);
    for (char& c : out) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return out;
}

void addWord(std::string& text, std::string_view word) {
    if (word.empty()) return;
    if (!text.empty()) text += ' ';
    text += word;
}

}  // namespace occt::step
