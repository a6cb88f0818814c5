#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gp_Trsf.hxx>

#include "backends/comparer/face_matching.h"
#include "backends/comparer/instances.h"
#include "backends/comparer/mesh_comparison.h"
#include "backends/comparer/tolerances.h"

namespace comparer {

/// How two different bodies differ face by face.
struct BodyDifference {
    bxtexchange::FaceDifference numbers;  ///< without a summary, which depends on the placement
    /// Faces that differ, by their position in the order of exploration of each body's shape.
    std::vector<std::uint32_t> referenceFaces;
    std::vector<std::uint32_t> compareFaces;
    bool knowsFaces = true;  ///< false where triangles were compared, which have no faces
};

/// What is known of a pair of bodies; several pairs of instances may share it.
struct BodyPair {
    enum class State { Compared, OutOfTime, Impossible };

    State state = State::Impossible;
    gp_Trsf motion;  ///< from the reference body's frame to the compare body's
    bool same = false;
    BodyDifference difference;  ///< when they are not the same
    std::string whole;  ///< a sentence for the whole body, which makes those of faces needless
    double allowanceMm = 0.0;  ///< granted to triangles in addition to the tolerance
    std::unique_ptr<FaceSet> reference;
    std::unique_ptr<FaceSet> compare;
    FaceMatching matching;
};

/// The tolerance for points of a body: large bodies carry more rounding.
double bodyToleranceMm(const Body& body, const Tolerances& tolerances);

/// Looks at the faces, or triangles, of two bodies. `world` is the guess for the motion that
/// follows from where they stand. Doesn't throw for what stands in the bodies. May run for several
/// pairs at a time when they have no face or edge in common.
BodyPair compareBodies(const Body& before, const Body& after, const gp_Trsf& world,
                       const Tolerances& tolerances, double timeLimitS);

}  // namespace comparer
