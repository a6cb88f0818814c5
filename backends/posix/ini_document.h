#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace posix {

/// What a value holds.
using IniValue = std::variant<std::uint32_t, std::wstring>;

/// The key store's text form:
///
///     [Software\Bextora\bextora\Settings\Compare]
///     PSCompare=1
///     StampPath="C:\pictures\stamp.png"
///
/// A whole number that fits 32 bits (decimal) is a number; any other text, best in double quotes,
/// is text. `%{hex}` stands for the character of that code wherever one can't stand by itself.
/// Names are compared without regard to ASCII case. Where a section or a name occurs twice, the
/// last value counts. A key exists when its own section or one below it does.
///
/// Lines that make no sense are kept byte for byte and where they are, and so are comments
/// (`;`, `#`), order and line ends: only the lines of values that are written change.
class IniDocument {
public:
    IniDocument() = default;
    /// Any bytes will do.
    explicit IniDocument(std::string_view bytes);

    /// `path` is separated by backslashes; leading, trailing and doubled ones don't count.
    bool hasKey(std::wstring_view path) const;
    void addKey(std::wstring_view path);

    std::optional<IniValue> value(std::wstring_view path, std::wstring_view name) const;
    /// Adds the key too when it is missing.
    void setValue(std::wstring_view path, std::wstring_view name, const IniValue& value);

    std::string bytes() const;

private:
    struct Line {
        enum class Kind { Other, Section, BrokenSection, Value };

        std::string raw;  // without the line feed
        Kind kind = Kind::Other;
        std::wstring name;              // Section: its path; Value: its name; ASCII lower case
        std::optional<IniValue> value;  // empty when it makes no sense
    };

    static Line parse(std::string_view raw);
    static Line sectionLine(std::wstring_view path);
    static Line valueLine(std::wstring_view name, const IniValue& value);

    std::vector<Line> lines_;
};

}  // namespace posix
