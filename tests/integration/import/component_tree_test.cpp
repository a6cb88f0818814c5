// The component tree of real files against what their own text says.

#include <algorithm>
#include <filesystem>
#include <set>

#include "platform/hps/component.h"
#include "platform/hps/component_type.h"
#include "tests/integration/import/imports.h"
#include "tests/integration/import/text_structure.h"
#include "tests/support/real_data.h"

namespace {

namespace Type = HPS::ComponentType;
using import_test::Imported;
using import_test::TextStructure;

// Larger files take a second and more each.
constexpr std::uintmax_t kLargestBytes = 1'000'000;

std::string pathTo(const Imported& imported, HPS::ComponentId id) {
    std::string path;
    const auto& model = *imported.model;
    std::vector<HPS::ComponentId> ids = {id};
    for (const HPS::ComponentId owner : model.owners(id)) ids.push_back(owner);
    for (auto next = ids.rbegin(); next != ids.rend(); ++next) {
        if (model.type(*next) != Type::ProductOccurrence) continue;
        path += (path.empty() ? "" : "/") + import_test::asciiOnly(model.name(*next));
    }
    return path;
}

/// Occurrence paths of all components of a type, sorted.
std::vector<std::string> paths(const Imported& imported, std::uint32_t type) {
    std::vector<std::string> out;
    for (const HPS::Component& next : imported.component.GetAllSubcomponents(type)) {
        out.push_back(pathTo(imported, next.Id()));
    }
    std::sort(out.begin(), out.end());
    return out;
}

class ComponentTree : public import_test::Imports {
protected:
    void compare(const std::string& path) {
        SCOPED_TRACE(path);
        const auto text = support::StepText::parse(support::readFile(path));
        ASSERT_TRUE(text);
        const TextStructure expected = import_test::readStructure(*text);
        const Imported read = import(path);
        ASSERT_EQ(read.result, HPS::IOResult::Success) << read.cause.text;
        EXPECT_EQ(paths(read, Type::ProductOccurrence), expected.occurrences);
        EXPECT_EQ(paths(read, Type::BrepModel), expected.bodies);
        EXPECT_EQ(paths(read, Type::PolyBrepModel), expected.meshes);
        checkShape(read);
        std::set<std::size_t> definitions;
        for (const HPS::Component& next :
             read.component.GetAllSubcomponents(Type::ProductOccurrence)) {
            definitions.insert(read.model->definition(next.Id()));
        }
        EXPECT_EQ(definitions.size(), expected.definitions);
    }

    /// What holds of every tree.
    static void checkShape(const Imported& read) {
        const auto& model = *read.model;
        ASSERT_EQ(model.childCount(model.root()), 1U);
        EXPECT_EQ(model.type(model.child(model.root(), 0)), Type::ProductOccurrence);
        for (const HPS::Component& next :
             read.component.GetAllSubcomponents(Type::ProductOccurrence)) {
            EXPECT_FALSE(model.name(next.Id()).empty());
            EXPECT_FALSE(next.GetMetadata("Units").Empty());
            const std::size_t parts = next.GetAllSubcomponents(Type::PartDefinition).size();
            const bool isLeaf = next.GetAllSubcomponents(Type::ProductOccurrence).size() == 1;
            EXPECT_EQ(isLeaf && parts == 1, isLeaf) << "a leaf has its part definition";
        }
        std::set<std::string> pmi;
        for (const HPS::Component& next : read.component.GetAllSubcomponents(Type::PmiMask)) {
            EXPECT_TRUE(pmi.insert(model.name(next.Id())).second) << model.name(next.Id());
        }
    }

    void compareFolder(const char* name) {
        SKIP_WITHOUT_REAL_DATA();
        std::vector<std::string> files;
        std::size_t skipped = 0;
        for (const auto& entry :
             std::filesystem::directory_iterator(support::realDataFolder() / name)) {
            const bool small = entry.file_size() <= kLargestBytes;
            if (small || support::fullRun())
                files.push_back(entry.path().string());
            else
                ++skipped;
        }
        std::sort(files.begin(), files.end());
        ASSERT_FALSE(files.empty());
        for (const std::string& file : files) compare(file);
        if (skipped > 0) {
            std::cerr << "[  NOTE    ] " << skipped
                      << " large files were not looked at: set BEXTORA_TEST_FULL=1\n";
        }
    }
};

TEST_F(ComponentTree, AgreesWithTheSamplesText) {
    for (const char* label : {"Gearbox1", "Gearbox2"}) compare(support::realFile(label));
}

TEST_F(ComponentTree, AgreesWithTheTextOfSingleFiles) {
    compareFolder("A-singles");
}

TEST_F(ComponentTree, AgreesWithTheTextOfRevisions) {
    compareFolder("A-revisions");
}

TEST_F(ComponentTree, AgreesWithTheTextOfFilesWithPmi) {
    compareFolder("B-pmi");
}

}  // namespace
