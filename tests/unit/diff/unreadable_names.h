#pragma once

#include <memory>
#include <string>

#include "platform/hps/exception.h"
#include "tests/support/memory_model.h"

/// A model of that shape whose names can't be read: asking for one throws HPS::Exception with
/// `cause`, which must outlive the model.
inline HPS::CADModel withUnreadableNames(const support::ComponentShape& shape, const char* cause) {
    class Unreadable : public support::MemoryModel {
    public:
        explicit Unreadable(const char* cause) : cause_(cause) {}
        std::string name(HPS::ComponentId) const override { throw HPS::Exception(cause_); }

    private:
        const char* cause_;
    };
    support::MemoryModel::Builder builder(std::make_unique<Unreadable>(cause));
    builder.addShape(0, shape);
    return HPS::CADModel(builder.finish());
}
