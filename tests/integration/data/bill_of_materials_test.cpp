// Bills of materials against a count of the usages in the files' own text, by a reader that shares
// no code with the import.

#include <algorithm>
#include <map>
#include <set>

#include "extract/bom_rows.h"
#include "platform/os/utf8.h"
#include "tests/integration/data/data_imports.h"
#include "tests/integration/import/text_structure.h"
#include "tests/support/real_data.h"
#include "tests/support/step_text.h"

namespace {

using Quantities = std::map<std::string, std::int64_t>;

/// A name of the text with '?' for each character beyond ASCII, however it is written.
std::string plain(const std::string& raw) {
    std::string out;
    for (std::size_t i = 0; i < raw.size();) {
        const std::string_view rest = std::string_view(raw).substr(i);
        if (rest.starts_with("\\X2\\") || rest.starts_with("\\X4\\")) {
            const std::size_t end = std::min(rest.find("\\X0\\"), rest.size());
            out.append((end - 4) / (rest[2] == '2' ? 4 : 8), '?');
            i += std::min(end + 4, rest.size());
        } else if (rest.starts_with("\\X\\")) {
            out += '?';
            i += 5;
        } else if (rest.starts_with("\\S\\")) {
            out += '?';
            i += 4;
        } else {
            const auto byte = static_cast<unsigned char>(raw[i++]);
            if (byte < 0x80) out += raw[i - 1];
            if (byte >= 0xC0) out += '?';
        }
    }
    return out;
}

/// What an independent reader unfolds from the usages of a text.
struct Unfolded {
    Quantities leaves;
    std::set<std::string> assemblies;
    /// Assemblies that hold bodies of their own have one more leaf, named like them.
    std::int64_t ownBodies = 0;
};

Unfolded unfold(const support::StepText& text) {
    const auto occurrences = text.occurrences();
    std::vector<bool> isAssembly(occurrences.size());
    std::int64_t roots = 0;
    for (const support::StepOccurrence& occurrence : occurrences) {
        if (occurrence.parent < 0)
            ++roots;
        else
            isAssembly[static_cast<std::size_t>(occurrence.parent)] = true;
    }
    Unfolded out;
    for (std::size_t i = 0; i < occurrences.size(); ++i) {
        const std::string name = plain(occurrences[i].name);
        if (isAssembly[i])
            out.assemblies.insert(name);
        else
            ++out.leaves[name];
    }
    const auto all = import_test::readStructure(text).occurrences.size();
    out.ownBodies = static_cast<std::int64_t>(all - occurrences.size()) - (roots > 1 ? 1 : 0);
    return out;
}

class BillOfMaterials : public data_test::DataImports {};

TEST_F(BillOfMaterials, CountsOfAllAssembliesAreThoseOfTheUnfoldedText) {
    SKIP_WITHOUT_REAL_DATA();
    std::size_t assemblies = 0;
    for (const auto& file : data_test::stepFilesBelow({"A-revisions", "A-singles", "B-pmi"})) {
        SCOPED_TRACE(file);
        const auto text = support::StepText::parse(support::readFile(file));
        ASSERT_TRUE(text);
        if (text->count("NEXT_ASSEMBLY_USAGE_OCCURRENCE") == 0) continue;
        ++assemblies;
        const auto read = import(file.string());
        ASSERT_EQ(read.result, HPS::IOResult::Success) << read.cause.text;
        std::vector<extract::BOMRow> rows;
        extract::LoadBOM(read.component, rows);
        Quantities quantities;
        for (const extract::BOMRow& row : rows) {
            quantities[import_test::asciiOnly(os::toUtf8(row.partName))] += row.quantity;
        }
        Unfolded counted = unfold(*text);
        std::int64_t beyond = 0;
        for (auto& [name, quantity] : quantities) {
            const std::int64_t more = quantity - counted.leaves[name];
            if (more > 0 && counted.assemblies.count(name) != 0) {
                beyond += more;
                quantity -= more;
            }
        }
        std::erase_if(quantities, [](const auto& row) { return row.second == 0; });
        std::erase_if(counted.leaves, [](const auto& row) { return row.second == 0; });
        EXPECT_EQ(quantities, counted.leaves);
        EXPECT_EQ(beyond, counted.ownBodies);
    }
    EXPECT_GE(assemblies, 10U) << "the data holds assemblies";
}

}  // namespace
