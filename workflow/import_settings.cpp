#include "workflow/import_settings.h"

#include <cstdint>
#include <memory>

#include "platform/bxt/file_path.h"
#include "platform/os/services.h"

namespace workflow {
namespace {

using Kit = HPS::Exchange::ImportOptionsKit;

struct Switch {
    const wchar_t* name;
    Kit& (Kit::*set)(bool);
};

constexpr Switch kSwitches[] = {
    {L"Read Solids", &Kit::SetSolids},
    {L"Import Surfaces", &Kit::SetSurfaces},
    {L"Read Wireframes", &Kit::SetWireframes},
    {L"Read Attributes", &Kit::SetAttributes},
    {L"Import construction and references", &Kit::SetConstructionAndReferences},
    {L"Read PMI", &Kit::SetPMI},
    {L"Read Feature Trees", &Kit::SetFeatureTrees},
};

constexpr std::uint32_t kSwitchDefault = 1;
constexpr std::uint32_t kTessellationDefault = 2;
constexpr std::uint32_t kReadingModeDefault = 2;
constexpr std::uint32_t kColorDefault = 0;
constexpr std::uint32_t kLowByte = 0xFF;

std::uint32_t valueOf(const os::Key& key, const wchar_t* name, std::uint32_t missing) {
    return key.readNumber(name).value_or(missing);
}

float channel(std::uint32_t packed, unsigned shift) {
    return static_cast<float>((packed >> shift) & kLowByte) / 255.0F;
}

}  // namespace

void ImportSettingsKey(const extract::CompareJob&, std::wstring& out) {
    const auto& files = os::services().files;
    const bxt::FilePath executable(files ? files->executablePath() : std::wstring());
    out = L"Software\\Bextora\\" + executable.getFName() + L"\\Settings\\Import";
}

void ApplyImportSettings(const extract::CompareJob& job, Kit& kit) {
    std::wstring path;
    ImportSettingsKey(job, path);
    const auto& store = os::services().keyStore;
    const auto key = store ? store->open(path, os::KeyAccess::Full) : nullptr;
    if (!key) return;
    for (const Switch& row : kSwitches) {
        // The stored number is read as a byte, so 256 means off.
        (kit.*row.set)((valueOf(*key, row.name, kSwitchDefault) & kLowByte) != 0);
    }
    kit.SetTessellationLevel(static_cast<HPS::Exchange::Tessellation::Level>(
        valueOf(*key, L"Set Tessellation Level", kTessellationDefault)));
    kit.SetBRepMode(static_cast<HPS::Exchange::BRepMode>(
        valueOf(*key, L"Set Reading Mode", kReadingModeDefault)));
    const std::uint32_t color = valueOf(*key, L"PMI Color", kColorDefault);
    kit.SetPMIDefaultColor({channel(color, 0), channel(color, 8), channel(color, 16)}, false);
}

}  // namespace workflow
