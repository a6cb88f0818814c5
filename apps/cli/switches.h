#pragma once

#include <array>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "apps/cli/options.h"
#include "platform/os/key_store.h"

namespace cli {

/// One of the numbers in the user's key store that decide what a comparison and its reports hold.
struct Switch {
    const char* name;
    bool onByDefault;  ///< what it counts as while it is not stored
    const char* meaning;
};

/// All of them in the order of the store's documentation.
const std::array<Switch, 9>& allSwitches();

/// Key that holds them, relative to the user's root.
constexpr const wchar_t* kSwitchesKey = L"Software\\Bextora\\bextora\\Settings\\Compare";

/// A key store over another one in which some switches read as a command line wants them.
/// Everything else, all writing included, is the other one's; a key that it refuses can still be
/// read here for the sake of those switches.
class SwitchOverlay final : public os::KeyStore {
public:
    SwitchOverlay(std::shared_ptr<os::KeyStore> store, const std::vector<SwitchSetting>& settings);

    std::unique_ptr<os::Key> open(const std::wstring& path, os::KeyAccess access) override;
    std::unique_ptr<os::Key> create(const std::wstring& path, os::KeyAccess access) override;

    using Numbers = std::map<std::wstring, std::uint32_t>;

private:
    std::unique_ptr<os::Key> covered(const std::wstring& path, std::unique_ptr<os::Key> key) const;

    std::shared_ptr<os::KeyStore> store_;
    std::shared_ptr<Numbers> numbers_ = std::make_shared<Numbers>();
};

/// Stores the settings. False, and some may then be stored, when the store can't be written.
bool storeSwitches(os::KeyStore& store, const std::vector<SwitchSetting>& settings);

/// One line per switch: name, number, "default" where nothing is stored, and what it means. Null
/// is a store without anything.
std::string switchList(os::KeyStore* store);

}  // namespace cli
