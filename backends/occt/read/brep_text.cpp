#include "backends/occt/read/brep_text.h"

#include <algorithm>
#include <charconv>
#include <string>

namespace occt {
namespace {

/// Lines of a text from an offset on, without their ends.
class Lines {
public:
    Lines(std::string_view text, std::size_t offset) : text_(text), at_(offset) {}

    bool next(std::string_view& line) {
        if (at_ >= text_.size()) return false;
        const std::size_t end = std::min(text_.find('\n', at_), text_.size());
        line = text_.substr(at_, end - at_);
        if (line.ends_with('\r')) line.remove_suffix(1);
        at_ = end + 1;
        return true;
    }

private:
    std::string_view text_;
    std::size_t at_;
};

std::vector<std::string_view> words(std::string_view line) {
    std::vector<std::string_view> out;
    for (std::size_t at = line.find_first_not_of(' '); at != std::string_view::npos;) {
        const std::size_t end = std::min(line.find(' ', at), line.size());
        out.push_back(line.substr(at, end - at));
        at = line.find_first_not_of(' ', end);
    }
    return out;
}

/// Whether the word is the number of an entry: entries count from 1, and 0 stands for none.
bool namesEntry(std::string_view word) {
    std::uint64_t number = 0;
    const auto parsed = std::from_chars(word.data(), word.data() + word.size(), number);
    return parsed.ec == std::errc() && parsed.ptr == word.data() + word.size() && number > 0;
}

/// A shape begins with its kind in two letters.
bool isKind(std::string_view line) {
    return line.size() == 2 && line[0] >= 'A' && line[0] <= 'Z' && line[1] >= 'a' && line[1] <= 'z';
}

/// "0  1e-07 1 0": natural limits, tolerance, surface, location.
bool namesSurface(std::string_view line) {
    const auto word = words(line);
    return word.size() == 4 && namesEntry(word[2]);
}

/// "1  3 0 0 10": curve in space, its entry, location, first and last parameter.
bool namesCurve(std::string_view line) {
    const auto word = words(line);
    return word.size() == 5 && word[0] == "1" && namesEntry(word[1]);
}

}  // namespace

std::vector<BrepSection> brepSections(std::string_view bytes) {
    constexpr std::string_view names[] = {
        "Locations", "Curve2ds",       "Curves", "Polygon3D", "PolygonOnTriangulations",
        "Surfaces",  "Triangulations", "TShapes"};
    std::vector<BrepSection> sections;
    std::size_t at = 0;
    for (const std::string_view name : names) {
        const std::size_t found = bytes.find("\n" + std::string(name) + " ", at);
        if (found == std::string_view::npos) continue;
        BrepSection section{name, found + 1, std::nullopt};
        const char* const number = bytes.data() + found + name.size() + 2;
        std::uint64_t count = 0;
        const auto parsed = std::from_chars(number, bytes.data() + bytes.size(), count);
        if (parsed.ec == std::errc()) section.count = count;
        sections.push_back(section);
        at = section.offset;
    }
    return sections;
}

BrepGeometry brepGeometry(std::string_view text, std::size_t shapes) {
    BrepGeometry count;
    Lines lines(text, shapes);
    std::string_view kind;
    bool hasCurve = false;
    std::size_t position = 0;
    for (std::string_view line; lines.next(line);) {
        if (isKind(line)) {
            kind = line;
            position = 0;
            hasCurve = false;
            continue;
        }
        ++position;
        if (kind == "Fa" && position == 1 && namesSurface(line)) ++count.surfaces;
        if (kind != "Ed" || position == 1 || hasCurve || !namesCurve(line)) continue;
        hasCurve = true;
        ++count.curves;
    }
    return count;
}

}  // namespace occt
