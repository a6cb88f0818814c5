#pragma once

#include <memory>
#include <string>

#include "platform/bxt/plugin.h"
#include "workflow/compare_workflow.h"

namespace shell {

class CompareSettingsDlg;

/// The plug-in object that the host loads: its identity, and the host's calls handed on to the
/// compare workflow. All operations belong to the host's user-interface thread.
class ComparePlugin : public bxtui::IGUIPlugin {
public:
    /// Binds the exchange library. Without it the plug-in works on; what needs the library fails.
    ComparePlugin();

    /// Lets go, in this order, of comparer, results dialog and job, then of the settings page,
    /// and of what the workflow shares with the host.
    ~ComparePlugin() override;

    std::wstring name() const override;
    int pluginType() const override;
    /// Always empty: the plug-in extends no object of the host.
    std::shared_ptr<void> extensionFor(std::shared_ptr<void> object) override;
    void attachExtension(std::shared_ptr<void> object, std::shared_ptr<void> extension) override;
    void reservedHook() override;

    /// Does nothing so far. A host without a ribbon has no bar and reaches the command through
    /// onCommand() all the same.
    void createRibbonItems(bxtui::RibbonBarHandle bar,
                           std::shared_ptr<bxtui::IResourceManager> resources) override;
    void releaseRibbonItems(bxtui::RibbonBarHandle bar,
                            std::shared_ptr<bxtui::IResourceManager> resources) override;
    /// Does nothing so far. A host without a screen has no settings sheet; the switches are in
    /// the key store.
    void addSettingsPages(bxtui::PropertySheetHandle sheet,
                          std::shared_ptr<bxtsg::IFactory> factory) override;

    /// Any command id starts the comparison: every entry leads here.
    void onCommand(bxtui::WindowHandle window, std::uint32_t commandId,
                   std::shared_ptr<bxt::IApplication> application) override;
    /// Enabled unless the active document is a drawing.
    void commandState(bxtui::WindowHandle window, std::uint32_t commandId,
                      bxtui::CommandState& state) override;
    void englishCommandName(std::uint32_t stringId, std::wstring& out) override;
    void attachApplication(std::shared_ptr<bxt::IApplication> application) override;
    bool isAvailable() const override;

    void update(const bxtui::Hint* hint) override;

    const workflow::WorkflowState& state() const { return workflow_.state(); }

private:
    // The settings page goes before what the workflow shares with the host, hence the order.
    workflow::CompareWorkflow workflow_;

protected:
    /// Replaced each time the host builds its settings sheet.
    std::shared_ptr<CompareSettingsDlg> settingsPage_;
    /// Nothing sets it to true.
    bool settingsPagePending_ = false;
};

}  // namespace shell
