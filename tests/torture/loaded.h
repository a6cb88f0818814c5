#pragma once

#include <cstdint>

#include "backends/occt/model.h"

namespace torture {

/// What an import brought, each definition once.
struct Loaded {
    std::uint64_t occurrences = 0;  ///< of products, the root's included
    std::uint64_t faces = 0;        ///< with a surface
    std::uint64_t triangles = 0;    ///< of faces without one
};

Loaded loadedFrom(const occt::Model& model);

}  // namespace torture
