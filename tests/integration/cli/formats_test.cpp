// Files of different formats side by side, and assemblies with parts that can't be read.

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/cli_runner.h"
#include "tests/support/compare_report.h"
#include "tests/support/iges_builder.h"
#include "tests/support/real_data.h"
#include "tests/support/step_builder.h"

namespace {

using support::CliResult;
using support::ScratchFolder;

std::string stepBox() {
    support::StepBuilder file;
    file.addBox("Box", {10, 10, 10});
    return file.write();
}

std::string igesLine() {
    support::IgesBuilder file;
    file.add(110, "0,0,0,1,0,0");
    return file.write();
}

const std::string kStl =
    "solid a\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\nendloop\n"
    "endfacet\nendsolid a\n";

TEST(CliFormats, EveryPairOfFormatsIsCompared) {
    const ScratchFolder scratch;
    const std::pair<std::string, std::string> files[] = {
        {scratch.write("a.STP", stepBox()), scratch.write("b.step", stepBox())},
        {scratch.write("a.IGS", igesLine()), scratch.write("b.iges", igesLine())},
        {scratch.write("a.STL", kStl), scratch.write("b.stl", kStl)},
    };
    for (const auto& [reference, sameAsReference] : files) {
        for (const auto& [other, compare] : files) {
            const CliResult result = support::runProgram({.arguments = {reference, compare}});
            EXPECT_EQ(result.exitCode, compare == sameAsReference ? 0 : 1) << result.description();
            EXPECT_EQ(result.signal, 0);
        }
    }
}

TEST(CliFormats, RealFilesOfOneModelInFourFormatsAreCompared) {
    SKIP_WITHOUT_REAL_DATA();
    const auto folder = support::realDataFolder() / "D-other-formats";
    const std::string files[] = {folder / "trimesh__featuretype_formats__1__featuretype.STEP",
                                 folder / "trimesh__featuretype_formats__2__featuretype.STL",
                                 folder / "trimesh__featuretype_formats__3__featuretype.ply",
                                 folder / "trimesh__featuretype_formats__4__featuretype.3MF"};
    for (const std::string& reference : files) {
        for (const std::string& compare : files) {
            if (reference == compare) continue;
            const CliResult result =
                support::runProgram({.arguments = {"--json", reference, compare}});
            // A 3MF file may hold an assembly, and a part is not compared with one.
            EXPECT_TRUE(result.exitCode == 1 || result.exitCode == 2) << result.description();
            if (result.exitCode == 2) {
                EXPECT_NE(result.standardError.find("assembly"), std::string::npos)
                    << result.description();
            }
        }
    }
}

TEST(CliFormats, APartWhoseFileIsMissingIsNotCompared) {
    const ScratchFolder scratch;
    support::StepBuilder builder;
    const std::size_t top = builder.addAssembly("Top");
    builder.use(top, builder.addBox("Box", {10, 10, 10}), {0, 0, 0});
    builder.use(top, builder.addAssembly("Bolt"), {50, 0, 0});
    std::string text = builder.write();
    const std::size_t at = text.rfind("=PRODUCT_DEFINITION('");
    const std::size_t begin = text.rfind('#', at);
    text.insert(text.rfind("ENDSEC;"),
                "#900001=DOCUMENT_FILE('bolt.stp','','',$,'',$);\n"
                "#900002=APPLIED_DOCUMENT_REFERENCE(#900001,'',(" +
                    text.substr(begin, at - begin) + "));\n");
    const std::string reference = scratch.write("a.step", text);
    const std::string compare = scratch.write("b.step", text);
    const CliResult result = support::runProgram({.arguments = {"--json", reference, compare}});
    EXPECT_EQ(result.exitCode, 1) << result.description();
    const auto report = support::CompareReport::parse(result.standardOutput);
    ASSERT_TRUE(report) << result.description();
    EXPECT_EQ(report->instancesThatAre("not compared"), 1U);
    EXPECT_EQ(report->instancesThatAre("unchanged"), 1U);
    EXPECT_NE(
        result.standardError.find("\"Bolt\" was not read: its file \"bolt.stp\" does not exist."),
        std::string::npos)
        << result.description();
}

TEST(CliFormats, TheListNamesEndings) {
    const CliResult result = support::runProgram({.arguments = {"--formats"}});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_NE(result.standardOutput.find("| STEP "), std::string::npos);
    EXPECT_NE(result.standardOutput.find("`*.igs`, `*.iges`"), std::string::npos);
    EXPECT_TRUE(result.standardError.empty());
}

}  // namespace
