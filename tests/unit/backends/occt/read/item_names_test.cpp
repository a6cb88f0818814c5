#include "backends/occt/read/item_names.h"

#include <gtest/gtest.h>

#include "platform/hps/component_type.h"

namespace {

namespace Type = HPS::ComponentType;
using occt::DescribedItem;
using Items = std::vector<std::pair<std::uint32_t, std::string>>;

std::vector<std::string> unique(const Items& given) {
    std::vector<DescribedItem> items;
    for (const auto& [type, name] : given) {
        DescribedItem item;
        item.type = type;
        item.name = name;
        items.push_back(item);
    }
    occt::makeUnique(items);
    std::vector<std::string> names;
    for (const DescribedItem& item : items) names.push_back(item.name);
    return names;
}

using Names = std::vector<std::string>;

TEST(ItemNames, UnnamedItemsAreNumberedByKind) {
    EXPECT_EQ(unique({{Type::BrepModel, ""},
                      {Type::PolyBrepModel, ""},
                      {Type::BrepModel, ""},
                      {Type::Curve, ""},
                      {Type::PointSet, ""},
                      {Type::Plane, ""},
                      {Type::Direction, ""},
                      {Type::CoordinateSystem, ""},
                      {0x3099, ""}}),
              (Names{"Body 1", "Mesh 1", "Body 2", "Curve 1", "Point 1", "Plane 1", "Direction 1",
                     "Coordinate system 1", "Item 1"}));
}

TEST(ItemNames, ANumberFollowsTheSecondOfAName) {
    EXPECT_EQ(unique({{1, "rib"}, {1, "rib"}, {1, "web"}, {1, "rib"}}),
              (Names{"rib", "rib 2", "web", "rib 3"}));
}

TEST(ItemNames, NamesOfTheFileAreNotTakenFromTheirItems) {
    EXPECT_EQ(unique({{Type::BrepModel, ""},
                      {1, "rib"},
                      {1, "rib"},
                      {1, "rib 2"},
                      {Type::BrepModel, "Body 1"}}),
              (Names{"Body 2", "rib", "rib 3", "rib 2", "Body 1"}));
}

TEST(ItemNames, FillingSaysNothing) {
    for (const char* name : {"", " ", "\t", "NONE", "none"}) {
        EXPECT_FALSE(occt::saysSomething(name)) << name;
    }
    for (const char* name : {"a", "None of them", "0"}) EXPECT_TRUE(occt::saysSomething(name));
}

}  // namespace
