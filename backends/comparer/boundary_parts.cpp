#include "backends/comparer/boundary_parts.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <BRepBndLib.hxx>
#include <BRepTools.hxx>
#include <ElCLib.hxx>
#include <ElSLib.hxx>
#include <TColStd_Array1OfReal.hxx>
#include <gp_Circ.hxx>
#include <gp_Cone.hxx>
#include <gp_Cylinder.hxx>
#include <gp_Lin.hxx>
#include <gp_Pln.hxx>
#include <gp_Pnt2d.hxx>
#include <gp_Sphere.hxx>
#include <gp_Torus.hxx>
#include <gp_Vec.hxx>

#include "backends/comparer/slack.h"

namespace comparer {
namespace {

/// Points per span of a curve or surface: spans bend little in between.
constexpr int kPerSpan = 3;
/// What has no spans of its own counts as this many.
constexpr int kFewest = 4;
/// Surfaces of very many spans are sampled more coarsely.
constexpr std::size_t kMostPerDirection = 64;
constexpr int kMostSteps = 20;
constexpr std::size_t kStarts = 4;

/// Middles of `perSpan` parts of each span.
std::vector<double> between(const std::vector<double>& ends, int perSpan) {
    std::vector<double> values;
    for (std::size_t i = 0; i + 1 < ends.size(); ++i) {
        for (int k = 0; k < perSpan; ++k) {
            values.push_back(ends[i] + (ends[i + 1] - ends[i]) * (k + 0.5) / perSpan);
        }
    }
    return values;
}

/// The ends of the spans within [first, last], which become the outermost.
std::vector<double> spanEnds(const TColStd_Array1OfReal& all, double first, double last) {
    std::vector<double> ends = {first};
    for (Standard_Integer i = all.Lower(); i <= all.Upper(); ++i) {
        if (all(i) > ends.back() + 1e-9 * (last - first) && all(i) < last) ends.push_back(all(i));
    }
    ends.push_back(last);
    // Circles and the like are one span.
    while (ends.size() <= static_cast<std::size_t>(kFewest)) {
        std::vector<double> finer = {first};
        for (std::size_t i = 0; i + 1 < ends.size(); ++i) {
            finer.push_back((ends[i] + ends[i + 1]) / 2.0);
            finer.push_back(ends[i + 1]);
        }
        ends = std::move(finer);
    }
    return ends;
}

std::vector<double> thinnedOut(std::vector<double> ends) {
    const std::size_t most = kMostPerDirection / kPerSpan;
    if (ends.size() <= most + 1) return ends;
    std::vector<double> kept;
    for (std::size_t i = 0; i <= most; ++i) {
        kept.push_back(ends[i * (ends.size() - 1) / most]);
    }
    return kept;
}

/// The few points of a raster that are nearest to a point, the nearest first.
std::vector<const BoundaryPoint*> nearestOf(const std::vector<BoundaryPoint>& raster,
                                            const gp_Pnt& point) {
    std::vector<std::pair<double, const BoundaryPoint*>> order;
    order.reserve(raster.size());
    for (const BoundaryPoint& other : raster) {
        order.emplace_back(other.point.SquareDistance(point), &other);
    }
    const std::size_t count = std::min(kStarts, order.size());
    std::partial_sort(order.begin(), order.begin() + static_cast<std::ptrdiff_t>(count),
                      order.end());
    std::vector<const BoundaryPoint*> nearest;
    for (std::size_t i = 0; i < count; ++i) nearest.push_back(order[i].second);
    return nearest;
}

void makeRoom(Bnd_Box& box) {
    constexpr double kRoom = 0.1;
    if (!box.IsVoid() && !box.IsOpen()) box.Enlarge(kRoom * std::sqrt(box.SquareExtent()));
}

}  // namespace

BoundaryEdge::BoundaryEdge(const TopoDS_Edge& edge) : curve_(edge) {
    first_ = curve_.FirstParameter();
    last_ = curve_.LastParameter();
    slackMm_ = slackOf(edge);
}

Bnd_Box BoundaryEdge::box() const {
    Bnd_Box box;
    BRepBndLib::Add(curve_.Edge(), box, Standard_False);
    makeRoom(box);
    if (!box.IsVoid()) box.Enlarge(kMostSlackMm);
    return box;
}

std::vector<double> BoundaryEdge::spans() const {
    TColStd_Array1OfReal all(1, curve_.NbIntervals(GeomAbs_CN) + 1);
    curve_.Intervals(all, GeomAbs_CN);
    return spanEnds(all, first_, last_);
}

std::vector<BoundaryPoint> BoundaryEdge::points() const {
    std::vector<BoundaryPoint> points;
    if (curve_.GetType() == GeomAbs_Line) {
        const double middle = (first_ + last_) / 2.0;
        return {{curve_.Value(middle), middle, 0.0, slackMm_}};
    }
    for (const double u : between(spans(), kPerSpan)) {
        points.push_back({curve_.Value(u), u, 0.0, slackMm_});
    }
    return points;
}

double BoundaryEdge::clamped(double parameter) const {
    return std::clamp(parameter, first_, last_);
}

bool BoundaryEdge::isNear(const BoundaryPoint& sample, double bareToleranceMm) const {
    const gp_Pnt& point = sample.point;
    const double toleranceMm = withSlack(bareToleranceMm, sample.slackMm + slackMm_);
    if (curve_.GetType() == GeomAbs_Line) {
        const double u = clamped(ElCLib::Parameter(curve_.Line(), point));
        return curve_.Value(u).Distance(point) <= toleranceMm;
    }
    if (sample.u >= first_ && sample.u <= last_ &&
        curve_.Value(sample.u).Distance(point) <= toleranceMm) {
        return true;
    }
    if (curve_.GetType() == GeomAbs_Circle) {
        const double full = 2.0 * M_PI;
        double u = ElCLib::Parameter(curve_.Circle(), point);
        u = ElCLib::InPeriod(u, first_, first_ + full);
        if (u > last_) u = u - last_ < first_ + full - u ? last_ : first_;
        return curve_.Value(u).Distance(point) <= toleranceMm;
    }
    return searchNear(point, toleranceMm);
}

bool BoundaryEdge::searchNear(const gp_Pnt& point, double toleranceMm) const {
    if (raster_.empty()) {
        raster_ = points();
        for (const double u : {first_, last_}) raster_.push_back({curve_.Value(u), u, 0.0, 0.0});
    }
    for (const BoundaryPoint* start : nearestOf(raster_, point)) {
        if (curve_.Value(refined(point, start->u)).Distance(point) <= toleranceMm) return true;
    }
    return false;
}

double BoundaryEdge::refined(const gp_Pnt& point, double start) const {
    double u = start;
    for (int step = 0; step < kMostSteps; ++step) {
        gp_Pnt here;
        gp_Vec speed;
        curve_.D1(u, here, speed);
        const double square = speed.SquareMagnitude();
        if (!(square > 0.0)) break;
        const double next = clamped(u + speed.Dot(gp_Vec(here, point)) / square);
        if (std::abs(next - u) <= 1e-12 * (last_ - first_)) break;
        u = next;
    }
    return u;
}

BoundaryFace::BoundaryFace(const TopoDS_Face& face) : face_(face), surface_(face, Standard_False) {
    BRepTools::UVBounds(face, u0_, u1_, v0_, v1_);
}

Bnd_Box BoundaryFace::box() const {
    Bnd_Box box;
    BRepBndLib::Add(face_, box, Standard_False);
    if (surface_.GetType() == GeomAbs_Torus) {
        // The library takes too little for some of them.
        for (const BoundaryPoint& sample : points()) box.Add(sample.point);
    }
    makeRoom(box);
    return box;
}

BoundaryFace::Spans BoundaryFace::spans(int perSpan) const {
    TColStd_Array1OfReal u(1, surface_.NbUIntervals(GeomAbs_CN) + 1);
    TColStd_Array1OfReal v(1, surface_.NbVIntervals(GeomAbs_CN) + 1);
    surface_.UIntervals(u, GeomAbs_CN);
    surface_.VIntervals(v, GeomAbs_CN);
    return {between(thinnedOut(spanEnds(u, u0_, u1_)), perSpan),
            between(thinnedOut(spanEnds(v, v0_, v1_)), perSpan)};
}

std::vector<BoundaryPoint> BoundaryFace::points() const {
    std::vector<BoundaryPoint> points;
    if (surface_.GetType() == GeomAbs_Plane) return points;
    const bool freeForm = !nearestOfElementary(gp_Pnt());
    const Spans raster = spans(freeForm ? kPerSpan : 1);
    for (const double u : raster.u) {
        for (const double v : raster.v) points.push_back({surface_.Value(u, v), u, v, 0.0});
    }
    return points;
}

bool BoundaryFace::counts(const BoundaryPoint& sample) const {
    constexpr double kSameParameter = 1e-9;
    // Next to the edges it depends on their accuracy whether a point is inside.
    constexpr double kRimShare = 0.01;
    if (!inside_) inside_ = std::make_unique<BRepTopAdaptor_FClass2d>(face_, kSameParameter);
    const gp_Pnt2d point(sample.u, sample.v);
    const double rim = kRimShare * std::min(u1_ - u0_, v1_ - v0_);
    return inside_->Perform(point) == TopAbs_IN &&
           inside_->TestOnRestriction(point, rim) == TopAbs_IN;
}

std::optional<gp_Pnt> BoundaryFace::nearestOfElementary(const gp_Pnt& point) const {
    double u = 0.0;
    double v = 0.0;
    switch (surface_.GetType()) {
        case GeomAbs_Plane: ElSLib::Parameters(surface_.Plane(), point, u, v); break;
        case GeomAbs_Cylinder: ElSLib::Parameters(surface_.Cylinder(), point, u, v); break;
        case GeomAbs_Cone: ElSLib::Parameters(surface_.Cone(), point, u, v); break;
        case GeomAbs_Sphere: ElSLib::Parameters(surface_.Sphere(), point, u, v); break;
        case GeomAbs_Torus: ElSLib::Parameters(surface_.Torus(), point, u, v); break;
        default: return std::nullopt;
    }
    return surface_.Value(u, v);
}

bool BoundaryFace::isNear(const BoundaryPoint& sample, double toleranceMm) const {
    const gp_Pnt& point = sample.point;
    if (const auto nearest = nearestOfElementary(point)) {
        return nearest->Distance(point) <= toleranceMm;
    }
    const bool within = sample.u >= u0_ && sample.u <= u1_ && sample.v >= v0_ && sample.v <= v1_;
    if (within && surface_.Value(sample.u, sample.v).Distance(point) <= toleranceMm) return true;
    return searchNear(point, toleranceMm);
}

bool BoundaryFace::searchNear(const gp_Pnt& point, double toleranceMm) const {
    if (raster_.empty()) {
        Spans raster = spans(kPerSpan);
        for (const double u : {u0_, u1_}) raster.u.push_back(u);
        for (const double v : {v0_, v1_}) raster.v.push_back(v);
        for (const double u : raster.u) {
            for (const double v : raster.v) raster_.push_back({surface_.Value(u, v), u, v, 0.0});
        }
    }
    for (const BoundaryPoint* start : nearestOf(raster_, point)) {
        if (refinedDistance(point, *start, toleranceMm) <= toleranceMm) return true;
    }
    return false;
}

double BoundaryFace::refinedDistance(const gp_Pnt& point, const BoundaryPoint& start,
                                     double toleranceMm) const {
    double u = start.u;
    double v = start.v;
    double distance = start.point.Distance(point);
    for (int step = 0; step < kMostSteps && distance > toleranceMm; ++step) {
        gp_Pnt here;
        gp_Vec alongU;
        gp_Vec alongV;
        surface_.D1(u, v, here, alongU, alongV);
        distance = here.Distance(point);
        // The step that least squares take, held back a little where the surface is pinched.
        const gp_Vec way(here, point);
        const double a = alongU.SquareMagnitude() * (1.0 + 1e-9) + 1e-18;
        const double b = alongU.Dot(alongV);
        const double c = alongV.SquareMagnitude() * (1.0 + 1e-9) + 1e-18;
        const double determinant = a * c - b * b;
        if (!(determinant > 0.0)) break;
        const double du = (c * alongU.Dot(way) - b * alongV.Dot(way)) / determinant;
        const double dv = (a * alongV.Dot(way) - b * alongU.Dot(way)) / determinant;
        const double nextU = std::clamp(u + du, u0_, u1_);
        const double nextV = std::clamp(v + dv, v0_, v1_);
        if (nextU == u && nextV == v) break;
        u = nextU;
        v = nextV;
    }
    return std::min(distance, surface_.Value(u, v).Distance(point));
}

}  // namespace comparer
