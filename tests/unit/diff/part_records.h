#pragma once

#include <string>
#include <utility>
#include <vector>

#include "extract/attributes.h"
#include "platform/os/utf8.h"

/// A record of a part as a nested expression. Texts are UTF-8.
inline extract::PartAttributes record(
    const std::string& name,
    const std::vector<std::pair<std::string, std::string>>& attributes = {},
    bool hasSubcomponents = true) {
    extract::PartAttributes part;
    part.name = os::toWide(name);
    for (const auto& [key, value] : attributes) {
        part.attributes.push_back({os::toWide(key), os::toWide(value)});
    }
    part.hasSubcomponents = hasSubcomponents;
    return part;
}

/// What a comparison made of a list, one line per record: its name, its state, a star when it is
/// different, and the keys with their states.
inline std::vector<std::string> shownParts(const std::vector<extract::PartAttributes>& parts) {
    std::vector<std::string> lines;
    for (const extract::PartAttributes& part : parts) {
        std::string line = os::toUtf8(part.name) + ' ' +
                           std::to_string(static_cast<int>(part.state)) +
                           (part.isDifferent ? "*" : "");
        for (const extract::AttributeEntry& entry : part.attributes) {
            line += ' ' + os::toUtf8(entry.key) + std::to_string(static_cast<int>(entry.state));
        }
        lines.push_back(line);
    }
    return lines;
}
