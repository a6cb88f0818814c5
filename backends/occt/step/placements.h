#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "backends/occt/step/part21.h"

namespace occt::step {

/// Rigid or similar transformation: three rows of four numbers, translation last.
using Matrix = std::array<double, 12>;

constexpr Matrix kIdentity = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0};

Matrix multiply(const Matrix& left, const Matrix& right);
/// Inverse of a matrix whose axes are orthogonal and equally long; nothing when it has none.
std::optional<Matrix> inverse(const Matrix& matrix);

/// Placement that an AXIS2_PLACEMENT_3D stands for. Lengths in the file are `unitMm` long; the
/// result is in millimetres. Nothing when the instance is none or is damaged.
std::optional<Matrix> axisPlacement(const Part21& file, std::uint64_t id, double unitMm);

/// Matrix of a CARTESIAN_TRANSFORMATION_OPERATOR_3D, as above.
std::optional<Matrix> transformationOperator(const Part21& file, std::uint64_t id, double unitMm);

/// Coordinates of a CARTESIAN_POINT or DIRECTION as written; missing ones are 0.
std::optional<std::array<double, 3>> coordinates(const Part21& file, std::uint64_t id);

}  // namespace occt::step
