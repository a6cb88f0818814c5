#include <IFSelect_ReturnStatus.hxx>
#include <STEPCAFControl_Controller.hxx>
#include <STEPCAFControl_Reader.hxx>
#include <STEPCAFControl_Writer.hxx>
#include <Standard_Failure.hxx>
#include <TDF_LabelSequence.hxx>
#include <TDocStd_Document.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS_Shape.hxx>
#include <XCAFApp_Application.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <iostream>

namespace {

constexpr int kNothingExact = 5;

Handle(TDocStd_Document) newDocument() {
    Handle(TDocStd_Document) document;
    XCAFApp_Application::GetApplication()->NewDocument("BinXCAF", document);
    return document;
}

/// Open CASCADE 7.6 leaves the triangles of a file out, reading as well as writing.
bool hasExactGeometry(const Handle(TDocStd_Document) & document) {
    TDF_LabelSequence labels;
    XCAFDoc_DocumentTool::ShapeTool(document->Main())->GetFreeShapes(labels);
    for (const TDF_Label& label : labels) {
        const TopoDS_Shape shape = XCAFDoc_ShapeTool::GetShape(label);
        if (TopExp_Explorer(shape, TopAbs_VERTEX).More()) return true;
    }
    return false;
}

int rewrite(const char* from, const char* to) {
    Handle(TDocStd_Document) document = newDocument();
    STEPCAFControl_Reader reader;
    if (reader.ReadFile(from) != IFSelect_RetDone) return 1;
    if (!reader.Transfer(document) || !hasExactGeometry(document)) return kNothingExact;
    STEPCAFControl_Writer writer;
    if (!writer.Transfer(document, STEPControl_AsIs)) return 2;
    return writer.Write(to) == IFSelect_RetDone ? 0 : 3;
}

}  // namespace

/// step_rewrite IN OUT: reads a STEP file and writes it again, as another system would that
/// imports and exports it. Exits with 5 when the file has no geometry that it could write.
int main(int argc, char** argv) {
    if (argc != 3) return 64;
    try {
        STEPCAFControl_Controller::Init();
        return rewrite(argv[1], argv[2]);
    } catch (const Standard_Failure& failure) {
        std::cerr << failure.GetMessageString() << "\n";
        return 4;
    }
}
