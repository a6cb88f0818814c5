// The results dialog with large lists on a desktop without a screen: filling, going through the
// sections, copying and saving a table, at a size and at ten times that size. Linear time shows as
// a ratio near 10; it must stay at or below 13.

#include <malloc.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "backends/headless/desktop.h"
#include "backends/headless/dialog.h"
#include "backends/headless/toolkit.h"
#include "platform/os/services.h"
#include "platform/ui/services.h"
#include "reports/csv_report_writer.h"
#include "resources/string_table.h"
#include "results/unified_compare_dialog.h"
#include "tests/support/memory_writer.h"

namespace {

using results::SectionRows;

constexpr int kRepeats = 5;
constexpr double kWorstRatio = 13.0;
constexpr std::size_t kAttributesOfPart = 100;

class NobodyThere final : public headless::User {
public:
    void answerDialog(headless::Dialog&) override {}
    int answerMessageBox(const headless::MessageBox&) override { return 1; }
};

/// Sizes of one run.
struct Sizes {
    const char* name;
    std::size_t bomRows;
    std::size_t parts;  ///< of kAttributesOfPart attributes each
    std::size_t pmiRows;
};

/// Times of one run in seconds of processor time.
struct Times {
    double fill = 0;
    double sections = 0;
    double copy = 0;
    double save = 0;
};

double processSeconds() {
    timespec now = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

double timeOf(const std::function<void()>& work) {
    const double start = processSeconds();
    work();
    return processSeconds() - start;
}

SectionRows makeRows(std::size_t count, const std::wstring& what) {
    SectionRows rows;
    for (std::size_t i = 0; i < count; ++i) {
        const std::wstring name = what + std::to_wstring(i);
        rows.referenceNames.push_back(name);
        rows.compareNames.push_back(name);
        rows.referenceValues.push_back(std::to_wstring(i % 7));
        rows.compareValues.push_back(std::to_wstring(i % 5));
        rows.referenceStates.push_back(extract::ItemDiffState::Different);
        rows.compareStates.push_back(extract::ItemDiffState::Different);
    }
    return rows;
}

std::vector<extract::PartAttributes> makeParts(std::size_t count, const wchar_t* value) {
    std::vector<extract::PartAttributes> parts(count);
    for (std::size_t i = 0; i < count; ++i) {
        parts[i].name = L"Part " + std::to_wstring(i);
        parts[i].isDifferent = true;
        for (std::size_t k = 0; k < kAttributesOfPart; ++k) {
            parts[i].attributes.push_back(
                {L"Key " + std::to_wstring(k), value, extract::ItemDiffState::Different});
        }
    }
    return parts;
}

Times measure(const Sizes& sizes, headless::Toolkit& toolkit, support::MemoryWriter& disk) {
    const SectionRows bom = makeRows(sizes.bomRows, L"Part ");
    const SectionRows pmi = makeRows(sizes.pmiRows, L"Dimension ");
    const auto referenceParts = makeParts(sizes.parts, L"old");
    const auto compareParts = makeParts(sizes.parts, L"new");
    malloc_trim(0);
    results::UnifiedCompareDialog dialog;
    dialog.Create();
    dialog.Show();
    headless::Dialog& window = *toolkit.windows().back();
    Times times;
    times.fill = timeOf([&] {
        dialog.SetBomData(bom);
        dialog.SetPartAttributeData(referenceParts, compareParts);
        dialog.SetPmiData(pmi);
        dialog.RefreshResults();
    });
    times.sections = timeOf([&] {
        for (int section = 0; section < 4; ++section) window.choose(1301, section);
        window.choose(1301, 2);
        window.press(1314);
    });
    times.copy = timeOf([&] { dialog.OnCopyResults(); });
    times.save = timeOf([&] {
        const reports::CsvReportWriter writer;
        writer.WriteCsvReport(L"out.csv", dialog.BuildReportContent());
    });
    disk.files.clear();
    return times;
}

/// The median of each time over several runs.
Times medians(const Sizes& sizes, headless::Toolkit& toolkit, support::MemoryWriter& disk) {
    std::vector<Times> runs;
    for (int i = 0; i < kRepeats; ++i) runs.push_back(measure(sizes, toolkit, disk));
    Times made;
    for (auto field : {&Times::fill, &Times::sections, &Times::copy, &Times::save}) {
        std::sort(runs.begin(), runs.end(),
                  [&](const Times& a, const Times& b) { return a.*field < b.*field; });
        made.*field = runs[runs.size() / 2].*field;
    }
    return made;
}

}  // namespace

int main() {
    resources::install();
    const auto toolkit =
        std::make_shared<headless::Toolkit>(std::make_shared<NobodyThere>(), L"Bench");
    const auto disk = std::make_shared<support::MemoryWriter>();
    ui::services().toolkit = toolkit;
    ui::services().clipboard = std::make_shared<headless::Clipboard>();
    os::services().writer = disk;

    constexpr std::array<std::array<Sizes, 2>, 3> kCases = {{
        {{{"bill of materials", 10000, 0, 0}, {"bill of materials", 100000, 0, 0}}},
        {{{"attributes of parts", 0, 100, 0}, {"attributes of parts", 0, 1000, 0}}},
        {{{"PMI", 0, 0, 5000}, {"PMI", 0, 0, 50000}}},
    }};
    bool linear = true;
    std::printf("| rows | step | small ms | ten times ms | ratio |\n|---|---|---|---|---|\n");
    for (const auto& [small, large] : kCases) {
        const Times before = medians(small, *toolkit, *disk);
        const Times after = medians(large, *toolkit, *disk);
        const auto print = [&](const char* step, double Times::*field) {
            const double ratio = after.*field / before.*field;
            // What takes less than a millisecond is the fixed cost of the step.
            linear = linear && (ratio <= kWorstRatio || before.*field < 1e-3);
            std::printf("| %s | %s | %.2f | %.2f | %.1f |\n", small.name, step, before.*field * 1e3,
                        after.*field * 1e3, ratio);
        };
        print("fill", &Times::fill);
        print("go through sections", &Times::sections);
        print("copy", &Times::copy);
        print("save", &Times::save);
    }
    os::services() = {};
    ui::services() = {};
    resources::uninstall();
    return linear ? 0 : 1;
}
