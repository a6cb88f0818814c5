#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <TDocStd_Application.hxx>
#include <TDocStd_Document.hxx>
#include <TopoDS_Shape.hxx>

#include "backends/occt/document/description.h"

namespace occt {

/// Names of what an import helper leaves in its folder.
inline constexpr const char* kDocumentFile = "model.xbf";
inline constexpr const char* kDescriptionFile = "model.tree";

/// A binary document with the geometry of an import. Belongs to one thread at a time.
class BinaryDocument {
public:
    /// A new empty document.
    BinaryDocument();
    ~BinaryDocument();
    BinaryDocument(const BinaryDocument&) = delete;
    BinaryDocument& operator=(const BinaryDocument&) = delete;

    /// Reads a document that save() wrote; false when there is none or it has another seal, and
    /// `error` says why.
    bool open(const std::string& path, const FileSeal& seal, std::string& error);

    /// Writes the document; false when that fails, and `error` says why.
    bool save(const std::string& path, std::string& error) const;

    const Handle(TDocStd_Document) & handle() const { return document_; }

    /// Shape below the shape of a label: at each step the child of that position. Null when the
    /// document has no such label or child.
    TopoDS_Shape shape(const std::string& label, const std::vector<std::uint32_t>& path) const;

private:
    Handle(TDocStd_Application) application_;
    Handle(TDocStd_Document) document_;
};

}  // namespace occt
