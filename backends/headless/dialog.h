#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "backends/headless/canvas.h"
#include "backends/headless/list.h"
#include "backends/headless/list_box.h"
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
    Tree* tree(int controlId) override;

    int runModal(ui::DialogEvents& events) override;
    void endModal(int result) override;
    void createModeless(ui::DialogEvents& events) override;
    bool hasWindow() const override { return events_ != nullptr; }
    void destroyWindow() override;
    void show(bool visible) override;
    bool visible() const override { return visible_; }
    void bringToForeground() override;

    void addControl(const ui::ControlTemplate& control) override;
    List* list(int controlId) override;
    ListBox* listBox(int controlId) override;
    void setChecked(int controlId, bool checked) override;
    bool checked(int controlId) const override;
    void showControl(int controlId, bool visible) override;
    bool controlVisible(int controlId) const override;
    void placeControl(int controlId, const ui::PixelRect& place) override;
    ui::PixelRect controlPlace(int controlId) const override;
    void setAnchors(int controlId, const ui::Anchors& anchors) override;
    void setWeight(int controlId, int weight) override;
    void setWindowStyle(const ui::WindowStyle& style) override { style_ = style; }
    void setMinimumWidthPx(int width) override { minimumWidth_ = width; }
    void placeWindow(const ui::PixelRect& place) override;
    ui::PixelRect windowPlace() const override { return place_; }
    ui::PixelSize clientSize() const override { return {place_.width(), place_.height()}; }
    int textWidthPx(const std::wstring& text, int weight) const override;
    void invalidate(const ui::PixelRect& area) override { invalidated_.push_back(area); }
    void setRedraw(bool on) override { redraw_ = on; }

    /// Replaces the text of an edit as if it were typed. False, and nothing happens, when there
    /// is no such edit or it is disabled.
    bool type(int controlId, const std::wstring& text);
    /// Presses a button; a check box changes by it. False, and nothing happens, when there is no
    /// such button, or it is disabled or hidden.
    bool press(int controlId);
    /// Selects a text of a list box. False when there is none.
    bool choose(int listBoxId, int position);
    /// Clicks into a list; -1 is beside all rows. False when there is no such list to be seen.
    bool clickRow(int listId, int row);
    /// Presses the left button on the dialog itself.
    void clickAt(ui::PixelPoint point);
    /// Opens or closes an item of a tree. False when there is no such tree.
    bool openItem(int treeId, ui::TreeItem item, bool open);
    /// Presses a key that no control has taken; Esc and Cancel close the dialog unless its events
    /// take them.
    void pressKey(ui::Key key);
    /// Drags the window's border until its client area has that size, as far as it may.
    void resizeByUser(ui::PixelSize client);
    /// Esc or the close box: a modal dialog ends with kCancelled unless its events ended it.
    void close();

    /// Colours in which a tree shows an item. The control's own ones without a window.
    ui::ItemColours paintedColours(int treeId, ui::TreeItem item);

    /// Colours in which a list shows a row.
    ui::ItemColours paintedRowColours(int listId, std::size_t row);
    /// Colours of a control's own, 0 being the dialog.
    ui::ControlColours paintedControlColours(int controlId);
    /// The client area as it is painted now, and an item of a list box.
    Canvas painted();
    Canvas paintedListBoxItem(int listBoxId, std::size_t position, const ui::PixelRect& area);

    const ui::DialogTemplate& shape() const { return shape_; }
    const ui::WindowStyle& windowStyle() const { return style_; }
    int weight(int controlId) const;
    /// Every rectangle that was to be repainted.
    const std::vector<ui::PixelRect>& invalidated() const { return invalidated_; }
    bool redraws() const { return redraw_; }
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
        bool visible = true;
        bool checked = false;
        int weight = ui::kNormalWeight;
        ui::PixelRect place;
        std::optional<ui::Anchors> anchors;
        std::wstring cueBanner;
        bool cueWhileFocused = false;
        std::optional<ui::BrowseOptions> browse;
        std::unique_ptr<Tree> tree;
        std::unique_ptr<List> list;
        std::unique_ptr<ListBox> listBox;
    };

    void createWindow(ui::DialogEvents& events);
    const Control* find(int controlId) const;
    Control* find(int controlId);
    void connect(int controlId, Control& control);
    void resizeClient(ui::PixelSize client);

    ui::DialogTemplate shape_;
    Toolkit& toolkit_;
    std::wstring caption_;
    std::map<int, Control> controls_;
    ui::DialogEvents* events_ = nullptr;
    int focus_ = 0;
    bool modal_ = false;
    bool visible_ = false;
    int result_ = kCancelled;
    ui::WindowStyle style_;
    ui::PixelRect place_;
    int minimumWidth_ = 0;
    std::vector<ui::PixelRect> invalidated_;
    bool redraw_ = true;
};

}  // namespace headless
