#include "backends/occt/read/formats.h"

#include <set>

#include <gtest/gtest.h>

#include "backends/occt/file_formats.h"

namespace {

using occt::FormatId;
using occt::Recognition;

const std::string kStep = "ISO-10303-21;\nHEADER;";
const std::string kIges = std::string(72, ' ') + "S      1\r\n";
const std::string kUnknown = "\x01\x02 nothing that anybody reads \xFF";

TEST(Formats, EveryFormatHasNamesAndEndingsOfItsOwn) {
    std::set<std::string_view> endings;
    std::set<std::string> names;
    for (const occt::Format& format : occt::formats()) {
        EXPECT_TRUE(names.insert(format.name).second) << format.name;
        EXPECT_TRUE(names.insert(format.listName).second) << format.listName;
        EXPECT_FALSE(format.extensions.empty()) << format.name;
        for (const std::string_view ending : format.extensions) {
            EXPECT_TRUE(endings.insert(ending).second) << ending;
            EXPECT_EQ(ending.find_first_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ*;"), std::string::npos);
        }
        EXPECT_EQ(&occt::formatOf(format.id), &format);
    }
}

TEST(Formats, ContentDecidesBeforeTheName) {
    const Recognition found = occt::recognise("/a/b.igs", kStep);
    ASSERT_TRUE(found.format);
    EXPECT_EQ(found.format->id, FormatId::Step);
    ASSERT_TRUE(found.misnamed);
    EXPECT_EQ(found.misnamed->id, FormatId::Iges);
}

TEST(Formats, ANameOfNoFormatIsNoContradiction) {
    for (const char* path : {"a", "a.txt", ".stp", "stp", "a.stp.bak"}) {
        const Recognition found = occt::recognise(path, kStep);
        ASSERT_TRUE(found.format) << path;
        EXPECT_EQ(found.format->id, FormatId::Step);
        EXPECT_FALSE(found.misnamed) << path;
    }
}

TEST(Formats, TheNameDecidesOverContentWithoutAMark) {
    const Recognition found = occt::recognise("a.STEP", kUnknown);
    ASSERT_TRUE(found.format);
    EXPECT_EQ(found.format->id, FormatId::Step);
    EXPECT_FALSE(found.misnamed);
    EXPECT_FALSE(occt::recognise("a.dat", kUnknown).format);
    EXPECT_FALSE(occt::recognise("a", "").format);
}

TEST(Formats, PackedBytesAreReadOnlyAsCompressedStep) {
    const Recognition step = occt::recognise("a.stp.gz", kStep, true);
    ASSERT_TRUE(step.format);
    EXPECT_EQ(step.format->id, FormatId::CompressedStep);
    EXPECT_FALSE(step.misnamed);
    EXPECT_FALSE(occt::recognise("a.stp.gz", kIges, true).format);
    EXPECT_FALSE(occt::recognise("a.stpz", kUnknown, true).format);
    const Recognition plain = occt::recognise("a.stpz", kStep, false);
    ASSERT_TRUE(plain.misnamed);
    EXPECT_EQ(plain.misnamed->id, FormatId::CompressedStep);
}

TEST(Formats, MarksOfEachFormatAreKnown) {
    const auto idOf = [](const std::string& bytes) {
        const Recognition found = occt::recognise("x", bytes);
        return found.format ? found.format->name : "none";
    };
    EXPECT_STREQ(idOf(" \r\n iso-10303-21;"), "STEP");
    EXPECT_STREQ(idOf(kIges), "IGES");
    EXPECT_STREQ(idOf(std::string(72, 'x') + "S0000001\n"), "IGES");
    EXPECT_STREQ(idOf(std::string(72, ' ') + "S      2\n"), "none") << "the first line is line 1";
    EXPECT_STREQ(idOf(std::string(72, ' ') + "G      1\n"), "none");
    EXPECT_STREQ(idOf(std::string(72, ' ') + "Salt and 1\n"), "none");
    EXPECT_STREQ(idOf("\nCASCADE Topology V1, (c) Matra-Datavision\n"), "BREP");
    EXPECT_STREQ(idOf("DBRep_DrawableShape\n\nCASCADE Topology V3, (c) Open Cascade"), "BREP");
    EXPECT_STREQ(idOf("\nOpen CASCADE Topology V4, (c) Open Cascade\n"), "BREP");
    EXPECT_STREQ(idOf("BINFILE\x01\x02"), "XBF");
}

TEST(Formats, TheListForAPromptIsTheTable) {
    const auto list = occt::fileFormats();
    ASSERT_EQ(list.size(), occt::formats().size());
    EXPECT_EQ(list[0].listName, "STEP Files");
    EXPECT_EQ(list[0].patterns, "*.stp;*.step");
    const std::string names = occt::formatNames();
    for (const occt::FileFormat& format : list) {
        EXPECT_NE(names.find(format.name), std::string::npos) << names;
    }
}

}  // namespace
