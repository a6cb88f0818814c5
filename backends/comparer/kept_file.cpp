#include "backends/comparer/kept_file.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <fstream>
#include <ios>
#include <random>
#include <system_error>
#include <vector>

namespace comparer {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kPieceBytes = std::size_t{1} << 20;

std::string lastError() {
    return errno == 0 ? "it cannot be written" : std::generic_category().message(errno);
}

/// The bytes of one file at the end of another, which is there or is made.
std::string copyBytes(const fs::path& from, const fs::path& to, std::ios::openmode mode) {
    errno = 0;
    std::ifstream in(from, std::ios::binary);
    if (!in) return lastError();
    std::ofstream out(to, std::ios::binary | mode);
    std::vector<char> piece(kPieceBytes);
    // Handing the whole buffer over in one call would hide that only a part could be written.
    while (in && out) {
        in.read(piece.data(), static_cast<std::streamsize>(piece.size()));
        out.write(piece.data(), in.gcount());
    }
    out.close();
    return out && in.eof() ? std::string() : lastError();
}

/// A name that nobody can know before, so that nobody can have put a link there.
fs::path nameBeside(const fs::path& target) {
    std::random_device device;
    const std::uint64_t value = (std::uint64_t{device()} << 32) | device();
    std::array<char, 16> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value, 16).ptr;
    return target.parent_path() / (".bextora-" + std::string(digits.data(), end));
}

/// Whether an existing file may be changed by this user.
std::string refuseExisting(const fs::path& target) {
    errno = 0;
    return std::ofstream(target, std::ios::binary | std::ios::app) ? std::string() : lastError();
}

}  // namespace

std::string placeFile(const fs::path& made, const fs::path& target) {
    std::error_code error;
    const fs::path real = fs::exists(target, error) ? fs::canonical(target, error) : target;
    if (error) return error.message();
    const fs::file_status status = fs::status(real, error);
    if (fs::is_directory(status)) return "it is a folder";
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        return copyBytes(made, real, std::ios::out);
    }
    if (fs::exists(status)) {
        if (std::string why = refuseExisting(real); !why.empty()) return why;
    }
    const fs::path fresh = nameBeside(real);
    std::string why = copyBytes(made, fresh, std::ios::trunc);
    error.clear();
    if (why.empty() && fs::exists(status)) fs::permissions(fresh, status.permissions(), error);
    if (why.empty() && !error) fs::rename(fresh, real, error);
    if (why.empty() && error) why = error.message();
    std::error_code ignored;
    if (!why.empty()) fs::remove(fresh, ignored);
    return why;
}

}  // namespace comparer
