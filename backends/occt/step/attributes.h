#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "backends/occt/step/part21.h"
#include "backends/occt/step/products.h"
#include "platform/hps/metadata.h"

namespace occt::step {

using MetadataValues = std::vector<HPS::MetadataValue>;

/// What a file says about itself and its products in words. Lists are sorted by name and value,
/// so that the order of the file's entities plays no part.
struct Attributes {
    MetadataValues file;                                       ///< the header's fields
    std::vector<MetadataValues> products;                      ///< by position in Products
    std::unordered_map<std::uint64_t, MetadataValues> usages;  ///< by the usage's number
};

/// Reads the header, the products' own fields and the properties that users gave to products
/// and usages. Properties by which writers check readers are left out.
Attributes readAttributes(const Part21& file, const Products& products);

/// Design features of each product as values named "Feature".
std::vector<MetadataValues> readFeatures(const Part21& file, const Products& products);

/// Shortest text of a number that reads back as the same one.
std::string numberText(double number);

}  // namespace occt::step
