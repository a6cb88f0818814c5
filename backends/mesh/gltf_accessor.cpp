#include "backends/mesh/gltf_accessor.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace mesh {
namespace {

constexpr std::uint64_t kInt8 = 5120;
constexpr std::uint64_t kUInt8 = 5121;
constexpr std::uint64_t kInt16 = 5122;
constexpr std::uint64_t kUInt16 = 5123;
constexpr std::uint64_t kUInt32 = 5125;
constexpr std::uint64_t kFloat = 5126;

std::size_t sizeOf(std::uint64_t type) {
    switch (type) {
        case kInt8:
        case kUInt8: return 1;
        case kInt16:
        case kUInt16: return 2;
        case kUInt32:
        case kFloat: return 4;
        default: return 0;
    }
}

template <typename Number>
Number as(const char* raw) {
    static_assert(std::endian::native == std::endian::little);
    Number number;
    std::memcpy(&number, raw, sizeof number);
    return number;
}

double realAt(const char* raw, std::uint64_t type, bool normalized) {
    switch (type) {
        case kInt8: {
            const double value = as<std::int8_t>(raw);
            return normalized ? std::max(value / 127.0, -1.0) : value;
        }
        case kUInt8: return as<std::uint8_t>(raw) / (normalized ? 255.0 : 1.0);
        case kInt16: {
            const double value = as<std::int16_t>(raw);
            return normalized ? std::max(value / 32767.0, -1.0) : value;
        }
        case kUInt16: return as<std::uint16_t>(raw) / (normalized ? 65535.0 : 1.0);
        case kUInt32: return as<std::uint32_t>(raw);
        default: return static_cast<double>(as<float>(raw));
    }
}

std::uint32_t wholeAt(const char* raw, std::uint64_t type) {
    switch (type) {
        case kUInt8: return as<std::uint8_t>(raw);
        case kUInt16: return as<std::uint16_t>(raw);
        default: return as<std::uint32_t>(raw);
    }
}

/// Elements in a buffer view from an offset on.
struct Elements {
    std::string_view bytes;
    std::size_t stride = 0;
    std::size_t size = 0;
    std::uint64_t count = 0;  ///< that are there

    const char* at(std::uint64_t i) const { return bytes.data() + i * stride; }
};

std::optional<Elements> elementsOf(const GltfFile& file, const Json& where, std::uint64_t wanted,
                                   std::size_t size) {
    const auto number = whole(where, "bufferView");
    const auto view = number ? file.view(*number) : std::nullopt;
    const auto offset = whole(where, "byteOffset").value_or(0);
    if (!view || size == 0 || offset > view->bytes.size()) return std::nullopt;
    Elements out{view->bytes.substr(offset), view->stride, size, 0};
    if (out.stride == 0) out.stride = size;
    if (out.stride < size) return std::nullopt;
    // The last one needs no room behind it.
    if (out.bytes.size() >= size) out.count = (out.bytes.size() - size) / out.stride + 1;
    out.count = std::min(out.count, wanted);
    return out;
}

/// Elements that differ from those in the buffer view, each with its number.
struct Sparse {
    Elements numbers;
    std::uint64_t numberType = 0;
    Elements values;
    std::uint64_t count = 0;
};

std::optional<Sparse> sparseOf(const GltfFile& file, const Json& accessor, std::size_t size) {
    const Json& sparse = member(accessor, "sparse");
    const auto count = whole(sparse, "count");
    if (!count) return std::nullopt;
    const Json& indices = member(sparse, "indices");
    const auto type = whole(indices, "componentType").value_or(0);
    const auto numbers = elementsOf(file, indices, *count, sizeOf(type));
    const auto values = elementsOf(file, member(sparse, "values"), *count, size);
    if (!numbers || !values || (type != kUInt8 && type != kUInt16 && type != kUInt32)) {
        return std::nullopt;
    }
    return Sparse{*numbers, type, *values, std::min(numbers->count, values->count)};
}

/// Without a buffer view all elements are zeros but the sparse ones; that many are not made of
/// nothing.
constexpr std::uint64_t kMostZeros = 10'000'000;

template <typename Value, typename Read>
std::optional<std::vector<Value>> readAll(const GltfFile& file, const Json& accessor,
                                          std::size_t size, const Read& read) {
    const auto count = whole(accessor, "count");
    if (!count) return std::nullopt;
    std::vector<Value> out;
    if (whole(accessor, "bufferView")) {
        const auto elements = elementsOf(file, accessor, *count, size);
        if (!elements) return std::nullopt;
        out.reserve(elements->count);
        for (std::uint64_t i = 0; i < elements->count; ++i) out.push_back(read(elements->at(i)));
    } else if (member(accessor, "sparse").is_object() && *count <= kMostZeros) {
        out.resize(*count);
    } else {
        return std::nullopt;
    }
    if (!member(accessor, "sparse").is_object()) return out;
    const auto sparse = sparseOf(file, accessor, size);
    if (!sparse) return std::nullopt;
    for (std::uint64_t i = 0; i < sparse->count; ++i) {
        const std::uint32_t number = wholeAt(sparse->numbers.at(i), sparse->numberType);
        if (number < out.size()) out[number] = read(sparse->values.at(i));
    }
    return out;
}

}  // namespace

std::optional<std::vector<Point>> readPoints(const GltfFile& file, std::uint64_t accessor) {
    const Json& json = element(file.root(), "accessors", accessor);
    const std::uint64_t type = whole(json, "componentType").value_or(0);
    const Json& normalized = member(json, "normalized");
    const bool isNormalized = normalized.is_boolean() && normalized.get<bool>();
    const std::size_t size = sizeOf(type);
    if (size == 0 || textOf(json, "type") != "VEC3") return std::nullopt;
    return readAll<Point>(file, json, 3 * size, [&](const char* raw) {
        return Point{realAt(raw, type, isNormalized), realAt(raw + size, type, isNormalized),
                     realAt(raw + 2 * size, type, isNormalized)};
    });
}

std::optional<std::vector<std::uint32_t>> readIndices(const GltfFile& file,
                                                      std::uint64_t accessor) {
    const Json& json = element(file.root(), "accessors", accessor);
    const std::uint64_t type = whole(json, "componentType").value_or(0);
    const bool good = type == kUInt8 || type == kUInt16 || type == kUInt32;
    if (!good || textOf(json, "type") != "SCALAR") return std::nullopt;
    return readAll<std::uint32_t>(file, json, sizeOf(type),
                                  [&](const char* raw) { return wholeAt(raw, type); });
}

std::uint64_t declaredCount(const GltfFile& file, std::uint64_t accessor) {
    return whole(element(file.root(), "accessors", accessor), "count").value_or(0);
}

}  // namespace mesh
