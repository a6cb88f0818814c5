#pragma once

#include <string>
#include <vector>

#include "backends/occt/step/attributes.h"
#include "tests/unit/backends/occt/step/product_text.h"
#include "tests/unit/backends/occt/step/step_file.h"

namespace step_test {

/// Each value as "name='text'", "name=3" (signed), "name=3u", "name=3r" or "name=yes".
inline std::vector<std::string> shown(const occt::step::MetadataValues& values) {
    std::vector<std::string> out;
    for (const HPS::MetadataValue& value : values) {
        std::string text = value.name + "=";
        if (const auto* held = std::get_if<std::string>(&value.value)) {
            text += "'" + *held + "'";
        } else if (const auto* number = std::get_if<std::int32_t>(&value.value)) {
            text += std::to_string(*number);
        } else if (const auto* count = std::get_if<std::uint32_t>(&value.value)) {
            text += std::to_string(*count) + "u";
        } else if (const auto* real = std::get_if<double>(&value.value)) {
            text += occt::step::numberText(*real) + "r";
        } else if (const auto* is = std::get_if<bool>(&value.value)) {
            text += *is ? "yes" : "no";
        } else {
            text += "?";
        }
        out.push_back(std::move(text));
    }
    return out;
}

/// A property of the entity `subject` whose representation has these items.
inline std::string property(int base, int subject, const std::string& name,
                            const std::string& items, const std::string& content = "") {
    return ref(base) + "=PROPERTY_DEFINITION('" + name + "','described'," + ref(subject) + ");" +
           ref(base + 1) + "=PROPERTY_DEFINITION_REPRESENTATION(" + ref(base) + "," +
           ref(base + 2) + ");" + ref(base + 2) + "=REPRESENTATION('" + content + "',(" + items +
           "),$);\n";
}

/// Attributes of a product "part" whose definition is #12, version #11, shape #13 and
/// representation #14.
inline std::vector<std::string> attributesOfPart(const std::string& text) {
    const StepFile step(kContexts + product(10, "part", "part") + text);
    return shown(
        occt::step::readAttributes(step.file, occt::step::readProducts(step.file)).products.at(0));
}

}  // namespace step_test
