// Assemblies whose parts stand in files of their own.

#include <algorithm>
#include <filesystem>

#include <gtest/gtest.h>

#include "platform/hps/component_type.h"
#include "tests/integration/import/imports.h"
#include "tests/support/step_builder.h"

namespace {

namespace Type = HPS::ComponentType;
using HPS::IOResult;
using Texts = std::vector<std::string>;

std::string box(const std::string& name, double edgeMm) {
    support::StepBuilder file;
    file.addBox(name, {edgeMm, edgeMm, edgeMm});
    return file.write();
}

/// An assembly that uses each of its parts once, all without a shape of their own; part `i`
/// stands in file `names[i]`.
std::string assemblyOf(const Texts& names, const std::string& root = "Top") {
    support::StepBuilder file;
    const std::size_t top = file.addAssembly(root);
    for (std::size_t i = 0; i < names.size(); ++i) {
        const std::size_t part = file.addAssembly("Part " + std::to_string(i));
        file.use(top, part, {100.0 * static_cast<double>(i), 0, 0});
    }
    std::string text = file.write();
    std::string links;
    std::size_t at = 0;
    int last = 900000;
    for (std::size_t i = 0; i <= names.size(); ++i) {
        at = text.find("=PRODUCT_DEFINITION('", at) + 1;
        if (i == 0) continue;
        const std::size_t begin = text.rfind('#', at);
        const std::string definition = text.substr(begin, at - 1 - begin);
        const auto id = [&last](int offset) { return "#" + std::to_string(last + offset); };
        links += id(1) + "=DOCUMENT_FILE('d','','',$,'',$);\n" + id(2) +
                 "=APPLIED_DOCUMENT_REFERENCE(" + id(1) + ",'',(" + definition + "));\n" + id(3) +
                 "=EXTERNAL_SOURCE(IDENTIFIER(''));\n" + id(4) +
                 "=IDENTIFICATION_ROLE('external document id and location',$);\n" + id(5) +
                 "=APPLIED_EXTERNAL_IDENTIFICATION_ASSIGNMENT('" + names[i - 1] + "'," + id(4) +
                 "," + id(3) + ",(" + id(1) + "));\n";
        last += 10;
    }
    text.insert(text.rfind("ENDSEC;"), links);
    return text;
}

class LinkedFiles : public import_test::Imports {
protected:
    std::string write(const std::string& name, const std::string& text) {
        return scratch.write(name, text);
    }
    bool wasLogged(const std::string& text) const {
        return std::any_of(logged.begin(), logged.end(), [&text](const std::string& line) {
            return line.find(text) != std::string::npos;
        });
    }
};

std::vector<double> volumes(const import_test::Imported& imported) {
    std::vector<double> found;
    const auto& model = *imported.model;
    std::vector<HPS::ComponentId> open = {model.root()};
    while (!open.empty()) {
        const HPS::ComponentId id = open.back();
        open.pop_back();
        if (const auto* identity = model.identity(id)) found.push_back(identity->volumeMm3);
        for (std::size_t i = model.childCount(id); i-- > 0;) open.push_back(model.child(id, i));
    }
    return found;
}

TEST_F(LinkedFiles, PartsComeFromTheirFilesAndKeepTheirNames) {
    write("one.step", box("Other name", 10));
    write("parts/two.step", box("Two", 20));
    const auto got = import(write("top.step", assemblyOf({"one.step", "parts/two.step"})));
    ASSERT_EQ(got.result, IOResult::Success) << got.cause.text;
    EXPECT_TRUE(got.model->gaps().empty()) << got.model->gaps()[0];
    EXPECT_EQ(names(got, Type::ProductOccurrence), (Texts{"Top", "Part 0", "Part 1"}));
    const auto measured = volumes(got);
    ASSERT_EQ(measured.size(), 2U);
    EXPECT_NEAR(measured[0], 1000.0, 1e-6);
    EXPECT_NEAR(measured[1], 8000.0, 1e-6);
    const auto texts = import_test::metadata(find(got, Type::ProductOccurrence, "Part 1"));
    EXPECT_NE(std::find(texts.begin(), texts.end(), "Filename=parts/two.step"), texts.end());
}

TEST_F(LinkedFiles, AssembliesBelowAssembliesAreFollowed) {
    write("sub/leaf.step", box("Leaf", 10));
    write("sub/middle.step", assemblyOf({"leaf.step", "leaf.step"}, "Middle"));
    const auto got = import(write("top.step", assemblyOf({"sub/middle.step"})));
    ASSERT_EQ(got.result, IOResult::Success) << got.cause.text;
    EXPECT_TRUE(got.model->gaps().empty()) << got.model->gaps()[0];
    EXPECT_EQ(names(got, Type::ProductOccurrence), (Texts{"Top", "Part 0", "Part 0", "Part 1"}));
    EXPECT_EQ(volumes(got).size(), 2U);
}

TEST_F(LinkedFiles, AMissingFileIsNamedAndTheRestIsRead) {
    write("one.step", box("One", 10));
    const auto got = import(write("top.step", assemblyOf({"one.step", "two.step"})));
    ASSERT_EQ(got.result, IOResult::Success) << got.cause.text;
    ASSERT_EQ(got.model->gaps().size(), 1U);
    const std::string gap = "\"Part 1\" was not read: its file \"two.step\" does not exist.";
    EXPECT_EQ(got.model->gaps()[0], gap);
    EXPECT_TRUE(wasLogged("top.step: " + gap));
    EXPECT_EQ(volumes(got).size(), 1U);
    EXPECT_EQ(count(got, Type::BrepModel), 2U) << "a body of which nothing is known stands for it";
}

TEST_F(LinkedFiles, ADamagedFileIsNamedAndTheRestIsRead) {
    write("one.step", box("One", 10));
    write("two.step", "no CAD file at all");
    write("three.dat", "no CAD file at all");
    const auto got = import(write("top.step", assemblyOf({"one.step", "two.step", "three.dat"})));
    ASSERT_EQ(got.result, IOResult::Success) << got.cause.text;
    ASSERT_EQ(got.model->gaps().size(), 2U);
    EXPECT_NE(got.model->gaps()[0].find("two.step is no STEP file"), std::string::npos);
    EXPECT_NE(got.model->gaps()[1].find("three.dat is of no format that is read"),
              std::string::npos);
    EXPECT_EQ(volumes(got).size(), 1U);
}

TEST_F(LinkedFiles, NothingOutsideTheFolderIsRead) {
    write("one.step", box("One", 10));
    const std::string full = (scratch.path() / "one.step").string();
    const auto got = import(write("deep/top.step", assemblyOf({"../one.step", full})));
    ASSERT_EQ(got.result, IOResult::Success) << got.cause.text;
    ASSERT_EQ(got.model->gaps().size(), 2U);
    EXPECT_NE(got.model->gaps()[0].find("lies outside the folder of"), std::string::npos);
    EXPECT_NE(got.model->gaps()[1].find("is a full path"), std::string::npos);
    EXPECT_TRUE(volumes(got).empty());
}

TEST_F(LinkedFiles, FilesThatContainEachOtherEnd) {
    write("b.step", assemblyOf({"a.step"}, "B"));
    const auto got = import(write("a.step", assemblyOf({"b.step"}, "A")));
    ASSERT_EQ(got.result, IOResult::Success) << got.cause.text;
    ASSERT_EQ(got.model->gaps().size(), 1U);
    EXPECT_NE(got.model->gaps()[0].find("contains itself through it"), std::string::npos);
}

TEST_F(LinkedFiles, AFileThatIsUsedTwiceIsOneDefinitionOfShapes) {
    write("one.step", box("One", 10));
    const auto got = import(write("top.step", assemblyOf({"one.step", "./one.step"})));
    ASSERT_EQ(got.result, IOResult::Success) << got.cause.text;
    EXPECT_EQ(volumes(got).size(), 2U);
    EXPECT_TRUE(got.model->gaps().empty());
}

}  // namespace
