#include "tests/torture/declared.h"

#include <array>
#include <cctype>
#include <set>
#include <string_view>
#include <utility>

#include "tests/torture/archive.h"

namespace torture {
namespace {

/// Statements of a STEP file without comments and texts.
class Statements {
public:
    explicit Statements(const std::string& bytes) : bytes_(bytes) {}

    bool next(std::string& statement) {
        statement.clear();
        while (at_ < bytes_.size()) {
            const char c = bytes_[at_];
            if (c == ';') {
                ++at_;
                return true;
            }
            if (c == '\'') {
                skipTo("'", 1);
            } else if (c == '/' && bytes_.compare(at_, 2, "/*") == 0) {
                skipTo("*/", 2);
            } else {
                if (std::isspace(static_cast<unsigned char>(c)) == 0) {
                    statement += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
                }
                ++at_;
            }
        }
        return false;
    }

private:
    void skipTo(const char* end, std::size_t start) {
        const std::size_t found = bytes_.find(end, at_ + start);
        at_ = found == std::string::npos ? bytes_.size() : found + std::string_view(end).size();
    }

    const std::string& bytes_;
    std::size_t at_ = 0;
};

/// Position after `keyword(`, or npos; the keyword is not the tail of a longer one.
std::size_t argumentsOf(const std::string& statement, const std::string& keyword) {
    const std::size_t at = statement.find(keyword + '(');
    if (at == std::string::npos || at == 0) return std::string::npos;
    const char before = statement[at - 1];
    return before == '=' || before == '(' || before == ')' ? at + keyword.size() + 1
                                                           : std::string::npos;
}

void collectReferences(const std::string& statement, std::size_t at, std::set<std::string>& out) {
    for (int depth = 1; at < statement.size() && depth > 0; ++at) {
        if (statement[at] == '(') ++depth;
        if (statement[at] == ')') --depth;
        if (statement[at] != '#') continue;
        std::size_t end = at + 1;
        while (end < statement.size() && statement[end] >= '0' && statement[end] <= '9') ++end;
        out.insert(statement.substr(at, end - at));
    }
}

std::string_view lineAt(const std::string& bytes, std::size_t begin) {
    const std::size_t end = bytes.find('\n', begin);
    return std::string_view(bytes).substr(
        begin, end == std::string::npos ? std::string::npos : end - begin);
}

}  // namespace

Declared declaredInStep(const std::string& bytes) {
    std::set<std::string> usages;
    std::set<std::string> faces;
    Statements statements(bytes);
    for (std::string statement; statements.next(statement);) {
        if (statement.empty() || statement[0] != '#') continue;
        if (argumentsOf(statement, "NEXT_ASSEMBLY_USAGE_OCCURRENCE") != std::string::npos) {
            usages.insert(statement.substr(0, statement.find('=')));
        }
        for (const char* const shell : {"CLOSED_SHELL", "OPEN_SHELL"}) {
            const std::size_t at = argumentsOf(statement, shell);
            if (at != std::string::npos) collectReferences(statement, at, faces);
        }
    }
    Declared declared;
    declared.usages = usages.size();
    declared.faces = faces.size();
    return declared;
}

Declared declaredInIges(const std::string& bytes) {
    // Directory entries stand on two lines with a D in column 73; the first begins with the type.
    std::uint64_t faces = 0;
    bool first = true;
    for (std::size_t at = 0; at < bytes.size();) {
        const std::string_view line = lineAt(bytes, at);
        at += line.size() + 1;
        if (line.size() < 73 || line[72] != 'D') continue;
        if (first) {
            const std::string_view type = line.substr(0, 8);
            for (const char* const face : {"     143", "     144", "     510"}) {
                if (type == face) ++faces;
            }
        }
        first = !first;
    }
    Declared declared;
    declared.faces = faces;
    return declared;
}

Declared declaredInBrep(const std::string& bytes) {
    // Text alone: each shape begins with a line of two letters.
    if (bytes.find("CASCADE Topology V") == std::string::npos ||
        bytes.find("Open CASCADE Topology V") != std::string::npos) {
        return {};
    }
    const std::size_t shapes = bytes.find("\nTShapes ");
    Declared declared;
    declared.faces = 0;
    if (shapes == std::string::npos) return declared;
    for (std::size_t at = shapes + 1; at < bytes.size();) {
        const std::string_view line = lineAt(bytes, at);
        at += line.size() + 1;
        if (line == "Fa" || line == "Fa\r") ++*declared.faces;
    }
    return declared;
}

Declared declaredIn(const std::string& kind, const std::string& bytes) {
    if (kind == "step") return declaredInStep(bytes);
    if (kind == "step.gz") {
        const auto text = gunzipped(bytes);
        if (text) return declaredInStep(*text);
        Declared broken;
        broken.isBroken = true;
        return broken;
    }
    if (kind == "iges") return declaredInIges(bytes);
    if (kind == "brep") return declaredInBrep(bytes);
    if (kind == "stl" || kind == "stl binary") return declaredInStl(bytes);
    if (kind == "obj") return declaredInObj(bytes);
    if (kind == "ply" || kind == "ply binary") return declaredInPly(bytes);
    if (kind == "gltf" || kind == "glb") return declaredInGltf(bytes);
    if (kind == "3mf") return declaredIn3mf(bytes);
    return {};
}

}  // namespace torture
