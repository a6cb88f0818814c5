#include <gtest/gtest.h>

#include "backends/posix/posix.h"
#include "extract/import_library.h"
#include "platform/os/services.h"
#include "shell/compare_plugin.h"

namespace {

TEST(IncompleteLibrary, ThePluginLivesWithoutIt) {
    os::services() = posix::makeServices({});
    testing::internal::CaptureStderr();
    const shell::ComparePlugin plugin;
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "ERROR: function A3DAsmModelFileGet is null\nERROR: 1 null functions\n");
    EXPECT_FALSE(extract::importLibrary().Bound());
    EXPECT_EQ(plugin.name(), L"Compare Plugin");

    A3DPhysicalPropertiesData data = {sizeof data, 0.0, -1.0, -1.0};
    EXPECT_NE(extract::importLibrary().ComputePhysicalProperties(&data, &data), 0);
    EXPECT_EQ(data.volume, -1.0);
    os::services() = {};
}

}  // namespace
