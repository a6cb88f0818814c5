#include "backends/occt/step/pmi_notes.h"

#include <algorithm>
#include <unordered_map>

#include "backends/occt/step/pmi_text.h"

namespace occt::step {
namespace {

// Items of one note that are looked at; many properties may share one representation.
constexpr std::size_t kMostItems = 32;

/// What one representation says, whoever refers to it.
struct Content {
    bool isNote = false;
    bool isFinish = false;
    std::string text;
};

class NoteReader {
public:
    NoteReader(const Part21& file, const MeasureReader& measures)
        : file_(file), measures_(measures) {}

    std::vector<NoteText> read() {
        for (const std::uint32_t index : file_.ofType("PROPERTY_DEFINITION_REPRESENTATION")) {
            const auto link =
                file_.read(file_.instances()[index].id, "PROPERTY_DEFINITION_REPRESENTATION");
            if (!link) continue;
            const Content& content = contentOf(link->reference(1));
            if (!content.isNote && !content.isFinish) continue;
            NoteText note;
            note.isSurfaceFinish = content.isFinish;
            note.text = content.text;
            note.property = link->reference(0);
            if (const auto property = file_.read(note.property, "PROPERTY_DEFINITION")) {
                note.subject = property->reference(2);
                const std::string name = shortName(property->text(0));
                if (saysMore(name)) note.name = asWords(name);
            }
            out_.push_back(std::move(note));
        }
        return std::move(out_);
    }

private:
    const Content& contentOf(std::uint64_t representation) {
        const auto [place, isNew] = contents_.try_emplace(representation);
        const Instance* const instance = isNew ? file_.find(representation) : nullptr;
        if (instance == nullptr || instance->type == Part21::kComplex) return place->second;
        const std::string_view keyword = file_.keyword(*instance);
        const bool isFinish = keyword == "SURFACE_TEXTURE_REPRESENTATION";
        if (!isFinish && keyword != "REPRESENTATION") return place->second;
        const auto records = file_.read(*instance);
        if (records.empty()) return place->second;
        std::vector<std::uint64_t> items;
        collectReferences(records[0].at(1), items);
        items.resize(std::min(items.size(), kMostItems));
        Content& content = place->second;
        content.isFinish = isFinish;
        if (isFinish) content.text = sign::SurfaceFinish;
        for (const std::uint64_t item : items) addItem(item, content);
        return content;
    }

    void addItem(std::uint64_t id, Content& content) {
        const auto text = file_.read(id, "DESCRIPTIVE_REPRESENTATION_ITEM");
        if (text && text->text(0) == "semantic text") {
            content.isNote = true;
            addWord(content.text, shortLine(text->text(1)));
        } else if (text && content.isFinish) {
            if (saysMore(text->text(1))) addWord(content.text, shortLine(text->text(1)));
        } else if (content.isFinish) {
            const auto measure = measures_.read(id);
            if (!measure) return;
            const bool named = saysMore(measure->name);
            if (named) addWord(content.text, asWords(measure->name));
            // Heights of roughness have a unit of their own, which is always shown.
            addWord(content.text, measures_.text(*measure, 0.0));
        }
    }

    const Part21& file_;
    const MeasureReader& measures_;
    std::unordered_map<std::uint64_t, Content> contents_;
    std::vector<NoteText> out_;
};

}  // namespace

std::vector<NoteText> readNotes(const Part21& file, const MeasureReader& measures) {
    return NoteReader(file, measures).read();
}

}  // namespace occt::step
