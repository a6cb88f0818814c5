#include "backends/occt/read/iges_structure.h"

#include <gtest/gtest.h>

#include "tests/support/iges_builder.h"

namespace {

using occt::iges::Kind;
using occt::iges::Structure;
using occt::iges::Text;
using support::IgesBuilder;

TEST(IgesText, DirectoryAndParametersAreRead) {
    IgesBuilder file;
    const int point = file.add(116, "1.5,-2.5D1,+3.E0,0", {.label = "P", .subscript = 7});
    const std::string bytes = file.write();
    const Text text(bytes);
    ASSERT_EQ(text.entities().size(), 1U);
    const auto* const entity = text.find(static_cast<std::uint32_t>(point));
    ASSERT_TRUE(entity);
    EXPECT_EQ(entity->type, 116);
    EXPECT_EQ(entity->label, "P 7");
    const auto values = text.values(*entity);
    ASSERT_EQ(values.size(), 5U);
    EXPECT_EQ(values[0].number, 116.0);
    EXPECT_EQ(values[1].number, 1.5);
    EXPECT_EQ(values[2].number, -25.0);
    EXPECT_EQ(values[3].number, 3.0);
    EXPECT_TRUE(text.isWhole());
    EXPECT_EQ(text.find(2), nullptr);
    EXPECT_EQ(text.find(99), nullptr);
}

TEST(IgesText, TheGlobalSectionHasItsOwnMarks) {
    const std::string bytes = IgesBuilder::onlyGlobal("1H//1H:/5Ha,b;c//7:");
    const Text text(bytes);
    EXPECT_TRUE(text.entities().empty());
    EXPECT_EQ(text.global(3).text, "a,b;c");
    EXPECT_EQ(text.global(5).number, 7.0);
    EXPECT_EQ(text.global(99).text, "");
}

TEST(IgesText, DamageIsCounted) {
    IgesBuilder file;
    file.add(116, "0,0,0,0");
    file.add(116, "1,0,0,0");
    const std::string whole = file.write();
    const Text cut(std::string_view(whole).substr(0, whole.size() - 82));
    EXPECT_FALSE(cut.isWhole());
    const std::string odd = "no line of ours\n" + whole;
    const Text text(odd);
    EXPECT_EQ(text.brokenLines(), 1U);
    EXPECT_EQ(text.firstBroken(), 1U);
    std::string wrong = whole;
    wrong.replace(wrong.find("     116"), 8, "     x16");
    EXPECT_EQ(Text(wrong).brokenEntries(), 1U);
}

TEST(IgesText, ATextLongerThanTheFileEndsWithIt) {
    IgesBuilder file;
    const int note = file.add(406, "2,99999Habc");
    const std::string bytes = file.write();
    const Text text(bytes);
    EXPECT_EQ(text.values(*text.find(static_cast<std::uint32_t>(note)))[2].text, "abc;");
}

TEST(IgesStructure, KindsFollowTypeAndForm) {
    const auto kind = [](int type, int form = 0) {
        occt::iges::Entity entity;
        entity.type = type;
        entity.form = form;
        return kindOf(entity);
    };
    EXPECT_EQ(kind(186), Kind::Solid);
    EXPECT_EQ(kind(514), Kind::Shell);
    for (const int type : {143, 144, 510}) EXPECT_EQ(kind(type), Kind::Face);
    EXPECT_EQ(kind(128), Kind::Surface);
    EXPECT_EQ(kind(108), Kind::None);
    EXPECT_EQ(kind(108, 1), Kind::Surface);
    EXPECT_EQ(kind(126), Kind::Curve);
    EXPECT_EQ(kind(106, 12), Kind::Curve);
    EXPECT_EQ(kind(106, 31), Kind::None);
    EXPECT_EQ(kind(116), Kind::Point);
    EXPECT_EQ(kind(158), Kind::Unknown);
    EXPECT_EQ(kind(180), Kind::Unknown);
    for (const int type : {0, 124, 212, 314, 402, 406, 408}) EXPECT_EQ(kind(type), Kind::None);
}

TEST(IgesStructure, InstancesOfSubfiguresBecomeUsages) {
    IgesBuilder file;
    const int point = file.add(116, "0,0,0,0");
    const int bolt = file.add(308, "0,4HBolt,1," + std::to_string(point));
    const int turn = file.add(124, "0,-1,0,1, 1,0,0,2, 0,0,1,3");
    file.add(408, std::to_string(bolt) + ",10,20,30,1");
    file.add(408, std::to_string(bolt) + ",10,20,30", {.transform = turn});
    const std::string bytes = file.write(IgesBuilder::unit(1));
    const Structure structure = readStructure(Text(bytes));
    ASSERT_EQ(structure.nodes.size(), 2U);
    EXPECT_EQ(structure.nodes[1].name, "Bolt");
    ASSERT_EQ(structure.nodes[1].shapes.size(), 1U);
    ASSERT_EQ(structure.nodes[0].usages.size(), 2U);
    EXPECT_TRUE(structure.nodes[0].shapes.empty()) << "the point belongs to the subfigure";
    const double inch = 25.4;
    const occt::Placement first = {1, 0, 0, 10 * inch, 0, 1, 0, 20 * inch, 0, 0, 1, 30 * inch};
    const occt::Placement second = {0, -1, 0, -19 * inch, 1, 0, 0, 12 * inch, 0, 0, 1, 33 * inch};
    for (std::size_t i = 0; i < 12; ++i) {
        EXPECT_NEAR(structure.nodes[0].usages[0].placement[i], first[i], 1e-9) << i;
        EXPECT_NEAR(structure.nodes[0].usages[1].placement[i], second[i], 1e-9) << i;
    }
    EXPECT_EQ(structure.usageCount, 2U);
    EXPECT_EQ(structure.brokenUsages, 0U);
}

TEST(IgesStructure, AGroupWithoutANameIsABodyAndOneWithANameAProduct) {
    IgesBuilder file;
    const int a = file.add(116, "0,0,0,0");
    const int b = file.add(116, "1,0,0,0");
    const int name = file.add(406, "1,5HCover", {.form = 15});
    file.add(402, "1," + std::to_string(a), {.form = 7});
    file.add(402, "1," + std::to_string(b) + ",0,1," + std::to_string(name), {.form = 7});
    const std::string bytes = file.write();
    const Structure structure = readStructure(Text(bytes));
    ASSERT_EQ(structure.nodes.size(), 2U);
    EXPECT_EQ(structure.nodes[0].shapes.size(), 1U);
    ASSERT_EQ(structure.nodes[0].usages.size(), 1U);
    EXPECT_EQ(structure.nodes[1].name, "Cover");
}

TEST(IgesStructure, SubfiguresThatContainThemselvesAreBroken) {
    IgesBuilder file;
    // Numbers are those of directory lines: 1, 3, 5, ...
    file.add(308, "0,1HA,1,3");
    file.add(408, "5,0,0,0,1");
    file.add(308, "0,1HB,1,7");
    file.add(408, "1,0,0,0,1");
    file.add(408, "1,0,0,0,1");
    const std::string bytes = file.write();
    const Structure structure = readStructure(Text(bytes));
    EXPECT_EQ(structure.brokenUsages, 1U);
}

TEST(IgesStructure, WhatLeadsToNothingIsCounted) {
    IgesBuilder file;
    file.add(408, "99,0,0,0,1");
    file.add(412, "99,1,0,0,0,2,2,1,1,0,0");
    const std::string bytes = file.write();
    const Structure structure = readStructure(Text(bytes));
    EXPECT_EQ(structure.usageCount, 1U);
    EXPECT_EQ(structure.brokenUsages, 1U);
    EXPECT_EQ(structure.unread, 1U);
}

TEST(IgesStructure, ChainsOfTwentyThousandSubfiguresNeedNoStack) {
    IgesBuilder file;
    constexpr int levels = 20000;
    for (int i = 0; i < levels; ++i) {
        const int number = 4 * i + 1;
        file.add(308, "0,1HA,1," + std::to_string(number + 2));
        file.add(408, std::to_string(number + 4) + ",1,0,0,1");
    }
    file.add(308, "0,1HZ,0");
    file.add(408, "1,0,0,0,1");
    const std::string bytes = file.write();
    const Structure structure = readStructure(Text(bytes));
    EXPECT_EQ(structure.nodes.size(), levels + 2U);
    EXPECT_EQ(structure.brokenUsages, 0U);
}

TEST(IgesStructure, ChainsOfTwentyThousandGroupsAreWalkedOnce) {
    constexpr int kLength = 20'000;
    IgesBuilder file;
    for (int i = 0; i < kLength; ++i) {
        file.add(402, "1," + std::to_string(2 * i + 3), {.form = 7});
    }
    ASSERT_EQ(file.add(110, "0,0,0,1,0,0"), 2 * kLength + 1);
    const std::string bytes = file.write();
    const Structure structure = readStructure(Text(bytes));
    ASSERT_EQ(structure.nodes.size(), 1U) << "groups without a name are no products";
    EXPECT_EQ(structure.nodes[0].shapes.size(), 1U);
}

TEST(IgesStructure, AGroupThatHoldsAnInstanceFarBelowIsAProduct) {
    IgesBuilder file;
    file.add(402, "1,3", {.form = 7});
    file.add(402, "1,5", {.form = 7});
    file.add(408, "7,0,0,0,1");
    file.add(308, "0,1HA,1,9");
    file.add(110, "0,0,0,1,0,0");
    const std::string bytes = file.write();
    const Structure structure = readStructure(Text(bytes));
    EXPECT_EQ(structure.nodes.size(), 4U) << "the root, two groups, the subfigure";
    EXPECT_EQ(structure.usageCount, 3U);
}

TEST(IgesText, LinesThatEveryEntityClaimsAreNotReadForEach) {
    constexpr int kCount = 3000;
    IgesBuilder file;
    for (int i = 0; i < kCount; ++i) file.add(110, "0,0,0,1,0,0");
    std::string bytes = file.write();
    bool isSecond = false;
    for (std::size_t at = 0; at < bytes.size(); at = bytes.find('\n', at) + 1) {
        if (bytes[at + 72] != 'D') continue;
        if (isSecond) bytes.replace(at + 24, 8, "    9999");
        isSecond = !isSecond;
    }
    const Text text(bytes);
    ASSERT_EQ(text.entities().size(), std::size_t{kCount});
    EXPECT_GT(text.brokenEntries(), 2900U);
    EXPECT_EQ(text.values(text.entities().front()).size(), 7U);
    EXPECT_TRUE(text.values(text.entities().back()).empty());
}

TEST(IgesStructure, UnitsComeByNumberAndByName) {
    const auto length = [](const std::string& global) {
        IgesBuilder file;
        file.add(116, "0,0,0,0");
        const std::string bytes = file.write(global);
        return occt::iges::namedUnitMm(Text(bytes));
    };
    EXPECT_EQ(length(IgesBuilder::unit(1)), 25.4);
    EXPECT_EQ(length(IgesBuilder::unit(2)), 1.0);
    EXPECT_EQ(length(IgesBuilder::unit(6)), 1000.0);
    EXPECT_EQ(length(IgesBuilder::unit(10)), 10.0);
    EXPECT_EQ(length(IgesBuilder::unit(3, "FT")), 304.8);
    EXPECT_EQ(length(IgesBuilder::unit(77)), 1.0);
}

}  // namespace
