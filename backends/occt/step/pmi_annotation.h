#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "backends/occt/step/part21.h"
#include "backends/occt/step/pmi_color.h"

namespace occt::step {

/// One annotation as it is drawn: a callout with what it holds, or a curve or text of its own.
struct Annotation {
    std::uint64_t id = 0;
    std::string name;  ///< as written, on one line; empty when it says nothing
    std::string kind;  ///< what the file calls the drawn thing ("flatness", "note"); often empty
    std::string text;  ///< one line; empty when the file draws lines only
    std::uint64_t subject = 0;  ///< what it is drawn for: an aspect of a shape; 0 for nothing
};

/// A view that somebody saved.
struct SavedView {
    std::uint64_t id = 0;
    std::string name;  ///< empty when it says nothing
    std::size_t annotations = 0;
};

/// Reads what a file draws: annotations, their texts, names and colours, and saved views. `file`
/// must outlive it. Looks through the file once; not from two threads.
class AnnotationReader {
public:
    explicit AnnotationReader(const Part21& file);

    /// Annotations that stand for the entity `meaning` (a dimension, a tolerance, a datum's
    /// feature), in the file's order.
    const std::vector<std::uint64_t>& drawnFor(std::uint64_t meaning) const;

    /// Name of the first of these that has one.
    std::string nameOf(const std::vector<std::uint64_t>& annotations) const;
    /// Text that stands in these, joined by blanks.
    std::string textOf(const std::vector<std::uint64_t>& annotations) const;
    /// Colour of the first of these that has one.
    std::optional<Color> colorOf(const std::vector<std::uint64_t>& annotations) const;

    /// Annotations that stand for themselves: those that are neither part of another one nor
    /// drawn for one of `meanings`, and whose names are not among `names`.
    std::vector<Annotation> others(const std::unordered_set<std::uint64_t>& meanings,
                                   const std::unordered_set<std::string>& names) const;

    std::vector<SavedView> views() const;

private:
    /// What an annotation draws. Many may draw the same.
    struct Drawing {
        std::string kind;
        std::string text;
        bool isDimensionText = false;
    };

    void linkMeanings();
    void linkContents();
    void linkTexts();
    void linkPlanes();
    const std::vector<std::uint64_t>& contentOf(std::uint64_t callout) const;
    std::string ownName(std::uint64_t annotation) const;
    const Drawing& drawing(std::uint64_t item) const;
    const Drawing& drawnBy(std::uint64_t annotation) const;
    std::string partText(std::uint64_t annotation) const;
    void collectViews(std::uint64_t model, std::vector<SavedView>& out) const;
    void addOther(std::uint64_t id, const std::unordered_set<std::uint64_t>& taken,
                  const std::unordered_set<std::string>& names, std::vector<Annotation>& out) const;

    const Part21& file_;
    std::unordered_map<std::uint64_t, std::vector<std::uint64_t>> drawnFor_;
    std::unordered_map<std::uint64_t, std::vector<std::uint64_t>> meanings_;  ///< by annotation
    std::vector<std::uint64_t> callouts_;
    std::vector<std::uint64_t> occurrences_;
    std::unordered_map<std::uint64_t, std::vector<std::uint64_t>> contents_;  ///< by callout
    std::unordered_set<std::uint64_t> contained_;
    std::unordered_map<std::uint64_t, std::string> texts_;
    std::unordered_map<std::uint64_t, std::size_t> planes_;  ///< annotations on each
    std::unordered_set<std::uint64_t> annotations_;
    mutable std::unordered_map<std::uint64_t, Drawing> drawings_;
    ColorReader colors_;
};

}  // namespace occt::step
