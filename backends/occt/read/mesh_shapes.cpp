#include "backends/occt/read/mesh_shapes.h"

#include <BRep_Builder.hxx>
#include <Poly_Triangulation.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Face.hxx>

namespace occt {

TopoDS_Shape shapeOf(const mesh::Body& body) {
    const Handle(Poly_Triangulation) triangles =
        new Poly_Triangulation(static_cast<int>(body.pointsMm.size()),
                               static_cast<int>(body.triangles.size()), Standard_False);
    int number = 0;
    for (const auto& [x, y, z] : body.pointsMm) triangles->SetNode(++number, gp_Pnt(x, y, z));
    number = 0;
    for (const auto& [a, b, c] : body.triangles) {
        triangles->SetTriangle(++number,
                               Poly_Triangle(static_cast<int>(a) + 1, static_cast<int>(b) + 1,
                                             static_cast<int>(c) + 1));
    }
    const BRep_Builder builder;
    TopoDS_Face face;
    builder.MakeFace(face, triangles);
    TopoDS_Compound compound;
    builder.MakeCompound(compound);
    builder.Add(compound, face);
    return compound;
}

}  // namespace occt
