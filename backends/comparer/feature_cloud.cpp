#include "backends/comparer/feature_cloud.h"

#include <algorithm>
#include <cmath>

namespace comparer {

FeatureCloud::FeatureCloud(std::vector<Feature> features, double cellMm)
    : features_(std::move(features)), cellMm_(cellMm) {
    gp_XYZ sum(0.0, 0.0, 0.0);
    for (const Feature& feature : features_) sum += feature.point.XYZ();
    if (!features_.empty()) centre_ = gp_Pnt(sum / static_cast<double>(features_.size()));
    cells_.reserve(features_.size());
    for (std::size_t i = 0; i < features_.size(); ++i) {
        cells_.emplace(cell(features_[i].point, 0, 0, 0), static_cast<std::uint32_t>(i));
        if (features_[i].kind == Feature::Kind::RimCentre) {
            rims_.push_back(static_cast<std::uint32_t>(i));
            anySlack_ = anySlack_ || features_[i].slackMm > 0.0;
        }
    }
}

std::int64_t FeatureCloud::cell(const gp_Pnt& point, int dx, int dy, int dz) const {
    const auto steps = [&](double value, int offset) {
        return static_cast<std::uint64_t>(std::llround(std::floor(value / cellMm_)) + offset);
    };
    // Different cells may share a number; whoever looks one up compares points anyway.
    return static_cast<std::int64_t>(steps(point.X(), dx) * 73856093ULL ^
                                     steps(point.Y(), dy) * 19349663ULL ^
                                     steps(point.Z(), dz) * 83492791ULL);
}

bool FeatureCloud::has(const Feature& feature, const gp_Pnt& place, double toleranceMm) const {
    for (int i = 0; i < 27; ++i) {
        const std::int64_t key = cell(place, i % 3 - 1, i / 3 % 3 - 1, i / 9 - 1);
        for (auto [it, end] = cells_.equal_range(key); it != end; ++it) {
            if (sameFeature(feature, place, features_[it->second], toleranceMm)) return true;
        }
    }
    if (feature.kind != Feature::Kind::RimCentre) return false;
    if (!anySlack_ && !(feature.slackMm > 0.0)) return false;
    return std::any_of(rims_.begin(), rims_.end(), [&](std::uint32_t rim) {
        return sameFeature(feature, place, features_[rim], toleranceMm);
    });
}

bool FeatureCloud::covers(const FeatureCloud& other, const gp_Trsf& motion,
                          double toleranceMm) const {
    return std::all_of(other.features_.begin(), other.features_.end(), [&](const Feature& feature) {
        return has(feature, feature.point.Transformed(motion), toleranceMm);
    });
}

bool coincide(const FeatureCloud& a, const FeatureCloud& b, const gp_Trsf& motion,
              double toleranceMm) {
    return b.covers(a, motion, toleranceMm) && a.covers(b, motion.Inverted(), toleranceMm);
}

}  // namespace comparer
