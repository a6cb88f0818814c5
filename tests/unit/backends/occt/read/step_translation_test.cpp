#include "backends/occt/read/step_translation.h"

#include <gtest/gtest.h>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCone.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRepPrimAPI_MakeTorus.hxx>
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <Message_Printer.hxx>
#include <STEPCAFControl_Writer.hxx>
#include <TopExp_Explorer.hxx>
#include <TransferBRep.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "backends/occt/content_digest.h"
#include "backends/occt/read/step_pieces.h"
#include "backends/occt/read/whole_step.h"
#include "tests/support/real_data.h"
#include "tests/support/step_builder.h"

namespace {

/// Swallows what a helper would tell its host.
class NoChannel : public os::ParentChannel {
public:
    void send(const std::string&) override {}
};

/// Content of each product's shape by the product's number; empty where there is no shape.
using Contents = std::map<std::uint64_t, std::string>;

std::string contentOf(const TopoDS_Shape& shape) {
    if (shape.IsNull()) return {};
    std::size_t faces = 0;
    for (TopExp_Explorer face(shape, TopAbs_FACE); face.More(); face.Next()) ++faces;
    return occt::contentDigest(shape) + " " + std::to_string(shape.ShapeType()) + " " +
           std::to_string(faces);
}

Contents byPieces(const std::string& text, std::size_t size) {
    const occt::step::Part21 file(text);
    const occt::step::Products products = readProducts(file);
    NoChannel channel;
    occt::ProgressReporter progress(channel);
    occt::BinaryDocument document;
    occt::StepTranslation translation(file, products);
    EXPECT_TRUE(translation.run(document, progress, size));
    Contents out;
    for (const auto& product : products.products) {
        out[product.instance] = contentOf(translation.shape(product.instance));
    }
    return out;
}

Contents asAWhole(const std::string& text) {
    const occt::step::Part21 file(text);
    const occt::step::Products products = readProducts(file);
    NoChannel channel;
    occt::ProgressReporter progress(channel);
    occt::BinaryDocument document;
    occt::WholeStep whole;
    EXPECT_TRUE(whole.read(text, progress));
    Handle(TDocStd_Document) handle = document.handle();
    whole.transfer(products, handle, progress);
    Contents out;
    for (const auto& product : products.products) {
        const auto entity = whole.entities().find(product.instance);
        const bool found = entity != whole.entities().end();
        out[product.instance] =
            found ? contentOf(TransferBRep::ShapeResult(whole.process(), entity->second)) : "";
    }
    return out;
}

bool isCut(const std::string& text) {
    const occt::step::Part21 file(text);
    return occt::cutIntoPieces(file, readProducts(file)).has_value();
}

/// These shapes as products of one file, with curves in the parameters of all surfaces.
std::string written(const std::vector<TopoDS_Shape>& shapes) {
    Message::DefaultMessenger()->RemovePrinters(STANDARD_TYPE(Message_Printer));
    occt::BinaryDocument document;
    const auto tool = XCAFDoc_DocumentTool::ShapeTool(document.handle()->Main());
    for (const TopoDS_Shape& shape : shapes) tool->AddShape(shape, Standard_False);
    STEPCAFControl_Writer writer;
    writer.Transfer(document.handle(), STEPControl_AsIs);
    const std::string path = testing::TempDir() + "step_translation_" +
                             testing::UnitTest::GetInstance()->current_test_info()->name() +
                             ".step";
    writer.Write(path.c_str());
    std::string text = support::readFile(path);
    std::filesystem::remove(path);
    return text;
}

std::vector<TopoDS_Shape> roundShapes() {
    return {BRepPrimAPI_MakeBox(1.0, 2.0, 3.0).Shape(), BRepPrimAPI_MakeCylinder(2.0, 5.0).Shape(),
            BRepPrimAPI_MakeCone(3.0, 1.0, 4.0).Shape(), BRepPrimAPI_MakeTorus(5.0, 1.0).Shape(),
            BRepPrimAPI_MakeCylinder(1.0, 2.0, 1.5).Shape()};
}

void expectSame(const std::string& text) {
    ASSERT_TRUE(isCut(text));
    const Contents whole = asAWhole(text);
    EXPECT_EQ(byPieces(text, 1), whole);
    EXPECT_EQ(byPieces(text, 1'000'000), whole);
}

TEST(StepTranslation, PiecesGiveWhatTheWholeFileGives) {
    const std::string text = written(roundShapes());
    ASSERT_NE(text.find("PCURVE"), std::string::npos);
    expectSame(text);
    for (const auto& [product, content] : byPieces(text, 1)) EXPECT_FALSE(content.empty());
}

TEST(StepTranslation, AssembliesHaveNoShapeOfTheirParts) {
    support::StepBuilder builder;
    const auto top = builder.addAssembly("top");
    const auto box = builder.addBox("box", {1.0, 2.0, 3.0});
    const auto other = builder.addBox("other", {4.0, 5.0, 6.0});
    builder.use(top, box, {0.0, 0.0, 0.0});
    builder.use(top, box, {10.0, 0.0, 0.0});
    builder.use(box, other, {0.0, 0.0, 9.0});
    expectSame(builder.write());
}

/// Replaces the text once; fails when it does not stand there.
std::string replaced(std::string text, const std::string& from, const std::string& to) {
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    if (at != std::string::npos) text.replace(at, from.size(), to);
    return text;
}

TEST(StepTranslation, EachPieceHasItsOwnUnits) {
    const std::string millimetres = written(
        {BRepPrimAPI_MakeBox(1.0, 2.0, 3.0).Shape(), BRepPrimAPI_MakeCylinder(2.0, 5.0).Shape()});
    // Only the first product's context changes: each has a unit of its own.
    const std::string text =
        replaced(millimetres, "SI_UNIT(.MILLI.,.METRE.)", "SI_UNIT(.CENTI.,.METRE.)");
    expectSame(text);
    const Contents before = byPieces(millimetres, 1);
    const Contents after = byPieces(text, 1);
    std::size_t changed = 0;
    for (const auto& [product, content] : before) changed += content != after.at(product) ? 1 : 0;
    EXPECT_EQ(changed, 1U);
}

TEST(StepTranslation, ProductsThatShareABodyShareItsShape) {
    support::StepBuilder builder;
    builder.addBox("a", {1.0, 2.0, 3.0});
    builder.addBox("b", {1.0, 2.0, 3.0});
    std::string text = builder.write();
    // The second product's solid becomes the first one's.
    const std::string mark = "MANIFOLD_SOLID_BREP(";
    const std::size_t first = text.rfind('#', text.find(mark));
    const std::size_t second = text.rfind('#', text.rfind(mark));
    const std::string firstNumber = text.substr(first, text.find('=', first) - first);
    const std::string secondNumber = text.substr(second, text.find('=', second) - second);
    ASSERT_NE(firstNumber, secondNumber);
    std::size_t at = text.find(secondNumber + ")");
    if (at == std::string::npos) at = text.find(secondNumber + ",");
    ASSERT_NE(at, std::string::npos);
    text.replace(at, secondNumber.size(), firstNumber);
    expectSame(text);

    const occt::step::Part21 file(text);
    const occt::step::Products products = readProducts(file);
    NoChannel channel;
    occt::ProgressReporter progress(channel);
    occt::BinaryDocument document;
    occt::StepTranslation translation(file, products);
    ASSERT_TRUE(translation.run(document, progress, 1));
    const TopoDS_Shape a = translation.shape(products.products[0].instance);
    const TopoDS_Shape b = translation.shape(products.products[1].instance);
    ASSERT_FALSE(a.IsNull() || b.IsNull());
    EXPECT_TRUE(a.IsPartner(b));
}

TEST(StepTranslation, FilesWithoutProductsGoThroughAsAWhole) {
    support::StepBuilder builder;
    builder.addBox("a", {1.0, 2.0, 3.0});
    const std::string text = replaced(builder.write(), "PRODUCT_DEFINITION(", "PRODUCT_DEFINITIO(");
    EXPECT_FALSE(isCut(text));
    const occt::step::Part21 file(text);
    const occt::step::Products products = readProducts(file);
    NoChannel channel;
    occt::ProgressReporter progress(channel);
    occt::BinaryDocument document;
    occt::StepTranslation translation(file, products);
    ASSERT_TRUE(translation.run(document, progress));
    TDF_LabelSequence free;
    XCAFDoc_DocumentTool::ShapeTool(document.handle()->Main())->GetFreeShapes(free);
    EXPECT_EQ(free.Length(), 1);
}

TEST(StepTranslation, EveryFaceAndBodyIsAccountedFor) {
    const std::string text = written(roundShapes());
    const occt::step::Part21 file(text);
    const occt::step::Products products = readProducts(file);
    NoChannel channel;
    occt::ProgressReporter progress(channel);
    occt::BinaryDocument document;
    occt::StepTranslation translation(file, products);
    ASSERT_TRUE(translation.run(document, progress, 1));
    std::size_t count = 0;
    for (const char* type : {"ADVANCED_FACE", "MANIFOLD_SOLID_BREP"}) {
        for (const std::uint32_t index : file.ofType(type)) {
            EXPECT_TRUE(translation.isTranslated(file.instances()[index].id));
            ++count;
        }
    }
    EXPECT_GE(count, 5U + 6U + 3U + 3U + 1U + 5U);
    EXPECT_FALSE(translation.isTranslated(file.instances()[0].id));
    EXPECT_FALSE(translation.isTranslated(999'999'999));
}

TEST(StepTranslation, RealFilesInPiecesAreWhatTheyAreAsAWhole) {
    SKIP_WITHOUT_REAL_DATA();
    namespace fs = std::filesystem;
    constexpr std::uintmax_t largest = 1'200'000;
    std::size_t compared = 0;
    for (const char* folder : {"A-singles", "A-revisions", "B-pmi"}) {
        for (const auto& entry :
             fs::recursive_directory_iterator(support::realDataFolder() / folder)) {
            const std::string extension = entry.path().extension().string();
            if (extension != ".step" && extension != ".stp") continue;
            if (entry.file_size() > largest) continue;
            const std::string text = support::readFile(entry.path());
            if (text.empty() || !isCut(text)) continue;
            SCOPED_TRACE(entry.path().filename().string());
            EXPECT_EQ(byPieces(text, 1), asAWhole(text));
            ++compared;
        }
    }
    EXPECT_GE(compared, 10U);
}

}  // namespace
