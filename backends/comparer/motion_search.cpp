#include "backends/comparer/feature_cloud.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <gp_Mat.hxx>
#include <gp_Quaternion.hxx>
#include <gp_Vec.hxx>

namespace comparer {
namespace {

/// Candidate motions that are tried before two clouds count as different. A round body of a
/// thousand teeth needs a thousand.
constexpr int kMostTrials = 20000;
/// Motions that put the features in place and are then looked at closely.
constexpr int kMostFits = 200;

gp_Trsf motionOf(const gp_Mat& rotation, const gp_Pnt& from, const gp_Pnt& to) {
    gp_Trsf turn;
    turn.SetRotation(gp_Quaternion(rotation));
    gp_Trsf back;
    back.SetTranslation(from, gp::Origin());
    gp_Trsf there;
    there.SetTranslation(gp::Origin(), to);
    return there * turn * back;
}

/// Right-handed frame along `a`, with `b` in its first quarter. They must not be parallel.
gp_Mat frameOf(const gp_Vec& a, const gp_Vec& b) {
    const gp_XYZ x = a.Normalized().XYZ();
    const gp_XYZ z = a.Crossed(b).Normalized().XYZ();
    return {x, z.Crossed(x), z};
}

/// Any frame along `a`.
gp_Mat frameAlong(const gp_Vec& a) {
    const gp_XYZ size(std::abs(a.X()), std::abs(a.Y()), std::abs(a.Z()));
    gp_Vec other(1, 0, 0);
    if (size.X() > size.Y()) other = size.Y() > size.Z() ? gp_Vec(0, 0, 1) : gp_Vec(0, 1, 0);
    return frameOf(a, other);
}

double rotationAngle(const gp_Mat& rotation) {
    const double trace = rotation.Value(1, 1) + rotation.Value(2, 2) + rotation.Value(3, 3);
    return std::acos(std::clamp((trace - 1.0) / 2.0, -1.0, 1.0));
}

/// Two features that hold a cloud fast: off the centre, not in line with it, and of sorts that
/// are rare, so that few pairs of the other cloud can be theirs.
struct Anchors {
    int first = -1;
    int second = -1;
};

class MotionSearch {
public:
    MotionSearch(const FeatureCloud& from, const FeatureCloud& to, double toleranceMm,
                 const std::function<bool(const gp_Trsf&)>& fits)
        : from_(from), to_(to), tolerance_(toleranceMm), fits_(fits) {}

    std::optional<gp_Trsf> run() {
        // Files of one model mostly keep its coordinates.
        if (tryMotion(gp_Trsf())) return best_;
        if (from_.features().size() != to_.features().size()) return std::nullopt;
        if (tryRotation(identity())) return best_;
        const Anchors anchors = chooseAnchors();
        if (anchors.first < 0) return best_;  // nothing off the centre: no rotation matters
        collect(anchors);
        // The smallest rotation that fits is the one to report.
        std::stable_sort(rotations_.begin(), rotations_.end(),
                         [](const gp_Mat& a, const gp_Mat& b) {
                             return rotationAngle(a) < rotationAngle(b) - 1e-9;
                         });
        for (const gp_Mat& rotation : rotations_) {
            if (fitsAsked_ >= kMostFits || tryRotation(rotation)) break;
        }
        return best_;
    }

private:
    static gp_Mat identity() {
        gp_Mat unit;
        unit.SetIdentity();
        return unit;
    }

    gp_Vec arm(const FeatureCloud& cloud, std::size_t index) const {
        return {cloud.centre(), cloud.features()[index].point};
    }

    /// How many features of the cloud are of one feature's sort and distance from the centre.
    std::size_t peers(std::size_t index) const {
        const double distance = arm(from_, index).Magnitude();
        std::size_t count = 0;
        for (std::size_t i = 0; i < from_.features().size(); ++i) {
            count += matches(from_.features()[index], distance, from_, i) ? 1U : 0U;
        }
        return count;
    }

    bool matches(const Feature& feature, double distance, const FeatureCloud& cloud,
                 std::size_t index) const {
        return sameSort(feature, cloud.features()[index], tolerance_) &&
               std::abs(arm(cloud, index).Magnitude() - distance) <= 2.0 * tolerance_;
    }

    bool isExact(std::size_t index) const { return from_.features()[index].slackMm <= 0.0; }

    Anchors chooseAnchors() const {
        const std::size_t size = from_.features().size();
        // Long arms hold better; a handful of the furthest is choice enough.
        std::vector<std::size_t> order;
        for (std::size_t i = 0; i < size; ++i) {
            if (isExact(i)) order.push_back(i);
        }
        std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
            return arm(from_, a).Magnitude() > arm(from_, b).Magnitude() + tolerance_;
        });
        Anchors anchors;
        std::size_t fewest = std::numeric_limits<std::size_t>::max();
        constexpr std::size_t kChoice = 24;
        for (std::size_t i = 0; i < std::min(order.size(), kChoice); ++i) {
            if (arm(from_, order[i]).Magnitude() <= 10.0 * tolerance_) break;
            const std::size_t count = peers(order[i]);
            if (count >= fewest) continue;
            fewest = count;
            anchors.first = static_cast<int>(order[i]);
        }
        if (anchors.first < 0) return anchors;
        anchors.second = chooseSecond(static_cast<std::size_t>(anchors.first));
        return anchors;
    }

    /// The feature furthest from the line through the centre and the first one.
    int chooseSecond(std::size_t first) const {
        const gp_Dir axis(arm(from_, first));
        double furthest = 10.0 * tolerance_;
        int second = -1;
        for (std::size_t i = 0; i < from_.features().size(); ++i) {
            if (!isExact(i)) continue;
            const double off = arm(from_, i).Crossed(gp_Vec(axis)).Magnitude();
            if (off <= furthest + tolerance_ && second >= 0) continue;
            if (off <= furthest) continue;
            furthest = off;
            second = static_cast<int>(i);
        }
        return second;
    }

    void collect(const Anchors& anchors) {
        const auto first = static_cast<std::size_t>(anchors.first);
        const gp_Vec a1 = arm(from_, first);
        for (std::size_t i = 0; i < to_.features().size(); ++i) {
            if (!matches(from_.features()[first], a1.Magnitude(), to_, i)) continue;
            const gp_Vec b1 = arm(to_, i);
            if (anchors.second < 0) {
                // All in one line: how the body is turned about it makes no difference.
                rotations_.push_back(shortestTurn(a1, b1));
            } else {
                collectSecond(static_cast<std::size_t>(anchors.second), a1, b1);
            }
            if (rotations_.size() >= static_cast<std::size_t>(kMostTrials)) return;
        }
    }

    void collectSecond(std::size_t second, const gp_Vec& a1, const gp_Vec& b1) {
        const gp_Vec a2 = arm(from_, second);
        const double apart = (a2 - a1).Magnitude();
        for (std::size_t i = 0; i < to_.features().size(); ++i) {
            if (!matches(from_.features()[second], a2.Magnitude(), to_, i)) continue;
            const gp_Vec b2 = arm(to_, i);
            if (std::abs((b2 - b1).Magnitude() - apart) > 4.0 * tolerance_) continue;
            if (b1.Crossed(b2).Magnitude() <= tolerance_ * b1.Magnitude()) continue;
            rotations_.push_back(frameOf(b1, b2) * frameOf(a1, a2).Transposed());
        }
    }

    static gp_Mat shortestTurn(const gp_Vec& a, const gp_Vec& b) {
        const gp_Vec axis = a.Crossed(b);
        if (axis.Magnitude() > 1e-12 * a.Magnitude() * b.Magnitude()) {
            return frameOf(b, axis.Crossed(b)) * frameOf(a, axis.Crossed(a)).Transposed();
        }
        if (a.Dot(b) > 0.0) return identity();
        const gp_Mat frame = frameAlong(a);
        gp_Mat flip;
        flip.SetDiagonal(-1.0, -1.0, 1.0);
        return frame * flip * frame.Transposed();
    }

    bool tryRotation(const gp_Mat& rotation) {
        return tryMotion(motionOf(rotation, from_.centre(), to_.centre()));
    }

    bool tryMotion(const gp_Trsf& motion) {
        if (!coincide(from_, to_, motion, tolerance_)) return false;
        ++fitsAsked_;
        if (!fits_(motion)) return false;
        best_ = motion;
        return true;
    }

    const FeatureCloud& from_;
    const FeatureCloud& to_;
    double tolerance_;
    const std::function<bool(const gp_Trsf&)>& fits_;
    int fitsAsked_ = 0;
    std::vector<gp_Mat> rotations_;
    std::optional<gp_Trsf> best_;
};

}  // namespace

std::optional<gp_Trsf> findMotion(const FeatureCloud& from, const FeatureCloud& to,
                                  double toleranceMm,
                                  const std::function<bool(const gp_Trsf&)>& fits) {
    return MotionSearch(from, to, toleranceMm, fits).run();
}

}  // namespace comparer
