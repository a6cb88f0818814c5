#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/bxt/schema.h"

namespace bxtexchange {

/// What the geometry comparison says about one instance of a body or part.
enum class GeometryState : std::int32_t {
    Unchanged = 0,
    Moved = 1,
    OnlyInReference = 2,
    OnlyInCompare = 3,
    Changed = 4,
    NotCompared = 5,
};

/// Geometric identity of a body. It does not depend on names, entity order or numbering, and
/// survives a re-export by another system within the comparer's tolerance.
struct BodyIdentity {
    double volumeMm3 = 0.0;  ///< 0 for an open body
    double areaMm2 = 0.0;
    std::array<double, 3> principalMoments = {};  ///< ascending; mm^5 of the volume, mm^4 if open
    std::array<double, 3> centroidMm = {};        ///< in the body's own frame
    std::int32_t faceCount = 0;
    /// Number of faces by surface kind: plane, cylinder, cone, sphere, torus, everything else.
    std::array<std::int32_t, 6> surfaceKinds = {};
};

/// Why two instances were taken as one and the same.
enum class MatchEvidence : std::int32_t {
    None = 0,
    IdenticalContent = 1,  ///< the same definition to the last byte, at the same place
    Identity = 2,          ///< equal geometric identity
    SamePlace = 3,         ///< different geometry under the same name or at the same place
    Faces = 4,             ///< as SamePlace, but all faces agree: written differently, but equal
};

/// One side of a compared instance.
struct GeometryInstanceSide {
    bool present = false;
    std::wstring path;  ///< occurrence names from the root, joined by " / "
    std::wstring product;
    BodyIdentity identity;
    /// Placement in world space: three rows of a rotation and a translation in millimetres.
    std::array<double, 12> placement = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0};
};

/// Face-level difference of a changed body. Faces that touch and lie on one surface count as one:
/// systems split them differently.
struct FaceDifference {
    std::int32_t unchangedFaces = 0;
    std::int32_t changedFaces = 0;
    std::int32_t addedFaces = 0;
    std::int32_t removedFaces = 0;
    /// Largest distance of a point of a face that differs from the other body, either way.
    double largestDeviationMm = 0.0;
    std::wstring summary;  ///< what happened, in English, without numbers of unchanged faces
};

struct GeometryInstance {
    GeometryState state = GeometryState::Unchanged;
    MatchEvidence evidence = MatchEvidence::None;
    GeometryInstanceSide reference;
    GeometryInstanceSide compare;
    std::array<double, 3> displacementMm = {};  ///< of the centroid, for Moved and Changed
    double rotationDeg = 0.0;                   ///< for Moved
    /// Of the rotation, a unit vector in world space; 0 without one.
    std::array<double, 3> rotationAxis = {};
    /// For Moved, in English: "moved 12.0 mm along +X and turned 30.0 deg about +Z".
    std::wstring motion;
    /// Granted to triangles in addition to the length tolerance, in millimetres: how far they may
    /// be off what they stand for. 0 where no triangles had to be compared.
    double meshAllowanceMm = 0.0;
    bool ambiguous = false;  ///< another match was as good by every rule
    bool hasFaceDifference = false;
    FaceDifference faces;
    std::wstring note;  ///< why an instance was not compared, or only by points
};

}  // namespace bxtexchange

namespace bxtsg {

/// What the geometry comparer found, on the result document (code 201). In a fixed order:
/// reference order first, then what only the compare file has. Read-only once attached.
class SCGeometryResult : public Schema {
public:
    ~SCGeometryResult() override;

    std::vector<bxtexchange::GeometryInstance> instances;
    double lengthToleranceMm = 0.0;
    double relativeTolerance = 0.0;
    /// What could not be looked at, one sentence each.
    std::vector<std::wstring> notes;
};

}  // namespace bxtsg
