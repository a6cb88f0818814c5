#include "shell/compare_plugin.h"

#include <gtest/gtest.h>

#include <cstring>

#include "extract/import_library.h"
#include "platform/bxt/services.h"
#include "resources/string_table.h"
#include "tests/support/scripted_host.h"
#include "tests/support/scripted_host_services.h"
#include "workflow/shared_state.h"

namespace {

using Entries = std::vector<std::string>;

void* anyAddress(const char*) {
    return reinterpret_cast<void*>(anyAddress);
}

class Plugin : public testing::Test {
protected:
    Plugin() {
        resources::install();
        workflow::shared() = {};
        services.modules->libraries[L"A3DLIBS.dll"] = {
            {"A3DGetProcAddress", reinterpret_cast<void*>(anyAddress)}};
        plugin = std::make_unique<shell::ComparePlugin>();
    }
    ~Plugin() override {
        if (host) host->hints->views.clear();
        plugin.reset();
        workflow::shared() = {};
        extract::importLibrary().Release();
        resources::uninstall();
    }
    void openHost() {
        host = std::make_shared<support::ScriptedHost>(services.log);
        host->hints->views = {plugin.get()};
        host->activate(host->addDocument("source", L"/data/open.stp"));
        services.files->existing = {L"/data/ref.stp", L"/data/cmp.stp"};
    }
    void choosePair() {
        services.toolkit->scripts.emplace_back([](support::FakeDialog::State& prompt) {
            prompt.type(1001, L"/data/ref.stp");
            prompt.type(1002, L"/data/cmp.stp");
            prompt.click(1);
        });
    }
    bxtui::CommandState commandState() {
        bxtui::CommandState state = {.enabled = 9, .checked = 7};
        plugin->commandState(nullptr, 101, state);
        return state;
    }

    support::TestServices services;
    std::shared_ptr<support::ScriptedHost> host;
    std::unique_ptr<shell::ComparePlugin> plugin;
};

TEST_F(Plugin, HasItsIdentity) {
    EXPECT_EQ(plugin->id(), L"{344DCF82-A071-4A52-8704-4692167341F2}");
    EXPECT_EQ(plugin->name(), L"Compare Plugin");
    EXPECT_EQ(plugin->pluginType(), 2);
    EXPECT_EQ(plugin->version(), L"6.7.0.365");
    EXPECT_EQ(plugin->releaseDate(), L"Jul 13 2026");
    EXPECT_TRUE(plugin->isAvailable());
}

TEST_F(Plugin, IsViewEventHandlerAndPlugin) {
    bxtui::IGUIPlugin* base = plugin.get();
    EXPECT_NE(dynamic_cast<bxt::IPlugin*>(base), nullptr);
    EXPECT_NE(dynamic_cast<bxt::IView*>(base), nullptr);
    EXPECT_NE(dynamic_cast<bxt::IEventHandler*>(base), nullptr);
    EXPECT_NE(dynamic_cast<HPS::EventHandler*>(base), nullptr);
    EXPECT_NE(dynamic_cast<HPS::Object*>(base), nullptr);
}

#if defined(__x86_64__)
/// Place of a virtual operation in the primary table; the two destructors share place 1 as 0 and
/// 1, so that every other operation stands at its own number.
template <typename Operation>
std::size_t placeOf(Operation operation) {
    static_assert(sizeof operation == 2 * sizeof(std::size_t));
    std::size_t parts[2] = {};
    std::memcpy(parts, &operation, sizeof operation);
    EXPECT_EQ(parts[0] % sizeof(void*), 1U) << "not a virtual operation";
    EXPECT_EQ(parts[1], 0U) << "not in the primary table";
    return parts[0] / sizeof(void*);
}

TEST_F(Plugin, OperationsStandInTheOrderThatHostsWereBuiltFor) {
    using Host = bxtui::IGUIPlugin;
    EXPECT_EQ(placeOf(&Host::name), 2U);
    EXPECT_EQ(placeOf(&Host::pluginType), 3U);
    EXPECT_EQ(placeOf(&Host::id), 4U);
    EXPECT_EQ(placeOf(&Host::features), 5U);
    EXPECT_EQ(placeOf(&Host::extensionFor), 6U);
    EXPECT_EQ(placeOf(&Host::attachExtension), 7U);
    EXPECT_EQ(placeOf(&Host::loadDefaultPreferences), 8U);
    EXPECT_EQ(placeOf(&Host::setParent), 9U);
    EXPECT_EQ(placeOf(&Host::reservedHook), 10U);
    EXPECT_EQ(placeOf(&Host::version), 11U);
    EXPECT_EQ(placeOf(&Host::createRibbonItems), 12U);
    EXPECT_EQ(placeOf(&Host::releaseRibbonItems), 13U);
    EXPECT_EQ(placeOf(&Host::addSettingsPages), 14U);
    EXPECT_EQ(placeOf(&Host::onCommand), 15U);
    EXPECT_EQ(placeOf(&Host::commandState), 16U);
    EXPECT_EQ(placeOf(&Host::AddToContextMenu), 17U);
    EXPECT_EQ(placeOf(&Host::OnTabActivate), 18U);
    EXPECT_EQ(placeOf(&Host::englishCommandName), 19U);
    EXPECT_EQ(placeOf(&Host::OnHotKeyPress), 20U);
    EXPECT_EQ(placeOf(&Host::attachApplication), 21U);
    EXPECT_EQ(placeOf(&Host::isAvailable), 22U);
    // The view's own table: two destructors, then update().
    EXPECT_EQ(placeOf(&bxt::IView::update), 2U);
}
#endif

TEST_F(Plugin, InheritedOperationsStandUnchanged) {
    EXPECT_TRUE(plugin->features().empty());
    EXPECT_FALSE(plugin->OnHotKeyPress(1));
    EXPECT_EQ(plugin->Type(), 0U);
    EXPECT_EQ(plugin->ObjectType(), 0U);
    EXPECT_FALSE(plugin->Empty());
    EXPECT_FALSE(plugin->Handle(nullptr));
    plugin->Reset();
    plugin->loadDefaultPreferences();
    plugin->setParent(nullptr);
    plugin->AddToContextMenu(nullptr);
    plugin->OnTabActivate(nullptr);
    EXPECT_EQ(plugin->version(), L"6.7.0.365");
}

TEST_F(Plugin, OperationsWithoutEffectHaveNone) {
    services.log->clear();
    const auto object = std::make_shared<int>(1);
    EXPECT_EQ(plugin->extensionFor(object), nullptr);
    plugin->attachExtension(object, object);
    EXPECT_EQ(plugin->extensionFor(object), nullptr);
    plugin->reservedHook();
    plugin->createRibbonItems(nullptr, nullptr);
    plugin->releaseRibbonItems(nullptr, nullptr);
    plugin->addSettingsPages(nullptr, nullptr);
    const auto application = std::make_shared<support::ScriptedHost>(services.log);
    plugin->attachApplication(application);
    EXPECT_EQ(application.use_count(), 1);
    EXPECT_EQ(object.use_count(), 1);
    EXPECT_EQ(workflow::shared().sharedApplication, nullptr);
}

TEST_F(Plugin, StartsWithItsInitialState) {
    EXPECT_FALSE(plugin->state().resultPending);
    EXPECT_NE(plugin->state().compareJob, nullptr);
    EXPECT_EQ(plugin->state().resultsDialog, nullptr);
    EXPECT_FALSE(plugin->state().activeIs2D);
}

TEST_F(Plugin, GivesEnglishCommandNames) {
    std::wstring text = L"before";
    plugin->englishCommandName(137, text);
    EXPECT_EQ(text, L"Compare");
    plugin->englishCommandName(211, text);
    EXPECT_EQ(text, L"Compare Files");
    plugin->englishCommandName(5, text);
    EXPECT_EQ(text, L"");
}

/// Texts that tell their language.
class MarkedTexts : public bxt::StringTable {
public:
    std::optional<std::wstring> text(std::uint32_t id,
                                     const std::wstring& language) const override {
        return language + std::to_wstring(id);
    }
};

TEST_F(Plugin, CommandNamesAreEnglishInEveryLanguage) {
    bxt::services().strings = std::make_shared<MarkedTexts>();
    bxt::services().language = L"de";
    std::wstring text;
    plugin->englishCommandName(137, text);
    EXPECT_EQ(text, L"en137");
    bxt::services() = {};
}

TEST_F(Plugin, TheCommandIsEnabledForModelsAndGreyForDrawings) {
    openHost();
    EXPECT_EQ(commandState().enabled, 1);
    EXPECT_EQ(commandState().checked, 7);
    host->sendHint(1, host->addDocument("plan", L"/data/plan.dwg"));
    EXPECT_EQ(commandState().enabled, 0);
    EXPECT_EQ(commandState().checked, 0);
    host->sendHint(18, host->active);
    EXPECT_EQ(commandState().enabled, 1);
}

TEST_F(Plugin, TheCommandRunsToAShownResult) {
    openHost();
    choosePair();
    plugin->onCommand(nullptr, 101, host);
    EXPECT_TRUE(services.log->contains("notePlugin Compare Plugin"));
    EXPECT_TRUE(services.log->contains("dialog1300.show"));
    EXPECT_NE(plugin->state().resultFactory, nullptr);
}

TEST_F(Plugin, ConstructionBindsTheLibrary) {
    EXPECT_TRUE(extract::importLibrary().Bound());
}

TEST_F(Plugin, WithoutTheLibraryItIsStillThere) {
    services.modules->libraries.clear();
    testing::internal::CaptureStderr();
    const shell::ComparePlugin lonely;
    const std::string errors = testing::internal::GetCapturedStderr();
    EXPECT_NE(errors.find("ERROR: 6 null functions\n"), std::string::npos);
    EXPECT_FALSE(extract::importLibrary().Bound());
    EXPECT_EQ(lonely.name(), L"Compare Plugin");
    EXPECT_EQ(lonely.id(), L"{344DCF82-A071-4A52-8704-4692167341F2}");
    EXPECT_EQ(lonely.version(), L"6.7.0.365");
}

/// Writes its end into the log.
std::shared_ptr<void> witness(const support::Log& log, const char* entry) {
    return {nullptr, [log, entry](void*) { log->add(entry); }};
}

/// A plug-in that a host's settings sheet has got a page from.
class PluginWithPage : public shell::ComparePlugin {
public:
    using ComparePlugin::settingsPage_;
    using ComparePlugin::settingsPagePending_;
};

TEST_F(Plugin, StartsWithoutASettingsPage) {
    const PluginWithPage other;
    EXPECT_EQ(other.settingsPage_, nullptr);
    EXPECT_FALSE(other.settingsPagePending_);
}

TEST_F(Plugin, TheSettingsPageGoesBeforeTheFactories) {
    auto other = std::make_unique<PluginWithPage>();
    other->settingsPage_ = std::shared_ptr<shell::CompareSettingsDlg>(
        witness(services.log, "settingsPage.delete"), nullptr);
    openHost();
    host->hints->views = {other.get()};
    choosePair();
    other->onCommand(nullptr, 101, host);
    host->sendHint(1, host->addDocument("active", L""));
    host->hints->views.clear();
    host->activate(nullptr);
    services.log->clear();
    other.reset();
    EXPECT_EQ(services.log->entries(),
              (Entries{"dialog1300.destroyWindow", "dialog1300.delete",
                       "import.release /data/ref.stp", "import.release /data/cmp.stp",
                       "source.delete", "settingsPage.delete", "result.delete", "active.delete"}));
}

TEST_F(Plugin, DestructionWithoutARunTouchesNothing) {
    services.log->clear();
    plugin.reset();
    EXPECT_TRUE(services.log->entries().empty());
}

TEST_F(Plugin, DestructionAfterARunLetsGoInOrder) {
    openHost();
    choosePair();
    plugin->onCommand(nullptr, 101, host);
    host->activate(host->addDocument("source", L"/data/open.stp"));
    host->hints->views.clear();
    services.comparer->body = [](bxtimp::IDocComparer::Status& status) {
        status = -1;
        return std::wstring();
    };
    choosePair();
    plugin->onCommand(nullptr, 101, host);
    host->activate(nullptr);
    services.log->clear();
    plugin.reset();
    EXPECT_EQ(services.log->entries(),
              (Entries{"comparer.delete", "dialog1300.destroyWindow", "dialog1300.delete",
                       "import.release /data/ref.stp", "import.release /data/cmp.stp",
                       "source.delete", "result.delete"}));
}

}  // namespace
