#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <TDocStd_Document.hxx>

namespace occt {

/// What a binary document's bytes show without its reader.
struct XbfOutline {
    std::size_t labels = 0;
    std::size_t attributes = 0;  ///< of all labels
    bool isWhole = false;        ///< whether the last label ends where the file says
};

/// Walks the labels of a document's bytes. Nothing for versions that don't write their sizes.
std::optional<XbfOutline> xbfOutline(std::string_view bytes);

/// What the bytes of a document declare and the document that was read of them lacks, one
/// sentence each.
std::vector<std::string> xbfGaps(std::string_view bytes, const Handle(TDocStd_Document) & document);

}  // namespace occt
