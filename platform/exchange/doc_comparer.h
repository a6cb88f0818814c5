#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/bxt/application.h"

namespace bxtimp {

/// Compares the geometry of two files.
class IDocComparer {
public:
    /// 0 done, 1 part against assembly, 2 assembly against part, -1 nothing compared,
    /// -2 open the compare file alone, -3 open the reference file alone.
    using Status = std::int32_t;
    static constexpr Status Done = 0;
    static constexpr Status PartAgainstAssembly = 1;
    static constexpr Status AssemblyAgainstPart = 2;
    static constexpr Status NothingCompared = -1;
    static constexpr Status OpenCompareAlone = -2;
    static constexpr Status OpenReferenceAlone = -3;

    virtual ~IDocComparer();

    /// Compares and writes a result file; returns its path. Blocks; runs on a worker thread and
    /// ends early, with `status` untouched, when that worker is killed. `status` is written once,
    /// after the result file is complete; a failure leaves the path empty. Standard exceptions
    /// mean that nothing was compared.
    virtual std::wstring doComparision(std::shared_ptr<bxtsg::IFactory> factory,
                                       const wchar_t* referencePath, const wchar_t* comparePath,
                                       bxt::IStatusManager* statusManager, Status& status) = 0;
};

}  // namespace bxtimp

namespace bxtexchange {

/// The comparer that the application installed.
class HOOPSDOCComparer : public bxtimp::IDocComparer {
public:
    /// `languageFolder` holds the comparer's own texts; it may be missing.
    explicit HOOPSDOCComparer(const std::wstring& languageFolder);
    ~HOOPSDOCComparer() override;

    /// Throws std::runtime_error when no comparer is installed.
    std::wstring doComparision(std::shared_ptr<bxtsg::IFactory> factory,
                               const wchar_t* referencePath, const wchar_t* comparePath,
                               bxt::IStatusManager* statusManager, Status& status) override;

private:
    std::unique_ptr<bxtimp::IDocComparer> implementation_;
};

}  // namespace bxtexchange
