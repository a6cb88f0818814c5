#pragma once

#include <vector>

#include <BRepAdaptor_Curve.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Vertex.hxx>
#include <gp_Pnt.hxx>
#include <gp_Vec.hxx>

namespace comparer {

/// Edges that run on smoothly from corner to corner, or round and back.
struct Rim {
    gp_Pnt centre;  ///< mean over the length
    double lengthMm = 0.0;
    double slackMm = 0.0;  ///< how far its edges lie off their surfaces
};

/// Joins the edges of a body to rims, whatever the edges were split into.
class RimFinder {
public:
    /// Takes an edge, which lies off its surfaces by that much; its number counts from 0.
    void addEdge(const BRepAdaptor_Curve& curve, double slackMm);

    /// Says that two edges run on into each other.
    void join(std::size_t a, std::size_t b);

    /// All rims but the tiniest and those of straight edges alone, whose corners say enough.
    std::vector<Rim> rims();

private:
    struct Piece {
        gp_XYZ weighted = {0.0, 0.0, 0.0};
        double lengthMm = 0.0;
        double slackMm = 0.0;
        bool straight = false;
        std::size_t next = 0;  // towards the piece that stands for the rim
    };

    std::size_t standFor(std::size_t edge);

    std::vector<Piece> pieces_;
};

}  // namespace comparer
