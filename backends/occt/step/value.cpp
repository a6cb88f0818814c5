#include "backends/occt/step/value.h"

#include <charconv>

namespace occt::step {
namespace {

constexpr std::size_t kDeepest = 200;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
bool isKeywordStart(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c == '!';
}

std::optional<Value> parseValue(std::string_view text, std::size_t& at, std::size_t depth);

std::optional<std::vector<Value>> parseList(std::string_view text, std::size_t& at,
                                            std::size_t depth) {
    if (depth > kDeepest || at >= text.size() || text[at] != '(') return std::nullopt;
    ++at;
    std::vector<Value> items;
    skipBlanks(text, at);
    if (at < text.size() && text[at] == ')') return ++at, items;
    while (true) {
        auto item = parseValue(text, at, depth);
        if (!item) return std::nullopt;
        items.push_back(std::move(*item));
        skipBlanks(text, at);
        if (at >= text.size()) return std::nullopt;
        if (text[at] == ')') return ++at, items;
        if (text[at] != ',') return std::nullopt;
        ++at;
    }
}

std::optional<Value> parseText(std::string_view text, std::size_t& at) {
    const std::size_t begin = ++at;
    while (true) {
        at = text.find('\'', at);
        if (at == std::string_view::npos) return std::nullopt;
        if (at + 1 >= text.size() || text[at + 1] != '\'') break;
        at += 2;
    }
    Value value;
    value.kind = Value::Kind::Text;
    value.text = decodeText(text.substr(begin, at - begin));
    ++at;
    return value;
}

/// An enumeration or a binary. Only characters that these have: the end of a damaged one must not
/// be looked for in the rest of the file, nor anything else be taken for its inside.
std::optional<Value> parseWord(std::string_view text, std::size_t& at, char end) {
    const std::size_t begin = ++at;
    while (at < text.size() && (isKeywordStart(text[at]) || isDigit(text[at]))) ++at;
    if (at >= text.size() || text[at] != end) return std::nullopt;
    Value value;
    value.kind = Value::Kind::Word;
    value.text = text.substr(begin, at - begin);
    ++at;
    return value;
}

std::optional<Value> parseNumber(std::string_view text, std::size_t& at) {
    const std::size_t begin = at;
    if (text[at] == '+') ++at;
    const std::size_t first = at;
    while (at < text.size() && (isDigit(text[at]) || text[at] == '.' || text[at] == 'E' ||
                                text[at] == 'e' || text[at] == '-' || text[at] == '+')) {
        ++at;
    }
    if (at == begin) return std::nullopt;
    Value value;
    value.kind = Value::Kind::Number;
    const auto token = text.substr(first, at - first);
    value.isInteger = token.find_first_of(".eE") == std::string_view::npos;
    const auto result = std::from_chars(token.data(), token.data() + token.size(), value.number);
    if (result.ptr != token.data() + token.size()) return std::nullopt;
    if (result.ec == std::errc::result_out_of_range) {
        // Too close to 0 for a number is 0; too far from it is none.
        const std::size_t mark = token.find_first_of("eE");
        const bool tiny = mark != std::string_view::npos && token[mark + 1] == '-';
        if (!tiny) return std::nullopt;
        value.number = 0.0;
    } else if (result.ec != std::errc()) {
        return std::nullopt;
    }
    return value;
}

std::optional<Value> parseReference(std::string_view text, std::size_t& at) {
    Value value;
    value.kind = Value::Kind::Reference;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data() + at + 1, end, value.reference);
    if (result.ec != std::errc()) return std::nullopt;
    at = static_cast<std::size_t>(result.ptr - text.data());
    return value;
}

std::optional<Value> parseTyped(std::string_view text, std::size_t& at, std::size_t depth) {
    Value value;
    value.kind = Value::Kind::Typed;
    value.text = readKeyword(text, at);
    skipBlanks(text, at);
    auto items = parseList(text, at, depth + 1);
    if (!items) return std::nullopt;
    value.items = std::move(*items);
    return value;
}

std::optional<Value> parseValue(std::string_view text, std::size_t& at, std::size_t depth) {
    skipBlanks(text, at);
    if (at >= text.size()) return std::nullopt;
    const char c = text[at];
    Value value;
    switch (c) {
        case '$': return ++at, value;
        case '*': value.kind = Value::Kind::Derived; return ++at, value;
        case '#': return parseReference(text, at);
        case '\'': return parseText(text, at);
        case '"': return parseWord(text, at, '"');
        case '.':
            if (at + 1 < text.size() && !isDigit(text[at + 1])) return parseWord(text, at, '.');
            return parseNumber(text, at);
        case '(': {
            auto items = parseList(text, at, depth + 1);
            if (!items) return std::nullopt;
            value.kind = Value::Kind::List;
            value.items = std::move(*items);
            return value;
        }
        default: break;
    }
    return isKeywordStart(c) ? parseTyped(text, at, depth) : parseNumber(text, at);
}

}  // namespace

const Value& Record::at(std::size_t index) const {
    static const Value missing;
    return index < values.size() ? values[index] : missing;
}

const std::string& Record::text(std::size_t index) const {
    static const std::string empty;
    const Value& value = at(index);
    return value.isText() ? value.text : empty;
}

std::uint64_t Record::reference(std::size_t index) const {
    const Value& value = at(index);
    return value.isReference() ? value.reference : 0;
}

std::optional<std::vector<Value>> parseParameters(std::string_view text, std::size_t& offset) {
    std::size_t at = offset;
    auto values = parseList(text, at, 0);
    if (values) offset = at;
    return values;
}

void skipBlanks(std::string_view text, std::size_t& offset) {
    while (offset < text.size()) {
        const char c = text[offset];
        if (c == ' ' || c == '\n' || c == '\r' || c == '\t' || c == '\f' || c == '\v') {
            ++offset;
        } else if (c == '/' && offset + 1 < text.size() && text[offset + 1] == '*') {
            const std::size_t end = text.find("*/", offset + 2);
            offset = end == std::string_view::npos ? text.size() : end + 2;
        } else {
            return;
        }
    }
}

std::string_view readKeyword(std::string_view text, std::size_t& offset) {
    const std::size_t begin = offset;
    while (offset < text.size() &&
           (isKeywordStart(text[offset]) || isDigit(text[offset]) || text[offset] == '-')) {
        ++offset;
    }
    return text.substr(begin, offset - begin);
}

void collectReferences(const Value& value, std::vector<std::uint64_t>& out) {
    std::vector<const Value*> open = {&value};
    while (!open.empty()) {
        const Value* next = open.back();
        open.pop_back();
        if (next->isReference()) out.push_back(next->reference);
        for (auto item = next->items.rbegin(); item != next->items.rend(); ++item) {
            open.push_back(&*item);
        }
    }
}

}  // namespace occt::step
