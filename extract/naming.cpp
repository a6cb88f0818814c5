#include "extract/naming.h"

namespace extract {
namespace {

bool isBlank(wchar_t c) {
    return c == L' ' || c == L'\t' || c == L'\r' || c == L'\n';
}

}  // namespace

// The scene library hands out zero-terminated arrays: what stands behind a zero is no text.
std::wstring ReadText(const HPS::UTF8& text) {
    std::wstring wide = text.ToWide();
    const std::size_t zero = wide.find(L'\0');
    if (zero != std::wstring::npos) wide.resize(zero);
    return wide;
}

std::wstring ReadName(const HPS::Component& component) {
    return ReadText(component.GetName());
}

std::wstring ReadFileName(const HPS::Component& component) {
    const HPS::StringMetadata file(component.GetMetadata("Filename"));
    return file.Empty() ? std::wstring() : ReadText(file.GetValue());
}

std::wstring GetFileStem(const HPS::Component& component) {
    try {
        return std::wstring(StemOfPath(ReadFileName(component)));
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
