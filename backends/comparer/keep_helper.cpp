#include <filesystem>

#include <Message_ProgressRange.hxx>
#include <RWGltf_CafWriter.hxx>
#include <RWMesh_CoordinateSystem.hxx>
#include <TColStd_IndexedDataMapOfStringString.hxx>
#include <TDF_LabelSequence.hxx>
#include <TopTools_MapOfShape.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>

#include "backends/comparer/comparer.h"
#include "backends/comparer/helper_support.h"
#include "backends/comparer/meshing.h"
#include "backends/comparer/result_document.h"

namespace comparer {
namespace {

/// Every body of the document once, whichever groups show it.
std::vector<TopoDS_Shape> distinctBodies(const Handle(TDocStd_Document) & document) {
    const auto tool = XCAFDoc_DocumentTool::ShapeTool(document->Main());
    TDF_LabelSequence labels;
    tool->GetShapes(labels);
    std::vector<TopoDS_Shape> bodies;
    TopTools_MapOfShape seen;
    for (Standard_Integer i = 1; i <= labels.Length(); ++i) {
        if (!XCAFDoc_ShapeTool::IsSimpleShape(labels.Value(i))) continue;
        const TopoDS_Shape shape = XCAFDoc_ShapeTool::GetShape(labels.Value(i));
        if (!shape.IsNull() && seen.Add(shape)) bodies.push_back(shape);
    }
    return bodies;
}

bool writeGlb(const Handle(TDocStd_Document) & document, const std::string& target) {
    RWGltf_CafWriter writer(target.c_str(), Standard_True);
    auto& converter = writer.ChangeCoordinateSystemConverter();
    converter.SetInputLengthUnit(0.001);
    converter.SetInputCoordinateSystem(RWMesh_CoordinateSystem_Zup);
    TColStd_IndexedDataMapOfStringString info;
    info.Add("generator", "Bextora");
    return writer.Perform(document, info, Message_ProgressRange());
}

bool keep(const std::string& result, const std::string& target, Reporter& reporter) {
    ResultDocument opened;
    std::string error;
    if (!opened.open(result, error)) {
        reporter.failure("damaged", error);
        return false;
    }
    reporter.progress(0.1, "meshing");
    meshShapes(distinctBodies(opened.document()));
    reporter.progress(0.9, "writing");
    if (writeGlb(opened.document(), target)) {
        reporter.progress(1.0, "writing");
        return true;
    }
    std::error_code ignored;
    std::filesystem::remove(target, ignored);
    reporter.failure("unwritable", "can't write " + target);
    return false;
}

}  // namespace

int runKeepHelper(const std::vector<std::string>& arguments, os::ParentChannel& channel,
                  os::Confinement* confinement) {
    Reporter reporter(channel);
    const auto options = parseOptions(arguments);
    if (!options || !options->contains("result") || !options->contains("out")) {
        reporter.failure("arguments", "The export was started with wrong arguments.");
        return 1;
    }
    os::confineHelper(confinement, {{options->at("result")}, {folderOf(options->at("out"))}},
                      channel);
    return runGuarded(reporter,
                      [&] { return keep(options->at("result"), options->at("out"), reporter); });
}

}  // namespace comparer
