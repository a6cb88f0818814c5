#pragma once

#include <optional>
#include <vector>

#include <Bnd_Box.hxx>
#include <NCollection_UBTree.hxx>
#include <NCollection_UBTreeFiller.hxx>
#include <gp_Trsf.hxx>

#include "backends/comparer/boundary_parts.h"

namespace comparer {

using BoxTree = NCollection_UBTree<int, Bnd_Box>;

/// Goes through the parts whose boxes hold a point until one of them says yes.
template <typename Question>
class BoxSearch : public BoxTree::Selector {
public:
    BoxSearch(const gp_Pnt& point, Question question) : point_(point), question_(question) {}

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

/// The edges or the faces of a body, found by place.
template <typename Part>
class PartIndex {
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
        BoxSearch<decltype(question)> search(sample.point, question);
        tree_.Select(search);
        return search.found();
    }

private:
    std::vector<std::optional<std::vector<BoundaryPoint>>> points_;  // made when asked for
    BoxTree tree_;
};

}  // namespace comparer
