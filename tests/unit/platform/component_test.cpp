#include "platform/hps/component.h"

#include <gtest/gtest.h>

#include "platform/hps/exception.h"
#include "tests/support/memory_model.h"

namespace {

namespace ComponentType = HPS::ComponentType;
using support::occurrence;
using support::part;

// Counts how often a subtree is walked.
class Counting : public support::MemoryModel {
public:
    void collectAll(HPS::ComponentId id, std::uint32_t type,
                    std::vector<HPS::ComponentId>& out) const override {
        ++walks;
        MemoryModel::collectAll(id, type, out);
    }
    std::vector<HPS::ComponentId> owners(HPS::ComponentId id) const override {
        ++climbs;
        return MemoryModel::owners(id);
    }
    mutable int walks = 0;
    mutable int climbs = 0;
};

class Components : public testing::Test {
protected:
    Components() {
        auto counting = std::make_unique<Counting>();
        counting_ = counting.get();
        support::MemoryModel::Builder builder(std::move(counting));
        builder.addShape(0, occurrence("top", {part("a", {"S", "T"}), occurrence("b", {part("c")})})
                                .with("Units", std::string("Inch"))
                                .with("Units", std::string("Foot"))
                                .with("Mass", 2.5));
        model_ = HPS::CADModel(builder.finish());
        top_ = model_.GetSubcomponents()[0];
    }
    static std::vector<std::string> names(const HPS::ComponentArray& array) {
        std::vector<std::string> names;
        for (const HPS::Component& component : array) {
            names.push_back(component.GetName().GetBytes());
        }
        return names;
    }
    using Names = std::vector<std::string>;

    const Counting* counting_ = nullptr;
    HPS::CADModel model_;
    HPS::Component top_;
};

TEST_F(Components, ModelIsTheModelFile) {
    EXPECT_EQ(model_.GetComponentType(), ComponentType::ModelFile);
    EXPECT_FALSE(model_.Empty());
    EXPECT_EQ(model_.GetSubcomponents().size(), 1U);
}

TEST_F(Components, SubcomponentsStandInModelOrder) {
    EXPECT_EQ(names(top_.GetSubcomponents()), (Names{"a", "b"}));
    EXPECT_EQ(counting_->walks, 0);
}

TEST_F(Components, SearchCountsTheComponentItselfAndGoesInPreOrder) {
    EXPECT_EQ(names(top_.GetAllSubcomponents(ComponentType::ProductOccurrence)),
              (Names{"top", "a", "b", "c"}));
    EXPECT_EQ(
        top_.GetSubcomponents()[0].GetAllSubcomponents(ComponentType::ProductOccurrence).size(),
        1U);
}

TEST_F(Components, MasksSelectEveryTypeWithTheirBits) {
    EXPECT_EQ(names(top_.GetAllSubcomponents(ComponentType::RepresentationItemMask)),
              (Names{"S", "T", "Solid"}));
    EXPECT_TRUE(ComponentType::selects(0x3000, 0x3006));
    EXPECT_FALSE(ComponentType::selects(0x3000, 0x1002));
    EXPECT_FALSE(ComponentType::selects(0x3001, 0x3006));
    EXPECT_TRUE(ComponentType::selects(0x11000, 0x11004));
    EXPECT_FALSE(ComponentType::selects(0x11000, 0x1002));
}

TEST_F(Components, CountingWalksNothing) {
    EXPECT_EQ(top_.GetAllSubcomponents(ComponentType::ProductOccurrence).size(), 4U);
    EXPECT_FALSE(top_.GetAllSubcomponents(ComponentType::RepresentationItemMask).empty());
    EXPECT_EQ(counting_->walks, 0);
}

TEST_F(Components, ElementsAreFoundByOneWalk) {
    const HPS::ComponentArray all = top_.GetAllSubcomponents(ComponentType::ProductOccurrence);
    EXPECT_EQ(all[3].GetName().GetBytes(), "c");
    EXPECT_EQ(all[0].GetName().GetBytes(), "top");
    EXPECT_EQ(names(all).size(), 4U);
    EXPECT_EQ(counting_->walks, 1);
}

TEST_F(Components, OwnersAreAskedForOnce) {
    const HPS::Component b = top_.GetSubcomponents()[1];
    const HPS::ComponentArray owners = b.GetSubcomponents()[0].GetOwners();
    EXPECT_EQ(counting_->climbs, 0);
    EXPECT_EQ(names(owners), (Names{"b", "top", ""}));
    EXPECT_EQ(owners[0], b);
    EXPECT_EQ(counting_->climbs, 1);
    EXPECT_TRUE(model_.GetOwners().empty());
}

TEST_F(Components, PositionsPastTheEndThrow) {
    EXPECT_THROW(top_.GetSubcomponents()[2], HPS::IndexOutOfRangeException);
    EXPECT_THROW(top_.GetAllSubcomponents(ComponentType::Curve)[0], HPS::IndexOutOfRangeException);
    EXPECT_THROW(HPS::ComponentArray()[0], HPS::IndexOutOfRangeException);
    EXPECT_EQ(HPS::ComponentArray().size(), 0U);
}

TEST_F(Components, FirstMetadataOfAKeyAnswers) {
    EXPECT_EQ(HPS::StringMetadata(top_.GetMetadata("Units")).GetValue().GetBytes(), "Inch");
    EXPECT_TRUE(top_.GetMetadata("units").Empty());
    ASSERT_EQ(top_.GetAllMetadata().size(), 3U);
    EXPECT_EQ(HPS::DoubleMetadata(top_.GetAllMetadata()[2]).GetValue(), 2.5);
    EXPECT_TRUE(model_.GetAllMetadata().empty());
}

TEST_F(Components, EmptyHandleThrows) {
    const HPS::Component empty;
    EXPECT_TRUE(empty.Empty());
    EXPECT_TRUE(HPS::CADModel(nullptr).Empty());
    EXPECT_THROW(empty.GetName(), HPS::InvalidObjectException);
    EXPECT_THROW(empty.GetComponentType(), HPS::InvalidObjectException);
    EXPECT_THROW(empty.GetSubcomponents(), HPS::InvalidObjectException);
    EXPECT_THROW(empty.GetAllSubcomponents(ComponentType::BrepModel), HPS::InvalidObjectException);
    EXPECT_THROW(empty.GetOwners(), HPS::InvalidObjectException);
    EXPECT_THROW(empty.GetMetadata("Units"), HPS::InvalidObjectException);
    EXPECT_THROW(empty.GetAllMetadata(), HPS::InvalidObjectException);
    EXPECT_THROW(HPS::Exchange::Component().GetExchangeEntity(), HPS::InvalidObjectException);
}

TEST_F(Components, HandlesCompareByWhatTheyReferTo) {
    EXPECT_EQ(top_, model_.GetSubcomponents()[0]);
    EXPECT_FALSE(top_ == model_);
    EXPECT_EQ(HPS::Component(), HPS::Component());
    EXPECT_FALSE(top_ == HPS::Component());
}

TEST_F(Components, HandlesKeepTheModelAlive) {
    const HPS::Component a = top_.GetSubcomponents()[0];
    model_ = HPS::CADModel();
    top_ = HPS::Component();
    EXPECT_EQ(a.GetName().GetBytes(), "a");
}

TEST_F(Components, OnlyItemsHaveAnExchangeEntity) {
    EXPECT_EQ(HPS::Exchange::Component(top_).GetExchangeEntity(), nullptr);
    const HPS::Component body = top_.GetAllSubcomponents(ComponentType::BrepModel)[0];
    EXPECT_NE(HPS::Exchange::Component(body).GetExchangeEntity(), nullptr);
}

}  // namespace
