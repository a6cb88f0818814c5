#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "backends/occt/step/part21.h"
#include "backends/occt/step/products.h"

namespace occt::step {

/// A piece of construction or reference geometry.
struct ConstructionItem {
    std::uint32_t type = 0;  ///< see platform/hps/component_type.h
    std::string name;
};

/// Reference placements of a product and what its construction geometry lists, in the file's
/// order.
std::vector<ConstructionItem> readConstruction(const Part21& file, const Product& product);

/// A body that a file gives as triangles.
struct MeshBody {
    struct Face {
        std::vector<std::array<double, 3>> pointsMm;
        std::vector<std::array<std::uint32_t, 3>> triangles;  ///< positions in pointsMm
    };
    std::string name;
    std::vector<Face> faces;
    bool isSolid = false;  ///< declared to enclose a volume
};

/// Tessellated solids and shells of a product. Faces that are damaged are left out and counted.
std::vector<MeshBody> readMeshBodies(const Part21& file, const Product& product,
                                     std::size_t& damagedFaces);

}  // namespace occt::step
