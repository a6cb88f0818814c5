#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "backends/occt/step/part21.h"
#include "backends/occt/step/placements.h"

namespace occt::step {

/// One use of a product in another.
struct ProductUsage {
    std::size_t product = 0;       ///< position in Products::products
    Matrix placement = kIdentity;  ///< of the used product in the using one; millimetres
    std::uint64_t instance = 0;    ///< number of the usage in the file
    std::string id;                ///< as the author numbered it
    std::string name;
    bool placed = false;  ///< whether the file gives a placement that could be read
};

/// One product definition.
struct Product {
    std::uint64_t instance = 0;  ///< number of the product definition in the file
    std::string name;            ///< of the product, else its identifier; empty for blanks
    std::string id;
    std::string description;
    double unitMm = 1.0;
    std::string version;
    std::vector<std::uint64_t> representations;
    /// Representations that the file declares to be others of the same shape.
    std::vector<std::uint64_t> relatedRepresentations;
    std::vector<ProductUsage> usages;
    bool isUsed = false;
    /// Name of another file that holds the product, as written; empty when there is none.
    std::string fileName;
};

/// The product structure as the text of a file states it. No geometry is looked at.
struct Products {
    std::vector<Product> products;
    std::vector<std::size_t> roots;  ///< products that no other uses; those with content only
    /// Mapped items that place a product in another one, by their numbers: they stand for
    /// usages and are no geometry of their own.
    std::vector<std::uint64_t> usageItems;
    std::size_t usageCount = 0;
    std::size_t brokenUsages = 0;  ///< usages whose product can't be found

    /// Products that contain themselves, outermost first and the first one again at the end;
    /// empty for a proper structure.
    std::vector<std::size_t> cycle() const;

    /// Occurrences that the structure unfolds into, the roots included. Stops counting at
    /// 2^62. Only for a structure without a cycle.
    std::uint64_t occurrenceCount() const;
};

/// Finds the product that an entity belongs to through its shape.
class ProductFinder {
public:
    ProductFinder(const Part21& file, const Products& products);

    /// Product that the entity with that number refers to, directly or through a few entities
    /// in between (a shape aspect, a shape); nothing when there is none. Not from two threads.
    std::optional<std::size_t> productOf(std::uint64_t entity) const;

    /// Product by the number of its definition or of the definition's shape.
    std::optional<std::size_t> find(std::uint64_t definition) const;

private:
    const std::vector<std::uint64_t>& referencesOf(std::uint64_t entity) const;

    const Part21& file_;
    std::unordered_map<std::uint64_t, std::size_t> products_;
    /// What was asked before; many entities lead to the same few.
    mutable std::unordered_map<std::uint64_t, std::vector<std::uint64_t>> references_;
};

/// Reads the product structure. Usages below one product stand in an order that depends on
/// their content alone: by the author's numbers, then names, then placements.
Products readProducts(const Part21& file);

/// Compares texts so that numbers in them count by value: "2" stands before "10".
bool naturalLess(const std::string& a, const std::string& b);

}  // namespace occt::step
