#include "backends/occt/step/tokens.h"

#include <charconv>

namespace occt::step {
namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
bool isWordCharacter(char c) {
    return (c >= 'A' && c <= 'Z') || isDigit(c) || c == '_';
}

/// One statement. `good_` falls once and stays down.
class Statement {
public:
    Statement(std::string_view text, std::size_t at, TokenSink& sink)
        : text_(text), at_(at), sink_(sink) {}

    bool read() {
        const bool complex = peek() == '(';
        if (complex) ++at_;
        std::size_t records = 0;
        while (good_ && (records == 0 || complex)) {
            skipBlanks(text_, at_);
            if (complex && records > 0 && peek() == ')') {
                ++at_;
                break;
            }
            record();
            ++records;
        }
        skipBlanks(text_, at_);
        return good_ && peek() == ';';
    }

private:
    char peek() const { return at_ < text_.size() ? text_[at_] : '\0'; }

    std::string_view keyword() {
        const std::size_t begin = at_;
        while (isWordCharacter(peek())) ++at_;
        const std::string_view word = text_.substr(begin, at_ - begin);
        good_ = good_ && !word.empty() && !isDigit(word.front());
        return word;
    }

    void record() {
        const std::string_view word = keyword();
        skipBlanks(text_, at_);
        if (!good_ || peek() != '(') {
            good_ = false;
            return;
        }
        ++at_;
        sink_.beginRecord(word);
        parameters();
        if (good_) sink_.endRecord();
    }

    /// Up to the parenthesis that closes the record.
    void parameters() {
        std::size_t depth = 1;
        bool wantsValue = true;
        bool isEmpty = true;
        while (good_) {
            skipBlanks(text_, at_);
            const char c = peek();
            if (c == ')' && (!wantsValue || isEmpty)) {
                ++at_;
                if (--depth == 0) return;
                sink_.endList();
                wantsValue = false;
                isEmpty = false;
            } else if (c == ',' && !wantsValue) {
                ++at_;
                wantsValue = true;
            } else if (wantsValue) {
                isEmpty = opensList(c);
                if (isEmpty)
                    ++depth;
                else
                    wantsValue = false;
            } else {
                good_ = false;
            }
        }
    }

    /// Reads a value or the beginning of a list; true for the latter.
    bool opensList(char c) {
        if (c == '(') {
            ++at_;
            sink_.beginList({});
            return true;
        }
        if (c >= 'A' && c <= 'Z') {
            const std::string_view word = keyword();
            skipBlanks(text_, at_);
            good_ = good_ && peek() == '(';
            ++at_;
            sink_.beginList(word);
            return true;
        }
        value(c);
        return false;
    }

    void value(char c) {
        const std::size_t begin = at_;
        switch (c) {
            case '#': reference(); return;
            case '\'': quoted(); return;
            case '"': delimited('"', TokenSink::Token::Binary); return;
            case '$':
                ++at_;
                sink_.value(TokenSink::Token::Missing, text_.substr(begin, 1));
                return;
            case '*':
                ++at_;
                sink_.value(TokenSink::Token::Derived, text_.substr(begin, 1));
                return;
            case '.':
                if (at_ + 1 < text_.size() && !isDigit(text_[at_ + 1])) {
                    delimited('.', TokenSink::Token::Word);
                    return;
                }
                break;
            default: break;
        }
        number();
    }

    void reference() {
        std::uint64_t id = 0;
        const auto read = std::from_chars(text_.data() + at_ + 1, text_.data() + text_.size(), id);
        good_ = read.ec == std::errc();
        at_ = static_cast<std::size_t>(read.ptr - text_.data());
        if (good_) sink_.reference(id);
    }

    void quoted() {
        const std::size_t begin = at_;
        do {
            at_ = text_.find('\'', at_ + 1);
            if (at_ == std::string_view::npos) {
                good_ = false;
                return;
            }
            ++at_;
        } while (peek() == '\'');
        sink_.value(TokenSink::Token::Text, text_.substr(begin, at_ - begin));
    }

    void delimited(char end, TokenSink::Token token) {
        const std::size_t begin = at_++;
        while (isWordCharacter(peek())) ++at_;
        good_ = peek() == end && at_ > begin + 1;
        ++at_;
        if (good_) sink_.value(token, text_.substr(begin, at_ - begin));
    }

    void number() {
        const std::size_t begin = at_;
        if (peek() == '-' || peek() == '+') ++at_;
        const std::size_t first = at_;
        while (isDigit(peek())) ++at_;
        bool isReal = false;
        if (peek() == '.') {
            isReal = true;
            ++at_;
            while (isDigit(peek())) ++at_;
        }
        good_ = at_ > first + (isReal ? 1 : 0);
        if (isReal && peek() == 'E') {
            ++at_;
            if (peek() == '-' || peek() == '+') ++at_;
            good_ = good_ && isDigit(peek());
            while (isDigit(peek())) ++at_;
        }
        using Token = TokenSink::Token;
        if (good_) {
            sink_.value(isReal ? Token::Real : Token::Integer, text_.substr(begin, at_ - begin));
        }
    }

    std::string_view text_;
    std::size_t at_;
    TokenSink& sink_;
    bool good_ = true;
};

}  // namespace

bool readTokens(const Part21& file, const Instance& instance, TokenSink& sink) {
    return Statement(file.text(), instance.body, sink).read();
}

}  // namespace occt::step
