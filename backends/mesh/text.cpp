#include "backends/mesh/text.h"

#include <algorithm>
#include <cstdint>

namespace mesh {
namespace {

/// Length of the UTF-8 character that begins there; 0 when it is none.
std::size_t characterLength(std::string_view text) {
    const auto byte = [&text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned first = byte(0);
    if (first < 0x80) return 1;
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || length > text.size()) return 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0U) != 0x80U) return 0;
    }
    const unsigned second = byte(1);
    const bool overlong = (first == 0xE0 && second < 0xA0) || (first == 0xF0 && second < 0x90);
    const bool outside = (first == 0xED && second > 0x9F) || (first == 0xF4 && second > 0x8F);
    return overlong || outside ? 0 : length;
}

bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = characterLength(text);
        if (length == 0) return false;
        text.remove_prefix(length);
    }
    return true;
}

std::string_view trimmed(std::string_view text) {
    const auto isBlank = [](char c) { return static_cast<unsigned char>(c) <= ' '; };
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    return text;
}

}  // namespace

std::string_view TextReader::word() {
    while (at_ < text_.size() && isBlank(text_[at_])) ++at_;
    const std::size_t begin = at_;
    while (at_ < text_.size() && !isBlank(text_[at_])) ++at_;
    return text_.substr(begin, at_ - begin);
}

std::string_view TextReader::wordInLine() {
    while (at_ < text_.size() && isBlank(text_[at_]) && !isLineEnd(text_[at_])) ++at_;
    const std::size_t begin = at_;
    while (at_ < text_.size() && !isBlank(text_[at_])) ++at_;
    return text_.substr(begin, at_ - begin);
}

std::string_view TextReader::restOfLine() {
    const std::size_t begin = at_;
    while (at_ < text_.size() && !isLineEnd(text_[at_])) ++at_;
    const std::string_view rest = trimmed(text_.substr(begin, at_ - begin));
    if (at_ < text_.size() && text_[at_++] == '\r' && at_ < text_.size() && text_[at_] == '\n') {
        ++at_;
    }
    return rest;
}

void TextReader::skipLine() {
    restOfLine();
}

std::size_t TextReader::lineOf(std::size_t offset) const {
    std::size_t line = 1;
    for (std::size_t i = 0; i < std::min(offset, text_.size()); ++i) {
        const bool pair = text_[i] == '\r' && i + 1 < text_.size() && text_[i + 1] == '\n';
        if (isLineEnd(text_[i]) && !pair) ++line;
    }
    return line;
}

bool sameWord(std::string_view word, std::string_view lower) {
    return std::equal(word.begin(), word.end(), lower.begin(), lower.end(), [](char a, char b) {
        return (a >= 'A' && a <= 'Z' ? static_cast<char>(a - 'A' + 'a') : a) == b;
    });
}

std::string toUtf8(std::string_view text) {
    text = trimmed(text);
    const bool utf8 = isUtf8(text);
    std::string out;
    out.reserve(text.size());
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < ' ' || byte == 0x7F) {
            out += ' ';
        } else if (byte < 0x80 || utf8) {
            out += c;
        } else {
            out += static_cast<char>(0xC0U | (byte >> 6U));
            out += static_cast<char>(0x80U | (byte & 0x3FU));
        }
    }
    return out;
}

std::string counted(std::size_t count, const char* noun) {
    return std::to_string(count) + ' ' + noun + (count == 1 ? " was" : "s were");
}

}  // namespace mesh
