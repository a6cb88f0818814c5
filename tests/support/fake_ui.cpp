#include "tests/support/fake_ui.h"

#include <algorithm>

#include "tests/support/fake_os.h"

namespace support {
namespace {

FakeTree::Item* itemOf(ui::TreeItem handle) {
    return static_cast<FakeTree::Item*>(handle);
}

void appendLines(const FakeTree::Item& parent, const std::wstring& indent,
                 std::vector<std::wstring>& out) {
    for (const auto& child : parent.children) {
        out.push_back(indent + child->data.text);
        appendLines(*child, indent + L"  ", out);
    }
}

}  // namespace

void FakeTree::deleteAllItems() {
    root_.children.clear();
    count_ = 0;
}

ui::TreeItem FakeTree::insertLast(ui::TreeItem parent, const ui::TreeItemData& item) {
    Item& owner = parent ? *itemOf(parent) : root_;
    owner.children.push_back(std::make_unique<Item>());
    owner.children.back()->data = item;
    owner.children.back()->parent = &owner;
    ++count_;
    return owner.children.back().get();
}

ui::TreeItem FakeTree::firstChild(ui::TreeItem parent) const {
    const Item& owner = parent ? *itemOf(parent) : root_;
    return owner.children.empty() ? nullptr : owner.children.front().get();
}

ui::TreeItem FakeTree::nextSibling(ui::TreeItem item) const {
    const auto& siblings = itemOf(item)->parent->children;
    for (std::size_t i = 0; i + 1 < siblings.size(); ++i) {
        if (siblings[i].get() == item) return siblings[i + 1].get();
    }
    return nullptr;
}

const ui::TreeItemData& FakeTree::item(ui::TreeItem item) const {
    return itemOf(item)->data;
}

std::vector<std::wstring> FakeTree::lines() const {
    std::vector<std::wstring> out;
    appendLines(root_, L"", out);
    return out;
}

void FakeDialog::State::type(int controlId, const std::wstring& text) {
    texts[controlId] = text;
    events->onTextChanged(controlId);
}

void FakeDialog::State::click(int controlId) {
    events->onClicked(controlId);
}

FakeDialog::FakeDialog(const ui::DialogTemplate& shape, Script script, Log log)
    : state_(std::make_shared<State>()), script_(std::move(script)), log_(std::move(log)) {
    state_->shape = shape;
    for (const ui::ControlTemplate& control : shape.controls) addControl(control);
}

void FakeDialog::addControl(const ui::ControlTemplate& control) {
    if (control.id < 0) return;
    state_->texts[control.id] = control.text;
    state_->enabled[control.id] = true;
    if (control.kind == ui::ControlKind::Tree) {
        state_->trees[control.id] = std::make_unique<FakeTree>();
    }
}

FakeDialog::~FakeDialog() {
    state_->window = false;
    state_->destroyed = true;
    state_->events = nullptr;
    log_->add(name() + ".delete");
}

std::string FakeDialog::name() const {
    return "dialog" + std::to_string(state_->shape.id);
}

std::wstring FakeDialog::text(int controlId) const {
    return known(controlId) ? state_->texts.at(controlId) : std::wstring();
}

void FakeDialog::setText(int controlId, const std::wstring& text) {
    if (known(controlId)) state_->texts[controlId] = text;
}

bool FakeDialog::enabled(int controlId) const {
    return known(controlId) && state_->enabled.at(controlId);
}

void FakeDialog::enable(int controlId, bool enabled) {
    if (known(controlId)) state_->enabled[controlId] = enabled;
}

void FakeDialog::setFocus(int controlId) {
    state_->focus = controlId;
}

void FakeDialog::setCueBanner(int controlId, const std::wstring& text, bool whileFocused) {
    state_->cues[controlId] = text;
    state_->cueWhileFocused[controlId] = whileFocused;
}

void FakeDialog::setBrowse(int controlId, const ui::BrowseOptions& options) {
    state_->browse[controlId] = options;
}

ui::TreeControl* FakeDialog::tree(int controlId) {
    const auto found = state_->trees.find(controlId);
    return found == state_->trees.end() ? nullptr : found->second.get();
}

int FakeDialog::runModal(ui::DialogEvents& events) {
    log_->add(name() + ".modal");
    const auto state = state_;
    state->events = &events;
    state->window = true;
    events.onInitDialog();
    if (script_) script_(*state);
    if (!state->ended) events.onCancel();
    state->window = false;
    state->events = nullptr;
    log_->add(name() + ".result " + std::to_string(state->result));
    return state->result;
}

void FakeDialog::endModal(int result) {
    state_->result = result;
    state_->ended = true;
}

void FakeDialog::createModeless(ui::DialogEvents& events) {
    log_->add(name() + ".create");
    state_->events = &events;
    state_->window = true;
    events.onInitDialog();
}

bool FakeDialog::hasWindow() const {
    return state_->window;
}

void FakeDialog::destroyWindow() {
    log_->add(name() + ".destroyWindow");
    state_->window = false;
    state_->visible = false;
}

void FakeDialog::show(bool visible) {
    log_->add(name() + (visible ? ".show" : ".hide"));
    state_->visible = visible;
}

bool FakeDialog::visible() const {
    return state_->visible;
}

void FakeDialog::bringToForeground() {
    log_->add(name() + ".foreground");
}

std::unique_ptr<ui::Dialog> FakeToolkit::createDialog(const ui::DialogTemplate& shape) {
    FakeDialog::Script script;
    // The dialogs that ask for something are the modal ones.
    const bool modal =
        shape.controls.empty() || std::any_of(shape.controls.begin(), shape.controls.end(),
                                              [](const ui::ControlTemplate& control) {
                                                  return control.kind == ui::ControlKind::FileEdit;
                                              });
    if (modal && !scripts.empty()) {
        script = std::move(scripts.front());
        scripts.erase(scripts.begin());
    }
    auto dialog = std::make_unique<FakeDialog>(shape, std::move(script), log_);
    dialogs.push_back(dialog->state());
    return dialog;
}

int FakeToolkit::messageBox(const std::wstring& text, const std::wstring& caption,
                            std::uint32_t style) {
    log_->add("box " + narrow(caption) + " | " + narrow(text) + " | " + std::to_string(style));
    return 1;
}

void FakeToolkit::beginWaitCursor() {
    ++waitCursorDepth;
    log_->add("cursor.begin");
}

void FakeToolkit::endWaitCursor() {
    --waitCursorDepth;
    log_->add("cursor.end");
}

void FakeToolkit::setWaitCursor() {
    log_->add("cursor.set");
}

void FakeToolkit::setActiveWindowCaption(const std::wstring& caption) {
    log_->add("caption " + narrow(caption));
    if (onCaption) onCaption();
}

std::shared_ptr<FakeDialog::State> FakeToolkit::last(int templateId) const {
    for (auto it = dialogs.rbegin(); it != dialogs.rend(); ++it) {
        if ((*it)->shape.id == templateId) return *it;
    }
    return nullptr;
}

}  // namespace support
