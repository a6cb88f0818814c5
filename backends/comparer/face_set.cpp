#include "backends/comparer/face_set.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>

#include <BRepAdaptor_Curve.hxx>
#include <BRepAdaptor_Surface.hxx>
#include <BRepGProp.hxx>
#include <BRepTools.hxx>
#include <BRep_Tool.hxx>
#include <GCPnts_AbscissaPoint.hxx>
#include <GProp_GProps.hxx>
#include <Geom_Surface.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopLoc_Location.hxx>
#include <TopTools_DataMapOfShapeInteger.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopTools_MapIteratorOfMapOfShape.hxx>
#include <TopTools_MapOfShape.hxx>
#include <TopoDS.hxx>

namespace comparer {

/// One face while patches are being made.
struct FaceSet::Piece {
    Carrier carrier;
    bool fitted = false;
    std::vector<PatchSample> samples;
    double areaMm2 = 0.0;
    gp_Pnt centre;
    Handle(Geom_Surface) surface;
    TopLoc_Location location;
};

namespace {

constexpr std::uint32_t kNoEdge = 0xFFFFFFFFU;
constexpr int kRasterOfElementary = 3;
constexpr std::size_t kMostSamples = 400;

bool sampleAt(const BRepAdaptor_Surface& surface, bool reversed, double u, double v,
              PatchSample& sample) {
    gp_Pnt point;
    gp_Vec alongU;
    gp_Vec alongV;
    surface.D1(u, v, point, alongU, alongV);
    const gp_Vec normal = alongU.Crossed(alongV);
    if (!(normal.Magnitude() > 1e-14)) return false;
    sample.at = {point, gp_Dir(reversed ? normal.Reversed() : normal)};
    sample.u = u;
    sample.v = v;
    return true;
}

std::vector<PatchSample> elementarySamples(const BRepAdaptor_Surface& surface,
                                           const TopoDS_Face& face, std::uint32_t number) {
    double u0 = 0.0, u1 = 0.0, v0 = 0.0, v1 = 0.0;
    BRepTools::UVBounds(face, u0, u1, v0, v1);
    std::vector<PatchSample> samples;
    for (int i = 0; i < kRasterOfElementary * kRasterOfElementary; ++i) {
        PatchSample sample;
        sample.face = number;
        // Not at the ends: a cone may end in its apex, a sphere in its poles.
        const double u = u0 + (u1 - u0) * (i % kRasterOfElementary + 0.5) / kRasterOfElementary;
        const double v = v0 + (v1 - v0) * (i / kRasterOfElementary + 0.5) / kRasterOfElementary;
        if (sampleAt(surface, face.Orientation() == TopAbs_REVERSED, u, v, sample)) {
            samples.push_back(sample);
        }
    }
    return samples;
}

std::vector<PatchSample> freeFormSamples(const BRepAdaptor_Surface& surface,
                                         const BoundaryFace& boundary, const TopoDS_Face& face,
                                         std::uint32_t number) {
    std::vector<BoundaryPoint> points = boundary.points();
    const std::size_t stride = points.size() / kMostSamples + 1;
    std::vector<PatchSample> samples;
    for (std::size_t i = 0; i < points.size(); i += stride) {
        PatchSample sample;
        sample.face = number;
        if (sampleAt(surface, face.Orientation() == TopAbs_REVERSED, points[i].u, points[i].v,
                     sample)) {
            samples.push_back(sample);
        }
    }
    return samples;
}

/// Two splits of one surface may keep a copy of it each.
bool sameSurface(const Handle(Geom_Surface) & a, const TopLoc_Location& atA,
                 const Handle(Geom_Surface) & b, const TopLoc_Location& atB, double toleranceMm) {
    if (a == b) return atA.IsEqual(atB);
    if (a->DynamicType() != b->DynamicType()) return false;
    double boundsA[4], boundsB[4];
    a->Bounds(boundsA[0], boundsA[1], boundsA[2], boundsA[3]);
    b->Bounds(boundsB[0], boundsB[1], boundsB[2], boundsB[3]);
    for (int i = 0; i < 4; ++i) {
        if (!(std::abs(boundsA[i]) < 1e9) || std::abs(boundsA[i] - boundsB[i]) > 1e-9) return false;
    }
    constexpr int kPerDirection = 5;
    for (int i = 0; i < kPerDirection * kPerDirection; ++i) {
        const double s = (i % kPerDirection + 0.5) / kPerDirection;
        const double t = (i / kPerDirection + 0.5) / kPerDirection;
        const double u = boundsA[0] + (boundsA[1] - boundsA[0]) * s;
        const double v = boundsA[2] + (boundsA[3] - boundsA[2]) * t;
        const gp_Pnt onA = a->Value(u, v).Transformed(atA.Transformation());
        const gp_Pnt onB = b->Value(u, v).Transformed(atB.Transformation());
        if (onA.Distance(onB) > toleranceMm) return false;
    }
    return true;
}

/// Edges where a closed surface meets itself. Another face may end there by chance, and then it is
/// an edge like any other.
TopTools_MapOfShape seamsOf(const std::vector<TopoDS_Face>& faces) {
    TopTools_MapOfShape seams;
    TopTools_DataMapOfShapeInteger user;
    for (std::size_t f = 0; f < faces.size(); ++f) {
        TopLoc_Location location;
        const Handle(Geom_Surface)& surface = BRep_Tool::Surface(faces[f], location);
        const auto number = static_cast<Standard_Integer>(f);
        for (TopExp_Explorer it(faces[f], TopAbs_EDGE); it.More(); it.Next()) {
            const TopoDS_Edge& edge = TopoDS::Edge(it.Current());
            if (BRep_Tool::IsClosed(edge, surface, location)) seams.Add(edge);
            if (!user.IsBound(edge)) user.Bind(edge, number);
            if (user.Find(edge) != number) user.ChangeFind(edge) = -1;
        }
    }
    TopTools_MapOfShape alone;
    for (TopTools_MapIteratorOfMapOfShape it(seams); it.More(); it.Next()) {
        if (user.Find(it.Key()) >= 0) alone.Add(it.Key());
    }
    return alone;
}

bool allOn(const Carrier& carrier, const std::vector<PatchSample>& own,
           const std::vector<PatchSample>& other, double toleranceMm) {
    if (own.empty() || other.empty()) return false;
    const auto side = [&](const PatchSample& sample) {
        return carrier.normalAt(sample.at.point).Dot(sample.at.normal) > 0.0;
    };
    const bool outside = side(own.front());
    return std::all_of(other.begin(), other.end(), [&](const PatchSample& sample) {
        return carrier.distanceMm(sample.at.point) <= toleranceMm && side(sample) == outside;
    });
}

}  // namespace

FaceSet::FaceSet(const TopoDS_Shape& shape, double toleranceMm, const TimeLimit& limit)
    : toleranceMm_(toleranceMm), limit_(limit) {
    solid_ = TopExp_Explorer(shape, TopAbs_SOLID).More();
    std::vector<Piece> pieces;
    measureFaces(shape, pieces);
    indexEdges(shape);
    joinFaces(pieces);
}

void FaceSet::measureFaces(const TopoDS_Shape& shape, std::vector<Piece>& pieces) {
    // A fit may use up half of the tolerance, so that two fits agree within it.
    const double fitMm = toleranceMm_ / 2.0;
    std::uint32_t ordinal = 0;
    for (TopExp_Explorer it(shape, TopAbs_FACE); it.More(); it.Next(), ++ordinal) {
        limit_.check();
        const TopoDS_Face& face = TopoDS::Face(it.Current());
        Piece piece;
        piece.surface = BRep_Tool::Surface(face, piece.location);
        if (piece.surface.IsNull()) continue;
        const auto number = static_cast<std::uint32_t>(faces_.size());
        const BRepAdaptor_Surface surface(face, Standard_False);
        auto boundary = std::make_unique<BoundaryFace>(face);
        if (const auto carrier = elementaryCarrier(surface)) {
            piece.carrier = *carrier;
            piece.samples = elementarySamples(surface, face, number);
        } else {
            piece.samples = freeFormSamples(surface, *boundary, face, number);
            std::vector<SurfaceSample> bare;
            for (const PatchSample& sample : piece.samples) bare.push_back(sample.at);
            if (const auto fit = fitCarrier(bare, fitMm)) {
                piece.carrier = *fit;
                piece.fitted = true;
            }
        }
        GProp_GProps measured;
        BRepGProp::SurfaceProperties(face, measured);
        piece.areaMm2 = std::abs(measured.Mass());
        piece.centre = measured.CentreOfMass();
        faces_.push_back(face);
        ordinals_.push_back(ordinal);
        surfaces_.push_back(std::move(boundary));
        pieces.push_back(std::move(piece));
    }
}

void FaceSet::indexEdges(const TopoDS_Shape& shape) {
    TopTools_IndexedMapOfShape all;
    TopExp::MapShapes(shape, TopAbs_EDGE, all);
    const TopTools_MapOfShape seams = seamsOf(faces_);
    std::vector<std::uint32_t> numbers(static_cast<std::size_t>(all.Extent()) + 1, kNoEdge);
    for (Standard_Integer i = 1; i <= all.Extent(); ++i) {
        limit_.check();
        const TopoDS_Edge& edge = TopoDS::Edge(all(i));
        if (BRep_Tool::Degenerated(edge) || seams.Contains(edge)) continue;
        numbers[static_cast<std::size_t>(i)] = static_cast<std::uint32_t>(edges_.list.size());
        edges_.list.emplace_back(edge);
        const BRepAdaptor_Curve curve(edge);
        lengths_.push_back(GCPnts_AbscissaPoint::Length(curve));
    }
    edges_.index(toleranceMm_);
    edgesOfFace_.resize(faces_.size());
    for (std::size_t f = 0; f < faces_.size(); ++f) {
        for (TopExp_Explorer it(faces_[f], TopAbs_EDGE); it.More(); it.Next()) {
            const Standard_Integer index = all.FindIndex(it.Current());
            const std::uint32_t number = numbers[static_cast<std::size_t>(index)];
            if (number != kNoEdge) edgesOfFace_[f].push_back(number);
        }
    }
}

bool FaceSet::onOneSurface(const Piece& a, const Piece& b) const {
    if (a.carrier.kind != b.carrier.kind) return false;
    if (a.carrier.kind != SurfaceKind::Other) {
        return allOn(a.carrier, a.samples, b.samples, toleranceMm_) &&
               allOn(b.carrier, b.samples, a.samples, toleranceMm_);
    }
    return sameSurface(a.surface, a.location, b.surface, b.location, toleranceMm_);
}

void FaceSet::joinFaces(const std::vector<Piece>& pieces) {
    std::vector<std::uint32_t> leader(faces_.size());
    std::iota(leader.begin(), leader.end(), 0U);
    const auto find = [&](std::uint32_t i) {
        while (leader[i] != i) i = leader[i] = leader[leader[i]];
        return i;
    };
    std::vector<std::uint32_t> firstFace(edges_.list.size(), kNoEdge);
    for (std::uint32_t f = 0; f < faces_.size(); ++f) {
        limit_.check();
        for (const std::uint32_t edge : edgesOfFace_[f]) {
            if (firstFace[edge] == kNoEdge) firstFace[edge] = f;
            const std::uint32_t a = find(firstFace[edge]);
            const std::uint32_t b = find(f);
            if (a != b && onOneSurface(pieces[firstFace[edge]], pieces[f])) {
                leader[std::max(a, b)] = std::min(a, b);
            }
        }
    }
    std::map<std::uint32_t, std::vector<std::uint32_t>> groups;
    for (std::uint32_t f = 0; f < faces_.size(); ++f) groups[find(f)].push_back(f);
    for (const auto& [first, faces] : groups) addPatch(faces, pieces);
}

void FaceSet::addPatch(const std::vector<std::uint32_t>& faces, const std::vector<Piece>& pieces) {
    Patch patch;
    patch.faces = faces;
    std::map<std::uint32_t, int> uses;
    gp_XYZ weighted;
    double largest = -1.0;
    for (const std::uint32_t f : faces) {
        const Piece& piece = pieces[f];
        if (piece.areaMm2 > largest) {
            largest = piece.areaMm2;
            patch.carrier = piece.carrier;
            patch.fitted = piece.fitted;
        }
        patch.areaMm2 += piece.areaMm2;
        weighted += piece.centre.XYZ() * piece.areaMm2;
        patch.samples.insert(patch.samples.end(), piece.samples.begin(), piece.samples.end());
        for (const std::uint32_t edge : edgesOfFace_[f]) ++uses[edge];
    }
    patch.centre = patch.areaMm2 > 0.0 ? gp_Pnt(weighted / patch.areaMm2) : pieces[faces[0]].centre;
    for (const auto& [edge, count] : uses) {
        if (count != 1) continue;
        patch.edges.push_back(edge);
        patch.perimeterMm += lengths_[edge];
    }
    for (const PatchSample& sample : patch.samples) {
        patch.sizeMm = std::max(patch.sizeMm, sample.at.point.Distance(patch.centre));
    }
    patches_.push_back(std::move(patch));
}

bool FaceSet::isOnSurface(const Patch& patch, const PatchSample& sample, const gp_Pnt& point,
                          double toleranceMm) const {
    if (patch.carrier.kind != SurfaceKind::Other) {
        return patch.carrier.distanceMm(point) <= toleranceMm;
    }
    const BoundaryPoint asked{point, sample.u, sample.v, 0.0};
    return std::any_of(patch.faces.begin(), patch.faces.end(), [&](std::uint32_t face) {
        return surfaces_[face]->isNear(asked, toleranceMm);
    });
}

bool FaceSet::isInside(const PatchSample& sample) const {
    return surfaces_[sample.face]->counts({sample.at.point, sample.u, sample.v, 0.0});
}

}  // namespace comparer
