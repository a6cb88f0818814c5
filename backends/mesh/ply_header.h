#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "backends/mesh/scene.h"

namespace mesh {

enum class PlyType { Int8, UInt8, Int16, UInt16, Int32, UInt32, Float, Double };

std::size_t sizeOf(PlyType type);

struct PlyProperty {
    std::string name;
    PlyType type = PlyType::Float;
    bool isList = false;
    PlyType countType = PlyType::UInt8;  ///< of a list
};

struct PlyElement {
    std::string name;
    std::uint64_t count = 0;  ///< as declared
    std::vector<PlyProperty> properties;
    std::size_t lineNumber = 0;

    /// Position of a property by one of two names; the number of properties when it has none.
    std::size_t find(std::string_view wanted, std::string_view other = {}) const;
};

struct PlyHeader {
    enum class Encoding { Text, LittleEndian, BigEndian };
    Encoding encoding = Encoding::Text;
    std::vector<PlyElement> elements;
    std::vector<Metadata> metadata;
    std::size_t length = 0;  ///< bytes before the data
    std::size_t lines = 0;   ///< lines before the data
};

/// Reads a header. False when it is damaged; `error` is then a sentence that begins after the
/// file's name.
bool readPlyHeader(std::string_view bytes, PlyHeader& header, std::string& error);

}  // namespace mesh
