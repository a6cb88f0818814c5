#include "apps/cli/row_findings.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <unordered_map>

namespace cli {
namespace {

enum RowState { Same = 0, OnlyInReference = 1, OnlyInCompare = 2, Different = 3 };

/// What changes with every saving of a file.
constexpr std::wstring_view kOfTheFileItself[] = {L"Header File Name", L"Header Time Stamp",
                                                  L"Header Modified"};

bool isOfTheFileItself(const std::wstring* name) {
    return name && std::find(std::begin(kOfTheFileItself), std::end(kOfTheFileItself), *name) !=
                       std::end(kOfTheFileItself);
}

RowSide rowAt(const std::vector<std::wstring>& names, const std::vector<std::wstring>& values,
              const std::vector<std::int32_t>& states, std::ptrdiff_t index) {
    static const std::wstring empty;
    if (index < 0) return {};
    const auto at = static_cast<std::size_t>(index);
    return {&names[at], at < values.size() ? &values[at] : &empty,
            at < states.size() ? states[at] : 0};
}

/// For each compare row the reference row beside it, or -1.
std::vector<std::ptrdiff_t> partnersOf(const std::vector<std::wstring>& reference,
                                       const std::vector<std::wstring>& compare) {
    struct Queue {
        std::vector<std::ptrdiff_t> rows;
        std::size_t taken = 0;
    };
    std::unordered_map<std::wstring_view, Queue> byName;
    for (std::size_t i = 0; i < reference.size(); ++i) {
        byName[reference[i]].rows.push_back(static_cast<std::ptrdiff_t>(i));
    }
    std::vector<std::ptrdiff_t> partners;
    partners.reserve(compare.size());
    for (const std::wstring& name : compare) {
        const auto found = byName.find(name);
        const bool free = found != byName.end() && found->second.taken < found->second.rows.size();
        partners.push_back(free ? found->second.rows[found->second.taken++] : -1);
    }
    return partners;
}

void countState(std::int32_t state, RowCounts& counts, bool& different) {
    switch (state) {
        case OnlyInReference: ++counts.onlyInReference; break;
        case OnlyInCompare: ++counts.onlyInCompare; break;
        case Different: different = true; break;
        default: break;
    }
}

RowCounts countLines(const bxtsg::OutcomeRows& rows, bool quantities) {
    RowCounts counts;
    counts.referenceRows = rows.referenceNames.size();
    counts.compareRows = rows.compareNames.size();
    for (const RowPair& pair : pairRows(rows.referenceNames, rows.compareNames)) {
        const RowSide reference = referenceRow(rows, pair.reference);
        const RowSide compare = compareRow(rows, pair.compare);
        if (isOfTheFileItself(reference.name) || isOfTheFileItself(compare.name)) continue;
        bool different = false;
        countState(reference.state, counts, different);
        countState(compare.state, counts, different);
        const bool both = reference.name && compare.name;
        if (quantities && both && *reference.value != *compare.value) different = true;
        if (different) ++counts.different;
    }
    return counts;
}

const bxtsg::OutcomePart* partAt(const std::vector<bxtsg::OutcomePart>& parts, std::int32_t index) {
    return index < 0 ? nullptr : &parts[static_cast<std::size_t>(index)];
}

void addPart(const bxtsg::OutcomePart* part, std::vector<std::wstring>& names,
             std::vector<std::wstring>& values, std::vector<std::int32_t>& states) {
    if (!part) return;
    for (const bxtsg::OutcomeAttribute& attribute : part->attributes) {
        names.push_back(attribute.key);
        values.push_back(attribute.value);
        states.push_back(attribute.state);
    }
}

}  // namespace

std::vector<RowPair> pairRows(const std::vector<std::wstring>& reference,
                              const std::vector<std::wstring>& compare) {
    const std::vector<std::ptrdiff_t> partners = partnersOf(reference, compare);
    std::vector<std::ptrdiff_t> partnerOfReference(reference.size(), -1);
    for (std::size_t i = 0; i < partners.size(); ++i) {
        if (partners[i] >= 0) {
            partnerOfReference[static_cast<std::size_t>(partners[i])] =
                static_cast<std::ptrdiff_t>(i);
        }
    }
    std::vector<RowPair> pairs;
    pairs.reserve(reference.size() + compare.size());
    std::size_t next = 0;
    // What only the compare side has comes before the next row that both have.
    const auto passOver = [&](std::size_t end) {
        for (; next < end; ++next) {
            if (partners[next] < 0) pairs.push_back({-1, static_cast<std::ptrdiff_t>(next)});
        }
    };
    for (std::size_t i = 0; i < reference.size(); ++i) {
        const std::ptrdiff_t partner = partnerOfReference[i];
        if (partner >= 0) passOver(static_cast<std::size_t>(partner));
        pairs.push_back({static_cast<std::ptrdiff_t>(i), partner});
    }
    passOver(compare.size());
    return pairs;
}

RowSide referenceRow(const bxtsg::OutcomeRows& rows, std::ptrdiff_t index) {
    return rowAt(rows.referenceNames, rows.referenceValues, rows.referenceStates, index);
}

RowSide compareRow(const bxtsg::OutcomeRows& rows, std::ptrdiff_t index) {
    return rowAt(rows.compareNames, rows.compareValues, rows.compareStates, index);
}

bxtsg::OutcomeRows rowsOf(const bxtsg::OutcomePart* reference, const bxtsg::OutcomePart* compare) {
    bxtsg::OutcomeRows rows;
    addPart(reference, rows.referenceNames, rows.referenceValues, rows.referenceStates);
    addPart(compare, rows.compareNames, rows.compareValues, rows.compareStates);
    return rows;
}

void RowCounts::add(const RowCounts& other) {
    referenceRows += other.referenceRows;
    compareRows += other.compareRows;
    onlyInReference += other.onlyInReference;
    onlyInCompare += other.onlyInCompare;
    different += other.different;
}

RowCounts countRows(const bxtsg::OutcomeRows& rows) {
    return countLines(rows, false);
}

RowCounts countBom(const bxtsg::OutcomeRows& rows) {
    return countLines(rows, true);
}

RowCounts countParts(const bxtsg::SectionsOutcome& lists) {
    RowCounts counts;
    for (const bxtsg::OutcomeRow& row : lists.partRows) {
        counts.add(countRows(rowsOf(partAt(lists.referenceParts, row.reference),
                                    partAt(lists.compareParts, row.compare))));
    }
    return counts;
}

const char* rowWord(std::int32_t state) {
    switch (state) {
        case OnlyInReference: return "only in reference";
        case OnlyInCompare: return "only in compare";
        case Different: return "different";
        default: return "same";
    }
}

bool isSwitchedOn(const bxtsg::SectionsOutcome& lists, std::int32_t section) {
    return std::find(lists.order.begin(), lists.order.end(), section) != lists.order.end();
}

}  // namespace cli
