#include "backends/occt/step/attributes_style.h"

#include "backends/occt/step/pmi_text.h"

namespace occt::step {
namespace {

// Colours or layers of one product that are named; behind them stands an ellipsis.
constexpr std::size_t kMostNamed = 16;
// Styles of one body that are looked at; files have one.
constexpr std::size_t kMostStyles = 16;

class StyleReader {
public:
    StyleReader(const Part21& file, const Products& products, Attributes& out)
        : file_(file), colors_(file), out_(out) {
        for (std::size_t i = 0; i < products.products.size(); ++i) {
            for (const std::uint64_t id : products.products[i].representations) own(id, i);
            for (const std::uint64_t id : products.products[i].relatedRepresentations) own(id, i);
        }
        found_.resize(products.products.size());
    }

    void read() {
        for (const std::uint32_t index : file_.ofType("STYLED_ITEM")) {
            const Instance& instance = file_.instances()[index];
            if (instance.type != Part21::kComplex) styledItem(instance);
        }
        for (const std::uint32_t index : file_.ofType("PRESENTATION_LAYER_ASSIGNMENT")) {
            const auto record =
                file_.read(file_.instances()[index].id, "PRESENTATION_LAYER_ASSIGNMENT");
            if (record && saysMore(record->text(0))) layer(*record);
        }
        for (std::size_t i = 0; i < found_.size(); ++i) {
            add("Color", found_[i].colors, out_.products[i]);
            add("Layer", found_[i].layers, out_.products[i]);
        }
    }

private:
    struct Found {
        std::set<std::string> colors;
        std::set<std::string> layers;
    };

    /// A representation and what it holds belong to the product.
    void own(std::uint64_t representation, std::size_t product) {
        if (!owners_.emplace(representation, product).second) return;
        const Instance* const instance = file_.find(representation);
        if (instance == nullptr) return;
        for (const Record& record : file_.read(*instance)) {
            if (!record.at(1).isList()) continue;
            for (const Value& item : record.at(1).items) {
                if (item.isReference()) owners_.emplace(item.reference, product);
            }
        }
    }

    void styledItem(const Instance& instance) {
        const auto records = file_.read(instance);
        if (records.empty()) return;
        const std::uint64_t item = records[0].reference(2);
        const auto owner = owners_.find(item);
        if (owner == owners_.end()) return;
        const std::size_t product = owner->second;
        owners_.emplace(instance.id, product);
        std::vector<std::uint64_t> styles;
        collectReferences(records[0].at(1), styles);
        if (styles.size() > kMostStyles) styles.resize(kMostStyles);
        if (const auto color = colors_.colorOf(styles)) {
            found_[product].colors.insert(colorText(*color));
        }
    }

    void layer(const Record& record) {
        std::vector<std::uint64_t> items;
        collectReferences(record.at(2), items);
        std::set<std::size_t> products;
        for (const std::uint64_t item : items) {
            const auto owner = owners_.find(item);
            if (owner != owners_.end()) products.insert(owner->second);
        }
        if (products.empty()) return;
        const std::string name = shortName(record.text(0));
        for (const std::size_t product : products) found_[product].layers.insert(name);
    }

    static void add(const char* key, const std::set<std::string>& texts, MetadataValues& list) {
        if (texts.empty()) return;
        std::string all;
        std::size_t count = 0;
        for (const std::string& text : texts) {
            if (!all.empty()) all += ", ";
            if (count++ == kMostNamed) {
                all += sign::Range;
                break;
            }
            all += text;
        }
        list.push_back({key, std::move(all)});
    }

    const Part21& file_;
    ColorReader colors_;
    Attributes& out_;
    std::unordered_map<std::uint64_t, std::size_t> owners_;
    std::vector<Found> found_;
};

}  // namespace

std::string colorText(const Color& color) {
    constexpr const char* digits = "0123456789ABCDEF";
    std::string out = "#";
    for (const float channel : color) {
        const auto byte = static_cast<unsigned>(channel * 255.0F + 0.5F) & 0xFFU;
        out += digits[byte >> 4U];
        out += digits[byte & 0xFU];
    }
    return out;
}

void addStyles(const Part21& file, const Products& products, Attributes& out) {
    const bool any = !file.ofType("STYLED_ITEM").empty() ||
                     !file.ofType("PRESENTATION_LAYER_ASSIGNMENT").empty();
    if (any) StyleReader(file, products, out).read();
}

}  // namespace occt::step
