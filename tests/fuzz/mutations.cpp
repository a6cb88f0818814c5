#include "tests/fuzz/mutations.h"

#include <random>
#include <string_view>

namespace fuzz {
namespace {

constexpr std::size_t kLongest = std::size_t{16} * 1024;

// Characters that have a meaning somewhere.
constexpr std::string_view kSpecial{"\0\n\r\t \\'\"()[]{}=;,.#$*%+-/09AEe\x7F\x80\xC3\xE2\xF0\xFF",
                                    34};

/// Draws by remainder: the standard's distributions differ between libraries.
class Draw {
public:
    explicit Draw(std::uint64_t number) : engine_(number) {}

    std::size_t below(std::size_t limit) {
        return limit == 0 ? 0 : static_cast<std::size_t>(engine_() % limit);
    }
    const std::string& one(const Seeds& seeds) { return seeds[below(seeds.size())]; }

private:
    std::mt19937_64 engine_;
};

/// A piece of the text; long and short ones are equally likely.
std::string_view piece(std::string_view text, Draw& draw) {
    const std::size_t begin = draw.below(text.size());
    const std::size_t longest = std::size_t{1} << draw.below(10);
    return text.substr(begin, 1 + draw.below(longest));
}

void damage(std::string& text, const Seeds& seeds, Draw& draw) {
    const std::size_t at = draw.below(text.size());
    switch (draw.below(8)) {
        case 0:
            if (!text.empty()) text[at] = static_cast<char>(text[at] ^ (1 << draw.below(8)));
            break;
        case 1:
            if (!text.empty()) text[at] = static_cast<char>(draw.below(256));
            break;
        case 2: text.insert(at, 1, kSpecial[draw.below(kSpecial.size())]); break;
        case 3: text.resize(at); break;
        case 4: text.erase(at, piece(text, draw).size()); break;
        case 5: {
            const std::string copy(piece(text, draw));
            for (std::size_t times = 1 + draw.below(4); times > 0; --times) text.insert(at, copy);
            break;
        }
        case 6: text.insert(at, piece(draw.one(seeds), draw)); break;
        default: {
            const std::string& other = draw.one(seeds);
            text.resize(at);
            text += std::string_view(other).substr(draw.below(other.size()));
        }
    }
    if (text.size() > kLongest) text.resize(kLongest);
}

}  // namespace

std::string mutated(const Seeds& seeds, std::uint64_t number) {
    Draw draw(number);
    std::string text = draw.one(seeds);
    const std::size_t hits = std::size_t{1} << draw.below(4);
    for (std::size_t i = 0; i < hits; ++i) damage(text, seeds, draw);
    return text;
}

}  // namespace fuzz
