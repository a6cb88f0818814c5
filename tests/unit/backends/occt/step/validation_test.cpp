#include "backends/occt/step/validation.h"

#include <gtest/gtest.h>

#include "tests/unit/backends/occt/step/attribute_texts.h"

namespace {

using occt::step::titleOf;
using occt::step::validationKey;
using step_test::attributesOfPart;
using step_test::property;

using Texts = std::vector<std::string>;

TEST(StepValidation, NumbersForCheckingReadersHaveKeysOfTheirOwn) {
    EXPECT_EQ(attributesOfPart(
                  property(50, 13, "geometric validation property", "#60", "volume") +
                  property(53, 13, "geometric_validation_property", "#61", "centroid") +
                  property(56, 12, "assembly validation property", "#62", "") +
                  "#60=MEASURE_REPRESENTATION_ITEM('volume measure',VOLUME_MEASURE(1.5),#63);"
                  "#61=CARTESIAN_POINT('centre point',(1.,-2.5,0.));"
                  "#62=VALUE_REPRESENTATION_ITEM('number of children',COUNT_MEASURE(4.));"
                  "#63=DERIVED_UNIT((#64));#64=DERIVED_UNIT_ELEMENT(#901,3.);"),
              (Texts{"Validation Centroid='(1, -2.5, 0)'", "Validation Number Of Children=4u",
                     "Validation Volume='1.5 mm\u00B3'"}));
}

TEST(StepValidation, KeysComeFromTheItemElseFromItsRepresentation) {
    EXPECT_EQ(validationKey("surface area measure", "x"), "Validation Surface Area");
    EXPECT_EQ(validationKey("wetted area measure", ""), "Validation Wetted Area");
    EXPECT_EQ(validationKey("", "surface area"), "Validation Surface Area");
    EXPECT_EQ(validationKey("#12", "centroid"), "Validation Centroid");
    EXPECT_EQ(validationKey("notional_solids_centroid", ""), "Validation Notional Solids Centroid");
    EXPECT_EQ(validationKey("", " "), "");
}

TEST(StepValidation, TitlesHaveCapitals) {
    EXPECT_EQ(titleOf("design_owner"), "Design Owner");
    EXPECT_EQ(titleOf("DENSITY MEASURE"), "Density");
    EXPECT_EQ(titleOf("#1"), "");
}

TEST(StepValidation, PointsThatAreNoneAreLeftOut) {
    for (const char* point : {"(1.,2.,3.,4.)", "()", "$", "('a',1.)", "(1.,NaN)"}) {
        EXPECT_EQ(attributesOfPart(property(50, 13, "geometric validation property", "#60") +
                                   "#60=CARTESIAN_POINT('centre point'," + point + ");"),
                  Texts{})
            << point;
    }
}

}  // namespace
