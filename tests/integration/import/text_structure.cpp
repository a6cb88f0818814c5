#include "tests/integration/import/text_structure.h"

#include <algorithm>
#include <functional>
#include <map>
#include <set>

namespace import_test {
namespace {

using support::StepEntity;
using Number = std::uint64_t;
using Numbers = std::vector<Number>;

bool isHex(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}

bool isUtf8Lead(unsigned char c) {
    return c >= 0xC2 && c <= 0xF4;
}

/// A quoted parameter as plain text with '?' for everything beyond ASCII.
std::string plain(const std::string& quoted) {
    if (quoted.size() < 2 || quoted.front() != '\'') return {};
    const std::string in = quoted.substr(1, quoted.size() - 2);
    std::string out;
    for (std::size_t i = 0; i < in.size();) {
        const auto c = static_cast<unsigned char>(in[i]);
        if (in.compare(i, 4, "\\X2\\") == 0 || in.compare(i, 4, "\\X4\\") == 0) {
            const std::size_t width = in[i + 2] == '2' ? 4 : 8;
            i += 4;
            for (std::size_t digits = 0; i < in.size() && isHex(in[i]); ++i) {
                if (++digits % width == 1) out += '?';
            }
            i += 4;
        } else if (in.compare(i, 3, "\\X\\") == 0) {
            out += '?';
            i += 5;
        } else if (in.compare(i, 3, "\\S\\") == 0) {
            out += '?';
            i += 4;
        } else if (in.compare(i, 2, "''") == 0 || in.compare(i, 2, "\\\\") == 0) {
            out += in[i];
            i += 2;
        } else if (c >= 0x80) {
            out += '?';
            ++i;
            // A character of UTF-8 is one, bytes of other encodings are one each.
            while (isUtf8Lead(c) && i < in.size() &&
                   (static_cast<unsigned char>(in[i]) & 0xC0U) == 0x80) {
                ++i;
            }
        } else {
            if (c != '\n' && c != '\r') out += in[i];
            ++i;
        }
    }
    return out;
}

class Reader {
public:
    explicit Reader(const support::StepText& text) {
        for (const StepEntity& entity : text.entities) {
            // The first of a number counts.
            const auto types = support::entityTypes(entity.text);
            for (const std::string& type : types) byType_[type].push_back(entity.number);
            entities_.emplace(entity.number, &entity);
        }
    }

    TextStructure read() {
        definitions();
        shapes();
        usages();
        std::vector<Number> roots;
        for (const bool withContent : {true, false}) {
            for (const Number definition : order_) {
                const bool content = children_.count(definition) + shapes_.count(definition) > 0;
                if (used_.count(definition) == 0 && content == withContent) {
                    roots.push_back(definition);
                }
            }
            if (!roots.empty()) break;
        }
        std::string above;
        if (roots.size() > 1) out_.occurrences.push_back(above = "Assembly");
        for (const Number root : roots) unfold(root, above);
        for (auto* list : {&out_.occurrences, &out_.bodies, &out_.meshes}) {
            std::sort(list->begin(), list->end());
        }
        out_.definitions = reached_.size() + holders_.size() + (roots.size() > 1 ? 1 : 0);
        return std::move(out_);
    }

private:
    std::vector<std::string> parameters(Number number) const {
        const auto found = entities_.find(number);
        return found == entities_.end() ? std::vector<std::string>()
                                        : support::entityParameters(found->second->text);
    }
    Numbers references(Number number) const {
        const auto found = entities_.find(number);
        return found == entities_.end() ? Numbers()
                                        : support::entityReferences(found->second->text);
    }
    std::string type(Number number) const {
        const auto found = entities_.find(number);
        if (found == entities_.end()) return {};
        const auto types = support::entityTypes(found->second->text);
        return types.size() == 1 ? types.front() : std::string();
    }
    Numbers ofType(const std::string& name) const {
        const auto found = byType_.find(name);
        return found == byType_.end() ? Numbers() : found->second;
    }
    static Number reference(const std::vector<std::string>& all, std::size_t index) {
        if (index >= all.size() || all[index].size() < 2 || all[index][0] != '#') return 0;
        return std::stoull(all[index].substr(1));
    }

    void definitions() {
        for (const char* name :
             {"PRODUCT_DEFINITION", "PRODUCT_DEFINITION_WITH_ASSOCIATED_DOCUMENTS"}) {
            for (const Number definition : ofType(name)) {
                const auto product =
                    parameters(reference(parameters(reference(parameters(definition), 2)), 2));
                std::string words;
                for (std::size_t i = 0; i < 2 && i < product.size(); ++i) {
                    const std::string next = plain(product[i]);
                    if (next.find_first_not_of(' ') != std::string::npos) words = next;
                }
                names_[definition] = words;
                order_.push_back(definition);
            }
        }
    }

    void shapes() {
        for (const Number link : ofType("SHAPE_DEFINITION_REPRESENTATION")) {
            const auto all = parameters(link);
            const Number owner = reference(parameters(reference(all, 0)), 2);
            if (names_.count(owner) != 0) shapes_[owner].push_back(reference(all, 1));
        }
        for (const Number relation : ofType("SHAPE_REPRESENTATION_RELATIONSHIP")) {
            if (type(relation).empty()) continue;
            const auto all = parameters(relation);
            related_[reference(all, 2)].push_back(reference(all, 3));
            related_[reference(all, 3)].push_back(reference(all, 2));
        }
    }

    void usages() {
        for (const Number usage : ofType("NEXT_ASSEMBLY_USAGE_OCCURRENCE")) {
            // Definitions are all that a usage refers to.
            Numbers both;
            for (const Number number : references(usage)) {
                if (names_.count(number) != 0) both.push_back(number);
            }
            if (both.size() < 2) continue;
            children_[both[0]].push_back(both[1]);
            used_.insert(both[1]);
        }
    }

    /// Items of all representations of a definition, mapped ones resolved.
    Numbers items(Number definition) {
        Numbers open = shapes_.count(definition) != 0 ? shapes_[definition] : Numbers();
        std::set<Number> seen(open.begin(), open.end());
        Numbers found;
        for (std::size_t i = 0; i < open.size(); ++i) {
            for (const Number item : representationItems(open[i])) {
                if (type(item) != "MAPPED_ITEM") {
                    if (seenItems_.insert({definition, item}).second) found.push_back(item);
                    continue;
                }
                const Number mapped = reference(parameters(reference(parameters(item), 1)), 1);
                for (const Number inner : representationItems(mapped)) found.push_back(inner);
            }
            for (const Number other : related_[open[i]]) {
                if (isOwn(other, definition) && seen.insert(other).second) open.push_back(other);
            }
        }
        return found;
    }

    /// False for a representation that another product calls its own.
    bool isOwn(Number representation, Number definition) const {
        for (const auto& [owner, all] : shapes_) {
            if (owner == definition) continue;
            if (std::find(all.begin(), all.end(), representation) != all.end()) return false;
        }
        return true;
    }

    Numbers representationItems(Number representation) const {
        const auto all = parameters(representation);
        return all.size() < 2 ? Numbers() : support::entityReferences(all[1]);
    }

    bool holdsSurface(Number set) const {
        const Numbers held = references(set);
        return std::any_of(held.begin(), held.end(),
                           [this](Number item) { return type(item).ends_with("SURFACE"); });
    }

    struct Bodies {
        std::size_t exact = 0;
        std::size_t meshes = 0;
    };

    Bodies bodiesOf(Number definition) {
        const auto known = bodies_.find(definition);
        if (known != bodies_.end()) return known->second;
        Bodies found;
        for (const Number item : items(definition)) {
            const std::string kind = type(item);
            if (kind == "MANIFOLD_SOLID_BREP" || kind == "BREP_WITH_VOIDS" ||
                kind == "FACETED_BREP") {
                ++found.exact;
            } else if (kind == "SHELL_BASED_SURFACE_MODEL") {
                found.exact += support::entityReferences(parameters(item).at(1)).size();
            } else if (kind == "GEOMETRIC_SET") {
                found.exact += holdsSurface(item) ? 1 : 0;
            } else if (kind == "TESSELLATED_SOLID" || kind == "TESSELLATED_SHELL") {
                ++found.meshes;
            }
        }
        if (found.exact > 0) found.meshes = 0;
        return bodies_[definition] = found;
    }

    void unfold(Number definition, const std::string& above) {
        reached_.insert(definition);
        const auto children = children_.find(definition);
        const bool isAssembly = children != children_.end();
        std::string name = names_[definition];
        if (name.empty()) name = isAssembly ? "Assembly" : "Part";
        std::string path = above.empty() ? name : above + "/" + name;
        out_.occurrences.push_back(path);
        const Bodies bodies = bodiesOf(definition);
        const std::string own = path;
        if (isAssembly && bodies.exact + bodies.meshes > 0) {
            out_.occurrences.push_back(path += "/" + name);
            holders_.insert(definition);
        }
        out_.bodies.insert(out_.bodies.end(), bodies.exact, path);
        out_.meshes.insert(out_.meshes.end(), bodies.meshes, path);
        if (!isAssembly) return;
        for (const Number child : children->second) unfold(child, own);
    }

    std::map<Number, const StepEntity*> entities_;
    std::map<std::string, Numbers> byType_;
    Numbers order_;
    std::map<Number, std::string> names_;
    std::map<Number, Numbers> shapes_;
    std::map<Number, Numbers> related_;
    std::map<Number, Numbers> children_;
    std::set<Number> used_;
    std::set<Number> reached_;
    std::set<Number> holders_;  // assemblies with bodies of their own
    std::set<std::pair<Number, Number>> seenItems_;
    std::map<Number, Bodies> bodies_;
    TextStructure out_;
};

}  // namespace

TextStructure readStructure(const support::StepText& text) {
    return Reader(text).read();
}

std::string asciiOnly(const std::string& utf8) {
    std::string out;
    for (const char c : utf8) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80)
            out += c;
        else if ((byte & 0xC0U) != 0x80)
            out += '?';
    }
    return out;
}

}  // namespace import_test
