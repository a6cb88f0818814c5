#pragma once

#include <cstdint>
#include <string>

namespace bxtsgutils {

/// Texts and images of a module in the user's language. The module of everything in this
/// program is L"compareplugin.dll".
class ResourceLoader {
public:
    /// Text in the user's language; the English one when there is no translation; empty when
    /// the module has no such string.
    static std::wstring getString(const std::wstring& module, std::uint32_t id);
    /// English text, whatever the language.
    static std::wstring getEngString(const std::wstring& module, std::uint32_t id);
    /// Two-letter code of the user's language, for instance L"de".
    static std::wstring getCurrentLocaleID();
    /// The one of four image ids that fits the display's scale: 100, 125, 150, 200 per cent.
    static std::uint32_t getImage(std::uint32_t at100, std::uint32_t at125, std::uint32_t at150,
                                  std::uint32_t at200);
    /// Dots per inch of the display.
    static int dotsPerInch();
};

/// Text helpers of the host.
class StringUtils {
public:
    /// Widens ASCII or UTF-8.
    static std::wstring convert(const std::string& narrow);
};

}  // namespace bxtsgutils
