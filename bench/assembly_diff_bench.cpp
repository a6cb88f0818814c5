// Product structures of two models in memory: tree building, comparison and alignment, against
// the time that one hash map takes to hold the same names.

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <ctime>
#include <unordered_map>

#include "bench/assembly_models.h"
#include "diff/assembly_diff_engine.h"

namespace {

// Time that this process has spent on a processor: other load on the machine must not decide.
double processSeconds() {
    timespec now = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

struct FlatText {
    std::vector<std::wstring> referenceNames, referenceStates, compareNames, compareStates;
};

double timeNamesInMap(const std::vector<std::wstring>& referenceNames,
                      const std::vector<std::wstring>& compareNames) {
    malloc_trim(0);  // what earlier runs left behind must not help or hinder this one
    const double start = processSeconds();
    std::unordered_map<std::wstring, int> map;
    for (const std::wstring& name : referenceNames) ++map[name];
    for (const std::wstring& name : compareNames) ++map[name];
    const double seconds = processSeconds() - start;
    benchmark::DoNotOptimize(map.size());
    return seconds;
}

struct EngineTimes {
    double buildAndDiff = 0.0;
    double flatten = 0.0;
    double bareText = 0.0;
};

// What texts of these lengths cost by themselves. Indents of deep models are most of their text.
double timeBareText(FlatText text) {
    const std::vector<std::wstring>* const lists[] = {&text.referenceNames, &text.referenceStates,
                                                      &text.compareNames, &text.compareStates};
    std::vector<std::size_t> lengths;
    for (const auto* list : lists) {
        for (const std::wstring& line : *list) lengths.push_back(line.size());
    }
    text = FlatText();
    malloc_trim(0);
    const double start = processSeconds();
    std::vector<std::wstring> lines;
    lines.reserve(lengths.size());
    for (const std::size_t length : lengths) lines.emplace_back(length, L' ');
    return processSeconds() - start;
}

EngineTimes timeEngine(const HPS::CADModel& reference, const HPS::CADModel& compare) {
    EngineTimes times;
    diff::AssemblyDiffEngine engine;
    malloc_trim(0);
    double start = processSeconds();
    engine.BuildAndDiff(reference, compare);
    times.buildAndDiff = processSeconds() - start;
    FlatText text;
    start = processSeconds();
    engine.FlattenPSTreeAligned(text.referenceNames, text.referenceStates, text.compareNames,
                                text.compareStates);
    times.flatten = processSeconds() - start;
    benchmark::DoNotOptimize(text.compareStates.data());
    times.bareText = timeBareText(std::move(text));
    return times;
}

// Arguments: shape, names, nodes on each side. "ratio" is the figure to watch; the time of the
// benchmark is that of the engine.
void BuildDiffAndFlatten(benchmark::State& state) {
    const auto pair = bench::makePair(static_cast<bench::Shape>(state.range(0)),
                                      static_cast<bench::Names>(state.range(1)),
                                      static_cast<std::size_t>(state.range(2)));
    const std::vector<std::wstring> referenceNames = bench::occurrenceNames(*pair.reference);
    const std::vector<std::wstring> compareNames = bench::occurrenceNames(*pair.compare);
    const HPS::CADModel reference(pair.reference);
    const HPS::CADModel compare(pair.compare);
    std::vector<double> ratios, mapTimes, buildTimes, flattenTimes, textTimes;
    for (auto unused : state) {
        const double map = timeNamesInMap(referenceNames, compareNames);
        const EngineTimes engine = timeEngine(reference, compare);
        const double total = engine.buildAndDiff + engine.flatten;
        state.SetIterationTime(total);
        mapTimes.push_back(map * 1e3);
        buildTimes.push_back(engine.buildAndDiff * 1e3);
        flattenTimes.push_back(engine.flatten * 1e3);
        textTimes.push_back(engine.bareText * 1e3);
        ratios.push_back(total / map);
    }
    const auto nodes = static_cast<double>(referenceNames.size() + compareNames.size());
    state.counters["mapMs"] = median(mapTimes);
    state.counters["buildMs"] = median(buildTimes);
    state.counters["flattenMs"] = median(flattenTimes);
    state.counters["bareTextMs"] = median(textTimes);
    state.counters["nsPerNode"] = (median(buildTimes) + median(flattenTimes)) * 1e6 / nodes;
    state.counters["ratio"] = median(ratios);
}

void shapes(benchmark::internal::Benchmark* bench) {
    bench->ArgNames({"shape", "repeated", "nodes"})->UseManualTime();
    bench->Unit(benchmark::kMillisecond)->Iterations(5);
    for (int shape = 0; shape <= static_cast<int>(bench::Shape::Chains500); ++shape) {
        for (const int nodes : {10000, 100000, 1000000}) bench->Args({shape, 0, nodes});
        bench->Args({shape, 1, 1000000});
    }
}

BENCHMARK(BuildDiffAndFlatten)->Apply(shapes);

}  // namespace

BENCHMARK_MAIN();
