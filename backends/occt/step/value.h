#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace occt::step {

/// One parameter of an instance.
struct Value {
    enum class Kind {
        Missing,    ///< $
        Derived,    ///< *
        Reference,  ///< #12
        Number,     ///< integer or real
        Text,       ///< 'text', decoded to UTF-8
        Word,       ///< .ENUM. without the dots, or binary
        List,       ///< (a, b)
        Typed,      ///< KEYWORD(a): word is the keyword, items its parameters
    };

    Kind kind = Kind::Missing;
    std::uint64_t reference = 0;
    double number = 0.0;
    bool isInteger = false;  ///< Number written without a decimal point
    std::string text;        ///< Text and Word; the keyword of Typed
    std::vector<Value> items;

    bool isReference() const { return kind == Kind::Reference; }
    bool isText() const { return kind == Kind::Text; }
    bool isList() const { return kind == Kind::List; }
};

/// A keyword with its parameters.
struct Record {
    std::string keyword;
    std::vector<Value> values;

    /// Parameter by position; a missing one past the end.
    const Value& at(std::size_t index) const;
    /// Text parameter, empty when it is none.
    const std::string& text(std::size_t index) const;
    /// Number of the referenced instance, 0 when the parameter is no reference.
    std::uint64_t reference(std::size_t index) const;
};

/// Reads parameters from `text` at `offset`, which stands on '('; moves `offset` behind the
/// matching ')'. Nothing when the text there breaks the grammar or nests too deeply; `offset`
/// then stays.
std::optional<std::vector<Value>> parseParameters(std::string_view text, std::size_t& offset);

/// Moves `offset` over white space and comments.
void skipBlanks(std::string_view text, std::size_t& offset);

/// Reads a keyword at `offset`; empty when none stands there.
std::string_view readKeyword(std::string_view text, std::size_t& offset);

/// All instances that a value refers to at any depth, appended to `out`.
void collectReferences(const Value& value, std::vector<std::uint64_t>& out);

/// Text between quotes as UTF-8: doubled quotes and backslashes, \S\, \X\, \X2\, \X4\ and
/// \P.\ are resolved; bytes that are no UTF-8 count as ISO 8859-1, or as Windows-1251 where
/// they come in runs. Control characters stay.
std::string decodeText(std::string_view raw);

}  // namespace occt::step
