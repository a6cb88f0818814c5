#include "backends/occt/step/pmi_measure.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "backends/occt/step/pmi_text.h"
#include "backends/occt/step/units.h"

namespace occt::step {
namespace {

// Qualifiers of one measure that are looked at; files have one or two.
constexpr std::size_t kMostQualifiers = 16;

const Value* numberOf(const Value& value) {
    const bool wrapped = value.kind == Value::Kind::Typed && value.items.size() == 1;
    const Value& inner = wrapped ? value.items[0] : value;
    return inner.kind == Value::Kind::Number ? &inner : nullptr;
}

/// Digits behind the point of a number format such as "NR2 1.3"; negative when it names none.
int decimalsOf(const std::string& format) {
    const std::size_t point = format.rfind('.');
    if (format.rfind("NR2", 0) != 0 || point == std::string::npos) return -1;
    int digits = -1;
    std::from_chars(format.data() + point + 1, format.data() + format.size(), digits);
    return digits;
}

}  // namespace

MeasureReader::MeasureReader(const Part21& file) : file_(file) {
    for (const std::uint32_t index : file.ofType("MEASURE_QUALIFICATION")) {
        const auto record = file.read(file.instances()[index].id, "MEASURE_QUALIFICATION");
        if (record) collectReferences(record->at(3), qualifications_[record->reference(2)]);
    }
}

std::optional<Measure> MeasureReader::read(std::uint64_t id) const {
    const Instance* const instance = file_.find(id);
    if (instance == nullptr) return std::nullopt;
    Measure out;
    const Value* number = nullptr;
    std::vector<std::uint64_t> qualifiers;
    const auto records = file_.read(*instance);
    for (const Record& record : records) {
        const std::string& keyword = record.keyword;
        if (keyword == "REPRESENTATION_ITEM") {
            out.name = record.text(0);
        } else if (keyword == "QUALIFIED_REPRESENTATION_ITEM") {
            collectReferences(record.at(0), qualifiers);
        } else if (keyword.ends_with("MEASURE_WITH_UNIT") && record.values.size() >= 2) {
            number = numberOf(record.at(0));
            out.unit = record.reference(1);
        } else if (keyword == "MEASURE_REPRESENTATION_ITEM" && record.values.size() >= 3) {
            out.name = record.text(0);
            number = numberOf(record.at(1));
            out.unit = record.reference(2);
        } else if (keyword == "VALUE_REPRESENTATION_ITEM" && record.values.size() >= 2) {
            out.name = record.text(0);
            number = numberOf(record.at(1));
        }
    }
    if (number == nullptr || !std::isfinite(number->number)) return std::nullopt;
    out.value = number->number;
    out.name = inSmallLetters(shortName(out.name));
    const auto more = qualifications_.find(id);
    if (more != qualifications_.end()) {
        qualifiers.insert(qualifiers.end(), more->second.begin(), more->second.end());
    }
    qualifiers.resize(std::min(qualifiers.size(), kMostQualifiers));
    for (const std::uint64_t qualifier : qualifiers) qualify(out, qualifier);
    return out;
}

void MeasureReader::qualify(Measure& measure, std::uint64_t qualifier) const {
    if (const auto format = file_.read(qualifier, "VALUE_FORMAT_TYPE_QUALIFIER")) {
        measure.decimals = decimalsOf(format->text(0));
    } else if (const auto type = file_.read(qualifier, "TYPE_QUALIFIER")) {
        const std::string name = inSmallLetters(type->text(0));
        if (name == "maximum") addWord(measure.qualifiers, "MAX");
        if (name == "minimum") addWord(measure.qualifiers, "MIN");
        if (name == "average") addWord(measure.qualifiers, "AVG");
    }
}

const MeasureReader::Unit& MeasureReader::unitOf(std::uint64_t id) const {
    const auto [place, isNew] = units_.try_emplace(id);
    if (!isNew || id == 0) return place->second;
    Unit& unit = place->second;
    unit.lengthMm = lengthUnitMm(file_, id);
    const std::string symbol = oneLine(unitSymbol(file_, id));
    if (inSmallLetters(symbol).rfind("deg", 0) == 0 && symbol != "degC") {
        unit.symbol = sign::Degree;
    } else if (!symbol.empty()) {
        unit.symbol = ' ' + shortName(symbol);
    }
    return unit;
}

std::string MeasureReader::text(const Measure& measure, double partUnitMm) const {
    const Unit& unit = unitOf(measure.unit);
    std::string out = drawingNumber(measure.value, measure.decimals);
    // Writers give an inch as 25.4 or as 25.399999.
    const bool own =
        unit.lengthMm > 0.0 && std::abs(unit.lengthMm - partUnitMm) <= 1e-5 * std::abs(partUnitMm);
    return own ? out : out + unit.symbol;
}

std::string MeasureReader::signedText(const Measure& measure, double partUnitMm) const {
    const std::string out = text(measure, partUnitMm);
    return measure.value > 0.0 ? '+' + out : out;
}

}  // namespace occt::step
