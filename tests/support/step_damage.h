#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "tests/support/step_text.h"

/// Ways to spoil a good STEP file; the same seed spoils it in the same way everywhere.
namespace support {

/// The first `percent` per cent of the bytes.
std::string truncated(std::string_view bytes, unsigned percent);

/// `count` single bits turned over at places that follow from `seed`.
std::string withFlippedBits(std::string_view bytes, std::size_t count, std::uint64_t seed);

/// `count` Cartesian points get `number` as their first coordinate, as written.
std::string withCoordinate(const StepText& text, std::string_view number, std::size_t count,
                           std::uint64_t seed);

/// `count` references point to entities of other kinds or to none.
std::string withWrongReferences(const StepText& text, std::size_t count, std::uint64_t seed);

}  // namespace support
