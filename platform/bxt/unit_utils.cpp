#include "platform/bxt/unit_utils.h"

#include <cmath>

namespace bxtsgutils {
namespace {

using bxtsg::SCInfo;

struct Unit {
    SCInfo::UNITS code;
    const wchar_t* name;
    double lengthMm;
};

// Millimetres, since most of these lengths are whole or short numbers there: ratios of two of
// them are as exact as a division can be.
constexpr Unit kUnits[] = {
    {SCInfo::UNITS::Millimeter, L"mm", 1.0}, {SCInfo::UNITS::Centimeter, L"cm", 10.0},
    {SCInfo::UNITS::Meter, L"m", 1000.0},    {SCInfo::UNITS::Kilometer, L"Km", 1e6},
    {SCInfo::UNITS::Inch, L"in", 25.4},      {SCInfo::UNITS::Foot, L"ft", 304.8},
    {SCInfo::UNITS::Yard, L"yd", 914.4},     {SCInfo::UNITS::Mile, L"mi", 1609344.0},
};

constexpr double kRelativeTolerance = 1e-5;
constexpr double kMmPerM = 1000.0;

const Unit* find(SCInfo::UNITS code) {
    for (const Unit& unit : kUnits) {
        if (unit.code == code) return &unit;
    }
    return nullptr;
}

}  // namespace

bool UnitUtils::populateUnit(double lengthM, SCInfo::UNITS& unit) {
    for (const Unit& known : kUnits) {
        const double difference = std::abs(lengthM * kMmPerM - known.lengthMm);
        if (difference <= kRelativeTolerance * known.lengthMm) {
            unit = known.code;
            return true;
        }
    }
    return false;
}

bool UnitUtils::populateUnitFactor(SCInfo::UNITS displayUnit, SCInfo::UNITS unit, double& factor) {
    const Unit* const to = find(displayUnit);
    const Unit* const from = find(unit);
    if (!to || !from) return false;
    factor = from->lengthMm / to->lengthMm;
    return true;
}

std::wstring InfoUtils::getUnitName(SCInfo::UNITS displayUnit) {
    const Unit* const unit = find(displayUnit);
    return unit ? unit->name : std::wstring();
}

}  // namespace bxtsgutils
