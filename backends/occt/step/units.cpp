#include "backends/occt/step/units.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

namespace occt::step {
namespace {

constexpr NamedUnit kUnits[] = {
    {"Millimeter", 1.0}, {"Centimeter", 10.0}, {"Meter", 1000.0}, {"Kilometer", 1e6},
    {"Inch", 25.4},      {"Foot", 304.8},      {"Yard", 914.4},   {"Mile", 1609344.0},
};

struct Prefix {
    const char* name;
    double factor;
    const char* letter;
};
constexpr Prefix kPrefixes[] = {
    {"EXA", 1e18, "E"},  {"PETA", 1e15, "P"},  {"TERA", 1e12, "T"},   {"GIGA", 1e9, "G"},
    {"MEGA", 1e6, "M"},  {"KILO", 1e3, "k"},   {"HECTO", 1e2, "h"},   {"DECA", 1e1, "da"},
    {"DECI", 1e-1, "d"}, {"CENTI", 1e-2, "c"}, {"MILLI", 1e-3, "m"},  {"MICRO", 1e-6, "u"},
    {"NANO", 1e-9, "n"}, {"PICO", 1e-12, "p"}, {"FEMTO", 1e-15, "f"}, {"ATTO", 1e-18, "a"},
};

constexpr std::pair<const char*, const char*> kSymbols[] = {
    {"METRE", "m"},  {"GRAM", "g"},   {"SECOND", "s"},  {"RADIAN", "rad"},
    {"KELVIN", "K"}, {"NEWTON", "N"}, {"PASCAL", "Pa"}, {"WATT", "W"},
    {"VOLT", "V"},   {"AMPERE", "A"}, {"JOULE", "J"},   {"DEGREE_CELSIUS", "degC"},
};

// A unit may be defined by another; nothing real goes deeper.
constexpr int kLongestChain = 8;

double prefixFactor(const Value& prefix) {
    for (const Prefix& known : kPrefixes) {
        if (prefix.text == known.name) return known.factor;
    }
    return 1.0;
}

double measure(const Record& record, std::size_t index) {
    const Value& value = record.at(index);
    if (value.kind == Value::Kind::Typed && value.items.size() == 1) return value.items[0].number;
    return value.number;
}

/// Record of the instance that is a measure with a unit; its value comes first, then the unit.
const Record* measureRecord(const std::vector<Record>& records) {
    for (const Record& record : records) {
        if (record.values.size() >= 2 && record.at(1).isReference()) return &record;
    }
    return nullptr;
}

}  // namespace

double lengthUnitMm(const Part21& file, std::uint64_t unit) {
    double factor = 1000.0;
    for (int step = 0; step < kLongestChain; ++step) {
        const Instance* const instance = file.find(unit);
        if (instance == nullptr) return 0.0;
        bool isLength = false;
        std::uint64_t next = 0;
        double own = 0.0;
        for (const Record& record : file.read(*instance)) {
            if (record.keyword == "LENGTH_UNIT") isLength = true;
            if (record.keyword == "SI_UNIT" && record.at(1).text == "METRE") {
                own = prefixFactor(record.at(0));
            }
            if (record.keyword == "CONVERSION_BASED_UNIT") next = record.reference(1);
        }
        if (!isLength) return 0.0;
        if (own > 0.0) return factor * own;
        const Instance* const source = next != 0 ? file.find(next) : nullptr;
        if (source == nullptr) return 0.0;
        const auto records = file.read(*source);
        const Record* const record = measureRecord(records);
        if (record == nullptr) return 0.0;
        factor *= measure(*record, 0);
        unit = record->reference(1);
        if (!(factor > 0.0) || !std::isfinite(factor)) return 0.0;
    }
    return 0.0;
}

double contextUnitMm(const Part21& file, std::uint64_t context) {
    const auto record = file.read(context, "GLOBAL_UNIT_ASSIGNED_CONTEXT");
    if (!record) return 0.0;
    for (const Value& unit : record->at(0).items) {
        const double length = lengthUnitMm(file, unit.reference);
        if (length > 0.0) return length;
    }
    return 0.0;
}

double fileUnitMm(const Part21& file) {
    std::map<double, int> votes;
    for (const std::uint32_t index : file.ofType("GLOBAL_UNIT_ASSIGNED_CONTEXT")) {
        const double length = contextUnitMm(file, file.instances()[index].id);
        if (length > 0.0) ++votes[length];
    }
    double best = 1.0;
    int most = 0;
    for (const auto& [length, count] : votes) {
        if (count <= most) continue;
        most = count;
        best = length;
    }
    return best;
}

NamedUnit namedUnit(double lengthMm) {
    for (const NamedUnit& unit : kUnits) {
        if (std::abs(lengthMm - unit.lengthMm) <= 1e-5 * unit.lengthMm) return unit;
    }
    return kUnits[0];
}

std::string unitSymbol(const Part21& file, std::uint64_t unit) {
    const Instance* const instance = file.find(unit);
    if (instance == nullptr) return {};
    for (const Record& record : file.read(*instance)) {
        if (record.keyword == "CONVERSION_BASED_UNIT" ||
            record.keyword == "CONTEXT_DEPENDENT_UNIT") {
            std::string name = record.text(0);
            std::transform(name.begin(), name.end(), name.begin(), [](char c) {
                return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
            });
            return name == "degree" ? "deg" : name == "inch" ? "in" : name;
        }
        if (record.keyword != "SI_UNIT") continue;
        std::string symbol;
        for (const Prefix& prefix : kPrefixes) {
            if (record.at(0).text == prefix.name) symbol = prefix.letter;
        }
        for (const auto& [name, text] : kSymbols) {
            if (record.at(1).text == name) return symbol + text;
        }
    }
    return {};
}

}  // namespace occt::step
