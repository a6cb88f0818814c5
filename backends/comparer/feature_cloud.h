#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <unordered_map>
#include <vector>

#include <gp_Pnt.hxx>
#include <gp_Trsf.hxx>

#include "backends/comparer/features.h"

namespace comparer {

/// Features of one body in a form that answers "is there one here?" in constant time.
class FeatureCloud {
public:
    /// `cellMm` is to be no less than the tolerances that are asked for later.
    FeatureCloud(std::vector<Feature> features, double cellMm);

    const std::vector<Feature>& features() const { return features_; }
    /// Mean of the features. Better than the centroid of the body, which is integrated and may be
    /// off by more than the tolerance.
    const gp_Pnt& centre() const { return centre_; }

    /// True when `motion` puts every feature of `other` on one of this cloud's own.
    bool covers(const FeatureCloud& other, const gp_Trsf& motion, double toleranceMm) const;

private:
    std::int64_t cell(const gp_Pnt& point, int dx, int dy, int dz) const;
    bool has(const Feature& feature, const gp_Pnt& place, double toleranceMm) const;

    std::vector<Feature> features_;
    gp_Pnt centre_;
    double cellMm_;
    std::vector<std::uint32_t> rims_;  // the only ones that may be off by more than a cell
    bool anySlack_ = false;
    std::unordered_multimap<std::int64_t, std::uint32_t> cells_;
};

/// Whether `motion` takes the features of `a` to those of `b`, and none is left over in either.
bool coincide(const FeatureCloud& a, const FeatureCloud& b, const gp_Trsf& motion,
              double toleranceMm);

/// A rigid motion without mirroring that puts `from` on `to` and that `fits` agrees to; empty when
/// there is none. When several do (symmetric bodies), the one nearest to no motion at all of those
/// that are tried. `fits` is asked about few motions, since it may take its time.
std::optional<gp_Trsf> findMotion(const FeatureCloud& from, const FeatureCloud& to,
                                  double toleranceMm,
                                  const std::function<bool(const gp_Trsf&)>& fits);

}  // namespace comparer
