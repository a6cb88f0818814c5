#include "backends/occt/read/gzip.h"

#include <algorithm>
#include <limits>
#include <new>

#include <zlib.h>

namespace occt {
namespace {

using HPS::Exchange::ImportCause;

constexpr std::size_t kPiece = std::size_t{1} << 20;
constexpr int kGzipOnly = 16 + MAX_WBITS;

class Unpacking {
public:
    explicit Unpacking(std::string_view packed) : rest_(packed) {
        if (inflateInit2(&stream_, kGzipOnly) != Z_OK) throw std::bad_alloc();
    }
    ~Unpacking() { inflateEnd(&stream_); }
    Unpacking(const Unpacking&) = delete;
    Unpacking& operator=(const Unpacking&) = delete;

    /// Unpacks one more piece behind `bytes`. False when that can't be done.
    bool next(std::string& bytes) {
        const std::size_t before = bytes.size();
        bytes.resize(before + kPiece);
        stream_.next_out = reinterpret_cast<Bytef*>(bytes.data() + before);
        stream_.avail_out = static_cast<uInt>(kPiece);
        feed();
        const int state = inflate(&stream_, Z_NO_FLUSH);
        rest_.remove_prefix(given_ - stream_.avail_in);
        bytes.resize(before + kPiece - stream_.avail_out);
        if (state == Z_MEM_ERROR) throw std::bad_alloc();
        if (state == Z_STREAM_END) return endMember();
        // Nothing more comes out of what is there: the end is missing.
        return state == Z_OK && !(rest_.empty() && stream_.avail_out != 0);
    }

    bool atEnd() const { return ended_; }
    std::size_t left() const { return rest_.size(); }
    const char* message() const { return stream_.msg; }

private:
    void feed() {
        given_ = static_cast<uInt>(
            std::min<std::size_t>(rest_.size(), std::numeric_limits<uInt>::max()));
        // The library's type lacks a const; it does not write there.
        stream_.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(rest_.data()));
        stream_.avail_in = given_;
    }

    /// Files may be packed one behind the other; padding behind the last means nothing.
    bool endMember() {
        ended_ = !isGzip(rest_);
        return ended_ || inflateReset(&stream_) == Z_OK;
    }

    std::string_view rest_;
    z_stream stream_ = {};
    uInt given_ = 0;
    bool ended_ = false;
};

}  // namespace

bool isGzip(std::string_view bytes) {
    return bytes.size() > 2 && bytes[0] == '\x1F' && bytes[1] == '\x8B' && bytes[2] == '\x08';
}

std::optional<ImportCause> unpackGzip(const std::string& name, std::string_view packed,
                                      std::uint64_t limitBytes, std::string& bytes) {
    bytes.clear();
    Unpacking unpacking(packed);
    while (!unpacking.atEnd()) {
        const bool good = unpacking.next(bytes);
        if (bytes.size() > limitBytes) {
            bytes.clear();
            return ImportCause{"too-large", name + " is too large: it unpacks into more than " +
                                                std::to_string(limitBytes) + " bytes."};
        }
        if (good) continue;
        const std::string where = "byte " + std::to_string(packed.size() - unpacking.left());
        const std::string why = unpacking.message() ? "cannot be unpacked at " + where + " (" +
                                                          unpacking.message() + ")"
                                                    : "ends at " + where + ", before its data end";
        bytes.clear();
        return ImportCause{"damaged", name + " is damaged: it " + why + "."};
    }
    return std::nullopt;
}

}  // namespace occt
