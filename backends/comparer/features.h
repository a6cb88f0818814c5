#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include <TopoDS_Shape.hxx>
#include <gp_Pnt.hxx>

namespace comparer {

/// A point that belongs to a body's shape and to nothing else: it moves with the body, and every
/// system that writes the body has it at the same place, however it splits edges and closed
/// surfaces.
struct Feature {
    enum class Kind : std::uint8_t {
        Corner,         ///< where edges meet, unless two run on smoothly
        CircleCentre,   ///< of an edge that is an arc of a circle or ellipse; `sizeMm`: radius
        RimCentre,      ///< of edges that run on smoothly, not all straight; `sizeMm`: length
        ConeApex,       ///< may lie off the face
        SphereCentre,   ///< `sizeMm` is the radius
        TorusAxis,      ///< a major radius off the centre, both ways; `sizeMm` is the minor one
        TurnedProfile,  ///< centre of the circle that a point of the profile draws
        SurfacePoint,   ///< on the natural grid of a free-form surface
        MeshNode,
    };
    Kind kind = Kind::Corner;
    gp_Pnt point;
    double sizeMm = 0.0;
    double slackMm = 0.0;  ///< how far it may be off in place and size, beyond the tolerance
};

/// Whether a feature comes from the form in which a surface or curve is written, which another
/// writer may change without changing the body.
bool isOfForm(const Feature& feature);

/// Whether two features are alike but for their place.
bool sameSort(const Feature& a, const Feature& b, double toleranceMm);

/// Whether `a`, moved to `place`, and `b` are one.
bool sameFeature(const Feature& a, const gp_Pnt& place, const Feature& b, double toleranceMm);

/// Characteristic points of a shape in its own frame, each once, in no particular order. No value
/// when the shape has none or they can't be found. Doesn't throw.
std::optional<std::vector<Feature>> featuresOf(const TopoDS_Shape& shape);

}  // namespace comparer
