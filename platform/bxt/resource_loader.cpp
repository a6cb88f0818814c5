#include "platform/bxt/resource_loader.h"

#include "platform/bxt/services.h"
#include "platform/os/utf8.h"

bxt::Services& bxt::services() {
    static Services installed;
    return installed;
}

namespace bxtsgutils {
namespace {

constexpr const wchar_t* kModule = L"compareplugin.dll";
constexpr const wchar_t* kEnglish = L"en";

std::wstring lookUp(const std::wstring& module, std::uint32_t id, const std::wstring& language) {
    const auto& table = bxt::services().strings;
    if (!table || module != kModule) return {};
    if (auto text = table->text(id, language)) return *text;
    return table->text(id, kEnglish).value_or(std::wstring());
}

}  // namespace

std::wstring ResourceLoader::getString(const std::wstring& module, std::uint32_t id) {
    return lookUp(module, id, getCurrentLocaleID());
}

std::wstring ResourceLoader::getEngString(const std::wstring& module, std::uint32_t id) {
    return lookUp(module, id, kEnglish);
}

std::wstring ResourceLoader::getCurrentLocaleID() {
    return bxt::services().language;
}

std::uint32_t ResourceLoader::getImage(std::uint32_t at100, std::uint32_t at125,
                                       std::uint32_t at150, std::uint32_t at200) {
    const int dpi = dotsPerInch();
    if (dpi >= 192) return at200;
    if (dpi >= 144) return at150;
    return dpi >= 120 ? at125 : at100;
}

int ResourceLoader::dotsPerInch() {
    return bxt::services().dotsPerInch;
}

std::wstring StringUtils::convert(const std::string& narrow) {
    return os::toWide(narrow);
}

}  // namespace bxtsgutils
