#include "apps/cli/switches.h"

#include <algorithm>

#include "apps/cli/table.h"
#include "platform/os/utf8.h"

namespace cli {
namespace {

constexpr std::size_t kWidestColumn = 40;

wchar_t lower(wchar_t c) {
    return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c;
}

std::wstring lowered(std::wstring text) {
    std::transform(text.begin(), text.end(), text.begin(), lower);
    return text;
}

class OverlayKey final : public os::Key {
public:
    OverlayKey(std::unique_ptr<os::Key> key, std::shared_ptr<const SwitchOverlay::Numbers> numbers)
        : key_(std::move(key)), numbers_(std::move(numbers)) {}

    std::optional<std::uint32_t> readNumber(const std::wstring& name) const override {
        const auto found = numbers_->find(lowered(name));
        if (found != numbers_->end()) return found->second;
        return key_ ? key_->readNumber(name) : std::nullopt;
    }
    std::optional<std::wstring> readText(const std::wstring& name) const override {
        if (numbers_->count(lowered(name)) > 0) return std::nullopt;
        return key_ ? key_->readText(name) : std::nullopt;
    }
    bool writeNumber(const std::wstring& name, std::uint32_t value) override {
        return key_ && key_->writeNumber(name, value);
    }
    bool writeText(const std::wstring& name, const std::wstring& value) override {
        return key_ && key_->writeText(name, value);
    }

private:
    std::unique_ptr<os::Key> key_;
    std::shared_ptr<const SwitchOverlay::Numbers> numbers_;
};

}  // namespace

const std::array<Switch, 9>& allSwitches() {
    static constexpr std::array<Switch, 9> kSwitches = {{
        {"PSCompare", true, "compare product structure and bill of materials"},
        {"PMICompare", true, "compare PMI"},
        {"AttribCompare", true, "compare attributes"},
        {"PSCompareReport", true, "bill of materials in PDF and HTML reports"},
        {"PMICompareReport", true, "PMI in PDF and HTML reports"},
        {"AttribCompareReport", true, "attributes in PDF and HTML reports"},
        {"3DReport", true, "3D differences in PDF and HTML reports"},
        {"IncludeRefFile", false, "reference file in PDF and HTML reports"},
        {"IncludeCmpFile", false, "compare file in PDF and HTML reports"},
    }};
    return kSwitches;
}

SwitchOverlay::SwitchOverlay(std::shared_ptr<os::KeyStore> store,
                             const std::vector<SwitchSetting>& settings)
    : store_(std::move(store)) {
    for (const SwitchSetting& setting : settings) {
        (*numbers_)[lowered(os::toWide(setting.name))] = setting.on ? 1 : 0;
    }
}

std::unique_ptr<os::Key> SwitchOverlay::covered(const std::wstring& path,
                                                std::unique_ptr<os::Key> key) const {
    if (lowered(path) != lowered(kSwitchesKey)) return key;
    return std::make_unique<OverlayKey>(std::move(key), numbers_);
}

std::unique_ptr<os::Key> SwitchOverlay::open(const std::wstring& path, os::KeyAccess access) {
    return covered(path, store_ ? store_->open(path, access) : nullptr);
}

std::unique_ptr<os::Key> SwitchOverlay::create(const std::wstring& path, os::KeyAccess access) {
    return covered(path, store_ ? store_->create(path, access) : nullptr);
}

bool storeSwitches(os::KeyStore& store, const std::vector<SwitchSetting>& settings) {
    const auto key = store.create(kSwitchesKey, os::KeyAccess::Write);
    if (!key) return false;
    return std::all_of(settings.begin(), settings.end(), [&key](const SwitchSetting& setting) {
        return key->writeNumber(os::toWide(setting.name), setting.on ? 1 : 0);
    });
}

std::string switchList(os::KeyStore* store) {
    const auto key = store ? store->open(kSwitchesKey, os::KeyAccess::Read) : nullptr;
    Table table(kWidestColumn);
    for (const Switch& each : allSwitches()) {
        const auto number = key ? key->readNumber(os::toWide(each.name)) : std::nullopt;
        const bool on = number ? *number != 0 : each.onByDefault;
        table.add({{each.name, Paint::None},
                   {on ? "1" : "0", Paint::None},
                   {number ? "" : "default", Paint::None},
                   {each.meaning, Paint::None}});
    }
    return table.text(false);
}

}  // namespace cli
