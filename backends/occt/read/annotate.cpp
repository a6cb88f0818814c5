#include "backends/occt/read/annotate.h"

#include <cstdio>

#include "backends/occt/read/item_names.h"
#include "backends/occt/step/attributes.h"
#include "backends/occt/step/extra_items.h"
#include "backends/occt/step/pmi.h"

namespace occt {
namespace {

using HPS::Exchange::ImportOptions;

void addAttributes(Description& description, const step::Part21& file,
                   const step::Products& products) {
    step::Attributes attributes = step::readAttributes(file, products);
    description.fileMetadata = std::move(attributes.file);
    for (std::size_t i = 0; i < products.products.size(); ++i) {
        DescribedDefinition& definition = description.definitions[i];
        definition.metadata = std::move(attributes.products[i]);
        const auto& usages = products.products[i].usages;
        for (std::size_t k = 0; k < usages.size(); ++k) {
            const auto found = attributes.usages.find(usages[k].instance);
            if (found != attributes.usages.end()) definition.usages[k].metadata = found->second;
        }
    }
}

void addFeatures(Description& description, const step::Part21& file,
                 const step::Products& products) {
    const auto features = step::readFeatures(file, products);
    for (std::size_t i = 0; i < features.size(); ++i) {
        auto& metadata = description.definitions[i].metadata;
        metadata.insert(metadata.end(), features[i].begin(), features[i].end());
    }
}

std::string colorText(float red, float green, float blue) {
    const auto byte = [](float channel) {
        return static_cast<unsigned>(channel * 255.0F + 0.5F) & 0xFFU;
    };
    char buffer[8];
    std::snprintf(buffer, sizeof buffer, "#%02X%02X%02X", byte(red), byte(green), byte(blue));
    return buffer;
}

void addPmi(Description& description, const step::Part21& file, const step::Products& products,
            const ImportOptions& options) {
    for (const step::Pmi& pmi : step::readPmi(file, products)) {
        DescribedPmi described{pmi.type, pmi.name, {}, pmi.text};
        const bool usesDefault =
            options.pmiDefaultColor && (options.pmiColorOverridesFile || !pmi.color);
        if (usesDefault) {
            const HPS::RGBColor& color = *options.pmiDefaultColor;
            described.metadata.push_back({"Color", colorText(color.red, color.green, color.blue)});
        } else if (pmi.color) {
            const auto& color = *pmi.color;
            described.metadata.push_back({"Color", colorText(color[0], color[1], color[2])});
        }
        for (const double value : pmi.values) described.metadata.push_back({"Value", value});
        description.definitions[pmi.product].pmi.push_back(std::move(described));
    }
}

void addConstruction(Description& description, const step::Part21& file,
                     const step::Products& products) {
    const step::ConstructionReader construction(file);
    for (std::size_t i = 0; i < products.products.size(); ++i) {
        DescribedDefinition& definition = description.definitions[i];
        if (definition.isAssembly) continue;
        for (step::ConstructionItem& item : construction.of(products.products[i])) {
            DescribedItem described;
            described.type = item.type;
            if (saysSomething(item.name)) described.name = std::move(item.name);
            definition.items.push_back(std::move(described));
        }
    }
}

}  // namespace

void annotate(Description& description, const step::Part21& file, const step::Products& products,
              const ImportOptions& options) {
    if (options.attributes) addAttributes(description, file, products);
    if (options.featureTrees) addFeatures(description, file, products);
    if (options.pmi) addPmi(description, file, products, options);
    if (options.constructionAndReferences) addConstruction(description, file, products);
}

}  // namespace occt
