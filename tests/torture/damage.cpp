#include "tests/torture/damage.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>
#include <vector>

namespace torture {
namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

struct Range {
    std::size_t begin = 0;
    std::size_t end = 0;
};

Range someBlock(const std::string& bytes, std::size_t longest, Chance& chance) {
    if (bytes.empty()) return {};
    const std::size_t begin = chance.below(bytes.size());
    const std::size_t length = 1 + chance.below(std::min(longest, bytes.size() - begin));
    return {begin, begin + length};
}

Range someLine(const std::string& bytes, Chance& chance) {
    if (bytes.empty()) return {};
    const std::size_t at = chance.below(bytes.size());
    const std::size_t before = bytes.rfind('\n', at);
    const std::size_t after = bytes.find('\n', at);
    return {before == std::string::npos || before == at ? (before == at ? at : 0) : before + 1,
            after == std::string::npos ? bytes.size() : after + 1};
}

/// The next word at or after a random place that `starts` begins and `holds` goes on.
template <class Starts, class Holds>
Range someWord(const std::string& bytes, Starts starts, Holds holds, Chance& chance) {
    if (bytes.empty()) return {};
    std::size_t at = chance.below(bytes.size());
    while (at < bytes.size() && !starts(at)) ++at;
    std::size_t end = at;
    while (end < bytes.size() && holds(bytes[end])) ++end;
    return {at, end};
}

Range someNumber(const std::string& bytes, Chance& chance) {
    return someWord(
        bytes,
        [&](std::size_t at) {
            return (isDigit(bytes[at]) || bytes[at] == '-') &&
                   (at == 0 || (bytes[at - 1] != '#' && !isDigit(bytes[at - 1])));
        },
        [](char c) { return isDigit(c) || std::strchr("+-.eE", c) != nullptr; }, chance);
}

/// A reference of STEP, or any whole number, which is one in the other formats.
Range someReference(const std::string& bytes, Chance& chance) {
    const bool marked = bytes.find('#') != std::string::npos;
    return someWord(
        bytes,
        [&](std::size_t at) {
            const bool first = at == 0 || !isDigit(bytes[at - 1]);
            return isDigit(bytes[at]) && first && (!marked || (at > 0 && bytes[at - 1] == '#'));
        },
        isDigit, chance);
}

void put(std::string& bytes, Range range, const std::string& text) {
    bytes.replace(range.begin, range.end - range.begin, text);
}

std::string textOf(const std::string& bytes, Range range) {
    return bytes.substr(range.begin, range.end - range.begin);
}

Damage truncated(std::string& bytes, const std::string&, Chance& chance) {
    const std::size_t length = chance.below(bytes.size() + 1);
    const std::size_t lost = bytes.size() - length;
    bytes.resize(length);
    return {"truncated", lost};
}

Damage flipped(std::string& bytes, const std::string&, Chance& chance) {
    const std::size_t count = 1 + chance.below(8);
    for (std::size_t i = 0; i < count && !bytes.empty(); ++i) {
        char& byte = bytes[chance.below(bytes.size())];
        byte = static_cast<char>(byte ^ (1 << chance.below(8)));
    }
    return {"bits flipped", count};
}

Damage overwritten(std::string& bytes, const std::string&, Chance& chance) {
    const Range range = someBlock(bytes, 64, chance);
    constexpr std::array<unsigned char, 4> fillers = {0x00, 0xFF, 0x7F, 0x80};
    const bool filled = chance.oneIn(2);
    const unsigned char filler = fillers[chance.below(fillers.size())];
    for (std::size_t i = range.begin; i < range.end; ++i) {
        bytes[i] = static_cast<char>(filled ? filler : chance.below(256));
    }
    return {"bytes overwritten", range.end - range.begin};
}

Damage spliced(std::string& bytes, const std::string& donor, Chance& chance) {
    const std::string block = textOf(donor, someBlock(donor, 4096, chance));
    const Range place = someBlock(bytes, 4096, chance);
    const std::size_t touched = block.size() + place.end - place.begin;
    put(bytes, place, block);
    return {"block spliced", touched};
}

Damage removed(std::string& bytes, const std::string&, Chance& chance) {
    const Range range = someBlock(bytes, 512, chance);
    put(bytes, range, "");
    return {"block removed", range.end - range.begin};
}

Damage repeated(std::string& bytes, const std::string&, Chance& chance) {
    const Range range = someBlock(bytes, 512, chance);
    bytes.insert(range.end, textOf(bytes, range));
    return {"block repeated", range.end - range.begin};
}

Damage numberReplaced(std::string& bytes, const std::string&, Chance& chance) {
    static const std::vector<std::string> numbers = {
        "1e308", "-1E+300", "1e999",      "nan",        "NaN",
        "inf",   "-inf",    "4294967295", "2147483648", "99999999999999999999",
        "-1",    "0",       "1e-320",     "0.",         "1E15"};
    const Range range = someNumber(bytes, chance);
    const std::string& number = numbers[chance.below(numbers.size())];
    put(bytes, range, number);
    return {"number made " + number, number.size() + range.end - range.begin};
}

Damage referencesSwapped(std::string& bytes, const std::string&, Chance& chance) {
    Range first = someReference(bytes, chance);
    Range second = someReference(bytes, chance);
    if (first.begin > second.begin) std::swap(first, second);
    if (first.end > second.begin) return {"references swapped", 0};
    const std::string one = textOf(bytes, first);
    const std::string other = textOf(bytes, second);
    put(bytes, second, one);
    put(bytes, first, other);
    return {"references swapped", one.size() + other.size()};
}

Damage referenceReplaced(std::string& bytes, const std::string&, Chance& chance) {
    const std::string other = textOf(bytes, someReference(bytes, chance));
    const Range range = someReference(bytes, chance);
    put(bytes, range, other);
    return {"reference replaced", other.size() + range.end - range.begin};
}

Damage lineRepeated(std::string& bytes, const std::string&, Chance& chance) {
    const Range range = someLine(bytes, chance);
    bytes.insert(range.end, textOf(bytes, range));
    return {"line repeated", range.end - range.begin};
}

Damage lineRemoved(std::string& bytes, const std::string&, Chance& chance) {
    const Range range = someLine(bytes, chance);
    put(bytes, range, "");
    return {"line removed", range.end - range.begin};
}

using Way = Damage (*)(std::string&, const std::string&, Chance&);
constexpr std::array<Way, 6> kForBytes = {truncated, flipped, overwritten,
                                          spliced,   removed, repeated};
constexpr std::array<Way, 5> kForText = {numberReplaced, referencesSwapped, referenceReplaced,
                                         lineRepeated, lineRemoved};

}  // namespace

// SplitMix64: small, and its numbers are the same everywhere.
Chance::Chance(std::uint64_t seed, std::uint64_t number)
    : state_(seed * 0x9E3779B97F4A7C15U + number * 0xD1B54A32D192ED03U) {
    next();
}

std::uint64_t Chance::next() {
    std::uint64_t z = state_ += 0x9E3779B97F4A7C15U;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9U;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBU;
    return z ^ (z >> 31);
}

std::size_t Chance::below(std::size_t end) {
    return end == 0 ? 0 : static_cast<std::size_t>(next() % end);
}

Damage damage(std::string& bytes, bool isText, const std::string& donor, Chance& chance) {
    Damage all;
    const std::size_t times = chance.oneIn(2) ? 1 : 1 + chance.below(4);
    for (std::size_t i = 0; i < times; ++i) {
        const bool byText = isText && !chance.oneIn(3);
        const Way way = byText ? kForText[chance.below(kForText.size())]
                               : kForBytes[chance.below(kForBytes.size())];
        const Damage one = way(bytes, donor, chance);
        all.what += (all.what.empty() ? "" : ", ") + one.what;
        all.touched += one.touched;
    }
    return all;
}

}  // namespace torture
