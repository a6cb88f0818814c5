#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include <TopoDS_Face.hxx>
#include <TopoDS_Shape.hxx>

#include "backends/comparer/carrier.h"
#include "backends/comparer/part_index.h"
#include "backends/comparer/time_limit.h"

namespace comparer {

/// A point of a face's surface, not always within its edges; the normal points out of the body.
struct PatchSample {
    SurfaceSample at;
    double u = 0.0;
    double v = 0.0;
    std::uint32_t face = 0;  ///< number in the set
};

/// Faces that touch and lie on one surface: systems split them differently, and two halves of a
/// hole are one hole to everybody. Most patches are one face. Lengths in millimetres, in the frame
/// of the body.
struct Patch {
    Carrier carrier;      ///< of kind Other for free-form surfaces
    bool fitted = false;  ///< the carrier was recognised, not written
    std::vector<std::uint32_t> faces;
    std::vector<std::uint32_t> edges;  ///< those around it, as numbers in the set's index
    std::vector<PatchSample> samples;
    double areaMm2 = 0.0;
    double perimeterMm = 0.0;
    double sizeMm = 0.0;  ///< no sample is further from the centre
    gp_Pnt centre;        ///< centroid of the area
};

/// The faces of a body as patches, and all its edges by place.
class FaceSet {
public:
    /// Throws OutOfTime, and what the geometry library throws for a shape that can't be evaluated.
    FaceSet(const TopoDS_Shape& shape, double toleranceMm, const TimeLimit& limit = {});

    const std::vector<Patch>& patches() const { return patches_; }
    const TopoDS_Face& face(std::uint32_t number) const { return faces_[number]; }
    std::size_t faceCount() const { return faces_.size(); }
    const BoundaryFace& boundary(std::uint32_t number) const { return *surfaces_[number]; }
    /// Position among all faces of the shape, in the order of exploration.
    std::uint32_t ordinal(std::uint32_t number) const { return ordinals_[number]; }
    /// Edges but for seams and those without length.
    PartIndex<BoundaryEdge>& edges() { return edges_; }
    const PartIndex<BoundaryEdge>& edges() const { return edges_; }
    double edgeLengthMm(std::uint32_t edge) const { return lengths_[edge]; }
    /// The body has an inside, so that its normals point out of it.
    bool isSolid() const { return solid_; }

    /// Whether the surface of a patch passes within the tolerance of a point.
    bool isOnSurface(const Patch& patch, const PatchSample& sample, const gp_Pnt& point,
                     double toleranceMm) const;
    /// Whether a sample lies within the edges of its face.
    bool isInside(const PatchSample& sample) const;

private:
    struct Piece;

    void measureFaces(const TopoDS_Shape& shape, std::vector<Piece>& pieces);
    void indexEdges(const TopoDS_Shape& shape);
    void joinFaces(const std::vector<Piece>& pieces);
    void addPatch(const std::vector<std::uint32_t>& faces, const std::vector<Piece>& pieces);
    bool onOneSurface(const Piece& a, const Piece& b) const;

    double toleranceMm_;
    TimeLimit limit_;
    bool solid_ = false;
    std::vector<TopoDS_Face> faces_;
    std::vector<std::uint32_t> ordinals_;
    std::vector<std::unique_ptr<BoundaryFace>> surfaces_;
    std::vector<std::vector<std::uint32_t>> edgesOfFace_;  ///< a seam stands there twice
    PartIndex<BoundaryEdge> edges_;
    std::vector<double> lengths_;
    std::vector<Patch> patches_;
};

}  // namespace comparer
