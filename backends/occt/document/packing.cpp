#include <bit>
#include <cstring>
#include <limits>

#include "backends/occt/document/description.h"

namespace occt {
namespace {

// Changes with the layout below.
constexpr std::uint64_t kMagic = 0x42585452454533ULL;

class Packer {
public:
    void word(std::uint64_t value) {
        for (int shift = 0; shift < 64; shift += 8) {
            bytes_ += static_cast<char>((value >> shift) & 0xFF);
        }
    }
    void real(double value) { word(std::bit_cast<std::uint64_t>(value)); }
    void text(const std::string& value) {
        word(value.size());
        bytes_ += value;
    }
    template <typename List, typename Pack>
    void list(const List& items, Pack pack) {
        word(items.size());
        for (const auto& item : items) pack(item);
    }
    std::string take() { return std::move(bytes_); }

private:
    std::string bytes_;
};

class Unpacker {
public:
    explicit Unpacker(const std::string& bytes) : bytes_(bytes) {}

    std::uint64_t word() {
        std::uint64_t value = 0;
        if (!has(8)) return 0;
        for (int shift = 0; shift < 64; shift += 8) {
            value |= static_cast<std::uint64_t>(static_cast<unsigned char>(bytes_[at_++])) << shift;
        }
        return value;
    }
    std::uint32_t word32() {
        const std::uint64_t value = word();
        if (value > std::numeric_limits<std::uint32_t>::max()) good_ = false;
        return static_cast<std::uint32_t>(value);
    }
    double real() { return std::bit_cast<double>(word()); }
    std::string text() {
        const std::uint64_t size = word();
        if (!has(size)) return {};
        const std::string value = bytes_.substr(at_, size);
        at_ += size;
        return value;
    }
    template <typename Item, typename Unpack>
    void list(std::vector<Item>& items, Unpack unpack) {
        const std::uint64_t size = word();
        // Every item takes at least one word, which bounds what damaged bytes can ask for.
        if (!has(size)) return;
        for (std::uint64_t i = 0; i < size && good_; ++i) items.push_back(unpack());
    }
    bool good() const { return good_; }
    bool atEnd() const { return at_ == bytes_.size(); }
    void fail() { good_ = false; }

private:
    bool has(std::uint64_t count) {
        if (count > bytes_.size() - at_) good_ = false;
        return good_;
    }

    const std::string& bytes_;
    std::size_t at_ = 0;
    bool good_ = true;
};

void packMetadata(Packer& out, const HPS::MetadataValue& value) {
    out.text(value.name);
    out.word(value.value.index());
    std::visit(
        [&out](const auto& held) {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<Held, std::string>)
                out.text(held);
            else if constexpr (std::is_same_v<Held, double>)
                out.real(held);
            else if constexpr (std::is_same_v<Held, HPS::Time>)
                out.word(held.secondsSinceEpoch);
            else if constexpr (std::is_same_v<Held, std::int32_t>)
                out.word(static_cast<std::uint32_t>(held));
            else
                out.word(held);
        },
        value.value);
}

HPS::MetadataValue unpackMetadata(Unpacker& in) {
    HPS::MetadataValue value;
    value.name = in.text();
    switch (in.word()) {
        case 0: value.value = in.text(); break;
        case 1: value.value = static_cast<std::int32_t>(in.word32()); break;
        case 2: value.value = in.word32(); break;
        case 3: value.value = in.real(); break;
        case 4: value.value = in.word() != 0; break;
        case 5: value.value = HPS::Time{in.word()}; break;
        default: in.fail();
    }
    return value;
}

void packIdentity(Packer& out, const bxtexchange::BodyIdentity& identity) {
    out.real(identity.volumeMm3);
    out.real(identity.areaMm2);
    for (const double moment : identity.principalMoments) out.real(moment);
    for (const double coordinate : identity.centroidMm) out.real(coordinate);
    out.word(static_cast<std::uint32_t>(identity.faceCount));
    for (const std::int32_t count : identity.surfaceKinds) {
        out.word(static_cast<std::uint32_t>(count));
    }
}

bxtexchange::BodyIdentity unpackIdentity(Unpacker& in) {
    bxtexchange::BodyIdentity identity;
    identity.volumeMm3 = in.real();
    identity.areaMm2 = in.real();
    for (double& moment : identity.principalMoments) moment = in.real();
    for (double& coordinate : identity.centroidMm) coordinate = in.real();
    identity.faceCount = static_cast<std::int32_t>(in.word32());
    for (std::int32_t& count : identity.surfaceKinds) {
        count = static_cast<std::int32_t>(in.word32());
    }
    return identity;
}

void packItem(Packer& out, const DescribedItem& item) {
    out.word(item.type);
    out.text(item.name);
    out.text(item.label);
    out.list(item.path, [&out](std::uint32_t step) { out.word(step); });
    out.word(item.identity ? 1 : 0);
    if (item.identity) packIdentity(out, *item.identity);
    out.word(item.closed ? 1 : 0);
    out.text(item.digest);
}

DescribedItem unpackItem(Unpacker& in) {
    DescribedItem item;
    item.type = in.word32();
    item.name = in.text();
    item.label = in.text();
    in.list(item.path, [&in] { return in.word32(); });
    if (in.word() != 0) item.identity = unpackIdentity(in);
    item.closed = in.word() != 0;
    item.digest = in.text();
    return item;
}

void packUsage(Packer& out, const DescribedUsage& usage) {
    out.word(usage.definition);
    for (const double number : usage.placement) out.real(number);
    out.list(usage.metadata, [&out](const auto& value) { packMetadata(out, value); });
}

DescribedUsage unpackUsage(Unpacker& in) {
    DescribedUsage usage;
    usage.definition = in.word32();
    for (double& number : usage.placement) number = in.real();
    in.list(usage.metadata, [&in] { return unpackMetadata(in); });
    return usage;
}

void packPmi(Packer& out, const DescribedPmi& pmi) {
    out.word(pmi.type);
    out.text(pmi.name);
    out.list(pmi.metadata, [&out](const auto& value) { packMetadata(out, value); });
    out.text(pmi.text);
}

DescribedPmi unpackPmi(Unpacker& in) {
    DescribedPmi pmi;
    pmi.type = in.word32();
    pmi.name = in.text();
    in.list(pmi.metadata, [&in] { return unpackMetadata(in); });
    pmi.text = in.text();
    return pmi;
}

void packDefinition(Packer& out, const DescribedDefinition& definition) {
    out.text(definition.name);
    out.real(definition.unitMm);
    out.text(definition.unitName);
    out.word(definition.isAssembly ? 1 : 0);
    out.list(definition.usages, [&out](const auto& usage) { packUsage(out, usage); });
    out.list(definition.items, [&out](const auto& item) { packItem(out, item); });
    out.list(definition.pmi, [&out](const auto& pmi) { packPmi(out, pmi); });
    out.list(definition.metadata, [&out](const auto& value) { packMetadata(out, value); });
}

DescribedDefinition unpackDefinition(Unpacker& in) {
    DescribedDefinition definition;
    definition.name = in.text();
    definition.unitMm = in.real();
    definition.unitName = in.text();
    definition.isAssembly = in.word() != 0;
    in.list(definition.usages, [&in] { return unpackUsage(in); });
    in.list(definition.items, [&in] { return unpackItem(in); });
    in.list(definition.pmi, [&in] { return unpackPmi(in); });
    in.list(definition.metadata, [&in] { return unpackMetadata(in); });
    return definition;
}

}  // namespace

std::string packDescription(const Description& description) {
    Packer out;
    out.word(kMagic);
    out.real(description.unitMm);
    out.word(description.root);
    out.list(description.definitions, [&out](const auto& item) { packDefinition(out, item); });
    out.list(description.fileMetadata, [&out](const auto& value) { packMetadata(out, value); });
    out.list(description.gaps, [&out](const auto& gap) { out.text(gap); });
    out.word(description.document.bytes);
    out.word(description.document.checksum);
    out.word(kMagic);
    return out.take();
}

std::optional<Description> unpackDescription(const std::string& bytes) {
    Unpacker in(bytes);
    if (in.word() != kMagic) return std::nullopt;
    Description description;
    description.unitMm = in.real();
    description.root = in.word32();
    in.list(description.definitions, [&in] { return unpackDefinition(in); });
    in.list(description.fileMetadata, [&in] { return unpackMetadata(in); });
    in.list(description.gaps, [&in] { return in.text(); });
    description.document.bytes = in.word();
    description.document.checksum = in.word();
    if (in.word() != kMagic || !in.good() || !in.atEnd()) return std::nullopt;
    return description;
}

}  // namespace occt
