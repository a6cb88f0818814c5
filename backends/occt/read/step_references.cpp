#include "backends/occt/read/step_references.h"

#include <algorithm>
#include <map>
#include <unordered_map>

namespace occt {
namespace {

bool namesAFile(const std::string& text) {
    const std::size_t dot = text.rfind('.');
    return dot != std::string::npos && dot > 0 && dot + 1 < text.size() &&
           text.find_first_of("\n\r") == std::string::npos;
}

/// Products without an identification whose document is a file by its own name.
void addDocuments(const step::Part21& file, const step::Products& products,
                  std::map<std::size_t, std::string>& found) {
    std::unordered_map<std::uint64_t, std::size_t> byInstance;
    for (std::size_t i = 0; i < products.products.size(); ++i) {
        byInstance[products.products[i].instance] = i;
    }
    for (const std::uint32_t index : file.ofType("APPLIED_DOCUMENT_REFERENCE")) {
        const auto link = file.read(file.instances()[index].id, "APPLIED_DOCUMENT_REFERENCE");
        const auto document = link ? file.read(link->reference(0), "DOCUMENT_FILE") : std::nullopt;
        if (!document || !namesAFile(document->text(0))) continue;
        std::vector<std::uint64_t> subjects;
        step::collectReferences(link->at(2), subjects);
        for (const std::uint64_t subject : subjects) {
            const auto product = byInstance.find(subject);
            if (product != byInstance.end()) {
                found.try_emplace(product->second, document->text(0));
            }
        }
    }
}

}  // namespace

std::vector<StepReference> stepReferences(const step::Part21& file,
                                          const step::Products& products) {
    std::map<std::size_t, std::string> found;
    for (std::size_t i = 0; i < products.products.size(); ++i) {
        const std::string& name = products.products[i].fileName;
        if (!name.empty()) found[i] = name;
    }
    addDocuments(file, products, found);
    std::vector<StepReference> references;
    for (auto& [product, name] : found) references.push_back({product, std::move(name)});
    return references;
}

std::vector<std::string> filesOfStep(std::string_view text) {
    const bool mayRefer = text.find("APPLIED_DOCUMENT_REFERENCE") != std::string_view::npos ||
                          text.find("applied_document_reference") != std::string_view::npos;
    if (!mayRefer) return {};
    const step::Part21 file(text);
    // A text that the reader refuses refers to nothing.
    if (!file.hasMagic()) return {};
    const step::Products products = step::readProducts(file);
    std::vector<std::string> names;
    for (StepReference& reference : stepReferences(file, products)) {
        names.push_back(std::move(reference.file));
    }
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

}  // namespace occt
