#pragma once

#include <memory>

#include "platform/exchange/a3d.h"
#include "platform/os/modules.h"

namespace extract {

/// The exchange library "A3DLIBS.dll", bound at run time. A call without a bound library fails
/// with a status other than 0 and leaves its output untouched, as a failed call of the library
/// does. User-interface thread.
class ImportLibrary {
public:
    /// Loads the library and resolves its functions; drops an earlier binding first. Each
    /// function that can't be had gives one line on standard error, and a last line counts them.
    /// After any failure nothing is bound and the library is released again.
    bool Bind();

    /// Drops the binding and releases the library.
    void Release();

    bool Bound() const { return module_ != nullptr; }

    A3DStatus MiscUnicodeToUTF8(const wchar_t* text, std::size_t capacity, char* utf8) const;
    A3DStatus AsmModelFileLoadFromFile(const char* utf8Path, const void** modelFile) const;
    A3DStatus AsmModelFileGet(const void* modelFile, A3DAsmModelFileData* data) const;
    A3DStatus AsmProductOccurrenceGet(const void* occurrence,
                                      A3DAsmProductOccurrenceData* data) const;
    A3DStatus ComputePhysicalProperties(const void* item, A3DPhysicalPropertiesData* data) const;
    A3DStatus ComputePolyBrepPhysicalProperties(const void* item,
                                                A3DPhysicalPropertiesData* data) const;

private:
    struct Table {
        A3DMiscUnicodeToUTF8Function miscUnicodeToUTF8 = nullptr;
        A3DAsmModelFileLoadFromFileFunction asmModelFileLoadFromFile = nullptr;
        A3DAsmModelFileGetFunction asmModelFileGet = nullptr;
        A3DAsmProductOccurrenceGetFunction asmProductOccurrenceGet = nullptr;
        A3DComputePhysicalPropertiesFunction computePhysicalProperties = nullptr;
        A3DComputePolyBrepPhysicalPropertiesFunction computePolyBrepPhysicalProperties = nullptr;
    };

    /// Returns how many functions stayed unresolved. `getAddress` may be null.
    static unsigned Resolve(A3DGetProcAddressFunction getAddress, Table& table);

    std::unique_ptr<os::Module> module_;
    Table table_;
};

/// The one binding of this process.
ImportLibrary& importLibrary();

}  // namespace extract
