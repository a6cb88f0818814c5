#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "backends/occt/step/part21.h"
#include "backends/occt/step/products.h"

namespace occt::step {

/// A piece of construction or reference geometry.
struct ConstructionItem {
    std::uint32_t type = 0;  ///< see platform/hps/component_type.h
    std::string name;
};

/// Reference placements of products and what their construction geometry lists, in the file's
/// order. Looks through the file once, whatever the number of products.
class ConstructionReader {
public:
    /// `file` must outlive the reader.
    explicit ConstructionReader(const Part21& file);

    std::vector<ConstructionItem> of(const Product& product) const;

private:
    /// A representation that a relation joins to another one.
    struct Link {
        std::size_t order = 0;
        std::uint64_t other = 0;
    };

    const Part21& file_;
    std::unordered_map<std::uint64_t, std::vector<Link>> links_;
};

/// The same for one product.
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
