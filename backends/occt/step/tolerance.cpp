#include "backends/occt/step/tolerance.h"

#include <algorithm>
#include <optional>

#include "backends/occt/step/pmi_text.h"

namespace occt::step {
namespace {

// Datums in one frame, modifiers of one tolerance and zones of it that are looked at. Drawings
// have three; texts with thousands of them help nobody, and many tolerances may share them.
constexpr std::size_t kMost = 32;

constexpr std::string_view kTolerance = "_TOLERANCE";

bool has(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

std::string_view zonePrefix(const std::string& form) {
    if (has(form, "spher")) return "S\u2300";
    if (has(form, "concentric") || has(form, "coaxial")) return {};
    return has(form, "cylind") || has(form, "circ") ? sign::Diameter : std::string_view();
}

template <typename List>
void cut(List& list) {
    if (list.size() > kMost) list.resize(kMost);
}

/// The words of a set, by the order of their own.
std::vector<std::string> sortedWords(const Value& value) {
    std::vector<std::string> words;
    if (value.kind == Value::Kind::Word) words.push_back(value.text);
    for (const Value& item : value.items) {
        if (item.kind == Value::Kind::Word) words.push_back(item.text);
        if (words.size() == kMost) break;
    }
    std::sort(words.begin(), words.end());
    return words;
}

}  // namespace

/// What the records of one tolerance hold.
struct ToleranceReader::Frame {
    std::string kind;  ///< in small letters
    std::uint64_t magnitude = 0;
    std::uint64_t displacement = 0;
    std::uint64_t largest = 0;
    std::uint64_t unitSize = 0;
    std::uint64_t secondUnitSize = 0;
    std::string areaType;
    bool unequal = false;
    std::vector<std::string> modifiers;
    const Value* datums = nullptr;
};

ToleranceReader::ToleranceReader(const Part21& file, const MeasureReader& measures)
    : file_(file), measures_(measures) {
    linkZones();
    linkDatums();
    linkTargets();
}

bool ToleranceReader::isTolerance(std::string_view keyword) {
    if (keyword == "GEOMETRIC_TOLERANCE") return true;
    return keyword.ends_with(kTolerance) && keyword != "PLUS_MINUS_TOLERANCE" &&
           !keyword.ends_with("GEOMETRIC_TOLERANCE");
}

bool ToleranceReader::isDatum(std::string_view keyword) {
    return keyword == "DATUM" || keyword == "COMMON_DATUM";
}

bool ToleranceReader::isDatumTarget(std::string_view keyword) {
    return keyword == "DATUM_TARGET" || keyword == "PLACED_DATUM_TARGET_FEATURE";
}

void ToleranceReader::linkZones() {
    std::unordered_map<std::uint64_t, std::uint64_t> projections;
    for (const std::uint32_t index : file_.ofType("PROJECTED_ZONE_DEFINITION")) {
        const auto record = file_.read(file_.instances()[index].id, "PROJECTED_ZONE_DEFINITION");
        if (record && record->values.size() >= 2) {
            projections[record->reference(0)] = record->reference(record->values.size() - 1);
        }
    }
    for (const std::uint32_t index : file_.ofType("TOLERANCE_ZONE")) {
        const std::uint64_t id = file_.instances()[index].id;
        const auto record = file_.read(id, "TOLERANCE_ZONE");
        if (!record || record->values.size() < 2) continue;
        const std::size_t last = record->values.size() - 1;
        const auto form = file_.read(record->reference(last), "TOLERANCE_ZONE_FORM");
        Zone zone;
        if (form) zone.prefix = zonePrefix(inSmallLetters(form->text(0)));
        const auto projection = projections.find(id);
        if (projection != projections.end()) zone.projection = projection->second;
        std::vector<std::uint64_t> tolerances;
        collectReferences(record->at(last - 1), tolerances);
        for (const std::uint64_t tolerance : tolerances) {
            auto& list = zones_[tolerance];
            if (list.size() < kMost) list.push_back(zone);
        }
    }
}

void ToleranceReader::linkDatums() {
    for (const char* keyword :
         {"SHAPE_ASPECT_RELATIONSHIP", "FEATURE_FOR_DATUM_TARGET_RELATIONSHIP"}) {
        for (const std::uint32_t index : file_.ofType(keyword)) {
            const Instance& instance = file_.instances()[index];
            if (instance.type == Part21::kComplex) continue;
            const auto record = file_.read(instance.id, keyword);
            if (!record) continue;
            const Instance* const datum = file_.find(record->reference(3));
            if (datum == nullptr) continue;
            // Most relations join features; only those that end at a datum are kept.
            const bool simple = datum->type != Part21::kComplex;
            if (simple && !isDatum(file_.keyword(*datum))) continue;
            if (!simple && !file_.read(datum->id, "DATUM")) continue;
            auto& list = datums_[record->reference(2)];
            if (list.size() < kMost) list.push_back(datum->id);
        }
    }
}

void ToleranceReader::linkTargets() {
    std::unordered_map<std::uint64_t, std::uint64_t> subjects;
    for (const char* keyword : {"DATUM_TARGET", "PLACED_DATUM_TARGET_FEATURE"}) {
        for (const std::uint32_t index : file_.ofType(keyword)) {
            targetItems_[file_.instances()[index].id];
        }
    }
    if (targetItems_.empty()) return;
    for (const char* keyword : {"PROPERTY_DEFINITION", "PRODUCT_DEFINITION_SHAPE"}) {
        for (const std::uint32_t index : file_.ofType(keyword)) {
            const std::uint64_t id = file_.instances()[index].id;
            const auto record = file_.read(id, keyword);
            if (record && targetItems_.count(record->reference(2)) != 0) {
                subjects[id] = record->reference(2);
            }
        }
    }
    for (const char* keyword :
         {"SHAPE_DEFINITION_REPRESENTATION", "PROPERTY_DEFINITION_REPRESENTATION"}) {
        for (const std::uint32_t index : file_.ofType(keyword)) {
            const auto record = file_.read(file_.instances()[index].id, keyword);
            const auto subject = record ? subjects.find(record->reference(0)) : subjects.end();
            if (subject == subjects.end()) continue;
            const auto items =
                file_.read(record->reference(1), "SHAPE_REPRESENTATION_WITH_PARAMETERS");
            if (!items) continue;
            auto& list = targetItems_[subject->second];
            if (list.size() < kMost) collectReferences(items->at(1), list);
            cut(list);
        }
    }
}

const std::vector<std::uint64_t>& ToleranceReader::datumsOf(std::uint64_t aspect) const {
    static const std::vector<std::uint64_t> none;
    const auto found = datums_.find(aspect);
    return found == datums_.end() ? none : found->second;
}

void ToleranceReader::readPart(const Record& record, Frame& frame) const {
    const std::string& keyword = record.keyword;
    if (keyword == "GEOMETRIC_TOLERANCE") {
        frame.magnitude = record.reference(2);
    } else if (keyword == "GEOMETRIC_TOLERANCE_WITH_DATUM_REFERENCE") {
        frame.datums = &record.at(0);
    } else if (keyword == "GEOMETRIC_TOLERANCE_WITH_MODIFIERS" ||
               keyword == "MODIFIED_GEOMETRIC_TOLERANCE") {
        for (std::string& word : sortedWords(record.at(record.values.size() == 1 ? 0 : 4))) {
            frame.modifiers.push_back(std::move(word));
        }
    } else if (keyword == "GEOMETRIC_TOLERANCE_WITH_MAXIMUM_TOLERANCE") {
        frame.largest = record.reference(0);
    } else if (keyword == "UNEQUALLY_DISPOSED_GEOMETRIC_TOLERANCE") {
        frame.unequal = true;
        frame.displacement = record.reference(0);
    } else if (keyword == "GEOMETRIC_TOLERANCE_WITH_DEFINED_UNIT") {
        frame.unitSize = record.reference(0);
    } else if (keyword == "GEOMETRIC_TOLERANCE_WITH_DEFINED_AREA_UNIT") {
        frame.areaType = inSmallLetters(record.at(0).text);
        frame.secondUnitSize = record.reference(1);
    } else if (isTolerance(keyword)) {
        frame.kind = inSmallLetters(
            asWords(std::string_view(keyword).substr(0, keyword.size() - kTolerance.size())));
        // A kind that stands alone holds what the general record holds in a set of records.
        if (record.values.size() >= 4) frame.magnitude = record.reference(2);
        if (record.values.size() >= 5 && record.at(4).isList()) frame.datums = &record.at(4);
    }
}

std::string ToleranceReader::measure(std::uint64_t id, double partUnitMm) const {
    const auto found = measures_.read(id);
    return found ? measures_.text(*found, partUnitMm) : std::string();
}

std::string ToleranceReader::unitArea(const Frame& frame, double partUnitMm) const {
    const std::string size = measure(frame.unitSize, partUnitMm);
    if (size.empty()) return {};
    if (frame.areaType == "circular" || frame.areaType == "cylindrical") {
        return "/" + std::string(sign::Diameter) + size;
    }
    if (frame.areaType == "square") return "/" + std::string(sign::Square) + size;
    const std::string second = measure(frame.secondUnitSize, partUnitMm);
    return "/" + size + (second.empty() ? "" : "x" + second);
}

std::string ToleranceReader::zone(std::uint64_t id, double partUnitMm,
                                  std::string& projection) const {
    const auto found = zones_.find(id);
    if (found == zones_.end()) return {};
    std::string_view prefix;
    for (const Zone& zone : found->second) {
        prefix = std::max(prefix, zone.prefix);
        if (zone.projection == 0) continue;
        projection = std::max(
            projection, sign::Projected + std::string(" ") + measure(zone.projection, partUnitMm));
    }
    return std::string(prefix);
}

std::string ToleranceReader::frameText(std::uint64_t id, const Frame& frame,
                                       double partUnitMm) const {
    std::string projection;
    std::string size = zone(id, partUnitMm, projection) + measure(frame.magnitude, partUnitMm);
    size += unitArea(frame, partUnitMm);
    std::string text(toleranceSign(frame.kind));
    addWord(text, size);
    for (const std::string& modifier : frame.modifiers) {
        const std::string_view known = toleranceModifierSign(modifier);
        addWord(text, known.empty() ? shortName(modifier) : std::string(known));
    }
    const std::string largest = measure(frame.largest, partUnitMm);
    if (!largest.empty()) addWord(text, largest + " MAX");
    addWord(text, projection);
    if (frame.unequal) {
        addWord(text, sign::Unequal);
        addWord(text, measure(frame.displacement, partUnitMm));
    }
    if (frame.datums != nullptr) addWord(text, letters(*frame.datums));
    return text;
}

ToleranceText ToleranceReader::tolerance(std::uint64_t id, const std::vector<Record>& records,
                                         double partUnitMm) const {
    Frame frame;
    for (const Record& record : records) readPart(record, frame);
    cut(frame.modifiers);
    ToleranceText out;
    out.kind = frame.kind.empty() ? "Geometric tolerance" : asWords(frame.kind);
    if (const auto magnitude = measures_.read(frame.magnitude)) {
        out.values.push_back(magnitude->value);
    }
    out.text = frameText(id, frame, partUnitMm);
    return out;
}

std::string ToleranceReader::letters(const Value& references) const {
    std::vector<std::uint64_t> ids;
    collectReferences(references, ids);
    cut(ids);
    // Frames of the newer kind list their datums in order; in the older one each of them says
    // where it stands.
    std::vector<std::pair<double, std::string>> parts;
    for (const std::uint64_t id : ids) {
        const Instance* const instance = file_.find(id);
        if (instance == nullptr) continue;
        double place = 0.0;
        std::string text;
        for (const Record& record : file_.read(*instance)) {
            if (record.keyword == "DATUM_REFERENCE" ||
                record.keyword == "REFERENCED_MODIFIED_DATUM") {
                if (record.values.size() >= 2) {
                    place = record.at(0).number;
                    text = letter(record.reference(1)) + text;
                }
                const bool modified = record.keyword == "REFERENCED_MODIFIED_DATUM";
                if (modified) addWord(text, modifiers(record.at(record.values.size() - 1)));
            }
        }
        if (text.empty()) text = system(id);
        if (!text.empty()) parts.emplace_back(place, std::move(text));
    }
    std::stable_sort(parts.begin(), parts.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::string out;
    for (const auto& part : parts) addWord(out, part.second);
    return out;
}

const std::string& ToleranceReader::system(std::uint64_t id) const {
    const auto [place, isNew] = systems_.try_emplace(id);
    if (!isNew) return place->second;
    const auto record = file_.read(id, "DATUM_SYSTEM");
    if (!record || record->values.empty()) return place->second = letter(id);
    std::vector<std::uint64_t> compartments;
    collectReferences(record->at(record->values.size() - 1), compartments);
    cut(compartments);
    std::string text;
    for (const std::uint64_t compartment : compartments) {
        const auto part = file_.read(compartment, "DATUM_REFERENCE_COMPARTMENT");
        if (!part || part->values.size() < 2) continue;
        addWord(text, base(part->at(part->values.size() - 2)));
        addWord(text, modifiers(part->at(part->values.size() - 1)));
    }
    return place->second = text;
}

/// A datum, or several that make one together.
std::string ToleranceReader::base(const Value& value) const {
    if (value.isReference()) return letter(value.reference);
    std::vector<std::uint64_t> elements;
    collectReferences(value, elements);
    cut(elements);
    std::string text;
    for (const std::uint64_t id : elements) {
        const auto element = file_.read(id, "DATUM_REFERENCE_ELEMENT");
        const bool whole = element && element->values.size() >= 2;
        std::string part = letter(whole ? element->reference(element->values.size() - 2) : id);
        if (whole) addWord(part, modifiers(element->at(element->values.size() - 1)));
        if (!text.empty() && !part.empty()) text += '-';
        text += part;
    }
    return text;
}

std::string ToleranceReader::modifiers(const Value& list) const {
    std::vector<std::string> texts;
    const auto add = [this, &texts](const Value& value) {
        if (texts.size() == kMost) return;
        const bool typed = value.kind == Value::Kind::Typed && value.items.size() == 1;
        const Value& inner = typed ? value.items[0] : value;
        if (inner.kind == Value::Kind::Word) {
            const std::string_view known = datumModifierSign(inner.text);
            texts.push_back(known.empty() ? shortName(inner.text) : std::string(known));
        } else if (inner.isReference()) {
            const auto valued = file_.read(inner.reference, "DATUM_REFERENCE_MODIFIER_WITH_VALUE");
            const auto size = valued ? measures_.read(valued->reference(1)) : std::nullopt;
            if (!valued) return;
            std::string text(datumModifierSign(valued->at(0).text));
            if (size) text += drawingNumber(size->value, size->decimals);
            texts.push_back(std::move(text));
        }
    };
    if (list.isList()) {
        for (const Value& item : list.items) add(item);
    } else {
        add(list);
    }
    std::sort(texts.begin(), texts.end());
    std::string out;
    for (const std::string& text : texts) addWord(out, text);
    return out;
}

std::string ToleranceReader::letter(std::uint64_t datum) const {
    const Instance* const instance = file_.find(datum);
    return instance != nullptr ? this->datum(file_.read(*instance)).text : std::string();
}

ToleranceText ToleranceReader::datum(const std::vector<Record>& records) const {
    ToleranceText out;
    out.kind = "Datum";
    for (const Record& record : records) {
        if (!isDatum(record.keyword) || record.values.empty()) continue;
        const std::string& text = record.text(record.values.size() - 1);
        if (!text.empty()) out.text = shortName(text);
    }
    return out;
}

ToleranceText ToleranceReader::datumTarget(std::uint64_t id, const std::vector<Record>& records,
                                           double partUnitMm) const {
    ToleranceText out;
    out.kind = "Datum target";
    std::string number;
    std::string shape;
    for (const Record& record : records) {
        if (record.keyword == "SHAPE_ASPECT") shape = shortName(record.text(1));
        if (!isDatumTarget(record.keyword) || record.values.empty()) continue;
        number = shortName(record.text(record.values.size() - 1));
        if (record.values.size() >= 5) shape = shortName(record.text(1));
    }
    std::string letters;
    for (const std::uint64_t datum : datumsOf(id)) letters = std::max(letters, letter(datum));
    const bool hasLetter = !number.empty() && (number[0] < '0' || number[0] > '9');
    out.text = hasLetter ? number : letters + number;
    addWord(out.text, shape);
    std::vector<std::string> sizes;
    const auto items = targetItems_.find(id);
    if (items == targetItems_.end()) return out;
    for (const std::uint64_t item : items->second) {
        const auto size = measures_.read(item);
        if (!size) continue;
        out.values.push_back(size->value);
        const bool round = has(size->name, "diameter");
        sizes.push_back((round ? sign::Diameter : "") + measures_.text(*size, partUnitMm));
    }
    std::string size;
    for (const std::string& text : sizes) size += (size.empty() ? "" : "x") + text;
    addWord(out.text, size);
    return out;
}

}  // namespace occt::step
