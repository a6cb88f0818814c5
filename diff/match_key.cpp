#include "diff/match_key.h"

#include <array>

namespace diff {
namespace {

constexpr char kDropped = 0;

// What a character becomes in the key. White space is a space here; runs are joined later.
constexpr std::array<char, 128> makeKeyCharacters() {
    std::array<char, 128> table = {};
    for (char c = 'a'; c <= 'z'; ++c) table[static_cast<std::size_t>(c)] = c;
    for (char c = 'A'; c <= 'Z'; ++c) {
        table[static_cast<std::size_t>(c)] = static_cast<char>(c + 32);
    }
    for (char c = '0'; c <= '9'; ++c) table[static_cast<std::size_t>(c)] = c;
    for (const char c : {' ', '\t', '\r', '\n'}) table[static_cast<std::size_t>(c)] = ' ';
    for (const char c : {'-', '_'}) table[static_cast<std::size_t>(c)] = c;
    return table;
}

constexpr std::array<char, 128> kKeyCharacters = makeKeyCharacters();

char keyCharacter(wchar_t c) {
    const auto code = static_cast<std::size_t>(c);
    return code < kKeyCharacters.size() ? kKeyCharacters[code] : kDropped;
}

}  // namespace

void AppendMatchKey(std::wstring_view text, std::string& out) {
    const std::size_t start = out.size();
    bool afterBlank = false;
    for (const wchar_t c : text) {
        if (c == L'(') break;
        const char mapped = keyCharacter(c);
        const bool blank = mapped == ' ';
        // A dropped character ends a run: "a . b" keeps a space on either side of the stop.
        const bool keep = blank ? !afterBlank && out.size() > start : mapped != kDropped;
        if (keep) out.push_back(mapped);
        afterBlank = blank;
    }
    while (out.size() > start && out.back() == ' ') out.pop_back();
}

}  // namespace diff
