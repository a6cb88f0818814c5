#include "backends/occt/step/checks.h"

namespace occt::step {
namespace {

std::string quoted(const std::string& text) {
    return "\"" + text + "\"";
}

std::string atLine(const Part21& file, const Defect& defect) {
    return "line " + std::to_string(file.line(defect.offset));
}

std::string plural(std::size_t count, const std::string& one, const std::string& many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

}  // namespace

std::optional<HPS::Exchange::ImportCause> refuseText(const Part21& file, const std::string& name) {
    if (!file.hasMagic()) {
        return HPS::Exchange::ImportCause{
            "not-this-format", name + " is no STEP file: it does not begin with ISO-10303-21."};
    }
    if (file.instances().empty()) {
        return HPS::Exchange::ImportCause{"damaged", name + " is damaged: it holds no data."};
    }
    if (file.depth() > kDeepestParentheses) {
        return HPS::Exchange::ImportCause{
            "damaged", name + " is damaged: parentheses nest " + std::to_string(file.depth()) +
                           " deep; the limit is " + std::to_string(kDeepestParentheses) + "."};
    }
    if (const auto& number = file.absurdNumber()) {
        return HPS::Exchange::ImportCause{
            "damaged", name + " is damaged: the coordinate " + number->text + " in " +
                           atLine(file, *number) + " is not a length that can be."};
    }
    return std::nullopt;
}

std::optional<HPS::Exchange::ImportCause> refuseStructure(const Products& products,
                                                          const std::string& name) {
    const auto cycle = products.cycle();
    if (!cycle.empty()) {
        constexpr std::size_t shown = 8;
        std::string path;
        for (std::size_t i = 0; i < cycle.size(); ++i) {
            if (i == shown && cycle.size() > shown + 1) {
                path += " > ...";
                i = cycle.size() - 1;
            }
            path += (path.empty() ? "" : " > ") + quoted(products.products[cycle[i]].name);
        }
        return HPS::Exchange::ImportCause{
            "damaged", name + " is damaged: an assembly contains itself (" + path + ")."};
    }
    const std::uint64_t count = products.occurrenceCount();
    if (count > kMostOccurrences) {
        const std::string number =
            count >= (std::uint64_t{1} << 62) ? "more than 4 x 10^18" : std::to_string(count);
        return HPS::Exchange::ImportCause{
            "too-large", name + " is too large: the assembly unfolds into " + number +
                             " occurrences; the limit is " + std::to_string(kMostOccurrences) +
                             "."};
    }
    return std::nullopt;
}

std::vector<std::string> textGaps(const Part21& file, const Products& products) {
    std::vector<std::string> gaps;
    if (!file.hasEnd()) gaps.emplace_back("The file ends before its last line.");
    if (file.brokenStatements() > 0) {
        gaps.push_back(plural(file.brokenStatements(), "statement", "statements") +
                       " of the file could not be read, the first in " +
                       atLine(file, *file.firstBroken()) + ".");
    }
    if (file.danglingReferences() > 0) {
        gaps.push_back(plural(file.danglingReferences(), "reference leads", "references lead") +
                       " to entities that the file does not hold, the first in " +
                       atLine(file, *file.firstDangling()) + " to " + file.firstDangling()->text +
                       ".");
    }
    if (file.repeatedNumbers() > 0) {
        gaps.push_back(plural(file.repeatedNumbers(), "entity has", "entities have") +
                       " the number of another one, the first in " +
                       atLine(file, *file.firstRepeated()) + ": " + file.firstRepeated()->text +
                       ".");
    }
    if (products.brokenUsages > 0) {
        gaps.push_back(std::to_string(products.usageCount - products.brokenUsages) + " of " +
                       std::to_string(products.usageCount) +
                       " usages of products were translated.");
    }
    std::size_t unplaced = 0;
    for (const Product& product : products.products) {
        for (const ProductUsage& usage : product.usages) unplaced += usage.placed ? 0 : 1;
    }
    if (unplaced > 0) {
        gaps.push_back("The placement of " + plural(unplaced, "usage", "usages") +
                       " of products could not be read.");
    }
    return gaps;
}

}  // namespace occt::step
