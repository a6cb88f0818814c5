// The exchange library as the product loads it: by its name, from the program's folder.

#include <cstring>

#include "platform/exchange/a3d.h"
#include "platform/hps/component.h"
#include "platform/hps/component_type.h"
#include "platform/os/services.h"
#include "tests/integration/import/imports.h"
#include "tests/integration/import/small_files.h"

namespace {

namespace Type = HPS::ComponentType;
using import_test::Imported;

class ExchangeLibrary : public import_test::Imports {
protected:
    ExchangeLibrary() : library_(os::services().modules->load(L"A3DLIBS.dll")) {
        if (library_ == nullptr) return;
        entry_ = reinterpret_cast<A3DGetProcAddressFunction>(library_->symbol("A3DGetProcAddress"));
    }
    void SetUp() override {
        ASSERT_NE(library_, nullptr) << "A3DLIBS.dll stands beside the program";
        ASSERT_NE(entry_, nullptr);
    }

    template <typename Function>
    Function function(const char* name) const {
        return reinterpret_cast<Function>(entry_(name));
    }
    void* address(const char* name) const { return entry_(name); }

    static const void* entity(const HPS::Component& component) {
        return HPS::Exchange::Component(component).GetExchangeEntity();
    }
    static const void* first(const Imported& imported, std::uint32_t type) {
        return entity(imported.component.GetAllSubcomponents(type)[0]);
    }
    A3DPhysicalPropertiesData measure(const char* name, const void* item, A3DStatus& status) const {
        A3DPhysicalPropertiesData data = {sizeof data, 1.0, -7.0, -7.0};
        status = function<A3DComputePhysicalPropertiesFunction>(name)(item, &data);
        return data;
    }

private:
    std::unique_ptr<os::Module> library_;
    A3DGetProcAddressFunction entry_ = nullptr;
};

constexpr const char* kExact = "A3DComputePhysicalProperties";
constexpr const char* kMesh = "A3DComputePolyBrepPhysicalProperties";

TEST_F(ExchangeLibrary, SixFunctionsHaveAddresses) {
    for (const char* name : {"A3DMiscUnicodeToUTF8", "A3DAsmModelFileLoadFromFile",
                             "A3DAsmModelFileGet", "A3DAsmProductOccurrenceGet", kExact, kMesh}) {
        EXPECT_NE(address(name), nullptr) << name;
    }
    for (const char* name : {"", "A3DAsmModelFileGe", "a3dasmmodelfileget", "main"}) {
        EXPECT_EQ(address(name), nullptr) << name;
    }
    EXPECT_EQ(address(nullptr), nullptr);
}

TEST_F(ExchangeLibrary, TextsBecomeUtf8OrStayAsTheyWere) {
    const auto convert = function<A3DMiscUnicodeToUTF8Function>("A3DMiscUnicodeToUTF8");
    char text[8] = "before";
    EXPECT_EQ(convert(L"Wälle", sizeof text, text), 0);
    EXPECT_STREQ(text, "Wälle");
    std::strcpy(text, "before");
    EXPECT_NE(convert(L"Wälle", 6, text), 0) << "no room for the end";
    EXPECT_STREQ(text, "before");
    EXPECT_EQ(convert(L"", 1, text), 0);
    EXPECT_STREQ(text, "");
    EXPECT_NE(convert(nullptr, sizeof text, text), 0);
    EXPECT_NE(convert(L"x", sizeof text, nullptr), 0);
}

TEST_F(ExchangeLibrary, UnitsOfFileAndOccurrence) {
    const Imported inch = importText(import_test::inchBoxFile());
    A3DAsmModelFileData file = {sizeof file, -1.0};
    EXPECT_EQ(function<A3DAsmModelFileGetFunction>("A3DAsmModelFileGet")(
                  first(inch, Type::ModelFile), &file),
              0);
    EXPECT_DOUBLE_EQ(file.unit, 25.4);
    A3DAsmProductOccurrenceData occurrence = {sizeof occurrence, -1.0};
    EXPECT_EQ(function<A3DAsmProductOccurrenceGetFunction>("A3DAsmProductOccurrenceGet")(
                  first(inch, Type::ProductOccurrence), &occurrence),
              0);
    EXPECT_DOUBLE_EQ(occurrence.unit, 25.4);
}

TEST_F(ExchangeLibrary, PropertiesOfAClosedBodyInItsOwnUnit) {
    for (const auto& text : {import_test::boxFile(), import_test::inchBoxFile()}) {
        const Imported read = importText(text);
        A3DStatus status = -1;
        const auto data = measure(kExact, first(read, Type::BrepModel), status);
        EXPECT_EQ(status, 0);
        EXPECT_NEAR(data.volume, 6000.0, 1e-6);
        EXPECT_NEAR(data.surface, 2200.0, 1e-6);
    }
}

TEST_F(ExchangeLibrary, PropertiesOfAClosedMesh) {
    const Imported read = importText(import_test::tetrahedronFile());
    const void* const mesh = first(read, Type::PolyBrepModel);
    A3DStatus status = -1;
    const auto data = measure(kMesh, mesh, status);
    EXPECT_EQ(status, 0);
    EXPECT_NEAR(data.volume, 1.0 / 6.0, 1e-9);
    EXPECT_NEAR(data.surface, 1.5 + std::sqrt(3.0) / 2.0, 1e-9);
    measure(kExact, mesh, status);
    EXPECT_NE(status, 0) << "each kind has a function of its own";
}

TEST_F(ExchangeLibrary, AnOpenBodyHasNoProperties) {
    const Imported read = importText(import_test::everythingFile());
    A3DStatus status = 0;
    const auto data =
        measure(kExact, entity(import_test::find(read, Type::BrepModel, "hull")), status);
    EXPECT_NE(status, 0);
    EXPECT_EQ(data.volume, -7.0);
    EXPECT_EQ(data.surface, -7.0);
    EXPECT_EQ(entity(import_test::find(read, Type::Curve, "wire")), nullptr);
}

TEST_F(ExchangeLibrary, ArgumentsOfOtherKindsAreFailures) {
    const Imported read = importText(import_test::boxFile());
    const void* const file = first(read, Type::ModelFile);
    const void* const occurrence = first(read, Type::ProductOccurrence);
    const auto getFile = function<A3DAsmModelFileGetFunction>("A3DAsmModelFileGet");
    const auto getOccurrence =
        function<A3DAsmProductOccurrenceGetFunction>("A3DAsmProductOccurrenceGet");
    A3DAsmModelFileData fileData = {sizeof fileData, -1.0};
    A3DAsmProductOccurrenceData data = {sizeof data, -1.0};
    EXPECT_NE(getFile(occurrence, &fileData), 0);
    EXPECT_NE(getFile(nullptr, &fileData), 0);
    EXPECT_NE(getFile(file, nullptr), 0);
    EXPECT_NE(getOccurrence(file, &data), 0);
    EXPECT_NE(getOccurrence(nullptr, &data), 0);
    fileData.structSize = 1;
    data.structSize = 0;
    EXPECT_NE(getFile(file, &fileData), 0);
    EXPECT_NE(getOccurrence(occurrence, &data), 0);
    EXPECT_EQ(fileData.unit, -1.0);
    EXPECT_EQ(data.unit, -1.0);
    A3DStatus status = 0;
    measure(kExact, occurrence, status);
    EXPECT_NE(status, 0);
    measure(kExact, nullptr, status);
    EXPECT_NE(status, 0);
}

TEST_F(ExchangeLibrary, FilesAreLoadedByPath) {
    const auto load = function<A3DAsmModelFileLoadFromFileFunction>("A3DAsmModelFileLoadFromFile");
    const std::string path = scratch.write("Wälle 1.step", import_test::inchBoxFile());
    const void* model = nullptr;
    ASSERT_EQ(load(path.c_str(), &model), 0);
    A3DAsmModelFileData file = {sizeof file, -1.0};
    EXPECT_EQ(function<A3DAsmModelFileGetFunction>("A3DAsmModelFileGet")(model, &file), 0);
    EXPECT_DOUBLE_EQ(file.unit, 25.4);
    const void* const untouched = model;
    EXPECT_NE(load("/no/such/file.step", &model), 0);
    EXPECT_NE(load(nullptr, &model), 0);
    EXPECT_NE(load(path.c_str(), nullptr), 0);
    EXPECT_EQ(model, untouched);
}

}  // namespace
