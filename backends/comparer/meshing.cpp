#include "backends/comparer/meshing.h"

#include <BRepBndLib.hxx>
#include <BRepMesh_IncrementalMesh.hxx>
#include <BRepTools.hxx>
#include <Bnd_Box.hxx>
#include <Standard_Failure.hxx>

#include "backends/comparer/parallel.h"

namespace comparer {
namespace {

constexpr double kDeflectionOfSize = 1e-3;
constexpr double kAngleRad = 0.35;

void meshOne(const TopoDS_Shape& shape) try {
    Bnd_Box box;
    BRepBndLib::Add(shape, box, Standard_False);
    if (box.IsVoid() || box.IsOpen()) return;
    const double size = box.CornerMin().Distance(box.CornerMax());
    if (!(size > 0.0)) return;
    const double deflection = size * kDeflectionOfSize;
    if (BRepTools::Triangulation(shape, deflection)) return;
    BRepMesh_IncrementalMesh(shape, deflection, Standard_False, kAngleRad, Standard_False);
} catch (const Standard_Failure&) {
}
}  // namespace

void meshShapes(const std::vector<TopoDS_Shape>& shapes) {
    std::vector<std::vector<TopoDS_Shape>> tasks;
    for (const TopoDS_Shape& shape : shapes) tasks.push_back({shape});
    runInParallel(independentTasks(tasks), 0, [&](std::size_t i) { meshOne(shapes[i]); });
}

}  // namespace comparer
