#include "backends/occt/step/pmi.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>
#include <unordered_map>
#include <unordered_set>

#include "platform/hps/component_type.h"

namespace occt::step {
namespace {

namespace Type = HPS::ComponentType;

/// First letter a capital, underscores as blanks, all others small.
std::string asWords(std::string_view keyword) {
    std::string out;
    for (const char c : keyword) {
        if (c == '_')
            out += ' ';
        else if (c >= 'A' && c <= 'Z' && !out.empty())
            out += static_cast<char>(c - 'A' + 'a');
        else if (c >= 'a' && c <= 'z' && out.empty())
            out += static_cast<char>(c - 'a' + 'A');
        else
            out += c;
    }
    return out;
}

std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

constexpr std::pair<const char*, std::array<float, 3>> kColors[] = {
    {"red", {1, 0, 0}},     {"green", {0, 1, 0}}, {"blue", {0, 0, 1}},  {"yellow", {1, 1, 0}},
    {"magenta", {1, 0, 1}}, {"cyan", {0, 1, 1}},  {"black", {0, 0, 0}}, {"white", {1, 1, 1}},
};

class PmiReader {
public:
    PmiReader(const Part21& file, const Products& products)
        : file_(file), products_(products), finder_(file, products) {}

    std::vector<Pmi> read() {
        if (products_.products.empty()) return {};
        linkDimensions();
        linkAnnotations();
        for (const std::string_view keyword : file_.keywords()) {
            if (keyword.starts_with("DIMENSIONAL_LOCATION") ||
                keyword.starts_with("DIMENSIONAL_SIZE") || keyword == "ANGULAR_LOCATION" ||
                keyword == "ANGULAR_SIZE" || keyword == "DIRECTED_DIMENSIONAL_LOCATION") {
                all(keyword, Type::PmiDimension);
            } else if (isTolerance(keyword)) {
                all(keyword, Type::PmiTolerance);
            } else if (keyword == "DATUM") {
                all(keyword, Type::PmiDatum);
            }
        }
        return number();
    }

private:
    static bool isTolerance(std::string_view keyword) {
        return keyword.ends_with("_TOLERANCE") && keyword != "PLUS_MINUS_TOLERANCE" &&
               !keyword.ends_with("GEOMETRIC_TOLERANCE");
    }

    void linkDimensions() {
        for (const std::uint32_t index :
             file_.ofType("DIMENSIONAL_CHARACTERISTIC_REPRESENTATION")) {
            const auto record = file_.read(file_.instances()[index].id,
                                           "DIMENSIONAL_CHARACTERISTIC_REPRESENTATION");
            if (record) dimensionValues_[record->reference(0)] = record->reference(1);
        }
    }

    void linkAnnotations() {
        for (const char* type : {"DRAUGHTING_MODEL_ITEM_ASSOCIATION",
                                 "DRAUGHTING_MODEL_ITEM_ASSOCIATION_WITH_PLACEHOLDER"}) {
            for (const std::uint32_t index : file_.ofType(type)) {
                const auto record = file_.read(file_.instances()[index].id, type);
                if (!record) continue;
                collectReferences(record->at(4), annotations_[record->reference(2)]);
            }
        }
    }

    void all(std::string_view keyword, std::uint32_t type) {
        for (const std::uint32_t index : file_.ofType(keyword)) {
            const Instance& instance = file_.instances()[index];
            if (!seen_.insert(instance.id).second) continue;
            Pmi pmi;
            pmi.type = type;
            const auto records = file_.read(instance);
            pmi.name = nameOf(keyword, type, records);
            pmi.values = valuesOf(instance.id, records);
            const auto product = finder_.productOf(instance.id);
            pmi.product = product.value_or(products_.roots.empty() ? 0 : products_.roots[0]);
            pmi.color = colorOf(instance.id);
            out_.push_back(std::move(pmi));
        }
    }

    static std::string nameOf(std::string_view keyword, std::uint32_t type,
                              const std::vector<Record>& records) {
        if (type == Type::PmiTolerance) {
            return asWords(keyword.substr(0, keyword.size() - std::size("_TOLERANCE") + 1));
        }
        std::string own;
        for (const Record& record : records) {
            if (record.keyword != keyword) continue;
            if (type == Type::PmiDatum)
                own = record.text(record.values.size() - 1);
            else
                own = trimmed(record.text(record.at(0).isText() ? 0 : 1));
        }
        if (type == Type::PmiDatum) return own.empty() ? "Datum" : "Datum " + own;
        return own.empty() ? asWords(keyword) : asWords(own);
    }

    std::vector<double> valuesOf(std::uint64_t id, const std::vector<Record>& records) const {
        std::vector<double> values;
        const auto dimension = dimensionValues_.find(id);
        if (dimension != dimensionValues_.end()) {
            const auto shape = file_.read(dimension->second, "SHAPE_DIMENSION_REPRESENTATION");
            std::vector<std::uint64_t> items;
            if (shape) collectReferences(shape->at(1), items);
            for (const std::uint64_t item : items) appendMeasure(item, values);
        }
        for (const Record& record : records) {
            if (!record.keyword.ends_with("TOLERANCE")) continue;
            for (const Value& value : record.values) {
                if (value.isReference()) appendMeasure(value.reference, values);
            }
        }
        return values;
    }

    /// Numbers of a measure; nothing for an entity of another kind.
    void appendMeasure(std::uint64_t id, std::vector<double>& values) const {
        const Instance* const instance = file_.find(id);
        if (instance == nullptr) return;
        for (const Record& record : file_.read(*instance)) {
            if (record.keyword.find("MEASURE") == std::string::npos) continue;
            for (const Value& value : record.values) {
                if (value.kind != Value::Kind::Typed || value.items.size() != 1) continue;
                if (value.items[0].kind == Value::Kind::Number) {
                    values.push_back(value.items[0].number);
                }
            }
        }
    }

    std::optional<std::array<float, 3>> colorOf(std::uint64_t id) const {
        const auto annotated = annotations_.find(id);
        if (annotated == annotations_.end()) return std::nullopt;
        // The colour stands a few entities behind the annotation; what is further is another's.
        constexpr std::size_t most = 64;
        std::vector<std::uint64_t> open = annotated->second;
        std::unordered_set<std::uint64_t> seen;
        for (std::size_t next = 0; next < open.size() && next < most; ++next) {
            const Instance* const instance = file_.find(open[next]);
            if (instance == nullptr || !seen.insert(open[next]).second) continue;
            for (const Record& record : file_.read(*instance)) {
                if (const auto color = colorOf(record)) return color;
                for (const Value& value : record.values) collectReferences(value, open);
            }
        }
        return std::nullopt;
    }

    static std::optional<std::array<float, 3>> colorOf(const Record& record) {
        if (record.keyword == "COLOUR_RGB") {
            std::array<float, 3> color = {};
            for (std::size_t i = 0; i < 3; ++i) {
                color[i] = static_cast<float>(std::clamp(record.at(i + 1).number, 0.0, 1.0));
            }
            return color;
        }
        if (record.keyword != "DRAUGHTING_PRE_DEFINED_COLOUR") return std::nullopt;
        for (const auto& [name, color] : kColors) {
            if (record.text(0) == name) return color;
        }
        return std::nullopt;
    }

    std::vector<Pmi> number() {
        std::stable_sort(out_.begin(), out_.end(), [this](const Pmi& a, const Pmi& b) {
            const std::string& nameA = products_.products[a.product].name;
            const std::string& nameB = products_.products[b.product].name;
            return std::tie(a.type, a.name, a.values, nameA, a.color) <
                   std::tie(b.type, b.name, b.values, nameB, b.color);
        });
        std::set<std::string> taken;
        for (const Pmi& pmi : out_) taken.insert(pmi.name);
        std::map<std::string, int> count;
        for (Pmi& pmi : out_) {
            const std::string stem = pmi.name;
            int& number = count[stem];
            if (++number == 1) continue;
            while (!taken.insert(stem + " " + std::to_string(number)).second) ++number;
            pmi.name = stem + " " + std::to_string(number);
        }
        return std::move(out_);
    }

    const Part21& file_;
    const Products& products_;
    ProductFinder finder_;
    std::unordered_map<std::uint64_t, std::uint64_t> dimensionValues_;
    std::unordered_map<std::uint64_t, std::vector<std::uint64_t>> annotations_;
    std::unordered_set<std::uint64_t> seen_;
    std::vector<Pmi> out_;
};

}  // namespace

std::vector<Pmi> readPmi(const Part21& file, const Products& products) {
    return PmiReader(file, products).read();
}

}  // namespace occt::step
