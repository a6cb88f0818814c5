// Volumes of every solid of the real files against those that DRAW finds (draw_volumes.tsv, made
// by record_draw_volumes.tcl).

#include <algorithm>
#include <cmath>
#include <fstream>
#include <map>
#include <sstream>

#include <TopAbs_ShapeEnum.hxx>

#include "platform/hps/component_type.h"
#include "tests/integration/data/data_imports.h"
#include "tests/support/real_data.h"

namespace {

// DRAW without a limit is off by up to 4e-4 and more for some of these files.
constexpr double kRelative = 1e-5;

/// Sorted volumes of the solids of each file in mm3.
using Volumes = std::map<std::string, std::vector<double>>;

Volumes recorded() {
    std::ifstream table(DRAW_VOLUMES_FILE);
    std::string line;
    std::getline(table, line);
    Volumes out;
    while (std::getline(table, line)) {
        std::istringstream cells(line);
        std::string file;
        std::size_t solids = 0;
        double volume = 0.0;
        std::getline(cells, file, '\t');
        cells >> solids >> volume;
        out[file].insert(out[file].end(), solids, volume);
    }
    for (auto& [file, volumes] : out) std::sort(volumes.begin(), volumes.end());
    return out;
}

class DrawVolumes : public data_test::DataImports {
protected:
    std::vector<double> volumesOf(const import_test::Imported& read) {
        std::vector<double> volumes;
        for (const HPS::Component& body :
             read.component.GetAllSubcomponents(HPS::ComponentType::BrepModel)) {
            if (read.model->shape(body.Id()).ShapeType() != TopAbs_SOLID) continue;
            const auto* const identity = read.model->identity(body.Id());
            volumes.push_back(identity != nullptr ? identity->volumeMm3 : 0.0);
        }
        std::sort(volumes.begin(), volumes.end());
        return volumes;
    }
};

TEST_F(DrawVolumes, EverySolidAgrees) {
    SKIP_WITHOUT_REAL_DATA();
    constexpr std::uintmax_t largestBytes = 1'000'000;
    std::size_t solids = 0;
    for (const auto& [name, expected] : recorded()) {
        SCOPED_TRACE(name);
        const auto file = support::realDataFolder() / name;
        ASSERT_TRUE(std::filesystem::exists(file));
        if (std::filesystem::file_size(file) > largestBytes && !support::fullRun()) continue;
        const auto read = import(file.string());
        ASSERT_EQ(read.result, HPS::IOResult::Success) << read.cause.text;
        const std::vector<double> volumes = volumesOf(read);
        ASSERT_EQ(volumes.size(), expected.size());
        for (std::size_t i = 0; i < volumes.size(); ++i) {
            EXPECT_NEAR(volumes[i] / expected[i], 1.0, kRelative) << volumes[i] << " mm3";
        }
        solids += volumes.size();
    }
    EXPECT_GE(solids, 200U);
}

}  // namespace
