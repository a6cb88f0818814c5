#include "backends/occt/read/step_reader.h"

#include <algorithm>
#include <utility>

#include "backends/occt/read/completeness.h"
#include "backends/occt/read/describe.h"
#include "backends/occt/read/step_references.h"
#include "backends/occt/read/step_translation.h"
#include "backends/occt/step/checks.h"

namespace occt {
namespace {

using HPS::Exchange::ImportCause;

ImportCause damaged(const step::Part21& file, const ReadRequest& request) {
    std::string text = request.name + " is damaged: ";
    if (file.firstBroken()) {
        text +=
            "line " + std::to_string(file.line(file.firstBroken()->offset)) + " cannot be read.";
    } else if (!file.hasEnd()) {
        text += "it ends in line " + std::to_string(file.line(request.bytes.size())) +
                ", before its data end.";
    } else {
        text += "it holds neither a product nor a shape that can be read.";
    }
    return {"damaged", text};
}

void append(std::vector<std::string>& to, std::vector<std::string> from) {
    for (std::string& text : from) to.push_back(std::move(text));
}

/// Products that have nothing of their own stand in their files.
void addExternal(std::vector<StepReference> references, DescribedModel& out) {
    for (StepReference& reference : references) {
        const DescribedDefinition& definition = out.description.definitions[reference.product];
        const bool hasShape =
            std::any_of(definition.items.begin(), definition.items.end(),
                        [](const DescribedItem& item) { return !item.label.empty(); });
        if (definition.isAssembly || hasShape) continue;
        out.external.push_back({reference.product, std::move(reference.file)});
    }
}

}  // namespace

std::optional<ImportCause> readStep(const ReadRequest& request, DescribedModel& out) {
    const step::Part21 file(request.bytes);
    if (auto cause = step::refuseText(file, request.name)) return cause;
    const step::Products products = step::readProducts(file);
    if (auto cause = step::refuseStructure(products, request.name)) return cause;
    StepTranslation translation(file, products);
    if (!translation.run(request.document, request.progress)) return damaged(file, request);
    out = describe(file, products, translation, request.options, request.document);
    if (out.description.definitions.empty()) return damaged(file, request);
    addExternal(stepReferences(file, products), out);
    append(out.description.gaps, step::textGaps(file, products));
    append(out.description.gaps, translationGaps(file, translation));
    return std::nullopt;
}

}  // namespace occt
