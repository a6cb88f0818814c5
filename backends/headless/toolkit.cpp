#include "backends/headless/toolkit.h"

#include <algorithm>

#include "backends/headless/dialog.h"

namespace headless {

User::~User() = default;

Toolkit::Toolkit(std::shared_ptr<User> user, std::wstring mainCaption)
    : user_(std::move(user)), mainCaption_(std::move(mainCaption)) {}

Toolkit::~Toolkit() = default;

std::unique_ptr<ui::Dialog> Toolkit::createDialog(const ui::DialogTemplate& shape) {
    return std::make_unique<Dialog>(shape, *this);
}

int Toolkit::messageBox(const std::wstring& text, const std::wstring& caption,
                        std::uint32_t style) {
    messageBoxes_.push_back({text, caption, style});
    return user_->answerMessageBox({text, caption, style});
}

void Toolkit::endWaitCursor() {
    if (waitCursorDepth_ > 0) --waitCursorDepth_;
}

void Toolkit::setActiveWindowCaption(const std::wstring& caption) {
    if (windows_.empty()) {
        mainCaption_ = caption;
    } else {
        windows_.back()->setCaption(caption);
    }
}

void Toolkit::windowShown(Dialog& dialog) {
    windowGone(dialog);
    windows_.push_back(&dialog);
}

void Toolkit::windowGone(Dialog& dialog) {
    std::erase(windows_, &dialog);
}

}  // namespace headless
