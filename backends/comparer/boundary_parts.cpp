#include "backends/comparer/boundary_parts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

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

double BoundaryEdge::circleParameter(const gp_Pnt& point) const {
    const double full = 2.0 * M_PI;
    const double u =
        ElCLib::InPeriod(ElCLib::Parameter(curve_.Circle(), point), first_, first_ + full);
    if (u <= last_) return u;
    return u - last_ < first_ + full - u ? last_ : first_;
}

bool BoundaryEdge::isNear(const BoundaryPoint& sample, double bareToleranceMm) const {
    const gp_Pnt& point = sample.point;
    const double toleranceMm = withSlack(bareToleranceMm, sample.slackMm + slackMm_);
    if (curve_.GetType() == GeomAbs_Line) return distanceMm(point) <= toleranceMm;
    if (sample.u >= first_ && sample.u <= last_ &&
        curve_.Value(sample.u).Distance(point) <= toleranceMm) {
        return true;
    }
    if (curve_.GetType() == GeomAbs_Circle) return distanceMm(point) <= toleranceMm;
    return searchNear(point, toleranceMm);
}

double BoundaryEdge::distanceMm(const gp_Pnt& point) const {
    if (curve_.GetType() == GeomAbs_Line) {
        const double u = clamped(ElCLib::Parameter(curve_.Line(), point));
        return curve_.Value(u).Distance(point);
    }
    if (curve_.GetType() == GeomAbs_Circle) {
        return curve_.Value(circleParameter(point)).Distance(point);
    }
    double least = std::numeric_limits<double>::max();
    for (const BoundaryPoint* start : nearestOf(raster(), point)) {
        least = std::min(least, curve_.Value(refined(point, start->u)).Distance(point));
    }
    return least;
}

const std::vector<BoundaryPoint>& BoundaryEdge::raster() const {
    if (raster_.empty()) {
        raster_ = points();
        for (const double u : {first_, last_}) raster_.push_back({curve_.Value(u), u, 0.0, 0.0});
    }
    return raster_;
}

bool BoundaryEdge::searchNear(const gp_Pnt& point, double toleranceMm) const {
    for (const BoundaryPoint* start : nearestOf(raster(), point)) {
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
    // Next to the edges it depends on their accuracy whether a point is inside.
    constexpr double kRimShare = 0.01;
    const gp_Pnt2d point(sample.u, sample.v);
    const double rim = kRimShare * std::min(u1_ - u0_, v1_ - v0_);
    return inside().Perform(point) == TopAbs_IN &&
           inside().TestOnRestriction(point, rim) == TopAbs_IN;
}

const BRepTopAdaptor_FClass2d& BoundaryFace::inside() const {
    constexpr double kSameParameter = 1e-9;
    if (!inside_) inside_ = std::make_unique<BRepTopAdaptor_FClass2d>(face_, kSameParameter);
    return *inside_;
}

std::optional<BoundaryPoint> BoundaryFace::pointAt(double u, double v) const {
    if (inside().Perform(gp_Pnt2d(u, v)) != TopAbs_IN) return std::nullopt;
    return BoundaryPoint{surface_.Value(u, v), u, v, 0.0};
}

bool BoundaryFace::nearestParameters(const gp_Pnt& point, double& u, double& v) const {
    switch (surface_.GetType()) {
        case GeomAbs_Plane: ElSLib::Parameters(surface_.Plane(), point, u, v); return true;
        case GeomAbs_Cylinder: ElSLib::Parameters(surface_.Cylinder(), point, u, v); return true;
        case GeomAbs_Cone: ElSLib::Parameters(surface_.Cone(), point, u, v); return true;
        case GeomAbs_Sphere: ElSLib::Parameters(surface_.Sphere(), point, u, v); return true;
        case GeomAbs_Torus: ElSLib::Parameters(surface_.Torus(), point, u, v); return true;
        default: return false;
    }
}

std::optional<gp_Pnt> BoundaryFace::nearestOfElementary(const gp_Pnt& point) const {
    double u = 0.0;
    double v = 0.0;
    if (!nearestParameters(point, u, v)) return std::nullopt;
    return surface_.Value(u, v);
}

std::optional<BoundaryPoint> BoundaryFace::footOf(const gp_Pnt& point, double mostMm) const {
    std::optional<BoundaryPoint> best;
    const auto offer = [&](double u, double v) {
        const gp_Pnt here = surface_.Value(u, v);
        const double mm = here.Distance(point);
        if (!(mm < mostMm) || inside().Perform(gp_Pnt2d(u, v)) != TopAbs_IN) return;
        mostMm = mm;
        best = BoundaryPoint{here, u, v, 0.0};
    };
    double u = 0.0;
    double v = 0.0;
    if (!nearestParameters(point, u, v)) {
        for (const BoundaryPoint* start : nearestOf(raster(), point)) {
            const BoundaryPoint end = refined(point, *start, 0.0);
            offer(end.u, end.v);
        }
        return best;
    }
    offer(u, v);
    if (best) return best;
    // The far side of a round surface may be within the edges when the near side is not.
    if (surface_.GetType() == GeomAbs_Cylinder) offer(u + M_PI, v);
    if (surface_.GetType() == GeomAbs_Sphere) offer(u + M_PI, -v);
    if (surface_.GetType() == GeomAbs_Torus) offer(u, v + M_PI);
    return best;
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

const std::vector<BoundaryPoint>& BoundaryFace::raster() const {
    if (!raster_.empty()) return raster_;
    Spans ends = spans(kPerSpan);
    for (const double u : {u0_, u1_}) ends.u.push_back(u);
    for (const double v : {v0_, v1_}) ends.v.push_back(v);
    for (const double u : ends.u) {
        for (const double v : ends.v) raster_.push_back({surface_.Value(u, v), u, v, 0.0});
    }
    return raster_;
}

bool BoundaryFace::searchNear(const gp_Pnt& point, double toleranceMm) const {
    for (const BoundaryPoint* start : nearestOf(raster(), point)) {
        if (refined(point, *start, toleranceMm).point.Distance(point) <= toleranceMm) return true;
    }
    return false;
}

BoundaryPoint BoundaryFace::refined(const gp_Pnt& point, const BoundaryPoint& start,
                                    double toleranceMm) const {
    BoundaryPoint best = start;
    double least = start.point.Distance(point);
    double u = start.u;
    double v = start.v;
    for (int step = 0; step < kMostSteps && least > toleranceMm; ++step) {
        gp_Pnt here;
        gp_Vec alongU;
        gp_Vec alongV;
        surface_.D1(u, v, here, alongU, alongV);
        const double distance = here.Distance(point);
        if (distance <= least) {
            least = distance;
            best = {here, u, v, 0.0};
        }
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
        if (nextU == u && nextV == v) return best;
        u = nextU;
        v = nextV;
    }
    const gp_Pnt last = surface_.Value(u, v);
    if (last.Distance(point) < least) best = {last, u, v, 0.0};
    return best;
}

}  // namespace comparer
