#pragma once

#include <memory>
#include <optional>
#include <string>

#include "backends/headless/user.h"
#include "platform/ui/clipboard.h"
#include "platform/ui/file_chooser.h"
#include "platform/ui/screen.h"

namespace headless {

/// A clipboard of this process alone.
class Clipboard final : public ui::Clipboard {
public:
    bool setText(const std::wstring& text) override;

    /// Empty until a text was set.
    const std::optional<std::wstring>& text() const { return text_; }
    /// From now on somebody else holds the clipboard open, or lets go of it.
    void setTaken(bool taken) { taken_ = taken; }

private:
    std::optional<std::wstring> text_;
    bool taken_ = false;
};

/// Puts questions for files before the user.
class FileChooser final : public ui::FileChooser {
public:
    explicit FileChooser(std::shared_ptr<User> user) : user_(std::move(user)) {}
    /// A file exists when os::services().files says so; without that service none does.
    std::optional<std::wstring> chooseSaveFile(const ui::SaveFileOptions& options) override;

private:
    std::shared_ptr<User> user_;
};

/// A screen that nothing is drawn on.
class Screen final : public ui::Screen {
public:
    ui::PixelSize sizePx() const override { return size; }
    std::optional<ui::PixelRect> mainWindowPx() const override { return mainWindow; }
    std::optional<int> ribbonBottomPx() const override { return ribbonBottom; }

    ui::PixelSize size{1920, 1080};
    std::optional<ui::PixelRect> mainWindow = ui::PixelRect{0, 0, 1920, 1080};
    std::optional<int> ribbonBottom;
};

}  // namespace headless
