#include "platform/os/helper_messages.h"

#include <charconv>
#include <vector>

namespace os {
namespace {

struct KindName {
    HelperMessage::Kind kind;
    const char* name;
};
constexpr KindName kKinds[] = {
    {HelperMessage::Kind::Progress, "progress"}, {HelperMessage::Kind::Warning, "warning"},
    {HelperMessage::Kind::Partial, "partial"},   {HelperMessage::Kind::Failure, "failure"},
    {HelperMessage::Kind::Result, "result"},
};

void appendEscaped(std::string& line, const std::string& field) {
    for (const char c : field) {
        switch (c) {
            case '\\': line += "\\\\"; break;
            case '\t': line += "\\t"; break;
            case '\n': line += "\\n"; break;
            case '\r': line += "\\r"; break;
            default: line += c;
        }
    }
}

char unescaped(char c) {
    switch (c) {
        case 't': return '\t';
        case 'n': return '\n';
        case 'r': return '\r';
        default: return c;
    }
}

std::vector<std::string> splitFields(const std::string& line) {
    std::vector<std::string> fields(1);
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '\t') {
            fields.emplace_back();
        } else if (line[i] == '\\' && i + 1 < line.size()) {
            fields.back() += unescaped(line[++i]);
        } else {
            fields.back() += line[i];
        }
    }
    return fields;
}

std::string formatFraction(double fraction) {
    char buffer[32];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, fraction).ptr;
    return {buffer, end};
}

}  // namespace

std::string formatHelperMessage(const HelperMessage& message) {
    std::string line;
    for (const KindName& entry : kKinds) {
        if (entry.kind == message.kind) line = entry.name;
    }
    line += '\t';
    line += formatFraction(message.fraction);
    line += '\t';
    appendEscaped(line, message.name);
    line += '\t';
    appendEscaped(line, message.text);
    return line;
}

std::optional<HelperMessage> parseHelperMessage(const std::string& line) {
    const std::vector<std::string> fields = splitFields(line);
    if (fields.size() != 4) return std::nullopt;
    HelperMessage message;
    bool known = false;
    for (const KindName& entry : kKinds) {
        if (fields[0] != entry.name) continue;
        message.kind = entry.kind;
        known = true;
    }
    const char* const end = fields[1].data() + fields[1].size();
    const auto parsed = std::from_chars(fields[1].data(), end, message.fraction);
    const bool fractionGood = parsed.ec == std::errc() && parsed.ptr == end &&
                              message.fraction >= 0.0 && message.fraction <= 1.0;
    if (!known || !fractionGood) return std::nullopt;
    message.name = fields[2];
    message.text = fields[3];
    return message;
}

}  // namespace os
