#include "backends/occt/step/attributes.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <set>
#include <type_traits>

#include "backends/occt/step/attributes_life_cycle.h"
#include "backends/occt/step/attributes_style.h"
#include "backends/occt/step/pmi_text.h"
#include "backends/occt/step/properties.h"

namespace occt::step {
namespace {

/// Whether a program made the identifier up, anew with each export.
bool isMadeUp(const std::string& id) {
    // Eight, four, four, four and twelve hexadecimal digits.
    constexpr std::size_t dashes[] = {8, 13, 18, 23};
    const std::size_t begin = id.starts_with('{') ? 1 : 0;
    if (id.size() < begin + 36) return !saysMore(id);
    for (std::size_t i = 0; i < 36; ++i) {
        const char c = id[begin + i];
        const bool isDash = std::find(std::begin(dashes), std::end(dashes), i) != std::end(dashes);
        const bool isHex =
            (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
        if (isDash ? c != '-' : !isHex) return false;
    }
    return true;
}

class AttributeReader {
public:
    AttributeReader(const Part21& file, const Products& products)
        : file_(file), products_(products) {}

    Attributes read() {
        header();
        out_.products.resize(products_.products.size());
        AttributeSubjects subjects(file_, products_, out_);
        for (std::size_t i = 0; i < products_.products.size(); ++i) {
            ownFields(products_.products[i], subjects.chains()[i].version, out_.products[i]);
        }
        LifeCycleReader(file_).addTo(subjects, out_);
        PropertyReader(file_).addTo(subjects);
        addStyles(file_, products_, out_);
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
        std::string text = oneLine(value.text);
        for (const Value& item : value.items) {
            if (!saysMore(item.text)) continue;
            text += (text.empty() ? "" : ", ") + oneLine(item.text);
        }
        if (saysMore(text)) out_.file.push_back({"Header " + name, text});
    }

    void ownFields(const Product& product, std::uint64_t version, MetadataValues& values) const {
        const std::string id = shortName(product.id);
        if (!isMadeUp(id) && product.id != product.name) values.push_back({"Product ID", id});
        if (saysMore(product.description)) {
            values.push_back({"Description", oneLine(product.description)});
        }
        if (saysMore(product.version)) values.push_back({"Version", shortName(product.version)});
        if (!product.fileName.empty()) {
            values.push_back({"Filename", oneLine(product.fileName)});
        }
        const Instance* const instance = version != 0 ? file_.find(version) : nullptr;
        if (instance == nullptr) return;
        for (const Record& record : file_.read(*instance)) {
            if (record.values.size() > 2 && saysMore(record.text(1))) {
                values.push_back({"Version Description", shortName(record.text(1))});
            }
            const std::string& source = record.at(record.values.size() - 1).text;
            if (source == "MADE") values.push_back({"Source", "made"});
            if (source == "BOUGHT") values.push_back({"Source", "bought"});
        }
    }

    const Part21& file_;
    const Products& products_;
    Attributes out_;
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

void sortValues(MetadataValues& values) {
    const auto less = [](const HPS::MetadataValue& a, const HPS::MetadataValue& b) {
        if (a.name != b.name) return a.name < b.name;
        if (a.value.index() != b.value.index()) return a.value.index() < b.value.index();
        return std::visit(
            [&b](const auto& held) {
                using Held = std::decay_t<decltype(held)>;
                const Held& other = std::get<Held>(b.value);
                if constexpr (std::is_same_v<Held, HPS::Time>)
                    return held.secondsSinceEpoch < other.secondsSinceEpoch;
                else
                    return held < other;
            },
            a.value);
    };
    std::stable_sort(values.begin(), values.end(), less);
}

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
                if (name.empty() && saysMore(record.text(0))) name = shortName(record.text(0));
            }
            out[*product].push_back({"Feature", name.empty() ? kind : kind + " " + name});
        }
    }
    for (MetadataValues& values : out) sortValues(values);
    return out;
}

}  // namespace occt::step
