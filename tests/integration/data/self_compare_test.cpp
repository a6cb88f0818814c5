// Every section of a comparison of a file with itself: with its bytes under another name, and with
// its entities renumbered and put into another order.

#include <algorithm>
#include <iostream>

#include "diff/attrib_data_loader.h"
#include "diff/bom_data_loader.h"
#include "diff/file_information_states.h"
#include "diff/pmi_data_loader.h"
#include "extract/case_folding.h"
#include "extract/file_information.h"
#include "extract/model_volume.h"
#include "platform/os/utf8.h"
#include "tests/integration/data/data_imports.h"
#include "tests/support/real_data.h"
#include "tests/support/step_text.h"

namespace {

using extract::ItemDiffState;
using import_test::Imported;
using States = std::vector<ItemDiffState>;
using Texts = std::vector<std::wstring>;

/// Names whose two orders, with and without regard to case, agree. The search by halves can miss
/// others by its own rule.
bool isFound(const Texts& names) {
    return std::is_sorted(names.begin(), names.end(), [](const auto& a, const auto& b) {
        return extract::CompareNoCase(a, b) < 0;
    });
}

class SelfCompare : public data_test::DataImports {
protected:
    void compareAll(const std::vector<std::string>& folders) {
        SKIP_WITHOUT_REAL_DATA();
        const auto files = data_test::stepFilesBelow(folders);
        ASSERT_FALSE(files.empty());
        for (const auto& file : files) {
            SCOPED_TRACE(file);
            compareWithCopies(file);
        }
        std::cerr << "[  NOTE    ] " << missed_
                  << " lists hold names whose orders with and without case differ\n";
    }

    void compareWithCopies(const std::filesystem::path& file) {
        const std::string bytes = support::readFile(file);
        const auto text = support::StepText::parse(bytes);
        ASSERT_TRUE(text);
        const auto other = support::renumberedAndShuffled(*text, 20261121).write();
        const std::string copy = scratch.write("copy.stp", bytes);
        const std::string shuffled = scratch.write("shuffled.stp", other);
        const Imported own = import(file.string());
        ASSERT_EQ(own.result, HPS::IOResult::Success) << own.cause.text;
        {
            SCOPED_TRACE("a copy");
            compare(own, file.string(), import(copy), copy);
        }
        SCOPED_TRACE("renumbered");
        compare(own, file.string(), import(shuffled), shuffled);
    }

    void compare(const Imported& own, const std::string& ownPath, const Imported& other,
                 const std::string& otherPath) {
        ASSERT_EQ(other.result, HPS::IOResult::Success) << other.cause.text;
        diff::AttribDataLoader attributes;
        attributes.LoadFileAttributes(own.component, other.component);
        EXPECT_EQ(attributes.referenceNames, attributes.compareNames);
        EXPECT_EQ(attributes.referenceValues, attributes.compareValues);
        expectSame("file attribute", attributes.referenceNames, attributes.referenceStates);
        expectSame("file attribute", attributes.compareNames, attributes.compareStates);
        attributes.LoadPartAttributes(own.component, other.component);
        expectSame(attributes.referenceParts);
        expectSame(attributes.compareParts);
        comparePmi(own, other);
        compareBom(own, other);
        compareFileInformation(own, ownPath, other, otherPath);
    }

    void comparePmi(const Imported& own, const Imported& other) {
        diff::PMIDataLoader pmi;
        pmi.LoadAndComparePMI(own.component, other.component);
        Texts names;
        Texts values;
        Texts otherNames;
        Texts otherValues;
        States states;
        States otherStates;
        pmi.ReadReference(names, values, states);
        pmi.ReadCompare(otherNames, otherValues, otherStates);
        EXPECT_EQ(names, otherNames);
        EXPECT_EQ(values, otherValues);
        expectSame("PMI", names, states);
        expectSame("PMI", otherNames, otherStates);
    }

    void compareBom(const Imported& own, const Imported& other) {
        diff::BOMDataLoader bom;
        bom.LoadAndCompareBOM(own.component, other.component);
        Texts names;
        Texts quantities;
        Texts otherNames;
        Texts otherQuantities;
        States states;
        States otherStates;
        bom.ReadReference(names, quantities, states);
        bom.ReadCompare(otherNames, otherQuantities, otherStates);
        EXPECT_FALSE(names.empty());
        EXPECT_EQ(names, otherNames);
        EXPECT_EQ(quantities, otherQuantities);
        EXPECT_EQ(states, States(names.size()));
        EXPECT_EQ(otherStates, States(names.size()));
    }

    void compareFileInformation(const Imported& own, const std::string& ownPath,
                                const Imported& other, const std::string& otherPath) {
        Texts names;
        Texts values;
        Texts otherValues;
        extract::AddFileInformation(os::toWide(ownPath), names, values, L'/');
        extract::AddFileInformation(os::toWide(otherPath), names, otherValues, L'/');
        States states;
        States otherStates;
        diff::CompareFileInformation(values, otherValues, states, otherStates);
        const States expected = {ItemDiffState::Different, ItemDiffState::Different,
                                 ItemDiffState::Unchanged, ItemDiffState::Unchanged};
        EXPECT_EQ(states, expected) << "folder and name, as for any two files";
        EXPECT_EQ(otherStates, expected);
        extract::CompareJob job;
        std::wstring unit;
        std::wstring otherUnit;
        const double volume = extract::ComputeModelVolume(job, own.component, unit);
        EXPECT_EQ(extract::ComputeModelVolume(job, other.component, otherUnit), volume);
        EXPECT_EQ(otherUnit, unit);
    }

    void expectSame(const char* what, const Texts& names, const States& states) {
        ASSERT_EQ(names.size(), states.size());
        if (!isFound(names)) {
            ++missed_;
            return;
        }
        for (std::size_t i = 0; i < names.size(); ++i) {
            EXPECT_EQ(states[i], ItemDiffState::Unchanged) << what << " " << os::toUtf8(names[i]);
        }
    }

    static void expectSame(const std::vector<extract::PartAttributes>& parts) {
        for (const extract::PartAttributes& part : parts) {
            EXPECT_FALSE(part.isDifferent) << os::toUtf8(part.name);
            EXPECT_EQ(part.state, ItemDiffState::Unchanged) << os::toUtf8(part.name);
            for (const extract::AttributeEntry& entry : part.attributes) {
                EXPECT_EQ(entry.state, ItemDiffState::Unchanged)
                    << os::toUtf8(part.name) << ": " << os::toUtf8(entry.key);
            }
        }
    }

private:
    std::size_t missed_ = 0;
};

TEST_F(SelfCompare, RevisionsAreEqualToTheirCopies) {
    compareAll({"A-revisions"});
}

TEST_F(SelfCompare, SingleFilesAreEqualToTheirCopies) {
    compareAll({"A-singles"});
}

TEST_F(SelfCompare, FilesWithPmiAreEqualToTheirCopies) {
    compareAll({"B-pmi"});
}

}  // namespace
