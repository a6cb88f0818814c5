#include "backends/mesh/recognise.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "backends/mesh/scene.h"
#include "backends/mesh/text.h"

namespace mesh {
namespace {

/// Statements that an OBJ file begins with, comments aside.
constexpr std::string_view kFirst[] = {"v", "vt", "vn", "o", "g", "f", "s", "mtllib", "usemtl"};

}  // namespace

bool isBinaryStl(std::string_view bytes) {
    constexpr std::size_t kHeader = 80;
    constexpr std::size_t kTriangle = 50;
    std::uint32_t count = 0;
    if (bytes.size() < kHeader + sizeof count) return false;
    std::memcpy(&count, bytes.data() + kHeader, sizeof count);
    return bytes.size() == kHeader + sizeof count + count * kTriangle;
}

bool isTextStl(std::string_view bytes) {
    TextReader text(bytes);
    if (!sameWord(text.word(), "solid")) return false;
    text.restOfLine();
    const std::string_view next = text.word();
    return next.empty() || sameWord(next, "facet") || sameWord(next, "color") ||
           sameWord(next, "endsolid") || sameWord(next, "end");
}

bool isObj(std::string_view bytes) {
    TextReader text(bytes.substr(0, std::min<std::size_t>(bytes.size(), std::size_t{1} << 16)));
    while (!text.atEnd()) {
        const std::string_view word = text.wordInLine();
        if (!word.empty() && !word.starts_with('#')) {
            const bool known =
                std::find(std::begin(kFirst), std::end(kFirst), word) != std::end(kFirst);
            if (!known || word.size() > 1) return known;
            // One letter is little: something has to follow it.
            return !text.wordInLine().empty() || word == "g";
        }
        text.skipLine();
    }
    return false;
}

bool isPly(std::string_view bytes) {
    return bytes.starts_with("ply\n") || bytes.starts_with("ply\r");
}

bool isGlb(std::string_view bytes) {
    return bytes.starts_with("glTF");
}

bool isGltf(std::string_view bytes) {
    if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
    const std::size_t begin = bytes.find_first_not_of(" \t\r\n");
    return begin != bytes.npos && bytes[begin] == '{' && bytes.find("\"asset\"") != bytes.npos;
}

bool isThreeMf(std::string_view bytes) {
    // Names of files stand as they are in the directory at the end of the archive.
    return bytes.starts_with("PK\x03\x04") && (bytes.find(".model") != bytes.npos);
}

bool is(Format format, std::string_view bytes) {
    switch (format) {
        case Format::Stl: return isBinaryStl(bytes) || isTextStl(bytes);
        case Format::Obj: return isObj(bytes);
        case Format::Ply: return isPly(bytes);
        case Format::Gltf: return isGlb(bytes) || isGltf(bytes);
        default: return isThreeMf(bytes);
    }
}

std::optional<Format> recognise(std::string_view bytes) {
    for (const Format format :
         {Format::Ply, Format::Gltf, Format::ThreeMf, Format::Stl, Format::Obj}) {
        if (is(format, bytes)) return format;
    }
    return std::nullopt;
}

}  // namespace mesh
