#include "backends/occt/document/description.h"

#include <gtest/gtest.h>

#include "platform/hps/component_type.h"

namespace {

using occt::DescribedDefinition;
using occt::Description;
using occt::packDescription;
using occt::unfoldedSize;
using occt::unpackDescription;

/// One of everything.
Description sample() {
    Description description;
    description.unitMm = 25.4;
    description.root = 1;
    description.fileMetadata = {{"author", std::string("Zoë")},
                                {"signed", std::int32_t{-5}},
                                {"unsigned", std::uint32_t{4000000000}},
                                {"real", 0.1},
                                {"switch", true},
                                {"when", HPS::Time{1234567890123}}};
    description.gaps = {"one", ""};
    description.document = {12345678901, 98765432109};
    DescribedDefinition part;
    part.name = "shaft";
    part.unitName = "Inch";
    part.unitMm = 25.4;
    occt::DescribedItem body;
    body.type = HPS::ComponentType::BrepModel;
    body.name = "body";
    body.label = "0:1:1:2";
    body.path = {0, 7};
    body.closed = true;
    body.digest = "ff";
    body.identity = bxtexchange::BodyIdentity{1, 2, {3, 4, 5}, {6, 7, 8}, 9, {1, 2, 3, 4, 5, 6}};
    part.items = {body,
                  occt::DescribedItem{HPS::ComponentType::Curve, "curve", {}, {}, {}, false, {}}};
    part.pmi = {{HPS::ComponentType::PmiDatum, "Datum A", {{"Value", 1.5}}, "A"}};
    part.metadata = {{"Material", std::string("steel")}};
    DescribedDefinition top;
    top.name = "top";
    top.isAssembly = true;
    top.usages = {{0, {1, 0, 0, -4, 0, 1, 0, 5, 0, 0, 1, 6}, {{"Position", std::int32_t{3}}}},
                  {0, occt::kNoMove, {}}};
    description.definitions = {part, top};
    return description;
}

TEST(Packing, EverythingComesBack) {
    const Description before = sample();
    const std::string bytes = packDescription(before);
    const auto after = unpackDescription(bytes);
    ASSERT_TRUE(after);
    EXPECT_EQ(after->unitMm, 25.4);
    EXPECT_EQ(after->root, 1U);
    EXPECT_EQ(after->gaps, before.gaps);
    EXPECT_EQ(after->document, before.document);
    ASSERT_EQ(after->fileMetadata.size(), before.fileMetadata.size());
    for (std::size_t i = 0; i < before.fileMetadata.size(); ++i) {
        EXPECT_EQ(after->fileMetadata[i].name, before.fileMetadata[i].name);
        EXPECT_EQ(after->fileMetadata[i].value.index(), i);
    }
    EXPECT_EQ(std::get<std::string>(after->fileMetadata[0].value), "Zoë");
    EXPECT_EQ(std::get<std::int32_t>(after->fileMetadata[1].value), -5);
    EXPECT_EQ(std::get<std::uint32_t>(after->fileMetadata[2].value), 4000000000);
    EXPECT_EQ(std::get<double>(after->fileMetadata[3].value), 0.1);
    EXPECT_EQ(std::get<bool>(after->fileMetadata[4].value), true);
    EXPECT_EQ(std::get<HPS::Time>(after->fileMetadata[5].value).secondsSinceEpoch, 1234567890123);
    ASSERT_EQ(after->definitions.size(), 2U);
    const DescribedDefinition& part = after->definitions[0];
    EXPECT_EQ(part.name, "shaft");
    EXPECT_EQ(part.unitName, "Inch");
    EXPECT_FALSE(part.isAssembly);
    ASSERT_EQ(part.items.size(), 2U);
    EXPECT_EQ(part.items[0].label, "0:1:1:2");
    EXPECT_EQ(part.items[0].path, (std::vector<std::uint32_t>{0, 7}));
    EXPECT_TRUE(part.items[0].closed);
    EXPECT_EQ(part.items[0].digest, "ff");
    ASSERT_TRUE(part.items[0].identity);
    EXPECT_EQ(part.items[0].identity->principalMoments, (std::array<double, 3>{3, 4, 5}));
    EXPECT_EQ(part.items[0].identity->centroidMm, (std::array<double, 3>{6, 7, 8}));
    EXPECT_EQ(part.items[0].identity->faceCount, 9);
    EXPECT_EQ(part.items[0].identity->surfaceKinds[5], 6);
    EXPECT_FALSE(part.items[1].identity);
    EXPECT_EQ(part.pmi.at(0).name, "Datum A");
    EXPECT_EQ(part.pmi[0].text, "A");
    EXPECT_EQ(std::get<double>(part.pmi[0].metadata.at(0).value), 1.5);
    const DescribedDefinition& top = after->definitions[1];
    EXPECT_TRUE(top.isAssembly);
    EXPECT_EQ(top.usages.at(0).placement, before.definitions[1].usages[0].placement);
    EXPECT_EQ(top.usages[0].metadata.at(0).name, "Position");
    EXPECT_EQ(packDescription(*after), bytes) << "the same bytes for the same description";
}

TEST(Packing, EveryTruncationIsRefused) {
    const std::string bytes = packDescription(sample());
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        EXPECT_FALSE(unpackDescription(bytes.substr(0, size))) << size;
    }
    EXPECT_FALSE(unpackDescription(bytes + '\0'));
}

TEST(Packing, NoChangedByteDoesHarm) {
    const std::string bytes = packDescription(sample());
    std::size_t refused = 0;
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        for (const char value : {'\x00', '\x01', '\x7F', '\xFF'}) {
            std::string changed = bytes;
            changed[at] = value;
            const auto read = unpackDescription(changed);
            if (!read)
                ++refused;
            else
                (void)unfoldedSize(*read);
        }
    }
    EXPECT_GT(refused, bytes.size() / 2) << "lengths and marks are checked";
}

DescribedDefinition leaf(std::size_t items) {
    DescribedDefinition definition;
    definition.items.resize(items);
    return definition;
}

DescribedDefinition assembly(const std::vector<std::uint32_t>& children) {
    DescribedDefinition definition;
    definition.isAssembly = true;
    for (const std::uint32_t child : children) definition.usages.push_back({child, {}, {}});
    return definition;
}

TEST(UnfoldedSize, CountsTheModelFileAndEachInstance) {
    Description description;
    description.definitions = {leaf(3)};
    EXPECT_EQ(unfoldedSize(description), 1U + 2U + 3U);
    description.definitions = {leaf(3), assembly({0, 0})};
    description.root = 1;
    EXPECT_EQ(unfoldedSize(description), 1U + 1U + 2U * 5U);
    description.definitions[0].pmi.resize(4);
    EXPECT_EQ(unfoldedSize(description), 1U + 1U + 2U * 5U + 4U) << "PMI shows once";
}

TEST(UnfoldedSize, CirclesAndWildNumbersHaveNone) {
    Description description;
    EXPECT_FALSE(unfoldedSize(description));
    description.definitions = {assembly({0})};
    EXPECT_FALSE(unfoldedSize(description));
    description.definitions = {assembly({1}), assembly({0}), leaf(1)};
    description.root = 2;
    EXPECT_FALSE(unfoldedSize(description)) << "even where the root doesn't lead there";
    description.definitions = {assembly({7})};
    description.root = 0;
    EXPECT_FALSE(unfoldedSize(description));
    description.definitions = {leaf(1)};
    description.root = 1;
    EXPECT_FALSE(unfoldedSize(description));
}

TEST(UnfoldedSize, CountingStopsBeforeItOverflows) {
    Description description;
    description.definitions = {leaf(1)};
    for (std::uint32_t i = 0; i < 100; ++i) description.definitions.push_back(assembly({i, i}));
    description.root = 100;
    EXPECT_EQ(unfoldedSize(description), std::uint64_t{1} << 62);
}

}  // namespace
