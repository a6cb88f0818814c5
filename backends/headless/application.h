#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "backends/headless/document.h"
#include "backends/headless/progress.h"
#include "backends/headless/user.h"
#include "platform/bxt/plugin.h"

namespace headless {

/// Hints that this host sends of its own accord.
namespace hint {
constexpr std::uint16_t DocumentActivated = 1;
constexpr std::uint16_t DocumentOpened = 3;
constexpr std::uint16_t DocumentClosed = 5;
constexpr std::uint16_t DocumentShown = 25;  ///< the opening is over, the title is being made
}  // namespace hint

/// Delivers hints to the views in the order in which they were added.
class HintTarget final : public bxt::IHintTarget {
public:
    void broadcast(const bxtui::Hint& hint) override;
    /// Views are not owned. Adding one twice has no effect.
    void add(bxt::IView* view);
    void remove(bxt::IView* view);

private:
    std::vector<bxt::IView*> views_;
};

/// Counts what the plug-in reports about its own use.
class StatusManager final : public bxt::IStatusManager {
public:
    void noteCommand(std::uint32_t commandId) override { commands_.push_back(commandId); }
    void notePlugin(const std::wstring& name) override { plugins_.push_back(name); }
    const std::vector<std::uint32_t>& commands() const { return commands_; }
    const std::vector<std::wstring>& plugins() const { return plugins_; }

private:
    std::vector<std::uint32_t> commands_;
    std::vector<std::wstring> plugins_;
};

/// A host without a screen. It starts with one empty document, so that commands have an active
/// frame. Documents hold the schemas 8 (their file), 19 (one for the whole application) and 20
/// (their own); result documents hold the comparer's numbers under 201 as well.
class Application final : public bxtui::IWApplication {
public:
    /// `fileFormats`: see bxt::SCApplication.
    Application(std::shared_ptr<User> user, std::vector<std::wstring> fileFormats);
    ~Application() override;

    std::shared_ptr<bxt::IFrame> activeFrame() override { return active_; }
    std::shared_ptr<bxtsg::IFactory> activeFactory() override;
    void setStatusText(const std::wstring& text) override;
    bxt::IStatusManager* statusManager() override { return &statusManager_; }
    /// The frame of this host fits any document: that of the active one is returned.
    std::shared_ptr<bxt::IFrame> prepareFrame(const std::wstring& title) override;
    bool frameUnavailable() override { return frameUnavailable_; }
    void prepareBackgroundWork() override { progress_.begin(); }
    void setProgress(int value) override { progress_.set(value); }
    /// Returns 1 at the end of progress, which wins over a cancel at the same moment.
    int runProgress(const std::wstring& title) override;
    /// With flag 1 the file must be one that the installed comparer left; otherwise any file
    /// that exists becomes a document. The views get DocumentOpened, then DocumentShown.
    std::shared_ptr<bxt::IDocument> openDocument(const std::wstring& path, int flag) override;
    void openFile(const std::wstring& path) override { openDocument(path, 0); }
    std::shared_ptr<bxtsg::IFactory> factory() override { return factory_; }

    void addView(bxt::IView* view) { hints_->add(view); }
    void removeView(bxt::IView* view) { hints_->remove(view); }
    StatusManager& statistics() { return statusManager_; }

    /// Document of the active frame; null when every document is closed.
    std::shared_ptr<Document> activeDocument() const;
    /// Brings the document's frame to the front and tells the views.
    void activate(const std::shared_ptr<Document>& document);
    /// Tells the views, then lets go of the document. The one opened before it becomes active.
    void close(const std::shared_ptr<Document>& document);
    /// Closes the documents, the newest first. Must be called while the views still exist.
    void closeAll();
    const std::vector<std::shared_ptr<Frame>>& frames() const { return frames_; }

    /// Application-wide data, the same object in every document.
    const std::shared_ptr<bxt::SCApplication>& data() const { return data_; }
    const std::wstring& statusText() const { return statusText_; }
    const std::wstring& preparedTitle() const { return preparedTitle_; }
    void setFrameUnavailable(bool unavailable) { frameUnavailable_ = unavailable; }

private:
    std::shared_ptr<Document> addDocument(const std::wstring& path);
    std::shared_ptr<Frame> frameOf(const std::shared_ptr<Document>& document) const;
    void send(std::uint16_t code, const std::shared_ptr<Frame>& frame);

    std::shared_ptr<User> user_;
    std::shared_ptr<HintTarget> hints_ = std::make_shared<HintTarget>();
    std::shared_ptr<bxt::SCApplication> data_ = std::make_shared<bxt::SCApplication>();
    std::shared_ptr<ApplicationFactory> factory_ = std::make_shared<ApplicationFactory>();
    std::vector<std::shared_ptr<Frame>> frames_;
    std::shared_ptr<Frame> active_;
    StatusManager statusManager_;
    Progress progress_;
    std::wstring statusText_;
    std::wstring preparedTitle_;
    bool frameUnavailable_ = false;
};

}  // namespace headless
