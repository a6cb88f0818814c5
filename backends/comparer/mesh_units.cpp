#include "backends/comparer/mesh_units.h"

#include <array>
#include <cmath>

#include "backends/comparer/mesh_body.h"

namespace comparer {
namespace {

struct Unit {
    const char* name;
    double mm;
};
constexpr std::array<Unit, 3> kUnits = {{{"inches", 25.4}, {"centimetres", 10.0}, {"metres", 1e3}}};

bool isSingle(const Side& side) {
    return side.bodies.size() == 1 && side.instances.size() == 1 && side.bodies[0].identity;
}

void enlarge(Body& body, double factor) {
    body.shape = scaledTriangles(body.shape, factor);
    body.digest.clear();
    auto& identity = *body.identity;
    const bool closed = identity.volumeMm3 > 0.0;
    identity.areaMm2 *= factor * factor;
    identity.volumeMm3 *= std::pow(factor, 3.0);
    for (double& moment : identity.principalMoments) moment *= std::pow(factor, closed ? 5.0 : 4.0);
    for (double& coordinate : identity.centroidMm) coordinate *= factor;
    body.centre = gp_Pnt(body.centre.XYZ() * factor);
    body.radiusMm *= factor;
}

void adopt(Side& triangles, const Side& surfaces) {
    Body& body = triangles.bodies[0];
    const double ratio = std::sqrt(surfaces.bodies[0].identity->areaMm2 / body.identity->areaMm2);
    // Triangles leave a little of a curved surface out.
    constexpr double kNear = 0.01;
    for (const Unit& unit : kUnits) {
        if (std::abs(ratio / unit.mm - 1.0) > kNear) continue;
        enlarge(body, unit.mm);
        gp_Trsf& placement = triangles.instances[0].placement;
        placement.SetTranslationPart(gp_Vec(placement.TranslationPart() * unit.mm));
        triangles.gaps.push_back(std::string("Its triangles fit the other file when their unit is "
                                             "taken as ") +
                                 unit.name + ", and were compared so.");
        return;
    }
}

}  // namespace

void adoptUnits(Side& reference, Side& compare) {
    if (!isSingle(reference) || !isSingle(compare)) return;
    const FaceForms a = faceFormsOf(reference.bodies[0].shape);
    const FaceForms b = faceFormsOf(compare.bodies[0].shape);
    if (a.triangles && !a.surfaces && b.surfaces && !b.triangles) adopt(reference, compare);
    if (b.triangles && !b.surfaces && a.surfaces && !a.triangles) adopt(compare, reference);
}

}  // namespace comparer
