#include "backends/occt/step/attributes_subjects.h"

namespace occt::step {
namespace {

// Definitions of one product to which its own properties are given; files have a handful.
constexpr std::size_t kMostDefinitions = 64;

std::uint64_t referenceOf(const Part21& file, std::uint64_t id, std::size_t index) {
    const Instance* const instance = id != 0 ? file.find(id) : nullptr;
    if (instance == nullptr) return 0;
    const auto records = file.read(*instance);
    return records.empty() ? 0 : records.front().reference(index);
}

}  // namespace

AttributeSubjects::AttributeSubjects(const Part21& file, const Products& products, Attributes& out)
    : file_(file), out_(out), finder_(file, products) {
    for (std::size_t i = 0; i < products.products.size(); ++i) {
        Chain chain;
        chain.definition = products.products[i].instance;
        chain.version = referenceOf(file, chain.definition, 2);
        chain.product = referenceOf(file, chain.version, 2);
        if (chain.version != 0) shared_[chain.version].push_back(i);
        if (chain.product != 0) shared_[chain.product].push_back(i);
        chains_.push_back(chain);
    }
}

MetadataValues* AttributeSubjects::listOf(std::uint64_t subject) {
    if (const auto product = finder_.find(subject)) return &out_.products[*product];
    if (file_.read(subject, "NEXT_ASSEMBLY_USAGE_OCCURRENCE")) return &out_.usages[subject];
    const auto shape = file_.read(subject, "PRODUCT_DEFINITION_SHAPE");
    const std::uint64_t usage = shape ? shape->reference(2) : 0;
    if (usage != 0 && file_.read(usage, "NEXT_ASSEMBLY_USAGE_OCCURRENCE")) {
        return &out_.usages[usage];
    }
    return nullptr;
}

MetadataValues* AttributeSubjects::listOfAspect(std::uint64_t aspect) {
    const auto record = file_.read(aspect, "SHAPE_ASPECT");
    return record ? listOf(record->reference(2)) : nullptr;
}

std::vector<MetadataValues*> AttributeSubjects::listsOf(std::uint64_t subject) {
    if (MetadataValues* const list = listOf(subject)) return {list};
    std::vector<MetadataValues*> lists;
    const auto found = shared_.find(subject);
    if (found == shared_.end() || found->second.size() > kMostDefinitions) return lists;
    for (const std::size_t product : found->second) lists.push_back(&out_.products[product]);
    return lists;
}

}  // namespace occt::step
