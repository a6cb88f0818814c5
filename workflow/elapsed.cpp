#include "workflow/elapsed.h"

#include <charconv>

#include "platform/os/utf8.h"
#include "resources/string_ids.h"
#include "resources/string_table.h"

namespace workflow {
namespace {

constexpr std::uint64_t kMsPerSecond = 1000;
constexpr int kDecimals = 2;

// std::to_chars writes a point in every locale.
std::wstring secondsText(float seconds) {
    char buffer[64];
    const auto end =
        std::to_chars(buffer, buffer + sizeof buffer, seconds, std::chars_format::fixed, kDecimals);
    return os::toWide(std::string_view(buffer, static_cast<std::size_t>(end.ptr - buffer)));
}

}  // namespace

std::wstring FormatElapsed(std::uint64_t startTicksMs, std::uint64_t endTicksMs) {
    const std::uint64_t elapsedMs = endTicksMs - startTicksMs;
    const std::wstring in = resources::text(resources::id::kElapsedIn);
    if (elapsedMs >= kMsPerSecond) {
        return in + secondsText(static_cast<float>(elapsedMs) / 1000.0F) +
               resources::text(resources::id::kSeconds);
    }
    return in + std::to_wstring(elapsedMs) + resources::text(resources::id::kMilliseconds);
}

}  // namespace workflow
