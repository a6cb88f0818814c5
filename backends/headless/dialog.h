#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "backends/headless/tree.h"
#include "platform/ui/dialog.h"

namespace headless {

class Toolkit;

/// A dialog without a screen: controls are records, and the user is a program. Below the
/// operations of ui::Dialog stand those of the user, which have the effects that a keyboard and
/// a mouse would have: they fire events, and a disabled control does not react to them.
class Dialog final : public ui::Dialog {
public:
    /// `toolkit` outlives the dialog.
    Dialog(const ui::DialogTemplate& shape, Toolkit& toolkit);
    ~Dialog() override;

    std::wstring text(int controlId) const override;
    void setText(int controlId, const std::wstring& text) override;
    bool enabled(int controlId) const override;
    void enable(int controlId, bool enabled) override;
    void setFocus(int controlId) override;
    void setCueBanner(int controlId, const std::wstring& text, bool whileFocused) override;
    void setBrowse(int controlId, const ui::BrowseOptions& options) override;
    ui::TreeControl* tree(int controlId) override;

    int runModal(ui::DialogEvents& events) override;
    void endModal(int result) override;
    void createModeless(ui::DialogEvents& events) override;
    bool hasWindow() const override { return events_ != nullptr; }
    void destroyWindow() override;
    void show(bool visible) override;
    bool visible() const override { return visible_; }
    void bringToForeground() override;

    /// Replaces the text of an edit as if it were typed. False, and nothing happens, when there
    /// is no such edit or it is disabled.
    bool type(int controlId, const std::wstring& text);
    /// Presses a button. False, and nothing happens, when there is no such button or it is
    /// disabled.
    bool press(int controlId);
    /// Esc or the close box: a modal dialog ends with kCancelled unless its events ended it.
    void close();

    /// Colours in which a tree shows an item. The control's own ones without a window.
    ui::ItemColours paintedColours(int treeId, ui::TreeItem item);

    const ui::DialogTemplate& shape() const { return shape_; }
    const std::wstring& caption() const { return caption_; }
    void setCaption(const std::wstring& caption) { caption_ = caption; }
    /// Control with the focus; 0 for none.
    int focus() const { return focus_; }
    /// Hint text that an edit shows now: only while it is empty, and with the focus only if it
    /// was asked for.
    std::wstring shownCueBanner(int controlId) const;
    /// How the edit's browse button asks; empty when it was never set.
    std::optional<ui::BrowseOptions> browse(int controlId) const;
    /// True while runModal() has not been told to end.
    bool open() const { return modal_; }

private:
    struct Control {
        ui::ControlKind kind = ui::ControlKind::StaticText;
        std::wstring text;
        bool enabled = true;
        std::wstring cueBanner;
        bool cueWhileFocused = false;
        std::optional<ui::BrowseOptions> browse;
        std::unique_ptr<Tree> tree;
    };

    void createWindow(ui::DialogEvents& events);
    const Control* find(int controlId) const;
    Control* find(int controlId);

    ui::DialogTemplate shape_;
    Toolkit& toolkit_;
    std::wstring caption_;
    std::map<int, Control> controls_;
    ui::DialogEvents* events_ = nullptr;
    int focus_ = 0;
    bool modal_ = false;
    bool visible_ = false;
    int result_ = kCancelled;
};

}  // namespace headless
