#include <cstdio>
#include <set>
#include <sstream>

#include <dlfcn.h>
#include <gtest/gtest.h>

#include "platform/bxt/plugin.h"
#include "platform/bxt/resource_loader.h"
#include "platform/bxt/services.h"
#include "tests/support/scripted_host.h"
#include "tests/support/scripted_host_services.h"

namespace {

constexpr const char* kVersion = "BXT_1";

/// The plug-in's library, loaded as a host loads it.
class PluginModule : public testing::Test {
protected:
    void SetUp() override {
        library = dlopen(PLUGIN_PATH, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(library, nullptr) << dlerror();
        create = reinterpret_cast<CreatePluginFunction>(dlvsym(library, "createPlugin", kVersion));
        destroy =
            reinterpret_cast<DestroyPluginFunction>(dlvsym(library, "destroyPlugin", kVersion));
        ASSERT_NE(create, nullptr);
        ASSERT_NE(destroy, nullptr);
    }
    void TearDown() override {
        if (library) dlclose(library);
    }

    support::TestServices services;
    void* library = nullptr;
    CreatePluginFunction create = nullptr;
    DestroyPluginFunction destroy = nullptr;
};

TEST_F(PluginModule, AnotherVersionHasNoEntryPoints) {
    EXPECT_EQ(dlvsym(library, "createPlugin", "BXT_2"), nullptr);
    EXPECT_EQ(dlvsym(library, "destroyPlugin", "BXT_0"), nullptr);
}

TEST_F(PluginModule, ExportsItsTwoEntryPointsAndNothingElse) {
    const std::string command = std::string(NM_PROGRAM) + " -D --defined-only " PLUGIN_PATH;
    FILE* pipe = popen(command.c_str(), "r");
    ASSERT_NE(pipe, nullptr);
    std::string output;
    char buffer[256];
    while (std::fgets(buffer, sizeof buffer, pipe)) output += buffer;
    ASSERT_EQ(pclose(pipe), 0);
    std::set<std::string> symbols;
    std::istringstream lines(output);
    std::string address;
    std::string kind;
    std::string name;
    while (lines >> address >> kind >> name) symbols.insert(kind + " " + name);
    // The version itself shows as an absolute symbol.
    EXPECT_EQ(symbols, (std::set<std::string>{"A BXT_1", "T createPlugin@@BXT_1",
                                              "T destroyPlugin@@BXT_1"}));
}

TEST_F(PluginModule, CreateStoresAPluginAndDestroyEmptiesThePointer) {
    testing::internal::CaptureStderr();
    bxtui::IGUIPlugin* plugin = nullptr;
    EXPECT_EQ(create(&plugin), 0);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("ERROR: 6 null functions"),
              std::string::npos);
    ASSERT_NE(plugin, nullptr);
    EXPECT_EQ(plugin->name(), L"Compare Plugin");
    EXPECT_EQ(plugin->id(), L"{344DCF82-A071-4A52-8704-4692167341F2}");
    EXPECT_EQ(plugin->version(), L"6.7.0.365");
    EXPECT_EQ(destroy(&plugin), 0);
    EXPECT_EQ(plugin, nullptr);
}

TEST_F(PluginModule, EntryPointsAreFoundByPlainNameToo) {
    EXPECT_EQ(dlsym(library, "createPlugin"), reinterpret_cast<void*>(create));
    EXPECT_EQ(dlsym(library, "destroyPlugin"), reinterpret_cast<void*>(destroy));
}

TEST_F(PluginModule, EntryPointsReturnZeroWithoutAnAddressToo) {
    services.log->clear();
    EXPECT_EQ(create(nullptr), 0);
    EXPECT_EQ(destroy(nullptr), 0);
    EXPECT_TRUE(services.log->entries().empty());
    EXPECT_EQ(bxt::services().strings, nullptr);
}

TEST_F(PluginModule, DestroyOfANullPointerDoesNothing) {
    bxtui::IGUIPlugin* plugin = nullptr;
    services.log->clear();
    EXPECT_EQ(destroy(&plugin), 0);
    EXPECT_EQ(plugin, nullptr);
    EXPECT_TRUE(services.log->entries().empty());
}

TEST_F(PluginModule, TextsAreThereFromCreateToDestroy) {
    bxtui::IGUIPlugin* first = nullptr;
    bxtui::IGUIPlugin* second = nullptr;
    create(&first);
    create(&second);
    destroy(&first);
    std::wstring text;
    second->englishCommandName(137, text);
    EXPECT_EQ(text, L"Compare");
    EXPECT_EQ(bxtsgutils::ResourceLoader::getString(L"compareplugin.dll", 140), L"Comparing...");
    destroy(&second);
    EXPECT_EQ(bxt::services().strings, nullptr);
}

TEST_F(PluginModule, RunsAComparisonAcrossTheLibrarysBorder) {
    bxtui::IGUIPlugin* plugin = nullptr;
    create(&plugin);
    ASSERT_NE(plugin, nullptr);
    auto host = std::make_shared<support::ScriptedHost>(services.log);
    host->hints->views = {plugin};
    host->activate(host->addDocument("source", L"/data/open.stp"));
    services.files->existing = {L"/data/ref.stp", L"/data/cmp.stp"};
    services.toolkit->scripts.emplace_back([](support::FakeDialog::State& prompt) {
        prompt.type(1001, L"/data/ref.stp");
        prompt.type(1002, L"/data/cmp.stp");
        prompt.click(1);
    });
    services.useWorkers<support::ThreadedWorkers>();
    plugin->onCommand(nullptr, 101, host);
    const auto record = host->active->document()->getAs<bxtsg::SCComprae>(29);
    ASSERT_TRUE(record);
    EXPECT_EQ(record->refFile(), L"/data/ref.stp");
    EXPECT_TRUE(services.log->contains("dialog1300.show"));

    // What the plug-in left with the host must be gone before its code goes.
    host->hints->views.clear();
    host->activate(nullptr);
    destroy(&plugin);
    EXPECT_EQ(plugin, nullptr);
}

}  // namespace
