#include "backends/headless/desktop.h"

#include "platform/os/services.h"

namespace headless {
namespace {

bool hasExtension(const std::wstring& path) {
    const std::size_t name = path.find_last_of(L"/\\") + 1;  // npos + 1 is 0
    return path.find(L'.', name) != std::wstring::npos;
}

}  // namespace

bool Clipboard::setText(const std::wstring& text) {
    if (taken_) return false;
    text_ = text;
    return true;
}

std::optional<std::wstring> FileChooser::chooseSaveFile(const ui::SaveFileOptions& options) {
    auto path = user_->answerSaveFile(options);
    if (!path) return std::nullopt;
    if (!path->empty() && !options.defaultExtension.empty() && !hasExtension(*path)) {
        *path += L"." + options.defaultExtension;
    }
    const auto& files = os::services().files;
    const bool replaces = options.overwritePrompt && files && files->exists(*path);
    if (replaces && !user_->allowsReplacing(*path)) return std::nullopt;
    return path;
}

}  // namespace headless
