#include "backends/comparer/result_rows.h"

#include <cstdint>
#include <cstring>
#include <limits>
#include <map>
#include <unordered_map>

#include "backends/comparer/motion_text.h"
#include "platform/os/utf8.h"

namespace comparer {
namespace {

using bxtexchange::BodyIdentity;
using bxtexchange::GeometryInstance;
using bxtexchange::GeometryInstanceSide;

constexpr char kMagic[] = "bextora geometry result 2\n";

// A number stands in the bytes as this machine keeps it: results don't travel between machines.

class ByteWriter {
public:
    template <typename Number>
    void number(Number value) {
        char raw[sizeof value];
        std::memcpy(raw, &value, sizeof value);
        bytes_.append(raw, sizeof raw);
    }
    template <typename Array>
    void numbers(const Array& values) {
        for (const auto value : values) number(value);
    }
    void text(const std::string& value) {
        number(static_cast<std::uint64_t>(value.size()));
        bytes_ += value;
    }
    void raw(const std::string& value) { bytes_ += value; }
    std::string take() { return std::move(bytes_); }

private:
    std::string bytes_;
};

class ByteReader {
public:
    explicit ByteReader(const std::string& bytes) : bytes_(bytes) {}

    template <typename Number>
    Number number() {
        Number value{};
        if (!has(sizeof value)) return value;
        std::memcpy(&value, bytes_.data() + at_, sizeof value);
        at_ += sizeof value;
        return value;
    }
    template <typename Array>
    void numbers(Array& values) {
        for (auto& value : values) value = number<std::remove_reference_t<decltype(value)>>();
    }
    std::string text() {
        const auto size = number<std::uint64_t>();
        if (!has(size)) return {};
        std::string value = bytes_.substr(at_, size);
        at_ += size;
        return value;
    }
    /// A count of things that take at least `least` bytes each.
    std::uint64_t count(std::uint64_t least) {
        const auto value = number<std::uint64_t>();
        if (value > (bytes_.size() - at_) / least) good_ = false;
        return good_ ? value : 0;
    }
    bool skip(const std::string& expected) {
        good_ = good_ && bytes_.compare(at_, expected.size(), expected) == 0;
        at_ += good_ ? expected.size() : 0;
        return good_;
    }
    void fail() { good_ = false; }
    bool good() const { return good_; }
    bool atEnd() const { return at_ == bytes_.size(); }

private:
    bool has(std::uint64_t size) {
        if (size > bytes_.size() - at_) good_ = false;
        return good_;
    }

    const std::string& bytes_;
    std::size_t at_ = 0;
    bool good_ = true;
};

std::string identityBytes(const BodyIdentity& identity) {
    ByteWriter out;
    out.number(identity.volumeMm3);
    out.number(identity.areaMm2);
    out.numbers(identity.principalMoments);
    out.numbers(identity.centroidMm);
    out.number(identity.faceCount);
    out.numbers(identity.surfaceKinds);
    return out.take();
}

BodyIdentity readIdentity(ByteReader& in) {
    BodyIdentity identity;
    identity.volumeMm3 = in.number<double>();
    identity.areaMm2 = in.number<double>();
    in.numbers(identity.principalMoments);
    in.numbers(identity.centroidMm);
    identity.faceCount = in.number<std::int32_t>();
    in.numbers(identity.surfaceKinds);
    return identity;
}

/// Numbers for things that come up again and again, in order of first use.
class Table {
public:
    std::uint32_t number(std::string entry) {
        const auto fresh = static_cast<std::uint32_t>(entries_.size());
        const auto known = numbers_.try_emplace(std::move(entry), fresh);
        if (known.second) entries_.push_back(&known.first->first);
        return known.first->second;
    }
    const std::vector<const std::string*>& entries() const { return entries_; }

private:
    std::unordered_map<std::string, std::uint32_t> numbers_;
    std::vector<const std::string*> entries_;
};

class Encoder {
public:
    std::string run(const bxtsg::SCGeometryResult& result) {
        for (const GeometryInstance& instance : result.instances) add(instance);
        ByteWriter out;
        out.raw(kMagic);
        out.number(result.lengthToleranceMm);
        out.number(result.relativeTolerance);
        out.number(static_cast<std::uint64_t>(result.notes.size()));
        for (const std::wstring& note : result.notes) out.text(os::toUtf8(note));
        out.number(static_cast<std::uint64_t>(texts_.entries().size()));
        for (const std::string* text : texts_.entries()) out.text(*text);
        out.number(static_cast<std::uint64_t>(identities_.entries().size()));
        for (const std::string* identity : identities_.entries()) out.raw(*identity);
        out.number(static_cast<std::uint64_t>(result.instances.size()));
        out.raw(rows_.take());
        return out.take();
    }

private:
    void add(const GeometryInstance& instance) {
        rows_.number(static_cast<std::int32_t>(instance.state));
        rows_.number(static_cast<std::int32_t>(instance.evidence));
        rows_.number(static_cast<std::uint8_t>(
            (instance.ambiguous ? 1 : 0) | (instance.hasFaceDifference ? 2 : 0) |
            (instance.reference.present ? 4 : 0) | (instance.compare.present ? 8 : 0)));
        rows_.numbers(instance.displacementMm);
        rows_.number(instance.rotationDeg);
        rows_.numbers(instance.rotationAxis);
        rows_.number(texts_.number(os::toUtf8(instance.motion)));
        rows_.number(instance.meshAllowanceMm);
        rows_.number(texts_.number(os::toUtf8(instance.note)));
        if (instance.reference.present) add(instance.reference);
        if (instance.compare.present) add(instance.compare);
        if (!instance.hasFaceDifference) return;
        const bxtexchange::FaceDifference& faces = instance.faces;
        rows_.number(faces.unchangedFaces);
        rows_.number(faces.changedFaces);
        rows_.number(faces.addedFaces);
        rows_.number(faces.removedFaces);
        rows_.number(faces.largestDeviationMm);
        rows_.number(texts_.number(os::toUtf8(faces.summary)));
    }

    void add(const GeometryInstanceSide& side) {
        rows_.number(texts_.number(os::toUtf8(side.path)));
        rows_.number(texts_.number(os::toUtf8(side.product)));
        rows_.number(identities_.number(identityBytes(side.identity)));
        rows_.numbers(side.placement);
    }

    Table texts_;
    Table identities_;
    ByteWriter rows_;
};

class Decoder {
public:
    explicit Decoder(const std::string& bytes) : in_(bytes) {}

    std::shared_ptr<bxtsg::SCGeometryResult> run() {
        auto result = std::make_shared<bxtsg::SCGeometryResult>();
        if (!in_.skip(kMagic)) return nullptr;
        result->lengthToleranceMm = in_.number<double>();
        result->relativeTolerance = in_.number<double>();
        for (std::uint64_t n = in_.count(8); n > 0; --n) {
            result->notes.push_back(os::toWide(in_.text()));
        }
        for (std::uint64_t n = in_.count(8); n > 0; --n) texts_.push_back(os::toWide(in_.text()));
        for (std::uint64_t n = in_.count(64); n > 0; --n) identities_.push_back(readIdentity(in_));
        for (std::uint64_t n = in_.count(32); n > 0 && in_.good(); --n) {
            result->instances.push_back(instance());
        }
        return in_.good() && in_.atEnd() ? result : nullptr;
    }

private:
    template <typename Enum>
    Enum enumeration(Enum last) {
        const auto value = in_.number<std::int32_t>();
        if (value < 0 || value > static_cast<std::int32_t>(last)) in_.fail();
        return in_.good() ? static_cast<Enum>(value) : Enum{};
    }

    template <typename Entry>
    Entry entry(const std::vector<Entry>& table) {
        const auto number = in_.number<std::uint32_t>();
        if (number >= table.size()) in_.fail();
        return in_.good() ? table[number] : Entry{};
    }

    GeometryInstance instance() {
        GeometryInstance row;
        row.state = enumeration(bxtexchange::GeometryState::NotCompared);
        row.evidence = enumeration(bxtexchange::MatchEvidence::Faces);
        const auto flags = in_.number<std::uint8_t>();
        row.ambiguous = (flags & 1U) != 0;
        row.hasFaceDifference = (flags & 2U) != 0;
        in_.numbers(row.displacementMm);
        row.rotationDeg = in_.number<double>();
        in_.numbers(row.rotationAxis);
        row.motion = entry(texts_);
        row.meshAllowanceMm = in_.number<double>();
        row.note = entry(texts_);
        if ((flags & 4U) != 0) row.reference = side();
        if ((flags & 8U) != 0) row.compare = side();
        if (!row.hasFaceDifference) return row;
        row.faces.unchangedFaces = in_.number<std::int32_t>();
        row.faces.changedFaces = in_.number<std::int32_t>();
        row.faces.addedFaces = in_.number<std::int32_t>();
        row.faces.removedFaces = in_.number<std::int32_t>();
        row.faces.largestDeviationMm = in_.number<double>();
        row.faces.summary = entry(texts_);
        return row;
    }

    GeometryInstanceSide side() {
        GeometryInstanceSide side;
        side.present = true;
        side.path = entry(texts_);
        side.product = entry(texts_);
        side.identity = entry(identities_);
        in_.numbers(side.placement);
        return side;
    }

    ByteReader in_;
    std::vector<std::wstring> texts_;
    std::vector<BodyIdentity> identities_;
};

GeometryInstanceSide describe(const Side& side, std::int32_t number, const Names& names) {
    GeometryInstanceSide out;
    if (number == Match::kNone) return out;
    const Instance& instance = side.instances[static_cast<std::size_t>(number)];
    out.present = true;
    out.path = os::toWide(displayPath(side, instance, names));
    out.product = os::toWide(names.text(instance.product));
    if (const auto& identity = side.bodies[instance.body].identity) out.identity = *identity;
    std::size_t at = 0;
    for (int row = 1; row <= 3; ++row) {
        for (int column = 1; column <= 4; ++column) {
            out.placement[at++] = instance.placement.Value(row, column);
        }
    }
    return out;
}

}  // namespace

bxtsg::SCGeometryResult buildResult(const Side& reference, const Side& compare, const Names& names,
                                    const std::vector<Match>& matches, const Tolerances& tolerances,
                                    const FaceReport& faces) {
    bxtsg::SCGeometryResult result;
    result.lengthToleranceMm = tolerances.lengthMm;
    result.relativeTolerance = tolerances.relative;
    for (const std::string& gap : reference.gaps) {
        result.notes.push_back(L"Reference file: " + os::toWide(gap));
    }
    for (const std::string& gap : compare.gaps) {
        result.notes.push_back(L"Compare file: " + os::toWide(gap));
    }
    result.instances.reserve(matches.size());
    for (std::size_t i = 0; i < matches.size(); ++i) {
        const Match& match = matches[i];
        GeometryInstance instance;
        instance.state = match.state;
        instance.evidence = match.evidence;
        instance.reference = describe(reference, match.reference, names);
        instance.compare = describe(compare, match.compare, names);
        instance.displacementMm = match.displacementMm;
        instance.rotationDeg = match.rotationDeg;
        instance.rotationAxis = match.rotationAxis;
        instance.motion = os::toWide(motionText(match));
        if (i < faces.allowancesMm.size()) instance.meshAllowanceMm = faces.allowancesMm[i];
        instance.ambiguous = match.ambiguous;
        instance.note = os::toWide(match.note);
        if (i < faces.ofMatch.size() && faces.ofMatch[i] != FaceReport::kNone) {
            instance.hasFaceDifference = true;
            instance.faces = faces.bodies[static_cast<std::size_t>(faces.ofMatch[i])].numbers;
            instance.faces.summary = os::toWide(faces.summaries[i]);
        }
        result.instances.push_back(std::move(instance));
    }
    return result;
}

std::string encodeResult(const bxtsg::SCGeometryResult& result) {
    return Encoder().run(result);
}

std::shared_ptr<bxtsg::SCGeometryResult> decodeResult(const std::string& bytes) {
    return Decoder(bytes).run();
}

}  // namespace comparer
