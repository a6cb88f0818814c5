// Files of each format that the geometry library reads, through the real helper.

#include <zlib.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include <gtest/gtest.h>

#include <BRepMesh_IncrementalMesh.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeSphere.hxx>
#include <BRepTools.hxx>
#include <BRep_Builder.hxx>
#include <BinTools.hxx>
#include <BinXCAFDrivers.hxx>
#include <IGESControl_Controller.hxx>
#include <IGESControl_Writer.hxx>
#include <TDataStd_Name.hxx>
#include <TDocStd_Application.hxx>
#include <TDocStd_Document.hxx>
#include <TopoDS_Compound.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>

#include "platform/hps/component_type.h"
#include "tests/integration/import/imports.h"
#include "tests/support/iges_builder.h"
#include "tests/support/real_data.h"
#include "tests/support/step_builder.h"

namespace {

namespace Type = HPS::ComponentType;
using HPS::IOResult;
using import_test::Imported;
using Texts = std::vector<std::string>;

TopoDS_Shape twoBodies() {
    TopoDS_Compound compound;
    const BRep_Builder builder;
    builder.MakeCompound(compound);
    builder.Add(compound, BRepPrimAPI_MakeBox(10, 20, 30).Shape());
    builder.Add(compound, BRepPrimAPI_MakeSphere(5).Shape());
    return compound;
}

class FormatsImport : public import_test::Imports {
protected:
    std::string path(const std::string& name) const { return (scratch.path() / name).string(); }

    std::string writeBrep(const std::string& name, bool binary) const {
        std::ofstream file(path(name), std::ios::binary);
        if (binary) {
            BinTools::Write(twoBodies(), file);
        } else {
            BRepTools::Write(twoBodies(), file);
        }
        return path(name);
    }

    /// A box, used twice below an assembly; the second time it is moved.
    std::string writeXbf(const std::string& name) const {
        const Handle(TDocStd_Application) application = new TDocStd_Application;
        BinXCAFDrivers::DefineFormat(application);
        Handle(TDocStd_Document) document;
        application->NewDocument("BinXCAF", document);
        const auto tool = XCAFDoc_DocumentTool::ShapeTool(document->Main());
        const TDF_Label part = tool->AddShape(BRepPrimAPI_MakeBox(10, 20, 30).Shape(), false);
        const TDF_Label top = tool->NewShape();
        gp_Trsf move;
        move.SetTranslation(gp_Vec(100, 0, 0));
        tool->AddComponent(top, part, TopLoc_Location());
        tool->AddComponent(top, part, TopLoc_Location(move));
        tool->UpdateAssemblies();
        TDataStd_Name::Set(part, "Block");
        TDataStd_Name::Set(top, "Pair");
        application->SaveAs(document, TCollection_ExtendedString(path(name).c_str(), true));
        application->Close(document);
        return path(name);
    }

    std::string writeIges(const std::string& name, int mode) const {
        IGESControl_Controller::Init();
        IGESControl_Writer writer("MM", mode);
        writer.AddShape(twoBodies());
        writer.Write(path(name).c_str());
        return path(name);
    }

    std::string refusal(const std::string& file) {
        const Imported got = import(file);
        return got.result == IOResult::Success ? "success" : got.cause.code + ": " + got.cause.text;
    }

    /// Cuts a file at many places: each piece is refused as damaged or tells what it lacks.
    void cutEverywhere(const std::string& file, const std::string& ending) {
        const std::string whole = support::readFile(file);
        for (std::size_t part = 1; part < 12; ++part) {
            const std::size_t size = whole.size() * part / 12;
            const std::string cut = scratch.write("cut" + ending, whole.substr(0, size));
            const Imported got = import(cut);
            if (got.result == IOResult::Success) {
                EXPECT_FALSE(got.model->gaps().empty()) << "cut at " << size;
            } else {
                EXPECT_NE(got.cause.text.find(cut), std::string::npos) << got.cause.text;
            }
        }
    }
};

std::string packed(const std::string& bytes) {
    z_stream stream = {};
    EXPECT_EQ(deflateInit2(&stream, 6, Z_DEFLATED, 16 + MAX_WBITS, 8, Z_DEFAULT_STRATEGY), Z_OK);
    std::string out(deflateBound(&stream, bytes.size()) + 64, '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
    stream.avail_in = static_cast<uInt>(bytes.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
    out.resize(stream.total_out);
    deflateEnd(&stream);
    return out;
}

TEST_F(FormatsImport, BrepTextAndBrepBinaryGiveTheSameBodies) {
    Texts digests;
    for (const bool binary : {false, true}) {
        const Imported got = import(writeBrep(binary ? "b.brep" : "a.brep", binary));
        ASSERT_EQ(got.result, IOResult::Success) << got.cause.text;
        EXPECT_TRUE(got.model->gaps().empty()) << got.model->gaps()[0];
        EXPECT_EQ(names(got, Type::BrepModel), (Texts{"Body 1", "Body 2"}));
        EXPECT_EQ(names(got, Type::ProductOccurrence), Texts{"Part"});
    }
    cutEverywhere(path("a.brep"), ".brep");
    cutEverywhere(path("b.brep"), ".brep");
}

TEST_F(FormatsImport, BrepFilesThatAreCutAnywhereAreRefusedAtOnce) {
    // The library's reader would ask for ever for what is not there.
    constexpr std::size_t places = 30;
    const auto start = std::chrono::steady_clock::now();
    for (const bool binary : {false, true}) {
        const std::string whole = support::readFile(writeBrep("a.brep", binary));
        for (std::size_t place = 1; place <= places; ++place) {
            const std::size_t size = whole.size() * place / (places + 1);
            const std::string said = refusal(scratch.write("cut.brep", whole.substr(0, size)));
            EXPECT_TRUE(said.starts_with("damaged:") || said.starts_with("not-this-format:"))
                << "cut at " << size << ": " << said;
        }
    }
    const auto taken = std::chrono::steady_clock::now() - start;
    EXPECT_LT(std::chrono::duration<double>(taken).count(), 250.0) << "of 60 imports";
}

TEST_F(FormatsImport, BrepFilesMayEndWithoutALineFeed) {
    std::string text = support::readFile(writeBrep("a.brep", false));
    text.resize(text.find_last_not_of(" \n") + 1);
    const Imported got = import(scratch.write("short.brep", text));
    ASSERT_EQ(got.result, IOResult::Success) << got.cause.text;
    EXPECT_TRUE(got.model->gaps().empty()) << got.model->gaps()[0];
    EXPECT_EQ(count(got, Type::BrepModel), 2U);
}

TEST_F(FormatsImport, BrepFacesWhoseSurfaceIsNotKeptAreAGapThoughTheyHaveTriangles) {
    const TopoDS_Shape box = BRepPrimAPI_MakeBox(10, 20, 30).Shape();
    BRepMesh_IncrementalMesh(box, 0.1);
    const std::string file = path("a.brep");
    BRepTools::Write(box, file.c_str());
    const Imported sound = import(file);
    ASSERT_EQ(sound.result, IOResult::Success) << sound.cause.text;
    EXPECT_TRUE(sound.model->gaps().empty()) << sound.model->gaps()[0];
    std::string text = support::readFile(file);
    // Kind, place, axis and the two directions of a plane: one direction gets no length.
    const std::size_t planes = text.find('\n', text.find("\nSurfaces ") + 1) + 1;
    std::size_t at = planes;
    for (int word = 0; word < 10; ++word) at = text.find(' ', at) + 1;
    text.replace(at, text.find('\n', at) - at, "0 0 0 ");
    const Imported got = import(scratch.write("flat.brep", text));
    if (got.result == IOResult::Success) {
        ASSERT_FALSE(got.model->gaps().empty());
        EXPECT_EQ(got.model->gaps()[0], "1 of 6 faces have no surface that could be read.");
    } else {
        EXPECT_EQ(got.cause.code, "damaged");
    }
}

TEST_F(FormatsImport, BrepFacesWithoutASurfaceAreAGap) {
    std::string text = support::readFile(writeBrep("a.brep", false));
    // Faces that name no surface.
    const std::size_t face = text.find("\nFa\n");
    ASSERT_NE(face, text.npos);
    // Flag, tolerance, surface, location.
    std::size_t at = face + 4;
    for (int word = 0; word < 2; ++word) {
        at = text.find(' ', text.find_first_not_of(" \n", at));
    }
    at = text.find_first_not_of(' ', at);
    const std::size_t end = text.find(' ', at);
    ASSERT_NE(end, text.npos);
    text.replace(at, end - at, "0");
    const std::string file = scratch.write("planeless.brep", text);
    const Imported got = import(file);
    ASSERT_EQ(got.result, IOResult::Success) << got.cause.text;
    bool said = false;
    for (const std::string& gap : got.model->gaps()) {
        said = said || gap.ends_with(" faces have no surface that could be read.");
    }
    EXPECT_TRUE(said);
}

TEST_F(FormatsImport, BrepCountsThatCannotBeAreRefused) {
    std::string text = support::readFile(writeBrep("a.brep", false));
    const std::size_t at = text.find("TShapes ") + 8;
    text.insert(at, "9999999");
    const std::string file = scratch.write("huge.brep", text);
    EXPECT_EQ(refusal(file).substr(0, 8), "damaged:");
    EXPECT_NE(refusal(file).find("the number of its TShapes in line"), std::string::npos);
}

TEST_F(FormatsImport, XbfKeepsProductsNamesAndPlacements) {
    const Imported got = import(writeXbf("a.xbf"));
    ASSERT_EQ(got.result, IOResult::Success) << got.cause.text;
    EXPECT_TRUE(got.model->gaps().empty()) << got.model->gaps()[0];
    EXPECT_EQ(names(got, Type::ProductOccurrence), (Texts{"Pair", "Block", "Block"}));
    EXPECT_EQ(count(got, Type::BrepModel), 2U);
    const auto root = got.model->child(got.model->root(), 0);
    EXPECT_NEAR(got.model->placement(got.model->child(root, 1)).TranslationPart().X(), 100.0, 1e-9);
    cutEverywhere(path("a.xbf"), ".xbf");
}

TEST_F(FormatsImport, XbfFilesThatAnnounceMoreThanThereIsAreRefusedAtOnce) {
    const std::string whole = support::readFile(writeXbf("a.xbf"));
    // The head's numbers say where sections end.
    const auto start = std::chrono::steady_clock::now();
    for (std::size_t at = 7; at < 87; at += 4) {
        std::string text = whole;
        text.replace(at, 4, 4, '\x7F');
        const Imported got = import(scratch.write("far.xbf", text));
        EXPECT_NE(got.cause.code, "time-limit") << at;
    }
    const auto taken = std::chrono::steady_clock::now() - start;
    EXPECT_LT(std::chrono::duration<double>(taken).count(), 250.0) << "of 20 imports";
}

TEST_F(FormatsImport, IgesSolidsAndIgesFacesAreRead) {
    const Imported solids = import(writeIges("solids.igs", 1));
    ASSERT_EQ(solids.result, IOResult::Success) << solids.cause.text;
    EXPECT_TRUE(solids.model->gaps().empty()) << solids.model->gaps()[0];
    EXPECT_EQ(count(solids, Type::BrepModel), 2U);
    const Imported faces = import(writeIges("faces.igs", 0));
    ASSERT_EQ(faces.result, IOResult::Success) << faces.cause.text;
    EXPECT_TRUE(faces.model->gaps().empty()) << faces.model->gaps()[0];
    EXPECT_EQ(count(faces, Type::BrepModel), 2U) << "each solid's faces are one body";
    cutEverywhere(path("solids.igs"), ".igs");
}

TEST_F(FormatsImport, IgesSubfiguresAreParts) {
    support::IgesBuilder file;
    const int line = file.add(110, "0,0,0,1,0,0");
    const int bolt = file.add(308, "0,4HBolt,1," + std::to_string(line));
    const int pair = file.add(308, "1,4HPair,2,7,9");
    ASSERT_EQ(pair, 5);
    file.add(408, std::to_string(bolt) + ",0,0,0,1");
    file.add(408, std::to_string(bolt) + ",0,10,0,1");
    file.add(408, std::to_string(pair) + ",0,0,0,1");
    file.add(408, std::to_string(pair) + ",0,0,50,1");
    const Imported got = import(scratch.write("a.igs", file.write(support::IgesBuilder::unit(10))));
    ASSERT_EQ(got.result, IOResult::Success) << got.cause.text;
    EXPECT_TRUE(got.model->gaps().empty()) << got.model->gaps()[0];
    EXPECT_EQ(names(got, Type::ProductOccurrence),
              (Texts{"Assembly", "Pair", "Bolt", "Bolt", "Pair", "Bolt", "Bolt"}));
    EXPECT_EQ(count(got, Type::Curve), 4U);
    const auto root = got.model->child(got.model->root(), 0);
    const auto last = got.model->child(got.model->child(root, 1), 1);
    const gp_XYZ at = got.model->placement(last).TranslationPart();
    EXPECT_NEAR(at.Y(), 100.0, 1e-9) << "centimetres";
    EXPECT_NEAR(at.Z(), 500.0, 1e-9);
    EXPECT_EQ(got.model->unitMm(), 10.0);
    const auto texts = import_test::metadata(find(got, Type::ProductOccurrence, "Assembly"));
    for (const char* text : {"Header Author=Ada L", "Header Organization=Machine",
                             "Header Time Stamp=20260101.000000", "Units=Centimeter"}) {
        EXPECT_NE(std::find(texts.begin(), texts.end(), text), texts.end()) << text;
    }
}

TEST_F(FormatsImport, IgesGeometryThatIsNotReadIsAGap) {
    support::IgesBuilder file;
    file.add(110, "0,0,0,1,0,0");
    file.add(158, "5.,0.,0.,0.");
    const Imported got = import(scratch.write("a.igs", file.write()));
    ASSERT_EQ(got.result, IOResult::Success) << got.cause.text;
    EXPECT_EQ(got.model->gaps(), Texts{"1 entities of constructive solid geometry were not read."});
}

TEST_F(FormatsImport, CompressedStepIsTheFileThatWasPacked) {
    support::StepBuilder builder;
    builder.addBox("Box", {10, 20, 30});
    for (const char* name : {"a.stp.gz", "a.step.GZ", "a.stpz", "a.dat"}) {
        const Imported got = import(scratch.write(name, packed(builder.write())));
        ASSERT_EQ(got.result, IOResult::Success) << got.cause.text;
        EXPECT_EQ(names(got, Type::ProductOccurrence), Texts{"Box"});
    }
    const std::string whole = packed(builder.write());
    EXPECT_EQ(refusal(scratch.write("cut.stpz", whole.substr(0, whole.size() / 2))).substr(0, 8),
              "damaged:");
    EXPECT_EQ(refusal(scratch.write("text.stpz", packed("some text"))).substr(0, 16),
              "not-this-format:");
}

TEST_F(FormatsImport, ContentGoesBeforeTheNameAndThatIsSaid) {
    support::StepBuilder builder;
    builder.addBox("Box", {10, 20, 30});
    const std::string file = scratch.write("a.igs", builder.write());
    ASSERT_EQ(import(file).result, IOResult::Success);
    EXPECT_EQ(logged, Texts{file + ": The name ends like that of IGES, but the content is STEP."});
}

TEST_F(FormatsImport, RandomBytesAreOfNoFormat) {
    std::string bytes(5000, '\0');
    std::uint32_t state = 1;
    for (char& byte : bytes)
        byte = static_cast<char>((state = state * 1664525U + 1013904223U) >> 24);
    const std::string said = refusal(scratch.write("a.dat", bytes));
    EXPECT_EQ(said.substr(0, 16), "not-this-format:");
    EXPECT_NE(said.find("STEP, compressed STEP, IGES"), std::string::npos) << said;
    for (const char* name : {"a.igs", "a.brep", "a.xbf", "a.step"}) {
        EXPECT_NE(refusal(scratch.write(name, bytes)), "success") << name;
    }
}

/// Entities of the directory by type, counted without the import's code.
std::map<int, int> igesTypes(const std::string& file) {
    std::map<int, int> types;
    std::istringstream lines(support::readFile(file));
    bool first = true;
    for (std::string line; std::getline(lines, line);) {
        if (line.size() < 73 || line[72] != 'D') continue;
        if (first) ++types[std::atoi(line.substr(0, 8).c_str())];
        first = !first;
    }
    return types;
}

TEST_F(FormatsImport, FacesOfRealIgesFilesAreAllThere) {
    SKIP_WITHOUT_REAL_DATA();
    std::size_t files = 0;
    for (const char* folder : {"C-broken-odd", "D-other-formats"}) {
        for (const auto& entry :
             std::filesystem::directory_iterator(support::realDataFolder() / folder)) {
            const std::string ending = entry.path().extension().string();
            if (ending != ".igs" && ending != ".iges") continue;
            ++files;
            const std::string name = entry.path().filename().string();
            const Imported got = import(entry.path().string());
            ASSERT_EQ(got.result, IOResult::Success) << name << ": " << got.cause.text;
            auto types = igesTypes(entry.path().string());
            std::int32_t faces = 0;
            std::vector<HPS::ComponentId> open = {got.model->root()};
            while (!open.empty()) {
                const HPS::ComponentId id = open.back();
                open.pop_back();
                if (const auto* identity = got.model->identity(id)) faces += identity->faceCount;
                for (std::size_t i = 0; i < got.model->childCount(id); ++i) {
                    open.push_back(got.model->child(id, i));
                }
            }
            const std::int32_t declared = types[144] + types[143] + types[510];
            if (got.model->gaps().empty()) {
                EXPECT_GE(faces, declared) << name;
            } else {
                EXPECT_EQ(name, "OCCT__bug27069_points-with-comments.igs") << got.model->gaps()[0];
            }
        }
    }
    EXPECT_GE(files, 13U);
}

TEST_F(FormatsImport, RealBrepFilesAreRead) {
    SKIP_WITHOUT_REAL_DATA();
    for (const char* name :
         {"C-broken-odd/mayo__cube.brep", "C-broken-odd/mayo__mayo_bezier_curve.brep",
          "D-other-formats/OCCT__hammer_051f__rev1_2012-03-05_7fd5997.brep",
          "D-other-formats/OCCT__hammer_051f__rev2_2026-07-19_2c78b01.brep"}) {
        const Imported got = import((support::realDataFolder() / name).string());
        ASSERT_EQ(got.result, IOResult::Success) << got.cause.text;
        EXPECT_TRUE(got.model->gaps().empty()) << name << ": " << got.model->gaps()[0];
        EXPECT_GE(count(got, Type::BrepModel) + count(got, Type::Curve), 1U) << name;
    }
}

}  // namespace
