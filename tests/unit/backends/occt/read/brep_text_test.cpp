#include "backends/occt/read/brep_text.h"

#include <string>

#include <gtest/gtest.h>

namespace {

using occt::brepGeometry;
using occt::brepSections;

const std::string kHead = "CASCADE Topology V1, (c) Matra-Datavision\n";

TEST(BrepText, SectionsComeInTheirOrderWithTheirCounts) {
    const std::string text =
        kHead + "Locations 1\nCurve2ds 0\nCurves x\nSurfaces 12\nLocations 7\nTShapes 3\n";
    const auto sections = brepSections(text);
    ASSERT_EQ(sections.size(), 5U);
    EXPECT_EQ(sections[0].name, "Locations");
    EXPECT_EQ(sections[0].count, 1U);
    EXPECT_EQ(sections[0].offset, kHead.size());
    EXPECT_EQ(sections[1].count, 0U);
    EXPECT_FALSE(sections[2].count);
    EXPECT_EQ(sections[3].count, 12U);
    EXPECT_EQ(sections[4].name, "TShapes");
    EXPECT_TRUE(brepSections("").empty());
}

TEST(BrepText, FacesCountBySurfaceAndEdgesByCurve) {
    const std::string text = kHead +
                             "Surfaces 2\n1 0 0 0 1 0 0 0 1 0 0 0 1\nTShapes 6\n"
                             "Ve\n1e-07\n0 0 0\n0 0\n\n0101101\n*\n"
                             "Ed\n 1e-07 1 1 0\n1  1 0 0 10\n2  1 1 0 0 10\n0\n\n0101000\n+6 0 *\n"
                             // Without a curve in space; its parameters look like one.
                             "Ed\n 1e-07 1 1 0\n1  0 0 0 10\n2  1 1 0 0 10\n0\n\n0101000\n*\n"
                             // Two curves in space are one edge's.
                             "Ed\r\n 1e-07 1 1 0\r\n1  1 0 0 10\r\n1  2 0 0 10\r\n0\r\n"
                             "Fa\n0  1e-07 2 0\n2  1\n0101000\n+2 0 *\n"
                             "Fa\n0  1e-07 0 0\n2  1\n0101000\n+2 0 *\n";
    const auto count = brepGeometry(text, brepSections(text).back().offset);
    EXPECT_EQ(count.surfaces, 1U);
    EXPECT_EQ(count.curves, 2U);
}

TEST(BrepText, WhatIsWrittenOtherwiseIsNotCounted) {
    const std::string text =
        "Fa 0 1e-07 1 0\nFa\n0 1e-07 1\nFa\n0 1e-07 -1 0\nFa\n0 1e-07 1x 0\n"
        "Ed\n1 1 0 0 10\nEd";
    EXPECT_EQ(brepGeometry(text, 0).surfaces, 0U);
    EXPECT_EQ(brepGeometry(text, 0).curves, 0U) << "the first line of an edge is its tolerance";
    EXPECT_EQ(brepGeometry(text, text.size()).surfaces, 0U);
    EXPECT_EQ(brepGeometry("", 0).surfaces, 0U);
}

}  // namespace
