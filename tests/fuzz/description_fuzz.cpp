// The description that an import leaves: damaged bytes, and descriptions made up of any values.

#include <bit>

#include "backends/occt/document/description.h"
#include "backends/occt/tree/flat_tree.h"
#include "platform/hps/component_type.h"
#include "tests/fuzz/bytes.h"
#include "tests/fuzz/fuzz.h"

namespace {

using occt::Description;

constexpr std::uint64_t kLargestTree = 20'000;

/// Every field in a form of our own, to compare descriptions by: numbers by their bits.
class Dump {
public:
    explicit Dump(const Description& description) {
        add(description.unitMm);
        add(std::uint64_t{description.root});
        each(description.definitions);
        each(description.fileMetadata);
        each(description.gaps);
        add(description.document.bytes);
        add(description.document.checksum);
    }
    const std::string& text() const { return out_; }

private:
    void add(std::uint64_t number) { out_ += std::to_string(number) + ' '; }
    void add(double number) { add(std::bit_cast<std::uint64_t>(number)); }
    void add(const std::string& text) { out_ += std::to_string(text.size()) + ':' + text + ' '; }
    void add(const HPS::MetadataValue& value) {
        add(value.name);
        add(std::uint64_t{value.value.index()});
        if (const auto* text = std::get_if<0>(&value.value)) add(*text);
        if (const auto* number = std::get_if<1>(&value.value)) out_ += std::to_string(*number);
        if (const auto* number = std::get_if<2>(&value.value)) add(std::uint64_t{*number});
        if (const auto* number = std::get_if<3>(&value.value)) add(*number);
        if (const auto* yes = std::get_if<4>(&value.value)) add(std::uint64_t{*yes});
        if (const auto* time = std::get_if<5>(&value.value)) add(time->secondsSinceEpoch);
    }
    void add(const bxtexchange::BodyIdentity& identity) {
        add(identity.volumeMm3);
        add(identity.areaMm2);
        for (const double number : identity.principalMoments) add(number);
        for (const double number : identity.centroidMm) add(number);
        out_ += std::to_string(identity.faceCount) + ' ';
        for (const std::int32_t count : identity.surfaceKinds) out_ += std::to_string(count) + ' ';
    }
    void add(const occt::DescribedItem& item) {
        add(std::uint64_t{item.type});
        add(item.name);
        add(item.label);
        add(std::uint64_t{item.path.size()});
        for (const std::uint32_t child : item.path) add(std::uint64_t{child});
        add(std::uint64_t{item.identity.has_value()});
        if (item.identity) add(*item.identity);
        add(std::uint64_t{item.closed});
        add(item.digest);
    }
    void add(const occt::DescribedPmi& pmi) {
        add(std::uint64_t{pmi.type});
        add(pmi.name);
        each(pmi.metadata);
        add(pmi.text);
    }
    void add(const occt::DescribedUsage& usage) {
        add(std::uint64_t{usage.definition});
        for (const double number : usage.placement) add(number);
        each(usage.metadata);
    }
    void add(const occt::DescribedDefinition& definition) {
        add(definition.name);
        add(definition.unitMm);
        add(definition.unitName);
        add(std::uint64_t{definition.isAssembly});
        each(definition.usages);
        each(definition.items);
        each(definition.pmi);
        each(definition.metadata);
    }
    template <typename Item>
    void each(const std::vector<Item>& items) {
        out_ += '[' + std::to_string(items.size()) + ' ';
        for (const Item& item : items) add(item);
        out_ += ']';
    }

    std::string out_;
};

/// A description made of any values.
class Maker {
public:
    explicit Maker(fuzz::Bytes& bytes) : bytes_(bytes) {}

    Description description() {
        Description out;
        out.unitMm = bytes_.real();
        out.root = bytes_.below(4);
        for (int i = bytes_.byte() % 5; i > 0; --i) out.definitions.push_back(definition());
        out.fileMetadata = metadata();
        for (int i = bytes_.byte() % 3; i > 0; --i) out.gaps.push_back(bytes_.text(20));
        out.document = {bytes_.word(), bytes_.word()};
        return out;
    }

private:
    std::vector<HPS::MetadataValue> metadata() {
        std::vector<HPS::MetadataValue> out;
        for (int i = bytes_.byte() % 4; i > 0; --i) {
            HPS::MetadataValue value{bytes_.text(8), {}};
            switch (bytes_.below(6)) {
                case 0: value.value = bytes_.text(8); break;
                case 1: value.value = static_cast<std::int32_t>(bytes_.word()); break;
                case 2: value.value = static_cast<std::uint32_t>(bytes_.word()); break;
                case 3: value.value = bytes_.real(); break;
                case 4: value.value = bytes_.flag(); break;
                default: value.value = HPS::Time{bytes_.word()};
            }
            out.push_back(std::move(value));
        }
        return out;
    }

    occt::DescribedItem item() {
        occt::DescribedItem out;
        out.type = HPS::ComponentType::BrepModel + bytes_.below(8);
        out.name = bytes_.text(8);
        out.label = bytes_.text(8);
        for (int i = bytes_.byte() % 4; i > 0; --i) {
            out.path.push_back(static_cast<std::uint32_t>(bytes_.word()));
        }
        if (bytes_.flag()) {
            auto& identity = out.identity.emplace();
            identity.volumeMm3 = bytes_.real();
            identity.areaMm2 = bytes_.real();
            for (double& number : identity.principalMoments) number = bytes_.real();
            for (double& number : identity.centroidMm) number = bytes_.real();
            identity.faceCount = static_cast<std::int32_t>(bytes_.word());
            for (auto& count : identity.surfaceKinds) {
                count = static_cast<std::int32_t>(bytes_.word());
            }
        }
        out.closed = bytes_.flag();
        out.digest = bytes_.text(8);
        return out;
    }

    occt::DescribedDefinition definition() {
        occt::DescribedDefinition out;
        out.name = bytes_.text(8);
        out.unitMm = bytes_.real();
        out.unitName = bytes_.text(8);
        out.isAssembly = bytes_.flag();
        for (int i = bytes_.byte() % 4; i > 0; --i) {
            occt::DescribedUsage usage;
            usage.definition = bytes_.below(5);
            for (double& number : usage.placement) number = bytes_.real();
            usage.metadata = metadata();
            out.usages.push_back(std::move(usage));
        }
        for (int i = bytes_.byte() % 3; i > 0; --i) out.items.push_back(item());
        for (int i = bytes_.byte() % 3; i > 0; --i) {
            out.pmi.push_back(
                {HPS::ComponentType::PmiDimension, bytes_.text(8), metadata(), bytes_.text(8)});
        }
        out.metadata = metadata();
        return out;
    }

    fuzz::Bytes& bytes_;
};

void unfold(const Description& description) {
    const auto size = occt::unfoldedSize(description);
    if (!size || *size > kLargestTree) return;
    const occt::FlatTree tree(description);
    fuzz::require(tree.size() <= *size,
                  "a tree has as many components as were counted, PMI "
                  "of definitions that are not used left out");
    std::size_t children = 0;
    for (HPS::ComponentId id = 0; id < tree.size(); ++id) {
        const auto& node = tree.node(id);
        fuzz::require(node.end > id && node.end <= tree.size(), "a range ends inside the tree");
        fuzz::require(id == 0 || node.parent < id, "owners stand before what they own");
        children += tree.childCount(id);
        static_cast<void>(tree.type(id));
        static_cast<void>(tree.placement(id));
    }
    fuzz::require(children + 1 == tree.size(), "every component but the first has one owner");
}

void comesBack(const Description& description) {
    const std::string packed = occt::packDescription(description);
    const auto again = occt::unpackDescription(packed);
    fuzz::require(again.has_value(), "what was packed can be unpacked");
    fuzz::require(Dump(*again).text() == Dump(description).text(),
                  "an unpacked description is the one that was packed");
    fuzz::require(!occt::unpackDescription(packed + '\0'), "nothing stands behind the end");
    fuzz::require(!occt::unpackDescription(packed.substr(0, packed.size() - 1)),
                  "a description that was cut off is damaged");
    unfold(description);
}

void unpack(const std::string& packed) {
    if (const auto description = occt::unpackDescription(packed)) comesBack(*description);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Bytes bytes(data, size);
    unpack(std::string(bytes.rest()));
    const Description made = Maker(bytes).description();
    comesBack(made);
    unpack(bytes.damaged(occt::packDescription(made)));
    return 0;
}
