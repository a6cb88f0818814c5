#include "backends/occt/step/attributes_life_cycle.h"

#include <gtest/gtest.h>

#include "tests/unit/backends/occt/step/attribute_texts.h"

namespace {

using occt::step::readAttributes;
using occt::step::readProducts;
using step_test::attributesOfPart;
using step_test::kContexts;
using step_test::product;
using step_test::shown;
using step_test::StepFile;
using step_test::usage;

using Texts = std::vector<std::string>;

/// A person (#80) of an organisation (#81), both together (#82), and a moment (#83).
const std::string kPeople =
    "#80=PERSON('17','Lovelace','Ada',$,$,$);#81=ORGANIZATION('o','Engines','');"
    "#82=PERSON_AND_ORGANIZATION(#80,#81);#83=DATE_AND_TIME(#84,#85);"
    "#84=CALENDAR_DATE(2024,7,2);#85=LOCAL_TIME(13,54,17.,#86);"
    "#86=COORDINATED_UNIVERSAL_TIME_OFFSET(4,0,.BEHIND.);";

TEST(StepLifeCycle, ApprovalsShowStatusPersonAndDay) {
    EXPECT_EQ(
        attributesOfPart(kPeople + "#50=APPROVAL_STATUS('approved');#51=APPROVAL(#50,'final');"
                                   "#52=CC_DESIGN_APPROVAL(#51,(#11,#12));"
                                   "#53=APPROVAL_ROLE('approver');"
                                   "#54=APPROVAL_PERSON_ORGANIZATION(#82,#51,#53);"
                                   "#55=APPROVAL_DATE_TIME(#83,#51);"),
        (Texts{"Approval Date='2024-02-07'", "Approval Level='final'", "Approval Status='approved'",
               "Approver='Ada Lovelace, Engines'"}));
}

TEST(StepLifeCycle, PersonsAndDatesAreNamedByTheirRole) {
    EXPECT_EQ(
        attributesOfPart(
            kPeople + "#50=PERSON_AND_ORGANIZATION_ROLE('creator');"
                      "#51=APPLIED_PERSON_AND_ORGANIZATION_ASSIGNMENT(#82,#50,(#12));"
                      "#52=ORGANIZATION_ROLE('design_owner');"
                      "#53=APPLIED_ORGANIZATION_ASSIGNMENT(#81,#52,(#10));"
                      "#54=DATE_TIME_ROLE('creation_date');"
                      "#55=CC_DESIGN_DATE_AND_TIME_ASSIGNMENT(#83,#54,(#12));"
                      "#56=DATE_ROLE('release date');#57=APPLIED_DATE_ASSIGNMENT(#84,#56,(#12));"),
        (Texts{"Creation Date='2024-02-07'", "Creator='Ada Lovelace, Engines'",
               "Design Owner='Engines'", "Release Date='2024-02-07'"}));
}

TEST(StepLifeCycle, SecurityIsShownWithThoseWhoDecidedIt) {
    EXPECT_EQ(
        attributesOfPart(kPeople +
                         "#50=SECURITY_CLASSIFICATION_LEVEL('confidential');"
                         "#51=SECURITY_CLASSIFICATION('drawing','patent',#50);"
                         "#52=CC_DESIGN_SECURITY_CLASSIFICATION(#51,(#11));"
                         "#53=PERSON_AND_ORGANIZATION_ROLE('classification_officer');"
                         "#54=CC_DESIGN_PERSON_AND_ORGANIZATION_ASSIGNMENT(#82,#53,(#51));"
                         "#55=APPROVAL_STATUS('approved');#56=APPROVAL(#55,'');"
                         "#57=CC_DESIGN_APPROVAL(#56,(#51));"),
        (Texts{"Classification Officer='Ada Lovelace, Engines'",
               "Security Approval Status='approved'", "Security Classification='confidential'",
               "Security Name='drawing'", "Security Purpose='patent'"}));
}

TEST(StepLifeCycle, WhatNobodyFilledInIsLeftOut) {
    EXPECT_EQ(attributesOfPart("#50=PERSON('UNSPECIFIED','UNSPECIFIED',$,$,$,$);"
                               "#51=ORGANIZATION('none','','');"
                               "#52=PERSON_AND_ORGANIZATION(#50,#51);"
                               "#53=PERSON_AND_ORGANIZATION_ROLE('creator');"
                               "#54=APPLIED_PERSON_AND_ORGANIZATION_ASSIGNMENT(#52,#53,(#12));"),
              Texts{});
}

TEST(StepLifeCycle, YearsThatAreCountedFrom1900AreShownInFull) {
    const auto day = [](const std::string& date) {
        return attributesOfPart("#84=CALENDAR_DATE(" + date +
                                ");#56=DATE_ROLE('day');"
                                "#57=APPLIED_DATE_ASSIGNMENT(#84,#56,(#12));");
    };
    EXPECT_EQ(day("122,31,8"), (Texts{"Day='2022-08-31'"}));
    EXPECT_EQ(day("1997,1,12"), (Texts{"Day='1997-12-01'"}));
    EXPECT_EQ(day("1997,1"), Texts{});
    EXPECT_EQ(day("1997,1.5,1"), Texts{});
}

TEST(StepLifeCycle, UsagesHaveTheirOwn) {
    const StepFile step(kContexts + product(10, "", "top") + product(20, "", "part") +
                        usage(100, 10, 20, 0) + kPeople +
                        "#50=APPROVAL_STATUS('approved');#51=APPROVAL(#50,'');"
                        "#52=APPLIED_APPROVAL_ASSIGNMENT(#51,(#104));");
    const auto attributes = readAttributes(step.file, readProducts(step.file));
    ASSERT_EQ(attributes.usages.count(104), 1U);
    EXPECT_EQ(shown(attributes.usages.at(104)), (Texts{"Approval Status='approved'"}));
}

TEST(StepLifeCycle, CirclesOfApprovalsEnd) {
    EXPECT_EQ(attributesOfPart("#50=APPROVAL_STATUS('approved');#51=APPROVAL(#50,'');"
                               "#52=CC_DESIGN_APPROVAL(#51,(#12,#51));"
                               "#53=SECURITY_CLASSIFICATION('a','',$);"
                               "#54=CC_DESIGN_SECURITY_CLASSIFICATION(#53,(#12,#53));"),
              (Texts{"Approval Status='approved'", "Security Name='a'"}));
}

}  // namespace
