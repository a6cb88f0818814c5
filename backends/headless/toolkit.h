#pragma once

#include <memory>
#include <string>
#include <vector>

#include "backends/headless/user.h"
#include "platform/ui/services.h"

namespace headless {

class Dialog;

/// The toolkit without a screen: makes headless dialogs, puts message boxes before the user and
/// keeps the order of the windows, topmost last, above a main window that is always there.
class Toolkit final : public ui::Toolkit {
public:
    /// `mainCaption`: what the main window shows at first.
    Toolkit(std::shared_ptr<User> user, std::wstring mainCaption);
    ~Toolkit() override;

    std::unique_ptr<ui::Dialog> createDialog(const ui::DialogTemplate& shape) override;
    int messageBox(const std::wstring& text, const std::wstring& caption,
                   std::uint32_t style) override;
    void beginWaitCursor() override { ++waitCursorDepth_; }
    void endWaitCursor() override;
    void setWaitCursor() override { ++waitCursorSets_; }
    void setActiveWindowCaption(const std::wstring& caption) override;

    User& user() { return *user_; }
    /// Of the display for which dialogs are made from now on.
    int dotsPerInch() const { return dotsPerInch_; }
    void setDotsPerInch(int dotsPerInch) { dotsPerInch_ = dotsPerInch; }
    /// Begins of the wait cursor that have not met their end.
    int waitCursorDepth() const { return waitCursorDepth_; }
    /// How often the cursor was set without counting.
    int waitCursorSets() const { return waitCursorSets_; }
    const std::wstring& mainCaption() const { return mainCaption_; }
    /// Every message box that was shown, oldest first.
    const std::vector<MessageBox>& messageBoxes() const { return messageBoxes_; }
    /// The visible dialogs, topmost last.
    const std::vector<Dialog*>& windows() const { return windows_; }

    /// Told by the dialogs themselves.
    void windowShown(Dialog& dialog);
    void windowGone(Dialog& dialog);

private:
    std::shared_ptr<User> user_;
    std::wstring mainCaption_;
    std::vector<Dialog*> windows_;
    std::vector<MessageBox> messageBoxes_;
    int waitCursorDepth_ = 0;
    int waitCursorSets_ = 0;
    int dotsPerInch_ = 96;
};

}  // namespace headless
