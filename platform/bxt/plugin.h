#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/bxt/application.h"
#include "platform/hps/object.h"

namespace bxtui {

class IResourceManager;

/// Opaque handles of the host's toolkit.
using RibbonBarHandle = void*;
using PropertySheetHandle = void*;
using WindowHandle = void*;

/// Message to all views: a code and the frame that it concerns.
class Hint {
public:
    /// `frame` may be empty; factory() is then empty too.
    Hint(std::uint16_t code, std::shared_ptr<bxt::IFrame> frame);
    std::uint16_t code() const { return code_; }
    /// Factory of the frame's document as it was when the hint was made.
    const std::shared_ptr<bxtsg::IFactory>& factory() const { return factory_; }

private:
    std::uint16_t code_;
    std::shared_ptr<bxt::IFrame> frame_;
    std::shared_ptr<bxtsg::IFactory> factory_;
};

/// Enable state and check state of a command.
struct CommandState {
    std::uint8_t enabled = 0;
    std::uint8_t checked = 0;
};

}  // namespace bxtui

namespace bxt {

/// Receiver of hints.
class IView {
public:
    virtual ~IView();
    virtual void update(const bxtui::Hint* hint) = 0;
};

/// Receiver of scene events.
class IEventHandler : public HPS::EventHandler {
public:
    ~IEventHandler() override;
    /// Handles one event; true when it was consumed.
    virtual bool Handle(const HPS::Object* event);
};

/// What every plug-in is. Bodies here are the host framework's own.
class IPlugin {
public:
    explicit IPlugin(std::wstring id) : id_(std::move(id)) {}
    virtual ~IPlugin();

    virtual std::wstring name() const = 0;
    virtual int pluginType() const = 0;
    virtual std::wstring id() const { return id_; }
    virtual std::vector<std::wstring> features() const { return {}; }
    virtual std::shared_ptr<void> extensionFor(std::shared_ptr<void> object) = 0;
    virtual void attachExtension(std::shared_ptr<void> object, std::shared_ptr<void> extension) = 0;
    virtual void loadDefaultPreferences() {}
    virtual void setParent(IPlugin* parent) { parent_ = parent; }
    virtual void reservedHook() = 0;
    /// What addVersion() recorded.
    virtual std::wstring version() const { return version_; }

    const std::wstring& releaseDate() const { return releaseDate_; }

protected:
    void addVersion(const std::wstring& version) { version_ = version; }
    void addReleaseDate(const std::wstring& date) { releaseDate_ = date; }

private:
    std::wstring id_;
    std::wstring version_;
    std::wstring releaseDate_;
    IPlugin* parent_ = nullptr;
};

}  // namespace bxt

namespace bxtui {

/// A plug-in with a face: ribbon, settings page, commands.
class IGUIPlugin : public bxt::IPlugin, public bxt::IView, public bxt::IEventHandler {
public:
    using bxt::IPlugin::IPlugin;
    ~IGUIPlugin() override;

    virtual void createRibbonItems(RibbonBarHandle bar,
                                   std::shared_ptr<IResourceManager> resources) = 0;
    virtual void releaseRibbonItems(RibbonBarHandle bar,
                                    std::shared_ptr<IResourceManager> resources) = 0;
    virtual void addSettingsPages(PropertySheetHandle sheet,
                                  std::shared_ptr<bxtsg::IFactory> factory) = 0;
    virtual void onCommand(WindowHandle window, std::uint32_t commandId,
                           std::shared_ptr<bxt::IApplication> application) = 0;
    virtual void commandState(WindowHandle window, std::uint32_t commandId,
                              CommandState& state) = 0;
    virtual void AddToContextMenu(WindowHandle) {}
    virtual void OnTabActivate(WindowHandle) {}
    virtual void englishCommandName(std::uint32_t stringId, std::wstring& out) = 0;
    virtual bool OnHotKeyPress(std::uint32_t) { return false; }
    virtual void attachApplication(std::shared_ptr<bxt::IApplication> application) = 0;
    virtual bool isAvailable() const = 0;
};

}  // namespace bxtui

/// Entry points of a plug-in library, exported with the symbol version BXT_1, which a host must
/// look up by that version before it calls anything. Both return 0.
/// A host unloads the library only when no document holds anything any more that the plug-in
/// attached to it. Until then the library may keep the application alive, also after
/// destroyPlugin.
extern "C" {
using CreatePluginFunction = int (*)(bxtui::IGUIPlugin** out);
using DestroyPluginFunction = int (*)(bxtui::IGUIPlugin** out);
}
