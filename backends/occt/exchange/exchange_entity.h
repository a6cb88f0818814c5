#pragma once

#include <cstdint>

namespace occt {

/// What a component's exchange entity points at: plain numbers, so that the exchange library
/// needs no other part of this folder. Lives as long as the model that handed it out.
struct ExchangeEntity {
    enum class Kind : std::uint32_t { ModelFile, Occurrence, Body, MeshBody };

    static constexpr std::uint64_t kMark = 0x45584348414E4745ULL;

    std::uint64_t mark = kMark;  ///< tells an entity of ours from anything else
    Kind kind = Kind::ModelFile;
    double unitMm = 1.0;  ///< length of the entity's unit
    /// Bodies only: whether the numbers below are known and the body encloses a volume.
    bool measured = false;
    double volumeMm3 = 0.0;
    double areaMm2 = 0.0;
};

}  // namespace occt
