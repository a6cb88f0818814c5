#include "extract/naming.h"

namespace extract {
namespace {

bool isBlank(wchar_t c) {
    return c == L' ' || c == L'\t' || c == L'\r' || c == L'\n';
}

// The scene library hands out zero-terminated arrays: what stands behind a zero is no text.
void cutAtZero(std::wstring& text) {
    const std::size_t zero = text.find(L'\0');
    if (zero != std::wstring::npos) text.resize(zero);
}

}  // namespace

std::wstring ReadName(const HPS::Component& component) {
    std::wstring name = component.GetName().ToWide();
    cutAtZero(name);
    return name;
}

std::wstring GetFileStem(const HPS::Component& component) {
    try {
        const HPS::StringMetadata file(component.GetMetadata("Filename"));
        if (file.Empty()) return {};
        std::wstring path = file.GetValue().ToWide();
        cutAtZero(path);
        return std::wstring(StemOfPath(path));
    } catch (...) {
        // A file name that can't be read must not cost the whole tree: the display name decides.
        return {};
    }
}

std::wstring_view StemOfPath(std::wstring_view path) {
    const std::size_t separator = path.find_last_of(L"\\/");
    if (separator != std::wstring_view::npos) path.remove_prefix(separator + 1);
    const std::size_t dot = path.rfind(L'.');
    if (dot != std::wstring_view::npos && dot > 0) path = path.substr(0, dot);
    return path;
}

std::wstring_view StripInstanceSuffix(std::wstring_view text) {
    const std::wstring_view kept = TrimBlanks(text.substr(0, text.find(L'(')));
    return kept.empty() ? text : kept;
}

std::wstring_view TrimBlanks(std::wstring_view text) {
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    return text;
}

}  // namespace extract
