// Comparisons against literal versions of their rules, on random data with few names, so that
// texts collide, differ in case and are missing.

#include <gtest/gtest.h>

#include <algorithm>
#include <cwctype>
#include <functional>
#include <random>

#include "diff/attrib_data_loader.h"
#include "diff/bom_data_loader.h"
#include "diff/part_attributes.h"
#include "diff/pmi_data_loader.h"
#include "extract/attributes.h"
#include "tests/support/memory_model.h"
#include "tests/support/scoped_pmi.h"
#include "tests/unit/diff/part_records.h"

namespace {

using extract::AttributeEntry;
using extract::BOMRow;
using extract::ItemDiffState;
using extract::PartAttributes;

using Parts = std::vector<PartAttributes>;

constexpr const char* kNames[] = {"a",  "A",        "b",        "B",  "_",  "",         "aa",
                                  "aA", "\xC3\x84", "\xC3\xA4", "zz", "ZZ", "\xD0\x91", " a"};
constexpr const char* kValues[] = {"1", "2", "x", "X", ""};

// The names above know no other pairs of cases.
std::wstring plainLower(std::wstring text) {
    for (wchar_t& c : text) {
        if (c >= L'A' && c <= L'Z') c += 32;
        if (c == 0xC4) c = 0xE4;
        if (c == 0x411) c = 0x431;
    }
    return text;
}
bool plainEqual(const std::wstring& a, const std::wstring& b) {
    return plainLower(a) == plainLower(b);
}

class Random {
public:
    explicit Random(std::uint32_t seed) : random_(seed) {}
    std::size_t below(std::size_t limit) { return random_() % limit; }
    bool chance(std::size_t percent) { return below(100) < percent; }
    std::string name() { return kNames[below(std::size(kNames))]; }
    std::string value() { return kValues[below(std::size(kValues))]; }

    Parts parts() {
        Parts list;
        for (std::size_t count = below(12); count > 0; --count) {
            std::vector<std::pair<std::string, std::string>> attributes;
            for (std::size_t keys = below(6); keys > 0; --keys) {
                attributes.emplace_back(name(), value());
            }
            PartAttributes part = record(name(), attributes, chance(80));
            part.isDifferent = chance(50);
            part.state = static_cast<ItemDiffState>(below(4));
            for (AttributeEntry& entry : part.attributes) {
                entry.state = static_cast<ItemDiffState>(below(4));
            }
            list.push_back(part);
        }
        return list;
    }

private:
    std::mt19937 random_;
};

void plainReset(Parts& parts) {
    for (PartAttributes& part : parts) {
        part.isDifferent = false;
        part.state = ItemDiffState::Unchanged;
        for (AttributeEntry& entry : part.attributes) entry.state = ItemDiffState::Unchanged;
    }
}

void plainMark(PartAttributes& part, ItemDiffState state) {
    part.isDifferent = true;
    part.state = state;
    for (AttributeEntry& entry : part.attributes) entry.state = state;
}

AttributeEntry* plainFind(PartAttributes& part, const std::wstring& key) {
    for (AttributeEntry& entry : part.attributes) {
        if (plainEqual(entry.key, key)) return &entry;
    }
    return nullptr;
}

void plainComparePair(PartAttributes& r, PartAttributes& c) {
    if (r.hasSubcomponents && !c.hasSubcomponents) {
        plainMark(r, ItemDiffState::OnlyInReference);
        return;
    }
    if (c.hasSubcomponents && !r.hasSubcomponents) {
        plainMark(c, ItemDiffState::OnlyInCompare);
        return;
    }
    bool changed = false;
    for (AttributeEntry& a : c.attributes) {
        AttributeEntry* const b = plainFind(r, a.key);
        if (!b) {
            a.state = ItemDiffState::OnlyInCompare;
            changed = true;
        } else if (b->value != a.value) {
            a.state = b->state = ItemDiffState::Different;
            changed = true;
        }
    }
    for (AttributeEntry& b : r.attributes) {
        if (plainFind(c, b.key)) continue;
        b.state = ItemDiffState::OnlyInReference;
        changed = true;
    }
    if (changed) r.isDifferent = c.isDifferent = true;
}

void plainCompare(Parts& reference, Parts& compare) {
    plainReset(reference);
    plainReset(compare);
    std::vector<bool> used(reference.size(), false);
    for (PartAttributes& c : compare) {
        std::size_t i = 0;
        while (i < reference.size() && (used[i] || !plainEqual(reference[i].name, c.name))) ++i;
        if (i == reference.size()) {
            plainMark(c, ItemDiffState::OnlyInCompare);
            continue;
        }
        used[i] = true;
        plainComparePair(reference[i], c);
    }
    for (std::size_t i = 0; i < reference.size(); ++i) {
        if (!used[i]) plainMark(reference[i], ItemDiffState::OnlyInReference);
    }
}

TEST(RandomData, PartComparisonAgreesWithThePlainRules) {
    for (std::uint32_t seed = 0; seed < 5000; ++seed) {
        Random random(seed);
        Parts reference = random.parts();
        Parts compare = random.chance(30) ? reference : random.parts();
        Parts plainReference = reference;
        Parts plainCompared = compare;
        diff::ComparePartAttributes(reference, compare);
        plainCompare(plainReference, plainCompared);
        ASSERT_EQ(shownParts(reference), shownParts(plainReference)) << seed;
        ASSERT_EQ(shownParts(compare), shownParts(plainCompared)) << seed;
    }
}

TEST(RandomData, KeysOfAPartAreSortedOutAsThePlainRulesSay) {
    for (std::uint32_t seed = 0; seed < 3000; ++seed) {
        Random random(seed);
        auto shape = support::part("part");
        std::vector<AttributeEntry> expected;
        for (std::size_t count = random.below(20); count > 0; --count) {
            // Only the outer blank of one name is ever cleaned away.
            const std::string key = random.name();
            const std::string value = random.value();
            shape = shape.with(key, value);
            const std::wstring cleaned = os::toWide(key == " a" ? "a" : key);
            const bool known = std::any_of(
                expected.begin(), expected.end(),
                [&](const AttributeEntry& entry) { return plainEqual(entry.key, cleaned); });
            if (!known) expected.push_back({cleaned, os::toWide(value)});
        }
        Parts found;
        extract::ExtractComponentAttributes(
            support::makeModel({support::occurrence("top", {shape})}), found);
        ASSERT_EQ(found.size(), 1U);
        ASSERT_EQ(found[0].attributes.size(), expected.size()) << seed;
        for (std::size_t i = 0; i < expected.size(); ++i) {
            EXPECT_EQ(found[0].attributes[i].key, expected[i].key) << seed;
            EXPECT_EQ(found[0].attributes[i].value, expected[i].value) << seed;
        }
    }
}

using Rows = std::vector<std::pair<std::wstring, std::wstring>>;

// The states of the first list's rows by a search that halves the second one.
std::vector<ItemDiffState> plainStates(const Rows& own, const Rows& other, ItemDiffState missing) {
    std::vector<ItemDiffState> states;
    for (const auto& [name, value] : own) {
        const std::wstring sought = plainLower(name);
        ItemDiffState state = missing;
        int low = 0;
        int high = static_cast<int>(other.size()) - 1;
        while (low <= high) {
            const int middle = (low + high) / 2;
            const auto& [otherName, otherValue] = other[static_cast<std::size_t>(middle)];
            if (plainLower(otherName) == sought) {
                state = otherValue == value ? ItemDiffState::Unchanged : ItemDiffState::Different;
                break;
            }
            if (sought < plainLower(otherName)) {
                high = middle - 1;
            } else {
                low = middle + 1;
            }
        }
        states.push_back(state);
    }
    return states;
}

Rows randomRows(Random& random) {
    Rows rows(random.below(10));
    for (auto& [name, value] : rows) {
        name = os::toWide(random.name());
        value = os::toWide(random.value());
    }
    return rows;
}

// As lists show them: by name, those of one name as they came, nothing empty.
Rows plainShown(Rows rows) {
    std::stable_sort(rows.begin(), rows.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    for (auto& [name, value] : rows) {
        if (name.empty()) name = L" - ";
        if (value.empty()) value = L" - ";
    }
    return rows;
}

TEST(RandomData, FileAttributesAgreeWithThePlainRules) {
    const auto model = [](const Rows& rows) {
        auto top = support::occurrence("top");
        for (const auto& [name, value] : rows) {
            top = top.with(os::toUtf8(name), os::toUtf8(value));
        }
        return support::makeModel({top});
    };
    for (std::uint32_t seed = 0; seed < 3000; ++seed) {
        Random random(seed);
        const Rows reference = randomRows(random);
        const Rows compare = random.chance(30) ? reference : randomRows(random);
        diff::AttribDataLoader loader;
        loader.LoadFileAttributes(model(reference), model(compare));
        const Rows left = plainShown(reference), right = plainShown(compare);
        Rows found;
        for (std::size_t i = 0; i < loader.compareNames.size(); ++i) {
            found.emplace_back(loader.compareNames[i], loader.compareValues[i]);
        }
        ASSERT_EQ(found, right) << seed;
        ASSERT_EQ(loader.referenceStates, plainStates(left, right, ItemDiffState::OnlyInReference))
            << seed;
        ASSERT_EQ(loader.compareStates, plainStates(right, left, ItemDiffState::OnlyInCompare))
            << seed;
    }
}

TEST(RandomData, PmiAgreesWithThePlainRules) {
    const support::ScopedPmi texts;
    const auto model = [](const Rows& rows) {
        auto top = support::occurrence("top");
        for (const auto& [name, value] : rows) {
            top.children.push_back(support::pmi(os::toUtf8(name), os::toUtf8(value)));
        }
        return support::makeModel({top});
    };
    for (std::uint32_t seed = 0; seed < 3000; ++seed) {
        Random random(seed);
        const Rows reference = randomRows(random);
        const Rows compare = random.chance(30) ? reference : randomRows(random);
        if (reference.empty() || compare.empty()) continue;  // these have a row that says so
        diff::PMIDataLoader loader;
        loader.LoadAndComparePMI(model(reference), model(compare));
        const Rows left = plainShown(reference), right = plainShown(compare);
        Rows found;
        for (const extract::PMIRow& row : loader.referenceRows) {
            found.emplace_back(row.name, row.value);
        }
        ASSERT_EQ(found, left) << seed;
        ASSERT_EQ(loader.referenceStates, plainStates(left, right, ItemDiffState::OnlyInReference))
            << seed;
        ASSERT_EQ(loader.compareStates, plainStates(right, left, ItemDiffState::OnlyInCompare))
            << seed;
    }
}

support::ComponentShape randomOccurrence(Random& random, int depth) {
    support::ComponentShape shape = random.chance(15)
                                        ? support::item(HPS::ComponentType::PartDefinition, "")
                                        : support::occurrence(random.name());
    if (random.chance(60)) shape = shape.with("Filename", random.value());
    if (depth < 4) {
        for (std::size_t count = random.below(4); count > 0; --count) {
            shape.children.push_back(randomOccurrence(random, depth + 1));
        }
    }
    if (random.chance(50)) {
        shape.children.push_back(support::item(HPS::ComponentType::BrepModel, "S"));
    }
    return shape;
}

void plainCollect(const HPS::Component& component, std::vector<BOMRow>& rows) {
    const bool isPart =
        component.GetComponentType() == 4098 && component.GetAllSubcomponents(4098).size() <= 1;
    if (isPart && !component.GetSubcomponents().empty()) {
        const HPS::StringMetadata file(component.GetMetadata("Filename"));
        const std::wstring name = component.GetName().ToWide();
        const std::wstring fileName = file.Empty() ? L"" : file.GetValue().ToWide();
        const auto known = std::find_if(rows.begin(), rows.end(), [&](const BOMRow& row) {
            return row.partName == name && row.fileName == fileName;
        });
        if (known != rows.end()) {
            ++known->quantity;
        } else {
            rows.push_back({name, fileName, 1});
        }
    }
    for (const HPS::Component& below : component.GetSubcomponents()) plainCollect(below, rows);
}

TEST(RandomData, PartsListsAgreeWithThePlainRules) {
    const auto tell = [](const std::vector<BOMRow>& rows) {
        std::vector<std::wstring> lines;
        for (const BOMRow& row : rows) {
            lines.push_back(row.partName + L"|" + row.fileName + L"|" +
                            std::to_wstring(row.quantity));
        }
        return lines;
    };
    for (std::uint32_t seed = 0; seed < 2000; ++seed) {
        Random random(seed);
        const auto model =
            support::makeModel({randomOccurrence(random, 0), randomOccurrence(random, 0)});
        std::vector<BOMRow> rows, plainRows;
        extract::LoadBOM(model, rows);
        for (const HPS::Component& top : model.GetSubcomponents()) plainCollect(top, plainRows);
        ASSERT_EQ(tell(rows), tell(plainRows)) << seed;
    }
}

TEST(RandomData, PartsListsKnowEveryNameOfTheOtherSide) {
    for (std::uint32_t seed = 0; seed < 2000; ++seed) {
        Random random(seed);
        diff::BOMDataLoader loader;
        loader.LoadAndCompareBOM(support::makeModel({randomOccurrence(random, 0)}),
                                 support::makeModel({randomOccurrence(random, 0)}));
        const auto check = [&](const auto& own, const auto& other, const auto& states,
                               ItemDiffState missing) {
            ASSERT_EQ(states.size(), own.size());
            for (std::size_t i = 0; i < own.size(); ++i) {
                const bool known = std::any_of(other.begin(), other.end(), [&](const BOMRow& row) {
                    return plainEqual(row.partName, own[i].partName);
                });
                EXPECT_EQ(states[i], known ? ItemDiffState::Unchanged : missing) << seed;
                if (i > 0) {
                    EXPECT_LE(plainLower(own[i - 1].partName), plainLower(own[i].partName));
                }
            }
        };
        check(loader.referenceRows, loader.compareRows, loader.referenceStates,
              ItemDiffState::OnlyInReference);
        check(loader.compareRows, loader.referenceRows, loader.compareStates,
              ItemDiffState::OnlyInCompare);
    }
}

// Quadratic time would show as many minutes.
TEST(LargeData, AHundredThousandInstancesOfFewNamesPairAtOnce) {
    Parts reference;
    for (int i = 0; i < 100000; ++i) {
        reference.push_back(record("Bolt " + std::to_string(i % 10), {{"k", "1"}}));
    }
    Parts compare(reference.rbegin(), reference.rend());
    compare[0].attributes[0].value = L"2";
    diff::ComparePartAttributes(reference, compare);
    const auto different = [](const PartAttributes& part) { return part.isDifferent; };
    EXPECT_EQ(std::count_if(reference.begin(), reference.end(), different), 1);
    EXPECT_EQ(std::count_if(compare.begin(), compare.end(), different), 1);
    // The first of its name in the one list meets the first of its name in the other.
    EXPECT_TRUE(reference[9].isDifferent);
    EXPECT_TRUE(compare[0].isDifferent);
}

TEST(LargeData, AHundredThousandKeysAndAMegabyteOfValueCompareAtOnce) {
    PartAttributes part = record("a");
    for (int i = 0; i < 100000; ++i) part.attributes.push_back({std::to_wstring(i), L"v"});
    part.attributes[50000].value.assign(1 << 20, L'x');
    Parts reference = {part};
    std::reverse(part.attributes.begin(), part.attributes.end());
    part.attributes.back().key = L"new";
    part.attributes[49999].value.back() = L'y';
    Parts compare = {part};
    diff::ComparePartAttributes(reference, compare);
    EXPECT_EQ(reference[0].attributes[0].state, ItemDiffState::OnlyInReference);
    EXPECT_EQ(reference[0].attributes[50000].state, ItemDiffState::Different);
    EXPECT_EQ(compare[0].attributes.back().state, ItemDiffState::OnlyInCompare);
    const auto changed = std::count_if(
        compare[0].attributes.begin(), compare[0].attributes.end(),
        [](const AttributeEntry& entry) { return entry.state != ItemDiffState::Unchanged; });
    EXPECT_EQ(changed, 2);
}

}  // namespace
