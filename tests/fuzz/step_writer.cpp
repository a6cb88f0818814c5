#include "tests/fuzz/step_writer.h"

#include <bit>
#include <charconv>
#include <cstdint>

#include "platform/os/utf8.h"

namespace fuzz {
namespace {

using occt::step::Value;

void appendHex(std::string& out, std::uint32_t value, int width) {
    constexpr char digits[] = "0123456789ABCDEF";
    for (int shift = 4 * (width - 1); shift >= 0; shift -= 4) out += digits[value >> shift & 0xF];
}

std::string writeNumber(const Value& value) {
    char buffer[400];
    const auto format = value.isInteger ? std::chars_format::fixed : std::chars_format::scientific;
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value.number, format).ptr;
    return {buffer, end};
}

std::string writeWord(const std::string& word) {
    const bool dotted =
        !word.empty() && word.find('.') == std::string::npos && !(word[0] >= '0' && word[0] <= '9');
    return dotted ? '.' + word + '.' : '"' + word + '"';
}

std::string write(const Value& value) {
    switch (value.kind) {
        case Value::Kind::Missing: return "$";
        case Value::Kind::Derived: return "*";
        case Value::Kind::Reference: return '#' + std::to_string(value.reference);
        case Value::Kind::Number: return writeNumber(value);
        case Value::Kind::Text: return '\'' + writeText(value.text, 4) + '\'';
        case Value::Kind::Word: return writeWord(value.text);
        case Value::Kind::List: return writeParameters(value.items);
        case Value::Kind::Typed: return value.text + writeParameters(value.items);
    }
    return {};
}

bool same(const Value& a, const Value& b) {
    return a.kind == b.kind && a.reference == b.reference && a.isInteger == b.isInteger &&
           std::bit_cast<std::uint64_t>(a.number) == std::bit_cast<std::uint64_t>(b.number) &&
           a.text == b.text && sameValues(a.items, b.items);
}

}  // namespace

std::string writeText(std::string_view utf8, int width) {
    std::string out;
    for (const wchar_t wide : os::toWide(utf8)) {
        const auto code = static_cast<std::uint32_t>(wide);
        if (code == '\'' || code == '\\') {
            out.append(2, static_cast<char>(code));
        } else if (code >= 0x20 && code < 0x7F) {
            out += static_cast<char>(code);
        } else {
            out += width == 4 ? "\\X2\\" : "\\X4\\";
            if (width == 8 || code < 0x10000) {
                appendHex(out, code, width);
            } else {
                appendHex(out, 0xD800 + ((code - 0x10000) >> 10), 4);
                appendHex(out, 0xDC00 + ((code - 0x10000) & 0x3FF), 4);
            }
            out += "\\X0\\";
        }
    }
    return out;
}

std::string writeParameters(const std::vector<Value>& values) {
    std::string out = "(";
    for (const Value& value : values) out += (out.size() == 1 ? "" : ",") + write(value);
    return out + ')';
}

bool sameValues(const std::vector<Value>& a, const std::vector<Value>& b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (!same(a[i], b[i])) return false;
    }
    return true;
}

}  // namespace fuzz
