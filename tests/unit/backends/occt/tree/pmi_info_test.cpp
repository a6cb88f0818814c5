#include "backends/occt/pmi_info.h"

#include <gtest/gtest.h>

#include "backends/occt/tree/occt_model.h"
#include "platform/hps/component_type.h"
#include "tests/support/memory_model.h"

namespace {

using bxtexchange::PMIInfos;
using HPS::Exchange::Component;

TEST(PmiInfo, ItemsAnswerTheirLineAndNothingElseDoes) {
    occt::Description description;
    description.definitions.resize(1);
    description.definitions[0].pmi = {
        {HPS::ComponentType::PmiTolerance, "Position", {}, "\u2316 \u23000.25 \u24C2 A B"},
        {HPS::ComponentType::PmiNote, "Note", {}, ""}};
    const auto model = std::make_shared<const occt::OcctModel>(std::move(description), "");
    PMIInfos infos{L"untouched"};
    // The model file, the occurrence and the part definition.
    for (HPS::ComponentId id = 0; id < 3; ++id) {
        EXPECT_FALSE(occt::pmiInfo(Component(HPS::Component(model, id)), infos)) << id;
    }
    EXPECT_EQ(infos.text, L"untouched");
    EXPECT_TRUE(occt::pmiInfo(Component(HPS::Component(model, 3)), infos));
    EXPECT_EQ(infos.text, L"\u2316 \u23000.25 \u24C2 A B");
    EXPECT_TRUE(occt::pmiInfo(Component(HPS::Component(model, 4)), infos));
    EXPECT_EQ(infos.text, L"");
}

TEST(PmiInfo, ComponentsOfOthersHaveNone) {
    PMIInfos infos{L"untouched"};
    EXPECT_FALSE(occt::pmiInfo(Component(), infos));
    const auto other = std::make_shared<support::MemoryModel>();
    EXPECT_FALSE(occt::pmiInfo(Component(HPS::Component(other, other->root())), infos));
    EXPECT_EQ(infos.text, L"untouched");
}

}  // namespace
