#pragma once

#include <memory>
#include <string>

#include <TDocStd_Document.hxx>

#include "backends/comparer/scene.h"
#include "platform/exchange/geometry_result.h"

namespace comparer {

/// A binary XCAF document with the scene's groups as assemblies below one root, and the rows of
/// the result as one attribute. Nothing in it is meshed.
/// Both functions answer with an empty text or the sentence that says what failed; no file is
/// left behind by a failure. Paths are UTF-8.
std::string writeResultDocument(const Scene& scene, const bxtsg::SCGeometryResult& result,
                                const std::string& path);

/// The document and its application, which has to live as long.
class ResultDocument {
public:
    ResultDocument();
    ~ResultDocument();
    ResultDocument(const ResultDocument&) = delete;
    ResultDocument& operator=(const ResultDocument&) = delete;

    /// False when the file is missing or no result document; `error` then says so.
    bool open(const std::string& path, std::string& error);
    const Handle(TDocStd_Document) & document() const { return document_; }
    /// Null when the rows are missing or damaged.
    std::shared_ptr<bxtsg::SCGeometryResult> rows() const;

private:
    Handle(TDocStd_Document) document_;
};

}  // namespace comparer
