#include "tests/unit/extract/measured_model.h"

#include <cstring>

#include "platform/os/utf8.h"

namespace {

constexpr A3DStatus kFailed = 7;

A3DStatus unicodeToUtf8(const wchar_t* text, std::size_t capacity, char* utf8) {
    const std::string bytes = os::toUtf8(text);
    if (libraryScript().fails("utf8 " + std::to_string(capacity))) return kFailed;
    if (bytes.size() + 1 > capacity) return kFailed;
    std::memcpy(utf8, bytes.c_str(), bytes.size() + 1);
    return 0;
}

A3DStatus loadFromFile(const char* utf8Path, const void** modelFile) {
    if (libraryScript().fails(std::string("load ") + utf8Path)) return kFailed;
    *modelFile = &libraryScript();
    return 0;
}

A3DStatus modelFileGet(const void* modelFile, A3DAsmModelFileData* data) {
    EXPECT_EQ(data->structSize, sizeof *data);
    EXPECT_EQ(modelFile, &libraryScript());
    if (libraryScript().fails("file")) return kFailed;
    data->unit = libraryScript().fileUnitMm;
    return 0;
}

A3DStatus occurrenceGet(const void* occurrence, A3DAsmProductOccurrenceData* data) {
    EXPECT_EQ(data->structSize, sizeof *data);
    const auto* const entity = static_cast<const FakeEntity*>(occurrence);
    if (libraryScript().fails("occurrence") || entity->fails) return kFailed;
    data->unit = entity->unitMm;
    return 0;
}

A3DStatus properties(const char* call, const void* item, A3DPhysicalPropertiesData* data) {
    EXPECT_EQ(data->structSize, sizeof *data);
    EXPECT_EQ(data->accuracyLevel, 0.99);
    EXPECT_EQ(data->volume, 0.0);
    EXPECT_EQ(data->surface, 0.0);
    const auto* const entity = static_cast<const FakeEntity*>(item);
    data->volume = entity->volume;
    return libraryScript().fails(call) || entity->fails ? kFailed : 0;
}

A3DStatus physicalProperties(const void* item, A3DPhysicalPropertiesData* data) {
    return properties("exact", item, data);
}
A3DStatus meshProperties(const void* item, A3DPhysicalPropertiesData* data) {
    return properties("mesh", item, data);
}

void* getAddress(const char* name) {
    const std::map<std::string, void*> functions = {
        {"A3DMiscUnicodeToUTF8", reinterpret_cast<void*>(unicodeToUtf8)},
        {"A3DAsmModelFileLoadFromFile", reinterpret_cast<void*>(loadFromFile)},
        {"A3DAsmModelFileGet", reinterpret_cast<void*>(modelFileGet)},
        {"A3DAsmProductOccurrenceGet", reinterpret_cast<void*>(occurrenceGet)},
        {"A3DComputePhysicalProperties", reinterpret_cast<void*>(physicalProperties)},
        {"A3DComputePolyBrepPhysicalProperties", reinterpret_cast<void*>(meshProperties)},
    };
    const auto found = functions.find(name);
    return found == functions.end() ? nullptr : found->second;
}

}  // namespace

LibraryScript& libraryScript() {
    static LibraryScript script;
    return script;
}

WithExchangeLibrary::WithExchangeLibrary() {
    libraryScript() = {};
    services_.modules->libraries[L"A3DLIBS.dll"] = {
        {"A3DGetProcAddress", reinterpret_cast<void*>(getAddress)}};
    EXPECT_TRUE(extract::importLibrary().Bind());
    job_.sourceFactory = document_;
}

WithExchangeLibrary::~WithExchangeLibrary() {
    extract::importLibrary().Release();
}
