#include "platform/bxt/unit_utils.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using bxtsg::SCInfo;
using bxtsgutils::InfoUtils;
using bxtsgutils::UnitUtils;
using Units = SCInfo::UNITS;

struct KnownUnit {
    Units code;
    double lengthM;
    const wchar_t* name;
};
const KnownUnit kUnits[] = {
    {Units::Millimeter, 0.001, L"mm"}, {Units::Centimeter, 0.01, L"cm"},
    {Units::Meter, 1.0, L"m"},         {Units::Kilometer, 1000.0, L"Km"},
    {Units::Inch, 0.0254, L"in"},      {Units::Foot, 0.3048, L"ft"},
    {Units::Yard, 0.9144, L"yd"},      {Units::Mile, 1609.344, L"mi"},
};
constexpr auto kNoUnit = static_cast<Units>(8);

TEST(UnitUtils, FindsEachUnitByItsLength) {
    for (const KnownUnit& unit : kUnits) {
        Units found = kNoUnit;
        EXPECT_TRUE(UnitUtils::populateUnit(unit.lengthM, found)) << unit.lengthM;
        EXPECT_EQ(found, unit.code) << unit.lengthM;
    }
}

TEST(UnitUtils, TakesTheShortenedMileForAMile) {
    Units found = kNoUnit;
    EXPECT_TRUE(UnitUtils::populateUnit(1609.34, found));
    EXPECT_EQ(found, Units::Mile);
}

TEST(UnitUtils, LeavesTheUnitAloneForOtherLengths) {
    for (const double lengthM :
         {0.0, -0.001, 0.0011, 0.0253, 0.3, 1609.0, 1e9, std::numeric_limits<double>::infinity(),
          std::numeric_limits<double>::quiet_NaN()}) {
        Units found = Units::Yard;
        EXPECT_FALSE(UnitUtils::populateUnit(lengthM, found)) << lengthM;
        EXPECT_EQ(found, Units::Yard);
    }
}

TEST(UnitUtils, FactorTurnsLengthsIntoTheDisplayUnit) {
    for (const KnownUnit& display : kUnits) {
        for (const KnownUnit& unit : kUnits) {
            double factor = 0.0;
            EXPECT_TRUE(UnitUtils::populateUnitFactor(display.code, unit.code, factor));
            EXPECT_DOUBLE_EQ(factor, unit.lengthM / display.lengthM);
            EXPECT_EQ(factor == 1.0, display.code == unit.code);
        }
    }
    double factor = 0.0;
    UnitUtils::populateUnitFactor(Units::Millimeter, Units::Inch, factor);
    EXPECT_EQ(factor, 25.4);
}

TEST(UnitUtils, LeavesTheFactorAloneForNoUnit) {
    double factor = 7.0;
    EXPECT_FALSE(UnitUtils::populateUnitFactor(kNoUnit, Units::Inch, factor));
    EXPECT_FALSE(UnitUtils::populateUnitFactor(Units::Inch, kNoUnit, factor));
    EXPECT_EQ(factor, 7.0);
}

TEST(InfoUtils, NamesEachUnit) {
    for (const KnownUnit& unit : kUnits) EXPECT_EQ(InfoUtils::getUnitName(unit.code), unit.name);
    EXPECT_EQ(InfoUtils::getUnitName(kNoUnit), L"");
}

TEST(SCMeasure, ShowsMillimetresUntilToldOtherwise) {
    bxtsg::SCMeasure measure;
    EXPECT_EQ(measure.displayUnit(), Units::Millimeter);
    measure.setDisplayUnit(Units::Foot);
    EXPECT_EQ(measure.displayUnit(), Units::Foot);
    EXPECT_EQ(bxtsg::SCMeasure(Units::Inch).displayUnit(), Units::Inch);
}

}  // namespace
