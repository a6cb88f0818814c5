#include "shell/settings/compare_settings.h"

#include <cstdint>
#include <string>

#include "platform/os/services.h"
#include "resources/string_ids.h"
#include "resources/string_table.h"

namespace settings {
namespace {

namespace id = resources::id;

struct Switch {
    std::uint32_t nameId;
    bool bxt::Settings::*field;
};

constexpr Switch kSwitches[] = {
    {id::kPsCompare, &bxt::Settings::psCompare},
    {id::kPmiCompare, &bxt::Settings::pmiCompare},
    {id::kAttribCompare, &bxt::Settings::attribCompare},
    {id::kPsCompareReport, &bxt::Settings::psCompareReport},
    {id::kPmiCompareReport, &bxt::Settings::pmiCompareReport},
    {id::kAttribCompareReport, &bxt::Settings::attribCompareReport},
    {id::kThreeDReport, &bxt::Settings::threeDReport},
    {id::kIncludeRefFile, &bxt::Settings::includeRefFile},
    {id::kIncludeCmpFile, &bxt::Settings::includeCmpFile},
};

constexpr std::uint32_t kSectionSwitches[] = {id::kPsCompare, id::kPmiCompare, id::kAttribCompare};

struct ReportSwitch {
    std::uint32_t nameId;
    bool ReportSwitches::*field;
};

// In the order in which reports ask for them.
constexpr ReportSwitch kReportSwitches[] = {
    {id::kThreeDReport, &ReportSwitches::threeDResult},
    {id::kIncludeRefFile, &ReportSwitches::referenceFile},
    {id::kIncludeCmpFile, &ReportSwitches::compareFile},
    {id::kPsCompareReport, &ReportSwitches::productStructure},
    {id::kAttribCompareReport, &ReportSwitches::attributes},
    {id::kPmiCompareReport, &ReportSwitches::pmi},
};

constexpr const wchar_t* kWorkspaceKey = L"Software\\Bextora\\bextora\\Workspace";
constexpr const wchar_t* kPrecisionValue = L"DocPrec";

std::unique_ptr<os::Key> createKey(os::KeyAccess access) {
    const auto& store = os::services().keyStore;
    return store ? store->create(resources::text(id::kSettingsKey), access) : nullptr;
}

}  // namespace

void SaveCompareSettings(const std::shared_ptr<bxt::Settings>& switches) {
    if (!switches) return;
    const auto key = createKey(os::KeyAccess::Write);
    if (!key) return;
    for (const Switch& row : kSwitches) {
        key->writeNumber(resources::text(row.nameId), (*switches).*row.field ? 1 : 0);
    }
}

void LoadCompareSettings(const std::shared_ptr<bxt::Settings>& switches) {
    if (!switches) return;
    const auto key = createKey(os::KeyAccess::Full);
    if (!key) return;
    for (const Switch& row : kSwitches) {
        if (const auto value = key->readNumber(resources::text(row.nameId))) {
            (*switches).*row.field = *value != 0;
        }
    }
}

void ReadSectionSwitches(std::vector<bool>& out) {
    const auto key = createKey(os::KeyAccess::Full);
    if (!key) return;
    for (const std::uint32_t nameId : kSectionSwitches) {
        if (const auto value = key->readNumber(resources::text(nameId))) out.push_back(*value != 0);
    }
}

DialogSwitches ReadDialogSwitches() {
    DialogSwitches switches;
    const auto key = createKey(os::KeyAccess::Full);
    if (!key) return switches;
    const auto on = [&key](std::uint32_t nameId) {
        return key->readNumber(resources::text(nameId)).value_or(1) != 0;
    };
    switches.productStructure = on(id::kPsCompare);
    switches.pmi = on(id::kPmiCompare);
    switches.attributes = on(id::kAttribCompare);
    return switches;
}

void LoadReportSwitches(ReportSwitches& switches) {
    const auto key = createKey(os::KeyAccess::Full);
    if (!key) return;
    for (const ReportSwitch& row : kReportSwitches) {
        if (const auto value = key->readNumber(resources::text(row.nameId))) {
            switches.*row.field = *value != 0;
        }
    }
}

std::int32_t ReadNumberPrecision(std::int32_t fallback) {
    const auto& store = os::services().keyStore;
    const auto key = store ? store->create(kWorkspaceKey, os::KeyAccess::Read) : nullptr;
    const auto value = key ? key->readNumber(kPrecisionValue) : std::nullopt;
    return value ? static_cast<std::int32_t>(*value) : fallback;
}

}  // namespace settings
