#include "tests/integration/data/solid_files.h"

#include <BRepAlgoAPI_Cut.hxx>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepBuilderAPI_MakePolygon.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRepPrimAPI_MakeHalfSpace.hxx>
#include <BRepPrimAPI_MakePrism.hxx>
#include <BRep_Builder.hxx>
#include <Interface_Static.hxx>
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <Message_Printer.hxx>
#include <STEPControl_Controller.hxx>
#include <STEPControl_Writer.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Shell.hxx>
#include <TopoDS_Solid.hxx>
#include <gp_Pln.hxx>

namespace data_test {
namespace {

TopoDS_Shell shellOf(const TopoDS_Shape& shape) {
    return TopoDS::Shell(TopExp_Explorer(shape, TopAbs_SHELL).Current());
}

TopoDS_Solid solidOf(const std::vector<TopoDS_Shape>& shells) {
    const BRep_Builder builder;
    TopoDS_Solid solid;
    builder.MakeSolid(solid);
    for (const TopoDS_Shape& shell : shells) builder.Add(solid, shell);
    return solid;
}

TopoDS_Face polygon(const std::vector<gp_Pnt>& points) {
    BRepBuilderAPI_MakePolygon outline;
    for (const gp_Pnt& point : points) outline.Add(point);
    outline.Close();
    return BRepBuilderAPI_MakeFace(outline.Wire(), Standard_True).Face();
}

}  // namespace

bool writeStep(const TopoDS_Shape& shape, const char* unit, const std::string& path) {
    Message::DefaultMessenger()->RemovePrinters(STANDARD_TYPE(Message_Printer));
    // The settings are only heard between these two.
    STEPControl_Controller::Init();
    if (!Interface_Static::SetCVal("write.step.unit", unit)) return false;
    STEPControl_Writer writer;
    return writer.Transfer(shape, STEPControl_AsIs) == IFSelect_RetDone &&
           writer.Write(path.c_str()) == IFSelect_RetDone;
}

TopoDS_Shape together(const std::vector<TopoDS_Shape>& shapes) {
    const BRep_Builder builder;
    TopoDS_Compound all;
    builder.MakeCompound(all);
    for (const TopoDS_Shape& shape : shapes) builder.Add(all, shape);
    return all;
}

TopoDS_Shape openBox(double a, double b, double c) {
    const TopoDS_Shape box = BRepPrimAPI_MakeBox(a, b, c).Shape();
    const BRep_Builder builder;
    TopoDS_Shell shell;
    builder.MakeShell(shell);
    TopExp_Explorer face(box, TopAbs_FACE);
    for (face.Next(); face.More(); face.Next()) builder.Add(shell, face.Current());
    return shell;
}

TopoDS_Shape hollowBox(double edge, double hollow) {
    const double at = (edge - hollow) / 2;
    const TopoDS_Shape outer = BRepPrimAPI_MakeBox(edge, edge, edge).Shape();
    const TopoDS_Shape inner =
        BRepPrimAPI_MakeBox(gp_Pnt(at, at, at), hollow, hollow, hollow).Shape();
    return solidOf({shellOf(outer), shellOf(inner).Reversed()});
}

TopoDS_Shape insideOutBox(double a, double b, double c) {
    return solidOf({shellOf(BRepPrimAPI_MakeBox(a, b, c).Shape()).Reversed()});
}

TopoDS_Shape flatSolid(double a, double b) {
    const TopoDS_Face face = polygon({{0, 0, 0}, {a, 0, 0}, {a, b, 0}, {0, b, 0}});
    const BRep_Builder builder;
    TopoDS_Shell shell;
    builder.MakeShell(shell);
    builder.Add(shell, face);
    builder.Add(shell, face.Reversed());
    shell.Closed(Standard_True);
    return solidOf({shell});
}

TopoDS_Shape cutCylinder(double radius, double mean, double slope) {
    const TopoDS_Shape whole = BRepPrimAPI_MakeCylinder(radius, 2 * mean).Shape();
    const gp_Pln plane(gp_Pnt(0, 0, mean), gp_Dir(-slope, 0, 1));
    const TopoDS_Shape above =
        BRepPrimAPI_MakeHalfSpace(BRepBuilderAPI_MakeFace(plane).Face(), gp_Pnt(0, 0, 3 * mean))
            .Solid();
    return BRepAlgoAPI_Cut(whole, above).Shape();
}

TopoDS_Shape bowTie(double a, double b, double height) {
    const TopoDS_Face face = polygon({{0, 0, 0}, {a, b, 0}, {a, 0, 0}, {0, b, 0}});
    return BRepPrimAPI_MakePrism(face, gp_Vec(0, 0, height)).Shape();
}

}  // namespace data_test
