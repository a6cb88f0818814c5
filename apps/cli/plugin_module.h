#pragma once

#include <memory>
#include <string>

#include "platform/bxt/plugin.h"

namespace cli {

/// A loaded plug-in library and the plug-in that it made. The library is never unloaded: objects
/// whose code lies in it may still be held in registries that are torn down at exit.
class PluginModule {
public:
    /// Loads the library, looks its two entry points up under the version that this host was
    /// built for, and creates the plug-in. Null on failure; `error` then says why.
    static std::unique_ptr<PluginModule> load(const std::string& path, std::string& error);

    /// Destroys the plug-in. Nothing that it made may be in use.
    ~PluginModule();
    PluginModule(const PluginModule&) = delete;
    PluginModule& operator=(const PluginModule&) = delete;

    bxtui::IGUIPlugin& plugin() { return *plugin_; }

private:
    PluginModule(bxtui::IGUIPlugin* plugin, DestroyPluginFunction destroy)
        : plugin_(plugin), destroy_(destroy) {}

    bxtui::IGUIPlugin* plugin_;
    DestroyPluginFunction destroy_;
};

}  // namespace cli
