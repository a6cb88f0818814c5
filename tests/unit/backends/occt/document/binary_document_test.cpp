#include "backends/occt/document/binary_document.h"

#include <gtest/gtest.h>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRep_Builder.hxx>
#include <TCollection_AsciiString.hxx>
#include <TDF_Label.hxx>
#include <TDF_Tool.hxx>
#include <TopoDS_Compound.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>

#include "backends/occt/model.h"
#include "platform/hps/component_type.h"
#include "tests/support/cli_runner.h"
#include "tests/support/real_data.h"

namespace {

using occt::BinaryDocument;

/// A document of a compound of two boxes; the entry of its label.
std::string fill(BinaryDocument& document) {
    TopoDS_Compound both;
    const BRep_Builder builder;
    builder.MakeCompound(both);
    builder.Add(both, BRepPrimAPI_MakeBox(1.0, 1.0, 1.0).Shape());
    builder.Add(both, BRepPrimAPI_MakeBox(2.0, 2.0, 2.0).Shape());
    const TDF_Label label = XCAFDoc_DocumentTool::ShapeTool(document.handle()->Main())
                                ->AddShape(both, Standard_False, Standard_False);
    TCollection_AsciiString entry;
    TDF_Tool::Entry(label, entry);
    return entry.ToCString();
}

TEST(BinaryDocument, ShapesComeBackByLabelAndPath) {
    const support::ScratchFolder scratch;
    const std::string path = (scratch.path() / "Wälle.xbf").string();
    std::string entry;
    std::string error;
    {
        BinaryDocument document;
        entry = fill(document);
        ASSERT_TRUE(document.save(path, error)) << error;
    }
    BinaryDocument read;
    ASSERT_TRUE(read.open(path, *occt::sealOf(path), error)) << error;
    EXPECT_EQ(read.shape(entry, {}).ShapeType(), TopAbs_COMPOUND);
    EXPECT_EQ(read.shape(entry, {1}).ShapeType(), TopAbs_SOLID);
    EXPECT_EQ(read.shape(entry, {1, 0}).ShapeType(), TopAbs_SHELL);
    EXPECT_FALSE(read.shape(entry, {0}).IsPartner(read.shape(entry, {1})));
}

TEST(BinaryDocument, WhatIsNotThereIsNull) {
    BinaryDocument document;
    const std::string entry = fill(document);
    EXPECT_TRUE(document.shape(entry, {2}).IsNull());
    EXPECT_TRUE(document.shape(entry, {0, 0, 0, 0, 0, 0, 0, 0, 0}).IsNull());
    for (const char* label : {"", "0:1:1:99", "rubbish", "0", "9:9"}) {
        EXPECT_TRUE(document.shape(label, {}).IsNull()) << label;
    }
}

TEST(BinaryDocument, DamagedDocumentsAreRefused) {
    const support::ScratchFolder scratch;
    std::string error;
    EXPECT_FALSE(BinaryDocument().open((scratch.path() / "none.xbf").string(), {}, error));
    EXPECT_NE(error, "");
    BinaryDocument document;
    fill(document);
    const std::string path = (scratch.path() / "good.xbf").string();
    ASSERT_TRUE(document.save(path, error)) << error;
    const occt::FileSeal seal = *occt::sealOf(path);
    const std::string bytes = support::readFile(path);
    std::vector<std::string> damaged = {"", bytes.substr(0, 10), bytes.substr(0, bytes.size() / 2),
                                        bytes.substr(0, bytes.size() - 1), bytes + "x"};
    for (std::size_t at = 0; at < bytes.size(); at += bytes.size() / 50 + 1) {
        damaged.push_back(bytes);
        damaged.back()[at] = static_cast<char>(damaged.back()[at] ^ 0x10);
    }
    for (const std::string& changed : damaged) {
        error.clear();
        EXPECT_FALSE(BinaryDocument().open(scratch.write("bad.xbf", changed), seal, error));
        EXPECT_EQ(error, "the document is missing or damaged");
    }
    EXPECT_FALSE(document.save((scratch.path() / "no/such/folder.xbf").string(), error));
}

TEST(FileSeal, TellsFilesApart) {
    const support::ScratchFolder scratch;
    EXPECT_FALSE(occt::sealOf((scratch.path() / "none").string()));
    EXPECT_EQ(occt::sealOf(scratch.write("empty", ""))->bytes, 0U);
    std::string bytes(200'000, 'a');
    const auto seal = occt::sealOf(scratch.write("a", bytes));
    EXPECT_EQ(seal->bytes, bytes.size());
    EXPECT_EQ(occt::sealOf(scratch.write("b", bytes)), seal);
    for (const std::size_t at : {std::size_t{0}, std::size_t{65'535}, std::size_t{199'999}}) {
        bytes[at] = 'b';
        EXPECT_NE(occt::sealOf(scratch.write("c", bytes)), seal);
        bytes[at] = 'a';
    }
    // Zeros at the end are bytes like others.
    EXPECT_NE(occt::sealOf(scratch.write("d", bytes + '\0')), seal);
}

TEST(ModelLoading, AFolderWithoutAnImportIsRefused) {
    const support::ScratchFolder scratch;
    std::string error;
    EXPECT_EQ(occt::Model::load(scratch.path().string(), error), nullptr);
    EXPECT_EQ(error, "the import left no description in " + scratch.path().string());
    scratch.write(occt::kDescriptionFile, "rubbish");
    EXPECT_EQ(occt::Model::load(scratch.path().string(), error), nullptr);
    EXPECT_EQ(error, "what the import left in " + scratch.path().string() + " is damaged");
}

TEST(ModelLoading, ADocumentOfAnotherSizeIsRefusedAtOnceAndADamagedOneGivesNoShapes) {
    const support::ScratchFolder scratch;
    occt::Description description;
    description.definitions.resize(1);
    description.definitions[0].items.resize(1);
    description.definitions[0].items[0].type = HPS::ComponentType::BrepModel;
    {
        BinaryDocument document;
        description.definitions[0].items[0].label = fill(document);
        std::string error;
        ASSERT_TRUE(document.save((scratch.path() / occt::kDocumentFile).string(), error));
    }
    const std::string path = (scratch.path() / occt::kDocumentFile).string();
    const std::string bytes = support::readFile(path);
    description.document = *occt::sealOf(path);
    scratch.write(occt::kDescriptionFile, packDescription(description));
    const auto load = [&] {
        std::string error;
        return occt::Model::load(scratch.path().string(), error);
    };
    constexpr HPS::ComponentId body = 3;
    ASSERT_NE(load(), nullptr);
    EXPECT_FALSE(load()->shape(body).IsNull());
    scratch.write(occt::kDocumentFile, bytes.substr(1));
    EXPECT_EQ(load(), nullptr);
    std::string changed = bytes;
    changed[changed.size() / 2] ^= 0x10;
    scratch.write(occt::kDocumentFile, changed);
    ASSERT_NE(load(), nullptr);
    EXPECT_TRUE(load()->shape(body).IsNull());
}

}  // namespace
