#include "tests/support/scripted_host.h"

#include <chrono>

#include "platform/bxt/file_path.h"
#include "tests/support/fake_os.h"

namespace support {
namespace {

std::string nameOf(const std::shared_ptr<bxtsg::IFactory>& factory) {
    const auto document = std::dynamic_pointer_cast<FakeDocument>(factory);
    return document ? document->name : "-";
}

constexpr int kEndOfProgress = 101;

}  // namespace

std::shared_ptr<bxtsg::Schema> FakeDocument::get(std::uint16_t code) {
    const auto found = schemas.find(code);
    return found == schemas.end() ? nullptr : found->second;
}

void FakeDocument::attach(std::uint16_t code, std::shared_ptr<bxtsg::Schema> schema) {
    log_->add(name + ".attach " + std::to_string(code));
    schemas[code] = std::move(schema);
}

void FakeHintTarget::broadcast(const bxtui::Hint& hint) {
    log_->add("hint " + std::to_string(hint.code()) + " " + nameOf(hint.factory()));
    for (bxt::IView* view : std::vector<bxt::IView*>(views)) view->update(&hint);
}

void FakeStatusManager::noteCommand(std::uint32_t commandId) {
    log_->add("noteCommand " + std::to_string(commandId));
}

void FakeStatusManager::notePlugin(const std::wstring& name) {
    log_->add("notePlugin " + narrow(name));
}

ScriptedHost::ScriptedHost(Log log)
    : hints(std::make_shared<FakeHintTarget>(log)),
      ownFactory(std::make_shared<FakeDocument>("application", log)),
      data(std::make_shared<bxt::SCApplication>()),
      status(std::make_unique<FakeStatusManager>(log)),
      log_(log) {
    data->settings = std::make_shared<bxt::Settings>();
    data->application = this;
    data->fileFormats = {L"STEP Files", L"*.stp;*.step", L"STL Files", L"*.stl"};
}

std::shared_ptr<bxt::IFrame> ScriptedHost::activeFrame() {
    return hideFrame ? nullptr : active;
}

std::shared_ptr<bxtsg::IFactory> ScriptedHost::activeFactory() {
    return active && !hideFactory ? active->factory() : nullptr;
}

void ScriptedHost::setStatusText(const std::wstring& text) {
    log_->add("status " + narrow(text));
    statusText = text;
}

bxt::IStatusManager* ScriptedHost::statusManager() {
    return status.get();
}

std::shared_ptr<bxt::IFrame> ScriptedHost::prepareFrame(const std::wstring& title) {
    log_->add("prepareFrame " + narrow(title));
    if (onPrepareFrame) return onPrepareFrame();
    return active;
}

bool ScriptedHost::frameUnavailable() {
    log_->add("frameUnavailable");
    return unavailable;
}

void ScriptedHost::prepareBackgroundWork() {
    log_->add("prepareBackgroundWork");
    const std::lock_guard lock(mutex_);
    background_ = true;
    ended_ = false;
}

void ScriptedHost::setProgress(int value) {
    log_->add("setProgress " + std::to_string(value));
    const std::lock_guard lock(mutex_);
    if (value == kEndOfProgress && background_) {
        ended_ = true;
        endChanged_.notify_all();
    }
}

bool ScriptedHost::ended() const {
    const std::lock_guard lock(mutex_);
    return ended_;
}

bool ScriptedHost::waitForEnd(int seconds) {
    std::unique_lock lock(mutex_);
    return endChanged_.wait_for(lock, std::chrono::seconds(seconds), [this] { return ended_; });
}

int ScriptedHost::runProgress(const std::wstring& title) {
    log_->add("runProgress " + narrow(title));
    if (onRunProgress) return onRunProgress();
    if (!waitForEnd()) log_->add("runProgress never ended");
    return 0;
}

std::shared_ptr<bxt::IDocument> ScriptedHost::openDocument(const std::wstring& path, int flag) {
    log_->add("openDocument " + narrow(path) + " " + std::to_string(flag));
    if (onOpenDocument) onOpenDocument();
    if (!documentOpens) return nullptr;
    activate(addDocument("result", path));
    sendHint(3, active);
    sendHint(25, active);
    return active->document();
}

void ScriptedHost::openFile(const std::wstring& path) {
    log_->add("openFile " + narrow(path));
}

std::shared_ptr<FakeFrame> ScriptedHost::addDocument(const std::string& name,
                                                     const std::wstring& file) {
    auto document = std::make_shared<FakeDocument>(name, log_);
    document->schemas[bxtsg::code::Info] = std::make_shared<bxtsg::SCInfo>(file);
    document->schemas[bxtsg::code::Application] = data;
    document->schemas[bxtsg::code::DocFrame] = std::make_shared<bxt::SCDocFrame>();
    return std::make_shared<FakeFrame>(std::move(document), hints);
}

void ScriptedHost::sendHint(std::uint16_t code, const std::shared_ptr<bxt::IFrame>& frame) {
    hints->broadcast(bxtui::Hint(code, frame));
}

}  // namespace support
