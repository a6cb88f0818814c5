#include "backends/occt/document/description.h"

#include <algorithm>

namespace occt {

namespace {
constexpr std::uint64_t kMany = std::uint64_t{1} << 62;
}

std::optional<std::uint64_t> unfoldedSize(const Description& description) {
    const auto& all = description.definitions;
    if (description.root >= all.size()) return std::nullopt;
    std::vector<std::size_t> open(all.size(), 0);
    for (const DescribedDefinition& definition : all) {
        for (const DescribedUsage& usage : definition.usages) {
            if (usage.definition >= all.size()) return std::nullopt;
            ++open[usage.definition];
        }
    }
    std::vector<std::size_t> order;
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (open[i] == 0) order.push_back(i);
    }
    for (std::size_t next = 0; next < order.size(); ++next) {
        for (const DescribedUsage& usage : all[order[next]].usages) {
            if (--open[usage.definition] == 0) order.push_back(usage.definition);
        }
    }
    if (order.size() != all.size()) return std::nullopt;
    std::vector<std::uint64_t> below(all.size(), 0);
    std::uint64_t pmi = 0;
    for (auto next = order.rbegin(); next != order.rend(); ++next) {
        const DescribedDefinition& definition = all[*next];
        // The occurrence itself, and for a leaf its part definition.
        std::uint64_t sum = (definition.isAssembly ? 1U : 2U) + definition.items.size();
        for (const DescribedUsage& usage : definition.usages) {
            sum = std::min(kMany, sum + below[usage.definition]);
        }
        below[*next] = sum;
        pmi += definition.pmi.size();
    }
    return std::min(kMany, 1 + pmi + below[description.root]);
}

}  // namespace occt
