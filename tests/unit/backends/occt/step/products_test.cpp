#include "backends/occt/step/products.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "tests/support/step_builder.h"
#include "tests/unit/backends/occt/step/product_text.h"
#include "tests/unit/backends/occt/step/step_file.h"

namespace {

using occt::step::Part21;
using occt::step::Product;
using occt::step::Products;
using occt::step::ProductUsage;
using occt::step::readProducts;
using step_test::kContexts;
using step_test::product;
using step_test::Sides;
using step_test::StepFile;
using step_test::usage;

const Product& named(const Products& products, const std::string& name) {
    for (const Product& product : products.products) {
        if (product.name == name) return product;
    }
    ADD_FAILURE() << "no product " << name;
    return products.products.front();
}

std::vector<std::string> rootNames(const Products& products) {
    std::vector<std::string> names;
    for (const std::size_t root : products.roots) names.push_back(products.products[root].name);
    return names;
}

TEST(StepProducts, AFileWithoutProductsHasNone) {
    const Products products = readProducts(StepFile("#1=A();").file);
    EXPECT_TRUE(products.products.empty());
    EXPECT_TRUE(products.roots.empty());
    EXPECT_TRUE(products.cycle().empty());
    EXPECT_EQ(products.occurrenceCount(), 0U);
}

TEST(StepProducts, ProductsHaveTheirOwnFields) {
    const StepFile step(kContexts +
                        "#1=PRODUCT('id-1','Shaft','turned',());#2=PRODUCT_DEFINITION_FORMATION_"
                        "WITH_SPECIFIED_SOURCE('B','',#1,.MADE.);"
                        "#3=PRODUCT_DEFINITION('','',#2,$);");
    const Products products = readProducts(step.file);
    ASSERT_EQ(products.products.size(), 1U);
    const Product& shaft = products.products[0];
    EXPECT_EQ(shaft.name, "Shaft");
    EXPECT_EQ(shaft.id, "id-1");
    EXPECT_EQ(shaft.description, "turned");
    EXPECT_EQ(shaft.version, "B");
    EXPECT_EQ(shaft.instance, 3U);
    EXPECT_EQ(products.roots.size(), 1U) << "without content, but there is nothing better";
}

TEST(StepProducts, AProductWithoutANameTakesItsIdentifier) {
    const StepFile step(kContexts + product(10, "id-1", "") + product(20, "", "") +
                        product(40, "id-4", " ") + product(50, " ", "\t") +
                        "#30=PRODUCT_DEFINITION('','',#99,$);");
    const Products products = readProducts(step.file);
    EXPECT_EQ(products.products[0].name, "id-1");
    EXPECT_EQ(products.products[1].name, "");
    EXPECT_EQ(products.products[2].name, "id-4");
    EXPECT_EQ(products.products[3].name, "") << "blanks are no name";
    EXPECT_EQ(products.products[4].name, "");
}

TEST(StepProducts, UnitsAreThoseOfTheRepresentation) {
    const StepFile step(kContexts + product(10, "", "metric") + product(20, "", "imperial", 910) +
                        product(30, "", "unitless", 999));
    const Products products = readProducts(step.file);
    EXPECT_DOUBLE_EQ(named(products, "metric").unitMm, 1.0);
    EXPECT_DOUBLE_EQ(named(products, "imperial").unitMm, 25.4);
    EXPECT_DOUBLE_EQ(named(products, "unitless").unitMm, 1.0);
}

TEST(StepProducts, RootsAreWhatNothingUsesSortedByName) {
    const StepFile step(kContexts + product(10, "", "b") + product(20, "", "part") +
                        product(30, "", "a") + usage(100, 10, 20, 0) + usage(110, 30, 20, 0) +
                        "#50=PRODUCT('doc','paper','',());"
                        "#51=PRODUCT_DEFINITION_FORMATION('','',#50);"
                        "#52=PRODUCT_DEFINITION('','',#51,$);");
    const Products products = readProducts(step.file);
    EXPECT_EQ(rootNames(products), (std::vector<std::string>{"a", "b"}))
        << "a document has no content";
    EXPECT_EQ(products.occurrenceCount(), 4U);
    EXPECT_TRUE(named(products, "part").isUsed);
}

TEST(StepProducts, PlacementsAreReadWhicheverWayTheRelationLooks) {
    for (const Sides sides :
         {Sides::ByTheRule, Sides::RepresentationsTurned, Sides::ItemsTurned, Sides::BothTurned}) {
        // The parent holds the place among its items, as writers do.
        const StepFile step(kContexts + product(10, "", "top", 900, ",#101") +
                            product(20, "", "part") + usage(100, 10, 20, 7, "1", sides));
        const Products products = readProducts(step.file);
        const ProductUsage& found = named(products, "top").usages.at(0);
        EXPECT_TRUE(found.placed);
        EXPECT_DOUBLE_EQ(found.placement[3], 7.0) << static_cast<int>(sides);
    }
}

TEST(StepProducts, ATurnedRelationWithoutHelpfulItemsGoesByTheirOrder) {
    // Neither representation lists its placements.
    std::string text = kContexts + product(10, "", "top") + product(20, "", "part") +
                       usage(100, 10, 20, 7, "1", Sides::BothTurned);
    text.replace(text.find("(#25)"), 5, "()");
    const Products products = readProducts(StepFile(text).file);
    EXPECT_DOUBLE_EQ(named(products, "top").usages.at(0).placement[3], 7.0);
}

TEST(StepProducts, PlacementsOfMixedUnitsAreMillimetres) {
    const StepFile step(kContexts + product(10, "", "top", 910, ",#101") +
                        product(20, "", "part", 900) + usage(100, 10, 20, 2));
    const Products products = readProducts(step.file);
    EXPECT_DOUBLE_EQ(named(products, "top").usages.at(0).placement[3], 50.8);
}

TEST(StepProducts, OperatorsPlaceToo) {
    const std::string relation =
        "=(REPRESENTATION_RELATIONSHIP('','',#24,#14)REPRESENTATION_RELATIONSHIP_WITH_"
        "TRANSFORMATION(#52)SHAPE_REPRESENTATION_RELATIONSHIP());";
    const StepFile step(kContexts + product(10, "", "top") + product(20, "", "part") +
                        "#51=CARTESIAN_POINT('',(3.,0.,0.));"
                        "#52=CARTESIAN_TRANSFORMATION_OPERATOR_3D('','',$,$,$,#51,$,$);#53" +
                        relation +
                        "#54=NEXT_ASSEMBLY_USAGE_OCCURRENCE('','','',#12,#22,$);"
                        "#55=PRODUCT_DEFINITION_SHAPE('','',#54);"
                        "#56=CONTEXT_DEPENDENT_SHAPE_REPRESENTATION(#53,#55);");
    EXPECT_DOUBLE_EQ(named(readProducts(step.file), "top").usages.at(0).placement[3], 3.0);
}

TEST(StepProducts, MappedItemsPlaceUsagesThatHaveNoRelation) {
    const auto map = [](int base, double x) {
        return step_test::ref(base) + "=MAPPED_ITEM('',#70," + step_test::ref(base + 1) + ");" +
               step_test::ref(base + 1) + "=AXIS2_PLACEMENT_3D(''," + step_test::ref(base + 2) +
               ",$,$);" + step_test::ref(base + 2) + "=CARTESIAN_POINT('',(" + std::to_string(x) +
               ",0.,0.));\n";
    };
    const StepFile step(kContexts + product(10, "", "top", 900, ",#80,#84,#88") +
                        product(20, "", "part") + "#70=REPRESENTATION_MAP(#25,#24);" + map(80, 5) +
                        map(84, 9) + map(88, 11) +
                        "#60=NEXT_ASSEMBLY_USAGE_OCCURRENCE('1','','',#12,#22,$);"
                        "#61=NEXT_ASSEMBLY_USAGE_OCCURRENCE('2','','',#12,#22,$);");
    const Products products = readProducts(step.file);
    const auto& usages = named(products, "top").usages;
    ASSERT_EQ(usages.size(), 2U);
    EXPECT_DOUBLE_EQ(usages[0].placement[3], 5.0);
    EXPECT_DOUBLE_EQ(usages[1].placement[3], 9.0);
    EXPECT_EQ(products.usageItems, (std::vector<std::uint64_t>{80, 84}))
        << "the third one is geometry of the assembly's own";
}

TEST(StepProducts, UsagesWithoutAPlacementAreTold) {
    const StepFile step(kContexts + product(10, "", "top") + product(20, "", "part") +
                        "#60=NEXT_ASSEMBLY_USAGE_OCCURRENCE('1','','',#12,#22,$);");
    EXPECT_FALSE(named(readProducts(step.file), "top").usages.at(0).placed);
}

TEST(StepProducts, ComplexUsagesAreRead) {
    const StepFile step(kContexts + product(10, "", "top") + product(20, "", "part") +
                        "#60=(ASSEMBLY_COMPONENT_USAGE($)NEXT_ASSEMBLY_USAGE_OCCURRENCE()"
                        "PRODUCT_DEFINITION_RELATIONSHIP('7','first','',#12,#22)"
                        "PRODUCT_DEFINITION_USAGE()QUANTIFIED_ASSEMBLY_COMPONENT_USAGE(#99));");
    const Products products = readProducts(step.file);
    const ProductUsage& found = named(products, "top").usages.at(0);
    EXPECT_EQ(found.id, "7");
    EXPECT_EQ(found.name, "first");
    EXPECT_EQ(found.instance, 60U);
}

TEST(StepProducts, BrokenUsagesAreCounted) {
    const StepFile step(kContexts + product(10, "", "top") + product(20, "", "part") +
                        usage(100, 10, 20, 0) +
                        "#60=NEXT_ASSEMBLY_USAGE_OCCURRENCE('','','',#12,#99,$);"
                        "#61=NEXT_ASSEMBLY_USAGE_OCCURRENCE('','','',$,#22,$);"
                        "#62=NEXT_ASSEMBLY_USAGE_OCCURRENCE('');");
    const Products products = readProducts(step.file);
    EXPECT_EQ(products.usageCount, 4U);
    EXPECT_EQ(products.brokenUsages, 3U);
    EXPECT_EQ(named(products, "top").usages.size(), 1U);
}

TEST(StepProducts, UsagesStandInAnOrderOfTheirContent) {
    const std::string top = kContexts + product(10, "", "top") + product(20, "", "b") +
                            product(30, "", "a") + product(40, "", "a");
    const std::string usages[] = {usage(100, 10, 20, 0, "10"), usage(110, 10, 20, 3, "9"),
                                  usage(120, 10, 20, 2, "9"), usage(130, 10, 30, 1, "9"),
                                  usage(140, 10, 20, 0, "u2")};
    std::string forward = top;
    std::string backward = top;
    for (const std::string& text : usages) {
        forward += text;
        backward.insert(top.size(), text);
    }
    for (const std::string& text : {forward, backward}) {
        const Products products = readProducts(StepFile(text).file);
        std::vector<std::string> found;
        for (const ProductUsage& next : named(products, "top").usages) {
            found.push_back(next.id + products.products[next.product].name +
                            std::to_string(static_cast<int>(next.placement[3])));
        }
        EXPECT_EQ(found, (std::vector<std::string>{"9a1", "9b2", "9b3", "10b0", "u2b0"}));
    }
}

TEST(StepProducts, RepresentationsAreRelatedAcrossSeveralStepsInAnyOrder) {
    const std::string relations[] = {"#70=SHAPE_REPRESENTATION_RELATIONSHIP('','',#14,#80);",
                                     "#71=SHAPE_REPRESENTATION_RELATIONSHIP('','',#81,#80);",
                                     "#72=SHAPE_REPRESENTATION_RELATIONSHIP('','',#81,#82);"};
    for (const bool turned : {false, true}) {
        std::string text = kContexts + product(10, "", "part");
        for (std::size_t i = 0; i < 3; ++i) text += relations[turned ? 2 - i : i];
        const Products products = readProducts(StepFile(text).file);
        auto related = products.products.at(0).relatedRepresentations;
        std::sort(related.begin(), related.end());
        EXPECT_EQ(related, (std::vector<std::uint64_t>{80, 81, 82}));
    }
}

TEST(StepProducts, FileNamesComeFromExternalDocuments) {
    const StepFile step(kContexts + product(10, "", "top") +
                        "#70=DOCUMENT_FILE('x','','',#99,'','');"
                        "#71=APPLIED_DOCUMENT_REFERENCE(#70,'',(#12));"
                        "#72=APPLIED_EXTERNAL_IDENTIFICATION_ASSIGNMENT('gear.stp',#98,#97,(#70));"
                        "#73=APPLIED_EXTERNAL_IDENTIFICATION_ASSIGNMENT('',#98,#97,(#70));");
    EXPECT_EQ(readProducts(step.file).products.at(0).fileName, "gear.stp");
}

TEST(StepProducts, CyclesAreFoundOutermostFirst) {
    for (const std::size_t length : {std::size_t{1}, std::size_t{3}}) {
        for (const bool belowARoot : {false, true}) {
            const std::string text = support::cyclicAssembly(length, belowARoot);
            const Part21 file(text);
            const Products products = readProducts(file);
            const auto cycle = products.cycle();
            ASSERT_EQ(cycle.size(), length + 1);
            EXPECT_EQ(cycle.front(), cycle.back());
            for (std::size_t i = 0; i + 1 < cycle.size(); ++i) {
                const auto& usages = products.products[cycle[i]].usages;
                EXPECT_TRUE(std::any_of(usages.begin(), usages.end(), [&](const ProductUsage& u) {
                    return u.product == cycle[i + 1];
                }));
            }
        }
    }
}

TEST(StepProducts, CountingStopsBeforeItOverflows) {
    for (const auto& [levels, count] :
         {std::pair<std::size_t, std::uint64_t>{3, 15}, {20, (1ULL << 21) - 1}}) {
        const std::string text = support::doublingAssembly(levels);
        const Part21 file(text);
        EXPECT_EQ(readProducts(file).occurrenceCount(), count);
    }
    const std::string text = support::doublingAssembly(100);
    const Part21 file(text);
    EXPECT_EQ(readProducts(file).occurrenceCount(), std::uint64_t{1} << 62);
}

TEST(StepProducts, TwentyThousandLevelsAreRead) {
    constexpr int levels = 20'000;
    std::string text;
    for (int i = 1; i <= levels; ++i) {
        text += step_test::ref(2 * i) + "=PRODUCT_DEFINITION('','',$,$);\n";
        if (i == levels) break;
        text += step_test::ref(2 * i + 1) + "=NEXT_ASSEMBLY_USAGE_OCCURRENCE('','',''," +
                step_test::ref(2 * i) + "," + step_test::ref(2 * i + 2) + ",$);\n";
    }
    const Products products = readProducts(StepFile(text).file);
    EXPECT_EQ(products.occurrenceCount(), static_cast<std::uint64_t>(levels));
    EXPECT_TRUE(products.cycle().empty());
    EXPECT_EQ(products.roots, (std::vector<std::size_t>{0}));
}

TEST(StepProducts, EntitiesFindTheirProduct) {
    const StepFile step(kContexts + product(10, "", "a") + product(20, "", "b") +
                        "#70=SHAPE_ASPECT('','',#23,.T.);#71=DATUM_FEATURE('','',#70,.T.);"
                        "#72=LOOP(#73);#73=LOOP(#72);");
    const Products products = readProducts(step.file);
    const occt::step::ProductFinder finder(step.file, products);
    EXPECT_EQ(finder.productOf(71), std::size_t{1});
    EXPECT_EQ(finder.find(13), std::size_t{0});
    EXPECT_FALSE(finder.productOf(72));
    EXPECT_FALSE(finder.productOf(0));
    EXPECT_FALSE(finder.find(70));
}

TEST(StepProducts, EntitiesThatReferToEachOtherManyTimesAreLookedAtOnce) {
    std::string list = "#72";
    for (int i = 0; i < 2'000; ++i) list += ",#72,#73";
    const StepFile step(kContexts + product(10, "", "a") + "#72=LOOP((" + list + "));#73=LOOP((" +
                        list + "));");
    const Products products = readProducts(step.file);
    // Without that, 4,000 to the fourth power of references would be followed.
    EXPECT_FALSE(occt::step::ProductFinder(step.file, products).productOf(72));
}

TEST(StepProducts, NumbersInTextsCountByValue) {
    const char* const ordered[] = {"",      "01", "1",  "2",   "9a",  "10", "10.2",
                                   "10.10", "a",  "a1", "a02", "a10", "b",  "\xC3\xA4"};
    for (std::size_t i = 0; i < std::size(ordered); ++i) {
        for (std::size_t k = 0; k < std::size(ordered); ++k) {
            EXPECT_EQ(occt::step::naturalLess(ordered[i], ordered[k]), i < k)
                << ordered[i] << " " << ordered[k];
        }
    }
}

}  // namespace
