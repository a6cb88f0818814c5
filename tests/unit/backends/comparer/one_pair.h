#pragma once

#include <gtest/gtest.h>
#include <BRepMesh_IncrementalMesh.hxx>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <Poly_Triangulation.hxx>
#include <TopExp_Explorer.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Compound.hxx>

#include "backends/comparer/body_classes.h"
#include "backends/comparer/face_report.h"
#include "backends/comparer/matching.h"
#include "backends/comparer/mesh_units.h"
#include "backends/comparer/result_rows.h"
#include "tests/unit/backends/comparer/fake_model.h"

/// Two files with one part each, "Lid", and what the comparison says of them.
struct OnePair {
    std::vector<comparer::Match> matches;
    comparer::FaceReport faces;
    bxtsg::SCGeometryResult rows;

    const bxtexchange::GeometryInstance& row() const { return rows.instances.at(0); }
};

inline OnePair comparePair(const TopoDS_Shape& before, const TopoDS_Shape& after,
                           const comparer::Effort& effort = {},
                           comparer::Shortcuts shortcuts = comparer::Shortcuts::On,
                           const gp_Trsf& placeAfter = gp_Trsf()) {
    FakeModel reference;
    FakeModel compare;
    reference.part(reference.top(), "Lid", before);
    compare.part(compare.top(), "Lid", after, placeAfter);
    comparer::Names names;
    comparer::Side a = comparer::collectSide(reference, names);
    comparer::Side b = comparer::collectSide(compare, names);
    comparer::adoptUnits(a, b);
    const comparer::Tolerances tolerances;
    comparer::BodyClasses classes(a, b, tolerances, shortcuts);
    OnePair pair;
    pair.matches = comparer::matchInstances(a, b, names, classes, tolerances, [](double) {});
    pair.faces = comparer::compareFaces(
        a, b, tolerances, pair.matches, [](double) {}, effort);
    pair.rows = comparer::buildResult(a, b, names, pair.matches, tolerances, pair.faces);
    return pair;
}

namespace shapes {

/// The same body as a file of triangles holds it: no surfaces, coordinates of seven digits.
inline TopoDS_Shape inTriangles(const TopoDS_Shape& shape, double deflectionMm,
                                double factor = 1.0) {
    BRepMesh_IncrementalMesh(shape, deflectionMm, Standard_False, 0.3, Standard_False);
    BRep_Builder builder;
    TopoDS_Compound body;
    builder.MakeCompound(body);
    for (TopExp_Explorer it(shape, TopAbs_FACE); it.More(); it.Next()) {
        TopLoc_Location location;
        const auto mesh = BRep_Tool::Triangulation(TopoDS::Face(it.Current()), location)->Copy();
        for (Standard_Integer i = 1; i <= mesh->NbNodes(); ++i) {
            const gp_XYZ node = mesh->Node(i).Transformed(location.Transformation()).XYZ() * factor;
            mesh->SetNode(i, gp_Pnt(static_cast<float>(node.X()), static_cast<float>(node.Y()),
                                    static_cast<float>(node.Z())));
        }
        if (it.Current().Orientation() == TopAbs_REVERSED) {
            for (Standard_Integer i = 1; i <= mesh->NbTriangles(); ++i) {
                Standard_Integer n[3];
                mesh->Triangle(i).Get(n[0], n[1], n[2]);
                mesh->SetTriangle(i, Poly_Triangle(n[0], n[2], n[1]));
            }
        }
        TopoDS_Face face;
        builder.MakeFace(face);
        builder.UpdateFace(face, mesh);
        builder.Add(body, face);
    }
    return body;
}

}  // namespace shapes
