#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/bxt/schema.h"

namespace bxtui {
class Hint;
}

namespace bxt {

/// Delivers hints to every view of the host, the plug-in among them.
class IHintTarget {
public:
    virtual ~IHintTarget();
    /// Synchronous: every view's update(hint) has returned when this returns.
    virtual void broadcast(const bxtui::Hint& hint) = 0;
};

/// Frame window of one document.
class IFrame {
public:
    virtual ~IFrame();
    /// Factory of the frame's document.
    virtual std::shared_ptr<bxtsg::IFactory> factory() = 0;
    virtual std::shared_ptr<IHintTarget> hintTarget() = 0;
};

/// A document; it is the factory of its frame.
class IDocument : public bxtsg::IFactory {
public:
    ~IDocument() override;
};

/// Records what the user does, for the host's own use.
class IStatusManager {
public:
    virtual ~IStatusManager();
    /// Which command of which plug-in runs.
    virtual void noteCommand(std::uint32_t commandId) = 0;
    virtual void notePlugin(const std::wstring& name) = 0;
};

/// The host. All operations belong to the user-interface thread except setProgress().
class IApplication {
public:
    virtual ~IApplication();

    /// Frame of the active document; may be empty.
    virtual std::shared_ptr<IFrame> activeFrame() = 0;
    /// Factory of the active document; may be empty.
    virtual std::shared_ptr<bxtsg::IFactory> activeFactory() = 0;
    /// Shows a text in the status bar; an empty one clears it.
    virtual void setStatusText(const std::wstring& text) = 0;
    /// May be null. Lives as long as the application.
    virtual IStatusManager* statusManager() = 0;

    /// Makes the frame ready for a document of that title.
    virtual std::shared_ptr<IFrame> prepareFrame(const std::wstring& title) = 0;
    /// True when the host can't take a comparison now.
    virtual bool frameUnavailable() = 0;

    /// Announces background work. From here on the end of progress is latched: a worker that
    /// ends before runProgress() was entered makes runProgress() return at once.
    virtual void prepareBackgroundWork() = 0;
    /// Safe from any thread. 0 resets the progress window, 1 to 100 are per cent, 101 ends it.
    /// A 0 that comes after an end of the same background work does not undo the end.
    virtual void setProgress(int value) = 0;
    /// Shows the modal progress window and serves messages until the end of progress.
    /// Returns 2 when the user cancelled, another number otherwise.
    virtual int runProgress(const std::wstring& title) = 0;

    /// Opens the file as a new document. All hints of the opening have been delivered when it
    /// returns. Empty when the file can't be opened. `flag` 1: as the result of a comparison.
    virtual std::shared_ptr<IDocument> openDocument(const std::wstring& path, int flag) = 0;
    /// Opens a file as the user would from the menu.
    virtual void openFile(const std::wstring& path) = 0;
};

}  // namespace bxt

namespace bxtui {

/// The host's application with a window of its own.
class IWApplication : public bxt::IApplication {
public:
    ~IWApplication() override;
    /// The application's own factory, which no document owns; may be empty.
    virtual std::shared_ptr<bxtsg::IFactory> factory() = 0;
};

}  // namespace bxtui
