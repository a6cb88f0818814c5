#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "backends/occt/step/part21.h"
#include "backends/occt/step/products.h"
#include "platform/hps/metadata.h"

namespace occt::step {

using MetadataValues = std::vector<HPS::MetadataValue>;

/// What a file says about itself and its products in words; docs/07-pmi.md lists the names.
/// Lists are sorted by name and value, so that the order of the file's entities plays no part.
/// No control characters, no numbers of entities and nothing that a writer makes up per export.
struct Attributes {
    MetadataValues file;                                       ///< the header's fields
    std::vector<MetadataValues> products;                      ///< by position in Products
    std::unordered_map<std::uint64_t, MetadataValues> usages;  ///< by the usage's number
};

/// Reads the header, the products' own fields, their life cycle, colours and layers, the
/// properties that users gave to products and usages, and the numbers that writers leave for
/// checking readers.
Attributes readAttributes(const Part21& file, const Products& products);

/// Design features of each product as values named "Feature".
std::vector<MetadataValues> readFeatures(const Part21& file, const Products& products);

/// Shortest text of a number that reads back as the same one.
std::string numberText(double number);

/// Sorts by name, kind of value and value.
void sortValues(MetadataValues& values);

}  // namespace occt::step
