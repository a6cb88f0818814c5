#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "backends/occt/step/attributes_subjects.h"

namespace occt::step {

/// Reads who made, approved and classified products, and when. Dates come without the time of
/// day, in which writers put the moment of their export. `file` must outlive it.
class LifeCycleReader {
public:
    explicit LifeCycleReader(const Part21& file);

    /// Adds what is known of each product and usage to its list.
    void addTo(const AttributeSubjects& subjects, Attributes& out) const;

private:
    /// A key and a text.
    using Fact = std::pair<std::string, std::string>;
    /// Something that is assigned to an entity: an approval, a person, a date.
    struct Link {
        std::uint64_t assigned = 0;
        std::string role;
    };

    void linkAssignments();
    void linkApprovals();
    void addFacts(std::uint64_t entity, const std::string& prefix, std::set<Fact>& facts) const;
    void addApproval(std::uint64_t approval, const Record& record, const std::string& prefix,
                     std::set<Fact>& facts) const;
    void addAssigned(const Link& link, const std::string& prefix, std::set<Fact>& facts) const;
    static void append(const std::set<Fact>& facts, MetadataValues& list);
    std::string personText(std::uint64_t id) const;
    std::string dateText(std::uint64_t id) const;

    const Part21& file_;
    std::unordered_map<std::uint64_t, std::vector<Link>> links_;  ///< by the entity
};

}  // namespace occt::step
