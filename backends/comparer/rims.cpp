#include "backends/comparer/rims.h"

#include <TColStd_Array1OfReal.hxx>

namespace comparer {
namespace {

/// Nodes and weights of Gauss's rule of six points on [-1, 1], for either sign.
constexpr double kNodes[] = {0.2386191860831969, 0.6612093864662645, 0.9324695142031521};
constexpr double kWeights[] = {0.4679139345726910, 0.3607615730481386, 0.1713244923791704};

/// How much longer than the way between its ends a straight edge may be, in proportion.
constexpr double kStraight = 1e-10;

/// Edges that are next to nothing may be lost when a file is written again.
constexpr double kShortestMm = 0.01;

}  // namespace

void RimFinder::addEdge(const BRepAdaptor_Curve& curve, double slackMm) {
    Piece piece;
    piece.slackMm = slackMm;
    piece.next = pieces_.size();
    // Circles have one span all around; a rule of six points wants shorter ones.
    const bool ownSpans =
        curve.GetType() == GeomAbs_BSplineCurve || curve.GetType() == GeomAbs_Line;
    const int cuts = ownSpans ? 1 : 8;
    const Standard_Integer spans = curve.NbIntervals(GeomAbs_CN);
    TColStd_Array1OfReal ends(1, spans + 1);
    curve.Intervals(ends, GeomAbs_CN);
    const auto addSpan = [&](double first, double last) {
        const double middle = (first + last) / 2.0;
        const double half = (last - first) / 2.0;
        for (std::size_t i = 0; i < 6; ++i) {
            const double node = i < 3 ? kNodes[i] : -kNodes[i - 3];
            gp_Pnt point;
            gp_Vec speed;
            curve.D1(middle + half * node, point, speed);
            const double mm = kWeights[i % 3] * half * speed.Magnitude();
            piece.lengthMm += mm;
            piece.weighted += point.XYZ() * mm;
        }
    };
    for (Standard_Integer i = 1; i <= spans; ++i) {
        const double step = (ends(i + 1) - ends(i)) / cuts;
        for (int cut = 0; cut < cuts; ++cut) {
            addSpan(ends(i) + cut * step, ends(i) + (cut + 1) * step);
        }
    }
    // Straight ones are not always written as lines.
    const double apart = curve.Value(ends(1)).Distance(curve.Value(ends(spans + 1)));
    piece.straight = piece.lengthMm - apart <= kStraight * piece.lengthMm;
    pieces_.push_back(piece);
}

std::size_t RimFinder::standFor(std::size_t edge) {
    while (pieces_[edge].next != edge) {
        pieces_[edge].next = pieces_[pieces_[edge].next].next;
        edge = pieces_[edge].next;
    }
    return edge;
}

void RimFinder::join(std::size_t a, std::size_t b) {
    const std::size_t from = standFor(a);
    const std::size_t to = standFor(b);
    if (from == to) return;
    Piece& all = pieces_[to];
    all.weighted += pieces_[from].weighted;
    all.lengthMm += pieces_[from].lengthMm;
    all.slackMm += pieces_[from].slackMm;
    all.straight = all.straight && pieces_[from].straight;
    pieces_[from].next = to;
}

std::vector<Rim> RimFinder::rims() {
    std::vector<Rim> found;
    for (std::size_t i = 0; i < pieces_.size(); ++i) {
        const Piece& piece = pieces_[i];
        if (piece.next != i || piece.straight || piece.lengthMm < kShortestMm) continue;
        found.push_back({gp_Pnt(piece.weighted / piece.lengthMm), piece.lengthMm, piece.slackMm});
    }
    return found;
}

}  // namespace comparer
