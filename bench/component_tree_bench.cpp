// Product structures read from text, and component trees unfolded from descriptions in memory:
// time for each occurrence must not grow with their number.

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <ctime>
#include <memory>

#include "backends/occt/step/products.h"
#include "backends/occt/tree/occt_model.h"
#include "platform/hps/component_type.h"
#include "tests/support/step_builder.h"

namespace {

enum class Shape { Flat, Nested, Chain };

constexpr std::uint32_t kParts = 100;
constexpr std::size_t kSmallest = 1000;

double processSeconds() {
    timespec now = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

occt::DescribedDefinition part(std::uint32_t number) {
    occt::DescribedDefinition out;
    out.name = "part " + std::to_string(number);
    out.unitName = "Millimeter";
    occt::DescribedItem body;
    body.type = HPS::ComponentType::BrepModel;
    body.name = "Body 1";
    out.items = {body};
    return out;
}

occt::DescribedDefinition assembly(const std::string& name) {
    occt::DescribedDefinition out;
    out.name = name;
    out.unitName = "Millimeter";
    out.isAssembly = true;
    return out;
}

constexpr occt::Placement kStep = {1, 0, 0, 1, 0, 1, 0, 2, 0, 0, 1, 3};

/// A hundred parts, and assemblies above them that unfold into about so many occurrences: all
/// below one, ten below each, or each below the one before it.
occt::Description describe(Shape shape, std::size_t occurrences) {
    occt::Description out;
    for (std::uint32_t i = 0; i < kParts; ++i) out.definitions.push_back(part(i));
    auto& all = out.definitions;
    if (shape == Shape::Flat) {
        all.push_back(assembly("top"));
        for (std::size_t i = 1; i < occurrences; ++i) {
            all.back().usages.push_back({static_cast<std::uint32_t>(i % kParts), kStep, {}});
        }
    } else if (shape == Shape::Nested) {
        std::uint32_t below = 0;
        for (std::size_t size = 1; size < occurrences; size *= 10) {
            all.push_back(assembly("level " + std::to_string(size)));
            for (std::uint32_t i = 0; i < 10; ++i) {
                all.back().usages.push_back({below == 0 ? i : below, kStep, {}});
            }
            below = static_cast<std::uint32_t>(all.size() - 1);
        }
    } else {
        std::uint32_t below = 0;
        for (std::size_t i = 1; i < occurrences; ++i) {
            all.push_back(assembly("level"));
            all.back().usages.push_back({below, kStep, {}});
            below = static_cast<std::uint32_t>(all.size() - 1);
        }
    }
    out.root = static_cast<std::uint32_t>(all.size() - 1);
    return out;
}

struct Cost {
    double seconds = 0.0;
    double bytes = 0.0;
    double occurrences = 0.0;
};

Cost build(const occt::Description& description) {
    occt::Description copy = description;
    malloc_trim(0);
    const auto held = static_cast<double>(mallinfo2().uordblks + mallinfo2().hblkhd);
    const double start = processSeconds();
    const auto model = std::make_unique<occt::OcctModel>(std::move(copy), "");
    Cost cost;
    cost.seconds = processSeconds() - start;
    cost.bytes = static_cast<double>(mallinfo2().uordblks + mallinfo2().hblkhd) - held;
    cost.occurrences =
        static_cast<double>(model->countAll(model->root(), HPS::ComponentType::ProductOccurrence));
    return cost;
}

/// Nanoseconds for each occurrence of a small model, built often enough to be measured.
double smallCost(const occt::Description& description) {
    double seconds = 0.0;
    double occurrences = 0.0;
    for (int i = 0; i < 20; ++i) {
        const Cost cost = build(description);
        seconds += cost.seconds;
        occurrences += cost.occurrences;
    }
    return seconds / occurrences * 1e9;
}

// Arguments: shape, occurrences. "ratio" is the figure to watch: time for each occurrence against
// that of a thousand occurrences of the same shape, measured in turn.
void BuildComponentTree(benchmark::State& state) {
    const auto shape = static_cast<Shape>(state.range(0));
    const occt::Description small = describe(shape, kSmallest);
    const occt::Description large = describe(shape, static_cast<std::size_t>(state.range(1)));
    std::vector<double> ratios, each, bytes;
    for (auto unused : state) {
        const double base = smallCost(small);
        const Cost cost = build(large);
        state.SetIterationTime(cost.seconds);
        each.push_back(cost.seconds / cost.occurrences * 1e9);
        bytes.push_back(cost.bytes / cost.occurrences);
        ratios.push_back(each.back() / base);
    }
    state.counters["nsPerOccurrence"] = median(each);
    state.counters["bytesPerOccurrence"] = median(bytes);
    state.counters["ratio"] = median(ratios);
}

/// A file whose one assembly uses a box so many times.
std::string textOf(std::size_t usages) {
    support::StepBuilder builder;
    const std::size_t box = builder.addBox("box", {1, 2, 3});
    const std::size_t top = builder.addAssembly("top");
    for (std::size_t i = 0; i < usages; ++i) builder.use(top, box, {2.0, 0, 0});
    return builder.write();
}

/// Nanoseconds for each usage to find the products in a text, placements included.
double readingCost(const std::string& text, int times) {
    malloc_trim(0);
    double usages = 0.0;
    const double start = processSeconds();
    for (int i = 0; i < times; ++i) {
        const occt::step::Part21 file(text);
        usages += static_cast<double>(readProducts(file).usageCount);
    }
    return (processSeconds() - start) / usages * 1e9;
}

void ReadProductStructure(benchmark::State& state) {
    const std::string small = textOf(kSmallest);
    const std::string large = textOf(static_cast<std::size_t>(state.range(0)));
    std::vector<double> ratios, each;
    for (auto unused : state) {
        const double base = readingCost(small, 10);
        each.push_back(readingCost(large, 1));
        state.SetIterationTime(each.back() * 1e-9 * static_cast<double>(state.range(0)));
        ratios.push_back(each.back() / base);
    }
    state.counters["nsPerOccurrence"] = median(each);
    state.counters["ratio"] = median(ratios);
}

BENCHMARK(ReadProductStructure)
    ->ArgName("occurrences")
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(5);

BENCHMARK(BuildComponentTree)
    ->ArgNames({"shape", "occurrences"})
    ->ArgsProduct({{0, 1, 2}, {1000, 10000, 100000, 1000000}})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(7);

}  // namespace

BENCHMARK_MAIN();
