#include "backends/mesh/gltf_file.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "backends/mesh/recognise.h"
#include "backends/mesh/text.h"
#include "backends/mesh/uri.h"

namespace mesh {
namespace {

constexpr std::size_t kGlbHeader = 12;
constexpr std::size_t kChunkHeader = 8;
constexpr std::uint32_t kJsonChunk = 0x4E4F534A;
constexpr std::uint32_t kBinaryChunk = 0x004E4942;

std::uint32_t wordAt(std::string_view bytes, std::size_t at) {
    std::uint32_t word = 0;
    std::memcpy(&word, bytes.data() + at, sizeof word);
    return word;
}

/// Extensions that say nothing about shapes, and those that are understood here.
bool isHarmless(const std::string& extension) {
    constexpr std::string_view kPrefixes[] = {"KHR_materials_", "KHR_texture_", "KHR_lights_",
                                              "EXT_texture_",   "KHR_xmp",      "KHR_animation_",
                                              "EXT_lights_",    "MSFT_texture_"};
    if (extension == "KHR_mesh_quantization") return true;
    return std::any_of(std::begin(kPrefixes), std::end(kPrefixes),
                       [&](std::string_view prefix) { return extension.starts_with(prefix); });
}

}  // namespace

const Json& member(const Json& object, const char* name) {
    static const Json none;
    if (!object.is_object()) return none;
    const auto found = object.find(name);
    return found == object.end() ? none : *found;
}

const Json& element(const Json& object, const char* list, std::uint64_t index) {
    const Json& all = member(object, list);
    static const Json none;
    return all.is_array() && index < all.size() ? all[index] : none;
}

std::size_t sizeOfList(const Json& object, const char* list) {
    const Json& all = member(object, list);
    return all.is_array() ? all.size() : 0;
}

std::optional<std::uint64_t> whole(const Json& object, const char* name) {
    const Json& value = member(object, name);
    if (value.is_number_unsigned()) return value.get<std::uint64_t>();
    // Some writers put whole numbers as 3.0.
    if (!value.is_number_float()) return std::nullopt;
    const double real = value.get<double>();
    if (!(real >= 0.0 && real <= 9e15)) return std::nullopt;
    const auto number = static_cast<std::uint64_t>(real);
    return static_cast<double>(number) == real ? std::optional(number) : std::nullopt;
}

std::string textOf(const Json& object, const char* name) {
    const Json& value = member(object, name);
    return value.is_string() ? toUtf8(value.get_ref<const std::string&>()) : std::string();
}

GltfFile::GltfFile(std::string_view bytes) {
    std::string_view json = bytes;
    if (isGlb(bytes)) {
        json = takeChunks(bytes);
        if (refusal_) return;
    }
    root_ = Json::parse(json.begin(), json.end(), nullptr, false);
    if (root_.is_discarded()) {
        std::size_t line = 1;
        try {
            const Json again = Json::parse(json.begin(), json.end());
        } catch (const Json::parse_error& error) {
            line = TextReader(json).lineOf(error.byte);
        } catch (const Json::exception&) {
            // A number that no number type holds; where, it does not say.
            refuse("damaged", "is damaged: its JSON cannot be read.");
            return;
        }
        refuse("damaged",
               "is damaged: line " + std::to_string(line) + " of its JSON cannot be read.");
        return;
    }
    check();
}

void GltfFile::refuse(const char* code, std::string text) {
    refusal_ = Refusal{code, std::move(text)};
}

std::string_view GltfFile::takeChunks(std::string_view bytes) {
    if (bytes.size() < kGlbHeader + kChunkHeader) {
        refuse("damaged", "is damaged: it ends before its first chunk.");
        return {};
    }
    if (wordAt(bytes, 4) != 2) {
        refuse("not-this-format", "is a GLB file of version " + std::to_string(wordAt(bytes, 4)) +
                                      "; only version 2 is read.");
        return {};
    }
    const std::uint64_t declared = wordAt(bytes, 8);
    if (declared != bytes.size()) {
        gaps_.push_back("The file has " + std::to_string(bytes.size()) + " bytes and declares " +
                        std::to_string(declared) + ".");
    }
    std::string_view json;
    std::string_view rest =
        bytes.substr(0, std::max<std::size_t>(declared, kGlbHeader)).substr(kGlbHeader);
    for (bool first = true; rest.size() >= kChunkHeader; first = false) {
        const std::size_t length = wordAt(rest, 0);
        const std::uint32_t type = wordAt(rest, 4);
        rest.remove_prefix(kChunkHeader);
        const std::string_view chunk = rest.substr(0, length);
        rest.remove_prefix(chunk.size());
        if (first && (type != kJsonChunk || chunk.size() < length)) {
            refuse("damaged", "is damaged: its JSON chunk is missing or cut off.");
            return {};
        }
        if (first) json = chunk;
        if (type == kBinaryChunk && !hasBinary_) {
            binary_ = chunk;
            hasBinary_ = true;
        }
        if (chunk.size() < length) {
            gaps_.push_back("Its last chunk has " + std::to_string(chunk.size()) + " of " +
                            std::to_string(length) + " bytes.");
        }
    }
    return json;
}

void GltfFile::check() {
    const Json& asset = member(root_, "asset");
    const std::string version = textOf(asset, "version");
    if (!asset.is_object()) {
        refuse("not-this-format", "is no glTF file: its JSON describes no asset.");
        return;
    }
    if (version.empty()) warnings_.push_back("It does not say its version; it was read as 2.0.");
    const std::string least = textOf(asset, "minVersion");
    if ((!version.empty() && !version.starts_with("2.")) || (!least.empty() && least != "2.0")) {
        refuse("not-this-format", "is glTF of version " + (least.empty() ? version : least) +
                                      "; only version 2.0 is read.");
        return;
    }
    for (std::size_t i = 0; i < sizeOfList(root_, "extensionsRequired"); ++i) {
        const Json& name = element(root_, "extensionsRequired", i);
        if (!name.is_string() || isHarmless(name.get<std::string>())) continue;
        gaps_.push_back("It requires the extension " + toUtf8(name.get<std::string>()) +
                        ", which is not read.");
    }
}

void GltfFile::loadBuffers(const Beside& beside) {
    const std::size_t count = sizeOfList(root_, "buffers");
    buffers_.resize(count);
    for (std::uint64_t i = 0; i < count; ++i) loadBuffer(i, beside);
}

void GltfFile::loadBuffer(std::uint64_t index, const Beside& beside) {
    const Json& buffer = element(root_, "buffers", index);
    const Json& uri = member(buffer, "uri");
    Buffer& out = buffers_[index];
    const std::string number = "Buffer " + std::to_string(index);
    if (!uri.is_string()) {
        const bool inside = index == 0 && hasBinary_;
        if (inside) out.bytes = binary_;
        if (!inside) gaps_.push_back(number + " has no data.");
    } else if (const auto& text = uri.get_ref<const std::string&>(); text.starts_with("data:")) {
        auto data = decodeDataUri(text);
        if (!data) gaps_.push_back(number + " holds data that cannot be decoded.");
        if (data) out.own = std::move(*data);
        out.bytes = out.own;
    } else {
        const auto path = pathBelow(text);
        const std::string* const found = path && beside ? beside(*path) : nullptr;
        if (found != nullptr) out.bytes = *found;
        const std::string name = toUtf8(text.substr(0, 200));
        if (!path) {
            gaps_.push_back(number + " stands in \"" + name +
                            "\", which is not below the file's folder; it was not read.");
        } else if (found == nullptr) {
            gaps_.push_back(number + " stands in \"" + name + "\", which cannot be read.");
        }
    }
    const auto declared = whole(buffer, "byteLength").value_or(0);
    if (!out.bytes.empty() && out.bytes.size() < declared) {
        gaps_.push_back(number + " has " + std::to_string(out.bytes.size()) + " of " +
                        std::to_string(declared) + " bytes.");
    }
    if (out.bytes.size() > declared) out.bytes = out.bytes.substr(0, declared);
}

std::optional<GltfFile::View> GltfFile::view(std::uint64_t index) const {
    const Json& view = element(root_, "bufferViews", index);
    const auto buffer = whole(view, "buffer");
    const auto length = whole(view, "byteLength");
    const auto offset = whole(view, "byteOffset").value_or(0);
    if (!buffer || !length || *buffer >= buffers_.size()) return std::nullopt;
    const std::string_view bytes = buffers_[*buffer].bytes;
    if (offset > bytes.size()) return std::nullopt;
    return View{bytes.substr(offset, *length), whole(view, "byteStride").value_or(0)};
}

std::vector<std::string> GltfFile::filesBeside() const {
    std::vector<std::string> out;
    for (std::size_t i = 0; i < sizeOfList(root_, "buffers"); ++i) {
        const Json& uri = member(element(root_, "buffers", i), "uri");
        if (!uri.is_string() || uri.get_ref<const std::string&>().starts_with("data:")) continue;
        const auto path = pathBelow(uri.get_ref<const std::string&>());
        if (path && std::find(out.begin(), out.end(), *path) == out.end()) out.push_back(*path);
    }
    return out;
}

}  // namespace mesh
