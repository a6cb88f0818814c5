#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include <TopoDS_Shape.hxx>

namespace occt {

/// Digest of 128 bits over numbers, fed in order. The same numbers give the same digest on every
/// machine; it resists accidents, not attacks.
class Digest128 {
public:
    using Value = std::array<std::uint64_t, 2>;

    void addWord(std::uint64_t word);
    /// Rounds to a multiple of `quantum` first, so that -0 and the noise below it are gone.
    void addReal(double value, double quantum);
    void addValue(const Value& value);
    /// Adds values as a set with multiplicity: their order plays no part. Sorts `values`.
    void addUnordered(std::vector<Value>& values);

    Value value() const;
    /// 32 hexadecimal digits.
    std::string text() const;

private:
    Value state_ = {0x9E3779B97F4A7C15ULL, 0xC2B2AE3D27D4EB4FULL};
    std::uint64_t count_ = 0;
};

/// Digest of the exact geometry of a shape in its own frame, its location included: surfaces,
/// edge curves with their ranges, vertices and orientations, or the triangles of a mesh. Names,
/// colours, and the order and numbering of entities play no part. Lengths are rounded to 1e-8 mm.
/// Equal digests mean equal shapes. The reverse does not hold: a file that was read and written
/// again may describe the same body by other numbers.
/// Empty for an empty shape and for geometry of a kind that this function doesn't know.
/// Never throws. Safe to call from several threads.
std::string contentDigest(const TopoDS_Shape& shape);

}  // namespace occt
