#include "backends/mesh/ply_header.h"

#include <algorithm>
#include <optional>

#include "backends/mesh/text.h"

namespace mesh {
namespace {

struct TypeName {
    std::string_view name;
    PlyType type;
};
constexpr TypeName kTypes[] = {
    {"char", PlyType::Int8},      {"int8", PlyType::Int8},     {"uchar", PlyType::UInt8},
    {"uint8", PlyType::UInt8},    {"short", PlyType::Int16},   {"int16", PlyType::Int16},
    {"ushort", PlyType::UInt16},  {"uint16", PlyType::UInt16}, {"int", PlyType::Int32},
    {"int32", PlyType::Int32},    {"uint", PlyType::UInt32},   {"uint32", PlyType::UInt32},
    {"float", PlyType::Float},    {"float32", PlyType::Float}, {"double", PlyType::Double},
    {"float64", PlyType::Double},
};

std::optional<PlyType> typeNamed(std::string_view name) {
    for (const TypeName& known : kTypes) {
        if (known.name == name) return known.type;
    }
    return std::nullopt;
}

std::optional<PlyHeader::Encoding> encodingNamed(std::string_view name) {
    if (name == "ascii") return PlyHeader::Encoding::Text;
    if (name == "binary_little_endian") return PlyHeader::Encoding::LittleEndian;
    if (name == "binary_big_endian") return PlyHeader::Encoding::BigEndian;
    return std::nullopt;
}

// Nothing real comes near; a header of a million properties is an attack on the reader's time.
constexpr std::size_t kMostProperties = 1000;

class HeaderReader {
public:
    HeaderReader(std::string_view bytes, PlyHeader& header) : text_(bytes), header_(header) {}

    bool run() {
        if (text_.word() != "ply") return false;
        text_.skipLine();
        header_.lines = 1;
        bool hasFormat = false;
        while (!text_.atEnd()) {
            ++header_.lines;
            const std::string_view word = text_.wordInLine();
            if (word == "end_header") {
                text_.skipLine();
                header_.length = text_.offset();
                return hasFormat;
            }
            if (word == "format") {
                const auto encoding = encodingNamed(text_.wordInLine());
                if (!encoding) return false;
                header_.encoding = *encoding;
                hasFormat = true;
            } else if (!(word == "element"    ? readElement()
                         : word == "property" ? readProperty()
                                              : readRemark(word))) {
                return false;
            }
            text_.skipLine();
        }
        return false;
    }

private:
    bool readElement() {
        PlyElement element;
        element.name = std::string(text_.wordInLine());
        element.lineNumber = header_.lines;
        if (!parseInteger(text_.wordInLine(), element.count)) return false;
        header_.elements.push_back(std::move(element));
        return header_.elements.size() <= kMostProperties;
    }

    bool readProperty() {
        if (header_.elements.empty()) return false;
        auto& properties = header_.elements.back().properties;
        PlyProperty property;
        std::string_view word = text_.wordInLine();
        property.isList = word == "list";
        if (property.isList) {
            const auto type = typeNamed(text_.wordInLine());
            if (!type || *type == PlyType::Float || *type == PlyType::Double) return false;
            property.countType = *type;
            word = text_.wordInLine();
        }
        const auto type = typeNamed(word);
        property.name = std::string(text_.wordInLine());
        if (!type || property.name.empty()) return false;
        property.type = *type;
        properties.push_back(std::move(property));
        return properties.size() <= kMostProperties;
    }

    bool readRemark(std::string_view word) {
        if (word == "comment" || word == "obj_info") {
            const std::string text = toUtf8(remark());
            const char* const name = word == "comment" ? "Comment" : "Information";
            if (!text.empty()) header_.metadata.emplace_back(name, text);
            return true;
        }
        return word.empty();
    }

    /// The rest of the line, which stays unread so that every statement ends its line alike.
    std::string_view remark() {
        const std::string_view rest = text_.rest();
        return rest.substr(0, rest.find_first_of("\r\n"));
    }

    TextReader text_;
    PlyHeader& header_;
};

}  // namespace

std::size_t sizeOf(PlyType type) {
    switch (type) {
        case PlyType::Int8:
        case PlyType::UInt8: return 1;
        case PlyType::Int16:
        case PlyType::UInt16: return 2;
        case PlyType::Int32:
        case PlyType::UInt32:
        case PlyType::Float: return 4;
        default: return 8;
    }
}

std::size_t PlyElement::find(std::string_view wanted, std::string_view other) const {
    const auto found = std::find_if(properties.begin(), properties.end(), [&](const auto& p) {
        return p.name == wanted || (!other.empty() && p.name == other);
    });
    return static_cast<std::size_t>(found - properties.begin());
}

bool readPlyHeader(std::string_view bytes, PlyHeader& header, std::string& error) {
    if (HeaderReader(bytes, header).run()) return true;
    error = "is damaged: line " + std::to_string(std::max<std::size_t>(header.lines, 1)) +
            " of its header cannot be read.";
    return false;
}

}  // namespace mesh
