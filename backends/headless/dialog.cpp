#include "backends/headless/dialog.h"

#include "backends/headless/metrics.h"
#include "backends/headless/toolkit.h"
#include "backends/headless/user.h"

namespace headless {
namespace {

bool takesFocus(ui::ControlKind kind) {
    return kind != ui::ControlKind::GroupBox && kind != ui::ControlKind::StaticText;
}

}  // namespace

Dialog::Dialog(const ui::DialogTemplate& shape, Toolkit& toolkit)
    : shape_(shape), toolkit_(toolkit), caption_(shape.caption) {
    const int dpi = toolkit.dotsPerInch();
    place_ = ui::rectAt(0, 0, metrics::horizontalPx(shape.width, dpi),
                        metrics::verticalPx(shape.height, dpi));
    for (const ui::ControlTemplate& control : shape_.controls) {
        addControl(control);
    }
}

Dialog::~Dialog() {
    destroyWindow();
}

const Dialog::Control* Dialog::find(int controlId) const {
    const auto at = controls_.find(controlId);
    return at == controls_.end() ? nullptr : &at->second;
}

Dialog::Control* Dialog::find(int controlId) {
    const auto at = controls_.find(controlId);
    return at == controls_.end() ? nullptr : &at->second;
}

std::wstring Dialog::text(int controlId) const {
    const Control* control = find(controlId);
    return control ? control->text : std::wstring();
}

void Dialog::setText(int controlId, const std::wstring& text) {
    if (Control* control = find(controlId)) control->text = text;
}

bool Dialog::enabled(int controlId) const {
    const Control* control = find(controlId);
    return control && control->enabled;
}

void Dialog::enable(int controlId, bool enabled) {
    if (Control* control = find(controlId)) control->enabled = enabled;
}

void Dialog::setFocus(int controlId) {
    const Control* control = find(controlId);
    if (control && takesFocus(control->kind)) focus_ = controlId;
}

void Dialog::setCueBanner(int controlId, const std::wstring& text, bool whileFocused) {
    if (Control* control = find(controlId)) {
        control->cueBanner = text;
        control->cueWhileFocused = whileFocused;
    }
}

void Dialog::setBrowse(int controlId, const ui::BrowseOptions& options) {
    if (Control* control = find(controlId)) control->browse = options;
}

Tree* Dialog::tree(int controlId) {
    Control* control = find(controlId);
    return control ? control->tree.get() : nullptr;
}

void Dialog::createWindow(ui::DialogEvents& events) {
    events_ = &events;
    for (const ui::ControlTemplate& control : shape_.controls) {
        if (control.id != -1 && takesFocus(control.kind)) {
            focus_ = control.id;
            break;
        }
    }
    events.onInitDialog();
}

int Dialog::runModal(ui::DialogEvents& events) {
    modal_ = true;
    result_ = kCancelled;
    createWindow(events);
    show(true);
    if (modal_) toolkit_.user().answerDialog(*this);
    if (modal_) close();
    destroyWindow();
    return result_;
}

void Dialog::endModal(int result) {
    if (!modal_) return;
    modal_ = false;
    result_ = result;
}

void Dialog::createModeless(ui::DialogEvents& events) {
    if (!hasWindow()) createWindow(events);
}

void Dialog::destroyWindow() {
    modal_ = false;
    show(false);
    events_ = nullptr;
}

void Dialog::show(bool visible) {
    if (visible == visible_ || (visible && !hasWindow())) return;
    visible_ = visible;
    if (visible) {
        toolkit_.windowShown(*this);
    } else {
        toolkit_.windowGone(*this);
    }
}

void Dialog::bringToForeground() {
    if (visible_) toolkit_.windowShown(*this);
}

std::wstring Dialog::shownCueBanner(int controlId) const {
    const Control* control = find(controlId);
    if (!control || !control->text.empty()) return {};
    if (focus_ == controlId && !control->cueWhileFocused) return {};
    return control->cueBanner;
}

std::optional<ui::BrowseOptions> Dialog::browse(int controlId) const {
    const Control* control = find(controlId);
    return control ? control->browse : std::nullopt;
}

}  // namespace headless
