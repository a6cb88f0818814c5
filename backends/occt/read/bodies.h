#pragma once

#include <cstdint>
#include <vector>

#include <TopoDS_Shape.hxx>

#include "backends/occt/step/extra_items.h"
#include "platform/hps/import_options.h"

namespace occt {

/// One representation item of a part's shape.
struct Body {
    std::uint32_t type = 0;           ///< see platform/hps/component_type.h
    std::vector<std::uint32_t> path;  ///< child positions from the part's shape downwards
    TopoDS_Shape shape;
};

/// Items of a part's shape in their order: each solid, each shell, the loose faces of a group as
/// one body, loose curves, loose points; as far as the options ask for them. Compounds in one
/// another are walked without recursion.
std::vector<Body> collectBodies(const TopoDS_Shape& shape,
                                const HPS::Exchange::ImportOptions& options);

/// Mesh of a body at the fineness of a level: a compound of faces that hold triangles only.
/// Null when no triangle came of it.
TopoDS_Shape meshOf(const TopoDS_Shape& body, HPS::Exchange::Tessellation::Level level);

/// The triangles of a mesh body in the same form; null for a body without any.
TopoDS_Shape shapeOf(const step::MeshBody& mesh);

}  // namespace occt
