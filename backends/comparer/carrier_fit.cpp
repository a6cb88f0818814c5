#include <algorithm>
#include <array>
#include <cmath>

#include <gp_Vec.hxx>
#include <math_Gauss.hxx>
#include <math_Jacobi.hxx>
#include <math_Matrix.hxx>
#include <math_Vector.hxx>

#include "backends/comparer/carrier.h"

namespace comparer {
namespace {

constexpr std::size_t kFewestSamples = 6;
/// Larger ones are flat or straight to any eye, and the fit has no digits left for them.
constexpr double kLargestRadiusMm = 1e6;

using Samples = std::vector<SurfaceSample>;

/// Least squares through the normal equations. Rows are few and well scaled.
template <int Unknowns>
class LeastSquares {
public:
    void add(const std::array<double, Unknowns>& row, double right) {
        for (int i = 0; i < Unknowns; ++i) {
            for (int j = 0; j < Unknowns; ++j) matrix_(i + 1, j + 1) += row[i] * row[j];
            right_(i + 1) += row[i] * right;
        }
    }
    std::optional<std::array<double, Unknowns>> solve() const {
        const math_Gauss solver(matrix_, 1e-14);
        if (!solver.IsDone()) return std::nullopt;
        math_Vector found(1, Unknowns);
        solver.Solve(right_, found);
        std::array<double, Unknowns> values;
        for (int i = 0; i < Unknowns; ++i) values[i] = found(i + 1);
        return values;
    }

private:
    math_Matrix matrix_{1, Unknowns, 1, Unknowns, 0.0};
    math_Vector right_{1, Unknowns, 0.0};
};

/// The unit vector that a sum of squares is smallest along.
template <int Size>
std::optional<std::array<double, Size>> leastDirection(const math_Matrix& squares) {
    const math_Jacobi eigen(squares);
    if (!eigen.IsDone()) return std::nullopt;
    int least = 1;
    for (int i = 2; i <= Size; ++i) {
        if (eigen.Value(i) < eigen.Value(least)) least = i;
    }
    math_Vector vector(1, Size);
    eigen.Vector(least, vector);
    std::array<double, Size> values;
    for (int i = 0; i < Size; ++i) values[i] = vector(i + 1);
    return values;
}

bool allNear(const Carrier& carrier, const Samples& samples, double toleranceMm) {
    // A normal that is off by this much belongs to another surface that only passes by.
    constexpr double kSameDirection = 0.9999;
    return std::all_of(samples.begin(), samples.end(), [&](const SurfaceSample& sample) {
        return carrier.distanceMm(sample.point) <= toleranceMm &&
               std::abs(carrier.normalAt(sample.point).Dot(sample.normal)) >= kSameDirection;
    });
}

gp_Pnt meanPoint(const Samples& samples) {
    gp_XYZ sum;
    for (const SurfaceSample& sample : samples) sum += sample.point.XYZ();
    return gp_Pnt(sum / static_cast<double>(samples.size()));
}

std::optional<Carrier> plane(const Samples& samples, const gp_Pnt& mean) {
    Carrier carrier;
    carrier.kind = SurfaceKind::Plane;
    carrier.origin = mean;
    carrier.axis = samples.front().normal;
    return carrier;
}

/// Every point is the centre plus the radius along its normal.
std::optional<Carrier> sphere(const Samples& samples, const gp_Pnt& mean) {
    LeastSquares<4> rows;
    for (const SurfaceSample& sample : samples) {
        for (int axis = 1; axis <= 3; ++axis) {
            std::array<double, 4> row = {};
            row[static_cast<std::size_t>(axis - 1)] = 1.0;
            row[3] = sample.normal.Coord(axis);
            rows.add(row, sample.point.Coord(axis) - mean.Coord(axis));
        }
    }
    const auto found = rows.solve();
    if (!found) return std::nullopt;
    Carrier carrier;
    carrier.kind = SurfaceKind::Sphere;
    carrier.origin = mean.Translated(gp_Vec((*found)[0], (*found)[1], (*found)[2]));
    carrier.radiusMm = std::abs((*found)[3]);
    return carrier;
}

/// The direction that all normals make one angle with. Zero angle: a right one.
std::optional<gp_Dir> axisOfNormals(const Samples& samples, bool rightAngle) {
    gp_XYZ mean;
    if (!rightAngle) {
        for (const SurfaceSample& sample : samples) mean += sample.normal.XYZ();
        mean /= static_cast<double>(samples.size());
    }
    math_Matrix squares(1, 3, 1, 3, 0.0);
    for (const SurfaceSample& sample : samples) {
        const gp_XYZ n = sample.normal.XYZ() - mean;
        for (int i = 1; i <= 3; ++i) {
            for (int j = 1; j <= 3; ++j) squares(i, j) += n.Coord(i) * n.Coord(j);
        }
    }
    const auto found = leastDirection<3>(squares);
    if (!found) return std::nullopt;
    const gp_Vec axis((*found)[0], (*found)[1], (*found)[2]);
    if (!(axis.Magnitude() > 0.5)) return std::nullopt;
    return gp_Dir(axis);
}

std::optional<Carrier> cylinder(const Samples& samples, const gp_Pnt& mean) {
    const auto axis = axisOfNormals(samples, true);
    if (!axis) return std::nullopt;
    const gp_Ax2 frame(mean, *axis);
    LeastSquares<3> rows;
    for (const SurfaceSample& sample : samples) {
        const gp_Vec arm(mean, sample.point);
        const gp_Vec normal(sample.normal);
        rows.add({1.0, 0.0, normal.Dot(gp_Vec(frame.XDirection()))},
                 arm.Dot(gp_Vec(frame.XDirection())));
        rows.add({0.0, 1.0, normal.Dot(gp_Vec(frame.YDirection()))},
                 arm.Dot(gp_Vec(frame.YDirection())));
    }
    const auto found = rows.solve();
    if (!found) return std::nullopt;
    Carrier carrier;
    carrier.kind = SurfaceKind::Cylinder;
    carrier.axis = *axis;
    carrier.origin = mean.Translated(gp_Vec(frame.XDirection()) * (*found)[0] +
                                     gp_Vec(frame.YDirection()) * (*found)[1]);
    carrier.radiusMm = std::abs((*found)[2]);
    return carrier;
}

/// Every tangent plane goes through the apex.
std::optional<Carrier> cone(const Samples& samples, const gp_Pnt& mean) {
    const auto axis = axisOfNormals(samples, false);
    if (!axis) return std::nullopt;
    LeastSquares<3> rows;
    for (const SurfaceSample& sample : samples) {
        const gp_Dir& n = sample.normal;
        rows.add({n.X(), n.Y(), n.Z()}, gp_Vec(n).Dot(gp_Vec(mean, sample.point)));
    }
    const auto found = rows.solve();
    if (!found) return std::nullopt;
    Carrier carrier;
    carrier.kind = SurfaceKind::Cone;
    carrier.origin = mean.Translated(gp_Vec((*found)[0], (*found)[1], (*found)[2]));
    carrier.axis = *axis;
    const gp_Vec opening(carrier.origin, mean);
    if (opening.Dot(gp_Vec(*axis)) < 0.0) carrier.axis.Reverse();
    double angle = 0.0;
    for (const SurfaceSample& sample : samples) {
        angle += std::asin(std::min(1.0, std::abs(sample.normal.Dot(*axis))));
    }
    carrier.halfAngle = angle / static_cast<double>(samples.size());
    return carrier;
}

/// The line that all normals meet, by the six coordinates of lines in space.
std::optional<gp_Ax1> axisOfRevolution(const Samples& samples, const gp_Pnt& mean, double sizeMm) {
    math_Matrix squares(1, 6, 1, 6, 0.0);
    for (const SurfaceSample& sample : samples) {
        const gp_Vec n(sample.normal);
        const gp_Vec moment = (gp_Vec(mean, sample.point) / sizeMm).Crossed(n);
        const double line[6] = {moment.X(), moment.Y(), moment.Z(), n.X(), n.Y(), n.Z()};
        for (int i = 0; i < 6; ++i) {
            for (int j = 0; j < 6; ++j) squares(i + 1, j + 1) += line[i] * line[j];
        }
    }
    const auto found = leastDirection<6>(squares);
    if (!found) return std::nullopt;
    const gp_Vec along((*found)[0], (*found)[1], (*found)[2]);
    const gp_Vec moment((*found)[3], (*found)[4], (*found)[5]);
    const double square = along.SquareMagnitude();
    if (!(square > 1e-6)) return std::nullopt;
    const gp_Vec arm = along.Crossed(moment) / square * sizeMm;
    return gp_Ax1(mean.Translated(arm), gp_Dir(along));
}

std::optional<Carrier> torus(const Samples& samples, const gp_Pnt& mean) {
    double sizeMm = 0.0;
    for (const SurfaceSample& sample : samples) {
        sizeMm = std::max(sizeMm, mean.Distance(sample.point));
    }
    if (!(sizeMm > 0.0)) return std::nullopt;
    const auto axis = axisOfRevolution(samples, mean, sizeMm);
    if (!axis) return std::nullopt;
    const gp_Vec along(axis->Direction());
    LeastSquares<3> rows;  // radius and height of the tube's centre, radius of the tube
    for (const SurfaceSample& sample : samples) {
        const gp_Vec arm(axis->Location(), sample.point);
        const double height = arm.Dot(along);
        const gp_Vec away = arm - along * height;
        const double radius = away.Magnitude();
        if (!(radius > 1e-9 * sizeMm)) continue;
        const gp_Vec normal(sample.normal);
        rows.add({1.0, 0.0, normal.Dot(away / radius)}, radius);
        rows.add({0.0, 1.0, normal.Dot(along)}, height);
    }
    const auto found = rows.solve();
    if (!found) return std::nullopt;
    Carrier carrier;
    carrier.kind = SurfaceKind::Torus;
    carrier.origin = axis->Location().Translated(along * (*found)[1]);
    carrier.axis = axis->Direction();
    carrier.radiusMm = (*found)[0];
    carrier.minorMm = std::abs((*found)[2]);
    return carrier;
}

}  // namespace

std::optional<Carrier> fitCarrier(const Samples& samples, double toleranceMm) {
    if (samples.size() < kFewestSamples) return std::nullopt;
    const gp_Pnt mean = meanPoint(samples);
    for (const auto make : {plane, cylinder, sphere, cone, torus}) {
        const auto carrier = make(samples, mean);
        if (!carrier || !(carrier->radiusMm < kLargestRadiusMm)) continue;
        if (carrier->kind != SurfaceKind::Plane && carrier->kind != SurfaceKind::Cone &&
            !(carrier->radiusMm > toleranceMm)) {
            continue;
        }
        if (allNear(*carrier, samples, toleranceMm)) return carrier;
    }
    return std::nullopt;
}

}  // namespace comparer
