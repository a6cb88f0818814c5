#include "tests/edits/step_files.h"

#include <Interface_Static.hxx>
#include <Quantity_Color.hxx>
#include <STEPCAFControl_Controller.hxx>
#include <STEPCAFControl_Writer.hxx>
#include <TDataStd_Name.hxx>
#include <TDocStd_Document.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>

#include "tests/unit/backends/comparer/step_model.h"

namespace edits {

std::shared_ptr<FakeModel> throughStep(const TopoDS_Shape& shape, const std::string& name,
                                       const StepForm& form, const std::string& folder) {
    const Handle(TDocStd_Document) document = new TDocStd_Document("BinXCAF");
    const auto shapes = XCAFDoc_DocumentTool::ShapeTool(document->Main());
    const TDF_Label label = shapes->AddShape(shape, Standard_False);
    TDataStd_Name::Set(label, name.c_str());
    if (form.coloured) {
        XCAFDoc_DocumentTool::ColorTool(document->Main())
            ->SetColor(label, Quantity_Color(0.8, 0.2, 0.1, Quantity_TOC_sRGB), XCAFDoc_ColorSurf);
    }
    STEPCAFControl_Controller::Init();
    Interface_Static::SetCVal("write.step.unit", form.unit);
    STEPCAFControl_Writer writer;
    const std::string path = folder + "/edit.step";
    if (!writer.Transfer(document, STEPControl_AsIs)) return nullptr;
    if (writer.Write(path.c_str()) != IFSelect_RetDone) return nullptr;
    return readStepModel(path);
}

}  // namespace edits
