#include "tests/support/step_text.h"

#include <cctype>
#include <functional>
#include <unordered_map>
#include <utility>

namespace support {
namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

bool isWord(char c) {
    return isDigit(c) || c == '_' || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

/// End of the string, comment or other character that begins at `at`. A doubled apostrophe needs
/// no rule of its own: the string seems to end and another one begins at once.
std::size_t tokenEnd(std::string_view text, std::size_t at) {
    const char c = text[at];
    if (c == '\'' || c == '"') {
        const std::size_t end = text.find(c, at + 1);
        return end == std::string_view::npos ? text.size() : end + 1;
    }
    if (c == '/' && at + 1 < text.size() && text[at + 1] == '*') {
        const std::size_t end = text.find("*/", at + 2);
        return end == std::string_view::npos ? text.size() : end + 2;
    }
    return at + 1;
}

bool isComment(std::string_view text, std::size_t at) {
    return text[at] == '/' && at + 1 < text.size() && text[at + 1] == '*';
}

std::size_t skipBlanks(std::string_view text, std::size_t at) {
    while (at < text.size()) {
        if (isBlank(text[at])) {
            ++at;
        } else if (isComment(text, at)) {
            at = tokenEnd(text, at);
        } else {
            break;
        }
    }
    return at;
}

/// First ';' outside of strings and comments; npos without one.
std::size_t entityEnd(std::string_view text, std::size_t at) {
    while (at < text.size() && text[at] != ';') at = tokenEnd(text, at);
    return at < text.size() ? at : std::string_view::npos;
}

std::uint64_t readNumber(std::string_view text, std::size_t& at) {
    std::uint64_t number = 0;
    while (at < text.size() && isDigit(text[at])) {
        number = number * 10 + static_cast<std::uint64_t>(text[at++] - '0');
    }
    return number;
}

std::size_t findData(std::string_view bytes) {
    for (std::size_t at = 0; at < bytes.size(); at = tokenEnd(bytes, at)) {
        if (bytes[at] != 'D' || bytes.substr(at, 4) != "DATA") continue;
        if (at > 0 && isWord(bytes[at - 1])) continue;
        const std::size_t end = entityEnd(bytes, at);
        if (end != std::string_view::npos) return end + 1;
    }
    return std::string_view::npos;
}

/// Calls `act` with the place and length of every reference of an entity.
void forEachReference(std::string_view text,
                      const std::function<void(std::size_t, std::size_t, std::uint64_t)>& act) {
    for (std::size_t at = 0; at < text.size();) {
        if (text[at] == '#' && at + 1 < text.size() && isDigit(text[at + 1])) {
            const std::size_t begin = at++;
            const std::uint64_t number = readNumber(text, at);
            act(begin, at - begin, number);
        } else {
            at = tokenEnd(text, at);
        }
    }
}

std::string unquoted(const std::string& parameter) {
    if (parameter.size() < 2 || parameter.front() != '\'') return {};
    std::string plain;
    for (std::size_t i = 1; i + 1 < parameter.size(); ++i) {
        plain += parameter[i];
        if (parameter[i] == '\'') ++i;
    }
    return plain;
}

std::uint64_t reference(const std::vector<std::string>& parameters, std::size_t index) {
    if (index >= parameters.size() || parameters[index].empty()) return 0;
    if (parameters[index][0] != '#') return 0;
    std::size_t at = 1;
    return readNumber(parameters[index], at);
}

bool startsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

/// Products, who uses what, and which products nothing uses.
struct Structure {
    std::vector<std::uint64_t> definitions;
    std::unordered_map<std::uint64_t, std::string> names;
    std::unordered_map<std::uint64_t, std::vector<std::uint64_t>> users;
    std::unordered_map<std::uint64_t, bool> used;
};

Structure readStructure(const StepText& text) {
    std::unordered_map<std::uint64_t, std::string> productNames;
    std::unordered_map<std::uint64_t, std::uint64_t> productOf;
    std::vector<std::pair<std::uint64_t, std::uint64_t>> definitions;
    Structure made;
    for (const StepEntity& entity : text.entities) {
        const auto types = entityTypes(entity.text);
        if (types.size() != 1) continue;
        const std::string& type = types.front();
        if (type == "PRODUCT") {
            const auto parameters = entityParameters(entity.text);
            if (parameters.size() < 2) continue;
            const std::string name = unquoted(parameters[1]);
            const bool says = name.find_first_not_of(' ') != std::string::npos;
            productNames[entity.number] = says ? name : unquoted(parameters[0]);
        } else if (startsWith(type, "PRODUCT_DEFINITION_FORMATION")) {
            productOf[entity.number] = reference(entityParameters(entity.text), 2);
        } else if (type == "PRODUCT_DEFINITION" ||
                   type == "PRODUCT_DEFINITION_WITH_ASSOCIATED_DOCUMENTS") {
            definitions.emplace_back(entity.number, reference(entityParameters(entity.text), 2));
        } else if (type == "NEXT_ASSEMBLY_USAGE_OCCURRENCE") {
            const auto parameters = entityParameters(entity.text);
            made.users[reference(parameters, 3)].push_back(reference(parameters, 4));
            made.used[reference(parameters, 4)] = true;
        }
    }
    for (const auto& [number, formation] : definitions) {
        made.definitions.push_back(number);
        made.names[number] = productNames[productOf[formation]];
    }
    return made;
}

}  // namespace

std::optional<StepText> StepText::parse(std::string_view bytes) {
    std::size_t at = findData(bytes);
    if (at == std::string_view::npos) return std::nullopt;
    StepText made;
    made.head = bytes.substr(0, at);
    for (;;) {
        at = skipBlanks(bytes, at);
        if (at >= bytes.size() || bytes[at] != '#') break;
        ++at;
        StepEntity entity;
        entity.number = readNumber(bytes, at);
        at = skipBlanks(bytes, at);
        const std::size_t end = entityEnd(bytes, at);
        if (end == std::string_view::npos || bytes[at] != '=') return std::nullopt;
        entity.text = bytes.substr(at + 1, end - at - 1);
        made.entities.push_back(std::move(entity));
        at = end + 1;
    }
    made.tail = bytes.substr(std::min(at, bytes.size()));
    return made;
}

std::string StepText::write() const {
    std::string bytes = head + "\n";
    for (const StepEntity& entity : entities) {
        bytes += "#" + std::to_string(entity.number) + "=" + entity.text + ";\n";
    }
    return bytes + tail;
}

std::size_t StepText::count(std::string_view type) const {
    std::size_t found = 0;
    for (const StepEntity& entity : entities) {
        for (const std::string& each : entityTypes(entity.text)) found += each == type ? 1 : 0;
    }
    return found;
}

std::vector<StepOccurrence> StepText::occurrences(std::size_t limit) const {
    const Structure structure = readStructure(*this);
    struct Pending {
        std::uint64_t definition;
        std::int32_t depth;
        std::int32_t parent;
    };
    std::vector<Pending> pending;
    for (auto it = structure.definitions.rbegin(); it != structure.definitions.rend(); ++it) {
        if (structure.used.count(*it) == 0) pending.push_back({*it, 0, -1});
    }
    std::vector<StepOccurrence> made;
    while (!pending.empty() && made.size() < limit) {
        const Pending next = pending.back();
        pending.pop_back();
        const auto name = structure.names.find(next.definition);
        if (name == structure.names.end()) continue;
        const auto index = static_cast<std::int32_t>(made.size());
        made.push_back({name->second, next.depth, next.parent});
        const auto users = structure.users.find(next.definition);
        if (users == structure.users.end()) continue;
        for (auto it = users->second.rbegin(); it != users->second.rend(); ++it) {
            pending.push_back({*it, next.depth + 1, index});
        }
    }
    return made;
}

std::vector<std::string> entityTypes(std::string_view text) {
    std::vector<std::string> types;
    std::size_t depth = 0;
    std::size_t at = skipBlanks(text, 0);
    const std::size_t wanted = at < text.size() && text[at] == '(' ? 1 : 0;
    while (at < text.size()) {
        if (text[at] == '(') ++depth;
        if (text[at] == ')' && depth > 0) --depth;
        if (depth == wanted && isWord(text[at])) {
            const std::size_t begin = at;
            while (at < text.size() && isWord(text[at])) ++at;
            types.emplace_back(text.substr(begin, at - begin));
        } else {
            at = tokenEnd(text, at);
        }
    }
    return types;
}

std::vector<std::string> entityParameters(std::string_view text) {
    std::vector<std::string> parameters;
    std::size_t depth = 0;
    std::string current;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = tokenEnd(text, at);
        const char c = text[at];
        const bool blank = isBlank(c) || isComment(text, at);
        if (c == ')' && depth == 1) {
            if (!current.empty() || !parameters.empty()) parameters.push_back(current);
            break;
        }
        if (c == ',' && depth == 1) {
            parameters.push_back(std::exchange(current, {}));
        } else if (depth > 0 && !blank) {
            current += text.substr(at, end - at);
        }
        if (c == '(') ++depth;
        if (c == ')' && depth > 0) --depth;
        at = end;
    }
    return parameters;
}

std::vector<std::uint64_t> entityReferences(std::string_view text) {
    std::vector<std::uint64_t> numbers;
    forEachReference(
        text, [&](std::size_t, std::size_t, std::uint64_t number) { numbers.push_back(number); });
    return numbers;
}

StepText renumberedAndShuffled(const StepText& text, std::uint64_t seed) {
    Dice dice(seed);
    StepText made = text;
    std::vector<std::uint64_t> numbers(made.entities.size());
    for (std::size_t i = 0; i < numbers.size(); ++i) numbers[i] = 3 * i + 5;
    for (std::size_t i = numbers.size(); i > 1; --i) {
        std::swap(numbers[i - 1], numbers[dice.below(i)]);
        std::swap(made.entities[i - 1], made.entities[dice.below(i)]);
    }
    std::unordered_map<std::uint64_t, std::uint64_t> renamed;
    for (std::size_t i = 0; i < numbers.size(); ++i) renamed[made.entities[i].number] = numbers[i];
    for (StepEntity& entity : made.entities) {
        std::string rewritten;
        std::size_t copied = 0;
        forEachReference(entity.text, [&](std::size_t at, std::size_t size, std::uint64_t number) {
            rewritten += entity.text.substr(copied, at - copied);
            const auto found = renamed.find(number);
            // What the file refers to without defining it must stay undefined.
            rewritten += found == renamed.end() ? entity.text.substr(at, size)
                                                : "#" + std::to_string(found->second);
            copied = at + size;
        });
        entity.text = rewritten + entity.text.substr(copied);
        entity.number = renamed[entity.number];
    }
    return made;
}

std::uint64_t Dice::next() {
    // splitmix64
    state_ += 0x9E3779B97F4A7C15U;
    std::uint64_t mixed = state_;
    mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9U;
    mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBU;
    return mixed ^ (mixed >> 31U);
}

}  // namespace support
