#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "backends/mesh/scene.h"

namespace mesh {

using Json = nlohmann::json;

/// A member of an object; null JSON when there is none.
const Json& member(const Json& object, const char* name);
/// An element of a member that is a list; null JSON when there is none.
const Json& element(const Json& object, const char* list, std::uint64_t index);
std::size_t sizeOfList(const Json& object, const char* list);
/// A member that is a whole number, at least 0.
std::optional<std::uint64_t> whole(const Json& object, const char* name);
std::string textOf(const Json& object, const char* name);

/// A glTF file taken apart: its JSON and the bytes of its buffers.
class GltfFile {
public:
    /// `bytes` must outlive this. Sets refusal() when there is nothing to read.
    explicit GltfFile(std::string_view bytes);

    const Json& root() const { return root_; }
    const std::optional<Refusal>& refusal() const { return refusal_; }
    std::vector<std::string>& gaps() { return gaps_; }
    std::vector<std::string>& warnings() { return warnings_; }

    /// Finds the bytes of all buffers; what is missing becomes gaps.
    void loadBuffers(const Beside& beside);

    /// Bytes of a buffer view as far as they are there, and its stride, 0 when it says none.
    struct View {
        std::string_view bytes;
        std::size_t stride = 0;
    };
    std::optional<View> view(std::uint64_t index) const;

    std::vector<std::string> filesBeside() const;

private:
    struct Buffer {
        std::string_view bytes;
        std::string own;  ///< what a data URI holds
    };

    void refuse(const char* code, std::string text);
    std::string_view takeChunks(std::string_view bytes);
    void check();
    void loadBuffer(std::uint64_t index, const Beside& beside);

    Json root_;
    std::string_view binary_;
    bool hasBinary_ = false;
    std::vector<Buffer> buffers_;
    std::vector<std::string> gaps_;
    std::vector<std::string> warnings_;
    std::optional<Refusal> refusal_;
};

}  // namespace mesh
