#include "backends/occt/read/bodies.h"

#include <algorithm>
#include <array>

#include <BRepBndLib.hxx>
#include <BRepBuilderAPI_Copy.hxx>
#include <BRepMesh_IncrementalMesh.hxx>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <Bnd_Box.hxx>
#include <Poly_Triangulation.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Iterator.hxx>

#include "platform/hps/component_type.h"

namespace occt {
namespace {

/// Which items a shape type stands for, or 0 for a group of others.
std::uint32_t itemType(TopAbs_ShapeEnum type) {
    switch (type) {
        case TopAbs_SOLID:
        case TopAbs_SHELL:
        case TopAbs_FACE: return HPS::ComponentType::BrepModel;
        case TopAbs_WIRE:
        case TopAbs_EDGE: return HPS::ComponentType::Curve;
        case TopAbs_VERTEX: return HPS::ComponentType::PointSet;
        default: return 0;
    }
}

bool wanted(TopAbs_ShapeEnum type, const HPS::Exchange::ImportOptions& options) {
    switch (itemType(type)) {
        case 0: return true;
        case HPS::ComponentType::BrepModel:
            return type == TopAbs_SOLID ? options.solids : options.surfaces;
        default: return options.wireframes;
    }
}

/// Type of the loose faces, edges or points that a compound consists of; TopAbs_SHAPE when it
/// holds anything else or a mixture.
TopAbs_ShapeEnum looseType(const TopoDS_Shape& compound) {
    TopAbs_ShapeEnum type = TopAbs_SHAPE;
    for (TopoDS_Iterator child(compound); child.More(); child.Next()) {
        const TopAbs_ShapeEnum next = child.Value().ShapeType();
        if (next <= TopAbs_SHELL) return TopAbs_SHAPE;
        if (type != TopAbs_SHAPE && itemType(type) != itemType(next)) return TopAbs_SHAPE;
        type = next;
    }
    return type;
}

/// Chord deviation as a share of the body's diagonal, and the angle between neighbours.
struct Fineness {
    double share;
    double angleRad;
};
constexpr std::array<Fineness, 5> kFineness = {
    {{0.02, 0.8}, {0.005, 0.5}, {0.002, 0.35}, {0.0005, 0.2}, {0.0001, 0.1}}};

}  // namespace

std::vector<Body> collectBodies(const TopoDS_Shape& shape,
                                const HPS::Exchange::ImportOptions& options) {
    std::vector<Body> bodies;
    if (shape.IsNull()) return bodies;
    std::vector<Body> open = {{0, {}, shape}};
    while (!open.empty()) {
        Body next = std::move(open.back());
        open.pop_back();
        TopAbs_ShapeEnum type = next.shape.ShapeType();
        if (type == TopAbs_COMPOUND) {
            const TopAbs_ShapeEnum loose = looseType(next.shape);
            if (loose != TopAbs_SHAPE) type = loose;
        }
        next.type = itemType(type);
        if (next.type != 0) {
            if (wanted(type, options)) bodies.push_back(std::move(next));
            continue;
        }
        std::vector<Body> children;
        std::uint32_t position = 0;
        for (TopoDS_Iterator child(next.shape); child.More(); child.Next()) {
            Body below{0, next.path, child.Value()};
            below.path.push_back(position++);
            children.push_back(std::move(below));
        }
        std::move(children.rbegin(), children.rend(), std::back_inserter(open));
    }
    return bodies;
}

TopoDS_Shape meshOf(const TopoDS_Shape& body, HPS::Exchange::Tessellation::Level level) {
    const auto number =
        std::min<std::size_t>(static_cast<std::size_t>(level), kFineness.size() - 1);
    Bnd_Box box;
    BRepBndLib::Add(body, box, Standard_False);
    if (box.IsVoid()) return {};
    const double diagonal = std::sqrt(box.SquareExtent());
    const Fineness& fineness = kFineness[number];
    // A copy: the triangles must not travel with the exact body.
    const TopoDS_Shape copy = BRepBuilderAPI_Copy(body).Shape();
    BRepMesh_IncrementalMesh(copy, std::max(diagonal * fineness.share, 1e-4), Standard_False,
                             fineness.angleRad, Standard_False);
    TopoDS_Compound mesh;
    const BRep_Builder builder;
    builder.MakeCompound(mesh);
    bool any = false;
    for (TopExp_Explorer face(copy, TopAbs_FACE); face.More(); face.Next()) {
        TopLoc_Location location;
        const auto triangles = BRep_Tool::Triangulation(TopoDS::Face(face.Current()), location);
        if (triangles.IsNull()) continue;
        TopoDS_Face plain;
        builder.MakeFace(plain, triangles);
        plain.Location(location);
        plain.Orientation(face.Current().Orientation());
        builder.Add(mesh, plain);
        any = true;
    }
    return any ? TopoDS_Shape(mesh) : TopoDS_Shape();
}

TopoDS_Shape shapeOf(const step::MeshBody& mesh) {
    TopoDS_Compound compound;
    const BRep_Builder builder;
    builder.MakeCompound(compound);
    for (const step::MeshBody::Face& face : mesh.faces) {
        const Handle(Poly_Triangulation) triangles =
            new Poly_Triangulation(static_cast<int>(face.pointsMm.size()),
                                   static_cast<int>(face.triangles.size()), Standard_False);
        for (std::size_t i = 0; i < face.pointsMm.size(); ++i) {
            const auto& point = face.pointsMm[i];
            triangles->SetNode(static_cast<int>(i) + 1, gp_Pnt(point[0], point[1], point[2]));
        }
        for (std::size_t i = 0; i < face.triangles.size(); ++i) {
            const auto& corner = face.triangles[i];
            triangles->SetTriangle(
                static_cast<int>(i) + 1,
                Poly_Triangle(static_cast<int>(corner[0]) + 1, static_cast<int>(corner[1]) + 1,
                              static_cast<int>(corner[2]) + 1));
        }
        TopoDS_Face plain;
        builder.MakeFace(plain, triangles);
        builder.Add(compound, plain);
    }
    return mesh.faces.empty() ? TopoDS_Shape() : TopoDS_Shape(compound);
}

}  // namespace occt
