#include "backends/occt/read/input_files.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "tests/support/cli_runner.h"

namespace {

using occt::FileLink;
using occt::InputFiles;

/// A STEP text whose products stand in these files.
std::string referring(const std::vector<std::string>& names) {
    std::string text = "ISO-10303-21;\nHEADER;\nENDSEC;\nDATA;\n";
    int last = 0;
    for (const std::string& name : names) {
        const auto id = [&last](int offset) { return "#" + std::to_string(last + offset); };
        text += id(1) + "=PRODUCT('p','p','',());" + id(2) + "=PRODUCT_DEFINITION_FORMATION('','',";
        text += id(1) + ");" + id(3) + "=PRODUCT_DEFINITION('','',#" + std::to_string(last + 2);
        text += ",$);" + id(4) + "=DOCUMENT_FILE('" + name + "','','',$,'',$);";
        text += id(5) + "=APPLIED_DOCUMENT_REFERENCE(" + id(4) + ",'',(" + id(3) + "));\n";
        last += 5;
    }
    return text + "ENDSEC;\nEND-ISO-10303-21;\n";
}

class LinkedInput : public testing::Test {
protected:
    std::string linkOf(const std::string& name) {
        std::string written;  // the format doubles backslashes
        for (const char c : name) written += c == '\\' ? "\\\\" : std::string(1, c);
        const InputFiles files(scratch.write("main/a.step", referring({written})));
        const FileLink& link = files.link(0, name);
        if (link.file == FileLink::kNone) return link.obstacle;
        return files.all()[link.file].path;
    }
    const support::ScratchFolder scratch;
};

TEST_F(LinkedInput, NamesLeadBesideTheFileAndBelow) {
    const std::string beside = scratch.write("main/b.step", "x");
    const std::string below = scratch.write("main/parts/c.step", "x");
    EXPECT_EQ(linkOf("b.step"), beside);
    EXPECT_EQ(linkOf("./b.step"), beside);
    EXPECT_EQ(linkOf("parts/c.step"), below);
    EXPECT_EQ(linkOf("parts/../b.step"), beside);
}

TEST_F(LinkedInput, BackslashesSeparateFoldersToo) {
    const std::string below = scratch.write("main/parts/c.step", "x");
    EXPECT_EQ(linkOf("parts\\c.step"), below);
}

TEST_F(LinkedInput, NoNameLeadsOutOfTheFolder) {
    scratch.write("other.step", "x");
    const std::string outside =
        "lies outside the folder of " + (scratch.path() / "main/a.step").string();
    EXPECT_EQ(linkOf("../other.step"), outside);
    EXPECT_EQ(linkOf("parts/../../other.step"), outside);
    EXPECT_EQ(linkOf("../main2/x.step"), outside);
    const std::string full =
        "is a full path; only files beside the one that refers to them "
        "and below are read";
    EXPECT_EQ(linkOf((scratch.path() / "other.step").string()), full);
    EXPECT_EQ(linkOf("C:\\other.step"), full);
    EXPECT_EQ(linkOf("file:///tmp/other.step"), full);
}

TEST_F(LinkedInput, NoLinkLeadsOutOfTheFolder) {
    const std::string other = scratch.write("other.step", "x");
    std::filesystem::create_directories(scratch.path() / "main");
    std::filesystem::create_symlink(other, scratch.path() / "main/l.step");
    EXPECT_EQ(linkOf("l.step"),
              "lies outside the folder of " + (scratch.path() / "main/a.step").string());
}

TEST_F(LinkedInput, AMissingFileIsAnObstacleAndAFolderHasItsCause) {
    EXPECT_EQ(linkOf("none.step"), "does not exist");
    std::filesystem::create_directories(scratch.path() / "main/dir.step");
    const InputFiles files(scratch.write("main/a.step", referring({"dir.step"})));
    ASSERT_EQ(files.all().size(), 2U);
    ASSERT_TRUE(files.all()[1].cause);
    EXPECT_EQ(files.all()[1].cause->code, "unreadable");
}

TEST_F(LinkedInput, AFileIsOpenedOnceByWhateverName) {
    scratch.write("main/b.step", referring({"parts/c.step"}));
    scratch.write("main/parts/c.step", referring({"../b.step", "../a.step"}));
    const InputFiles files(
        scratch.write("main/a.step", referring({"b.step", "parts/../b.step", "parts/c.step"})));
    EXPECT_EQ(files.all().size(), 3U);
    EXPECT_EQ(files.link(0, "b.step").file, files.link(0, "parts/../b.step").file);
    const std::size_t c = files.link(0, "parts/c.step").file;
    ASSERT_NE(c, FileLink::kNone);
    EXPECT_EQ(files.link(c, "../a.step").file, 0U) << "names are relative to the file they are in";
}

TEST_F(LinkedInput, ChainsAndCrowdsHaveAnEnd) {
    for (int i = 0; i < 6; ++i) {
        scratch.write("main/f" + std::to_string(i) + ".step",
                      referring({"f" + std::to_string(i + 1) + ".step"}));
    }
    const std::string first = (scratch.path() / "main/f0.step").string();
    occt::InputLimits limits;
    limits.depth = 3;
    EXPECT_EQ(InputFiles(first, limits).all().size(), 4U);
    limits = {};
    limits.files = 2;
    EXPECT_EQ(InputFiles(first, limits).all().size(), 3U);
    limits = {};
    limits.bytes = 10;
    const InputFiles files(first, limits);
    EXPECT_EQ(files.link(0, "f1.step").obstacle, "is left out: the file refers to too many others");
}

TEST_F(LinkedInput, TheFirstFileKeepsItsCause) {
    const InputFiles files((scratch.path() / "none.step").string());
    ASSERT_EQ(files.all().size(), 1U);
    ASSERT_TRUE(files.all()[0].cause);
    EXPECT_EQ(files.all()[0].cause->code, "missing");
}

}  // namespace
