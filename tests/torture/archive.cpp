#include "tests/torture/archive.h"

#include <zlib.h>

#include <algorithm>
#include <cstdint>
#include <vector>

namespace torture {
namespace {

constexpr int kGzipWindow = 15 + 16;
constexpr int kRawWindow = -15;
constexpr std::size_t kMostBytes = std::size_t{64} << 20;

struct Inflated {
    std::string bytes;
    std::size_t consumed = 0;
};

std::optional<Inflated> inflated(const std::string& bytes, int window) {
    z_stream stream{};
    if (inflateInit2(&stream, window) != Z_OK) return std::nullopt;
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
    stream.avail_in = static_cast<uInt>(bytes.size());
    Inflated out;
    std::vector<char> chunk(1 << 16);
    int result = Z_OK;
    while (result == Z_OK && out.bytes.size() < kMostBytes) {
        stream.next_out = reinterpret_cast<Bytef*>(chunk.data());
        stream.avail_out = static_cast<uInt>(chunk.size());
        result = inflate(&stream, Z_NO_FLUSH);
        out.bytes.append(chunk.data(), chunk.size() - stream.avail_out);
        if (result == Z_OK && stream.avail_in == 0 && stream.avail_out != 0) break;
    }
    out.consumed = bytes.size() - stream.avail_in;
    inflateEnd(&stream);
    if (result != Z_STREAM_END) return std::nullopt;
    return out;
}

void putNumber(std::string& out, std::uint64_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) out += static_cast<char>(value >> (8 * i) & 0xFF);
}

std::uint64_t number(const std::string& bytes, std::size_t at, int count) {
    std::uint64_t value = 0;
    for (int i = 0; i < count && at + static_cast<std::size_t>(i) < bytes.size(); ++i) {
        value |= std::uint64_t{static_cast<unsigned char>(bytes[at + static_cast<std::size_t>(i)])}
                 << (8 * i);
    }
    return value;
}

std::uint32_t checksum(const std::string& bytes) {
    return static_cast<std::uint32_t>(
        crc32(0, reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uInt>(bytes.size())));
}

/// What local header and directory entry have in common.
std::string commonFields(const std::string& name, const std::string& bytes) {
    std::string out;
    putNumber(out, 20, 2);
    putNumber(out, 0, 2);
    putNumber(out, 0, 2);
    putNumber(out, 0, 2);
    putNumber(out, 0x21, 2);
    putNumber(out, checksum(bytes), 4);
    putNumber(out, bytes.size(), 4);
    putNumber(out, bytes.size(), 4);
    putNumber(out, name.size(), 2);
    putNumber(out, 0, 2);
    return out;
}

}  // namespace

std::string gzipped(const std::string& bytes) {
    z_stream stream{};
    deflateInit2(&stream, 6, Z_DEFLATED, kGzipWindow, 8, Z_DEFAULT_STRATEGY);
    std::string out(deflateBound(&stream, static_cast<uLong>(bytes.size())) + 64, '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
    stream.avail_in = static_cast<uInt>(bytes.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    deflate(&stream, Z_FINISH);
    out.resize(out.size() - stream.avail_out);
    deflateEnd(&stream);
    return out;
}

std::optional<std::string> gunzipped(const std::string& bytes) {
    auto out = inflated(bytes, kGzipWindow);
    if (!out || out->consumed != bytes.size()) return std::nullopt;
    return std::move(out->bytes);
}

std::string zipped(const std::map<std::string, std::string>& files) {
    std::string out;
    std::string directory;
    for (const auto& [name, bytes] : files) {
        const std::string common = commonFields(name, bytes);
        putNumber(directory, 0x02014B50, 4);
        putNumber(directory, 20, 2);
        directory += common;
        directory.append(10, '\0');
        putNumber(directory, out.size(), 4);
        directory += name;
        putNumber(out, 0x04034B50, 4);
        out += common + name + bytes;
    }
    const std::size_t start = out.size();
    out += directory;
    putNumber(out, 0x06054B50, 4);
    putNumber(out, 0, 4);
    putNumber(out, files.size(), 2);
    putNumber(out, files.size(), 2);
    putNumber(out, directory.size(), 4);
    putNumber(out, start, 4);
    putNumber(out, 0, 2);
    return out;
}

std::optional<std::map<std::string, std::string>> unzipped(const std::string& bytes) {
    const std::size_t end = bytes.rfind("PK\5\6");
    if (end == std::string::npos) return std::nullopt;
    std::map<std::string, std::string> files;
    std::size_t at = number(bytes, end + 16, 4);
    for (std::uint64_t i = number(bytes, end + 10, 2); i > 0; --i) {
        if (at > bytes.size() || bytes.compare(at, 4, "PK\1\2") != 0) return std::nullopt;
        const std::size_t nameLength = number(bytes, at + 28, 2);
        const std::string name = bytes.substr(std::min(at + 46, bytes.size()), nameLength);
        const std::size_t local = number(bytes, at + 42, 4);
        const std::size_t packed = number(bytes, at + 20, 4);
        const std::size_t data =
            local + 30 + number(bytes, local + 26, 2) + number(bytes, local + 28, 2);
        if (data + packed > bytes.size()) return std::nullopt;
        std::string content = bytes.substr(data, packed);
        if (number(bytes, at + 10, 2) != 0) {
            auto unpacked = inflated(content, kRawWindow);
            if (!unpacked) return std::nullopt;
            content = std::move(unpacked->bytes);
        }
        if (checksum(content) != number(bytes, at + 16, 4)) return std::nullopt;
        files[name] = std::move(content);
        at += 46 + nameLength + number(bytes, at + 30, 2) + number(bytes, at + 32, 2);
    }
    return files;
}

}  // namespace torture
