// IGES files as text: directory and parameters, and the product structure that they make.

#include <algorithm>
#include <cmath>

#include "backends/occt/read/iges_structure.h"
#include "backends/occt/read/iges_text.h"
#include "tests/fuzz/fuzz.h"

namespace {

namespace iges = occt::iges;

void checkValue(const iges::Value& value) {
    fuzz::require(std::isfinite(value.number), "a number is one");
    fuzz::require(fuzz::isUtf8(value.text), "a text is text");
    fuzz::require(value.kind == iges::Value::Kind::Text || value.text.empty(),
                  "what is no text has none");
}

void checkText(const iges::Text& text, std::string_view bytes) {
    const auto& entities = text.entities();
    fuzz::require(entities.size() * 2 * 73 <= bytes.size(), "an entity takes two lines");
    fuzz::require(text.brokenLines() <= text.lineCount(), "a broken line is a line");
    fuzz::require((text.firstBroken() == 0) == (text.brokenLines() == 0), "the first is one");
    fuzz::require(fuzz::isUtf8(text.remarks()), "remarks are text");
    for (std::size_t i = 0; i < 30; ++i) checkValue(text.global(i));
    std::size_t claimed = 0;
    for (std::size_t i = 0; i < entities.size(); ++i) {
        fuzz::require(text.find(iges::Text::numberOf(i)) == &entities[i], "a number finds it");
        fuzz::require(fuzz::isUtf8(entities[i].label), "a label is text");
        for (const iges::Value& value : text.values(entities[i])) checkValue(value);
        for (const std::uint32_t part : iges::partsOf(text, entities[i])) {
            fuzz::require(text.find(part) != nullptr, "a part is there");
        }
        const bool reads = !text.values(entities[i]).empty();
        if (reads) claimed += entities[i].lineCount;
    }
    fuzz::require(claimed <= 4 * text.lineCount(), "lines are not read for every entity");
}

/// Nodes without usages are taken away again and again, which takes away all of them.
bool ends(const iges::Structure& structure) {
    std::vector<std::size_t> open(structure.nodes.size());
    std::vector<std::vector<std::size_t>> usedBy(structure.nodes.size());
    std::vector<std::size_t> done;
    for (std::size_t i = 0; i < structure.nodes.size(); ++i) {
        open[i] = structure.nodes[i].usages.size();
        for (const iges::Usage& usage : structure.nodes[i].usages) usedBy[usage.node].push_back(i);
        if (open[i] == 0) done.push_back(i);
    }
    for (std::size_t i = 0; i < done.size(); ++i) {
        for (const std::size_t user : usedBy[done[i]]) {
            if (--open[user] == 0) done.push_back(user);
        }
    }
    return done.size() == structure.nodes.size();
}

void checkStructure(const iges::Text& text) {
    const iges::Structure structure = iges::readStructure(text);
    fuzz::require(!structure.nodes.empty(), "there is a root");
    fuzz::require(structure.brokenUsages <= structure.usageCount, "a broken usage is one");
    const double unitMm = iges::unitMm(text);
    fuzz::require(unitMm > 0.0, "a unit has a length");
    fuzz::require(iges::namedUnitMm(text) > 0.0, "so has its name");
    for (const iges::Node& node : structure.nodes) {
        fuzz::require(fuzz::isUtf8(node.name), "a name is text");
        for (const iges::Usage& usage : node.usages) {
            fuzz::require(usage.node < structure.nodes.size(), "a usage is of a node");
            for (const double value : usage.placement) {
                fuzz::require(std::isfinite(value), "a placement is made of numbers");
            }
        }
        for (const auto& shape : node.shapes) {
            fuzz::require(!shape.empty(), "a shape is of something");
            for (const std::uint32_t number : shape) {
                fuzz::require(text.find(number) != nullptr, "and that is there");
            }
        }
    }
    for (const std::uint32_t number : structure.unused) {
        fuzz::require(text.find(number) != nullptr, "what is not used is there");
    }
    fuzz::require(ends(structure), "nothing contains itself");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const iges::Text text(bytes);
    checkText(text, bytes);
    checkStructure(text);
    fuzz::requireLinear(bytes, [](const std::string& grown) {
        static_cast<void>(iges::readStructure(iges::Text(grown)));
    });
    return 0;
}
