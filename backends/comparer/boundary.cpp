#include "backends/comparer/boundary.h"

#include <optional>
#include <vector>

#include <BRep_Tool.hxx>
#include <Bnd_Box.hxx>
#include <NCollection_UBTree.hxx>
#include <NCollection_UBTreeFiller.hxx>
#include <Standard_Failure.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopLoc_Location.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopTools_MapOfShape.hxx>
#include <TopoDS.hxx>

#include "backends/comparer/boundary_parts.h"

namespace comparer {
namespace {

using BoxTree = NCollection_UBTree<int, Bnd_Box>;

/// Goes through the parts whose boxes hold a point until one of them says yes.
template <typename Question>
class Search : public BoxTree::Selector {
public:
    Search(const gp_Pnt& point, Question question) : point_(point), question_(question) {}

    Standard_Boolean Reject(const Bnd_Box& box) const override { return box.IsOut(point_); }
    Standard_Boolean Accept(const int& number) override {
        found_ = question_(static_cast<std::size_t>(number));
        myStop = found_;
        return found_;
    }
    bool found() const { return found_; }

private:
    gp_Pnt point_;
    Question question_;
    bool found_ = false;
};

/// The edges or the faces of a body.
template <typename Part>
class Parts {
public:
    std::vector<Part> list;

    /// To be called when the list is complete.
    void index(double toleranceMm) {
        points_.resize(list.size());
        NCollection_UBTreeFiller<int, Bnd_Box> filler(tree_);
        for (std::size_t i = 0; i < list.size(); ++i) {
            Bnd_Box box = list[i].box();
            box.Enlarge(2.0 * toleranceMm);
            filler.Add(static_cast<int>(i), box);
        }
        filler.Fill();
    }

    const std::vector<BoundaryPoint>& pointsOf(std::size_t i) {
        if (!points_[i]) points_[i] = list[i].points();
        return *points_[i];
    }

    bool anyNear(const BoundaryPoint& sample, double toleranceMm) const {
        const auto question = [&](std::size_t i) { return list[i].isNear(sample, toleranceMm); };
        Search<decltype(question)> search(sample.point, question);
        tree_.Select(search);
        return search.found();
    }

private:
    std::vector<std::optional<std::vector<BoundaryPoint>>> points_;  // made when asked for
    BoxTree tree_;
};

template <typename Part>
bool covers(const Parts<Part>& own, Parts<Part>& other, const gp_Trsf& motion, double toleranceMm) {
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
    Parts<BoundaryEdge> edges;
    Parts<BoundaryFace> faces;
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
