#include "backends/occt/document/binary_document.h"

#include <filesystem>
#include <system_error>

#include <BinXCAFDrivers.hxx>
#include <PCDM_ReaderStatus.hxx>
#include <PCDM_StoreStatus.hxx>
#include <Standard_Failure.hxx>
#include <TCollection_AsciiString.hxx>
#include <TCollection_ExtendedString.hxx>
#include <TDF_Label.hxx>
#include <TDF_Tool.hxx>
#include <TopoDS_Iterator.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>

namespace occt {
namespace {

constexpr const char* kFormat = "BinXCAF";

TCollection_ExtendedString wide(const std::string& utf8) {
    return TCollection_ExtendedString(utf8.c_str(), Standard_True);
}

}  // namespace

BinaryDocument::BinaryDocument() : application_(new TDocStd_Application) {
    BinXCAFDrivers::DefineFormat(application_);
    application_->NewDocument(kFormat, document_);
    // The tool's labels must exist before shapes are added.
    XCAFDoc_DocumentTool::ShapeTool(document_->Main());
}

BinaryDocument::~BinaryDocument() {
    try {
        if (!document_.IsNull() && document_->IsOpened()) application_->Close(document_);
    } catch (const Standard_Failure&) {
        // A document that can't be closed goes with its last handle all the same.
    }
}

bool BinaryDocument::open(const std::string& path, const FileSeal& seal, std::string& error) {
    if (sealOf(path) != seal) {
        error = "the document is missing or damaged";
        return false;
    }
    try {
        Handle(TDocStd_Document) opened;
        const PCDM_ReaderStatus status = application_->Open(wide(path), opened);
        if (status != PCDM_RS_OK || opened.IsNull()) {
            error = "the document can't be read (status " +
                    std::to_string(static_cast<int>(status)) + ")";
            return false;
        }
        application_->Close(document_);
        document_ = opened;
        return true;
    } catch (const Standard_Failure& failure) {
        error = std::string("the document is damaged: ") + failure.GetMessageString();
        return false;
    }
}

bool BinaryDocument::save(const std::string& path, std::string& error) const {
    try {
        const PCDM_StoreStatus status = application_->SaveAs(document_, wide(path));
        // A folder that is not there counts as success.
        std::error_code missing;
        const bool written = std::filesystem::file_size(path, missing) > 0 && !missing;
        if (status == PCDM_SS_OK && written) return true;
        error = "the document can't be written (status " +
                std::to_string(static_cast<int>(status)) + ")";
    } catch (const Standard_Failure& failure) {
        error = std::string("the document can't be written: ") + failure.GetMessageString();
    }
    return false;
}

TopoDS_Shape BinaryDocument::shape(const std::string& label,
                                   const std::vector<std::uint32_t>& path) const {
    try {
        TDF_Label found;
        TDF_Tool::Label(document_->Main().Data(), TCollection_AsciiString(label.c_str()), found);
        TopoDS_Shape shape;
        if (!found.IsNull()) shape = XCAFDoc_ShapeTool::GetShape(found);
        for (const std::uint32_t step : path) {
            if (shape.IsNull()) break;
            TopoDS_Iterator child(shape);
            for (std::uint32_t i = 0; i < step && child.More(); ++i) child.Next();
            shape = child.More() ? child.Value() : TopoDS_Shape();
        }
        return shape;
    } catch (const Standard_Failure&) {
        return {};
    }
}

}  // namespace occt
