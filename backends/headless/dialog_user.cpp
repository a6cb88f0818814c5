#include "backends/headless/dialog.h"
#include "backends/headless/toolkit.h"

namespace headless {
namespace {

bool isButton(ui::ControlKind kind) {
    return kind == ui::ControlKind::PushButton || kind == ui::ControlKind::DefaultButton ||
           kind == ui::ControlKind::CheckBox || kind == ui::ControlKind::RadioButton;
}

}  // namespace

bool Dialog::type(int controlId, const std::wstring& text) {
    Control* control = find(controlId);
    if (!control || !control->enabled || control->kind != ui::ControlKind::FileEdit) return false;
    focus_ = controlId;
    control->text = text;
    if (events_) events_->onTextChanged(controlId);
    return true;
}

bool Dialog::press(int controlId) {
    Control* control = find(controlId);
    if (!control || !control->enabled || !control->visible || !isButton(control->kind))
        return false;
    focus_ = controlId;
    if (control->kind == ui::ControlKind::CheckBox) control->checked = !control->checked;
    if (events_) events_->onClicked(controlId);
    return true;
}

void Dialog::close() {
    if (!events_) return;
    events_->onCancel();
    endModal(kCancelled);
}

ui::ItemColours Dialog::paintedColours(int treeId, ui::TreeItem item) {
    const ui::TreeControl* shown = tree(treeId);
    return shown && item && events_ ? events_->onPaintItem(treeId, shown->item(item))
                                    : ui::ItemColours();
}

bool Dialog::choose(int listBoxId, int position) {
    ListBox* box = listBox(listBoxId);
    if (!box || position < 0 || position >= static_cast<int>(box->count())) return false;
    box->select(position);
    if (events_) events_->onSelectionChanged(listBoxId);
    return true;
}

bool Dialog::clickRow(int listId, int row) {
    if (!list(listId) || !controlVisible(listId)) return false;
    if (events_) events_->onRowClicked(listId, row);
    return true;
}

void Dialog::clickAt(ui::PixelPoint point) {
    if (events_) events_->onMouseDown(point);
}

bool Dialog::openItem(int treeId, ui::TreeItem item, bool open) {
    Tree* shown = tree(treeId);
    if (shown) shown->expand(item, open);
    return shown != nullptr;
}

void Dialog::pressKey(ui::Key key) {
    if (events_ && !events_->onKeyDown(key) && key != ui::Key::Other) close();
}

ui::ItemColours Dialog::paintedRowColours(int listId, std::size_t row) {
    const List* shown = list(listId);
    return shown && events_ && row < shown->rowCount()
               ? events_->onPaintRow(listId, shown->rowData(row))
               : ui::ItemColours();
}

ui::ControlColours Dialog::paintedControlColours(int controlId) {
    const Control* control = find(controlId);
    const ui::ControlKind kind = control ? control->kind : ui::ControlKind::StaticText;
    ui::ControlColours own{ui::rgb(240, 240, 240), 0, ui::kNormalWeight};
    if (control) own.weight = control->weight;
    return events_ ? events_->onColours(controlId, kind, own) : own;
}

Canvas Dialog::painted() {
    Canvas canvas;
    if (events_) events_->onPaint(canvas, clientSize());
    return canvas;
}

Canvas Dialog::paintedListBoxItem(int listBoxId, std::size_t position, const ui::PixelRect& area) {
    Canvas canvas;
    const ListBox* box = listBox(listBoxId);
    if (box && events_ && position < box->count()) {
        const bool selected = box->selected() == static_cast<int>(position);
        events_->onPaintListBoxItem(listBoxId, position, area, selected, canvas);
    }
    return canvas;
}

}  // namespace headless
