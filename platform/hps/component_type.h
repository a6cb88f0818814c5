#pragma once

#include <cstdint>

namespace HPS::ComponentType {

/// Type codes of components. A code whose low byte is 0 is a mask: it selects every type that
/// has all of its bits set.
constexpr std::uint32_t ModelFile = 0x1001;
constexpr std::uint32_t ProductOccurrence = 0x1002;
constexpr std::uint32_t PartDefinition = 0x1003;
constexpr std::uint32_t RepresentationItemMask = 0x3000;
constexpr std::uint32_t BrepModel = 0x3001;
constexpr std::uint32_t Curve = 0x3002;
constexpr std::uint32_t Direction = 0x3003;
constexpr std::uint32_t Plane = 0x3004;
constexpr std::uint32_t PointSet = 0x3005;
constexpr std::uint32_t PolyBrepModel = 0x3006;
constexpr std::uint32_t CoordinateSystem = 0x3007;
constexpr std::uint32_t PmiMask = 0x11000;
constexpr std::uint32_t PmiDimension = 0x11001;
constexpr std::uint32_t PmiTolerance = 0x11002;
constexpr std::uint32_t PmiDatum = 0x11003;
constexpr std::uint32_t PmiNote = 0x11004;
constexpr std::uint32_t PmiDatumTarget = 0x11005;
constexpr std::uint32_t PmiSurfaceFinish = 0x11006;
constexpr std::uint32_t PmiWeld = 0x11007;
/// Something that is drawn and stands for nothing else in the file.
constexpr std::uint32_t PmiAnnotation = 0x11008;
constexpr std::uint32_t PmiView = 0x11009;

/// Whether `type` is selected by `wanted`, an exact code or a mask.
constexpr bool selects(std::uint32_t wanted, std::uint32_t type) {
    return (wanted & 0xFFU) == 0 ? (type & wanted) == wanted : type == wanted;
}

}  // namespace HPS::ComponentType
