#include "tests/torture/loaded.h"

#include <vector>

#include <BRep_Tool.hxx>
#include <Poly_Triangulation.hxx>
#include <TopExp.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopTools_MapOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Face.hxx>

#include "platform/hps/component_type.h"

namespace torture {
namespace {

/// Adds the faces that no shape before had.
void addFaces(const TopoDS_Shape& shape, TopTools_MapOfShape& seen, Loaded& loaded) {
    TopTools_IndexedMapOfShape faces;
    TopExp::MapShapes(shape, TopAbs_FACE, faces);
    for (int i = 1; i <= faces.Extent(); ++i) {
        const TopoDS_Face& face = TopoDS::Face(faces(i));
        if (!seen.Add(face.Located(TopLoc_Location()))) continue;
        TopLoc_Location place;
        if (!BRep_Tool::Surface(face, place).IsNull()) {
            ++loaded.faces;
            continue;
        }
        const Handle(Poly_Triangulation) mesh = BRep_Tool::Triangulation(face, place);
        if (!mesh.IsNull()) loaded.triangles += static_cast<std::uint64_t>(mesh->NbTriangles());
    }
}

}  // namespace

Loaded loadedFrom(const occt::Model& model) {
    Loaded loaded;
    loaded.occurrences = model.countAll(model.root(), HPS::ComponentType::ProductOccurrence);
    std::vector<HPS::ComponentId> items;
    model.collectAll(model.root(), HPS::ComponentType::RepresentationItemMask, items);
    TopTools_MapOfShape seen;
    for (const HPS::ComponentId item : items) {
        const TopoDS_Shape shape = model.shape(item);
        if (!shape.IsNull()) addFaces(shape, seen, loaded);
    }
    return loaded;
}

}  // namespace torture
