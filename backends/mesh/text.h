#pragma once

#include <charconv>
#include <cstddef>
#include <string>
#include <string_view>

namespace mesh {

/// Words of a text and the lines that they stand in. Blanks are all that is no printable ASCII
/// character up to the space; LF, CR and CR LF end lines.
class TextReader {
public:
    explicit TextReader(std::string_view text) : text_(text) {}

    /// The next word of the text, over the ends of lines; empty at the end.
    std::string_view word();
    /// The next word of this line; empty at its end.
    std::string_view wordInLine();
    /// What is left of this line without blanks around it; goes to the next line.
    std::string_view restOfLine();
    void skipLine();

    bool atEnd() const { return at_ >= text_.size(); }
    std::size_t offset() const { return at_; }
    std::string_view rest() const { return text_.substr(at_); }

    /// Number of the line that an offset stands in, from 1. Counts from the beginning.
    std::size_t lineOf(std::size_t offset) const;

private:
    static bool isBlank(char c) { return static_cast<unsigned char>(c) <= ' '; }
    static bool isLineEnd(char c) { return c == '\n' || c == '\r'; }

    std::string_view text_;
    std::size_t at_ = 0;
};

/// A whole word as a number. A number out of range is infinite, what is no number gives false.
template <typename Real>
bool parseReal(std::string_view word, Real& out) {
    if (!word.empty() && word.front() == '+') word.remove_prefix(1);
    const char* const end = word.data() + word.size();
    const auto result = std::from_chars(word.data(), end, out);
    if (result.ec == std::errc::result_out_of_range && result.ptr == end) {
        // Too small for the type is 0; only what is too large is of no use.
        const bool tiny = word.find("e-") != word.npos || word.find("E-") != word.npos;
        out = tiny ? Real(0) : Real(1) / Real(0);
        return true;
    }
    return result.ec == std::errc() && result.ptr == end && !word.empty();
}

template <typename Integer>
bool parseInteger(std::string_view word, Integer& out) {
    if (!word.empty() && word.front() == '+') word.remove_prefix(1);
    const char* const end = word.data() + word.size();
    const auto result = std::from_chars(word.data(), end, out);
    return result.ec == std::errc() && result.ptr == end && !word.empty();
}

/// Compares without regard to the case of ASCII letters; `lower` is in small letters.
bool sameWord(std::string_view word, std::string_view lower);

/// Text as UTF-8: what is none is taken for Latin-1. Control characters become blanks; blanks at
/// both ends go.
std::string toUtf8(std::string_view text);

/// "1 triangle was", "3 triangles were".
std::string counted(std::size_t count, const char* noun);

}  // namespace mesh
