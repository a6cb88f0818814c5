#include "extract/import_library.h"

#include <cstdio>

#include "platform/os/services.h"

namespace extract {
namespace {

constexpr const wchar_t* kLibrary = L"A3DLIBS.dll";
constexpr const char* kGetAddress = "A3DGetProcAddress";
constexpr A3DStatus kNotBound = -1;

template <typename Function, typename... Arguments>
A3DStatus callIfBound(Function function, Arguments... arguments) {
    return function ? function(arguments...) : kNotBound;
}

template <typename Function>
unsigned resolve(A3DGetProcAddressFunction getAddress, const char* name, Function& function) {
    function = getAddress ? reinterpret_cast<Function>(getAddress(name)) : nullptr;
    if (function) return 0;
    std::fprintf(stderr, "ERROR: function %s is null\n", name);
    return 1;
}

}  // namespace

unsigned ImportLibrary::Resolve(A3DGetProcAddressFunction getAddress, Table& table) {
    unsigned missing = 0;
    missing += resolve(getAddress, "A3DMiscUnicodeToUTF8", table.miscUnicodeToUTF8);
    missing += resolve(getAddress, "A3DAsmModelFileLoadFromFile", table.asmModelFileLoadFromFile);
    missing += resolve(getAddress, "A3DAsmModelFileGet", table.asmModelFileGet);
    missing += resolve(getAddress, "A3DAsmProductOccurrenceGet", table.asmProductOccurrenceGet);
    missing += resolve(getAddress, "A3DComputePhysicalProperties", table.computePhysicalProperties);
    missing += resolve(getAddress, "A3DComputePolyBrepPhysicalProperties",
                       table.computePolyBrepPhysicalProperties);
    return missing;
}

bool ImportLibrary::Bind() {
    Release();
    const auto& modules = os::services().modules;
    auto module = modules ? modules->load(kLibrary) : nullptr;
    void* const entry = module ? module->symbol(kGetAddress) : nullptr;
    Table table;
    const unsigned missing = Resolve(reinterpret_cast<A3DGetProcAddressFunction>(entry), table);
    if (missing > 0) {
        std::fprintf(stderr, "ERROR: %u null functions\n", missing);
        return false;
    }
    module_ = std::move(module);
    table_ = table;
    return true;
}

void ImportLibrary::Release() {
    table_ = {};
    module_.reset();
}

A3DStatus ImportLibrary::MiscUnicodeToUTF8(const wchar_t* text, std::size_t capacity,
                                           char* utf8) const {
    return callIfBound(table_.miscUnicodeToUTF8, text, capacity, utf8);
}

A3DStatus ImportLibrary::AsmModelFileLoadFromFile(const char* utf8Path,
                                                  const void** modelFile) const {
    return callIfBound(table_.asmModelFileLoadFromFile, utf8Path, modelFile);
}

A3DStatus ImportLibrary::AsmModelFileGet(const void* modelFile, A3DAsmModelFileData* data) const {
    return callIfBound(table_.asmModelFileGet, modelFile, data);
}

A3DStatus ImportLibrary::AsmProductOccurrenceGet(const void* occurrence,
                                                 A3DAsmProductOccurrenceData* data) const {
    return callIfBound(table_.asmProductOccurrenceGet, occurrence, data);
}

A3DStatus ImportLibrary::ComputePhysicalProperties(const void* item,
                                                   A3DPhysicalPropertiesData* data) const {
    return callIfBound(table_.computePhysicalProperties, item, data);
}

A3DStatus ImportLibrary::ComputePolyBrepPhysicalProperties(const void* item,
                                                           A3DPhysicalPropertiesData* data) const {
    return callIfBound(table_.computePolyBrepPhysicalProperties, item, data);
}

ImportLibrary& importLibrary() {
    static ImportLibrary library;
    return library;
}

}  // namespace extract
