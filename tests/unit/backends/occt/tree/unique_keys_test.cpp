#include "backends/occt/tree/unique_keys.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

using Names = std::vector<std::string>;

Names unique(const Names& names) {
    std::vector<std::shared_ptr<const HPS::MetadataValue>> values;
    for (const std::string& name : names) {
        values.push_back(std::make_shared<const HPS::MetadataValue>(
            HPS::MetadataValue{name, static_cast<std::int32_t>(values.size())}));
    }
    occt::makeKeysUnique(values);
    Names out;
    for (std::size_t i = 0; i < values.size(); ++i) {
        out.push_back(values[i]->name);
        EXPECT_EQ(std::get<std::int32_t>(values[i]->value), static_cast<std::int32_t>(i));
    }
    return out;
}

TEST(UniqueKeys, WhatIsUniqueStays) {
    EXPECT_EQ(unique({}), Names{});
    EXPECT_EQ(unique({"b", "a", "A", ""}), (Names{"b", "a", "A", ""}));
}

TEST(UniqueKeys, LaterOnesGetANumber) {
    EXPECT_EQ(unique({"K", "L", "K", "K", "L"}), (Names{"K", "L", "K 2", "K 3", "L 2"}));
    EXPECT_EQ(unique({"", "", ""}), (Names{"", " 2", " 3"}));
}

TEST(UniqueKeys, NumbersThatAreTakenAreSkipped) {
    EXPECT_EQ(unique({"K", "K", "K", "K 2", "K 2"}), (Names{"K", "K 3", "K 4", "K 2", "K 2 2"}));
}

TEST(UniqueKeys, AHundredThousandOfOneNameAreDifferent) {
    const Names names = unique(Names(100'000, "K"));
    EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), names.size());
    EXPECT_EQ(names.back(), "K 100000");
}

}  // namespace
