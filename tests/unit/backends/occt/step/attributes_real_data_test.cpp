#include <algorithm>

#include <gtest/gtest.h>

#include "backends/occt/step/attributes.h"
#include "tests/support/real_data.h"
#include "tests/support/step_text.h"
#include "tests/unit/backends/occt/step/attribute_texts.h"

namespace {

std::string textOf(const std::string& file) {
    return support::readFile(support::realDataFolder() / file);
}

std::vector<std::string> valuesOf(const std::string& text, const std::string& product) {
    const occt::step::Part21 file(text);
    const auto products = occt::step::readProducts(file);
    const auto attributes = occt::step::readAttributes(file, products);
    for (std::size_t i = 0; i < products.products.size(); ++i) {
        if (products.products[i].name == product) return step_test::shown(attributes.products[i]);
    }
    return {};
}

/// Values that were read by hand from the entities whose numbers stand beside them.
struct Row {
    const char* file;
    const char* product;
    const char* value;
};

constexpr Row kRows[] = {
    // #6228 on #1901, #6219, #6220.
    {"A-revisions/OCCT__as1_by_system__2__as1-oc-214-mat.stp", "bolt", "Material='STEEL'"},
    // #6227 in #6221: grams (#6223) to the third and centimetres (#6225) to the second.
    {"A-revisions/OCCT__as1_by_system__2__as1-oc-214-mat.stp", "bolt",
     "Density='235 cm\u00B2*g\u00B3'"},
    // #376 in #375, inches to the third.
    {"B-pmi/OCCT__trj12_gd1-id-214.stp", "gdnt", "Validation Volume='5.214601837172753 in\u00B3'"},
    // #396.
    {"B-pmi/OCCT__trj12_gd1-id-214.stp", "gdnt",
     "Validation Surface Area='23.570796323373678 in\u00B2'"},
    // #2247, #2248, #2256 in #2255: kilograms, metres (#2252) to the minus third.
    {"B-pmi/OCCT__bug32745_pmi1.stp", "Block", "MATERIAL_DENSITY='7850 kg/m\u00B3'"},
    // #1495 on the body #1481 of the shape #1480, #1494.
    {"B-pmi/OCCT__bug33569.stp", "MULTI", "Material='STAHL_ALLGEMEIN'"},
    // #1491, #1490 in #1489.
    {"B-pmi/OCCT__bug33569.stp", "MULTI", "Density='7.85e-06 kg/mm\u00B3'"},
    // #54955, named by #54953.
    {"B-pmi/OCCT__bug33569.stp", "allgemeiner Stahl", "MATERIAL='Stahl allg.'"},
    // #53070 with #53067 and #53064: year 122, day 31, month 8.
    {"A-revisions/Framework-Laptop-13__printable_case_full_8416__rev1_2022-08-31_0d1a746.stp",
     "9_FW_TOP_COVER_MAIN", "Creation Date='2022-08-31'"},
    // #53060, #53059, #53058.
    {"A-revisions/Framework-Laptop-13__printable_case_full_8416__rev1_2022-08-31_0d1a746.stp",
     "9_FW_TOP_COVER_MAIN", "Security Classification='unclassified'"},
};

TEST(StepAttributesRealData, ValuesAreWhatTheEntitiesSay) {
    SKIP_WITHOUT_REAL_DATA();
    for (const Row& row : kRows) {
        const auto values = valuesOf(textOf(row.file), row.product);
        EXPECT_NE(std::find(values.begin(), values.end(), row.value), values.end())
            << row.file << ": " << row.product << ": " << row.value;
    }
}

TEST(StepAttributesRealData, EachPropertyOfAUserIsThere) {
    SKIP_WITHOUT_REAL_DATA();
    const std::string text = textOf("B-pmi/OCCT__bug32745_pmi1.stp");
    const auto file = support::StepText::parse(text);
    ASSERT_TRUE(file);
    const std::size_t named = file->count("GENERAL_PROPERTY_ASSOCIATION");
    EXPECT_EQ(named, 62U);
    std::vector<std::string> names;
    for (const support::StepEntity& entity : file->entities) {
        if (support::entityTypes(entity.text).front() != "GENERAL_PROPERTY") continue;
        const std::string name = support::entityParameters(entity.text).at(1);
        names.push_back(name.substr(1, name.size() - 2) + "=");
    }
    const auto values = valuesOf(text, "Block");
    const auto isNamed = [&names](const std::string& value) {
        return std::any_of(names.begin(), names.end(),
                           [&value](const std::string& name) { return value.starts_with(name); });
    };
    EXPECT_EQ(static_cast<std::size_t>(std::count_if(values.begin(), values.end(), isNamed)),
              named);
}

}  // namespace
