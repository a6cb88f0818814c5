#include "tests/fuzz/bytes.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace fuzz {

std::uint8_t Bytes::byte() {
    if (rest_.empty()) return 0;
    const auto last = static_cast<std::uint8_t>(rest_.back());
    rest_.remove_suffix(1);
    return last;
}

std::uint64_t Bytes::word() {
    std::uint64_t value = 0;
    for (int i = 0; i < 8; ++i) value = value << 8 | byte();
    return value;
}

std::uint32_t Bytes::below(std::uint32_t limit) {
    if (limit <= 256) return byte() % limit;
    const std::uint32_t value = static_cast<std::uint32_t>(byte()) << 8 | byte();
    return value % limit;
}

double Bytes::real() {
    constexpr double kUsual[] = {0.0,    -0.0,   1.0,    -1.0,
                                 0.1,    25.4,   1e12,   1e300,
                                 5e-324, -1e308, 123.75, std::numeric_limits<double>::infinity()};
    const std::uint8_t kind = byte();
    if (kind < std::size(kUsual)) return kUsual[kind];
    if (kind < 128) return static_cast<double>(byte()) / 8.0 - kind;
    return std::bit_cast<double>(word());
}

std::string Bytes::text(std::uint32_t longest) {
    const std::uint32_t wanted = below(longest + 1);
    const std::size_t length = std::min<std::size_t>(wanted, rest_.size());
    const std::string taken(rest_.substr(rest_.size() - length));
    rest_.remove_suffix(length);
    return taken;
}

std::wstring Bytes::wide(std::uint32_t longest) {
    std::wstring out;
    for (std::uint32_t length = below(longest + 1); length > 0 && !rest_.empty(); --length) {
        const std::uint8_t kind = byte();
        std::uint32_t code = kind;
        if (kind == 0xFF) code = static_cast<std::uint32_t>(word());
        if (kind >= 0xF0 && kind < 0xFF) code = (kind - 0xF0U) << 16 | below(0x10000);
        if (kind >= 0xC0 && kind < 0xF0) code = below(0x10000);
        out += static_cast<wchar_t>(code);
    }
    return out;
}

std::string Bytes::damaged(std::string whole) {
    for (int hits = byte() % 4; hits > 0 && !whole.empty(); --hits) {
        const std::uint32_t drawn = below(0x10000);
        std::size_t at = drawn % whole.size();
        // Most numbers begin at multiples of eight.
        if (flag()) at &= ~std::size_t{7};
        switch (byte() % 8) {
            case 0: whole.resize(at); break;
            case 1: whole.erase(at, below(32)); break;
            case 2: whole.insert(at, text(16)); break;
            case 3: whole[at] = static_cast<char>(byte()); break;
            default: whole[at] = static_cast<char>(whole[at] + byte() % 64 - 16);
        }
    }
    return whole;
}

}  // namespace fuzz
