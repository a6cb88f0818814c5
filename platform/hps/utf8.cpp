#include "platform/hps/utf8.h"

#include "platform/os/utf8.h"

namespace HPS {

UTF8::UTF8(const std::wstring& text) : bytes_(os::toUtf8(text)) {}

bool UTF8::ToWStr(std::vector<wchar_t>& out) const {
    out.clear();
    if (bytes_.empty()) return true;
    const std::wstring wide = ToWide();
    out.assign(wide.begin(), wide.end());
    out.push_back(L'\0');
    return true;
}

std::wstring UTF8::ToWide() const {
    return os::toWide(bytes_);
}

}  // namespace HPS
