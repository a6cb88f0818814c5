// The rows of a comparison's result: damaged bytes, and results made up of any values.

#include <bit>

#include "backends/comparer/result_rows.h"
#include "platform/os/utf8.h"
#include "tests/fuzz/bytes.h"
#include "tests/fuzz/fuzz.h"

namespace {

using bxtexchange::GeometryInstance;
using bxtexchange::GeometryInstanceSide;

/// Every field in a form of our own, to compare results by: numbers by their bits.
class Dump {
public:
    explicit Dump(const bxtsg::SCGeometryResult& result) {
        add(result.lengthToleranceMm);
        add(result.relativeTolerance);
        for (const std::wstring& note : result.notes) add(note);
        out_ += '|';
        for (const GeometryInstance& instance : result.instances) add(instance);
    }
    const std::string& text() const { return out_; }

private:
    void add(std::int64_t number) { out_ += std::to_string(number) + ' '; }
    void add(double number) { add(std::bit_cast<std::int64_t>(number)); }
    void add(const std::wstring& text) {
        add(static_cast<std::int64_t>(text.size()));
        for (const wchar_t c : text) add(static_cast<std::int64_t>(c));
    }
    void add(const GeometryInstanceSide& side) {
        add(std::int64_t{side.present});
        add(side.path);
        add(side.product);
        add(side.identity.volumeMm3);
        add(side.identity.areaMm2);
        for (const double number : side.identity.principalMoments) add(number);
        for (const double number : side.identity.centroidMm) add(number);
        add(std::int64_t{side.identity.faceCount});
        for (const std::int32_t count : side.identity.surfaceKinds) add(std::int64_t{count});
        for (const double number : side.placement) add(number);
    }
    void add(const GeometryInstance& row) {
        add(static_cast<std::int64_t>(row.state));
        add(static_cast<std::int64_t>(row.evidence));
        add(row.reference);
        add(row.compare);
        for (const double number : row.displacementMm) add(number);
        add(row.rotationDeg);
        add(std::int64_t{row.ambiguous});
        add(std::int64_t{row.hasFaceDifference});
        add(std::int64_t{row.faces.unchangedFaces});
        add(std::int64_t{row.faces.changedFaces});
        add(std::int64_t{row.faces.addedFaces});
        add(std::int64_t{row.faces.removedFaces});
        add(row.faces.largestDeviationMm);
        add(row.faces.summary);
        add(row.note);
    }

    std::string out_;
};

/// A result made of any values; texts are such as UTF-8 can hold.
class Maker {
public:
    explicit Maker(fuzz::Bytes& bytes) : bytes_(bytes) {}

    bxtsg::SCGeometryResult result() {
        bxtsg::SCGeometryResult out;
        out.lengthToleranceMm = bytes_.real();
        out.relativeTolerance = bytes_.real();
        for (int i = bytes_.byte() % 4; i > 0; --i) out.notes.push_back(text());
        for (int i = bytes_.byte() % 6; i > 0; --i) out.instances.push_back(instance());
        return out;
    }

private:
    std::wstring text() { return os::toWide(bytes_.text(12)); }

    GeometryInstance instance() {
        GeometryInstance row;
        row.state = static_cast<bxtexchange::GeometryState>(bytes_.below(6));
        row.evidence = static_cast<bxtexchange::MatchEvidence>(bytes_.below(4));
        if (bytes_.flag()) row.reference = side();
        if (bytes_.flag()) row.compare = side();
        for (double& number : row.displacementMm) number = bytes_.real();
        row.rotationDeg = bytes_.real();
        row.ambiguous = bytes_.flag();
        row.note = text();
        row.hasFaceDifference = bytes_.flag();
        if (!row.hasFaceDifference) return row;
        row.faces.unchangedFaces = bytes_.byte();
        row.faces.changedFaces = -bytes_.byte();
        row.faces.addedFaces = bytes_.byte();
        row.faces.removedFaces = bytes_.byte();
        row.faces.largestDeviationMm = bytes_.real();
        row.faces.summary = text();
        return row;
    }

    GeometryInstanceSide side() {
        GeometryInstanceSide out;
        out.present = true;
        out.path = text();
        out.product = text();
        out.identity.volumeMm3 = bytes_.real();
        out.identity.areaMm2 = bytes_.real();
        for (double& number : out.identity.principalMoments) number = bytes_.real();
        for (double& number : out.identity.centroidMm) number = bytes_.real();
        out.identity.faceCount = bytes_.byte();
        for (std::int32_t& count : out.identity.surfaceKinds) count = bytes_.byte();
        for (double& number : out.placement) number = bytes_.real();
        return out;
    }

    fuzz::Bytes& bytes_;
};

void comesBack(const bxtsg::SCGeometryResult& result) {
    const std::string bytes = comparer::encodeResult(result);
    const auto again = comparer::decodeResult(bytes);
    fuzz::require(again != nullptr, "what was written can be read");
    fuzz::require(Dump(*again).text() == Dump(result).text(), "a result comes back as it was");
    fuzz::require(comparer::encodeResult(*again) == bytes, "a result has one form only");
    fuzz::require(!comparer::decodeResult(bytes + '\0'), "nothing stands behind the end");
    fuzz::require(!comparer::decodeResult(bytes.substr(0, bytes.size() - 1)),
                  "a result that was cut off is damaged");
}

void decode(const std::string& bytes) {
    if (const auto result = comparer::decodeResult(bytes)) comesBack(*result);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Bytes bytes(data, size);
    decode(std::string(bytes.rest()));
    const bxtsg::SCGeometryResult made = Maker(bytes).result();
    comesBack(made);
    decode(bytes.damaged(comparer::encodeResult(made)));
    return 0;
}
