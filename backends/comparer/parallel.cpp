#include "backends/comparer/parallel.h"

#include <algorithm>
#include <atomic>
#include <numeric>
#include <thread>
#include <unordered_map>

#include <TopExp_Explorer.hxx>
#include <TopoDS_TShape.hxx>

namespace comparer {

std::vector<std::vector<std::size_t>> independentTasks(
    const std::vector<std::vector<TopoDS_Shape>>& shapesOfTask) {
    std::vector<std::size_t> leader(shapesOfTask.size());
    std::iota(leader.begin(), leader.end(), std::size_t{0});
    const auto find = [&](std::size_t i) {
        while (leader[i] != i) i = leader[i] = leader[leader[i]];
        return i;
    };
    std::unordered_map<const TopoDS_TShape*, std::size_t> owner;
    const auto take = [&](const TopoDS_Shape& part, std::size_t task) {
        const auto known = owner.try_emplace(part.TShape().get(), task);
        const std::size_t a = find(known.first->second);
        const std::size_t b = find(task);
        leader[std::max(a, b)] = std::min(a, b);
    };
    for (std::size_t i = 0; i < shapesOfTask.size(); ++i) {
        for (const TopoDS_Shape& shape : shapesOfTask[i]) {
            for (const TopAbs_ShapeEnum kind : {TopAbs_FACE, TopAbs_EDGE}) {
                for (TopExp_Explorer it(shape, kind); it.More(); it.Next()) take(it.Current(), i);
            }
        }
    }
    std::vector<std::vector<std::size_t>> groups(shapesOfTask.size());
    for (std::size_t i = 0; i < shapesOfTask.size(); ++i) groups[find(i)].push_back(i);
    std::erase_if(groups, [](const auto& group) { return group.empty(); });
    return groups;
}

void runInParallel(const std::vector<std::vector<std::size_t>>& groups, unsigned threads,
                   const std::function<void(std::size_t)>& task,
                   const std::function<void(double)>& afterTask) {
    std::size_t total = 0;
    for (const auto& group : groups) total += group.size();
    std::atomic<std::size_t> next{0};
    std::atomic<std::size_t> done{0};
    const auto work = [&](bool reports) {
        for (std::size_t i = next++; i < groups.size(); i = next++) {
            for (const std::size_t number : groups[i]) {
                task(number);
                ++done;
                if (!reports) continue;
                afterTask(static_cast<double>(done) / static_cast<double>(total));
            }
        }
    };
    if (threads == 0) threads = std::max(1U, std::thread::hardware_concurrency());
    const std::size_t count = std::min<std::size_t>(threads, groups.size());
    std::vector<std::thread> others;
    for (std::size_t i = 1; i < count; ++i) others.emplace_back(work, false);
    work(static_cast<bool>(afterTask));
    for (std::thread& other : others) other.join();
}

}  // namespace comparer
