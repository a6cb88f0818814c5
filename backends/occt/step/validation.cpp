#include "backends/occt/step/validation.h"

#include <cmath>

#include "backends/occt/step/attributes.h"
#include "backends/occt/step/pmi_text.h"

namespace occt::step {
namespace {

constexpr const char* kPrefix = "Validation ";

std::string wordsOf(const std::string& name) {
    std::string out = inSmallLetters(shortName(name));
    for (char& c : out) {
        if (c == '_') c = ' ';
    }
    constexpr std::string_view measure = " measure";
    if (out.ends_with(measure)) out.resize(out.size() - measure.size());
    return out;
}

bool isCentroid(const std::string& words) {
    return words == "centre point" || words == "center point" || words == "centroid" ||
           words == "centroid point" || words == "geometric centre";
}

}  // namespace

bool isValidation(const std::string& property) {
    return property.find("validation property") != std::string::npos ||
           property.find("validation_property") != std::string::npos;
}

std::string titleOf(const std::string& name) {
    if (!saysMore(name)) return {};
    std::string out = wordsOf(name);
    bool first = true;
    for (char& c : out) {
        if (first && c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
        first = c == ' ';
    }
    return out;
}

std::string validationKey(const std::string& item, const std::string& representation) {
    for (const std::string& name : {item, representation}) {
        if (!saysMore(name)) continue;
        return kPrefix + (isCentroid(wordsOf(name)) ? "Centroid" : titleOf(name));
    }
    return {};
}

std::string pointText(const Value& coordinates) {
    constexpr std::size_t most = 3;
    if (!coordinates.isList() || coordinates.items.empty() || coordinates.items.size() > most) {
        return {};
    }
    std::string out;
    for (const Value& number : coordinates.items) {
        if (number.kind != Value::Kind::Number || !std::isfinite(number.number)) return {};
        out += (out.empty() ? "(" : ", ") + numberText(number.number);
    }
    return out + ")";
}

}  // namespace occt::step
