#pragma once

#include <cstdint>
#include <vector>

#include <gp_Trsf.hxx>

#include "backends/comparer/face_set.h"
#include "backends/comparer/tolerances.h"

namespace comparer {

/// What became of a patch that is not the same in both bodies.
enum class FaceChange {
    Outline,  ///< the same surface within other edges
    Moved,    ///< the same size and shape elsewhere
    Resized,  ///< another radius, angle or extent
};

/// A patch of each body that is the same face to a designer, though it changed.
struct FacePair {
    std::uint32_t reference = 0;
    std::uint32_t compare = 0;
    FaceChange change = FaceChange::Outline;
};

/// Numbers are those of the patches of the two sets, in ascending order.
struct FaceMatching {
    std::uint32_t unchanged = 0;
    std::vector<FacePair> changed;
    std::vector<std::uint32_t> removed;  ///< only in the reference body
    std::vector<std::uint32_t> added;    ///< only in the compare body
    /// Edges without a counterpart, as numbers in the index of each set.
    std::vector<bool> referenceEdgeKept;
    std::vector<bool> compareEdgeKept;

    bool same() const { return changed.empty() && removed.empty() && added.empty(); }
};

/// Matches the patches of two bodies; `motion` leads from the reference's frame to the compare's.
/// Two patches are the same when each lies on the other's surface and all edges around both have
/// a counterpart in the other body, within the length tolerance; and when their planes and axes
/// make no larger angle than the angle tolerance, unless it moves no point by a tenth of the
/// length tolerance. What is left is paired by surface, then by shape, then by place; the result
/// of A against B is that of B against A with the sides exchanged.
/// Takes time in proportion to the faces, and to the product of what changed on either side.
/// Throws OutOfTime.
FaceMatching matchFaces(FaceSet& reference, FaceSet& compare, const gp_Trsf& motion,
                        const Tolerances& tolerances, const TimeLimit& limit = {});

}  // namespace comparer
