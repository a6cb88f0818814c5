#include "backends/comparer/boundary.h"

#include <vector>

#include <BRep_Tool.hxx>
#include <Standard_Failure.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopLoc_Location.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopTools_MapOfShape.hxx>
#include <TopoDS.hxx>

#include "backends/comparer/part_index.h"

namespace comparer {
namespace {

template <typename Part>
bool covers(const PartIndex<Part>& own, PartIndex<Part>& other, const gp_Trsf& motion,
            double toleranceMm) {
    for (std::size_t i = 0; i < other.list.size(); ++i) {
        for (BoundaryPoint sample : other.pointsOf(i)) {
            sample.point.Transform(motion);
            if (!own.anyNear(sample, toleranceMm) && other.list[i].counts(sample)) return false;
        }
    }
    return true;
}

}  // namespace

class BoundaryIndex {
public:
    BoundaryIndex(const TopoDS_Shape& shape, double tolerance) : toleranceMm(tolerance) {
        TopTools_MapOfShape seams;
        TopTools_IndexedMapOfShape all;
        TopExp::MapShapes(shape, TopAbs_FACE, all);
        for (Standard_Integer i = 1; i <= all.Extent(); ++i) {
            const TopoDS_Face& face = TopoDS::Face(all(i));
            TopLoc_Location location;
            const Handle(Geom_Surface)& surface = BRep_Tool::Surface(face, location);
            if (surface.IsNull()) continue;
            for (TopExp_Explorer it(face, TopAbs_EDGE); it.More(); it.Next()) {
                const TopoDS_Edge& edge = TopoDS::Edge(it.Current());
                if (BRep_Tool::IsClosed(edge, surface, location)) seams.Add(edge);
            }
            faces.list.emplace_back(face);
        }
        faces.index(toleranceMm);
        all.Clear();
        TopExp::MapShapes(shape, TopAbs_EDGE, all);
        for (Standard_Integer i = 1; i <= all.Extent(); ++i) {
            const TopoDS_Edge& edge = TopoDS::Edge(all(i));
            if (!BRep_Tool::Degenerated(edge) && !seams.Contains(edge)) {
                edges.list.emplace_back(edge);
            }
        }
        edges.index(toleranceMm);
    }

    double toleranceMm = 0.0;
    PartIndex<BoundaryEdge> edges;
    PartIndex<BoundaryFace> faces;
};

Boundary::Boundary(const TopoDS_Shape& shape, double toleranceMm) {
    try {
        index_ = std::make_unique<BoundaryIndex>(shape, toleranceMm);
    } catch (const Standard_Failure&) {
        index_.reset();
    }
}

Boundary::~Boundary() = default;

bool Boundary::holds(const Boundary& other, const gp_Trsf& motion) const try {
    if (!index_ || !other.index_) return false;
    return covers(index_->edges, other.index_->edges, motion, index_->toleranceMm) &&
           covers(index_->faces, other.index_->faces, motion, index_->toleranceMm);
} catch (const Standard_Failure&) {
    return false;
}

bool coincide(const Boundary& a, const Boundary& b, const gp_Trsf& motion) {
    return b.holds(a, motion) && a.holds(b, motion.Inverted());
}

}  // namespace comparer
