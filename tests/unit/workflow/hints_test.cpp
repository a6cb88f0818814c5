#include "tests/unit/workflow/workflow_fixture.h"

namespace {

class Hints : public WorkflowTest {
protected:
    void send(std::uint16_t code, const std::shared_ptr<bxt::IFrame>& frame) {
        const bxtui::Hint hint(code, frame);
        compare->update(&hint);
    }
    std::shared_ptr<support::FakeFrame> document(const std::wstring& file = L"/data/x.stp") {
        return host->addDocument("x", file);
    }
    const std::wstring kSettings = L"Software\\Bextora\\bextora\\Settings\\Compare";
};

TEST_F(Hints, NullDoesNothing) {
    compare->update(nullptr);
    EXPECT_EQ(state().activeFactory, nullptr);
    EXPECT_TRUE(log().entries().empty());
}

TEST_F(Hints, ActivationTakesTheFactoryAndTellsDrawingsFromModels) {
    for (const std::uint16_t code : std::vector<std::uint16_t>{1, 3, 18}) {
        const auto drawing = document(L"/data/plan.DWG");
        send(code, drawing);
        EXPECT_EQ(state().activeFactory, drawing->factory()) << code;
        EXPECT_TRUE(state().activeIs2D) << code;
        const auto model = document();
        send(code, model);
        EXPECT_EQ(state().activeFactory, model->factory()) << code;
        EXPECT_FALSE(state().activeIs2D) << code;
    }
}

TEST_F(Hints, ActivationWithoutAnInfoKeepsTheKindOfDocument) {
    send(1, document(L"/data/plan.dwg"));
    const auto bare = document();
    bare->document()->schemas.clear();
    send(1, bare);
    EXPECT_TRUE(state().activeIs2D);
    EXPECT_EQ(state().activeFactory, bare->factory());
}

TEST_F(Hints, ActivationWithoutAFrameEmptiesTheFactory) {
    for (const std::uint16_t code : std::vector<std::uint16_t>{1, 3, 18, 24, 25}) {
        send(1, document());
        send(code, nullptr);
        EXPECT_EQ(state().activeFactory, nullptr) << code;
    }
}

TEST_F(Hints, TwentyFourDisablesTheFrame) {
    const auto frame = document();
    send(24, frame);
    EXPECT_EQ(state().activeFactory, frame->factory());
    EXPECT_FALSE(frameEnabled(*frame->document()));
    frame->document()->schemas.clear();
    send(24, frame);
    EXPECT_EQ(state().activeFactory, frame->factory());
}

TEST_F(Hints, TwentyFiveDisablesTheFrameOnlyWhileAResultIsPending) {
    const auto idle = document();
    send(25, idle);
    EXPECT_EQ(state().activeFactory, idle->factory());
    EXPECT_TRUE(frameEnabled(*idle->document()));

    const auto during = document();
    onHint = [&](const bxtui::Hint& hint) {
        if (hint.code() == 3 && state().resultPending) send(25, during);
    };
    runPair();
    EXPECT_FALSE(frameEnabled(*during->document()));
}

TEST_F(Hints, TwentyFiveNamesAResultDocumentAfterItsReference) {
    const auto frame = document(L"/results/1.xbf");
    const auto record = std::make_shared<bxtsg::SCComprae>();
    record->setFiles(L"/data/c.step", L"/data/r.v2.step");
    frame->document()->schemas[29] = record;
    send(25, frame);
    EXPECT_EQ(frame->document()->getAs<bxtsg::SCInfo>(8)->file(), L"r.v2");
}

TEST_F(Hints, TwentyFiveLeavesTheFileOfOtherDocumentsAlone) {
    const auto ordinary = document();
    send(25, ordinary);
    EXPECT_EQ(ordinary->document()->getAs<bxtsg::SCInfo>(8)->file(), L"/data/x.stp");

    const auto withoutInfo = document();
    withoutInfo->document()->schemas.erase(8);
    withoutInfo->document()->schemas[29] = std::make_shared<bxtsg::SCComprae>();
    send(25, withoutInfo);
    EXPECT_EQ(withoutInfo->document()->get(8), nullptr);
}

TEST_F(Hints, TwentyFiveWithoutADocFrameSchemaOnlyTakesTheFactory) {
    const auto frame = document();
    frame->document()->schemas.erase(20);
    const auto record = std::make_shared<bxtsg::SCComprae>();
    record->setFiles(L"/data/c.step", L"/data/r.step");
    frame->document()->schemas[29] = record;
    send(25, frame);
    EXPECT_EQ(state().activeFactory, frame->factory());
    EXPECT_EQ(frame->document()->getAs<bxtsg::SCInfo>(8)->file(), L"/data/x.stp");
}

TEST_F(Hints, FiveOfTheResultDocumentHidesTheDialogAndKeepsIt) {
    runPair();
    const auto resultFrame = host->active;
    ASSERT_EQ(state().resultFactory, resultFrame->factory());
    ASSERT_TRUE(results()->visible);
    send(5, resultFrame);
    EXPECT_FALSE(results()->visible);
    EXPECT_NE(state().resultsDialog, nullptr);
    EXPECT_TRUE(state().resultsDialog->HasWindow());
    EXPECT_EQ(state().resultFactory, nullptr);
}

TEST_F(Hints, FiveOfAnotherDocumentLeavesTheDialogInPlace) {
    runPair();
    const auto other = document();
    other->document()->getAs<bxt::SCDocFrame>(20)->frameEnabled = false;
    send(5, other);
    EXPECT_TRUE(results()->visible);
    EXPECT_NE(state().resultFactory, nullptr);
    EXPECT_TRUE(frameEnabled(*other->document()));
}

TEST_F(Hints, FiveEnablesTheFrameOfTheResultDocumentToo) {
    runPair();
    activeDocument().getAs<bxt::SCDocFrame>(20)->frameEnabled = false;
    send(5, host->active);
    EXPECT_TRUE(frameEnabled(activeDocument()));
}

TEST_F(Hints, FiveWithoutAFrameDoesNothing) {
    runPair();
    send(5, nullptr);
    EXPECT_TRUE(results()->visible);
    EXPECT_NE(state().resultFactory, nullptr);
}

TEST_F(Hints, FiveWithoutAFrameIsNotTakenForAnEmptyResult) {
    runPair();
    send(5, host->active);
    ASSERT_EQ(state().resultFactory, nullptr);
    state().resultsDialog->Show();
    send(5, nullptr);
    EXPECT_TRUE(results()->visible);
}

TEST_F(Hints, NineteenClearsTheStatusText) {
    host->setStatusText(L"busy");
    send(19, document());
    EXPECT_EQ(host->statusText, L"");
}

TEST_F(Hints, NineteenWithoutAnApplicationPointerDoesNothing) {
    host->setStatusText(L"busy");
    host->data->application = nullptr;
    send(19, document());
    const auto bare = document();
    bare->document()->schemas.clear();
    send(19, bare);
    send(19, nullptr);
    EXPECT_EQ(host->statusText, L"busy");
}

TEST_F(Hints, TwentyOneClearsOneFlagOfTheHostsSettings) {
    bxt::Settings before = *host->data->settings;
    host->data->settings->viewUpdatePending = true;
    send(21, document());
    EXPECT_FALSE(host->data->settings->viewUpdatePending);
    EXPECT_EQ(host->data->settings->psCompare, before.psCompare);
    host->data->settings.reset();
    send(21, document());
    send(21, nullptr);
}

TEST_F(Hints, TwentySevenSavesTheSwitchesOfTheActiveDocument) {
    host->data->settings->pmiCompare = false;
    send(1, document());
    send(27, nullptr);
    EXPECT_EQ(services.store->keys[kSettings][L"PMICompare"], 0U);
    EXPECT_EQ(services.store->keys[kSettings][L"PSCompare"], 1U);
}

TEST_F(Hints, TwentySevenWithoutAnActiveDocumentSavesNothing) {
    send(27, document());
    EXPECT_TRUE(services.store->keys.empty());
    const auto bare = document();
    bare->document()->schemas.clear();
    send(1, bare);
    send(27, bare);
    EXPECT_TRUE(services.store->keys.empty());
}

TEST_F(Hints, OtherCodesDoNothing) {
    send(1, document());
    const auto before = state().activeFactory;
    log().clear();
    const auto other = document(L"/data/plan.dwg");
    other->document()->getAs<bxt::SCDocFrame>(20)->frameEnabled = false;
    for (int code = 0; code <= 300; ++code) {
        switch (code) {
            case 1:
            case 3:
            case 5:
            case 18:
            case 19:
            case 21:
            case 24:
            case 25:
            case 27: continue;
            default: send(static_cast<std::uint16_t>(code), other);
        }
        ASSERT_EQ(state().activeFactory, before) << code;
        ASSERT_FALSE(state().activeIs2D) << code;
        ASSERT_FALSE(frameEnabled(*other->document())) << code;
    }
    send(65535, other);
    EXPECT_TRUE(log().entries().empty());
}

TEST_F(Hints, ThreeEndsTheWaitForAResultBeforeItDeliversTheRecord) {
    std::vector<bool> pendingBefore;
    std::vector<bool> recordBefore;
    onHint = [&](const bxtui::Hint& hint) {
        if (hint.code() != 3) return;
        pendingBefore.push_back(state().resultPending);
        recordBefore.push_back(state().pendingRecord != nullptr);
    };
    runPair();
    EXPECT_EQ(pendingBefore, (std::vector<bool>{true, false}));
    EXPECT_EQ(recordBefore, (std::vector<bool>{true, true}));
    EXPECT_EQ(state().pendingRecord, nullptr);
}

TEST_F(Hints, OneAndEighteenNeverDeliverTheRecord) {
    bool kept = false;
    host->onOpenDocument = [&] {
        send(1, document());
        send(18, document());
        kept = state().pendingRecord != nullptr;
    };
    runPair();
    EXPECT_TRUE(kept);
}

TEST_F(Hints, AdoptionNeedsAHintAFactoryAndARecord) {
    EXPECT_FALSE(compare->AdoptPendingRecord(nullptr));
    const auto frame = document();
    const bxtui::Hint hint(3, frame);
    const bxtui::Hint frameless(3, nullptr);
    EXPECT_FALSE(compare->AdoptPendingRecord(&hint));
    EXPECT_EQ(frame->document()->get(29), nullptr);

    bool framelessAdopted = true;
    bool nullAdopted = true;
    bool adopted = false;
    host->onOpenDocument = [&] {
        framelessAdopted = compare->AdoptPendingRecord(&frameless);
        nullAdopted = compare->AdoptPendingRecord(nullptr);
        EXPECT_NE(state().pendingRecord, nullptr);
        EXPECT_NE(workflow::shared().sharedComparer, nullptr);
        adopted = compare->AdoptPendingRecord(&hint);
        EXPECT_EQ(state().pendingRecord, nullptr);
        EXPECT_EQ(workflow::shared().sharedComparer, nullptr);
    };
    runPair();
    EXPECT_FALSE(framelessAdopted);
    EXPECT_FALSE(nullAdopted);
    EXPECT_TRUE(adopted);
    EXPECT_NE(frame->document()->get(29), nullptr);
}

}  // namespace
