// A whole STEP file as text: the index over it and all that is read from it before geometry.

#include <algorithm>
#include <charconv>
#include <cmath>
#include <set>

#include "backends/occt/step/attributes.h"
#include "backends/occt/step/checks.h"
#include "backends/occt/step/extra_items.h"
#include "backends/occt/step/pmi.h"
#include "backends/occt/step/units.h"
#include "tests/fuzz/bytes.h"
#include "tests/fuzz/fuzz.h"
#include "tests/fuzz/step_writer.h"

namespace {

namespace step = occt::step;
using step::Part21;
using step::Products;
using step::Record;

constexpr std::string_view kStart = "ISO-10303-21;DATA;\n";

bool isFinite(const step::Matrix& matrix) {
    return std::all_of(matrix.begin(), matrix.end(), [](double n) { return std::isfinite(n); });
}

std::string written(const std::vector<Record>& records, bool complex) {
    std::string out = "#1=";
    if (complex) out += '(';
    for (const Record& record : records) {
        out += record.keyword + fuzz::writeParameters(record.values);
    }
    return out + (complex ? ");" : ";");
}

void recordsComeBack(const std::vector<Record>& records, bool complex) {
    const std::string text = written(records, complex);
    const Part21 file(text);
    fuzz::require(file.instances().size() == 1 && file.brokenStatements() == 0,
                  "a written instance is one");
    const std::vector<Record> again = file.read(file.instances()[0]);
    fuzz::require(again.size() == records.size(), "an instance keeps its records");
    for (std::size_t i = 0; i < records.size(); ++i) {
        fuzz::require(again[i].keyword == records[i].keyword &&
                          fuzz::sameValues(again[i].values, records[i].values),
                      "a record comes back as it was");
    }
}

void index(const Part21& file, std::string_view text) {
    for (const step::Instance& instance : file.instances()) {
        fuzz::require(instance.body <= text.size(), "an instance stands in the text");
        const step::Instance* const found = file.find(instance.id);
        fuzz::require(found != nullptr && found->id == instance.id, "an instance can be found");
        const auto records = file.read(instance);
        const bool complex = instance.type == Part21::kComplex;
        fuzz::require(complex || records.size() <= 1, "a simple instance has one record");
        if (!records.empty()) recordsComeBack(records, complex);
        static_cast<void>(step::unitSymbol(file, instance.id));
        const double unitMm = step::lengthUnitMm(file, instance.id);
        fuzz::require(std::isfinite(unitMm) && unitMm >= 0.0, "a unit is a length");
    }
    for (const std::string_view keyword : file.keywords()) {
        const auto& all = file.ofType(keyword);
        fuzz::require(std::is_sorted(all.begin(), all.end()), "a type's instances are in order");
        fuzz::require(all.empty() || all.back() < file.instances().size(), "and are some");
    }
    const auto lines = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
    for (const auto& defect : {file.firstBroken(), file.firstDangling(), file.absurdNumber()}) {
        fuzz::require(!defect || file.line(defect->offset) <= lines + 1, "a defect has its line");
    }
}

void structure(const Products& products) {
    const std::size_t count = products.products.size();
    std::size_t usages = 0;
    for (const step::Product& product : products.products) {
        fuzz::require(std::isfinite(product.unitMm) && product.unitMm > 0.0, "a unit has a length");
        usages += product.usages.size();
        for (const step::ProductUsage& usage : product.usages) {
            fuzz::require(usage.product < count, "a usage is one of a product");
            fuzz::require(isFinite(usage.placement), "a placement is made of numbers");
        }
    }
    fuzz::require(usages + products.brokenUsages == products.usageCount, "usages are counted");
    for (const std::size_t root : products.roots) {
        fuzz::require(root < count && !products.products[root].isUsed, "a root is used nowhere");
    }
    const auto cycle = products.cycle();
    for (std::size_t i = 0; i + 1 < cycle.size(); ++i) {
        const auto& below = products.products[cycle[i]].usages;
        const auto isNext = [next = cycle[i + 1]](const auto& u) { return u.product == next; };
        fuzz::require(std::any_of(below.begin(), below.end(), isNext), "a cycle is one of usages");
    }
    fuzz::require(cycle.empty() || cycle.front() == cycle.back(), "a cycle ends where it began");
    if (cycle.empty()) {
        fuzz::require(products.occurrenceCount() >= products.roots.size(), "roots occur");
    }
}

/// Whether a text may go to a terminal as it is: no control characters.
bool isPlain(const std::string& text) {
    return std::none_of(text.begin(), text.end(), [](char c) {
        return static_cast<unsigned char>(c) < 0x20 || static_cast<unsigned char>(c) == 0x7F;
    });
}

void values(const step::MetadataValues& all) {
    for (const HPS::MetadataValue& value : all) {
        fuzz::require(!value.name.empty() && isPlain(value.name), "a key is a line");
        if (const auto* text = std::get_if<std::string>(&value.value)) {
            fuzz::require(isPlain(*text), "a value is a line");
        } else if (const auto* number = std::get_if<double>(&value.value)) {
            fuzz::require(std::isfinite(*number), "a value is a number");
        }
    }
}

void words(const Part21& file, const Products& products) {
    const auto attributes = step::readAttributes(file, products);
    fuzz::require(attributes.products.size() == products.products.size(),
                  "there are attributes per product");
    values(attributes.file);
    for (const auto& product : attributes.products) values(product);
    for (const auto& usage : attributes.usages) values(usage.second);
    fuzz::require(step::readFeatures(file, products).size() == products.products.size(),
                  "there are features per product");
    std::set<std::string> names;
    for (const step::Pmi& pmi : step::readPmi(file, products)) {
        fuzz::require(pmi.product < products.products.size(), "a dimension is a product's");
        fuzz::require(names.insert(pmi.name).second, "its name is its own");
        fuzz::require(!pmi.name.empty() && isPlain(pmi.name) && isPlain(pmi.text),
                      "its name and its text are lines");
        for (const double value : pmi.values) {
            fuzz::require(std::isfinite(value), "its values are numbers");
        }
        if (!pmi.color) continue;
        for (const float channel : *pmi.color) {
            fuzz::require(channel >= 0.0F && channel <= 1.0F, "a colour is one");
        }
    }
}

void meshes(const Part21& file, const Products& products) {
    std::size_t damaged = 0;
    const step::ConstructionReader construction(file);
    for (const step::Product& product : products.products) {
        for (const step::MeshBody& body : step::readMeshBodies(file, product, damaged)) {
            for (const step::MeshBody::Face& face : body.faces) {
                for (const auto& triangle : face.triangles) {
                    for (const std::uint32_t point : triangle) {
                        fuzz::require(point < face.pointsMm.size(), "a triangle has its points");
                    }
                }
                for (const auto& point : face.pointsMm) {
                    fuzz::require(std::isfinite(point[0] + point[1] + point[2]), "a point is one");
                }
            }
        }
        for (const step::ConstructionItem& item : construction.of(product)) {
            fuzz::require(item.type != 0, "construction geometry has a type");
        }
    }
}

/// All that an import reads before it hands the text on.
void read(const Part21& file) {
    if (step::refuseText(file, "file")) return;
    const Products products = step::readProducts(file);
    structure(products);
    static_cast<void>(step::textGaps(file, products));
    if (step::refuseStructure(products, "file")) return;
    words(file, products);
    meshes(file, products);
}

/// Copies whose entities have numbers of their own.
std::string copiesOf(std::string_view text, std::size_t copies) {
    constexpr std::uint64_t step = 1'000'003;
    std::string out;
    for (std::size_t copy = 0; copy < copies; ++copy) {
        for (std::size_t at = 0; at < text.size(); ++at) {
            out += text[at];
            if (text[at] != '#') continue;
            std::uint64_t number = 0;
            const char* const begin = text.data() + at + 1;
            const char* const end = text.data() + text.size();
            const auto parsed = std::from_chars(begin, end, number);
            if (parsed.ec != std::errc()) continue;
            out += std::to_string(number + copy * step);
            at += static_cast<std::size_t>(parsed.ptr - begin);
        }
    }
    return out;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Bytes bytes(data, size);
    const std::string_view given = bytes.rest();
    std::string text(given.starts_with("ISO-10303-21") ? "" : kStart);
    text += given;
    const Part21 file(text);
    index(file, text);
    read(file);
    fuzz::requireLinear(
        text, [&text](std::size_t copies) { return copiesOf(text, copies); },
        [](const std::string& grown) { read(Part21(grown)); });
    return 0;
}
