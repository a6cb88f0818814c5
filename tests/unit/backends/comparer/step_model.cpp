#include "tests/unit/backends/comparer/step_model.h"

#include <Interface_Static.hxx>
#include <STEPCAFControl_Controller.hxx>
#include <STEPCAFControl_Reader.hxx>
#include <STEPCAFControl_Writer.hxx>
#include <TCollection_AsciiString.hxx>
#include <TDF_LabelSequence.hxx>
#include <TDataStd_Name.hxx>
#include <TDocStd_Document.hxx>
#include <TopExp_Explorer.hxx>
#include <TopLoc_Location.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>

namespace {

std::string nameOf(const TDF_Label& label) {
    Handle(TDataStd_Name) name;
    if (!label.FindAttribute(TDataStd_Name::GetID(), name)) return {};
    return TCollection_AsciiString(name->Get()).ToCString();
}

void addBodies(FakeModel& model, HPS::ComponentId leaf, const TopoDS_Shape& shape) {
    std::vector<std::pair<std::string, TopoDS_Shape>> bodies;
    for (TopExp_Explorer it(shape, TopAbs_SOLID); it.More(); it.Next()) {
        bodies.emplace_back("", it.Current());
    }
    for (TopExp_Explorer it(shape, TopAbs_SHELL, TopAbs_SOLID); it.More(); it.Next()) {
        bodies.emplace_back("", it.Current());
    }
    for (TopExp_Explorer it(shape, TopAbs_FACE, TopAbs_SHELL); it.More(); it.Next()) {
        bodies.emplace_back("", it.Current());
    }
    if (!bodies.empty()) model.bodies(leaf, bodies);
}

void addProduct(FakeModel& model, HPS::ComponentId occurrence, const TDF_Label& product) {
    TDF_LabelSequence components;
    if (!XCAFDoc_ShapeTool::GetComponents(product, components)) {
        addBodies(model, occurrence, XCAFDoc_ShapeTool::GetShape(product));
        return;
    }
    for (Standard_Integer i = 1; i <= components.Length(); ++i) {
        TDF_Label referred;
        if (!XCAFDoc_ShapeTool::GetReferredShape(components.Value(i), referred)) continue;
        const gp_Trsf place = XCAFDoc_ShapeTool::GetLocation(components.Value(i)).Transformation();
        addProduct(model, model.occurrence(occurrence, nameOf(referred), place), referred);
    }
}

bool readDocument(const std::string& path, Handle(TDocStd_Document) & document) {
    document = new TDocStd_Document("BinXCAF");
    STEPCAFControl_Reader reader;
    return reader.ReadFile(path.c_str()) == IFSelect_RetDone && reader.Transfer(document);
}

}  // namespace

std::shared_ptr<FakeModel> readStepModel(const std::string& path) {
    Handle(TDocStd_Document) document;
    if (!readDocument(path, document)) return nullptr;
    TDF_LabelSequence roots;
    XCAFDoc_DocumentTool::ShapeTool(document->Main())->GetFreeShapes(roots);
    auto model = std::make_shared<FakeModel>(roots.Length() == 1 ? nameOf(roots.First()) : "Root");
    for (Standard_Integer i = 1; i <= roots.Length(); ++i) {
        const HPS::ComponentId root = roots.Length() == 1
                                          ? model->top()
                                          : model->occurrence(model->top(), nameOf(roots.Value(i)));
        addProduct(*model, root, roots.Value(i));
    }
    return model;
}

bool rewriteStep(const std::string& from, const std::string& to, const char* unit) {
    Handle(TDocStd_Document) document;
    if (!readDocument(from, document)) return false;
    STEPCAFControl_Controller::Init();
    Interface_Static::SetCVal("write.step.unit", unit);
    STEPCAFControl_Writer writer;
    return writer.Transfer(document, STEPControl_AsIs) &&
           writer.Write(to.c_str()) == IFSelect_RetDone;
}
