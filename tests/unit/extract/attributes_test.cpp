#include "extract/attributes.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "platform/hps/exception.h"
#include "tests/support/memory_model.h"
#include "tests/support/scripted_host_services.h"

namespace {

using extract::ItemDiffState;
using extract::PartAttributes;
using support::item;
using support::makeModel;
using support::occurrence;
using support::part;

namespace ComponentType = HPS::ComponentType;
using Names = std::vector<std::wstring>;
using Text = std::string;

class FileAttributes : public testing::Test {
protected:
    // One line per row: name=value.
    static Names rows(const HPS::Component& model) {
        Names names, values, lines;
        extract::ExtractFileAttributes(model, names, values);
        EXPECT_EQ(names.size(), values.size());
        for (std::size_t i = 0; i < names.size(); ++i) lines.push_back(names[i] + L"=" + values[i]);
        return lines;
    }
};

TEST_F(FileAttributes, AModelWithoutSubcomponentsGivesNothing) {
    EXPECT_TRUE(rows(HPS::CADModel()).empty());
    EXPECT_TRUE(rows(makeModel({})).empty());
}

TEST_F(FileAttributes, ATopWithoutOccurrencesGivesNothing) {
    const auto body = item(ComponentType::BrepModel, "body").with("a", Text("1"));
    EXPECT_TRUE(rows(makeModel({body, occurrence("o").with("b", Text("2"))})).empty());
}

TEST_F(FileAttributes, AnOccurrenceWithoutMetadataGivesNothing) {
    EXPECT_TRUE(rows(makeModel({occurrence("top", {part("a").with("k", Text("v"))})})).empty());
}

TEST_F(FileAttributes, AreThoseOfTheFirstOccurrence) {
    const auto below =
        occurrence("top", {part("a").with("k", Text("part"))}).with("k", Text("top"));
    EXPECT_EQ(rows(makeModel({below, occurrence("second").with("k", Text("second"))})),
              (Names{L"k=top"}));
    // Where the model's first component is no occurrence, the first one below it.
    EXPECT_EQ(rows(makeModel({item(ComponentType::PartDefinition, "", {below})})),
              (Names{L"k=top"}));
}

TEST_F(FileAttributes, AreSortedByTheirCharactersCodes) {
    auto top = occurrence("top");
    for (const char* key : {"b", "\xC3\xA4", "B", "a", "_", "A1", "A"}) {
        top = top.with(key, Text("v"));
    }
    EXPECT_EQ(rows(makeModel({top})),
              (Names{L"A=v", L"A1=v", L"B=v", L"_=v", L"a=v", L"b=v", L"\u00E4=v"}));
}

TEST_F(FileAttributes, TextsStayAsTheyAre) {
    EXPECT_EQ(rows(makeModel({occurrence("top").with(" a  b ", Text("\xC2\xA0x\t"))})),
              (Names{L" a  b =\u00A0x\t"}));
}

TEST_F(FileAttributes, EqualNamesGiveOneRowEach) {
    EXPECT_EQ(
        rows(makeModel(
            {occurrence("top").with("k", Text("2")).with("K", Text("3")).with("k", Text("1"))})),
        (Names{L"K=3", L"k=2", L"k=1"}));
}

// Long enough for a sort that does not keep the order to show it.
TEST_F(FileAttributes, ManyEqualNamesKeepTheirOrder) {
    auto top = occurrence("top");
    Names expected;
    for (int i = 0; i < 100; ++i) {
        top = top.with("k", i);
        expected.push_back(L"k=" + std::to_wstring(i));
    }
    EXPECT_EQ(rows(makeModel({top})), expected);
}

TEST_F(FileAttributes, EmptyTextsAreShownAsADash) {
    auto top = occurrence("top").with("", Text("v")).with("k", Text());
    top.metadata.push_back({"other", Text("hidden"), 0x80001042});
    EXPECT_EQ(rows(makeModel({top})), (Names{L" - =v", L"k= - ", L"other= - "}));
}

// A name that begins below the blank of what is shown: the order is that of the names themselves.
TEST_F(FileAttributes, AreSortedBeforeTheDashIsPutIn) {
    EXPECT_EQ(rows(makeModel({occurrence("top").with("\t", Text("v")).with("", Text("w"))})),
              (Names{L" - =w", L"\t=v"}));
}

TEST_F(FileAttributes, AreAppended) {
    Names names = {L"before"}, values = {L"value"};
    extract::ExtractFileAttributes(makeModel({occurrence("top").with("k", Text("v"))}), names,
                                   values);
    EXPECT_EQ(names, (Names{L"before", L"k"}));
    EXPECT_EQ(values, (Names{L"value", L"v"}));
}

// Throws what the test wants when the name of component 3 is read.
class Unreadable : public support::MemoryModel {
public:
    std::string name(HPS::ComponentId id) const override {
        if (id == 3) fail();
        return MemoryModel::name(id);
    }
    std::vector<std::shared_ptr<const HPS::MetadataValue>> metadata(
        HPS::ComponentId id) const override {
        if (id == 1 && failsOnMetadata) fail();
        return MemoryModel::metadata(id);
    }
    void (*fail)() = nullptr;
    bool failsOnMetadata = false;
};

HPS::CADModel unreadable(void (*fail)(), bool failsOnMetadata = false) {
    auto model = std::make_unique<Unreadable>();
    model->fail = fail;
    model->failsOnMetadata = failsOnMetadata;
    support::MemoryModel::Builder builder(std::move(model));
    builder.addShape(0, occurrence("top", {occurrence("z").with("k", Text("v")), occurrence("b"),
                                           occurrence("a")}));
    return HPS::CADModel(builder.finish());
}

TEST_F(FileAttributes, ExceptionsOfTheModelPassThrough) {
    const auto model = unreadable([] { throw HPS::InvalidObjectException("gone"); }, true);
    EXPECT_THROW(rows(model), HPS::InvalidObjectException);
}

class ComponentAttributes : public testing::Test {
protected:
    static std::vector<PartAttributes> parts(const HPS::Component& model) {
        std::vector<PartAttributes> found;
        extract::ExtractComponentAttributes(model, found);
        return found;
    }
    static Names names(const std::vector<PartAttributes>& parts) {
        Names out;
        for (const PartAttributes& part : parts) out.push_back(part.name);
        return out;
    }
    static Names lines(const PartAttributes& part) {
        Names out;
        for (const auto& entry : part.attributes) out.push_back(entry.key + L"=" + entry.value);
        return out;
    }
};

TEST_F(ComponentAttributes, RecordsHaveTheirDefaults) {
    const PartAttributes record;
    EXPECT_EQ(record.name, L"");
    EXPECT_EQ(record.occurrenceIndex, 0);
    EXPECT_EQ(record.fileName, L"");
    EXPECT_TRUE(record.attributes.empty());
    EXPECT_FALSE(record.isDifferent);
    EXPECT_EQ(record.state, ItemDiffState::Unchanged);
    EXPECT_TRUE(record.hasSubcomponents);
    const extract::AttributeEntry entry;
    EXPECT_EQ(entry.key, L"");
    EXPECT_EQ(entry.value, L"");
    EXPECT_EQ(entry.state, ItemDiffState::Unchanged);
}

TEST_F(ComponentAttributes, StatesKeepTheirNumbers) {
    EXPECT_EQ(sizeof(ItemDiffState), 4U);
    EXPECT_EQ(static_cast<int>(ItemDiffState::Unchanged), 0);
    EXPECT_EQ(static_cast<int>(ItemDiffState::OnlyInReference), 1);
    EXPECT_EQ(static_cast<int>(ItemDiffState::OnlyInCompare), 2);
    EXPECT_EQ(static_cast<int>(ItemDiffState::Different), 3);
}

TEST_F(ComponentAttributes, AModelWithoutSubcomponentsGivesNothing) {
    const support::TestServices services;
    EXPECT_TRUE(parts(HPS::CADModel()).empty());
    EXPECT_TRUE(parts(makeModel({})).empty());
    // That is no failure, so nothing is written down.
    EXPECT_TRUE(services.log->entries().empty());
}

TEST_F(ComponentAttributes, EachInstanceHasARecord) {
    const auto found = parts(makeModel({occurrence(
        "top", {part("Bolt").with("k", Text("1")), occurrence("sub", {part("Bolt"), part("Nut")}),
                part("Bolt").with("k", Text("3"))})}));
    EXPECT_EQ(names(found), (Names{L"Bolt", L"Bolt", L"Bolt", L"Nut", L"sub"}));
    // In the order of the model, at their places among all occurrences.
    EXPECT_EQ(found[0].occurrenceIndex, 1);
    EXPECT_EQ(found[1].occurrenceIndex, 3);
    EXPECT_EQ(found[2].occurrenceIndex, 5);
    EXPECT_EQ(found[3].occurrenceIndex, 4);
    EXPECT_EQ(found[4].occurrenceIndex, 2);
    EXPECT_EQ(lines(found[0]), (Names{L"k=1"}));
    EXPECT_EQ(lines(found[2]), (Names{L"k=3"}));
}

TEST_F(ComponentAttributes, AnOccurrenceWithoutMetadataHasARecordToo) {
    const auto found = parts(makeModel({occurrence("top", {part("a")})}));
    ASSERT_EQ(found.size(), 1U);
    EXPECT_TRUE(found[0].attributes.empty());
}

TEST_F(ComponentAttributes, EveryOccurrenceOfTheTopsNameIsSkipped) {
    const auto found = parts(makeModel(
        {occurrence("top", {part("top"), part("Top"), occurrence("sub", {part("top")})})}));
    EXPECT_EQ(names(found), (Names{L"Top", L"sub"}));
    EXPECT_EQ(found[0].occurrenceIndex, 2);
    EXPECT_EQ(names(parts(makeModel({occurrence("", {part(""), part("a")})}))), (Names{L"a"}));
}

TEST_F(ComponentAttributes, OnlyTheFirstComponentOfTheModelCounts) {
    const auto model =
        makeModel({occurrence("first", {part("a")}), occurrence("second", {part("b")})});
    EXPECT_EQ(names(parts(model)), (Names{L"a"}));
}

TEST_F(ComponentAttributes, ATopThatIsNoOccurrenceIsLookedThrough) {
    const auto model = makeModel({item(ComponentType::PartDefinition, "top", {part("a")})});
    EXPECT_EQ(names(parts(model)), (Names{L"a"}));
}

TEST_F(ComponentAttributes, AreSortedByTheirCharactersCodes) {
    const auto model = makeModel({occurrence(
        "top", {part("b"), part("ab"), part("B"), part("a"), part("\xC3\xA4"), part("")})});
    EXPECT_EQ(names(parts(model)), (Names{L"", L"B", L"a", L"ab", L"b", L"\u00E4"}));
}

TEST_F(ComponentAttributes, ManyInstancesKeepTheirOrder) {
    const std::vector<support::ComponentShape> bolts(100, part("Bolt"));
    std::int32_t index = 0;
    for (const PartAttributes& record : parts(makeModel({occurrence("top", bolts)}))) {
        EXPECT_EQ(record.occurrenceIndex, ++index);
    }
    EXPECT_EQ(index, 100);
}

TEST_F(ComponentAttributes, FileNameIsTheWholeText) {
    const auto found = parts(makeModel({occurrence(
        "top", {part("a").with("Filename", Text("C:\\m\\gear.box.prt")),
                part("b").with("filename", Text("x")), part("c").with("Filename", 7)})}));
    ASSERT_EQ(found.size(), 3U);
    EXPECT_EQ(found[0].fileName, L"C:\\m\\gear.box.prt");
    EXPECT_EQ(found[1].fileName, L"");
    EXPECT_EQ(found[2].fileName, L"");
    EXPECT_EQ(lines(found[0]), (Names{L"Filename=C:\\m\\gear.box.prt"}));
}

TEST_F(ComponentAttributes, SubcomponentsAreThoseDirectlyBelow) {
    const auto found = parts(makeModel({occurrence("top", {part("a"), occurrence("b")})}));
    ASSERT_EQ(found.size(), 2U);
    EXPECT_TRUE(found[0].hasSubcomponents);
    EXPECT_FALSE(found[1].hasSubcomponents);
}

TEST_F(ComponentAttributes, AModelOfOnePartGivesARecordOfItsTop) {
    const auto found = parts(makeModel({part("Plate")
                                            .with("Filename", Text("plate.prt"))
                                            .with(" Material ", Text("\xC2\xA0steel  304"))}));
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].name, L"Plate");
    EXPECT_EQ(found[0].occurrenceIndex, 0);
    EXPECT_EQ(found[0].fileName, L"plate.prt");
    EXPECT_TRUE(found[0].hasSubcomponents);
    EXPECT_EQ(lines(found[0]), (Names{L"Filename=plate.prt", L"Material=steel 304"}));
}

TEST_F(ComponentAttributes, ATopWithNothingBelowKeepsTheDefault) {
    const auto found = parts(makeModel({occurrence("Plate").with("k", Text("v"))}));
    ASSERT_EQ(found.size(), 1U);
    EXPECT_TRUE(found[0].hasSubcomponents);
}

TEST_F(ComponentAttributes, AModelOfOnePartWithoutMetadataGivesNothing) {
    EXPECT_TRUE(parts(makeModel({part("Plate")})).empty());
}

TEST_F(ComponentAttributes, RecordsThatAreThereKeepTheTopOut) {
    std::vector<PartAttributes> found(1);
    found[0].name = L"z";
    extract::ExtractComponentAttributes(makeModel({part("Plate").with("k", Text("v"))}), found);
    EXPECT_EQ(names(found), (Names{L"z"}));
    extract::ExtractComponentAttributes(makeModel({occurrence("top", {part("a")})}), found);
    EXPECT_EQ(names(found), (Names{L"a", L"z"}));
}

TEST_F(ComponentAttributes, TheFirstOfEqualKeysWins) {
    const auto found = parts(makeModel({occurrence("top", {part("a")
                                                               .with("Material", Text("first"))
                                                               .with("MATERIAL", Text("second"))
                                                               .with(" material\t", Text("third"))
                                                               .with("\xC3\x84", Text("fourth"))
                                                               .with("\xC3\xA4", Text("fifth"))
                                                               .with("Mass", 1.5)})}));
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(lines(found[0]), (Names{L"Material=first", L"\u00C4=fourth", L"Mass=1.5"}));
}

TEST_F(ComponentAttributes, EmptyTextsStayEmpty) {
    auto shape = part("a").with("", Text("v")).with("k", Text(" "));
    shape.metadata.push_back({"other", Text("hidden"), 0x80001042});
    const auto found = parts(makeModel({occurrence("top", {shape})}));
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(lines(found[0]), (Names{L"=v", L"k=", L"other="}));
}

TEST_F(ComponentAttributes, ControlCharactersBecomeBlanks) {
    const auto found = parts(makeModel(
        {occurrence("top", {part("a").with("k\x01\x02y", Text("a\x1B[31mb\r\nc\x7F"))})}));
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(lines(found[0]), (Names{L"k y=a [31mb c\u007F"}));
}

TEST_F(ComponentAttributes, LongTextsAreNotCut) {
    const Text longText(1 << 20, 'x');
    const Text longKey(5000, 'k');
    const auto found =
        parts(makeModel({occurrence("top", {part(longKey).with(longKey, longText)})}));
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].name.size(), longKey.size());
    EXPECT_EQ(found[0].attributes[0].key.size(), longKey.size());
    EXPECT_EQ(found[0].attributes[0].value.size(), longText.size());
}

// Quadratic time would show as minutes.
TEST_F(ComponentAttributes, AHundredThousandKeysOnOnePartAreSortedOutAtOnce) {
    constexpr std::size_t kKeys = 100000;
    auto shape = part("a");
    for (std::size_t i = 0; i < kKeys; ++i) {
        const Text number = std::to_string(i % (kKeys / 2));
        shape.metadata.push_back({(i < kKeys / 2 ? "key " : "KEY ") + number, Text("v"), 0});
    }
    const auto found = parts(makeModel({occurrence("top", {shape})}));
    ASSERT_EQ(found.size(), 1U);
    ASSERT_EQ(found[0].attributes.size(), kKeys / 2);
    EXPECT_EQ(found[0].attributes.back().key, L"key 49999");
}

TEST_F(ComponentAttributes, TwentyThousandLevelsGiveARecordEach) {
    support::MemoryModel::Builder builder;
    HPS::ComponentId end = builder.addOccurrence(0, "top");
    for (int i = 0; i < 20000; ++i) end = builder.addOccurrence(end, "level");
    const auto found = parts(HPS::CADModel(builder.finish()));
    ASSERT_EQ(found.size(), 20000U);
    EXPECT_FALSE(found.back().hasSubcomponents);
    EXPECT_EQ(found.back().occurrenceIndex, 20000);
}

struct Failure {
    const char* title;
    void (*fail)();
    std::vector<std::string> output;
};
void PrintTo(const Failure& failure, std::ostream* out) {
    *out << failure.title;
}
class ComponentAttributesFailure : public testing::TestWithParam<Failure> {};

TEST_P(ComponentAttributesFailure, IsWrittenDownAndKeepsWhatWasRead) {
    const support::TestServices services;
    std::vector<PartAttributes> found;
    extract::ExtractComponentAttributes(unreadable(GetParam().fail), found);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].name, L"z");
    EXPECT_EQ(found[0].attributes.size(), 1U);
    EXPECT_EQ(services.log->entries(), GetParam().output);
}

INSTANTIATE_TEST_SUITE_P(
    Attributes, ComponentAttributesFailure,
    testing::Values(
        Failure{"InvalidObject",
                [] { throw HPS::InvalidObjectException("gone"); },
                {"debug Invalid object in AttribDataLoader::ExtractComponentAttributes\n",
                 "debug gone"}},
        Failure{"IndexOutOfRange",
                [] { throw HPS::IndexOutOfRangeException("past the end"); },
                {"debug Index out of range in AttribDataLoader::ExtractComponentAttributes\n",
                 "debug past the end"}},
        Failure{
            "OtherOfTheSceneLibrary",
            [] { throw HPS::Exception("other"); },
            {"debug Exception in AttribDataLoader::ExtractComponentAttributes\n", "debug other"}},
        Failure{"Standard",
                [] { throw std::out_of_range("standard"); },
                {"debug Exception in AttribDataLoader::ExtractComponentAttributes\n",
                 "debug standard"}},
        Failure{"WithoutAText",
                [] { throw std::runtime_error(""); },
                {"debug Exception in AttribDataLoader::ExtractComponentAttributes\n"}},
        Failure{"Unknown",
                [] { throw 42; },
                {"debug Unknown exception in AttribDataLoader::ExtractComponentAttributes\n"}}),
    [](const auto& failure) { return std::string(failure.param.title); });

TEST_F(ComponentAttributes, AFailureLeavesTheRecordsUnsorted) {
    std::vector<PartAttributes> found(1);
    found[0].name = L"zz";
    extract::ExtractComponentAttributes(unreadable([] { throw 42; }), found);
    EXPECT_EQ(names(found), (Names{L"zz", L"z"}));
}

}  // namespace
