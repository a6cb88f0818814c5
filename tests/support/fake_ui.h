#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/ui/services.h"
#include "tests/support/scripted_host_log.h"

/// A toolkit without a screen whose dialogs are answered by the test.
namespace support {

class FakeTree : public ui::TreeControl {
public:
    struct Item {
        ui::TreeItemData data;
        Item* parent = nullptr;
        std::vector<std::unique_ptr<Item>> children;
    };

    void setRedraw(bool on) override { redraw = on; }
    void deleteAllItems() override;
    ui::TreeItem insertLast(ui::TreeItem parent, const ui::TreeItemData& item) override;
    std::size_t itemCount() const override { return count_; }
    void invalidate() override { ++invalidations; }
    ui::TreeItem firstChild(ui::TreeItem parent) const override;
    ui::TreeItem nextSibling(ui::TreeItem item) const override;
    const ui::TreeItemData& item(ui::TreeItem item) const override;

    /// Texts of the whole tree in display order, two blanks per depth.
    std::vector<std::wstring> lines() const;

    bool redraw = true;
    int invalidations = 0;

private:
    Item root_;
    std::size_t count_ = 0;
};

class FakeDialog : public ui::Dialog {
public:
    /// What the toolkit and the test share about one dialog; outlives the dialog.
    struct State {
        ui::DialogTemplate shape;
        std::map<int, std::wstring> texts;
        std::map<int, bool> enabled;
        std::map<int, std::wstring> cues;
        std::map<int, bool> cueWhileFocused;
        std::map<int, ui::BrowseOptions> browse;
        std::map<int, std::unique_ptr<FakeTree>> trees;
        int focus = 0;  ///< 0: never set
        int result = ui::Dialog::kCancelled;
        bool ended = false;
        bool window = false;
        bool visible = false;
        bool destroyed = false;
        ui::DialogEvents* events = nullptr;

        /// As the user does it.
        void type(int controlId, const std::wstring& text);
        void click(int controlId);
    };
    using Script = std::function<void(State&)>;

    FakeDialog(const ui::DialogTemplate& shape, Script script, Log log);
    ~FakeDialog() override;

    std::wstring text(int controlId) const override;
    void setText(int controlId, const std::wstring& text) override;
    bool enabled(int controlId) const override;
    void enable(int controlId, bool enabled) override;
    void setFocus(int controlId) override;
    void setCueBanner(int controlId, const std::wstring& text, bool whileFocused) override;
    void setBrowse(int controlId, const ui::BrowseOptions& options) override;
    ui::TreeControl* tree(int controlId) override;
    void addControl(const ui::ControlTemplate& control) override;
    int runModal(ui::DialogEvents& events) override;
    void endModal(int result) override;
    void createModeless(ui::DialogEvents& events) override;
    bool hasWindow() const override;
    void destroyWindow() override;
    void show(bool visible) override;
    bool visible() const override;
    void bringToForeground() override;

    std::shared_ptr<State> state() const { return state_; }

private:
    bool known(int controlId) const { return state_->texts.count(controlId) > 0; }
    std::string name() const;
    std::shared_ptr<State> state_;
    Script script_;
    Log log_;
};

class FakeToolkit : public ui::Toolkit {
public:
    explicit FakeToolkit(Log log) : log_(std::move(log)) {}
    std::unique_ptr<ui::Dialog> createDialog(const ui::DialogTemplate& shape) override;
    int messageBox(const std::wstring& text, const std::wstring& caption,
                   std::uint32_t style) override;
    void beginWaitCursor() override;
    void endWaitCursor() override;
    void setWaitCursor() override;
    void setActiveWindowCaption(const std::wstring& caption) override;

    /// Answers to modal dialogs, first come first served; a dialog without one is cancelled.
    std::vector<FakeDialog::Script> scripts;
    /// Every dialog that was made, by template id and in order.
    std::vector<std::shared_ptr<FakeDialog::State>> dialogs;
    std::function<void()> onCaption;
    int waitCursorDepth = 0;

    /// The last dialog of a template; null when there was none.
    std::shared_ptr<FakeDialog::State> last(int templateId) const;

private:
    Log log_;
};

}  // namespace support
