#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include <BRepAlgoAPI_Cut.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRepTools.hxx>
#include <BRep_Builder.hxx>
#include <BinXCAFDrivers.hxx>
#include <IGESControl_Controller.hxx>
#include <IGESControl_Writer.hxx>
#include <Message.hxx>
#include <Message_Printer.hxx>
#include <TDataStd_Name.hxx>
#include <TDocStd_Application.hxx>
#include <TDocStd_Document.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS_Compound.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <gp_Ax2.hxx>
#include <gp_Trsf.hxx>

#include "tests/torture/generated.h"

namespace torture {
namespace {

namespace fs = std::filesystem;

/// A file that the geometry library writes, and its bytes afterwards.
class Passing {
public:
    explicit Passing(const std::string& extension)
        : path_(fs::temp_directory_path() /
                ("torture-base-" + std::to_string(::getpid()) + '.' + extension)) {}
    ~Passing() {
        std::error_code ignored;
        fs::remove(path_, ignored);
    }
    Passing(const Passing&) = delete;
    Passing& operator=(const Passing&) = delete;

    std::string path() const { return path_.string(); }
    std::string bytes() const {
        std::ifstream in(path_, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

private:
    fs::path path_;
};

TopoDS_Shape block() {
    const TopoDS_Shape box = BRepPrimAPI_MakeBox(40.0, 30.0, 20.0).Shape();
    const gp_Ax2 axis(gp_Pnt(20, 15, -1), gp_Dir(0, 0, 1));
    return BRepAlgoAPI_Cut(box, BRepPrimAPI_MakeCylinder(axis, 6.0, 22.0).Shape()).Shape();
}

TopoDS_Shape twoBodies() {
    TopoDS_Compound both;
    const BRep_Builder builder;
    builder.MakeCompound(both);
    builder.Add(both, block());
    builder.Add(both, BRepPrimAPI_MakeBox(gp_Pnt(100, 0, 0), 5.0, 6.0, 7.0).Shape());
    return both;
}

std::string brep() {
    const Passing file("brep");
    BRepTools::Write(twoBodies(), file.path().c_str());
    return file.bytes();
}

std::string iges() {
    const Passing file("igs");
    IGESControl_Controller::Init();
    IGESControl_Writer writer("MM", 0);
    writer.AddShape(twoBodies());
    writer.ComputeModel();
    writer.Write(file.path().c_str());
    return file.bytes();
}

std::string xbf() {
    const Passing file("xbf");
    const Handle(TDocStd_Application) application = new TDocStd_Application;
    BinXCAFDrivers::DefineFormat(application);
    Handle(TDocStd_Document) document;
    application->NewDocument("BinXCAF", document);
    const auto tool = XCAFDoc_DocumentTool::ShapeTool(document->Main());
    const TDF_Label part = tool->AddShape(block(), Standard_False);
    TDataStd_Name::Set(part, "Block");
    const TDF_Label assembly = tool->NewShape();
    TDataStd_Name::Set(assembly, "Blocks");
    for (int i = 0; i < 3; ++i) {
        gp_Trsf place;
        place.SetTranslation(gp_Vec(60.0 * i, 0, 0));
        tool->AddComponent(assembly, part, TopLoc_Location(place));
    }
    tool->UpdateAssemblies();
    application->SaveAs(document, file.path().c_str());
    application->Close(document);
    return file.bytes();
}

}  // namespace

std::vector<Base> generatedShapes() {
    Message::DefaultMessenger()->RemovePrinters(STANDARD_TYPE(Message_Printer));
    return {
        {"brep", "brep", "two bodies", brep(), true},
        {"iges", "igs", "two bodies", iges(), true},
        {"xbf", "xbf", "three blocks", xbf(), false},
    };
}

}  // namespace torture
