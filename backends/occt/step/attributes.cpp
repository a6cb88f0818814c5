#include "backends/occt/step/attributes.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <optional>
#include <set>

#include "backends/occt/step/units.h"

namespace occt::step {
namespace {

bool isBlank(const std::string& text) {
    return text.find_first_not_of(" \t$#") == std::string::npos;
}

/// Names that tell the kind of a property, not the property.
bool isGeneric(const std::string& name) {
    static const std::set<std::string> generic = {"user defined attribute",
                                                  "material property",
                                                  "material_property",
                                                  "general property",
                                                  "NONE",
                                                  "none",
                                                  "PropertyDefinition for SolidShape"};
    return isBlank(name) || generic.count(name) != 0;
}

/// Properties for the checking of readers, and types of other properties.
bool isAboutOthers(const std::string& name) {
    return name.find("validation property") != std::string::npos ||
           name.find("validation_property") != std::string::npos ||
           name == "attribute type designation";
}

void sortValues(MetadataValues& values) {
    const auto less = [](const HPS::MetadataValue& a, const HPS::MetadataValue& b) {
        if (a.name != b.name) return a.name < b.name;
        if (a.value.index() != b.value.index()) return a.value.index() < b.value.index();
        if (const auto* text = std::get_if<std::string>(&a.value)) {
            return *text < std::get<std::string>(b.value);
        }
        if (const auto* number = std::get_if<double>(&a.value)) {
            return *number < std::get<double>(b.value);
        }
        if (const auto* number = std::get_if<std::int32_t>(&a.value)) {
            return *number < std::get<std::int32_t>(b.value);
        }
        if (const auto* is = std::get_if<bool>(&a.value)) return !*is && std::get<bool>(b.value);
        return false;
    };
    std::stable_sort(values.begin(), values.end(), less);
}

/// A value and the name that its representation item has.
struct NamedValue {
    std::string name;
    decltype(HPS::MetadataValue::value) value;
};

const Value& unwrap(const Value& value) {
    const bool wrapped = value.kind == Value::Kind::Typed && value.items.size() == 1;
    return wrapped ? value.items[0] : value;
}

decltype(HPS::MetadataValue::value) plain(const Value& value) {
    if (value.kind == Value::Kind::Text) return value.text;
    if (value.kind == Value::Kind::Word) {
        if (value.text == "T") return true;
        if (value.text == "F") return false;
        return value.text;
    }
    const bool fits = value.number >= std::numeric_limits<std::int32_t>::min() &&
                      value.number <= std::numeric_limits<std::int32_t>::max();
    if (value.isInteger && fits) return static_cast<std::int32_t>(value.number);
    return value.number;
}

std::optional<NamedValue> itemValue(const Part21& file, std::uint64_t id) {
    const Instance* const instance = file.find(id);
    if (instance == nullptr) return std::nullopt;
    NamedValue out;
    const Value* found = nullptr;
    std::uint64_t unit = 0;
    const auto records = file.read(*instance);
    for (const Record& record : records) {
        if (record.keyword == "REPRESENTATION_ITEM") {
            out.name = record.text(0);
        } else if (record.keyword == "MEASURE_WITH_UNIT") {
            found = &record.at(0);
            unit = record.reference(1);
        } else if (record.keyword == "MEASURE_REPRESENTATION_ITEM" && record.values.size() >= 3) {
            out.name = record.text(0);
            found = &record.at(1);
            unit = record.reference(2);
        } else if (record.keyword.ends_with("_REPRESENTATION_ITEM") && record.values.size() >= 2) {
            out.name = record.text(0);
            found = &record.at(1);
        }
    }
    if (found == nullptr) return std::nullopt;
    const Value& value = unwrap(*found);
    if (value.kind != Value::Kind::Text && value.kind != Value::Kind::Word &&
        value.kind != Value::Kind::Number) {
        return std::nullopt;
    }
    out.value = plain(value);
    const std::string symbol = unit != 0 ? unitSymbol(file, unit) : std::string();
    if (!symbol.empty() && value.kind == Value::Kind::Number) {
        out.value = numberText(value.number) + " " + symbol;
    }
    return out;
}

class AttributeReader {
public:
    AttributeReader(const Part21& file, const Products& products)
        : file_(file), products_(products), finder_(file, products) {}

    Attributes read() {
        header();
        out_.products.resize(products_.products.size());
        for (std::size_t i = 0; i < products_.products.size(); ++i) ownFields(i);
        generalNames();
        for (const std::uint32_t index : file_.ofType("PROPERTY_DEFINITION_REPRESENTATION")) {
            const auto record =
                file_.read(file_.instances()[index].id, "PROPERTY_DEFINITION_REPRESENTATION");
            if (record) property(record->reference(0), record->reference(1));
        }
        for (MetadataValues& values : out_.products) sortValues(values);
        for (auto& [usage, values] : out_.usages) sortValues(values);
        return std::move(out_);
    }

private:
    void header() {
        for (const Record& record : file_.header()) {
            if (record.keyword == "FILE_DESCRIPTION") {
                field("Description", record.at(0));
            } else if (record.keyword == "FILE_NAME") {
                constexpr const char* names[] = {
                    "File Name",    "Time Stamp",         "Author",       "Organization",
                    "Preprocessor", "Originating System", "Authorization"};
                for (std::size_t i = 0; i < std::size(names); ++i) field(names[i], record.at(i));
            } else if (record.keyword == "FILE_SCHEMA") {
                field("Schema", record.at(0));
            }
        }
    }

    void field(const std::string& name, const Value& value) {
        std::string text = value.text;
        for (const Value& item : value.items) {
            if (isBlank(item.text)) continue;
            text += (text.empty() ? "" : ", ") + item.text;
        }
        if (!isBlank(text)) out_.file.push_back({"Header " + name, text});
    }

    void ownFields(std::size_t number) {
        const Product& product = products_.products[number];
        MetadataValues& values = out_.products[number];
        if (!isBlank(product.id) && product.id != product.name) {
            values.push_back({"Product ID", product.id});
        }
        if (!isBlank(product.description)) values.push_back({"Description", product.description});
        if (!isBlank(product.version)) values.push_back({"Version", product.version});
        if (!product.fileName.empty()) values.push_back({"Filename", product.fileName});
    }

    /// Names that a file gives to properties by an entity of their own.
    void generalNames() {
        for (const std::uint32_t index : file_.ofType("GENERAL_PROPERTY_ASSOCIATION")) {
            const auto link =
                file_.read(file_.instances()[index].id, "GENERAL_PROPERTY_ASSOCIATION");
            const auto general =
                link ? file_.read(link->reference(2), "GENERAL_PROPERTY") : std::nullopt;
            if (general && !isBlank(general->text(1))) {
                generalNames_[link->reference(3)] = general->text(1);
            }
        }
    }

    MetadataValues* listOf(std::uint64_t subject) {
        if (const auto product = finder_.find(subject)) return &out_.products[*product];
        if (file_.read(subject, "NEXT_ASSEMBLY_USAGE_OCCURRENCE")) return &out_.usages[subject];
        const auto shape = file_.read(subject, "PRODUCT_DEFINITION_SHAPE");
        const std::uint64_t usage = shape ? shape->reference(2) : 0;
        if (usage != 0 && file_.read(usage, "NEXT_ASSEMBLY_USAGE_OCCURRENCE")) {
            return &out_.usages[usage];
        }
        return nullptr;
    }

    void property(std::uint64_t definition, std::uint64_t representation) {
        const auto record = file_.read(definition, "PROPERTY_DEFINITION");
        if (!record || isAboutOthers(record->text(0))) return;
        MetadataValues* const list = listOf(record->reference(2));
        const Instance* const found = file_.find(representation);
        if (list == nullptr || found == nullptr) return;
        const auto records = file_.read(*found);
        if (records.empty()) return;
        std::vector<NamedValue> values;
        for (const Value& item : records.front().at(1).items) {
            if (auto value = itemValue(file_, item.reference)) values.push_back(std::move(*value));
        }
        const std::string name = nameOf(definition, *record);
        for (NamedValue& value : values) {
            const bool alone = values.size() == 1 && !name.empty();
            std::string key = alone || isGeneric(value.name) ? name : value.name;
            if (key.empty()) key = "Property";
            list->push_back({std::move(key), std::move(value.value)});
        }
    }

    std::string nameOf(std::uint64_t definition, const Record& record) const {
        const auto general = generalNames_.find(definition);
        if (general != generalNames_.end()) return general->second;
        if (!isGeneric(record.text(0))) return record.text(0);
        return isGeneric(record.text(1)) ? std::string() : record.text(1);
    }

    const Part21& file_;
    const Products& products_;
    ProductFinder finder_;
    Attributes out_;
    std::unordered_map<std::uint64_t, std::string> generalNames_;
};

/// Whether the entity type is a design feature, not a part of dimensions and tolerances.
bool isFeature(std::string_view keyword) {
    static const std::set<std::string_view> named = {"ROUND_HOLE",
                                                     "POCKET",
                                                     "SLOT",
                                                     "BOSS",
                                                     "STEP",
                                                     "RIB_TOP",
                                                     "THREAD",
                                                     "COUNTERBORE_HOLE",
                                                     "COUNTERSUNK_HOLE",
                                                     "COMPOUND_FEATURE",
                                                     "CHAMFER",
                                                     "FILLET",
                                                     "EDGE_ROUND"};
    if (named.count(keyword) != 0) return true;
    return keyword.ends_with("_FEATURE") && keyword.find("DATUM") == std::string_view::npos &&
           keyword.find("TARGET") == std::string_view::npos;
}

}  // namespace

std::string numberText(double number) {
    char buffer[32];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, number).ptr;
    return {buffer, end};
}

Attributes readAttributes(const Part21& file, const Products& products) {
    return AttributeReader(file, products).read();
}

std::vector<MetadataValues> readFeatures(const Part21& file, const Products& products) {
    std::vector<MetadataValues> out(products.products.size());
    const ProductFinder finder(file, products);
    for (const std::string_view keyword : file.keywords()) {
        if (!isFeature(keyword)) continue;
        std::string kind(keyword);
        for (char& c : kind) {
            if (c == '_') c = ' ';
            if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        }
        for (const std::uint32_t index : file.ofType(keyword)) {
            const Instance& instance = file.instances()[index];
            const auto product = finder.productOf(instance.id);
            if (!product) continue;
            std::string name;
            for (const Record& record : file.read(instance)) {
                if (name.empty() && !isBlank(record.text(0))) name = record.text(0);
            }
            out[*product].push_back({"Feature", name.empty() ? kind : kind + " " + name});
        }
    }
    for (MetadataValues& values : out) sortValues(values);
    return out;
}

}  // namespace occt::step
