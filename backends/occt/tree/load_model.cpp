#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

#include "backends/occt/document/binary_document.h"
#include "backends/occt/model.h"
#include "backends/occt/tree/occt_model.h"

namespace occt {
namespace {

// Numbers of components have 32 bits; memory ends long before.
constexpr std::uint64_t kMostComponents = 500'000'000;

}  // namespace

std::shared_ptr<const Model> Model::load(const std::string& folder, std::string& error) {
    std::ifstream file(folder + "/" + kDescriptionFile, std::ios::binary);
    if (!file) {
        error = "the import left no description in " + folder;
        return nullptr;
    }
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    auto description = unpackDescription(bytes);
    const auto size = description ? unfoldedSize(*description) : std::nullopt;
    std::error_code ignored;
    const auto bytesThere = std::filesystem::file_size(folder + "/" + kDocumentFile, ignored);
    if (!size || *size > kMostComponents || ignored || bytesThere != description->document.bytes) {
        error = "what the import left in " + folder + " is damaged";
        return nullptr;
    }
    return std::make_shared<const OcctModel>(std::move(*description), folder);
}

}  // namespace occt
