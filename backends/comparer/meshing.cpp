#include "backends/comparer/meshing.h"

#include <algorithm>
#include <atomic>
#include <numeric>
#include <thread>
#include <unordered_map>

#include <BRepBndLib.hxx>
#include <BRepMesh_IncrementalMesh.hxx>
#include <BRepTools.hxx>
#include <Bnd_Box.hxx>
#include <Standard_Failure.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS_TShape.hxx>

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

/// Numbers of the shapes, together where they share an edge or a face.
std::vector<std::vector<std::size_t>> independent(const std::vector<TopoDS_Shape>& shapes) {
    std::vector<std::size_t> leader(shapes.size());
    std::iota(leader.begin(), leader.end(), std::size_t{0});
    const auto find = [&](std::size_t i) {
        while (leader[i] != i) i = leader[i] = leader[leader[i]];
        return i;
    };
    std::unordered_map<const TopoDS_TShape*, std::size_t> owner;
    for (std::size_t i = 0; i < shapes.size(); ++i) {
        for (const TopAbs_ShapeEnum kind : {TopAbs_FACE, TopAbs_EDGE}) {
            for (TopExp_Explorer it(shapes[i], kind); it.More(); it.Next()) {
                const auto known = owner.try_emplace(it.Current().TShape().get(), i);
                const std::size_t a = find(known.first->second);
                const std::size_t b = find(i);
                leader[std::max(a, b)] = std::min(a, b);
            }
        }
    }
    std::vector<std::vector<std::size_t>> groups(shapes.size());
    for (std::size_t i = 0; i < shapes.size(); ++i) groups[find(i)].push_back(i);
    std::erase_if(groups, [](const auto& group) { return group.empty(); });
    return groups;
}

}  // namespace

void meshShapes(const std::vector<TopoDS_Shape>& shapes) {
    const auto groups = independent(shapes);
    std::atomic<std::size_t> next{0};
    const auto work = [&] {
        for (std::size_t i = next++; i < groups.size(); i = next++) {
            for (const std::size_t shape : groups[i]) meshOne(shapes[shape]);
        }
    };
    std::vector<std::thread> others;
    const std::size_t threads =
        std::min<std::size_t>(std::max(1U, std::thread::hardware_concurrency()), groups.size());
    for (std::size_t i = 1; i < threads; ++i) others.emplace_back(work);
    work();
    for (std::thread& other : others) other.join();
}

}  // namespace comparer
