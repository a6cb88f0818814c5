#pragma once

#include <cstdint>
#include <string>

namespace resources {

/// Name under which the host knows this module's texts.
inline constexpr const wchar_t* kModule = L"compareplugin.dll";

/// Makes this module's texts available through bxtsgutils::ResourceLoader. Calls are counted;
/// each needs its uninstall(), which must come before the module is unloaded, since the host
/// would otherwise keep a table whose code is gone. User-interface thread.
void install();
void uninstall();

/// Text of this module in the user's language; the English one when there is no translation;
/// empty for an unknown id or while the texts are not installed.
std::wstring text(std::uint32_t id);

/// English text, whatever the language.
std::wstring englishText(std::uint32_t id);

}  // namespace resources
