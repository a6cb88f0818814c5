#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "backends/occt/step/attributes_subjects.h"

namespace occt::step {

/// A value and the name that its representation item has.
struct PropertyItem {
    std::string name;  ///< on one line; may be empty
    decltype(HPS::MetadataValue::value) value;
    bool isNumber = false;  ///< with its unit perhaps, which makes the value a text
    bool isPoint = false;   ///< a place in space, which only checks of readers give as a value
};

/// Reads the properties of products and usages with their values. `file` must outlive it; not
/// from two threads.
class PropertyReader {
public:
    explicit PropertyReader(const Part21& file);

    /// Adds all properties to the lists of their subjects.
    void addTo(AttributeSubjects& subjects);

private:
    /// What one representation holds, whoever refers to it.
    struct Content {
        std::string name;
        std::vector<PropertyItem> items;
        std::size_t bytes = 0;
        std::size_t uses = 0;
        bool isRead = false;
    };

    void linkNames();
    void addMaterial(const Record& record, std::uint64_t representation,
                     AttributeSubjects& subjects);
    const Content* contentOf(std::uint64_t representation);
    std::optional<PropertyItem> item(std::uint64_t id) const;
    const std::string& unitText(std::uint64_t unit) const;
    std::string nameOf(std::uint64_t property, const Record& record) const;
    MetadataValues valuesOf(std::uint64_t property, const Record& record,
                            const Content& content) const;

    const Part21& file_;
    std::unordered_map<std::uint64_t, std::string> names_;  ///< by property
    std::unordered_map<std::uint64_t, Content> contents_;
    /// Materials of bodies that a list has already.
    std::unordered_map<const MetadataValues*, std::set<std::pair<std::string, std::string>>>
        materials_;
    mutable std::unordered_map<std::uint64_t, std::string> units_;
};

}  // namespace occt::step
