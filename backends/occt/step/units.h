#pragma once

#include <cstdint>
#include <string>

#include "backends/occt/step/part21.h"

namespace occt::step {

/// Length of the unit of a representation's context (the number of its instance) in millimetres;
/// 0 when the context names none that can be read.
double contextUnitMm(const Part21& file, std::uint64_t context);

/// Length in millimetres of a length unit (SI_UNIT, CONVERSION_BASED_UNIT); 0 when it is none.
double lengthUnitMm(const Part21& file, std::uint64_t unit);

/// Unit of most representations of the file in millimetres; 1 when none is named.
double fileUnitMm(const Part21& file);

/// The known name of a unit by its length, "Millimeter" for one that has no name here.
struct NamedUnit {
    const char* name;
    double lengthMm;
};
NamedUnit namedUnit(double lengthMm);

/// Label of a measure unit for texts, "mm", "kg", "deg", ...; empty when unknown.
std::string unitSymbol(const Part21& file, std::uint64_t unit);

}  // namespace occt::step
