#include "backends/occt/step/properties.h"

#include <cmath>
#include <limits>
#include <set>

#include "backends/occt/step/pmi_text.h"
#include "backends/occt/step/units.h"
#include "backends/occt/step/validation.h"

namespace occt::step {
namespace {

using Held = decltype(HPS::MetadataValue::value);

// A representation that more properties than this share is given to all of them only while it is
// small: a file must not unfold into the product of its properties and their values.
constexpr std::size_t kFewUses = 64;
constexpr std::size_t kFewBytes = 4096;

/// Names that tell the kind of a property, not the property.
bool isGeneric(const std::string& name) {
    static const std::set<std::string> generic = {"user defined attribute",
                                                  "material property",
                                                  "material_property",
                                                  "general property",
                                                  "NONE",
                                                  "none",
                                                  "PropertyDefinition for SolidShape"};
    return !saysMore(name) || generic.count(name) != 0;
}

bool isMaterial(const std::string& name) {
    return name == "material property" || name == "material_property";
}

/// Properties that say what other properties are.
bool isAboutOthers(const std::string& name) {
    return name == "attribute type designation";
}

const Value& unwrap(const Value& value) {
    const bool wrapped = value.kind == Value::Kind::Typed && value.items.size() == 1;
    return wrapped ? value.items[0] : value;
}

template <typename Integer>
bool fits(double number) {
    return number >= static_cast<double>(std::numeric_limits<Integer>::min()) &&
           number <= static_cast<double>(std::numeric_limits<Integer>::max()) &&
           number == std::floor(number);
}

/// A value in the kind that comes nearest; nothing for one that is none.
std::optional<Held> plain(const Value& given) {
    const Value& value = unwrap(given);
    if (value.kind == Value::Kind::Text) return oneLine(value.text);
    if (value.kind == Value::Kind::Word) {
        if (value.text == "T") return true;
        if (value.text == "F") return false;
        return value.text == "U" ? "unknown" : oneLine(value.text);
    }
    if (value.kind != Value::Kind::Number || !std::isfinite(value.number)) return std::nullopt;
    const bool isCount = given.kind == Value::Kind::Typed && given.text == "COUNT_MEASURE";
    if (isCount && fits<std::uint32_t>(value.number)) {
        return static_cast<std::uint32_t>(value.number);
    }
    if (!value.isInteger) return value.number;
    if (fits<std::int32_t>(value.number)) return static_cast<std::int32_t>(value.number);
    if (fits<std::uint32_t>(value.number)) return static_cast<std::uint32_t>(value.number);
    return value.number;
}

std::string superscript(double exponent) {
    if (exponent == 1.0) return {};
    if (exponent == 2.0) return "\u00B2";
    if (exponent == 3.0) return "\u00B3";
    return '^' + numberText(exponent);
}

/// Text of a unit that is made of powers of others; empty when it is none.
std::string derivedUnit(const Part21& file, std::uint64_t unit) {
    const auto record = file.read(unit, "DERIVED_UNIT");
    if (!record) return {};
    // Nothing real is made of more.
    constexpr std::size_t most = 8;
    std::set<std::string> above;
    std::set<std::string> below;
    for (const Value& item : record->at(0).items) {
        if (above.size() + below.size() == most) break;
        const auto element = file.read(item.reference, "DERIVED_UNIT_ELEMENT");
        if (!element) return {};
        const std::string symbol = unitSymbol(file, element->reference(0));
        const double exponent = element->at(1).number;
        if (symbol.empty() || exponent == 0.0) return {};
        (exponent > 0.0 ? above : below).insert(symbol + superscript(std::abs(exponent)));
    }
    std::string text;
    for (const std::string& symbol : above) text += (text.empty() ? "" : "*") + symbol;
    if (above.empty()) text = "1";
    for (const std::string& symbol : below) text += '/' + symbol;
    return text;
}

/// A number as a text; empty for any other value.
std::string numberOf(const Held& value) {
    if (const auto* real = std::get_if<double>(&value)) return numberText(*real);
    if (const auto* whole = std::get_if<std::int32_t>(&value)) return std::to_string(*whole);
    if (const auto* count = std::get_if<std::uint32_t>(&value)) return std::to_string(*count);
    return {};
}

std::size_t bytesOf(const PropertyItem& item) {
    const auto* const text = std::get_if<std::string>(&item.value);
    return 16 + item.name.size() + (text != nullptr ? text->size() : 0);
}

/// Name and value of an item of a property for materials, whose writers put the material's name
/// where the item's name belongs.
HPS::MetadataValue materialValue(const PropertyItem& item) {
    const auto* const text = std::get_if<std::string>(&item.value);
    if (text == nullptr || item.isNumber) {
        const std::string key = titleOf(item.name);
        return {key.empty() ? "Material Property" : key, item.value};
    }
    const std::string small = inSmallLetters(item.name);
    const bool named = saysMore(item.name) && small.find("material") == std::string::npos &&
                       small != "name" && small != "description" && item.name != *text;
    if (!named) return {"Material", *text};
    return {"Material", saysMore(*text) ? item.name + ", " + *text : item.name};
}

}  // namespace

PropertyReader::PropertyReader(const Part21& file) : file_(file) {
    linkNames();
}

/// Names that a file gives to properties by an entity of their own.
void PropertyReader::linkNames() {
    for (const std::uint32_t index : file_.ofType("GENERAL_PROPERTY_ASSOCIATION")) {
        const auto link = file_.read(file_.instances()[index].id, "GENERAL_PROPERTY_ASSOCIATION");
        const auto general =
            link ? file_.read(link->reference(2), "GENERAL_PROPERTY") : std::nullopt;
        if (general && saysMore(general->text(1))) {
            names_[link->reference(3)] = shortName(general->text(1));
        }
    }
}

void PropertyReader::addTo(AttributeSubjects& subjects) {
    struct Link {
        std::uint64_t property;
        std::uint64_t representation;
    };
    std::vector<Link> links;
    for (const std::uint32_t index : file_.ofType("PROPERTY_DEFINITION_REPRESENTATION")) {
        const auto record =
            file_.read(file_.instances()[index].id, "PROPERTY_DEFINITION_REPRESENTATION");
        if (!record) continue;
        links.push_back({record->reference(0), record->reference(1)});
        ++contents_[record->reference(1)].uses;
    }
    for (const Link& link : links) {
        const auto record = file_.read(link.property, "PROPERTY_DEFINITION");
        if (!record || isAboutOthers(record->text(0))) continue;
        auto lists = subjects.listsOf(record->reference(2));
        if (lists.empty() && isMaterial(record->text(0))) {
            addMaterial(*record, link.representation, subjects);
            continue;
        }
        const Content* const content = lists.empty() ? nullptr : contentOf(link.representation);
        if (content == nullptr) continue;
        const MetadataValues values = valuesOf(link.property, *record, *content);
        for (MetadataValues* const list : lists) {
            list->insert(list->end(), values.begin(), values.end());
        }
    }
}

/// Some writers give the material to each body. It is the part's, and named once.
void PropertyReader::addMaterial(const Record& record, std::uint64_t representation,
                                 AttributeSubjects& subjects) {
    MetadataValues* const list = subjects.listOfAspect(record.reference(2));
    const Content* const content = list != nullptr ? contentOf(representation) : nullptr;
    if (content == nullptr) return;
    for (const PropertyItem& item : content->items) {
        if (item.isPoint) continue;
        HPS::MetadataValue value = materialValue(item);
        const auto* const text = std::get_if<std::string>(&value.value);
        const std::string shown = text != nullptr ? *text : numberOf(value.value);
        if (materials_[list].insert({value.name, shown}).second) {
            list->push_back(std::move(value));
        }
    }
}

const PropertyReader::Content* PropertyReader::contentOf(std::uint64_t representation) {
    Content& content = contents_[representation];
    if (!content.isRead) {
        content.isRead = true;
        const Instance* const instance = file_.find(representation);
        const auto records = instance != nullptr ? file_.read(*instance) : std::vector<Record>();
        if (records.empty()) return nullptr;
        content.name = shortName(records.front().text(0));
        for (const Value& reference : records.front().at(1).items) {
            auto read = item(reference.reference);
            if (!read) continue;
            content.bytes += bytesOf(*read);
            content.items.push_back(std::move(*read));
        }
    }
    const bool few = content.uses <= kFewUses || content.bytes <= kFewBytes;
    return few && !content.items.empty() ? &content : nullptr;
}

const std::string& PropertyReader::unitText(std::uint64_t unit) const {
    const auto [place, isNew] = units_.try_emplace(unit);
    if (isNew && unit != 0) {
        std::string text = derivedUnit(file_, unit);
        if (text.empty()) text = unitSymbol(file_, unit);
        place->second = shortName(text);
    }
    return place->second;
}

std::optional<PropertyItem> PropertyReader::item(std::uint64_t id) const {
    const Instance* const instance = id != 0 ? file_.find(id) : nullptr;
    if (instance == nullptr) return std::nullopt;
    PropertyItem out;
    const Value* found = nullptr;
    std::uint64_t unit = 0;
    const auto records = file_.read(*instance);
    for (const Record& record : records) {
        const std::string& keyword = record.keyword;
        if (keyword == "REPRESENTATION_ITEM") {
            out.name = record.text(0);
        } else if (keyword == "MEASURE_WITH_UNIT") {
            found = &record.at(0);
            unit = record.reference(1);
        } else if (keyword == "MEASURE_REPRESENTATION_ITEM" && record.values.size() >= 3) {
            out.name = record.text(0);
            found = &record.at(1);
            unit = record.reference(2);
        } else if (keyword == "CARTESIAN_POINT" && records.size() == 1) {
            const std::string text = pointText(record.at(1));
            if (!text.empty()) return PropertyItem{shortName(record.text(0)), text, false, true};
        } else if (keyword.ends_with("_REPRESENTATION_ITEM") && record.values.size() >= 2) {
            out.name = record.text(0);
            found = &record.at(1);
        }
    }
    auto value = found != nullptr ? plain(*found) : std::nullopt;
    if (!value) return std::nullopt;
    const std::string& symbol = unitText(unit);
    const Value& inner = unwrap(*found);
    if (!symbol.empty() && inner.kind == Value::Kind::Number) {
        value = numberText(inner.number) + " " + symbol;
    }
    out.name = shortName(out.name);
    out.isNumber = inner.kind == Value::Kind::Number;
    out.value = std::move(*value);
    return out;
}

std::string PropertyReader::nameOf(std::uint64_t property, const Record& record) const {
    const auto general = names_.find(property);
    if (general != names_.end()) return general->second;
    const std::string name = shortName(record.text(0));
    if (!isGeneric(name)) return name;
    const std::string description = shortName(record.text(1));
    return isGeneric(description) ? std::string() : description;
}

MetadataValues PropertyReader::valuesOf(std::uint64_t property, const Record& record,
                                        const Content& content) const {
    MetadataValues values;
    if (isValidation(record.text(0))) {
        for (const PropertyItem& item : content.items) {
            const std::string key = validationKey(item.name, content.name);
            if (!key.empty()) values.push_back({key, item.value});
        }
        return values;
    }
    std::vector<const PropertyItem*> items;
    for (const PropertyItem& item : content.items) {
        if (!item.isPoint) items.push_back(&item);
    }
    if (isMaterial(record.text(0)) && names_.count(property) == 0) {
        for (const PropertyItem* const item : items) values.push_back(materialValue(*item));
        return values;
    }
    const std::string name = nameOf(property, record);
    for (const PropertyItem* const item : items) {
        const bool alone = items.size() == 1 && !name.empty();
        std::string key = alone || isGeneric(item->name) ? name : item->name;
        if (key.empty()) key = "Property";
        values.push_back({std::move(key), item->value});
    }
    return values;
}

}  // namespace occt::step
