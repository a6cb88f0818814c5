#include "backends/occt/step/dimension.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "backends/occt/step/pmi_text.h"

namespace occt::step {
namespace {

// Items of one dimension that are looked at; files have up to five. Many dimensions may share
// one representation.
constexpr std::size_t kMostItems = 32;

bool has(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

/// The name that a file gives to the kind of a dimension.
std::string kindName(const std::vector<Record>& records) {
    for (const Record& record : records) {
        if (record.keyword == "SHAPE_ASPECT_RELATIONSHIP") return shortName(record.text(0));
    }
    for (const Record& record : records) {
        if (!DimensionReader::isDimension(record.keyword) || record.values.empty()) continue;
        const std::string& text = record.text(record.at(0).isText() ? 0 : 1);
        if (!text.empty()) return shortName(text);
    }
    return {};
}

std::string kindOf(const std::vector<Record>& records) {
    const std::string name = kindName(records);
    if (saysMore(name)) return asWords(name);
    for (const Record& record : records) {
        if (DimensionReader::isDimension(record.keyword)) return asWords(record.keyword);
    }
    return {};
}

std::string_view prefixOf(const std::string& kind) {
    const bool spherical = has(kind, "spherical");
    if (has(kind, "diamet")) return spherical ? "S\u2300" : sign::Diameter;
    if (has(kind, "radius") || has(kind, "radial")) return spherical ? "SR" : "R";
    if (has(kind, "curve length") || has(kind, "curved distance")) return sign::Arc;
    return {};
}

}  // namespace

struct DimensionReader::Parts {
    std::optional<Measure> nominal;
    std::optional<Measure> upper;
    std::optional<Measure> lower;
    bool basic = false;
    bool auxiliary = false;
    bool square = false;
    bool controlled = false;
    std::vector<std::string> notes;
};

DimensionReader::DimensionReader(const Part21& file, const MeasureReader& measures)
    : file_(file), measures_(measures) {
    const auto link = [&file](const char* keyword, std::size_t from, std::size_t to, auto& links) {
        for (const std::uint32_t index : file.ofType(keyword)) {
            const auto record = file.read(file.instances()[index].id, keyword);
            if (!record) continue;
            auto& list = links[record->reference(from)];
            if (list.size() < kMostItems) list.push_back(record->reference(to));
        }
    };
    link("DIMENSIONAL_CHARACTERISTIC_REPRESENTATION", 0, 1, representations_);
    link("PLUS_MINUS_TOLERANCE", 1, 0, deviations_);
}

bool DimensionReader::isDimension(std::string_view keyword) {
    return keyword.starts_with("DIMENSIONAL_LOCATION") || keyword.starts_with("DIMENSIONAL_SIZE") ||
           keyword == "ANGULAR_LOCATION" || keyword == "ANGULAR_SIZE" ||
           keyword == "DIRECTED_DIMENSIONAL_LOCATION";
}

void DimensionReader::readItems(std::uint64_t representation, Parts& parts) const {
    const Instance* const instance = file_.find(representation);
    if (instance == nullptr) return;
    std::vector<std::uint64_t> items;
    for (const Record& record : file_.read(*instance)) {
        if (record.at(1).isList()) collectReferences(record.at(1), items);
    }
    items.resize(std::min(items.size(), kMostItems));
    for (const std::uint64_t item : items) {
        const auto range = file_.read(item, "VALUE_RANGE");
        if (!range) {
            readItem(item, parts);
            continue;
        }
        std::vector<std::uint64_t> limits;
        collectReferences(range->at(1), limits);
        limits.resize(std::min(limits.size(), kMostItems));
        for (const std::uint64_t limit : limits) readItem(limit, parts);
    }
}

void DimensionReader::readItem(std::uint64_t item, Parts& parts) const {
    if (const auto note = file_.read(item, "DESCRIPTIVE_REPRESENTATION_ITEM")) {
        readNote(*note, parts);
        return;
    }
    auto measure = measures_.read(item);
    if (!measure) return;
    auto& place = has(measure->name, "upper")   ? parts.upper
                  : has(measure->name, "lower") ? parts.lower
                                                : parts.nominal;
    if (!place) place = std::move(measure);
}

void DimensionReader::readNote(const Record& record, Parts& parts) const {
    const std::string note = inSmallLetters(oneLine(record.text(1)));
    if (note == "theoretical" || note == "basic") {
        parts.basic = true;
    } else if (note == "auxiliary" || note == "reference") {
        parts.auxiliary = true;
    } else if (note == "square") {
        parts.square = true;
    } else if (note == "controlled radius") {
        parts.controlled = true;
    } else if (const auto text = dimensionNoteSign(note); !text.empty()) {
        parts.notes.emplace_back(text);
    } else if (saysMore(note)) {
        parts.notes.push_back(shortName(record.text(1)));
    }
}

std::string DimensionReader::deviations(std::uint64_t id, double partUnitMm) const {
    const auto found = deviations_.find(id);
    if (found == deviations_.end()) return {};
    std::vector<std::string> texts;
    for (const std::uint64_t range : found->second) {
        if (const auto fit = file_.read(range, "LIMITS_AND_FITS")) {
            std::string grade = shortName(fit->text(2));
            if (grade.starts_with("IT")) grade.erase(0, 2);
            texts.push_back(shortName(fit->text(0)) + grade);
            continue;
        }
        const auto limits = file_.read(range, "TOLERANCE_VALUE");
        auto lower = limits ? measures_.read(limits->reference(0)) : std::nullopt;
        auto upper = limits ? measures_.read(limits->reference(1)) : std::nullopt;
        if (!lower && !upper) continue;
        // Some writers give the upper one first.
        if (lower && upper && lower->value > upper->value) std::swap(lower, upper);
        const bool even = lower && upper && upper->value > 0.0 &&
                          drawingNumber(upper->value) == drawingNumber(-lower->value);
        if (even) {
            texts.push_back(sign::PlusMinus + measures_.text(*upper, partUnitMm));
            continue;
        }
        std::string text = upper ? measures_.signedText(*upper, partUnitMm) : std::string();
        if (lower) text += (upper ? "/" : "") + measures_.signedText(*lower, partUnitMm);
        texts.push_back(std::move(text));
    }
    std::sort(texts.begin(), texts.end());
    std::string out;
    for (const std::string& text : texts) addWord(out, text);
    return out;
}

std::string DimensionReader::value(std::uint64_t id, const Parts& parts, double partUnitMm) const {
    std::string limits;
    if (parts.lower) limits = measures_.text(*parts.lower, partUnitMm);
    if (parts.upper) {
        if (parts.lower) limits += sign::Range;
        limits += measures_.text(*parts.upper, partUnitMm);
        if (!parts.lower) limits += " MAX";
    } else if (parts.lower) {
        limits += " MIN";
    }
    if (!parts.nominal) return limits;
    std::string out = measures_.text(*parts.nominal, partUnitMm);
    if (!limits.empty()) addWord(out, '(' + limits + ')');
    addWord(out, deviations(id, partUnitMm));
    addWord(out, parts.nominal->qualifiers);
    return out;
}

DimensionText DimensionReader::read(std::uint64_t id, const std::vector<Record>& records,
                                    double partUnitMm) const {
    DimensionText out;
    out.kind = kindOf(records);
    Parts parts;
    const auto found = representations_.find(id);
    if (found != representations_.end()) {
        for (const std::uint64_t representation : found->second) readItems(representation, parts);
    }
    for (const auto& measure : {parts.nominal, parts.lower, parts.upper}) {
        if (measure) out.values.push_back(measure->value);
    }
    out.text = value(id, parts, partUnitMm);
    if (out.text.empty()) return out;
    const std::string kind = inSmallLetters(out.kind);
    const bool plainRadius = parts.controlled && prefixOf(kind) == "R";
    std::string text(plainRadius ? "CR" : prefixOf(kind));
    if (parts.square) text += sign::Square;
    text += out.text;
    if (parts.basic) text = '[' + text + ']';
    if (parts.auxiliary) text = '(' + text + ')';
    std::sort(parts.notes.begin(), parts.notes.end());
    for (const std::string& note : parts.notes) addWord(text, note);
    out.text = std::move(text);
    return out;
}

}  // namespace occt::step
