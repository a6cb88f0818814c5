#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/exchange/geometry_result.h"
#include "platform/hps/import_options.h"
#include "platform/hps/metadata.h"

namespace occt {

/// Three rows of a rotation and a translation in millimetres.
using Placement = std::array<double, 12>;
constexpr Placement kNoMove = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0};

/// One representation item of a definition.
struct DescribedItem {
    std::uint32_t type = 0;  ///< see platform/hps/component_type.h
    std::string name;        ///< unique among the items of the definition
    /// Where the shape stands in the binary document: the label's entry, and from its shape
    /// downwards the position of the child to take. No entry: the item has no shape.
    std::string label;
    std::vector<std::uint32_t> path;
    std::optional<bxtexchange::BodyIdentity> identity;
    bool closed = false;  ///< whether the body encloses a volume
    std::string digest;
};

struct DescribedPmi {
    std::uint32_t type = 0;
    std::string name;  ///< unique in the model
    std::vector<HPS::MetadataValue> metadata;
    std::string text = {};  ///< one line in the notation of drawings
};

struct DescribedUsage {
    std::uint32_t definition = 0;
    Placement placement = kNoMove;
    std::vector<HPS::MetadataValue> metadata;  ///< of this usage alone
};

/// A product. It has either usages of others, which makes it an assembly, or items.
struct DescribedDefinition {
    std::string name;
    double unitMm = 1.0;  ///< length of its unit, one of the known ones
    std::string unitName;
    bool isAssembly = false;
    std::vector<DescribedUsage> usages;
    std::vector<DescribedItem> items;
    std::vector<DescribedPmi> pmi;
    std::vector<HPS::MetadataValue> metadata;
};

/// What tells a whole file from one that was cut or changed: the library that reads binary
/// documents does not look.
struct FileSeal {
    std::uint64_t bytes = 0;
    std::uint64_t checksum = 0;
    bool operator==(const FileSeal&) const = default;
};

/// Seal of a file; nothing when it can't be read.
std::optional<FileSeal> sealOf(const std::string& path);

/// What an import says about a file besides its geometry: every definition once. The tree of
/// occurrences is unfolded from it. Plain data without a third party's types.
struct Description {
    double unitMm = 1.0;
    std::uint32_t root = 0;  ///< position of the root's definition
    std::vector<DescribedDefinition> definitions;
    /// Metadata of the file itself; they belong to the root occurrence.
    std::vector<HPS::MetadataValue> fileMetadata;
    std::vector<std::string> gaps;
    FileSeal document;  ///< of the binary document with the geometry
};

/// Components that the description unfolds into, the model file included; stops counting at
/// 2^62. Nothing when the definitions contain one another or refer to what is not there.
std::optional<std::uint64_t> unfoldedSize(const Description& description);

/// The description as bytes, the same ones for the same description on every machine.
std::string packDescription(const Description& description);

/// Nothing when the bytes were not made by packDescription() or are damaged.
std::optional<Description> unpackDescription(const std::string& bytes);

}  // namespace occt
