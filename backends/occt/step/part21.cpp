#include "backends/occt/step/part21.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace occt::step {
namespace {

// Nothing that is made is larger than this, in any unit that files use; readers lose themselves
// in surfaces whose points lie further out.
constexpr double kLargestCoordinate = 1e12;

// Numbers up to so many times the count of instances count as dense.
constexpr std::uint64_t kSparsest = 8;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
bool isLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}
char capital(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

std::string capitals(std::string_view word) {
    std::string out(word);
    for (char& c : out) c = capital(c);
    return out;
}

bool hasNegativeExponent(std::string_view number) {
    const std::size_t mark = number.find_first_of("eE");
    return mark != std::string_view::npos && number.substr(mark + 1).starts_with('-');
}

/// A number as the text refers to it.
std::string numberText(std::uint64_t id) {
    std::string text = "#";
    text += std::to_string(id);
    return text;
}

struct Reference {
    std::uint64_t id;
    std::size_t offset;
};

}  // namespace

/// The one pass over the text.
class Part21Indexer {
public:
    Part21Indexer(Part21& file, std::string_view text) : file_(file), text_(text) {
        file_.keywords_.emplace_back();
        file_.byType_.emplace_back();
        pointType_ = keywordNumber("CARTESIAN_POINT");
    }

    void run() {
        skipBlanks(text_, at_);
        file_.hasMagic_ = capitals(text_.substr(at_, 12)) == "ISO-10303-21";
        while (true) {
            skipBlanks(text_, at_);
            if (at_ >= text_.size()) break;
            if (text_[at_] == '#') {
                instance();
            } else {
                keywordStatement();
            }
        }
        finish();
    }

private:
    void keywordStatement() {
        const std::size_t begin = at_;
        const std::string word = capitals(readKeyword(text_, at_));
        if (word.empty()) {
            broken(begin);
            at_ = begin + 1;
            skipStatement();
            return;
        }
        if (word.starts_with("END-ISO-10303-21")) file_.hasEnd_ = true;
        if (word == "HEADER") inHeader_ = true;
        if (word == "ENDSEC") inHeader_ = false;
        const bool known = word == "HEADER" || word == "ENDSEC" || word == "DATA" ||
                           word.find("ISO-10303-21") != std::string_view::npos;
        if (inHeader_ && word != "HEADER") {
            headerRecord(begin, word);
            return;
        }
        if (!known) broken(begin);
        skipStatement();
    }

    void headerRecord(std::size_t begin, const std::string& word) {
        skipBlanks(text_, at_);
        auto values = parseParameters(text_, at_);
        if (values) {
            file_.header_.push_back({word, std::move(*values)});
        } else {
            broken(begin);
        }
        skipStatement();
    }

    void instance() {
        const std::size_t begin = at_;
        Instance found;
        const char* const end = text_.data() + text_.size();
        const auto number = std::from_chars(text_.data() + at_ + 1, end, found.id);
        at_ = static_cast<std::size_t>(number.ptr - text_.data());
        skipBlanks(text_, at_);
        if (number.ec != std::errc() || at_ >= text_.size() || text_[at_] != '=') {
            broken(begin);
            skipStatement();
            return;
        }
        ++at_;
        skipBlanks(text_, at_);
        found.body = at_;
        const auto index = static_cast<std::uint32_t>(file_.instances_.size());
        if (at_ < text_.size() && text_[at_] == '(') {
            complex_ = true;
        } else {
            const std::string_view word = readKeyword(text_, at_);
            if (word.empty()) {
                broken(begin);
                skipStatement();
                return;
            }
            complex_ = false;
            found.type = keywordNumber(word);
            file_.byType_[found.type].push_back(index);
        }
        isPoint_ = found.type == pointType_;
        file_.instances_.push_back(found);
        if (!body(index)) broken(begin);
    }

    /// Walks to the end of the statement; false when it breaks the grammar.
    bool body(std::uint32_t index) {
        std::size_t depth = 0;
        bool good = true;
        while (at_ < text_.size()) {
            const char c = text_[at_];
            switch (c) {
                case ';': return ++at_, good && depth == 0;
                case '\'': good = skipQuoted('\'') && good; break;
                case '"': good = skipQuoted('"') && good; break;
                case '(':
                    file_.depth_ = std::max(file_.depth_, ++depth);
                    ++at_;
                    break;
                case ')':
                    if (depth == 0)
                        good = false;
                    else
                        --depth;
                    ++at_;
                    break;
                case '#': reference(); break;
                case '/':
                    if (at_ + 1 < text_.size() && text_[at_ + 1] == '*') {
                        skipBlanks(text_, at_);
                    } else {
                        good = false;
                        ++at_;
                    }
                    break;
                case '=':
                    good = false;
                    ++at_;
                    break;
                default:
                    if (complex_ && depth == 1 && isLetter(c)) {
                        file_.byType_[keywordNumber(readKeyword(text_, at_))].push_back(index);
                    } else if (isPoint_ && depth == 2) {
                        coordinate();
                    } else {
                        ++at_;
                    }
            }
        }
        return false;
    }

    void coordinate() {
        const char c = text_[at_];
        if (c == ',' || c == ' ' || c == '\n' || c == '\r' || c == '\t') {
            ++at_;
            return;
        }
        const std::size_t begin = at_;
        at_ = std::min(text_.find_first_of(",) \r\n\t;/", at_), text_.size());
        if (file_.absurdNumber_) return;
        const std::string_view token = text_.substr(begin, at_ - begin);
        const char* first = token.data() + (token[0] == '+' ? 1 : 0);
        double number = 0.0;
        const auto result = std::from_chars(first, token.data() + token.size(), number);
        const bool whole = result.ec == std::errc() && result.ptr == token.data() + token.size();
        // An exponent without digits and the like is damage, not an absurd number.
        const bool written =
            isDigit(token[0]) || token[0] == '-' || token[0] == '+' || token[0] == '.';
        const bool tooLarge =
            whole ? !(std::abs(number) <= kLargestCoordinate)
                  : result.ec == std::errc::result_out_of_range && !hasNegativeExponent(token);
        if (tooLarge || (!whole && !written && c != '$')) {
            file_.absurdNumber_ = Defect{begin, std::string(token.substr(0, 40))};
        }
    }

    void reference() {
        Reference found{0, at_};
        const char* const end = text_.data() + text_.size();
        const auto number = std::from_chars(text_.data() + at_ + 1, end, found.id);
        at_ = std::max(at_ + 1, static_cast<std::size_t>(number.ptr - text_.data()));
        references_.push_back(found);
    }

    bool skipQuoted(char quote) {
        const std::size_t end = text_.find(quote, at_ + 1);
        at_ = end == std::string_view::npos ? text_.size() : end + 1;
        return end != std::string_view::npos;
    }

    void skipStatement() {
        while (at_ < text_.size() && text_[at_] != ';') {
            if (text_[at_] == '\'') {
                skipQuoted('\'');
            } else if (text_.substr(at_, 2) == "/*") {
                skipBlanks(text_, at_);
            } else {
                ++at_;
            }
        }
        if (at_ < text_.size()) ++at_;
    }

    void broken(std::size_t offset) {
        ++file_.brokenStatements_;
        if (!file_.firstBroken_) {
            file_.firstBroken_ = Defect{offset, std::string(text_.substr(offset, 40))};
        }
    }

    std::uint32_t keywordNumber(std::string_view word) {
        const auto found = file_.keywordNumbers_.find(word);
        if (found != file_.keywordNumbers_.end()) return found->second;
        const auto number = static_cast<std::uint32_t>(file_.keywords_.size());
        file_.keywords_.push_back(word);
        file_.byType_.emplace_back();
        file_.keywordNumbers_.emplace(word, number);
        return number;
    }

    void finish() {
        std::uint64_t largest = 0;
        for (const Instance& next : file_.instances_) largest = std::max(largest, next.id);
        if (largest < kSparsest * (file_.instances_.size() + 1024)) {
            fillDense(largest);
        } else {
            fillSorted();
        }
        for (const Reference& next : references_) {
            if (file_.position(next.id) != Part21::kNone) continue;
            if (file_.danglingReferences_++ == 0) {
                file_.firstDangling_ = Defect{next.offset, numberText(next.id)};
            }
        }
    }

    void fillDense(std::uint64_t largest) {
        file_.dense_.assign(largest + 1, Part21::kNone);
        for (std::uint32_t i = 0; i < file_.instances_.size(); ++i) {
            const Instance& next = file_.instances_[i];
            std::uint32_t& place = file_.dense_[next.id];
            if (place == Part21::kNone)
                place = i;
            else
                repeated(next);
        }
    }

    void fillSorted() {
        auto& byId = file_.byId_;
        byId.reserve(file_.instances_.size());
        for (std::uint32_t i = 0; i < file_.instances_.size(); ++i) {
            byId.emplace_back(file_.instances_[i].id, i);
        }
        std::sort(byId.begin(), byId.end());
        for (std::size_t i = 1; i < byId.size(); ++i) {
            if (byId[i].first == byId[i - 1].first) repeated(file_.instances_[byId[i].second]);
        }
    }

    void repeated(const Instance& instance) {
        if (file_.repeatedNumbers_++ > 0 && file_.firstRepeated_->offset < instance.body) return;
        file_.firstRepeated_ = Defect{instance.body, numberText(instance.id)};
    }

    Part21& file_;
    std::string_view text_;
    std::size_t at_ = 0;
    bool inHeader_ = false;
    bool complex_ = false;
    bool isPoint_ = false;
    std::uint32_t pointType_ = 0;
    std::vector<Reference> references_;
};

bool IgnoringCase::operator()(std::string_view a, std::string_view b) const {
    return std::lexicographical_compare(
        a.begin(), a.end(), b.begin(), b.end(),
        [](char left, char right) { return capital(left) < capital(right); });
}

Part21::Part21(std::string_view text) : text_(text) {
    Part21Indexer(*this, text).run();
}

std::uint32_t Part21::position(std::uint64_t id) const {
    if (!dense_.empty()) return id < dense_.size() ? dense_[id] : kNone;
    const auto found = std::lower_bound(byId_.begin(), byId_.end(), std::pair(id, 0U));
    return found != byId_.end() && found->first == id ? found->second : kNone;
}

const Instance* Part21::find(std::uint64_t id) const {
    const std::uint32_t found = position(id);
    return found == kNone ? nullptr : &instances_[found];
}

std::uint32_t Part21::typeOf(std::string_view keyword) const {
    const auto found = keywordNumbers_.find(keyword);
    return found == keywordNumbers_.end() ? kComplex : found->second;
}

const std::vector<std::uint32_t>& Part21::ofType(std::string_view keyword) const {
    static const std::vector<std::uint32_t> none;
    const auto found = keywordNumbers_.find(keyword);
    return found == keywordNumbers_.end() ? none : byType_[found->second];
}

std::vector<std::string_view> Part21::keywords() const {
    std::vector<std::string_view> out;
    for (const auto& [keyword, number] : keywordNumbers_) out.push_back(keyword);
    return out;
}

std::string_view Part21::keyword(const Instance& instance) const {
    return keywords_[instance.type];
}

std::vector<Record> Part21::read(const Instance& instance) const {
    std::vector<Record> records;
    std::size_t at = instance.body;
    const bool complex = at < text_.size() && text_[at] == '(';
    if (complex) ++at;
    while (true) {
        skipBlanks(text_, at);
        const std::string_view word = readKeyword(text_, at);
        if (word.empty()) return records;
        skipBlanks(text_, at);
        auto values = parseParameters(text_, at);
        if (!values) return {};
        records.push_back({capitals(word), std::move(*values)});
        if (!complex) return records;
    }
}

std::optional<Record> Part21::read(std::uint64_t id, std::string_view keyword) const {
    const Instance* const instance = find(id);
    if (instance == nullptr) return std::nullopt;
    for (Record& record : read(*instance)) {
        if (record.keyword == keyword) return std::move(record);
    }
    return std::nullopt;
}

std::size_t Part21::line(std::size_t offset) const {
    const auto end = text_.begin() + static_cast<std::ptrdiff_t>(std::min(offset, text_.size()));
    return 1 + static_cast<std::size_t>(std::count(text_.begin(), end, '\n'));
}

}  // namespace occt::step
