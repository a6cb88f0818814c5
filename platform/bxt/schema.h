#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace bxt {
class IApplication;
}

namespace bxtsg {

/// Data object that a factory hands out by code.
class Schema {
public:
    virtual ~Schema();
};

/// Codes under which factories keep their schemas.
namespace code {
constexpr std::uint16_t Info = 8;
constexpr std::uint16_t Measure = 9;
constexpr std::uint16_t View = 10;
constexpr std::uint16_t SceneTopo = 12;
constexpr std::uint16_t Application = 19;
constexpr std::uint16_t DocFrame = 20;
constexpr std::uint16_t Compare = 29;
constexpr std::uint16_t DefaultState = 42;
/// Our own: what a compare run found (compare_outcome.h) and what the geometry comparer found
/// (exchange/geometry_result.h), both read-only and both on the result document.
constexpr std::uint16_t CompareOutcome = 200;
constexpr std::uint16_t GeometryResult = 201;
}  // namespace code

/// Hands out schemas by code; one per document. Belongs to the user-interface thread.
class IFactory {
public:
    virtual ~IFactory();

    /// Schema kept under the code; empty when there is none.
    virtual std::shared_ptr<Schema> get(std::uint16_t code) = 0;

    /// Keeps the schema under the code, in place of an earlier one.
    virtual void attach(std::uint16_t code, std::shared_ptr<Schema> schema) = 0;

    /// Schema of that code and class; empty when there is none or it is of another class.
    template <typename Class>
    std::shared_ptr<Class> getAs(std::uint16_t code) {
        return std::dynamic_pointer_cast<Class>(get(code));
    }
};

/// The file of a document (code 8).
class SCInfo : public Schema {
public:
    /// Length units that the host knows, by their number in its settings.
    enum class UNITS : std::int32_t {
        Millimeter = 0,
        Centimeter = 1,
        Meter = 2,
        Kilometer = 3,
        Inch = 4,
        Foot = 5,
        Yard = 6,
        Mile = 7,
    };

    SCInfo() = default;
    explicit SCInfo(std::wstring file) : file_(std::move(file)) {}
    const std::wstring& file() const { return file_; }
    void setFile(const std::wstring& file) { file_ = file; }

private:
    std::wstring file_;
};

/// How a document shows measures (code 9).
class SCMeasure : public Schema {
public:
    SCMeasure() = default;
    explicit SCMeasure(SCInfo::UNITS displayUnit) : displayUnit_(displayUnit) {}
    /// Unit of the lengths that the user reads.
    SCInfo::UNITS displayUnit() const { return displayUnit_; }
    void setDisplayUnit(SCInfo::UNITS unit) { displayUnit_ = unit; }

private:
    SCInfo::UNITS displayUnit_ = SCInfo::UNITS::Millimeter;
};

/// Marks a document as a compare result (code 29) and knows the two files of the run.
class SCComprae : public Schema {
public:
    /// Compare file first, reference file second.
    void setFiles(const std::wstring& comparePath, const std::wstring& referencePath) {
        comparePath_ = comparePath;
        referencePath_ = referencePath;
    }
    const std::wstring& refFile() const { return referencePath_; }
    const std::wstring& cmpFile() const { return comparePath_; }

private:
    std::wstring comparePath_;
    std::wstring referencePath_;
};

}  // namespace bxtsg

namespace bxt {

/// The host's settings object. Holds a copy of the comparison's nine switches among settings of
/// the host's own.
struct Settings {
    bool psCompare = true;
    bool pmiCompare = true;
    bool attribCompare = true;
    bool psCompareReport = true;
    bool pmiCompareReport = true;
    bool attribCompareReport = true;
    bool threeDReport = true;
    bool includeRefFile = true;
    bool includeCmpFile = true;
    /// A flag of the host's own, raised by it while a view waits for a full update.
    bool viewUpdatePending = false;
};

/// Application-wide data (code 19).
class SCApplication : public bxtsg::Schema {
public:
    /// Format names and patterns that the host can open, alternating: L"STEP Files",
    /// L"*.stp;*.step", ...
    std::vector<std::wstring> fileFormats;
    std::shared_ptr<Settings> settings;
    /// True while the plug-in has a compare result opened as a document.
    bool compareResultOpening = false;
    /// Not owned; null when the host gave none.
    IApplication* application = nullptr;
};

/// The frame of a document (code 20).
class SCDocFrame : public bxtsg::Schema {
public:
    bool frameEnabled = true;
};

}  // namespace bxt
