#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "backends/occt/import_service.h"
#include "backends/occt/model.h"
#include "tests/support/cli_runner.h"

/// Imports by the real service and the real helper program, in this process.
namespace import_test {

struct Imported {
    HPS::IOResult result = HPS::IOResult::InProgress;
    HPS::Exchange::ImportCause cause;
    HPS::CADModel component;
    std::shared_ptr<const occt::Model> model;  ///< null after a failure
};

class Imports : public testing::Test {
protected:
    Imports();
    ~Imports() override;

    HPS::Exchange::ImportNotifier start(const std::string& path,
                                        const HPS::Exchange::ImportOptionsKit& options = {});
    /// Waits for the end.
    static Imported finish(const HPS::Exchange::ImportNotifier& notifier);
    Imported import(const std::string& path, const HPS::Exchange::ImportOptionsKit& options = {});
    /// The same for a file with this text; fails the test unless it can be read.
    Imported importText(const std::string& text,
                        const HPS::Exchange::ImportOptionsKit& options = {});

    support::ScratchFolder scratch;
    std::vector<std::string> logged;
    std::vector<std::pair<double, std::string>> progress;
    std::shared_ptr<occt::ImportService> service;

private:
    int files_ = 0;
};

std::size_t count(const Imported& imported, std::uint32_t type);

/// Names of all components of a type, in model order.
std::vector<std::string> names(const Imported& imported, std::uint32_t type);

/// First component of that type and name.
HPS::Component find(const Imported& imported, std::uint32_t type, const std::string& name);

/// Metadata as "name=value", sorted.
std::vector<std::string> metadata(const HPS::Component& component);

}  // namespace import_test
