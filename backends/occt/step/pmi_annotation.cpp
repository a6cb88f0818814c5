#include "backends/occt/step/pmi_annotation.h"

#include <algorithm>
#include <utility>

#include "backends/occt/step/pmi_text.h"

namespace occt::step {
namespace {

// What one callout holds and is looked at: lines and texts of a drawing come in dozens.
constexpr std::size_t kMostContents = 64;

constexpr const char* kOccurrences[] = {
    "ANNOTATION_CURVE_OCCURRENCE",
    "ANNOTATION_FILL_AREA_OCCURRENCE",
    "ANNOTATION_OCCURRENCE",
    "ANNOTATION_PLACEHOLDER_OCCURRENCE",
    "ANNOTATION_POINT_OCCURRENCE",
    "ANNOTATION_SYMBOL_OCCURRENCE",
    "ANNOTATION_TEXT_OCCURRENCE",
    "DRAUGHTING_ANNOTATION_OCCURRENCE",
    "TESSELLATED_ANNOTATION_OCCURRENCE",
};

/// What an annotation's records say of its styles and of what it draws.
struct Drawn {
    const Value* styles = nullptr;
    std::uint64_t item = 0;
};

Drawn drawn(const std::vector<Record>& records) {
    Drawn out;
    for (const Record& record : records) {
        if (record.keyword == "STYLED_ITEM" && record.values.size() == 2) {
            out.styles = &record.at(0);
            out.item = record.reference(1);
        } else if (record.values.size() >= 3 && record.at(1).isList()) {
            out.styles = &record.at(1);
            out.item = record.reference(2);
        }
    }
    return out;
}

/// Text of a literal, sign of a symbol; empty for anything else.
std::string literal(const Part21& file, std::uint64_t item) {
    const Instance* const instance = file.find(item);
    if (instance == nullptr) return {};
    const std::string_view keyword = file.keyword(*instance);
    const bool simple = instance->type != Part21::kComplex;
    const bool isText = keyword.find("TEXT") != std::string_view::npos;
    if (simple && !isText && keyword != "DEFINED_SYMBOL") return {};
    std::string out;
    for (const Record& record : file.read(*instance)) {
        if (record.keyword.starts_with("TEXT_LITERAL") ||
            record.keyword == "DIMENSION_TEXT_ASSOCIATIVITY") {
            addWord(out, shortLine(record.text(record.at(1).isText() ? 1 : 0)));
        } else if (record.keyword == "DEFINED_SYMBOL") {
            const Instance* const symbol =
                file.find(record.reference(record.values.size() > 2 ? 1 : 0));
            if (symbol == nullptr) continue;
            for (const Record& named : file.read(*symbol)) {
                addWord(out, drawingSymbolSign(named.text(0)));
            }
        }
    }
    return out;
}

/// A text of the kind by which readers check notes: the marks of its fields and lines are gone.
std::string plainText(std::string_view text) {
    std::string words;
    for (std::size_t at = 0; at < text.size();) {
        const std::string_view two = text.substr(at, 2);
        const bool mark = two == "\\w" || two == "\\n" || two == "/n";
        words += mark ? ' ' : text[at];
        at += mark ? 2 : 1;
    }
    words = shortLine(words);
    // The first field says that a text follows.
    constexpr std::string_view first = "TXT ";
    return words.starts_with(first) ? words.substr(first.size()) : words;
}

void addOnce(std::vector<std::uint64_t>& list, std::uint64_t value) {
    if (list.size() < kMostContents) list.push_back(value);
}

}  // namespace

AnnotationReader::AnnotationReader(const Part21& file) : file_(file), colors_(file) {
    linkMeanings();
    linkContents();
    linkPlanes();
    if (!callouts_.empty() || !occurrences_.empty()) linkTexts();
}

void AnnotationReader::linkMeanings() {
    for (const char* type : {"DRAUGHTING_MODEL_ITEM_ASSOCIATION",
                             "DRAUGHTING_MODEL_ITEM_ASSOCIATION_WITH_PLACEHOLDER"}) {
        for (const std::uint32_t index : file_.ofType(type)) {
            const auto record = file_.read(file_.instances()[index].id, type);
            if (!record) continue;
            std::vector<std::uint64_t> annotations;
            collectReferences(record->at(4), annotations);
            for (const std::uint64_t annotation : annotations) {
                addOnce(drawnFor_[record->reference(2)], annotation);
                addOnce(meanings_[annotation], record->reference(2));
            }
        }
    }
}

void AnnotationReader::linkContents() {
    for (const std::uint32_t index : file_.ofType("DRAUGHTING_CALLOUT")) {
        const std::uint64_t id = file_.instances()[index].id;
        std::vector<std::uint64_t> contents;
        bool isPart = false;
        for (const Record& record : file_.read(file_.instances()[index])) {
            if (record.keyword == "STRUCTURED_DIMENSION_CALLOUT") isPart = true;
            if (record.keyword != "DRAUGHTING_CALLOUT" || record.values.empty()) continue;
            collectReferences(record.at(record.values.size() - 1), contents);
        }
        contained_.insert(contents.begin(), contents.end());
        contents.resize(std::min(contents.size(), kMostContents));
        contents_[id] = std::move(contents);
        annotations_.insert(id);
        if (!isPart) callouts_.push_back(id);
    }
    std::unordered_set<std::uint64_t> seen;
    for (const char* keyword : kOccurrences) {
        for (const std::uint32_t index : file_.ofType(keyword)) {
            const std::uint64_t id = file_.instances()[index].id;
            annotations_.insert(id);
            if (contained_.count(id) == 0 && seen.insert(id).second) occurrences_.push_back(id);
        }
    }
}

void AnnotationReader::linkPlanes() {
    for (const std::uint32_t index : file_.ofType("ANNOTATION_PLANE")) {
        const std::uint64_t id = file_.instances()[index].id;
        const auto record = file_.read(id, "ANNOTATION_PLANE");
        if (!record || record->values.empty()) continue;
        std::vector<std::uint64_t> held;
        collectReferences(record->at(record->values.size() - 1), held);
        planes_[id] = static_cast<std::size_t>(
            std::count_if(held.begin(), held.end(),
                          [this](std::uint64_t one) { return annotations_.count(one) != 0; }));
    }
}

/// Texts that a file gives beside the lines that draw them.
void AnnotationReader::linkTexts() {
    std::unordered_map<std::uint64_t, std::uint64_t> subjects;
    for (const std::uint32_t index : file_.ofType("PROPERTY_DEFINITION")) {
        const std::uint64_t id = file_.instances()[index].id;
        const auto record = file_.read(id, "PROPERTY_DEFINITION");
        if (!record || record->text(0) != "pmi validation property") continue;
        std::uint64_t subject = record->reference(2);
        const auto item = file_.read(subject, "CHARACTERIZED_ITEM_WITHIN_REPRESENTATION");
        if (item && item->values.size() >= 2) subject = item->reference(item->values.size() - 2);
        if (annotations_.count(subject) != 0) subjects[id] = subject;
    }
    if (subjects.empty()) return;
    for (const std::uint32_t index : file_.ofType("PROPERTY_DEFINITION_REPRESENTATION")) {
        const auto link =
            file_.read(file_.instances()[index].id, "PROPERTY_DEFINITION_REPRESENTATION");
        const auto subject = link ? subjects.find(link->reference(0)) : subjects.end();
        if (subject == subjects.end()) continue;
        const auto items = file_.read(link->reference(1), "REPRESENTATION");
        if (!items) continue;
        std::vector<std::uint64_t> ids;
        collectReferences(items->at(1), ids);
        ids.resize(std::min(ids.size(), kMostContents));
        for (const std::uint64_t id : ids) {
            const auto text = file_.read(id, "DESCRIPTIVE_REPRESENTATION_ITEM");
            if (text && text->text(0) == "equivalent unicode string") {
                texts_[subject->second] = plainText(text->text(1));
            }
        }
    }
}

const std::vector<std::uint64_t>& AnnotationReader::drawnFor(std::uint64_t meaning) const {
    static const std::vector<std::uint64_t> none;
    const auto found = drawnFor_.find(meaning);
    return found == drawnFor_.end() ? none : found->second;
}

const std::vector<std::uint64_t>& AnnotationReader::contentOf(std::uint64_t callout) const {
    static const std::vector<std::uint64_t> none;
    const auto found = contents_.find(callout);
    return found == contents_.end() ? none : found->second;
}

std::string AnnotationReader::ownName(std::uint64_t annotation) const {
    const Instance* const instance = file_.find(annotation);
    if (instance == nullptr) return {};
    for (const Record& record : file_.read(*instance)) {
        const bool named =
            instance->type != Part21::kComplex || record.keyword == "REPRESENTATION_ITEM";
        if (named && saysMore(record.text(0))) return shortName(record.text(0));
    }
    return {};
}

std::string AnnotationReader::nameOf(const std::vector<std::uint64_t>& annotations) const {
    for (const std::uint64_t annotation : annotations) {
        std::string name = ownName(annotation);
        if (!name.empty()) return name;
    }
    for (const std::uint64_t annotation : annotations) {
        for (const std::uint64_t content : contentOf(annotation)) {
            std::string name = ownName(content);
            if (!name.empty()) return name;
        }
    }
    return {};
}

/// Reads what is drawn: by the name that a file gives to a set of lines, or by its texts.
const AnnotationReader::Drawing& AnnotationReader::drawing(std::uint64_t item) const {
    const auto [place, isNew] = drawings_.try_emplace(item);
    const Instance* const instance = isNew ? file_.find(item) : nullptr;
    if (instance == nullptr) return place->second;
    Drawing out;
    const bool simple = instance->type != Part21::kComplex;
    const std::string_view keyword = file_.keyword(*instance);
    for (const Record& record : file_.read(*instance)) {
        if (simple && keyword.find("SET") != std::string_view::npos) {
            if (saysMore(record.text(0))) out.kind = shortName(record.text(0));
        } else if (record.keyword == "COMPOSITE_TEXT") {
            std::vector<std::uint64_t> parts;
            collectReferences(record.at(record.values.size() - 1), parts);
            parts.resize(std::min(parts.size(), kMostContents));
            for (const std::uint64_t part : parts) {
                if (out.text.size() < kLongestLine) addWord(out.text, literal(file_, part));
            }
        } else if (record.keyword == "DIMENSION_TEXT_ASSOCIATIVITY") {
            out.isDimensionText = true;
        }
    }
    addWord(out.text, literal(file_, item));
    out.text = shortLine(out.text);
    return drawings_[item] = std::move(out);
}

const AnnotationReader::Drawing& AnnotationReader::drawnBy(std::uint64_t annotation) const {
    static const Drawing none;
    const Instance* const instance = file_.find(annotation);
    return instance == nullptr ? none : drawing(drawn(file_.read(*instance)).item);
}

/// What stands in the file for an annotation or for a part of it.
std::string AnnotationReader::partText(std::uint64_t annotation) const {
    const auto given = texts_.find(annotation);
    return given != texts_.end() ? given->second : drawnBy(annotation).text;
}

std::string AnnotationReader::textOf(const std::vector<std::uint64_t>& annotations) const {
    std::string out;
    for (const std::uint64_t annotation : annotations) {
        if (out.size() >= kLongestLine) break;
        addWord(out, partText(annotation));
        if (texts_.count(annotation) != 0) continue;
        for (const std::uint64_t content : contentOf(annotation)) {
            if (out.size() < kLongestLine) addWord(out, partText(content));
        }
    }
    return shortLine(out);
}

std::optional<Color> AnnotationReader::colorOf(
    const std::vector<std::uint64_t>& annotations) const {
    std::vector<std::uint64_t> parts = annotations;
    for (const std::uint64_t annotation : annotations) {
        const auto& contents = contentOf(annotation);
        parts.insert(parts.end(), contents.begin(), contents.end());
    }
    // The lines of a drawing hold no colour, but thousands of points: only styles are followed.
    for (const std::uint64_t part : parts) {
        const Instance* const instance = file_.find(part);
        if (instance == nullptr) continue;
        const auto records = file_.read(*instance);
        const Drawn found = drawn(records);
        if (found.styles == nullptr) continue;
        std::vector<std::uint64_t> styles;
        collectReferences(*found.styles, styles);
        styles.resize(std::min(styles.size(), kMostContents));
        if (const auto color = colors_.colorOf(styles)) return color;
    }
    return std::nullopt;
}

void AnnotationReader::addOther(std::uint64_t id, const std::unordered_set<std::uint64_t>& taken,
                                const std::unordered_set<std::string>& names,
                                std::vector<Annotation>& out) const {
    Annotation annotation;
    annotation.id = id;
    std::vector<std::uint64_t> all = {id};
    const auto& contents = contentOf(id);
    all.insert(all.end(), contents.begin(), contents.end());
    for (const std::uint64_t part : all) {
        const auto found = meanings_.find(part);
        if (found == meanings_.end()) continue;
        for (const std::uint64_t meaning : found->second) {
            if (taken.count(meaning) != 0) return;
            if (annotation.subject == 0) annotation.subject = meaning;
        }
    }
    // A text that is tied to the value of a dimension is that dimension's.
    for (const std::uint64_t part : all) {
        if (drawnBy(part).isDimensionText) return;
        if (annotation.kind.empty()) annotation.kind = drawnBy(part).kind;
    }
    annotation.name = nameOf({id});
    if (!annotation.name.empty() && names.count(annotation.name) != 0) return;
    annotation.text = textOf({id});
    out.push_back(std::move(annotation));
}

std::vector<Annotation> AnnotationReader::others(
    const std::unordered_set<std::uint64_t>& meanings,
    const std::unordered_set<std::string>& names) const {
    std::vector<Annotation> out;
    for (const auto* list : {&callouts_, &occurrences_}) {
        for (const std::uint64_t id : *list) addOther(id, meanings, names, out);
    }
    return out;
}

void AnnotationReader::collectViews(std::uint64_t model, std::vector<SavedView>& out) const {
    const Instance* const instance = file_.find(model);
    if (instance == nullptr) return;
    std::string name;
    std::vector<std::uint64_t> items;
    for (const Record& record : file_.read(*instance)) {
        if (!record.at(1).isList()) continue;
        name = shortName(record.text(0));
        collectReferences(record.at(1), items);
    }
    std::size_t annotations = 0;
    std::vector<std::string> cameras;
    std::vector<std::uint64_t> ids;
    for (const std::uint64_t id : items) {
        if (annotations_.count(id) != 0) {
            ++annotations;
            continue;
        }
        const auto plane = planes_.find(id);
        if (plane != planes_.end()) annotations += plane->second;
        const Instance* const item = file_.find(id);
        if (item == nullptr || item->type == Part21::kComplex) continue;
        if (!file_.keyword(*item).starts_with("CAMERA_MODEL")) continue;
        cameras.push_back(ownName(id));
        ids.push_back(id);
    }
    for (std::size_t i = 0; i < cameras.size(); ++i) {
        const bool own = cameras.size() > 1 || !saysMore(name);
        out.push_back({ids[i], own ? cameras[i] : name, annotations});
    }
}

std::vector<SavedView> AnnotationReader::views() const {
    std::vector<SavedView> out;
    for (const std::uint32_t index : file_.ofType("DRAUGHTING_MODEL")) {
        collectViews(file_.instances()[index].id, out);
    }
    std::unordered_set<std::uint64_t> seen;
    for (const SavedView& view : out) seen.insert(view.id);
    for (const char* keyword : {"CAMERA_MODEL_D3", "CAMERA_MODEL_D3_MULTI_CLIPPING"}) {
        for (const std::uint32_t index : file_.ofType(keyword)) {
            const std::uint64_t id = file_.instances()[index].id;
            if (seen.insert(id).second) out.push_back({id, ownName(id), 0});
        }
    }
    return out;
}

}  // namespace occt::step
