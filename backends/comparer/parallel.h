#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include <TopoDS_Shape.hxx>

namespace comparer {

/// Numbers of tasks, those together that use shapes with common faces or edges: the geometry
/// library remembers things in shapes, so that one shape is for one thread. In ascending order.
std::vector<std::vector<std::size_t>> independentTasks(
    const std::vector<std::vector<TopoDS_Shape>>& shapesOfTask);

/// Runs all tasks on at most that many threads, the calling one among them; 0: as many as there
/// are cores. `afterTask` is called on the calling thread alone, after each of its own tasks, with
/// the share of all tasks that are done. `task` must not throw.
void runInParallel(const std::vector<std::vector<std::size_t>>& groups, unsigned threads,
                   const std::function<void(std::size_t task)>& task,
                   const std::function<void(double fraction)>& afterTask = {});

}  // namespace comparer
