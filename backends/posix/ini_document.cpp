#include "backends/posix/ini_document.h"

#include <charconv>
#include <utility>

#include "backends/posix/ini_text.h"

namespace posix {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::wstring_view kSpecialInSection = L"[]";
constexpr std::wstring_view kSpecialInName = L"[]=;#\"\uFEFF";
constexpr std::wstring_view kSpecialInText = L"\"";

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r";
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::optional<std::uint32_t> parseNumber(std::string_view text) {
    std::uint32_t number = 0;
    const char* const end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, number);
    if (parsed.ec != std::errc() || parsed.ptr != end) return std::nullopt;
    return number;
}

/// Empty when the text was cut off or damaged.
std::optional<IniValue> parseValue(std::string_view text) {
    if (text.empty()) return std::nullopt;
    if (const auto number = parseNumber(text)) return *number;
    if (text.front() != '"') return unescapeIniText(text);
    if (text.size() < 2 || text.back() != '"') return std::nullopt;
    const std::string_view inner = text.substr(1, text.size() - 2);
    if (inner.find('"') != std::string_view::npos) return std::nullopt;
    return unescapeIniText(inner);
}

std::wstring comparable(std::wstring_view path) {
    return asciiLower(normalKeyPath(path));
}

bool isOrIsBelow(std::wstring_view section, std::wstring_view key) {
    if (!section.starts_with(key)) return false;
    return key.empty() || section.size() == key.size() || section[key.size()] == L'\\';
}

}  // namespace

IniDocument::Line IniDocument::parse(std::string_view raw) {
    Line line{.raw = std::string(raw), .kind = Line::Kind::Other, .name = {}, .value = {}};
    const std::string_view text = trimmed(raw);
    if (text.empty() || text.front() == ';' || text.front() == '#') return line;
    if (text.front() == '[') {
        const bool whole = text.size() >= 2 && text.back() == ']';
        line.kind = whole ? Line::Kind::Section : Line::Kind::BrokenSection;
        if (whole) line.name = comparable(unescapeIniText(text.substr(1, text.size() - 2)));
        return line;
    }
    const std::size_t equals = text.find('=');
    if (equals == std::string_view::npos) return line;
    line.kind = Line::Kind::Value;
    line.name = asciiLower(unescapeIniText(trimmed(text.substr(0, equals))));
    line.value = parseValue(trimmed(text.substr(equals + 1)));
    return line;
}

IniDocument::Line IniDocument::sectionLine(std::wstring_view path) {
    return parse('[' + escapeIniText(normalKeyPath(path), kSpecialInSection) + ']');
}

IniDocument::Line IniDocument::valueLine(std::wstring_view name, const IniValue& value) {
    std::string raw = escapeIniText(name, kSpecialInName) + '=';
    if (const auto* const number = std::get_if<std::uint32_t>(&value)) {
        raw += std::to_string(*number);
    } else {
        raw += '"' + escapeIniText(std::get<std::wstring>(value), kSpecialInText) + '"';
    }
    return parse(raw);
}

IniDocument::IniDocument(std::string_view bytes) {
    while (!bytes.empty()) {
        const std::size_t end = bytes.find('\n');
        const std::string_view raw = bytes.substr(0, end);
        const bool marked = lines_.empty() && raw.starts_with(kByteOrderMark);
        Line line = parse(marked ? raw.substr(kByteOrderMark.size()) : raw);
        line.raw = raw;
        lines_.push_back(std::move(line));
        bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 1);
    }
}

bool IniDocument::hasKey(std::wstring_view path) const {
    const std::wstring key = comparable(path);
    if (key.empty()) return true;
    for (const Line& line : lines_) {
        if (line.kind == Line::Kind::Section && isOrIsBelow(line.name, key)) return true;
    }
    return false;
}

void IniDocument::addKey(std::wstring_view path) {
    if (!hasKey(path)) lines_.push_back(sectionLine(path));
}

std::optional<IniValue> IniDocument::value(std::wstring_view path, std::wstring_view name) const {
    const std::wstring key = comparable(path);
    const std::wstring wanted = asciiLower(name);
    std::optional<IniValue> found;
    bool inside = key.empty();
    for (const Line& line : lines_) {
        if (line.kind == Line::Kind::Section) inside = line.name == key;
        if (line.kind == Line::Kind::BrokenSection) inside = false;
        const bool matches = inside && line.kind == Line::Kind::Value && line.name == wanted;
        if (matches && line.value) found = line.value;
    }
    return found;
}

void IniDocument::setValue(std::wstring_view path, std::wstring_view name, const IniValue& value) {
    constexpr std::size_t kNone = static_cast<std::size_t>(-1);
    const std::wstring key = comparable(path);
    const std::wstring wanted = asciiLower(name);
    std::size_t same = kNone;
    std::size_t lastOfKey = kNone;
    bool inside = false;
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        const Line& line = lines_[i];
        if (line.kind == Line::Kind::Section) inside = line.name == key;
        if (line.kind == Line::Kind::BrokenSection) inside = false;
        if (!inside) continue;
        if (line.kind != Line::Kind::Other) lastOfKey = i;
        if (line.kind == Line::Kind::Value && line.name == wanted) same = i;
    }
    if (same != kNone) {
        const bool carriageReturn = lines_[same].raw.ends_with('\r');
        lines_[same] = valueLine(name, value);
        if (carriageReturn) lines_[same].raw += '\r';
        return;
    }
    if (lastOfKey == kNone) {
        lines_.push_back(sectionLine(path));
        lastOfKey = lines_.size() - 1;
    }
    lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(lastOfKey) + 1,
                  valueLine(name, value));
}

std::string IniDocument::bytes() const {
    std::string out;
    for (const Line& line : lines_) {
        out += line.raw;
        out += '\n';
    }
    return out;
}

}  // namespace posix
