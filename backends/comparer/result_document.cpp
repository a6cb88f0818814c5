#include "backends/comparer/result_document.h"

#include <cerrno>
#include <climits>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>

#include <BinXCAFDrivers.hxx>
#include <PCDM_ReaderStatus.hxx>
#include <PCDM_StoreStatus.hxx>
#include <Quantity_Color.hxx>
#include <Standard_Failure.hxx>
#include <TColStd_HArray1OfByte.hxx>
#include <TCollection_ExtendedString.hxx>
#include <TDF_Label.hxx>
#include <TDataStd_ByteArray.hxx>
#include <TDataStd_Name.hxx>
#include <TDocStd_Application.hxx>
#include <TopExp_Explorer.hxx>
#include <TopLoc_Location.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>

#include "backends/comparer/result_rows.h"

namespace comparer {
namespace {

/// Label of the rows, beside the tree that XCAF keeps for itself.
constexpr int kRowsTag = 2;

Handle(TDocStd_Application) newApplication() {
    Handle(TDocStd_Application) application = new TDocStd_Application;
    BinXCAFDrivers::DefineFormat(application);
    return application;
}

void setName(const TDF_Label& label, const std::string& name) {
    TDataStd_Name::Set(label, TCollection_ExtendedString(name.c_str(), Standard_True));
}

class DocumentWriter {
public:
    DocumentWriter(const Scene& scene, const Handle(TDocStd_Document) & document)
        : scene_(scene),
          shapes_(XCAFDoc_DocumentTool::ShapeTool(document->Main())),
          colors_(XCAFDoc_DocumentTool::ColorTool(document->Main())) {
        XCAFDoc_ShapeTool::SetAutoNaming(Standard_False);
    }

    void run() {
        const TDF_Label root = shapes_->NewShape();
        setName(root, "Comparison");
        for (const SceneGroup& group : scene_.groups) addGroup(root, group);
        shapes_->UpdateAssemblies();
    }

private:
    void addGroup(const TDF_Label& parent, const SceneGroup& group) {
        const TDF_Label assembly = shapes_->NewShape();
        setName(assembly, group.name);
        bodies_.clear();
        const Quantity_Color color(group.red, group.green, group.blue, Quantity_TOC_sRGB);
        const TDF_Label colorLabel = colors_->AddColor(color);
        for (const SceneNode& node : group.nodes) {
            const TopLoc_Location own = scene_.bodies[node.body].Location();
            const TDF_Label component = shapes_->AddComponent(
                assembly, bodyLabel(node, colorLabel), TopLoc_Location(node.placement) * own);
            setName(component, node.name);
        }
        // Scenes nest once; what comes next starts its own bodies.
        for (const SceneGroup& part : group.groups) addGroup(assembly, part);
        const TDF_Label component = shapes_->AddComponent(parent, assembly, TopLoc_Location());
        setName(component, group.name);
    }

    /// A body gets one label per group and colouring: the label carries the colour, and a colour
    /// on the product is the one that every reader understands. The geometry behind them is
    /// stored once.
    TDF_Label bodyLabel(const SceneNode& node, const TDF_Label& color) {
        const auto entry = bodies_.try_emplace({node.body, node.painting});
        if (entry.second) {
            const TopoDS_Shape shape = scene_.bodies[node.body].Located(TopLoc_Location());
            const TDF_Label label = shapes_->NewShape();
            shapes_->SetShape(label, shape);
            setName(label, node.name);
            if (node.painting < 0) {
                colors_->SetColor(label, color, XCAFDoc_ColorSurf);
            } else {
                paint(label, shape, scene_.paintings[static_cast<std::size_t>(node.painting)]);
            }
            entry.first->second = label;
        }
        return entry.first->second;
    }

    void paint(const TDF_Label& label, const TopoDS_Shape& shape, const FacePainting& painting) {
        const Quantity_Color rest(painting.restRed, painting.restGreen, painting.restBlue,
                                  Quantity_TOC_sRGB);
        const Quantity_Color own(painting.red, painting.green, painting.blue, Quantity_TOC_sRGB);
        colors_->SetColor(label, rest, XCAFDoc_ColorSurf);
        const TDF_Label ownColor = colors_->AddColor(own);
        std::uint32_t ordinal = 0;
        auto next = painting.faces.begin();
        for (TopExp_Explorer it(shape, TopAbs_FACE); it.More(); it.Next(), ++ordinal) {
            if (next == painting.faces.end()) return;
            if (ordinal != *next) continue;
            ++next;
            const TDF_Label face = shapes_->AddSubShape(label, it.Current());
            if (!face.IsNull()) colors_->SetColor(face, ownColor, XCAFDoc_ColorSurf);
        }
    }

    const Scene& scene_;
    Handle(XCAFDoc_ShapeTool) shapes_;
    Handle(XCAFDoc_ColorTool) colors_;
    std::map<std::pair<std::uint32_t, std::int32_t>, TDF_Label> bodies_;
};

void attachRows(const Handle(TDocStd_Document) & document, const std::string& rows) {
    const auto size = static_cast<Standard_Integer>(rows.size());
    const auto attribute =
        TDataStd_ByteArray::Set(document->Main().Root().FindChild(kRowsTag), 1, size);
    Handle(TColStd_HArray1OfByte) bytes = new TColStd_HArray1OfByte(1, size);
    std::memcpy(&bytes->ChangeFirst(), rows.data(), rows.size());
    attribute->ChangeArray(bytes);
}

std::string failure(const std::string& what, const std::string& path) {
    const int code = errno;
    return what + " " + path + (code != 0 ? std::string(": ") + std::strerror(code) : "");
}

std::string store(const Handle(TDocStd_Application) & application,
                  const Handle(TDocStd_Document) & document, const std::string& path) {
    errno = 0;
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    if (!out) return failure("can't write", path);
    const PCDM_StoreStatus status = application->SaveAs(document, out);
    out.close();
    if (status == PCDM_SS_OK && out.good()) return {};
    std::string reason = failure("can't write", path);
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
    return reason;
}

}  // namespace

std::string writeResultDocument(const Scene& scene, const bxtsg::SCGeometryResult& result,
                                const std::string& path) try {
    const std::string rows = encodeResult(result);
    if (rows.size() > static_cast<std::size_t>(INT_MAX)) return "the result is too large to write";
    const Handle(TDocStd_Application) application = newApplication();
    Handle(TDocStd_Document) document;
    application->NewDocument("BinXCAF", document);
    DocumentWriter(scene, document).run();
    attachRows(document, rows);
    std::string error = store(application, document, path);
    application->Close(document);
    return error;
} catch (const Standard_Failure& problem) {
    return "can't write " + path + ": " + problem.GetMessageString();
}

ResultDocument::ResultDocument() = default;

ResultDocument::~ResultDocument() {
    if (document_.IsNull()) return;
    if (const auto application = Handle(TDocStd_Application)::DownCast(document_->Application())) {
        application->Close(document_);
    }
}

bool ResultDocument::open(const std::string& path, std::string& error) try {
    std::ifstream in(path, std::ios::binary);
    const Handle(TDocStd_Application) application = newApplication();
    if (!in || application->Open(in, document_) != PCDM_RS_OK) {
        document_.Nullify();
        error = "can't read " + path + " as a result of a comparison";
        return false;
    }
    return true;
} catch (const Standard_Failure&) {
    document_.Nullify();
    error = "can't read " + path + " as a result of a comparison";
    return false;
}

std::shared_ptr<bxtsg::SCGeometryResult> ResultDocument::rows() const {
    const TDF_Label label = document_->Main().Root().FindChild(kRowsTag, Standard_False);
    Handle(TDataStd_ByteArray) attribute;
    if (label.IsNull() || !label.FindAttribute(TDataStd_ByteArray::GetID(), attribute)) {
        return nullptr;
    }
    const Handle(TColStd_HArray1OfByte)& array = attribute->InternalArray();
    if (array.IsNull()) return nullptr;
    const auto* first = reinterpret_cast<const char*>(&array->First());
    return decodeResult(std::string(first, static_cast<std::size_t>(array->Length())));
}

}  // namespace comparer
