#include "backends/comparer/feature_cloud.h"

#include <cmath>
#include <limits>

namespace comparer {

FeatureCloud::FeatureCloud(std::vector<Feature> features, double cellMm)
    : features_(std::move(features)), cellMm_(cellMm) {
    gp_XYZ sum(0.0, 0.0, 0.0);
    for (const Feature& feature : features_) sum += feature.point.XYZ();
    if (!features_.empty()) centre_ = gp_Pnt(sum / static_cast<double>(features_.size()));
    cells_.reserve(features_.size());
    for (std::size_t i = 0; i < features_.size(); ++i) {
        cells_.emplace(cell(features_[i].point, 0, 0, 0), static_cast<std::uint32_t>(i));
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

bool FeatureCloud::covers(const FeatureCloud& other, const gp_Trsf& motion,
                          double toleranceMm) const {
    if (features_.size() != other.features_.size()) return false;
    std::vector<bool> taken(features_.size(), false);
    for (const Feature& feature : other.features_) {
        const gp_Pnt point = feature.point.Transformed(motion);
        // The lowest free number within reach: which of two that coincide is taken is all the
        // same, but it must not depend on how the table is laid out.
        std::uint32_t found = std::numeric_limits<std::uint32_t>::max();
        for (int i = 0; i < 27; ++i) {
            const std::int64_t key = cell(point, i % 3 - 1, i / 3 % 3 - 1, i / 9 - 1);
            for (auto [it, end] = cells_.equal_range(key); it != end; ++it) {
                const std::uint32_t index = it->second;
                if (index >= found || taken[index]) continue;
                if (!sameSort(feature, features_[index], toleranceMm)) continue;
                if (point.Distance(features_[index].point) <= toleranceMm) found = index;
            }
        }
        if (found == std::numeric_limits<std::uint32_t>::max()) return false;
        taken[found] = true;
    }
    return true;
}

}  // namespace comparer
