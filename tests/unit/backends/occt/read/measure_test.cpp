#include "backends/occt/read/measure.h"

#include <gtest/gtest.h>

#include <BRepBuilderAPI_NurbsConvert.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeTorus.hxx>
#include <gp_Trsf.hxx>

#include "platform/hps/component_type.h"

namespace {

using occt::DescribedItem;

TopoDS_Shape moved(const TopoDS_Shape& shape, double byMm) {
    gp_Trsf move;
    move.SetTranslation(gp_Vec(byMm, 0, 0));
    return shape.Moved(move);
}

std::vector<DescribedItem> itemsOf(std::size_t count, std::uint32_t type) {
    std::vector<DescribedItem> items(count);
    for (DescribedItem& item : items) item.type = type;
    return items;
}

TEST(MeasureBodies, BodiesThatShareTheirGeometryAreMeasuredAlikeAtOnce) {
    const TopoDS_Shape round = BRepPrimAPI_MakeTorus(20, 5).Shape();
    const TopoDS_Shape free = BRepBuilderAPI_NurbsConvert(round, true).Shape();
    constexpr std::size_t count = 200;
    auto items = itemsOf(count, HPS::ComponentType::BrepModel);
    std::vector<occt::Measurement> bodies;
    for (std::size_t i = 0; i < count; ++i)
        bodies.push_back({i % 2 == 0 ? round : free, &items[i]});
    double last = 0.0;
    occt::measureBodies(bodies, [&last](double share) {
        EXPECT_GE(share, last);
        last = share;
    });
    for (std::size_t i = 0; i < count; ++i) {
        ASSERT_TRUE(items[i].identity) << i;
        EXPECT_TRUE(items[i].closed);
        EXPECT_EQ(items[i].identity->volumeMm3, items[i % 2].identity->volumeMm3) << i;
        EXPECT_EQ(items[i].identity->areaMm2, items[i % 2].identity->areaMm2) << i;
        EXPECT_EQ(items[i].digest, items[i % 2].digest) << i;
    }
}

TEST(MeasureBodies, OtherItemsHaveADigestAlone) {
    auto items = itemsOf(1, HPS::ComponentType::Curve);
    occt::measureBodies({{BRepPrimAPI_MakeBox(1, 2, 3).Shape(), items.data()}}, {});
    EXPECT_FALSE(items[0].identity);
    EXPECT_FALSE(items[0].closed);
    EXPECT_FALSE(items[0].digest.empty());
}

TEST(MeasureBodies, PlacedBodiesKeepTheirVolume) {
    const TopoDS_Shape box = BRepPrimAPI_MakeBox(1, 2, 3).Shape();
    auto items = itemsOf(2, HPS::ComponentType::BrepModel);
    occt::measureBodies({{box, items.data()}, {moved(box, 50), &items[1]}}, {});
    EXPECT_NEAR(items[1].identity->volumeMm3, 6.0, 1e-9);
    EXPECT_NEAR(items[1].identity->centroidMm[0] - items[0].identity->centroidMm[0], 50.0, 1e-9);
}

TEST(MeasureBodies, NothingIsNothing) {
    occt::measureBodies({}, {});
    auto items = itemsOf(1, HPS::ComponentType::BrepModel);
    occt::measureBodies({{TopoDS_Shape(), items.data()}}, {});
    EXPECT_FALSE(items[0].identity);
    EXPECT_FALSE(items[0].closed);
}

}  // namespace
