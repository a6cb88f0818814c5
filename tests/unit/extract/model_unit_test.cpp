#include "extract/model_unit.h"

#include <cmath>
#include <limits>

#include "tests/unit/extract/measured_model.h"

namespace {

using support::ComponentShape;
using support::item;
using support::occurrence;

namespace ComponentType = HPS::ComponentType;

constexpr double kEpsilon = 2.220446049250313e-16;

struct NamedUnit {
    double factor = 0.0;
    std::wstring name;
    bool operator==(const NamedUnit&) const = default;
};
const NamedUnit kMm{0.001, L"mm"}, kCm{0.01, L"cm"}, kM{1.0, L"m"}, kKm{1000.0, L"Km"},
    kIn{0.0254, L"in"}, kFt{0.3048, L"ft"}, kYd{0.9144, L"yd"}, kMi{1609.34, L"mi"};

class OwningOccurrence : public testing::Test {};

TEST_F(OwningOccurrence, OfAnOccurrenceIsItself) {
    const auto model = support::makeModel({occurrence("top", {support::part("a")})});
    const HPS::Component a = model.GetSubcomponents()[0].GetSubcomponents()[0];
    EXPECT_EQ(extract::FindOwningOccurrence(a), a);
}

TEST_F(OwningOccurrence, OfABodyIsTheNearestAbove) {
    const auto model = support::makeModel({occurrence(
        "top", {occurrence("a", {item(ComponentType::PartDefinition, "",
                                      {item(ComponentType::RepresentationItemMask, "set",
                                            {item(ComponentType::BrepModel, "S")})})})})});
    const HPS::Component body = model.GetAllSubcomponents(ComponentType::BrepModel)[0];
    EXPECT_EQ(extract::FindOwningOccurrence(body).GetName().GetBytes(), "a");
}

TEST_F(OwningOccurrence, IsEmptyWhereNoneIs) {
    const auto model = support::makeModel({item(ComponentType::BrepModel, "S")});
    EXPECT_TRUE(extract::FindOwningOccurrence(model.GetSubcomponents()[0]).Empty());
    EXPECT_TRUE(extract::FindOwningOccurrence(model).Empty());
    EXPECT_TRUE(extract::FindOwningOccurrence(HPS::Component()).Empty());
}

// Another way up than the first owner's is never taken.
TEST_F(OwningOccurrence, GoesAlongFirstOwners) {
    class TwoOwners : public support::MemoryModel {
    public:
        std::vector<HPS::ComponentId> owners(HPS::ComponentId id) const override {
            if (id == 3) return {2, 1, 0};
            return id == 2 ? std::vector<HPS::ComponentId>{0, 1} : std::vector<HPS::ComponentId>{};
        }
    };
    support::MemoryModel::Builder builder(std::make_unique<TwoOwners>());
    builder.addShape(0, occurrence("a", {item(ComponentType::PartDefinition, "",
                                              {item(ComponentType::BrepModel, "S")})}));
    const HPS::CADModel model(builder.finish());
    const HPS::Component body = model.GetAllSubcomponents(ComponentType::BrepModel)[0];
    EXPECT_TRUE(extract::FindOwningOccurrence(body).Empty());
}

class Units : public WithExchangeLibrary {
protected:
    NamedUnit unitOf(const HPS::Component& component) {
        NamedUnit unit{-1.0, L"what stood before"};
        extract::ModelUnit(job_, component, unit.factor, unit.name);
        return unit;
    }
    static HPS::Component firstOf(const ComponentShape& shape) {
        return measuredModel({shape}).GetSubcomponents()[0];
    }
    NamedUnit unitOfText(const std::string& text) {
        return unitOf(firstOf(occurrence("a").with("Units", text).with("#unit", 25.4)));
    }
    NamedUnit unitOfLength(double unitMm) {
        return unitOf(firstOf(occurrence("a").with("#unit", unitMm)));
    }
};

TEST_F(Units, MetadataNamesEachUnit) {
    EXPECT_EQ(unitOfText("Millimeter"), kMm);
    EXPECT_EQ(unitOfText("Centimeter"), kCm);
    EXPECT_EQ(unitOfText("Meter"), kM);
    EXPECT_EQ(unitOfText("Kilometer"), kKm);
    EXPECT_EQ(unitOfText("Inch"), kIn);
    EXPECT_EQ(unitOfText("Foot"), kFt);
    EXPECT_EQ(unitOfText("Yard"), kYd);
    EXPECT_EQ(unitOfText("Mile"), kMi);
    EXPECT_TRUE(libraryScript().calls.empty());
}

TEST_F(Units, UnknownTextsAreMetresWithoutALookAtTheModel) {
    for (const std::string text :
         {"Micrometer", "millimeter", "mm", " Inch", "Inch ", "unknown", "\x01", "\xFF\xFE"}) {
        EXPECT_EQ(unitOfText(text), kM) << text;
    }
    EXPECT_EQ(unitOfText(std::string(1 << 20, 'x')), kM);
    EXPECT_TRUE(libraryScript().calls.empty());
}

TEST_F(Units, UnknownCountsAsNoMetadata) {
    EXPECT_EQ(unitOfText("Unknown"), kIn);
    EXPECT_EQ(unitOfText(""), kIn);
    EXPECT_EQ(unitOf(firstOf(occurrence("a").with("Units", 3.0).with("#unit", 10.0))), kCm);
}

TEST_F(Units, TheOwningOccurrenceDecidesForABody) {
    const auto model =
        measuredModel({occurrence("top", {support::part("a").with("Units", std::string("Foot"))})
                           .with("Units", std::string("Inch"))});
    EXPECT_EQ(unitOf(model.GetAllSubcomponents(ComponentType::BrepModel)[0]), kFt);
    EXPECT_EQ(unitOf(model.GetSubcomponents()[0]), kIn);
}

TEST_F(Units, TheOwningOccurrencesEntityIsAskedForABody) {
    const auto model = measuredModel({support::part("a").with("#unit", 304.8)});
    EXPECT_EQ(unitOf(model.GetAllSubcomponents(ComponentType::BrepModel)[0]), kFt);
}

TEST_F(Units, LengthsNameTheirUnit) {
    EXPECT_EQ(unitOfLength(1.0), kMm);
    EXPECT_EQ(unitOfLength(10.0), kCm);
    EXPECT_EQ(unitOfLength(1000.0), kM);
    EXPECT_EQ(unitOfLength(1000000.0), kKm);
    EXPECT_EQ(unitOfLength(304.8), kFt);
    EXPECT_EQ(unitOfLength(25.4), kIn);
    EXPECT_EQ(unitOfLength(1609344.0), kMi);
}

TEST_F(Units, LengthsAreExactForSomeAndRoundedForOthers) {
    EXPECT_EQ(unitOfLength(1.0 + kEpsilon), kM);
    EXPECT_EQ(unitOfLength(1.0 - kEpsilon / 2), kMm);
    // From 10 on, no other number is as near as that.
    for (const double unitMm : {10.0, 1000000.0, 1609344.0}) {
        EXPECT_EQ(unitOfLength(std::nextafter(unitMm, 0.0)), kM) << unitMm;
        EXPECT_EQ(unitOfLength(std::nextafter(unitMm, 1e9)), kM) << unitMm;
    }
    EXPECT_EQ(unitOfLength(304.800999), kFt);
    EXPECT_EQ(unitOfLength(304.799001), kFt);
    EXPECT_EQ(unitOfLength(304.801001), kM);
    EXPECT_EQ(unitOfLength(25.400999), kIn);
    EXPECT_EQ(unitOfLength(25.399001), kIn);
    EXPECT_EQ(unitOfLength(25.401001), kM);
}

TEST_F(Units, OtherLengthsAreMetres) {
    // The yard among them.
    for (const double unitMm :
         {914.4, 0.001, -1.0, 1609340.0, 1e300, std::numeric_limits<double>::infinity(),
          std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ(unitOfLength(unitMm), kM) << unitMm;
    }
}

TEST_F(Units, AnOccurrenceWithoutALengthAndWithoutADocumentIsInMetres) {
    EXPECT_EQ(unitOfLength(0.0), kM);
    EXPECT_EQ(job_.modelUnitCache, -1.0);
    EXPECT_EQ(extract::ProductOccurrenceUnit(job_, firstOf(occurrence("a").with("#unit", 0.0))),
              0.0);
    job_.sourceFactory.reset();
    EXPECT_EQ(unitOfLength(0.0), kM);
    EXPECT_EQ(job_.modelUnitCache, -1.0);
}

TEST_F(Units, AComponentWithoutAnOccurrenceIsInMetres) {
    EXPECT_EQ(unitOf(firstOf(item(ComponentType::BrepModel, "S").with("#unit", 1.0))), kM);
}

TEST_F(Units, TheDocumentsFileDecidesWhereTheOccurrenceDoesNot) {
    setDocumentFile(L"/models/\u00E4.stp");
    EXPECT_EQ(unitOfLength(0.0), kIn);
    EXPECT_EQ(job_.modelUnitCache, 25.4);
    EXPECT_EQ(
        libraryScript().calls,
        (std::vector<std::string>{"occurrence", "utf8 1040", "load /models/\xC3\xA4.stp", "file"}));
}

TEST_F(Units, TheFileIsLoadedOnceInTheJobsLife) {
    setDocumentFile(L"first.stp");
    EXPECT_EQ(unitOfLength(0.0), kIn);
    setDocumentFile(L"second.stp");
    libraryScript().fileUnitMm = 10.0;
    EXPECT_EQ(unitOfLength(0.0), kIn);
    document_->attach(bxtsg::code::Info, nullptr);
    EXPECT_EQ(unitOfLength(0.0), kIn);
    EXPECT_EQ(libraryScript().count("load"), 1U);
}

TEST_F(Units, AnOccurrencesOwnLengthComesBeforeTheFiles) {
    job_.modelUnitCache = 10.0;
    EXPECT_EQ(unitOfLength(25.4), kIn);
    EXPECT_EQ(unitOfLength(0.0), kCm);
    job_.modelUnitCache = 0.0;
    EXPECT_EQ(unitOfLength(0.0), kM);
    EXPECT_EQ(libraryScript().count("load"), 0U);
}

TEST_F(Units, AnOccurrenceWithALengthNeedsNoFile) {
    setDocumentFile(L"document.stp");
    EXPECT_EQ(unitOfLength(10.0), kCm);
    EXPECT_EQ(job_.modelUnitCache, -1.0);
    EXPECT_EQ(libraryScript().calls, (std::vector<std::string>{"occurrence"}));
}

TEST_F(Units, AnOccurrenceThatTheLibraryRefusesHasNoLength) {
    job_.modelUnitCache = 10.0;
    EXPECT_EQ(unitOf(firstOf(occurrence("a").with("#unit", 25.4).with("#fails", true))), kCm);
    EXPECT_EQ(unitOf(firstOf(occurrence("a"))), kCm);
    EXPECT_EQ(libraryScript().count("occurrence"), 1U);
}

TEST_F(Units, AFileThatCannotBeReadIsTriedOnce) {
    for (const char* call : {"utf8", "load", "file"}) {
        setDocumentFile(L"broken.stp");
        job_.modelUnitCache = -1.0;
        libraryScript() = {};
        libraryScript().failing = call;
        EXPECT_EQ(unitOfLength(0.0), kM) << call;
        EXPECT_EQ(unitOfLength(0.0), kM) << call;
        EXPECT_EQ(job_.modelUnitCache, 0.0) << call;
        EXPECT_EQ(libraryScript().count(call), 1U) << call;
    }
}

TEST_F(Units, LongPathsAreNotCut) {
    const std::wstring path(3000, L'\u6B6F');
    setDocumentFile(path);
    EXPECT_EQ(unitOfLength(0.0), kIn);
    EXPECT_EQ(libraryScript().calls.at(2).size(), std::string("load ").size() + 9000);
}

TEST_F(Units, WithoutTheLibraryMetadataStillDecides) {
    extract::importLibrary().Release();
    EXPECT_EQ(unitOfText("Inch"), kIn);
    EXPECT_EQ(unitOfLength(25.4), kM);
}

}  // namespace
