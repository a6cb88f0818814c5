#include "extract/import_library.h"

#include <cstring>

#include <gtest/gtest.h>

#include "tests/support/scripted_host_services.h"

namespace {

using extract::ImportLibrary;

constexpr const char* kNames[] = {
    "A3DMiscUnicodeToUTF8",         "A3DAsmModelFileLoadFromFile",
    "A3DAsmModelFileGet",           "A3DAsmProductOccurrenceGet",
    "A3DComputePhysicalProperties", "A3DComputePolyBrepPhysicalProperties",
};

std::string missingEntry;

A3DStatus unicodeToUtf8(const wchar_t*, std::size_t capacity, char* utf8) {
    std::strncpy(utf8, "utf8", capacity);
    return 0;
}
A3DStatus loadFromFile(const char*, const void** modelFile) {
    static const int model = 1;
    *modelFile = &model;
    return 0;
}
A3DStatus modelFileGet(const void*, A3DAsmModelFileData* data) {
    data->unit = 10.0;
    return 0;
}
A3DStatus occurrenceGet(const void*, A3DAsmProductOccurrenceData* data) {
    data->unit = 25.4;
    return 0;
}
A3DStatus properties(const void*, A3DPhysicalPropertiesData* data) {
    data->volume = 1.5;
    return 0;
}
A3DStatus polyProperties(const void*, A3DPhysicalPropertiesData*) {
    return 7;
}

void* getAddress(const char* name) {
    if (missingEntry == name) return nullptr;
    void* const functions[] = {
        reinterpret_cast<void*>(unicodeToUtf8), reinterpret_cast<void*>(loadFromFile),
        reinterpret_cast<void*>(modelFileGet),  reinterpret_cast<void*>(occurrenceGet),
        reinterpret_cast<void*>(properties),    reinterpret_cast<void*>(polyProperties),
    };
    for (std::size_t i = 0; i < std::size(kNames); ++i) {
        if (std::strcmp(name, kNames[i]) == 0) return functions[i];
    }
    return nullptr;
}

void* noAddress(const char*) {
    return nullptr;
}

class ImportLibraryBinding : public testing::Test {
protected:
    ImportLibraryBinding() { missingEntry.clear(); }
    void install(A3DGetProcAddressFunction entry) {
        services.modules->libraries[L"A3DLIBS.dll"] = {
            {"A3DGetProcAddress", reinterpret_cast<void*>(entry)}};
    }
    bool bind() {
        testing::internal::CaptureStderr();
        const bool bound = library.Bind();
        errors = testing::internal::GetCapturedStderr();
        return bound;
    }
    static std::string allMissing() {
        std::string text;
        for (const char* name : kNames)
            text += std::string("ERROR: function ") + name + " is null\n";
        return text + "ERROR: 6 null functions\n";
    }
    void expectFailedCalls() {
        char utf8[8] = "before";
        EXPECT_NE(library.MiscUnicodeToUTF8(L"x", sizeof utf8, utf8), 0);
        EXPECT_STREQ(utf8, "before");
        const void* model = &utf8;
        EXPECT_NE(library.AsmModelFileLoadFromFile("x", &model), 0);
        EXPECT_EQ(model, &utf8);
        A3DAsmModelFileData file = {sizeof file, -1.0};
        EXPECT_NE(library.AsmModelFileGet(&utf8, &file), 0);
        EXPECT_EQ(file.unit, -1.0);
        A3DAsmProductOccurrenceData occurrence = {sizeof occurrence, -1.0};
        EXPECT_NE(library.AsmProductOccurrenceGet(&utf8, &occurrence), 0);
        EXPECT_EQ(occurrence.unit, -1.0);
        A3DPhysicalPropertiesData data = {sizeof data, 0.0, -1.0, -1.0};
        EXPECT_NE(library.ComputePhysicalProperties(&utf8, &data), 0);
        EXPECT_NE(library.ComputePolyBrepPhysicalProperties(&utf8, &data), 0);
        EXPECT_EQ(data.volume, -1.0);
    }

    support::TestServices services;
    ImportLibrary library;
    std::string errors;
};

TEST_F(ImportLibraryBinding, ACompleteLibraryIsBoundSilently) {
    install(getAddress);
    EXPECT_TRUE(bind());
    EXPECT_TRUE(library.Bound());
    EXPECT_EQ(errors, "");
    EXPECT_EQ(services.modules->loaded, 1);
    EXPECT_EQ(
        services.log->entries(),
        (std::vector<std::string>{"modules.load A3DLIBS.dll", "module.symbol A3DGetProcAddress"}));
}

TEST_F(ImportLibraryBinding, CallsReachTheLibrary) {
    install(getAddress);
    ASSERT_TRUE(bind());
    char utf8[8] = {};
    EXPECT_EQ(library.MiscUnicodeToUTF8(L"x", sizeof utf8, utf8), 0);
    EXPECT_STREQ(utf8, "utf8");
    const void* model = nullptr;
    EXPECT_EQ(library.AsmModelFileLoadFromFile("x", &model), 0);
    EXPECT_NE(model, nullptr);
    A3DAsmModelFileData file = {sizeof file, 0.0};
    EXPECT_EQ(library.AsmModelFileGet(model, &file), 0);
    EXPECT_EQ(file.unit, 10.0);
    A3DAsmProductOccurrenceData occurrence = {sizeof occurrence, 0.0};
    EXPECT_EQ(library.AsmProductOccurrenceGet(model, &occurrence), 0);
    EXPECT_EQ(occurrence.unit, 25.4);
    A3DPhysicalPropertiesData data = {sizeof data, 0.0, 0.0, 0.0};
    EXPECT_EQ(library.ComputePhysicalProperties(model, &data), 0);
    EXPECT_EQ(data.volume, 1.5);
    EXPECT_EQ(library.ComputePolyBrepPhysicalProperties(model, &data), 7);
}

TEST_F(ImportLibraryBinding, AMissingLibraryLeavesEveryFunctionNull) {
    EXPECT_FALSE(bind());
    EXPECT_FALSE(library.Bound());
    EXPECT_EQ(errors, allMissing());
    expectFailedCalls();
}

TEST_F(ImportLibraryBinding, ALibraryWithoutItsEntryIsReleased) {
    services.modules->libraries[L"A3DLIBS.dll"] = {};
    EXPECT_FALSE(bind());
    EXPECT_EQ(errors, allMissing());
    EXPECT_EQ(services.modules->loaded, 0);
    expectFailedCalls();
}

TEST_F(ImportLibraryBinding, AnEntryThatKnowsNoNameIsReleased) {
    install(noAddress);
    EXPECT_FALSE(bind());
    EXPECT_EQ(errors, allMissing());
    EXPECT_EQ(services.modules->loaded, 0);
}

TEST_F(ImportLibraryBinding, OneMissingFunctionClearsTheWholeTable) {
    for (const char* name : kNames) {
        missingEntry = name;
        install(getAddress);
        EXPECT_FALSE(bind());
        EXPECT_EQ(errors,
                  std::string("ERROR: function ") + name + " is null\nERROR: 1 null functions\n");
        EXPECT_EQ(services.modules->loaded, 0);
        EXPECT_EQ(services.log->entries().back(), "module.free");
        expectFailedCalls();
    }
}

TEST_F(ImportLibraryBinding, ReleaseMakesLaterCallsFail) {
    install(getAddress);
    ASSERT_TRUE(bind());
    library.Release();
    EXPECT_FALSE(library.Bound());
    EXPECT_EQ(services.modules->loaded, 0);
    expectFailedCalls();
}

TEST_F(ImportLibraryBinding, AFailedSecondBindingDropsTheFirst) {
    install(getAddress);
    ASSERT_TRUE(bind());
    services.modules->libraries.clear();
    EXPECT_FALSE(bind());
    EXPECT_EQ(services.modules->loaded, 0);
    expectFailedCalls();
}

TEST_F(ImportLibraryBinding, WithoutModulesNothingIsBound) {
    os::services().modules.reset();
    EXPECT_FALSE(bind());
    EXPECT_EQ(errors, allMissing());
}

}  // namespace
