#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "extract/compare_job.h"
#include "extract/import_library.h"
#include "tests/support/memory_model.h"
#include "tests/support/scripted_host.h"
#include "tests/support/scripted_host_services.h"

/// What an exchange entity of these models points at.
struct FakeEntity {
    double unitMm = 0.0;
    double volume = 0.0;
    bool fails = false;
};

/// A model whose components have an exchange entity when they have one of the metadata "#unit"
/// (of an occurrence), "#volume" (of a body) and "#fails".
class MeasuredModel : public support::MemoryModel {
public:
    const void* exchangeEntity(HPS::ComponentId id) const override {
        FakeEntity entity;
        bool found = false;
        for (const auto& value : metadata(id)) {
            if (!value->name.starts_with('#')) continue;
            found = true;
            if (value->name == "#unit") entity.unitMm = std::get<double>(value->value);
            if (value->name == "#volume") entity.volume = std::get<double>(value->value);
            if (value->name == "#fails") entity.fails = true;
        }
        return found ? &(entities_[id] = entity) : nullptr;
    }

private:
    mutable std::map<HPS::ComponentId, FakeEntity> entities_;
};

inline HPS::CADModel measuredModel(const std::vector<support::ComponentShape>& top) {
    support::MemoryModel::Builder builder(std::make_unique<MeasuredModel>());
    for (const auto& shape : top) builder.addShape(support::MemoryModel::Builder::kRoot, shape);
    return HPS::CADModel(builder.finish());
}

/// What the exchange library of these tests was asked, and what it answers about files.
struct LibraryScript {
    std::vector<std::string> calls;
    double fileUnitMm = 25.4;
    /// Name of the call that fails, if any.
    std::string failing;

    bool fails(const std::string& call) {
        calls.push_back(call);
        return !failing.empty() && call.starts_with(failing);
    }
    std::size_t count(const std::string& call) const {
        return static_cast<std::size_t>(std::count_if(
            calls.begin(), calls.end(), [&](const auto& made) { return made.starts_with(call); }));
    }
};
LibraryScript& libraryScript();

/// Binds the exchange library of LibraryScript as long as it lives, with a job whose active
/// document is empty.
class WithExchangeLibrary : public testing::Test {
protected:
    WithExchangeLibrary();
    ~WithExchangeLibrary() override;

    void setDocumentFile(const std::wstring& path) {
        document_->attach(bxtsg::code::Info, std::make_shared<bxtsg::SCInfo>(path));
    }
    void setDisplayUnit(bxtsg::SCInfo::UNITS unit) {
        document_->attach(bxtsg::code::Measure, std::make_shared<bxtsg::SCMeasure>(unit));
    }

    support::TestServices services_;
    std::shared_ptr<support::FakeDocument> document_ =
        std::make_shared<support::FakeDocument>("document", services_.log);
    extract::CompareJob job_;
};
