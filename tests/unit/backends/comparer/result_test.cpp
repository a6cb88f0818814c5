#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>
#include <BRepBndLib.hxx>
#include <BRepMesh_IncrementalMesh.hxx>
#include <BRepTools.hxx>
#include <Bnd_Box.hxx>
#include <RWGltf_CafReader.hxx>
#include <TDF_LabelSequence.hxx>
#include <TDataStd_Name.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>

#include "backends/comparer/comparer.h"
#include "backends/comparer/result_document.h"
#include "backends/comparer/result_rows.h"
#include "platform/os/helper_messages.h"
#include "tests/unit/backends/comparer/fake_model.h"
#include "tests/unit/backends/comparer/shapes.h"

namespace {

namespace fs = std::filesystem;
using bxtexchange::GeometryInstance;
using bxtexchange::GeometryInstanceSide;
using bxtexchange::GeometryState;
using shapes::at;

/// A folder of the test's own that goes with it.
class TempFolder {
public:
    TempFolder() {
        std::string pattern = (fs::temp_directory_path() / "comparer_test_XXXXXX").string();
        path_ = ::mkdtemp(pattern.data());
    }
    ~TempFolder() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    std::string file(const std::string& name) const { return (path_ / name).string(); }

private:
    fs::path path_;
};

class Recorder : public os::ParentChannel {
public:
    void send(const std::string& line) override {
        const auto message = os::parseHelperMessage(line);
        ASSERT_TRUE(message);
        messages.push_back(*message);
    }
    std::string failure() const {
        for (const auto& message : messages) {
            if (message.kind == os::HelperMessage::Kind::Failure) return message.text;
        }
        return {};
    }
    std::vector<os::HelperMessage> messages;
};

struct Comparison {
    comparer::Scene scene;
    bxtsg::SCGeometryResult result;
};

Comparison compareModels(const FakeModel& reference, const FakeModel& compare) {
    comparer::Names names;
    const comparer::Side a = comparer::collectSide(reference, names);
    const comparer::Side b = comparer::collectSide(compare, names);
    const comparer::Tolerances tolerances;
    comparer::BodyClasses classes(a, b, tolerances);
    const auto matches = comparer::matchInstances(a, b, names, classes, tolerances, [](double) {});
    return {comparer::buildScene(a, b, names, matches),
            comparer::buildResult(a, b, names, matches, tolerances)};
}

/// One instance of every state, with names beyond ASCII and repeated bodies.
Comparison everyState() {
    const TopoDS_Shape bolt = shapes::cylinder(2, 10);
    FakeModel a("Getriebe größe");
    a.part(a.top(), "Bolt", bolt);
    a.part(a.top(), "Bolt", bolt, at(20, 0, 0));
    a.part(a.top(), "歯車", shapes::box(3, 2, 3), at(100, 0, 0));
    a.part(a.top(), "Gone", shapes::box(4, 2, 3), at(150, 0, 0));
    a.part(a.top(), "Odd", TopoDS_Shape(), at(150, 0, 0));
    a.setGaps({"Two faces are missing."});
    FakeModel b("Getriebe größe");
    b.part(b.top(), "Bolt", bolt);
    b.part(b.top(), "Bolt", bolt, at(20, 0, 12.5) * shapes::turnedZ(10));
    b.part(b.top(), "歯車", shapes::box(3, 2, 5), at(100, 0, 0));
    b.part(b.top(), "Шестерня", shapes::box(9, 9, 9), at(200, 0, 0));
    return compareModels(a, b);
}

void expectEqual(const GeometryInstanceSide& a, const GeometryInstanceSide& b) {
    EXPECT_EQ(a.present, b.present);
    EXPECT_EQ(a.path, b.path);
    EXPECT_EQ(a.product, b.product);
    EXPECT_EQ(a.placement, b.placement);
    EXPECT_EQ(a.identity.volumeMm3, b.identity.volumeMm3);
    EXPECT_EQ(a.identity.areaMm2, b.identity.areaMm2);
    EXPECT_EQ(a.identity.principalMoments, b.identity.principalMoments);
    EXPECT_EQ(a.identity.centroidMm, b.identity.centroidMm);
    EXPECT_EQ(a.identity.faceCount, b.identity.faceCount);
    EXPECT_EQ(a.identity.surfaceKinds, b.identity.surfaceKinds);
}

void expectEqual(const bxtsg::SCGeometryResult& a, const bxtsg::SCGeometryResult& b) {
    EXPECT_EQ(a.lengthToleranceMm, b.lengthToleranceMm);
    EXPECT_EQ(a.relativeTolerance, b.relativeTolerance);
    EXPECT_EQ(a.notes, b.notes);
    ASSERT_EQ(a.instances.size(), b.instances.size());
    for (std::size_t i = 0; i < a.instances.size(); ++i) {
        const GeometryInstance& x = a.instances[i];
        const GeometryInstance& y = b.instances[i];
        EXPECT_EQ(x.state, y.state);
        EXPECT_EQ(x.evidence, y.evidence);
        expectEqual(x.reference, y.reference);
        expectEqual(x.compare, y.compare);
        EXPECT_EQ(x.displacementMm, y.displacementMm);
        EXPECT_EQ(x.rotationDeg, y.rotationDeg);
        EXPECT_EQ(x.ambiguous, y.ambiguous);
        EXPECT_EQ(x.hasFaceDifference, y.hasFaceDifference);
        EXPECT_EQ(x.faces.changedFaces, y.faces.changedFaces);
        EXPECT_EQ(x.faces.largestDeviationMm, y.faces.largestDeviationMm);
        EXPECT_EQ(x.faces.summary, y.faces.summary);
        EXPECT_EQ(x.note, y.note);
    }
}

std::string nameOf(const TDF_Label& label) {
    Handle(TDataStd_Name) name;
    if (!label.FindAttribute(TDataStd_Name::GetID(), name)) return {};
    return TCollection_AsciiString(name->Get()).ToCString();
}

std::vector<TDF_Label> componentsOf(const TDF_Label& label) {
    TDF_LabelSequence sequence;
    XCAFDoc_ShapeTool::GetComponents(label, sequence);
    std::vector<TDF_Label> labels;
    for (Standard_Integer i = 1; i <= sequence.Length(); ++i) labels.push_back(sequence.Value(i));
    return labels;
}

TDF_Label referred(const TDF_Label& component) {
    TDF_Label label;
    XCAFDoc_ShapeTool::GetReferredShape(component, label);
    return label;
}

TEST(ResultRows, SurviveTheRoundTripToTheLastBit) {
    bxtsg::SCGeometryResult result = everyState().result;
    result.instances[2].hasFaceDifference = true;
    result.instances[2].faces = {4, 3, 2, 1, 0.1, L"4 faces"};
    const auto back = comparer::decodeResult(comparer::encodeResult(result));
    ASSERT_TRUE(back);
    expectEqual(*back, result);
    EXPECT_EQ(back->instances[2].faces.removedFaces, 1);
}

TEST(ResultRows, EmptyResultSurvivesToo) {
    const auto back = comparer::decodeResult(comparer::encodeResult(bxtsg::SCGeometryResult()));
    ASSERT_TRUE(back);
    EXPECT_TRUE(back->instances.empty());
}

TEST(ResultRows, DamagedBytesAreRefused) {
    const std::string good = comparer::encodeResult(everyState().result);
    EXPECT_FALSE(comparer::decodeResult(""));
    EXPECT_FALSE(comparer::decodeResult("something else"));
    EXPECT_FALSE(comparer::decodeResult(good + "x"));
    for (std::size_t size = 0; size < good.size(); size += 7) {
        EXPECT_FALSE(comparer::decodeResult(good.substr(0, size))) << size;
    }
    for (std::size_t at = 0; at < good.size(); ++at) {
        std::string bad = good;
        bad[at] = static_cast<char>(~bad[at]);
        comparer::decodeResult(bad);  // may still be readable; must not read past the end
    }
}

TEST(ResultRows, SayWhatEachInstanceIs) {
    const auto result = everyState().result;
    ASSERT_EQ(result.instances.size(), 6U);
    const auto state = [&](std::size_t i) { return result.instances[i].state; };
    EXPECT_EQ(state(0), GeometryState::Unchanged);
    EXPECT_EQ(state(1), GeometryState::Moved);
    EXPECT_EQ(state(2), GeometryState::Changed);
    EXPECT_EQ(state(3), GeometryState::OnlyInReference);
    EXPECT_EQ(state(4), GeometryState::NotCompared);
    EXPECT_EQ(state(5), GeometryState::OnlyInCompare);
    EXPECT_EQ(result.instances[2].reference.path, L"Getriebe größe / 歯車");
    EXPECT_EQ(result.instances[2].reference.product, L"歯車");
    EXPECT_NEAR(result.instances[1].displacementMm[2], 12.5, 1e-9);
    EXPECT_EQ(result.instances[1].compare.placement[11], 12.5);
    EXPECT_FALSE(result.instances[3].compare.present);
    EXPECT_FALSE(result.instances[4].note.empty());
    ASSERT_EQ(result.notes.size(), 1U);
    EXPECT_EQ(result.notes[0], L"Reference file: Two faces are missing.");
}

TEST(Scene, GroupsWhatBelongsTogether) {
    const comparer::Scene scene = everyState().scene;
    std::vector<std::string> names;
    for (const auto& group : scene.groups) names.push_back(group.name);
    EXPECT_EQ(names, (std::vector<std::string>{"Unchanged", "Only in reference", "Only in compare",
                                               "Changed", "Moved"}));
    ASSERT_EQ(scene.groups[3].groups.size(), 2U);
    EXPECT_EQ(scene.groups[3].groups[0].name, "Reference state");
    EXPECT_EQ(scene.groups[3].groups[0].nodes[0].name, "Getriebe größe / 歯車");
    EXPECT_EQ(scene.groups[4].groups[1].nodes.size(), 1U);
}

TEST(ResultDocument, HoldsNamedColouredGroupsAndTheRows) {
    const TempFolder folder;
    const Comparison comparison = everyState();
    const std::string path = folder.file("größe result.xbf");
    ASSERT_EQ(comparer::writeResultDocument(comparison.scene, comparison.result, path), "");

    comparer::ResultDocument document;
    std::string error;
    ASSERT_TRUE(document.open(path, error)) << error;
    const auto rows = document.rows();
    ASSERT_TRUE(rows);
    expectEqual(*rows, comparison.result);

    const auto shapes = XCAFDoc_DocumentTool::ShapeTool(document.document()->Main());
    const auto colors = XCAFDoc_DocumentTool::ColorTool(document.document()->Main());
    TDF_LabelSequence roots;
    shapes->GetFreeShapes(roots);
    ASSERT_EQ(roots.Length(), 1);
    const auto groups = componentsOf(roots.First());
    ASSERT_EQ(groups.size(), 5U);
    EXPECT_EQ(nameOf(groups[1]), "Only in reference");
    const auto gone = componentsOf(referred(groups[1]));
    ASSERT_EQ(gone.size(), 1U);
    EXPECT_EQ(nameOf(gone[0]), "Getriebe größe / Gone");
    Quantity_Color color;
    ASSERT_TRUE(colors->GetColor(referred(gone[0]), XCAFDoc_ColorSurf, color));
    EXPECT_GT(color.Red(), 2.0 * color.Green());
    const auto moved = componentsOf(referred(groups[4]));
    ASSERT_EQ(moved.size(), 2U);
    EXPECT_EQ(nameOf(moved[1]), "Compare place");
}

TEST(ResultDocument, HoldsNoTriangles) {
    const TempFolder folder;
    const std::string path = folder.file("r.xbf");
    const Comparison comparison = everyState();
    ASSERT_EQ(comparer::writeResultDocument(comparison.scene, comparison.result, path), "");
    comparer::ResultDocument document;
    std::string error;
    ASSERT_TRUE(document.open(path, error));
    TDF_LabelSequence roots;
    XCAFDoc_DocumentTool::ShapeTool(document.document()->Main())->GetFreeShapes(roots);
    const TopoDS_Shape all = XCAFDoc_ShapeTool::GetShape(roots.First());
    EXPECT_FALSE(all.IsNull());
    EXPECT_FALSE(BRepTools::Triangulation(all, 1.0));
}

TEST(ResultDocument, UnwritablePathIsNamed) {
    const Comparison comparison = everyState();
    const std::string path = "/nowhere/at/all.xbf";
    const std::string error =
        comparer::writeResultDocument(comparison.scene, comparison.result, path);
    EXPECT_NE(error.find(path), std::string::npos);
}

TEST(ResultDocument, FullDiskIsAFailureThatLeavesNoFile) {
    if (!fs::exists("/dev/full")) GTEST_SKIP() << "this system has no /dev/full";
    const TempFolder folder;
    const std::string path = folder.file("full.xbf");
    fs::create_symlink("/dev/full", path);
    const Comparison comparison = everyState();
    EXPECT_NE(comparer::writeResultDocument(comparison.scene, comparison.result, path), "");
    EXPECT_FALSE(fs::exists(path));
}

TEST(ResultDocument, OtherFilesAreRefused) {
    const TempFolder folder;
    comparer::ResultDocument document;
    std::string error;
    EXPECT_FALSE(document.open(folder.file("missing.xbf"), error));
    EXPECT_FALSE(error.empty());
    std::ofstream(folder.file("text.xbf")) << "no document";
    EXPECT_FALSE(document.open(folder.file("text.xbf"), error));
}

TEST(KeepHelper, WritesAGlbThatLoadsBack) {
    const TempFolder folder;
    const Comparison comparison = everyState();
    const std::string path = folder.file("r.xbf");
    const std::string target = folder.file("r.glb");
    ASSERT_EQ(comparer::writeResultDocument(comparison.scene, comparison.result, path), "");
    Recorder recorder;
    ASSERT_EQ(comparer::runKeepHelper({"keep", "--result", path, "--out", target}, recorder), 0)
        << recorder.failure();

    Handle(TDocStd_Document) document = new TDocStd_Document("BinXCAF");
    RWGltf_CafReader reader;
    reader.SetDocument(document);
    reader.SetSystemLengthUnit(0.001);
    reader.SetSystemCoordinateSystem(RWMesh_CoordinateSystem_Zup);
    ASSERT_TRUE(reader.Perform(target.c_str(), Message_ProgressRange()));
    TDF_LabelSequence roots;
    XCAFDoc_DocumentTool::ShapeTool(document->Main())->GetFreeShapes(roots);
    ASSERT_EQ(roots.Length(), 1);
    const auto groups = componentsOf(roots.First());
    ASSERT_EQ(groups.size(), 5U);
    EXPECT_EQ(nameOf(groups[0]), "Unchanged");
    EXPECT_EQ(nameOf(groups[3]), "Changed");
    // The bolt at the origin to the added box at (200..209, 0..9, 0..9), in millimetres.
    Bnd_Box box;
    BRepBndLib::Add(XCAFDoc_ShapeTool::GetShape(roots.First()), box);
    EXPECT_NEAR(box.CornerMin().X(), -2.0, 0.1);
    EXPECT_NEAR(box.CornerMax().X(), 209.0, 0.1);
    EXPECT_NEAR(box.CornerMax().Z(), 22.5, 0.1);
}

TEST(KeepHelper, FailuresAreNamed) {
    const TempFolder folder;
    Recorder noFile;
    EXPECT_NE(comparer::runKeepHelper(
                  {"--result", folder.file("missing.xbf"), "--out", folder.file("x.glb")}, noFile),
              0);
    EXPECT_NE(noFile.failure().find("missing.xbf"), std::string::npos);

    Recorder wrong;
    EXPECT_NE(comparer::runKeepHelper({"--result"}, wrong), 0);
    EXPECT_FALSE(wrong.failure().empty());

    const Comparison comparison = everyState();
    const std::string path = folder.file("r.xbf");
    ASSERT_EQ(comparer::writeResultDocument(comparison.scene, comparison.result, path), "");
    Recorder unwritable;
    EXPECT_NE(comparer::runKeepHelper({"--result", path, "--out", "/nowhere/x.glb"}, unwritable),
              0);
    EXPECT_NE(unwritable.failure().find("/nowhere/x.glb"), std::string::npos);
}

}  // namespace
