#include "backends/headless/application.h"

#include <algorithm>
#include <chrono>

#include "platform/exchange/services.h"
#include "platform/os/services.h"

namespace headless {
namespace {

constexpr int kCancelled = 2;
constexpr int kFinished = 1;
constexpr int kAsCompareResult = 1;
// How soon a cancel is noticed; the end of the work is noticed at once.
constexpr std::chrono::milliseconds kCancelPoll{25};

bool exists(const std::wstring& path) {
    const auto& files = os::services().files;
    return files && files->exists(path);
}

}  // namespace

void HintTarget::broadcast(const bxtui::Hint& hint) {
    // A view may come or go while hints are delivered.
    const std::vector<bxt::IView*> views = views_;
    for (bxt::IView* view : views) {
        if (std::find(views_.begin(), views_.end(), view) != views_.end()) view->update(&hint);
    }
}

void HintTarget::add(bxt::IView* view) {
    if (view && std::find(views_.begin(), views_.end(), view) == views_.end()) {
        views_.push_back(view);
    }
}

void HintTarget::remove(bxt::IView* view) {
    std::erase(views_, view);
}

Application::Application(std::shared_ptr<User> user, std::vector<std::wstring> fileFormats)
    : user_(std::move(user)) {
    data_->fileFormats = std::move(fileFormats);
    data_->settings = std::make_shared<bxt::Settings>();
    data_->application = this;
    factory_->attach(bxtsg::code::Application, data_);
    active_ = frameOf(addDocument({}));
}

Application::~Application() {
    data_->application = nullptr;
}

std::shared_ptr<bxtsg::IFactory> Application::activeFactory() {
    return active_ ? active_->factory() : nullptr;
}

void Application::setStatusText(const std::wstring& text) {
    statusText_ = text;
    user_->seeStatusText(text);
}

std::shared_ptr<bxt::IFrame> Application::prepareFrame(const std::wstring& title) {
    preparedTitle_ = title;
    return active_;
}

int Application::runProgress(const std::wstring& title) {
    Progress::View seen;
    user_->seeProgress(title, seen.percent);
    while (true) {
        const Progress::View now = progress_.wait(seen, kCancelPoll);
        if (now.percent != seen.percent) user_->seeProgress(title, now.percent);
        if (now.ended) return kFinished;
        if (user_->cancelsProgress()) return kCancelled;
        seen = now;
    }
}

std::shared_ptr<bxt::IDocument> Application::openDocument(const std::wstring& path, int flag) {
    std::shared_ptr<bxtsg::Schema> numbers;
    if (flag == kAsCompareResult) {
        const auto& read = bxtexchange::services().readResult;
        if (read) numbers = read(path);
        if (!numbers) return nullptr;
    } else if (!exists(path)) {
        return nullptr;
    }
    const std::shared_ptr<Document> document = addDocument(path);
    if (numbers) document->attach(bxtsg::code::GeometryResult, numbers);
    active_ = frameOf(document);
    send(hint::DocumentOpened, active_);
    send(hint::DocumentShown, frameOf(document));
    return document;
}

std::shared_ptr<Document> Application::activeDocument() const {
    return active_ ? active_->document() : nullptr;
}

void Application::activate(const std::shared_ptr<Document>& document) {
    const std::shared_ptr<Frame> frame = frameOf(document);
    if (!frame) return;
    active_ = frame;
    send(hint::DocumentActivated, frame);
}

void Application::close(const std::shared_ptr<Document>& document) {
    const std::shared_ptr<Frame> frame = frameOf(document);
    if (!frame) return;
    send(hint::DocumentClosed, frame);
    std::erase(frames_, frame);
    if (active_ != frame) return;
    active_ = frames_.empty() ? nullptr : frames_.back();
    if (active_) send(hint::DocumentActivated, active_);
}

void Application::closeAll() {
    while (!frames_.empty()) close(frames_.back()->document());
}

std::shared_ptr<Document> Application::addDocument(const std::wstring& path) {
    auto document = std::make_shared<Document>(path);
    document->attach(bxtsg::code::Info, std::make_shared<bxtsg::SCInfo>(path));
    document->attach(bxtsg::code::Application, data_);
    document->attach(bxtsg::code::DocFrame, std::make_shared<bxt::SCDocFrame>());
    frames_.push_back(std::make_shared<Frame>(document, hints_));
    return document;
}

std::shared_ptr<Frame> Application::frameOf(const std::shared_ptr<Document>& document) const {
    for (const auto& frame : frames_) {
        if (frame->document() == document) return frame;
    }
    return nullptr;
}

void Application::send(std::uint16_t code, const std::shared_ptr<Frame>& frame) {
    hints_->broadcast(bxtui::Hint(code, frame));
}

}  // namespace headless
