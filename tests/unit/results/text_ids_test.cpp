#include "tests/support/numbered_texts.h"
#include "tests/unit/results/results_fixture.h"

namespace {

using results::ResultSection;
using Texts = std::vector<std::wstring>;

/// Which of the module's texts stands where.
class ResultTexts : public ResultsTest {
protected:
    ResultTexts() { support::NumberedTexts::use(); }
    ~ResultTexts() override { bxt::services().strings.reset(); }

    Texts headers(int id) {
        Texts all;
        for (std::size_t i = 0; i < list(id).columnCount(); ++i) {
            all.push_back(list(id).columnText(i));
        }
        return all;
    }
};

TEST_F(ResultTexts, OfTheCopyInEverySection) {
    create();
    setModels({"Bolt"}, {"Bolt"});
    dialog->EnsureTrees();
    EXPECT_EQ(dialog->CopyText(),
              L"<223>\r\n\r\n<221>     <307>\r\n\r\n<222>     <307>\r\n\r\n"
              L"<1160>\r\n\r\n<233>     <232>     <231>\r\n\r\n<233>     <232>     <231>\r\n\r\n"
              L"<1346>\r\n\r\n<1156> - <1346>\r\nTop\r\n        |- Bolt\r\n\r\n"
              L"<1157> - <1346>\r\nTop\r\n        |- Bolt\r\n\r\n"
              L"<159>\r\n\r\n<240>     <241>\r\n\r\n<240>     <241>\r\n\r\n"
              L"<249>\r\n\r\n<233>     <232>     <242>\r\n\r\n<233>     <232>     <242>\r\n\r\n");
}

TEST_F(ResultTexts, OfTheCopyOfPartsHaveAHeadingThatIsNotTranslated) {
    create();
    dialog->SetPartAttributeData({part(L"P", {})}, {});
    dialog->ShowSection(ResultSection::Attributes);
    window().press(1314);
    EXPECT_NE(dialog->CopyText().find(L"Part Level Attributes\r\n\r\nP\r\n"
                                      L"<240>     Reference     Compare\r\n\r\n<249>\r\n"),
              std::wstring::npos);
}

TEST_F(ResultTexts, OfTheHiddenListAndOfTheTabsAreTheCaptions) {
    create();
    const Texts captions = {L"<1330>", L"<1160>", L"<1347>", L"<1348>", L"<275>"};
    for (std::size_t i = 0; i < 5; ++i) EXPECT_EQ(window().listBox(1301)->text(i), captions[i]);
    const auto page = window().painted();
    ASSERT_EQ(page.texts().size(), 5U);
    for (const auto& [tab, section] :
         {std::pair{0U, 0U}, std::pair{1U, 1U}, {2U, 4U}, {3U, 2U}, {4U, 3U}}) {
        EXPECT_EQ(page.texts()[tab].text, captions[section]);
    }
}

TEST_F(ResultTexts, OfTheHeadersOfAllEightLists) {
    create();
    for (const int id : {1305, 1306}) {
        EXPECT_EQ(headers(id), (Texts{L"<233>", L"<232>", L"<231>"}));
    }
    for (const int id : {1309, 1310}) EXPECT_EQ(headers(id), (Texts{L"<240>", L"<241>"}));
    for (const int id : {1315, 1316}) {
        EXPECT_EQ(headers(id), (Texts{L"<233>", L"<1331>", L"<241>"}));
    }
    EXPECT_EQ(headers(1319), (Texts{L"<221>", L"<241>"}));
    EXPECT_EQ(headers(1320), (Texts{L"<222>", L"<241>"}));
}

TEST_F(ResultTexts, OfLabelsAndRadios) {
    create();
    for (const int id : {1307, 1311, 1317, 1321, 1362}) {
        EXPECT_EQ(window().text(id), L"<1333>") << id;
        EXPECT_EQ(window().text(id + 1), L"<137>") << id;
    }
    EXPECT_EQ(window().text(1313), L"<1344>");
    EXPECT_EQ(window().text(1314), L"<1345>");
}

TEST_F(ResultTexts, OfTheStatusBar) {
    create();
    auto record = std::make_shared<bxtsg::SCComprae>();
    document->attach(bxtsg::code::Compare, record);
    setModels({"Bolt"}, {"Bolt"});
    services.log->clear();
    window().press(1303);
    clipboard->setTaken(true);
    window().press(1303);
    user->savePath = L"/r.csv";
    window().press(1302);
    user->savePath = L"/r.txt";
    window().press(1302);
    std::vector<std::string> statuses;
    for (const std::string& entry : services.log->entries()) {
        if (entry.rfind("status ", 0) == 0) statuses.push_back(entry.substr(7));
    }
    EXPECT_EQ(statuses, (std::vector<std::string>{"<1167>", "<1168>", "<1164>", "<1165>/r.csv",
                                                  "<1164>", "<1166>/r.txt"}));
}

}  // namespace
