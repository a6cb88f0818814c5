// Attributes of parts and bills of materials of two sides in memory, against the time that one
// hash map takes to hold the same texts. Linear time shows as an even "nsPerText" over the sizes.

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <ctime>
#include <unordered_map>

#include "diff/bom_data_loader.h"
#include "diff/part_attributes.h"
#include "tests/support/memory_model.h"

namespace {

using extract::PartAttributes;
using Parts = std::vector<PartAttributes>;

constexpr std::size_t kAttributes = 20;
constexpr const char* kKeys[kAttributes] = {
    "Material",    "Mass",     "Density", "Finish",  "Author",  "Checked by", "Approved by",
    "Part number", "Revision", "Status",  "Project", "Vendor",  "Cost",       "Cost centre",
    "Units",       "Scale",    "Weight",  "Colour",  "Layer 1", "Description"};

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

// Every name stands for `instances` records; one part in a hundred has another value.
HPS::CADModel makeModel(std::size_t records, std::size_t instances, bool changed) {
    support::MemoryModel::Builder builder;
    const auto top = builder.addOccurrence(0, "top");
    for (std::size_t i = 0; i < records; ++i) {
        const auto part = builder.addOccurrence(top, "Part " + std::to_string(i / instances));
        builder.add(part, HPS::ComponentType::PartDefinition, "");
        for (std::size_t k = 0; k < kAttributes; ++k) {
            const bool other = changed && k == 0 && i % 100 == 0;
            builder.addMetadata(part,
                                {kKeys[k], (other ? "other " : "value ") + std::to_string(k), 0});
        }
    }
    return HPS::CADModel(builder.finish());
}

double timeMap(const Parts& reference, const Parts& compare) {
    malloc_trim(0);
    const double start = processSeconds();
    std::unordered_map<std::wstring, std::size_t> map;
    for (const Parts* side : {&reference, &compare}) {
        for (const PartAttributes& part : *side) {
            ++map[part.name];
            for (const auto& entry : part.attributes) ++map[entry.key];
        }
    }
    benchmark::DoNotOptimize(map.size());
    return processSeconds() - start;
}

// Arguments: records on each side, records to a name. The time of the benchmark is that of the
// comparison; "ratio" relates it to the map.
void CompareParts(benchmark::State& state) {
    const auto records = static_cast<std::size_t>(state.range(0));
    const auto instances = static_cast<std::size_t>(state.range(1));
    Parts reference, compare;
    double extraction = 0.0;
    for (Parts* side : {&reference, &compare}) {
        const HPS::CADModel model = makeModel(records, instances, side == &compare);
        const double begin = processSeconds();
        extract::ExtractComponentAttributes(model, *side);
        extraction += processSeconds() - begin;
    }
    std::vector<double> compareTimes, mapTimes;
    for (auto unused : state) {
        mapTimes.push_back(timeMap(reference, compare));
        const double begin = processSeconds();
        diff::ComparePartAttributes(reference, compare);
        compareTimes.push_back(processSeconds() - begin);
        state.SetIterationTime(compareTimes.back());
    }
    const auto texts = static_cast<double>(2 * records * (kAttributes + 1));
    state.counters["extractMs"] = extraction * 1e3;
    state.counters["mapMs"] = median(mapTimes) * 1e3;
    state.counters["nsPerText"] = median(compareTimes) * 1e9 / texts;
    state.counters["ratio"] = median(compareTimes) / median(mapTimes);
}
BENCHMARK(CompareParts)
    ->ArgNames({"records", "instances"})
    ->Args({1000, 1})
    ->Args({10000, 1})
    ->Args({100000, 1})
    ->Args({100000, 1000})
    ->Args({100000, 100000})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(5);

HPS::CADModel makeParts(std::size_t records, std::size_t instances) {
    support::MemoryModel::Builder builder;
    for (std::size_t i = 0; i < records; ++i) {
        const auto part = builder.addOccurrence(0, "Part " + std::to_string(i / instances));
        builder.add(part, HPS::ComponentType::PartDefinition, "");
    }
    return HPS::CADModel(builder.finish());
}

void CompareBills(benchmark::State& state) {
    const auto records = static_cast<std::size_t>(state.range(0));
    const auto instances = static_cast<std::size_t>(state.range(1));
    const HPS::CADModel reference = makeParts(records, instances);
    const HPS::CADModel compare = makeParts(records, instances);
    std::vector<double> times;
    for (auto unused : state) {
        const double begin = processSeconds();
        diff::BOMDataLoader loader;
        loader.LoadAndCompareBOM(reference, compare);
        times.push_back(processSeconds() - begin);
        state.SetIterationTime(times.back());
    }
    state.counters["nsPerPart"] = median(times) * 1e9 / static_cast<double>(2 * records);
}
BENCHMARK(CompareBills)
    ->ArgNames({"records", "instances"})
    ->Args({10000, 1})
    ->Args({100000, 1})
    ->Args({100000, 1000})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(5);

}  // namespace

BENCHMARK_MAIN();
