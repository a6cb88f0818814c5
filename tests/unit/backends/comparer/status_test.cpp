#include "backends/comparer/status.h"

#include <gtest/gtest.h>

#include "tests/unit/backends/comparer/fake_model.h"
#include "tests/unit/backends/comparer/shapes.h"

namespace {

using Comparer = bxtimp::IDocComparer;

FakeModel part() {
    FakeModel model;
    model.body(model.top(), shapes::box(1, 2, 3));
    return model;
}

FakeModel assembly() {
    FakeModel model;
    model.part(model.top(), "P", shapes::box(1, 2, 3));
    return model;
}

FakeModel empty() {
    return FakeModel();
}

FakeModel emptyAssembly() {
    FakeModel model;
    model.occurrence(model.top(), "Nothing");
    return model;
}

TEST(Status, FollowsFromTheContents) {
    struct Row {
        FakeModel reference;
        FakeModel compare;
        Comparer::Status status;
        bool silent;
    };
    const Row rows[] = {
        {part(), part(), Comparer::Done, true},
        {assembly(), assembly(), Comparer::Done, true},
        {part(), assembly(), Comparer::PartAgainstAssembly, false},
        {assembly(), part(), Comparer::AssemblyAgainstPart, false},
        {empty(), part(), Comparer::OpenCompareAlone, false},
        {empty(), assembly(), Comparer::OpenCompareAlone, false},
        {emptyAssembly(), part(), Comparer::OpenCompareAlone, false},
        {part(), empty(), Comparer::OpenReferenceAlone, false},
        {assembly(), emptyAssembly(), Comparer::OpenReferenceAlone, false},
        {empty(), empty(), Comparer::NothingCompared, false},
        {emptyAssembly(), empty(), Comparer::NothingCompared, false},
    };
    int number = 0;
    for (const Row& row : rows) {
        comparer::Names names;
        std::string cause;
        const auto status = comparer::statusFor(comparer::collectSide(row.reference, names),
                                                comparer::collectSide(row.compare, names), cause);
        EXPECT_EQ(status, row.status) << "row " << number;
        EXPECT_EQ(cause.empty(), row.silent) << "row " << number;
        ++number;
    }
}

}  // namespace
