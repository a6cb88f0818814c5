#include "apps/cli/file_names.h"

#include <algorithm>
#include <filesystem>

#include "platform/os/services.h"
#include "platform/os/utf8.h"

namespace cli {

std::string FileNames::typed(const std::string& given) {
    if (given.find('"') == std::string::npos) return given;
    const auto known = linkOfName_.find(given);
    if (known != linkOfName_.end()) return known->second;

    const auto& files = os::services().files;
    const std::string folder = files ? os::toUtf8(files->makePrivateFolder(L"names")) : "";
    if (folder.empty()) return {};
    std::string name = std::filesystem::path(given).filename().string();
    std::erase(name, '"');
    const std::string link = folder + "/" + name;
    std::error_code error;
    const auto target = std::filesystem::absolute(given, error);
    if (!error) std::filesystem::create_symlink(target, link, error);
    if (error) return {};
    return linkOfName_[given] = link;
}

std::string FileNames::withGivenNames(std::string text) const {
    for (const auto& [name, link] : linkOfName_) {
        for (std::size_t at = text.find(link); at != std::string::npos;
             at = text.find(link, at + name.size())) {
            text.replace(at, link.size(), name);
        }
    }
    return text;
}

}  // namespace cli
