#include "backends/occt/step/attributes_life_cycle.h"

#include "backends/occt/step/pmi_text.h"
#include "backends/occt/step/validation.h"

namespace occt::step {
namespace {

// What is assigned to one entity and is looked at; many entities may share it.
constexpr std::size_t kMostLinks = 64;

constexpr const char* kAssignments[] = {
    "APPLIED_APPROVAL_ASSIGNMENT",
    "APPLIED_DATE_AND_TIME_ASSIGNMENT",
    "APPLIED_DATE_ASSIGNMENT",
    "APPLIED_ORGANIZATION_ASSIGNMENT",
    "APPLIED_PERSON_AND_ORGANIZATION_ASSIGNMENT",
    "APPLIED_SECURITY_CLASSIFICATION_ASSIGNMENT",
    "CC_DESIGN_APPROVAL",
    "CC_DESIGN_DATE_AND_TIME_ASSIGNMENT",
    "CC_DESIGN_PERSON_AND_ORGANIZATION_ASSIGNMENT",
    "CC_DESIGN_SECURITY_CLASSIFICATION",
};

/// The only record of an instance; an empty one for any other.
Record recordOf(const Part21& file, std::uint64_t id) {
    const Instance* const instance = id != 0 ? file.find(id) : nullptr;
    if (instance == nullptr || instance->type == Part21::kComplex) return {};
    auto records = file.read(*instance);
    return records.empty() ? Record{} : std::move(records.front());
}

/// A text that somebody filled in; empty for what stands for nothing.
std::string filled(const std::string& text) {
    const std::string name = shortName(text);
    const std::string small = inSmallLetters(name);
    if (!saysMore(name) || small == "unspecified" || small == "none") return {};
    return name;
}

std::string padded(double number) {
    const std::string text = numberText(number);
    return text.size() == 1 ? '0' + text : text;
}

void add(std::set<std::pair<std::string, std::string>>& facts, const std::string& key,
         const std::string& text) {
    if (!key.empty() && !text.empty()) facts.emplace(key, text);
}

}  // namespace

LifeCycleReader::LifeCycleReader(const Part21& file) : file_(file) {
    linkAssignments();
    linkApprovals();
}

void LifeCycleReader::linkAssignments() {
    for (const char* keyword : kAssignments) {
        for (const std::uint32_t index : file_.ofType(keyword)) {
            const auto record = file_.read(file_.instances()[index].id, keyword);
            if (!record || record->values.size() < 2) continue;
            Link link;
            link.assigned = record->reference(0);
            if (record->values.size() > 2) {
                link.role = titleOf(recordOf(file_, record->reference(1)).text(0));
            }
            std::vector<std::uint64_t> items;
            collectReferences(record->at(record->values.size() - 1), items);
            for (const std::uint64_t item : items) {
                auto& list = links_[item];
                if (list.size() < kMostLinks) list.push_back(link);
            }
        }
    }
}

void LifeCycleReader::linkApprovals() {
    if (links_.empty()) return;
    for (const std::uint32_t index : file_.ofType("APPROVAL_PERSON_ORGANIZATION")) {
        const auto record = file_.read(file_.instances()[index].id, "APPROVAL_PERSON_ORGANIZATION");
        if (!record) continue;
        std::string role = titleOf(recordOf(file_, record->reference(2)).text(0));
        auto& list = links_[record->reference(1)];
        if (list.size() < kMostLinks) {
            list.push_back({record->reference(0), role.empty() ? "Approver" : std::move(role)});
        }
    }
    for (const std::uint32_t index : file_.ofType("APPROVAL_DATE_TIME")) {
        const auto record = file_.read(file_.instances()[index].id, "APPROVAL_DATE_TIME");
        if (!record) continue;
        auto& list = links_[record->reference(1)];
        if (list.size() < kMostLinks) list.push_back({record->reference(0), "Approval Date"});
    }
}

void LifeCycleReader::addTo(const AttributeSubjects& subjects, Attributes& out) const {
    if (links_.empty()) return;
    for (std::size_t i = 0; i < subjects.chains().size(); ++i) {
        const AttributeSubjects::Chain& chain = subjects.chains()[i];
        std::set<Fact> facts;
        addFacts(chain.definition, "", facts);
        addFacts(chain.version, "", facts);
        addFacts(chain.product, "", facts);
        append(facts, out.products[i]);
    }
    for (const std::uint32_t index : file_.ofType("NEXT_ASSEMBLY_USAGE_OCCURRENCE")) {
        const std::uint64_t usage = file_.instances()[index].id;
        if (links_.count(usage) == 0) continue;
        std::set<Fact> facts;
        addFacts(usage, "", facts);
        if (!facts.empty()) append(facts, out.usages[usage]);
    }
}

void LifeCycleReader::append(const std::set<Fact>& facts, MetadataValues& list) {
    for (const auto& [key, text] : facts) list.push_back({key, text});
}

void LifeCycleReader::addFacts(std::uint64_t entity, const std::string& prefix,
                               std::set<Fact>& facts) const {
    const auto found = entity != 0 ? links_.find(entity) : links_.end();
    if (found == links_.end()) return;
    for (const Link& link : found->second) {
        const Record record = recordOf(file_, link.assigned);
        if (record.keyword == "APPROVAL") {
            addApproval(link.assigned, record, prefix, facts);
        } else if (record.keyword == "SECURITY_CLASSIFICATION" && prefix.empty()) {
            const Record level = recordOf(file_, record.reference(2));
            add(facts, "Security Classification", filled(level.text(0)));
            add(facts, "Security Name", filled(record.text(0)));
            add(facts, "Security Purpose", filled(record.text(1)));
            addFacts(link.assigned, "Security ", facts);
        } else {
            addAssigned(link, prefix, facts);
        }
    }
}

void LifeCycleReader::addApproval(std::uint64_t approval, const Record& record,
                                  const std::string& prefix, std::set<Fact>& facts) const {
    const Record status = recordOf(file_, record.reference(0));
    add(facts, prefix + "Approval Status", filled(status.text(0)));
    add(facts, prefix + "Approval Level", filled(record.text(1)));
    const auto found = links_.find(approval);
    if (found == links_.end()) return;
    for (const Link& link : found->second) addAssigned(link, prefix, facts);
}

void LifeCycleReader::addAssigned(const Link& link, const std::string& prefix,
                                  std::set<Fact>& facts) const {
    // The role of somebody who classified says so itself.
    const bool says = link.role.starts_with("Classification") || prefix.empty();
    const std::string key = (says ? "" : prefix) + link.role;
    if (link.role.empty()) return;
    const std::string date = dateText(link.assigned);
    add(facts, key, date.empty() ? personText(link.assigned) : date);
}

std::string LifeCycleReader::personText(std::uint64_t id) const {
    const Record record = recordOf(file_, id);
    if (record.keyword == "ORGANIZATION") {
        const std::string name = filled(record.text(1));
        return name.empty() ? filled(record.text(0)) : name;
    }
    if (record.keyword == "PERSON") {
        std::string name = filled(record.text(2));
        addWord(name, filled(record.text(1)));
        return name.empty() ? filled(record.text(0)) : name;
    }
    if (record.keyword != "PERSON_AND_ORGANIZATION") return {};
    std::string text;
    for (const std::size_t part : {std::size_t{0}, std::size_t{1}}) {
        const std::uint64_t other = record.reference(part);
        const Record inner = recordOf(file_, other);
        if (inner.keyword != "PERSON" && inner.keyword != "ORGANIZATION") continue;
        const std::string name = personText(other);
        if (!name.empty()) text += (text.empty() ? "" : ", ") + name;
    }
    return text;
}

std::string LifeCycleReader::dateText(std::uint64_t id) const {
    Record record = recordOf(file_, id);
    if (record.keyword == "DATE_AND_TIME") record = recordOf(file_, record.reference(0));
    if (record.keyword != "CALENDAR_DATE") return {};
    for (std::size_t i = 0; i < 3; ++i) {
        if (record.at(i).kind != Value::Kind::Number || !record.at(i).isInteger) return {};
    }
    // A writer that is much used counts years as its programming language does.
    double year = record.at(0).number;
    if (year >= 100.0 && year < 1000.0) year += 1900.0;
    return numberText(year) + "-" + padded(record.at(2).number) + "-" + padded(record.at(1).number);
}

}  // namespace occt::step
