#include "backends/occt/multi_body.h"

#include <gtest/gtest.h>

#include "backends/occt/tree/occt_model.h"
#include "platform/hps/component_type.h"
#include "tests/support/memory_model.h"

namespace {

using HPS::Exchange::Component;

TEST(MultiBody, OnlyAnExactBodyAmongOthersOfItsPart) {
    occt::Description description;
    description.definitions.resize(1);
    auto& items = description.definitions[0].items;
    items.resize(3);
    for (auto& item : items) item.type = HPS::ComponentType::BrepModel;
    items[2].type = HPS::ComponentType::Curve;
    const auto model = std::make_shared<const occt::OcctModel>(std::move(description), "");
    const auto isMultiBody = [&model](HPS::ComponentId id) {
        return occt::isMultiBody(Component(HPS::Component(model, id)));
    };
    // The model file, the occurrence, the part definition, two bodies and a curve.
    const bool expected[] = {false, false, false, true, true, false};
    for (HPS::ComponentId id = 0; id < std::size(expected); ++id) {
        EXPECT_EQ(isMultiBody(id), expected[id]) << id;
    }
}

TEST(MultiBody, ComponentsOfOthersAreNone) {
    EXPECT_FALSE(occt::isMultiBody(Component()));
    const auto other = std::make_shared<support::MemoryModel>();
    EXPECT_FALSE(occt::isMultiBody(Component(HPS::Component(other, other->root()))));
}

}  // namespace
