#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace torture {

/// What a file says it holds, counted here from its bytes and by nothing that the readers use.
/// Empty where the format does not say, or the bytes no longer let it be seen.
struct Declared {
    std::optional<std::uint64_t> usages;     ///< of products in products
    std::optional<std::uint64_t> faces;      ///< of exact bodies, each once
    std::optional<std::uint64_t> triangles;  ///< of meshes, each mesh once, flat ones left out
    /// True for a count that bytes elsewhere in the file can lower: a triangle whose corners
    /// became one point is none, but is only told by decoding everything.
    bool isUpperBound = false;
    /// A container that is not whole: nothing that was read from it is complete.
    bool isBroken = false;
};

/// `kind` is one of the kinds of bases.h.
Declared declaredIn(const std::string& kind, const std::string& bytes);

/// The single formats.
Declared declaredInStep(const std::string& bytes);
Declared declaredInIges(const std::string& bytes);
Declared declaredInBrep(const std::string& bytes);
Declared declaredInStl(const std::string& bytes);
Declared declaredInObj(const std::string& bytes);
Declared declaredInPly(const std::string& bytes);
Declared declaredInGltf(const std::string& bytes);
Declared declaredIn3mf(const std::string& bytes);

}  // namespace torture
