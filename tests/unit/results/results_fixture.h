#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "backends/headless/desktop.h"
#include "backends/headless/dialog.h"
#include "backends/headless/toolkit.h"
#include "platform/bxt/services.h"
#include "platform/os/services.h"
#include "platform/ui/services.h"
#include "resources/string_table.h"
#include "results/unified_compare_dialog.h"
#include "tests/support/memory_writer.h"
#include "tests/support/scripted_host.h"
#include "tests/support/scripted_host_services.h"

/// A user who saves where a test says.
class SavingUser : public headless::User {
public:
    void answerDialog(headless::Dialog&) override {}
    int answerMessageBox(const headless::MessageBox&) override { return 1; }
    std::optional<std::wstring> answerSaveFile(const ui::SaveFileOptions& options) override {
        asked = options;
        return savePath;
    }
    std::optional<std::wstring> savePath;
    std::optional<ui::SaveFileOptions> asked;
};

/// The results dialog on a headless desktop.
class ResultsTest : public testing::Test {
protected:
    using Cells = std::vector<std::vector<std::wstring>>;
    using Numbers = std::vector<std::int32_t>;
    static constexpr const wchar_t* kKey = L"Software\\Bextora\\bextora\\Settings\\Compare";

    ResultsTest() {
        resources::install();
        ui::services().toolkit = toolkit;
        ui::services().clipboard = clipboard;
        ui::services().fileChooser = std::make_shared<headless::FileChooser>(user);
        os::services().writer = disk;
        bxt::services().commandEvent = [this](const std::wstring& category,
                                              const std::wstring& action) {
            events.push_back(category + L"/" + action);
        };
    }
    ~ResultsTest() override {
        dialog.reset();
        bxt::services().commandEvent = nullptr;
        os::services().writer.reset();
        ui::services() = {};
        resources::uninstall();
    }

    void create() {
        ASSERT_TRUE(dialog->Create());
        dialog->Show();
    }
    headless::Dialog& window() { return *toolkit->windows().back(); }
    headless::List& list(int id) { return *window().list(id); }
    void set(const wchar_t* name, std::uint32_t value) { services.store->keys[kKey][name] = value; }
    void setModels(const std::vector<std::string>& reference,
                   const std::vector<std::string>& compare) {
        dialog->SetReportContext(document, host, HPS::CADModel(support::flatModel(reference)),
                                 HPS::CADModel(support::flatModel(compare)));
    }
    Cells cells(int id) {
        Cells all;
        for (std::size_t row = 0; row < list(id).rowCount(); ++row) {
            auto& line = all.emplace_back();
            for (std::size_t column = 0; column < list(id).columnCount(); ++column) {
                line.push_back(list(id).text(row, column));
            }
        }
        return all;
    }
    Numbers numbers(int id) {
        Numbers all;
        for (std::size_t row = 0; row < list(id).rowCount(); ++row) {
            all.push_back(list(id).rowData(row));
        }
        return all;
    }
    static results::SectionRows rows(results::Texts referenceNames, results::Texts referenceValues,
                                     results::Texts compareNames, results::Texts compareValues,
                                     std::vector<int> referenceStates = {},
                                     std::vector<int> compareStates = {}) {
        const auto states = [](const std::vector<int>& values) {
            results::States made;
            for (const int value : values) {
                made.push_back(static_cast<extract::ItemDiffState>(value));
            }
            return made;
        };
        return {std::move(referenceNames), std::move(referenceValues), std::move(compareNames),
                std::move(compareValues),  states(referenceStates),    states(compareStates)};
    }
    static extract::PartAttributes part(const std::wstring& name,
                                        std::vector<extract::AttributeEntry> attributes,
                                        bool isDifferent = false) {
        extract::PartAttributes made;
        made.name = name;
        made.attributes = std::move(attributes);
        made.isDifferent = isDifferent;
        return made;
    }
    static results::SectionRows fileInfo() {
        const results::Texts names = {L"File Path", L"File Name", L"Volume", L"Difference"};
        return rows(names, {L"/a", L"a.stp", L"", L"-"}, names, {L"/b", L"b.stp", L"", L"-"},
                    {3, 3, 0, 0}, {3, 3, 0, 0});
    }

    support::TestServices services;
    std::shared_ptr<SavingUser> user = std::make_shared<SavingUser>();
    std::shared_ptr<headless::Toolkit> toolkit = std::make_shared<headless::Toolkit>(user, L"Main");
    std::shared_ptr<headless::Clipboard> clipboard = std::make_shared<headless::Clipboard>();
    std::shared_ptr<support::MemoryWriter> disk = std::make_shared<support::MemoryWriter>();
    std::shared_ptr<support::FakeDocument> document =
        std::make_shared<support::FakeDocument>("d", services.log);
    std::shared_ptr<support::ScriptedHost> host =
        std::make_shared<support::ScriptedHost>(services.log);
    std::vector<std::wstring> events;
    std::unique_ptr<results::UnifiedCompareDialog> dialog =
        std::make_unique<results::UnifiedCompareDialog>();
};
