#include "backends/occt/read/iges_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "backends/occt/step/value.h"

namespace occt::iges {
namespace {

constexpr std::size_t kSectionColumn = 72;
constexpr std::size_t kParameterColumns = 64;
constexpr std::size_t kField = 8;
// How often lines may be claimed on the average: once, if nothing is damaged.
constexpr std::size_t kMostClaims = 4;

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t\r\0");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t\r\0") - first + 1);
}

std::optional<long> integer(std::string_view text) {
    text = trimmed(text);
    if (text.starts_with('+')) text.remove_prefix(1);
    long value = 0;
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || parsed.ec != std::errc() || parsed.ptr != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}

/// Field of a directory line, from 1. Blank fields count as 0.
std::optional<long> field(std::string_view line, std::size_t number) {
    const std::string_view text = trimmed(line.substr((number - 1) * kField, kField));
    return text.empty() ? std::optional<long>(0) : integer(text);
}

std::optional<double> real(std::string_view text) {
    std::string plain(trimmed(text));
    if (plain.starts_with('+')) plain.erase(0, 1);
    for (char& c : plain) {
        if (c == 'D' || c == 'd') c = 'E';
    }
    double value = 0.0;
    const auto parsed = std::from_chars(plain.data(), plain.data() + plain.size(), value);
    const bool whole = parsed.ec == std::errc() && parsed.ptr == plain.data() + plain.size();
    return whole && !plain.empty() && std::isfinite(value) ? std::optional<double>(value)
                                                           : std::nullopt;
}

/// Length of the head "12H" of a text and the number in it.
std::optional<std::pair<std::size_t, std::size_t>> textHead(std::string_view text) {
    std::size_t length = 0;
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), length);
    const char* const end = text.data() + text.size();
    const bool is = parsed.ec == std::errc() && parsed.ptr != end && *parsed.ptr == 'H';
    if (!is) return std::nullopt;
    return std::pair(static_cast<std::size_t>(parsed.ptr - text.data()) + 1, length);
}

}  // namespace

std::uint32_t Value::pointer() const {
    const bool is =
        kind == Kind::Number && number >= 1.0 && number < 1e9 && number == std::floor(number);
    return is ? static_cast<std::uint32_t>(number) : 0;
}

Text::Text(std::string_view bytes) {
    std::string start;
    while (!bytes.empty()) {
        const std::size_t end = bytes.find_first_of("\r\n");
        addLine(bytes.substr(0, end), start);
        if (end == std::string_view::npos) break;
        const bool isPair = bytes[end] == '\r' && end + 1 < bytes.size() && bytes[end + 1] == '\n';
        bytes.remove_prefix(end + (isPair ? 2 : 1));
    }
    remarks_ = step::decodeText(trimmed(start));
    readDirectory(directory_);
    dropSharedLines();
    checkEnd(end_);
    readGlobal(globalText_);
    directory_.clear();
    directory_.shrink_to_fit();
}

void Text::addLine(std::string_view line, std::string& start) {
    ++lineCount_;
    if (trimmed(line).empty()) return;
    const char section = line.size() > kSectionColumn ? line[kSectionColumn] : ' ';
    const std::string_view data = line.substr(0, kSectionColumn);
    switch (section) {
        case 'S':
            if (!trimmed(data).empty()) start += std::string(trimmed(data)) + " ";
            return;
        case 'G': globalText_ += data; return;
        case 'D': directory_.push_back(data); return;
        case 'P': parameters_.push_back(data.substr(0, kParameterColumns)); return;
        case 'T': end_ = data; return;
        default: break;
    }
    ++brokenLines_;
    if (firstBroken_ == 0) firstBroken_ = lineCount_;
}

void Text::readDirectory(const std::vector<std::string_view>& lines) {
    brokenEntries_ = lines.size() % 2;
    entities_.reserve(lines.size() / 2);
    for (std::size_t i = 0; i + 1 < lines.size(); i += 2) {
        const std::string_view first = lines[i];
        const std::string_view second = lines[i + 1];
        const auto type = field(first, 1);
        const auto line = field(first, 2);
        const auto count = field(second, 4);
        const auto form = field(second, 5);
        Entity entity;
        if (type && line && count && form && *line > 0 && *count >= 0) {
            entity.type = static_cast<int>(*type);
            entity.form = static_cast<int>(*form);
            entity.firstLine = static_cast<std::size_t>(*line);
            entity.lineCount = static_cast<std::size_t>(*count);
            const auto transform = field(first, 7);
            if (transform && *transform > 0) {
                entity.transform = static_cast<std::uint32_t>(*transform);
            }
            entity.label = step::decodeText(trimmed(second.substr(7 * kField, kField)));
            const auto subscript = field(second, 9);
            if (!entity.label.empty() && subscript && *subscript > 0) {
                entity.label += " " + std::to_string(*subscript);
            }
        } else {
            ++brokenEntries_;
        }
        entities_.push_back(std::move(entity));
    }
}

/// Each line of parameters belongs to one entity. Where entities claim each other's, which takes
/// time by the square of their number, the later ones get none.
void Text::dropSharedLines() {
    std::size_t left = kMostClaims * parameters_.size();
    for (Entity& entity : entities_) {
        const std::size_t behind = parameters_.size() + 1;
        if (entity.firstLine == 0 || entity.firstLine >= behind) continue;
        entity.lineCount = std::min(entity.lineCount, behind - entity.firstLine);
        if (entity.lineCount <= left) {
            left -= entity.lineCount;
            continue;
        }
        entity.lineCount = 0;
        ++brokenEntries_;
    }
}

/// The last line counts the lines of the other sections: "S      1G      4D     26P     19".
/// Writers often count the first two wrong, and nothing is missing for it.
void Text::checkEnd(std::string_view line) {
    const auto counts = [line](std::size_t position, char letter, std::size_t lines) {
        const std::size_t at = position * kField;
        if (line.size() < at + kField || line[at] != letter) return false;
        const auto number = integer(line.substr(at + 1, kField - 1));
        return number && *number == static_cast<long>(lines);
    };
    isWhole_ = counts(2, 'D', directory_.size()) && counts(3, 'P', parameters_.size());
}

void Text::readGlobal(const std::string& text) {
    // The first two say which characters separate and end from here on.
    std::size_t at = 0;
    const auto mark = [&](char& character) {
        while (at < text.size() && text[at] == ' ') ++at;
        if (text.compare(at, 2, "1H") == 0 && at + 2 < text.size()) {
            character = text[at + 2];
            at += 3;
        }
        while (at < text.size() && text[at] == ' ') ++at;
        if (at < text.size() && text[at] == separator_) ++at;
    };
    mark(separator_);
    mark(terminator_);
    global_.resize(2);
    for (Value& value : parse(std::string_view(text).substr(std::min(at, text.size())))) {
        global_.push_back(std::move(value));
    }
}

const Value& Text::global(std::size_t number) const {
    static const Value missing;
    return number >= 1 && number <= global_.size() ? global_[number - 1] : missing;
}

const Entity* Text::find(std::uint32_t number) const {
    const std::size_t position = number / 2;
    const bool is = number % 2 == 1 && position < entities_.size();
    return is ? &entities_[position] : nullptr;
}

std::vector<Value> Text::values(const Entity& entity) const {
    if (entity.firstLine == 0 || entity.firstLine > parameters_.size()) return {};
    std::string text;
    const std::size_t first = entity.firstLine - 1;
    for (std::size_t i = first; i < first + entity.lineCount; ++i) {
        text += parameters_[i];
        // Blanks at the end of a line may have been cut.
        text.resize((i - first + 1) * kParameterColumns, ' ');
    }
    return parse(text);
}

std::vector<Value> Text::parse(std::string_view text) const {
    std::vector<Value> values;
    std::size_t at = 0;
    while (at < text.size()) {
        while (at < text.size() && text[at] == ' ') ++at;
        if (at == text.size()) break;
        Value value;
        if (const auto head = textHead(text.substr(at))) {
            const auto [before, length] = *head;
            const std::size_t begin = std::min(at + before, text.size());
            const std::string_view raw = text.substr(begin, length);
            value.kind = Value::Kind::Text;
            value.text = step::decodeText(trimmed(raw));
            at = begin + raw.size();
        }
        const char ends[] = {separator_, terminator_};
        const std::size_t end =
            std::min(text.find_first_of(std::string_view(ends, 2), at), text.size());
        if (value.kind == Value::Kind::Missing) {
            if (const auto number = real(text.substr(at, end - at))) {
                value.kind = Value::Kind::Number;
                value.number = *number;
            }
        }
        values.push_back(std::move(value));
        if (end == text.size() || text[end] == terminator_) break;
        at = end + 1;
    }
    return values;
}

}  // namespace occt::iges
