#include "backends/occt/step/pmi.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>
#include <unordered_set>
#include <utility>

#include "backends/occt/step/dimension.h"
#include "backends/occt/step/pmi_annotation.h"
#include "backends/occt/step/pmi_notes.h"
#include "backends/occt/step/pmi_text.h"
#include "backends/occt/step/tolerance.h"
#include "platform/hps/component_type.h"

namespace occt::step {
namespace {

namespace Type = HPS::ComponentType;

bool has(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

/// Names by which a program calls every item of a kind.
bool isOfAKind(const std::string& name) {
    const std::string small = inSmallLetters(name);
    return small.starts_with("geometric tolerance") || small.starts_with("geometric_tolerance");
}

/// "4X": how often a dimension holds.
bool isCount(const std::string& text) {
    constexpr const char* digits = "0123456789";
    const std::size_t end = text.find_first_not_of(digits);
    return end != 0 && end != std::string::npos && end + 1 == text.size() &&
           (text[end] == 'X' || text[end] == 'x');
}

std::uint32_t drawnType(const Annotation& annotation) {
    const std::string words = inSmallLetters(annotation.kind + ' ' + annotation.name);
    if (has(words, "surface finish") || has(words, "roughness") || has(words, "surface texture")) {
        return Type::PmiSurfaceFinish;
    }
    if (has(words, "weld")) return Type::PmiWeld;
    if (has(words, "note") || has(words, "text") || has(words, "label")) return Type::PmiNote;
    return Type::PmiAnnotation;
}

class PmiReader {
public:
    PmiReader(const Part21& file, const Products& products)
        : file_(file),
          products_(products),
          finder_(file, products),
          measures_(file),
          dimensions_(file, measures_),
          tolerances_(file, measures_),
          annotations_(file) {}

    std::vector<Pmi> read() {
        for (const std::string_view keyword : file_.keywords()) {
            if (DimensionReader::isDimension(keyword)) {
                all(keyword, &PmiReader::dimension);
            } else if (ToleranceReader::isTolerance(keyword)) {
                all(keyword, &PmiReader::tolerance);
            } else if (ToleranceReader::isDatum(keyword)) {
                all(keyword, &PmiReader::datum);
            } else if (ToleranceReader::isDatumTarget(keyword)) {
                all(keyword, &PmiReader::datumTarget);
            } else if (keyword == "DATUM_FEATURE") {
                datumFeatures();
            }
        }
        notes();
        drawnOnes();
        views();
        return number();
    }

private:
    using Records = std::vector<Record>;

    void all(std::string_view keyword,
             void (PmiReader::*fill)(Pmi&, std::uint64_t, const Records&)) {
        for (const std::uint32_t index : file_.ofType(keyword)) {
            const Instance& instance = file_.instances()[index];
            if (!meanings_.insert(instance.id).second) continue;
            Pmi pmi;
            pmi.product = productOf(instance.id);
            pmi.color = annotations_.colorOf(annotations_.drawnFor(instance.id));
            (this->*fill)(pmi, instance.id, file_.read(instance));
            if (pmi.name.empty()) pmi.name = asWords(keyword);
            add(std::move(pmi));
        }
    }

    std::size_t productOf(std::uint64_t id) const {
        const auto product = id != 0 ? finder_.productOf(id) : std::nullopt;
        return product.value_or(products_.roots.empty() ? 0 : products_.roots[0]);
    }

    double unitMm(const Pmi& pmi) const { return products_.products[pmi.product].unitMm; }

    void add(Pmi pmi) {
        pmi.text = shortLine(pmi.text);
        out_.push_back(std::move(pmi));
    }

    void dimension(Pmi& pmi, std::uint64_t id, const Records& records) {
        DimensionText read = dimensions_.read(id, records, unitMm(pmi));
        pmi.type = Type::PmiDimension;
        pmi.values = std::move(read.values);
        pmi.text = std::move(read.text);
        const auto& drawn = annotations_.drawnFor(id);
        const std::string drawnText = annotations_.textOf(drawn);
        if (pmi.text.empty()) {
            pmi.text = drawnText;
        } else if (isCount(drawnText)) {
            pmi.text = drawnText + ' ' + pmi.text;
        }
        pmi.name = annotations_.nameOf(drawn);
        if (pmi.name.empty()) pmi.name = std::move(read.kind);
    }

    void tolerance(Pmi& pmi, std::uint64_t id, const Records& records) {
        ToleranceText read = tolerances_.tolerance(id, records, unitMm(pmi));
        pmi.type = Type::PmiTolerance;
        pmi.values = std::move(read.values);
        pmi.text = std::move(read.text);
        for (const Record& record : records) {
            const bool holds = record.keyword == "GEOMETRIC_TOLERANCE" || record.values.size() >= 4;
            if (holds && record.at(0).isText()) pmi.name = shortName(record.text(0));
        }
        if (saysMore(pmi.name)) names_.insert(pmi.name);
        if (!saysMore(pmi.name) || isOfAKind(pmi.name)) {
            pmi.name = annotations_.nameOf(annotations_.drawnFor(id));
        }
        if (pmi.name.empty() || isOfAKind(pmi.name)) pmi.name = std::move(read.kind);
    }

    void datum(Pmi& pmi, std::uint64_t, const Records& records) {
        ToleranceText read = tolerances_.datum(records);
        pmi.type = Type::PmiDatum;
        pmi.name = std::move(read.kind);
        addWord(pmi.name, read.text);
        pmi.text = std::move(read.text);
        // Drawn symbols of datums have their names from them.
        for (const Record& record : records) {
            if (record.values.size() >= 4) names_.insert(shortName(record.text(0)));
        }
    }

    void datumTarget(Pmi& pmi, std::uint64_t id, const Records& records) {
        ToleranceText read = tolerances_.datumTarget(id, records, unitMm(pmi));
        pmi.type = Type::PmiDatumTarget;
        pmi.values = std::move(read.values);
        pmi.name = std::move(read.kind);
        addWord(pmi.name, read.text.substr(0, read.text.find(' ')));
        pmi.text = std::move(read.text);
    }

    void datumFeatures() {
        for (const std::uint32_t index : file_.ofType("DATUM_FEATURE")) {
            const Instance& instance = file_.instances()[index];
            meanings_.insert(instance.id);
            for (const Record& record : file_.read(instance)) {
                const bool holds =
                    record.keyword == "DATUM_FEATURE" || record.keyword == "SHAPE_ASPECT";
                if (holds && record.values.size() >= 4) names_.insert(shortName(record.text(0)));
            }
        }
    }

    void notes() {
        for (NoteText& note : readNotes(file_, measures_)) {
            Pmi pmi;
            pmi.type = note.isSurfaceFinish ? Type::PmiSurfaceFinish : Type::PmiNote;
            pmi.product = productOf(note.subject);
            pmi.name = note.name.empty() ? (note.isSurfaceFinish ? "Surface finish" : "Note")
                                         : std::move(note.name);
            pmi.text = std::move(note.text);
            meanings_.insert(note.property);
            add(std::move(pmi));
        }
    }

    void drawnOnes() {
        for (Annotation& annotation : annotations_.others(meanings_, names_)) {
            Pmi pmi;
            pmi.type = drawnType(annotation);
            pmi.product = productOf(annotation.subject);
            pmi.color = annotations_.colorOf({annotation.id});
            pmi.name = !annotation.name.empty()   ? std::move(annotation.name)
                       : !annotation.kind.empty() ? asWords(annotation.kind)
                                                  : "Annotation";
            pmi.text = std::move(annotation.text);
            add(std::move(pmi));
        }
    }

    void views() {
        for (const SavedView& view : annotations_.views()) {
            Pmi pmi;
            pmi.type = Type::PmiView;
            pmi.product = productOf(0);
            pmi.name = "View";
            addWord(pmi.name, view.name);
            if (view.annotations == 1) pmi.text = "1 annotation";
            if (view.annotations > 1) pmi.text = std::to_string(view.annotations) + " annotations";
            add(std::move(pmi));
        }
    }

    std::vector<Pmi> number() {
        std::stable_sort(out_.begin(), out_.end(), [this](const Pmi& a, const Pmi& b) {
            const std::string& nameA = products_.products[a.product].name;
            const std::string& nameB = products_.products[b.product].name;
            return std::tie(a.type, a.name, a.text, a.values, nameA, a.color) <
                   std::tie(b.type, b.name, b.text, b.values, nameB, b.color);
        });
        std::set<std::string> taken;
        for (const Pmi& pmi : out_) taken.insert(pmi.name);
        std::map<std::string, std::size_t> count;
        for (Pmi& pmi : out_) {
            const std::string stem = pmi.name;
            std::size_t& number = count[stem];
            if (++number == 1) continue;
            while (!taken.insert(stem + " " + std::to_string(number)).second) ++number;
            pmi.name = stem + " " + std::to_string(number);
        }
        return std::move(out_);
    }

    const Part21& file_;
    const Products& products_;
    ProductFinder finder_;
    MeasureReader measures_;
    DimensionReader dimensions_;
    ToleranceReader tolerances_;
    AnnotationReader annotations_;
    /// Entities that an annotation may be drawn for without being an item of its own.
    std::unordered_set<std::uint64_t> meanings_;
    std::unordered_set<std::string> names_;
    std::vector<Pmi> out_;
};

}  // namespace

std::vector<Pmi> readPmi(const Part21& file, const Products& products) {
    if (products.products.empty()) return {};
    return PmiReader(file, products).read();
}

}  // namespace occt::step
