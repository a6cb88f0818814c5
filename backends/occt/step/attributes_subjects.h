#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "backends/occt/step/attributes.h"

namespace occt::step {

/// Finds the lists that what is said of an entity belongs to: of the product behind a
/// definition, its version, its shape or itself, or of a usage. `file`, `products` and `out`
/// must outlive it; `out.products` must have its size.
class AttributeSubjects {
public:
    AttributeSubjects(const Part21& file, const Products& products, Attributes& out);

    /// List of a definition, a usage, or the shape of one; null for any other entity.
    MetadataValues* listOf(std::uint64_t subject);

    /// List of the product whose shape the aspect is a part of; null for any other entity.
    MetadataValues* listOfAspect(std::uint64_t aspect);

    /// listOf(), and for a product or version the lists of all of its definitions. Empty where
    /// a product has more of them than a reader would want to see it repeated.
    std::vector<MetadataValues*> listsOf(std::uint64_t subject);

    /// Numbers of the definition, the version and the product behind a position in Products.
    struct Chain {
        std::uint64_t definition = 0;
        std::uint64_t version = 0;
        std::uint64_t product = 0;
    };
    const std::vector<Chain>& chains() const { return chains_; }

private:
    const Part21& file_;
    Attributes& out_;
    ProductFinder finder_;
    std::vector<Chain> chains_;
    std::unordered_map<std::uint64_t, std::vector<std::size_t>> shared_;
};

}  // namespace occt::step
