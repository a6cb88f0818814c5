#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include <gp_Trsf.hxx>

#include "backends/comparer/boundary.h"
#include "backends/comparer/feature_cloud.h"
#include "backends/comparer/instances.h"
#include "backends/comparer/tolerances.h"

namespace comparer {

/// Whether two identities are those of one body within the tolerance. Surfaces may have become
/// free-form ones in one of the two files, as writers do with what their format lacks. Identities
/// don't tell a body from its mirror image; the classes do.
bool sameIdentity(const bxtexchange::BodyIdentity& a, const bxtexchange::BodyIdentity& b,
                  double relativeTolerance);

/// Sorts the bodies of both files into classes of equal ones.
class BodyClasses {
public:
    struct Membership {
        std::uint32_t bodyClass = 0;
        /// From the frame of the class's first body to this body's frame.
        gp_Trsf motion;
    };

    BodyClasses(const Side& reference, const Side& compare, const Tolerances& tolerances,
                Shortcuts shortcuts = Shortcuts::On);
    ~BodyClasses();

    const Membership& reference(std::uint32_t body) const { return reference_[body]; }
    const Membership& compare(std::uint32_t body) const { return compare_[body]; }

    /// The first body of a class; members are measured as if they were it.
    const Body& first(std::uint32_t bodyClass) const { return *firsts_[bodyClass]; }

    /// Tolerance for points of a body of that radius: large bodies carry more rounding.
    double toleranceMm(double radiusMm) const;

    /// Whether `motion`, in the frame of the class's first body, leaves it where it is: because
    /// it is next to no motion, or because the body is symmetric that way.
    bool staysInPlace(std::uint32_t bodyClass, const gp_Trsf& motion);

private:
    Membership classify(const Body& body);
    Membership newClass(const Body& body);
    std::optional<Membership> findEqual(const Body& body);
    std::optional<Membership> findEqualUnmeasured(const Body& body);
    std::optional<Membership> equalTo(std::uint32_t bodyClass, const Body& body);
    /// Features of any kind, or those that don't come from the form in which a body is written.
    enum class Sort { All, Lasting };
    const FeatureCloud* cloud(const Body& body, Sort sort);
    const Boundary& boundary(const Body& body);

    Tolerances tolerances_;
    Shortcuts shortcuts_;
    std::vector<Membership> reference_;
    std::vector<Membership> compare_;
    std::vector<const Body*> firsts_;
    std::unordered_map<std::string, Membership> byDigest_;
    /// Classes by face count and rounded logarithm of the area.
    std::map<std::pair<std::int32_t, std::int64_t>, std::vector<std::uint32_t>> byIdentity_;
    /// Classes of bodies without an identity, such as wires, by their number of features.
    std::map<std::size_t, std::vector<std::uint32_t>> unmeasured_;
    std::map<std::pair<const Body*, Sort>, std::unique_ptr<FeatureCloud>> clouds_;
    std::map<const Body*, std::unique_ptr<Boundary>> boundaries_;
    /// Motions that were found to leave a class in place, beyond small ones.
    std::vector<std::vector<gp_Trsf>> symmetries_;
};

/// Furthest that a motion takes a point of a body.
double largestDisplacementMm(const gp_Trsf& motion, const Body& body);

}  // namespace comparer
