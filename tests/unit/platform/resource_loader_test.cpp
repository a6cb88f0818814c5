#include "platform/bxt/resource_loader.h"

#include <gtest/gtest.h>

#include <map>

#include "platform/bxt/services.h"

namespace {

using bxtsgutils::ResourceLoader;

const std::wstring kModule = L"compareplugin.dll";

class Table : public bxt::StringTable {
public:
    std::optional<std::wstring> text(std::uint32_t id,
                                     const std::wstring& language) const override {
        const auto found = texts.find({id, language});
        if (found == texts.end()) return std::nullopt;
        return found->second;
    }
    std::map<std::pair<std::uint32_t, std::wstring>, std::wstring> texts = {
        {{1, L"en"}, L"Compare"},         {{1, L"de"}, L"Vergleichen"},
        {{2, L"en"}, L"Only English"},    {{3, L"de"}, L"Nur deutsch"},
        {{4, L"en"}, L"Blank in German"}, {{4, L"de"}, L""}};
};

class Resources : public testing::Test {
protected:
    Resources() {
        bxt::services() = bxt::Services();
        bxt::services().strings = std::make_shared<Table>();
        bxt::services().language = L"de";
    }
    ~Resources() override { bxt::services() = bxt::Services(); }
};

TEST_F(Resources, TextComesInTheUsersLanguage) {
    EXPECT_EQ(ResourceLoader::getString(kModule, 1), L"Vergleichen");
    bxt::services().language = L"en";
    EXPECT_EQ(ResourceLoader::getString(kModule, 1), L"Compare");
    EXPECT_EQ(ResourceLoader::getCurrentLocaleID(), L"en");
}

TEST_F(Resources, MissingTranslationFallsBackToEnglish) {
    EXPECT_EQ(ResourceLoader::getString(kModule, 2), L"Only English");
    bxt::services().language = L"xx";
    EXPECT_EQ(ResourceLoader::getString(kModule, 1), L"Compare");
}

TEST_F(Resources, EmptyTranslationIsATranslation) {
    EXPECT_EQ(ResourceLoader::getString(kModule, 4), L"");
}

TEST_F(Resources, EnglishTextIgnoresTheLanguage) {
    EXPECT_EQ(ResourceLoader::getEngString(kModule, 1), L"Compare");
    EXPECT_EQ(ResourceLoader::getEngString(kModule, 3), L"");
}

TEST_F(Resources, UnknownIdModuleOrTableGivesAnEmptyText) {
    EXPECT_EQ(ResourceLoader::getString(kModule, 99), L"");
    EXPECT_EQ(ResourceLoader::getString(L"other.dll", 1), L"");
    EXPECT_EQ(ResourceLoader::getEngString(L"", 1), L"");
    bxt::services().strings = nullptr;
    EXPECT_EQ(ResourceLoader::getString(kModule, 1), L"");
}

TEST_F(Resources, ImageFitsTheDisplay) {
    const auto imageAt = [](int dpi) {
        bxt::services().dotsPerInch = dpi;
        return ResourceLoader::getImage(100, 125, 150, 200);
    };
    EXPECT_EQ(imageAt(72), 100U);
    EXPECT_EQ(imageAt(96), 100U);
    EXPECT_EQ(imageAt(119), 100U);
    EXPECT_EQ(imageAt(120), 125U);
    EXPECT_EQ(imageAt(144), 150U);
    EXPECT_EQ(imageAt(191), 150U);
    EXPECT_EQ(imageAt(192), 200U);
    EXPECT_EQ(imageAt(288), 200U);
    EXPECT_EQ(ResourceLoader::dotsPerInch(), 288);
}

}  // namespace
