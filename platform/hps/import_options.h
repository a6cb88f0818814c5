#pragma once

#include <cstdint>
#include <optional>

namespace HPS {

/// Colour with channels in [0, 1].
struct RGBColor {
    float red = 0.0F;
    float green = 0.0F;
    float blue = 0.0F;
    bool operator==(const RGBColor&) const = default;
};

namespace Exchange {

namespace Tessellation {
/// Fineness of the meshes that an import makes.
enum class Level : std::uint32_t { ExtraLow = 0, Low = 1, Medium = 2, High = 3, ExtraHigh = 4 };
}  // namespace Tessellation

/// Which representation of a body an import keeps.
enum class BRepMode : std::uint32_t {
    BRepOnly = 0,          ///< exact bodies, and meshes only where the file has nothing else
    TessellationOnly = 1,  ///< every body as a mesh
    BRepAndTessellation = 2,
};

/// What an import reads. See ImportOptionsKit for the meaning of each.
struct ImportOptions {
    bool solids = true;
    bool surfaces = true;
    bool wireframes = true;
    bool attributes = true;
    bool constructionAndReferences = false;
    bool pmi = true;
    bool featureTrees = false;
    Tessellation::Level tessellationLevel = Tessellation::Level::Medium;
    BRepMode brepMode = BRepMode::BRepAndTessellation;
    std::optional<RGBColor> pmiDefaultColor;
    bool pmiColorOverridesFile = false;
    bool operator==(const ImportOptions&) const = default;
};

/// Options of one import. Values of the two enumerations outside their range are kept as given
/// and read as the nearest known one.
class ImportOptionsKit {
public:
    /// The library's own defaults, those of ImportOptions.
    static ImportOptionsKit GetDefault() { return {}; }

    /// Closed bodies. Without them their faces are not read as surfaces either.
    ImportOptionsKit& SetSolids(bool read) { return options_.solids = read, *this; }
    /// Bodies that enclose no volume: open shells and single faces.
    ImportOptionsKit& SetSurfaces(bool read) { return options_.surfaces = read, *this; }
    /// Free curves and points.
    ImportOptionsKit& SetWireframes(bool read) { return options_.wireframes = read, *this; }
    /// Metadata of the file and of its products.
    ImportOptionsKit& SetAttributes(bool read) { return options_.attributes = read, *this; }
    /// Construction geometry, reference planes and axis systems.
    ImportOptionsKit& SetConstructionAndReferences(bool read) {
        return options_.constructionAndReferences = read, *this;
    }
    /// Dimensions, tolerances, datums and notes.
    ImportOptionsKit& SetPMI(bool read) { return options_.pmi = read, *this; }
    /// Design features, where a format has them.
    ImportOptionsKit& SetFeatureTrees(bool read) { return options_.featureTrees = read, *this; }
    ImportOptionsKit& SetTessellationLevel(Tessellation::Level level) {
        return options_.tessellationLevel = level, *this;
    }
    ImportOptionsKit& SetBRepMode(BRepMode mode) { return options_.brepMode = mode, *this; }
    /// Colour of PMI that the file gives none, or of all PMI when `overridesFile`.
    ImportOptionsKit& SetPMIDefaultColor(const RGBColor& color, bool overridesFile) {
        options_.pmiDefaultColor = color;
        options_.pmiColorOverridesFile = overridesFile;
        return *this;
    }

    const ImportOptions& Options() const { return options_; }

private:
    ImportOptions options_;
};

}  // namespace Exchange
}  // namespace HPS
