#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "platform/bxt/plugin.h"
#include "tests/support/scripted_host_log.h"

/// A host in memory that does what the test tells it and writes down every call and hint.
namespace support {

/// A document with a name for the log. Reads of schemas are not logged, attaching is.
class FakeDocument : public bxt::IDocument {
public:
    FakeDocument(std::string label, Log log) : name(std::move(label)), log_(std::move(log)) {}
    ~FakeDocument() override { log_->add(name + ".delete"); }
    std::shared_ptr<bxtsg::Schema> get(std::uint16_t code) override;
    void attach(std::uint16_t code, std::shared_ptr<bxtsg::Schema> schema) override;

    std::string name;
    std::map<std::uint16_t, std::shared_ptr<bxtsg::Schema>> schemas;

private:
    Log log_;
};

class FakeHintTarget : public bxt::IHintTarget {
public:
    explicit FakeHintTarget(Log log) : log_(std::move(log)) {}
    void broadcast(const bxtui::Hint& hint) override;

    std::vector<bxt::IView*> views;

private:
    Log log_;
};

class FakeFrame : public bxt::IFrame {
public:
    FakeFrame(std::shared_ptr<FakeDocument> document, std::shared_ptr<FakeHintTarget> hints)
        : document_(std::move(document)), hints_(std::move(hints)) {}
    std::shared_ptr<bxtsg::IFactory> factory() override { return document_; }
    std::shared_ptr<bxt::IHintTarget> hintTarget() override { return hints_; }
    const std::shared_ptr<FakeDocument>& document() const { return document_; }

private:
    std::shared_ptr<FakeDocument> document_;
    std::shared_ptr<FakeHintTarget> hints_;
};

class FakeStatusManager : public bxt::IStatusManager {
public:
    explicit FakeStatusManager(Log log) : log_(std::move(log)) {}
    void noteCommand(std::uint32_t commandId) override;
    void notePlugin(const std::wstring& name) override;

private:
    Log log_;
};

/// The application. The end of progress is latched from prepareBackgroundWork() on.
class ScriptedHost : public bxtui::IWApplication {
public:
    explicit ScriptedHost(Log log);

    std::shared_ptr<bxt::IFrame> activeFrame() override;
    std::shared_ptr<bxtsg::IFactory> activeFactory() override;
    void setStatusText(const std::wstring& text) override;
    bxt::IStatusManager* statusManager() override;
    std::shared_ptr<bxt::IFrame> prepareFrame(const std::wstring& title) override;
    bool frameUnavailable() override;
    void prepareBackgroundWork() override;
    void setProgress(int value) override;
    int runProgress(const std::wstring& title) override;
    std::shared_ptr<bxt::IDocument> openDocument(const std::wstring& path, int flag) override;
    void openFile(const std::wstring& path) override;
    std::shared_ptr<bxtsg::IFactory> factory() override { return ownFactory; }

    /// Makes a document with an info, a frame and the application's schema, and its frame.
    std::shared_ptr<FakeFrame> addDocument(const std::string& name, const std::wstring& file);
    void activate(std::shared_ptr<FakeFrame> frame) { active = std::move(frame); }
    /// Delivers a hint to all views, as the host's own.
    void sendHint(std::uint16_t code, const std::shared_ptr<bxt::IFrame>& frame);
    /// Waits for the end of progress; false when it does not come in time.
    bool waitForEnd(int seconds = 20);
    bool ended() const;

    std::shared_ptr<FakeHintTarget> hints;
    std::shared_ptr<FakeFrame> active;
    std::shared_ptr<FakeDocument> ownFactory;
    std::shared_ptr<bxt::SCApplication> data;
    std::unique_ptr<FakeStatusManager> status;
    std::wstring statusText;
    bool unavailable = false;
    bool hideFrame = false;    ///< no active frame
    bool hideFactory = false;  ///< no active factory
    bool documentOpens = true;
    /// Makes the frame that prepareFrame() returns; by default that is the active one.
    std::function<std::shared_ptr<bxt::IFrame>()> onPrepareFrame;
    /// What runProgress() does; by default it waits for the end and returns 0.
    std::function<int()> onRunProgress;
    /// Called at the start of openDocument().
    std::function<void()> onOpenDocument;

private:
    Log log_;
    mutable std::mutex mutex_;
    std::condition_variable endChanged_;
    bool background_ = false;
    bool ended_ = false;
};

}  // namespace support
