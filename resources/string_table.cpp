#include "resources/string_table.h"

#include <algorithm>
#include <memory>

#include "platform/bxt/resource_loader.h"
#include "platform/bxt/services.h"
#include "resources/texts.h"

namespace resources {
namespace {

struct Language {
    const wchar_t* code;
    std::span<const Text> (*texts)();
};

// A translation is one more file and one more row. A language without a row reads as English.
constexpr Language kLanguages[] = {
    {L"en", englishTexts},
};

const wchar_t* find(std::span<const Text> texts, std::uint32_t id) {
    const auto found =
        std::lower_bound(texts.begin(), texts.end(), id,
                         [](const Text& text, std::uint32_t wanted) { return text.id < wanted; });
    return found != texts.end() && found->id == id ? found->text : nullptr;
}

class ModuleTexts : public bxt::StringTable {
public:
    std::optional<std::wstring> text(std::uint32_t id,
                                     const std::wstring& language) const override {
        for (const Language& row : kLanguages) {
            if (language != row.code) continue;
            if (const wchar_t* found = find(row.texts(), id)) return std::wstring(found);
        }
        return std::nullopt;
    }
};

struct Installation {
    std::shared_ptr<const bxt::StringTable> table;
    int count = 0;
};

Installation& installation() {
    static Installation current;
    return current;
}

}  // namespace

void install() {
    Installation& current = installation();
    if (current.count++ == 0) current.table = std::make_shared<ModuleTexts>();
    bxt::services().strings = current.table;
}

void uninstall() {
    Installation& current = installation();
    if (current.count == 0 || --current.count > 0) return;
    if (bxt::services().strings == current.table) bxt::services().strings.reset();
    current.table.reset();
}

std::wstring text(std::uint32_t id) {
    return bxtsgutils::ResourceLoader::getString(kModule, id);
}

std::wstring englishText(std::uint32_t id) {
    return bxtsgutils::ResourceLoader::getEngString(kModule, id);
}

}  // namespace resources
