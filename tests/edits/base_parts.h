#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <TopoDS_Shape.hxx>
#include <gp_Pnt2d.hxx>

#include "backends/comparer/carrier.h"

/// Parts whose every face is known by the surface that it lies on, in millimetres.
namespace edits {

struct Hole {
    double x = 0.0;
    double y = 0.0;
    double radiusMm = 0.0;
};

/// What stands on the top face, clear of the holes.
enum class Boss { None, Cylinder, Dome, Cone, Ring, Block, FreeForm };

/// A prism over a polygon, counter-clockwise, with through holes and a boss.
struct Part {
    std::string name;
    std::vector<gp_Pnt2d> corners;
    double heightMm = 0.0;
    std::vector<Hole> holes;
    gp_Pnt2d bossAt;
    Boss boss = Boss::None;
    double bossSizeMm = 0.0;

    TopoDS_Shape build() const;
    comparer::Carrier top() const;
    comparer::Carrier bottom() const;
    /// From that corner to the next; the origin is the middle of its lower edge.
    comparer::Carrier side(std::size_t number) const;
    comparer::Carrier wall(const Hole& hole) const;
    /// Interior angle at a corner, in radians.
    double angleAt(std::size_t corner) const;
};

/// All base parts, holes included; the sizes are multiplied by `scale`.
std::vector<Part> baseParts(double scale, double heightMm);

}  // namespace edits
