#include "backends/occt/step/placements.h"

#include <cmath>

namespace occt::step {
namespace {

using Vector = std::array<double, 3>;

// Beyond this a scale is damage.
constexpr double kSmallestScale = 1e-6;

double dot(const Vector& a, const Vector& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Vector cross(const Vector& a, const Vector& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

std::optional<Vector> unit(const Vector& a) {
    const double length = std::sqrt(dot(a, a));
    if (!(length > 1e-12) || !std::isfinite(length)) return std::nullopt;
    return Vector{a[0] / length, a[1] / length, a[2] / length};
}

/// Part of `a` that is perpendicular to the unit vector `axis`.
std::optional<Vector> perpendicular(const Vector& a, const Vector& axis) {
    const double along = dot(a, axis);
    return unit({a[0] - along * axis[0], a[1] - along * axis[1], a[2] - along * axis[2]});
}

/// A direction across `axis` where the file gives none or a parallel one.
Vector anyPerpendicular(const Vector& axis) {
    if (const auto x = perpendicular({1, 0, 0}, axis)) return *x;
    return *perpendicular({0, 1, 0}, axis);
}

Matrix fromAxes(const Vector& x, const Vector& y, const Vector& z, const Vector& origin,
                double scale) {
    return {x[0] * scale, y[0] * scale, z[0] * scale, origin[0],    x[1] * scale, y[1] * scale,
            z[1] * scale, origin[1],    x[2] * scale, y[2] * scale, z[2] * scale, origin[2]};
}

std::optional<Vector> direction(const Part21& file, const Record& record, std::size_t index) {
    const auto numbers = coordinates(file, record.reference(index));
    return numbers ? unit(*numbers) : std::nullopt;
}

std::optional<Vector> origin(const Part21& file, const Record& record, std::size_t index,
                             double unitMm) {
    auto point = coordinates(file, record.reference(index));
    if (!point) return std::nullopt;
    for (double& number : *point) {
        number *= unitMm;
        if (!std::isfinite(number)) return std::nullopt;
    }
    return point;
}

}  // namespace

Matrix multiply(const Matrix& left, const Matrix& right) {
    Matrix out = {};
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 4; ++column) {
            double sum = column == 3 ? left[row * 4 + 3] : 0.0;
            for (std::size_t k = 0; k < 3; ++k) sum += left[row * 4 + k] * right[k * 4 + column];
            out[row * 4 + column] = sum;
        }
    }
    return out;
}

std::optional<Matrix> inverse(const Matrix& matrix) {
    const double square = matrix[0] * matrix[0] + matrix[4] * matrix[4] + matrix[8] * matrix[8];
    if (!(square > 1e-24) || !std::isfinite(square)) return std::nullopt;
    Matrix out = {};
    for (std::size_t row = 0; row < 3; ++row) {
        double sum = 0.0;
        for (std::size_t column = 0; column < 3; ++column) {
            out[row * 4 + column] = matrix[column * 4 + row] / square;
            sum -= out[row * 4 + column] * matrix[column * 4 + 3];
        }
        out[row * 4 + 3] = sum;
    }
    return out;
}

std::optional<std::array<double, 3>> coordinates(const Part21& file, std::uint64_t id) {
    const Instance* const instance = id != 0 ? file.find(id) : nullptr;
    if (instance == nullptr) return std::nullopt;
    const auto records = file.read(*instance);
    if (records.size() != 1 || !records[0].at(1).isList()) return std::nullopt;
    std::array<double, 3> numbers = {};
    const auto& items = records[0].at(1).items;
    for (std::size_t i = 0; i < items.size() && i < 3; ++i) {
        if (items[i].kind != Value::Kind::Number) return std::nullopt;
        numbers[i] = items[i].number;
    }
    return numbers;
}

std::optional<Matrix> axisPlacement(const Part21& file, std::uint64_t id, double unitMm) {
    const auto record = file.read(id, "AXIS2_PLACEMENT_3D");
    if (!record) return std::nullopt;
    const auto location = origin(file, *record, 1, unitMm);
    if (!location) return std::nullopt;
    const Vector z = direction(file, *record, 2).value_or(Vector{0, 0, 1});
    const auto reference = direction(file, *record, 3);
    auto x = reference ? perpendicular(*reference, z) : std::nullopt;
    if (!x) x = anyPerpendicular(z);
    return fromAxes(*x, cross(z, *x), z, *location, 1.0);
}

std::optional<Matrix> transformationOperator(const Part21& file, std::uint64_t id, double unitMm) {
    // (name, [name, description,] axis1, axis2, origin, scale, axis3): the leading texts vary.
    const auto record = file.read(id, "CARTESIAN_TRANSFORMATION_OPERATOR_3D");
    if (!record || record->values.size() < 6) return std::nullopt;
    const std::size_t first = record->values.size() - 5;
    const auto location = origin(file, *record, first + 2, unitMm);
    if (!location) return std::nullopt;
    const Vector z = direction(file, *record, first + 4).value_or(Vector{0, 0, 1});
    const auto reference = direction(file, *record, first);
    auto x = reference ? perpendicular(*reference, z) : std::nullopt;
    if (!x) x = anyPerpendicular(z);
    const Value& factor = record->at(first + 3);
    const double scale = factor.kind == Value::Kind::Number ? factor.number : 1.0;
    if (!(scale > kSmallestScale) || scale > 1.0 / kSmallestScale) return std::nullopt;
    Vector y = cross(z, *x);
    const auto second = direction(file, *record, first + 1);
    // A second axis on the other side makes the placement a mirror.
    if (second && dot(*second, y) < 0.0) y = {-y[0], -y[1], -y[2]};
    return fromAxes(*x, y, z, *location, scale);
}

}  // namespace occt::step
