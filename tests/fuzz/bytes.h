#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace fuzz {

/// Turns a fuzzer's bytes into values. They are taken from the end, so that a seed can begin
/// with readable text; used up bytes count as zeros.
class Bytes {
public:
    Bytes(const std::uint8_t* data, std::size_t size)
        : rest_(reinterpret_cast<const char*>(data), size) {}

    /// What has not been taken.
    std::string_view rest() const { return rest_; }

    std::uint8_t byte();
    /// Eight bytes.
    std::uint64_t word();
    /// Below `limit`.
    std::uint32_t below(std::uint32_t limit);
    bool flag() { return (byte() & 1U) != 0; }
    /// Any number, those that are none included.
    double real();
    /// Up to `longest` of any bytes.
    std::string text(std::uint32_t longest);
    /// Up to `longest` characters; many are ASCII, some are no characters.
    std::wstring wide(std::uint32_t longest);
    /// The same bytes after up to three small changes: what was written a moment ago is damaged in
    /// places where a seed file, packed by an older layout, could not be.
    std::string damaged(std::string whole);

private:
    std::string_view rest_;
};

}  // namespace fuzz
