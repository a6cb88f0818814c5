#include <algorithm>
#include <cmath>

#include "backends/headless/dialog.h"
#include "backends/headless/metrics.h"
#include "backends/headless/toolkit.h"

namespace headless {
namespace {

int shifted(int edge, double follow, int growth) {
    return edge + static_cast<int>(std::lround(follow * growth));
}

}  // namespace

void Dialog::addControl(const ui::ControlTemplate& control) {
    if (control.id == -1) return;  // nobody addresses these
    const int dpi = toolkit_.dotsPerInch();
    Control& made = controls_[control.id];
    made.kind = control.kind;
    made.text = control.text;
    made.visible = control.visible;
    if (control.kind == ui::ControlKind::Tree) made.tree = std::make_unique<Tree>();
    if (control.kind == ui::ControlKind::List) made.list = std::make_unique<List>();
    if (control.kind == ui::ControlKind::ListBox) made.listBox = std::make_unique<ListBox>();
    connect(control.id, made);
    placeControl(control.id, ui::rectAt(metrics::horizontalPx(control.place.x, dpi),
                                        metrics::verticalPx(control.place.y, dpi),
                                        metrics::horizontalPx(control.place.width, dpi),
                                        metrics::verticalPx(control.place.height, dpi)));
}

void Dialog::connect(int controlId, Control& control) {
    const auto scrolled = [this, controlId](ui::ScrollBy by) {
        if (events_) events_->onScrolled(controlId, by);
    };
    if (control.list) control.list->onScrolled = scrolled;
    if (!control.tree) return;
    control.tree->onScrolled = scrolled;
    control.tree->onExpanded = [this, controlId](ui::TreeItem item, bool open) {
        if (events_) events_->onExpanded(controlId, item, open);
    };
}

List* Dialog::list(int controlId) {
    Control* control = find(controlId);
    return control ? control->list.get() : nullptr;
}

ListBox* Dialog::listBox(int controlId) {
    Control* control = find(controlId);
    return control ? control->listBox.get() : nullptr;
}

void Dialog::setChecked(int controlId, bool checked) {
    if (Control* control = find(controlId)) control->checked = checked;
}

bool Dialog::checked(int controlId) const {
    const Control* control = find(controlId);
    return control && control->checked;
}

void Dialog::showControl(int controlId, bool visible) {
    if (Control* control = find(controlId)) control->visible = visible;
}

bool Dialog::controlVisible(int controlId) const {
    const Control* control = find(controlId);
    return control && control->visible;
}

void Dialog::placeControl(int controlId, const ui::PixelRect& place) {
    Control* control = find(controlId);
    if (!control) return;
    control->place = place;
    if (control->list) control->list->resize({place.width(), place.height()});
    if (control->tree) control->tree->resize(place.height());
}

ui::PixelRect Dialog::controlPlace(int controlId) const {
    const Control* control = find(controlId);
    return control ? control->place : ui::PixelRect();
}

void Dialog::setAnchors(int controlId, const ui::Anchors& anchors) {
    if (Control* control = find(controlId)) control->anchors = anchors;
}

void Dialog::setWeight(int controlId, int weight) {
    if (Control* control = find(controlId)) control->weight = weight;
}

int Dialog::weight(int controlId) const {
    const Control* control = find(controlId);
    return control ? control->weight : ui::kNormalWeight;
}

int Dialog::textWidthPx(const std::wstring& text, int weight) const {
    return metrics::textWidthPx(text, weight);
}

void Dialog::placeWindow(const ui::PixelRect& place) {
    const ui::PixelSize before = clientSize();
    const ui::PixelSize client{place.width(), place.height()};
    place_ = ui::rectAt(place.left, place.top, before.width, before.height);
    resizeClient(client);
}

void Dialog::resizeByUser(ui::PixelSize client) {
    resizeClient({std::max(client.width, minimumWidth_), std::max(client.height, 0)});
}

void Dialog::resizeClient(ui::PixelSize client) {
    const int wider = client.width - place_.width();
    const int higher = client.height - place_.height();
    if (wider == 0 && higher == 0) return;
    place_ = ui::rectAt(place_.left, place_.top, client.width, client.height);
    for (auto& [id, control] : controls_) {
        if (!control.anchors) continue;
        const ui::Anchors& follow = *control.anchors;
        const ui::PixelRect old = control.place;
        placeControl(
            id,
            {shifted(old.left, follow.left, wider), shifted(old.top, follow.top, higher),
             shifted(old.right, follow.right, wider), shifted(old.bottom, follow.bottom, higher)});
    }
    if (events_) events_->onResized(client);
}

}  // namespace headless
