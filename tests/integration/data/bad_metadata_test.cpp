// Metadata that no sound system writes, through the real helper to the product's own lists.

#include <algorithm>
#include <map>

#include "diff/attrib_data_loader.h"
#include "diff/pmi_data_loader.h"
#include "extract/attributes.h"
#include "platform/os/utf8.h"
#include "tests/integration/data/data_imports.h"
#include "tests/support/step_builder.h"
#include "tests/support/step_text.h"

namespace {

using Attributes = std::map<std::string, std::string>;
using import_test::Imported;

/// A box named "block" with a property whose representation holds these items.
class BadMetadata : public data_test::DataImports {
protected:
    static std::string ref(std::uint64_t number) { return "#" + std::to_string(number); }

    static std::string boxWith(const std::string& items, const std::string& entities) {
        support::StepBuilder builder;
        builder.addBox("block", {10, 20, 30});
        auto text = support::StepText::parse(builder.write());
        std::uint64_t product = 0;
        std::uint64_t context = 0;
        for (const support::StepEntity& entity : text->entities) {
            const auto types = support::entityTypes(entity.text);
            if (types.front() == "PRODUCT_DEFINITION") product = entity.number;
            if (types.front() == "ADVANCED_BREP_SHAPE_REPRESENTATION") {
                context = support::entityReferences(entity.text).back();
            }
        }
        const std::string own = "\n#800000=PROPERTY_DEFINITION('user defined attribute',''," +
                                ref(product) +
                                ");\n#800001=PROPERTY_DEFINITION_REPRESENTATION(#800000,#800002);\n"
                                "#800002=REPRESENTATION('',(" +
                                items + ")," + ref(context) + ");\n" + entities;
        std::string bytes = text->write();
        return bytes.insert(bytes.rfind("ENDSEC;"), own);
    }

    /// Attributes of the only part as the product lists them.
    Attributes attributesOf(const std::string& bytes) {
        const Imported read = importText(bytes);
        std::vector<extract::PartAttributes> parts;
        extract::ExtractComponentAttributes(read.component, parts);
        EXPECT_EQ(parts.size(), 1U);
        Attributes out;
        for (const extract::PartAttributes& part : parts) {
            for (const extract::AttributeEntry& entry : part.attributes) {
                out[os::toUtf8(entry.key)] = os::toUtf8(entry.value);
            }
        }
        // A file against its copy shows no difference, whatever stands in it. Keys of the tests
        // begin with capitals, as all others: the search finds those of one kind of case.
        diff::AttribDataLoader attributes;
        const Imported copy = importText(bytes);
        attributes.LoadFileAttributes(read.component, copy.component);
        const std::vector<extract::ItemDiffState> same(attributes.referenceNames.size());
        EXPECT_EQ(attributes.referenceStates, same);
        EXPECT_EQ(attributes.compareStates, same);
        attributes.LoadPartAttributes(read.component, copy.component);
        for (const auto& part : attributes.referenceParts) EXPECT_FALSE(part.isDifferent);
        return out;
    }

    static std::string descriptive(int number, const std::string& key, const std::string& value) {
        return "#" + std::to_string(number) + "=DESCRIPTIVE_REPRESENTATION_ITEM('" + key + "','" +
               value + "');\n";
    }
};

TEST_F(BadMetadata, ControlCharactersBecomeBlanks) {
    const auto found = attributesOf(
        boxWith("#800010", descriptive(800010, "A\\X\\0Ab\x1b[2J", "x\ty\\X2\\0085\\X0\\z\x01")));
    ASSERT_EQ(found.count("A b [2J"), 1U);
    EXPECT_EQ(found.at("A b [2J"), "x y z");
    for (const auto& [key, value] : found) {
        for (const std::string& text : {key, value}) {
            EXPECT_TRUE(std::all_of(text.begin(), text.end(), [](char c) {
                return static_cast<unsigned char>(c) >= 0x20 && c != 0x7F;
            })) << key;
        }
    }
}

TEST_F(BadMetadata, AValueOfAMegabyteArrivesWhole) {
    const std::string megabyte(1'000'000, 'v');
    const auto found = attributesOf(boxWith("#800010", descriptive(800010, "Long", megabyte)));
    ASSERT_EQ(found.count("Long"), 1U);
    EXPECT_EQ(found.at("Long"), megabyte);
}

TEST_F(BadMetadata, AHundredThousandKeysOnOnePartArrive) {
    std::string items;
    std::string entities;
    constexpr int count = 100'000;
    for (int i = 0; i < count; ++i) {
        items += (i == 0 ? "#" : ",#") + std::to_string(800010 + i);
        entities += descriptive(800010 + i, "Key" + std::to_string(i), std::to_string(i));
    }
    const auto found = attributesOf(boxWith(items, entities));
    EXPECT_GE(found.size(), static_cast<std::size_t>(count));
    EXPECT_EQ(found.at("Key99999"), "99999");
}

TEST_F(BadMetadata, EncodingsThatAreCutShortAreShown) {
    const auto found = attributesOf(
        boxWith("#800010,#800011,#800012", descriptive(800010, "Cut", "a\\X2\\00E4004") +
                                               descriptive(800011, "Open", "b\\X2\\0041") +
                                               descriptive(800012, "Bytes", "c\xFF\xFE")));
    EXPECT_EQ(found.at("Cut"), "a\u00E4\uFFFD");
    EXPECT_EQ(found.at("Open"), "bA");
    EXPECT_EQ(found.at("Bytes").front(), 'c');
}

TEST_F(BadMetadata, ValuesOfOneKeyAreAllThere) {
    const auto found = attributesOf(
        boxWith("#800010,#800011", descriptive(800010, "K", "b") + descriptive(800011, "K", "a")));
    EXPECT_EQ(found.at("K"), "a");
    EXPECT_EQ(found.at("K 2"), "b");
}

TEST_F(BadMetadata, NumbersThatAreNoneAreLeftOut) {
    const auto found = attributesOf(
        boxWith("#800010,#800011,#800012,#800013,#800014",
                "#800010=MEASURE_REPRESENTATION_ITEM('Nan',LENGTH_MEASURE(NaN),#800020);\n"
                "#800011=MEASURE_REPRESENTATION_ITEM('Huge',LENGTH_MEASURE(1.E999),#800020);\n"
                "#800012=REAL_REPRESENTATION_ITEM('None',$);\n"
                "#800013=MEASURE_REPRESENTATION_ITEM('Strange',LENGTH_MEASURE(2.5),#800021);\n"
                "#800014=MEASURE_REPRESENTATION_ITEM('Lost',LENGTH_MEASURE(3.5),#999999);\n"
                "#800020=(LENGTH_UNIT()NAMED_UNIT(*)SI_UNIT(.MILLI.,.METRE.));\n"
                "#800021=CONTEXT_DEPENDENT_UNIT(#800022,'furlong per fortnight');\n"
                "#800022=DIMENSIONAL_EXPONENTS(1.,0.,0.,0.,0.,0.,0.);\n"));
    for (const char* key : {"Nan", "Huge", "None"}) EXPECT_EQ(found.count(key), 0U) << key;
    ASSERT_EQ(found.count("Strange"), 1U);
    EXPECT_TRUE(found.at("Strange").starts_with("2.5")) << found.at("Strange");
    ASSERT_EQ(found.count("Lost"), 1U);
    EXPECT_EQ(found.at("Lost"), "3.5");
}

TEST_F(BadMetadata, AFilesUnitThatNobodyKnowsCountsAsMillimetres) {
    std::string bytes = boxWith("#800010", descriptive(800010, "K", "v"));
    const std::string known = ".MILLI.,.METRE.";
    const auto at = bytes.find(known);
    ASSERT_NE(at, std::string::npos);
    bytes.replace(at, known.size(), ".MICRO.,.METRE.");
    EXPECT_EQ(attributesOf(bytes).at("Units"), "Millimeter");
}

}  // namespace
