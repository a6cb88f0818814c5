#pragma once

#include <string>

#include "platform/bxt/schema.h"

namespace bxtsgutils {

/// Length units of the host. Safe from any thread.
class UnitUtils {
public:
    /// The unit whose length is `lengthM` metres, to a relative 1e-5: files and programs disagree
    /// about the sixth digit of a mile. False, with `unit` untouched, when there is none.
    static bool populateUnit(double lengthM, bxtsg::SCInfo::UNITS& unit);

    /// What a length in `unit` is multiplied by to be one in `displayUnit`; exactly 1.0 when the
    /// two are the same. False, with `factor` untouched, for a number that is no unit.
    static bool populateUnitFactor(bxtsg::SCInfo::UNITS displayUnit, bxtsg::SCInfo::UNITS unit,
                                   double& factor);
};

/// Names of what the host shows.
class InfoUtils {
public:
    /// "mm", "cm", "m", "Km", "in", "ft", "yd" or "mi", in every language; empty for a number
    /// that is no unit.
    static std::wstring getUnitName(bxtsg::SCInfo::UNITS displayUnit);
};

}  // namespace bxtsgutils
