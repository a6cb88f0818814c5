#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <utility>

#include <TDF_Label.hxx>
#include <TopoDS_Shape.hxx>

#include "backends/occt/read/reader.h"

namespace occt {

/// Puts the shapes of parts into the document of a read request and their bodies, as far as the
/// options ask for them, into a description: exact bodies, meshes where a file has nothing else,
/// or meshes of all.
class BodyWriter {
public:
    /// Both outlive the writer.
    BodyWriter(const ReadRequest& request, DescribedModel& out);

    /// Name of a body that the file gives it; empty for none.
    using NameOf = std::function<std::string(const TopoDS_Shape& body)>;

    /// Adds the bodies of a shape, in the part's own frame, to the items of a definition.
    void add(std::size_t definition, const TopoDS_Shape& shape, const NameOf& nameOf = {});

    /// To be called once, when every definition is there: makes the names of a part's items
    /// differ and lists what is to be measured.
    void finish();

private:
    TDF_Label labelOf(const TopoDS_Shape& shape, const std::string& name);

    const ReadRequest& request_;
    DescribedModel& out_;
    std::map<std::pair<std::size_t, std::size_t>, TopoDS_Shape> shapes_;  // by definition and item
};

/// Entry of a label as text.
std::string entryOf(const TDF_Label& label);

}  // namespace occt
