#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "platform/os/services.h"
#include "reports/csv_report_writer.h"
#include "resources/string_table.h"
#include "tests/support/memory_writer.h"
#include "tests/support/scripted_host_services.h"

/// The module's texts, and a disk in memory.
class CsvTest : public testing::Test {
protected:
    CsvTest() {
        resources::install();
        os::services().writer = disk;
    }
    ~CsvTest() override {
        os::services().writer.reset();
        resources::uninstall();
    }

    /// What a call that gets a stream puts into its file, behind the mark.
    template <typename Write>
    std::string written(Write write) {
        reports::CsvStream stream(disk->create(L"block"));
        write(stream);
        stream.Close();
        const std::string bytes = disk->files[L"block"];
        EXPECT_EQ(bytes.substr(0, 3), "\xEF\xBB\xBF");
        return bytes.substr(3);
    }

    support::TestServices services;
    std::shared_ptr<support::MemoryWriter> disk = std::make_shared<support::MemoryWriter>();
};

inline extract::PartAttributes partOf(const std::wstring& name,
                                      std::vector<extract::AttributeEntry> attributes) {
    extract::PartAttributes part;
    part.name = name;
    part.attributes = std::move(attributes);
    return part;
}
