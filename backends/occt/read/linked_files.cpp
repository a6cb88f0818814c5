#include "backends/occt/read/linked_files.h"

#include <algorithm>
#include <deque>
#include <map>
#include <memory>
#include <new>
#include <set>
#include <unordered_map>
#include <utility>

#include <Standard_Failure.hxx>
#include <Standard_OutOfMemory.hxx>
#include <TCollection_AsciiString.hxx>
#include <TDF_Label.hxx>
#include <TDF_Tool.hxx>
#include <TDataStd_Name.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>

#include "backends/occt/read/item_names.h"
#include "backends/occt/step/checks.h"
#include "platform/hps/component_type.h"

namespace occt {
namespace {

using HPS::Exchange::ImportCause;
using MaybeCause = std::optional<ImportCause>;

// An occurrence is a component or two, and its bodies are some more.
constexpr std::uint64_t kMostComponents = 4 * step::kMostOccurrences;

std::string inQuotes(const std::string& text) {
    return "\"" + text + "\"";
}

/// One file that was read.
struct Loaded {
    std::size_t file = 0;
    DescribedModel model;
    std::unique_ptr<BinaryDocument> document;  ///< null for the first: it has the caller's
    std::size_t base = 0;                      ///< of its definitions among all
};

/// A product whose content is the root of a file.
struct Graft {
    std::size_t from = 0;        ///< position in the list of loaded files
    std::size_t definition = 0;  ///< position in that file's description
    std::size_t to = 0;          ///< position in the list of loaded files
};

class LinkedFiles {
public:
    LinkedFiles(const InputFiles& files, const ReadContext& context, BinaryDocument& document)
        : files_(files), context_(context), document_(document) {}

    MaybeCause run(DescribedModel& out) {
        loaded_.emplace_back();
        if (auto cause = read(0, document_, loaded_.back().model)) return cause;
        for (std::size_t i = 0; i < loaded_.size(); ++i) follow(i);
        measure();
        order();
        merge(out);
        return refuse(out.description);
    }

private:
    MaybeCause read(std::size_t number, BinaryDocument& document, DescribedModel& model) {
        const InputFile& file = files_.all()[number];
        if (file.cause) return file.cause;
        if (!file.found.format) return InputFiles::unknownFormat(file);
        const auto otherFile = [this, number](const std::string& name) -> const std::string* {
            const FileLink& link = files_.link(number, name);
            if (link.file == FileLink::kNone) return nullptr;
            const InputFile& other = files_.all()[link.file];
            return other.cause ? nullptr : &other.bytes;
        };
        const ReadRequest request{file.path, file.bytes,        context_.options,
                                  otherFile, context_.progress, document};
        if (auto cause = readerOf(file.found.format->id)(request, model)) return cause;
        if (const Format* const misnamed = file.found.misnamed) {
            model.warnings.push_back("The name ends like that of " + std::string(misnamed->name) +
                                     ", but the content is " + file.found.format->name + ".");
        }
        return std::nullopt;
    }

    /// The same for a file without which the rest can be read.
    MaybeCause tryToRead(std::size_t number, BinaryDocument& document, DescribedModel& model) {
        try {
            return read(number, document, model);
        } catch (const Standard_OutOfMemory&) {
            throw;
        } catch (const Standard_Failure& failure) {
            return ImportCause{"damaged", files_.all()[number].path +
                                              " is damaged: the reader gave up (" +
                                              failure.DynamicType()->Name() + ")."};
        } catch (const std::bad_alloc&) {
            throw;
        } catch (const std::exception& failure) {
            return ImportCause{"damaged", files_.all()[number].path +
                                              " is damaged: the reader gave up (" + failure.what() +
                                              ")."};
        }
    }

    void follow(std::size_t from) {
        const std::size_t file = loaded_[from].file;
        for (std::size_t i = 0; i < loaded_[from].model.external.size(); ++i) {
            const ExternalContent external = loaded_[from].model.external[i];
            const FileLink& link = files_.link(file, external.file);
            if (link.file == FileLink::kNone) {
                lose(from, external, "its file " + inQuotes(external.file) + " " + link.obstacle);
                continue;
            }
            const std::size_t to = load(link.file);
            if (to == FileLink::kNone) {
                std::string why = failures_[link.file];
                if (why.ends_with('.')) why.pop_back();
                lose(from, external, why);
            } else {
                grafts_.push_back({from, external.definition, to});
            }
        }
    }

    /// Position of a file among the loaded ones; none when it can't be read.
    std::size_t load(std::size_t file) {
        const auto known = positions_.find(file);
        if (known != positions_.end()) return known->second;
        if (file == 0) return positions_[0] = 0;
        Loaded loaded;
        loaded.file = file;
        loaded.document = std::make_unique<BinaryDocument>();
        if (const auto cause = tryToRead(file, *loaded.document, loaded.model)) {
            failures_[file] = cause->text;
            return positions_[file] = FileLink::kNone;
        }
        loaded_.push_back(std::move(loaded));
        return positions_[file] = loaded_.size() - 1;
    }

    /// The product stays, with a body of which nothing is known.
    void lose(std::size_t in, const ExternalContent& external, const std::string& why) {
        Description& description = loaded_[in].model.description;
        DescribedDefinition& definition = description.definitions[external.definition];
        description.gaps.push_back(inQuotes(definition.name) + " was not read: " + why + ".");
        DescribedItem unknown;
        unknown.type = HPS::ComponentType::BrepModel;
        unknown.name = "Body";
        definition.items.push_back(std::move(unknown));
    }

    void measure() {
        std::vector<Measurement> all;
        for (Loaded& loaded : loaded_) {
            auto& some = loaded.model.measurements;
            all.insert(all.end(), some.begin(), some.end());
            some.clear();
        }
        context_.progress.beginPhase("measuring", 0.97);
        measureBodies(all, [this](double share) { context_.progress.report(share); });
    }

    /// Puts grafts in an order in which a file's own are done before its root is copied. What
    /// leads back to a file that is still open is dropped.
    void order() {
        std::vector<std::vector<std::size_t>> byFile(loaded_.size());
        for (std::size_t i = 0; i < grafts_.size(); ++i) byFile[grafts_[i].from].push_back(i);
        std::vector<std::size_t> next(loaded_.size(), 0);
        std::vector<bool> open(loaded_.size(), false);
        std::vector<bool> done(loaded_.size(), false);
        std::vector<Graft> ordered;
        std::vector<std::size_t> stack = {0};
        open[0] = true;
        while (!stack.empty()) {
            const std::size_t file = stack.back();
            if (next[file] == byFile[file].size()) {
                for (const std::size_t i : byFile[file]) {
                    if (dropped_.count(i) == 0) ordered.push_back(grafts_[i]);
                }
                open[file] = false;
                done[file] = true;
                stack.pop_back();
                continue;
            }
            const std::size_t graft = byFile[file][next[file]++];
            const std::size_t to = grafts_[graft].to;
            if (open[to]) {
                dropCircle(graft);
            } else if (!done[to]) {
                open[to] = true;
                stack.push_back(to);
            }
        }
        grafts_ = std::move(ordered);
    }

    void dropCircle(std::size_t number) {
        const Graft& graft = grafts_[number];
        dropped_.insert(number);
        lose(graft.from, {graft.definition, {}},
             "its file " + inQuotes(files_.all()[loaded_[graft.to].file].path) +
                 " contains itself through it");
    }

    void merge(DescribedModel& out) {
        out = {};
        Description& all = out.description;
        for (Loaded& loaded : loaded_) {
            Description& own = loaded.model.description;
            const bool isFirst = loaded.file == 0;
            if (!isFirst) bring(loaded);
            loaded.base = all.definitions.size();
            for (DescribedDefinition& definition : own.definitions) {
                for (DescribedUsage& usage : definition.usages) {
                    usage.definition += static_cast<std::uint32_t>(loaded.base);
                }
                all.definitions.push_back(std::move(definition));
            }
            const std::string where =
                isFirst ? "" : "In " + inQuotes(files_.all()[loaded.file].path) + ": ";
            for (const std::string& gap : own.gaps) all.gaps.push_back(where + gap);
            for (const std::string& warning : loaded.model.warnings) {
                out.warnings.push_back(where + warning);
            }
        }
        const Description& first = loaded_[0].model.description;
        all.unitMm = first.unitMm;
        all.root = first.root;
        all.fileMetadata = first.fileMetadata;
        if (loaded_.size() == 1) return;
        for (const Graft& graft : grafts_) apply(graft, all);
        dropUnused(all);
        makePmiUnique(all);
    }

    /// Brings the shapes of a file's items into the common document.
    void bring(Loaded& loaded) {
        const auto from = XCAFDoc_DocumentTool::ShapeTool(document_.handle()->Main());
        std::unordered_map<std::string, std::string> labels;
        for (DescribedDefinition& definition : loaded.model.description.definitions) {
            for (DescribedItem& item : definition.items) {
                if (item.label.empty()) continue;
                std::string& label = labels[item.label];
                if (label.empty()) {
                    const TopoDS_Shape shape = loaded.document->shape(item.label, {});
                    const TDF_Label fresh = from->AddShape(shape, Standard_False, Standard_False);
                    TDataStd_Name::Set(
                        fresh, TCollection_ExtendedString(definition.name.c_str(), Standard_True));
                    TCollection_AsciiString entry;
                    TDF_Tool::Entry(fresh, entry);
                    label = entry.ToCString();
                }
                item.label = label;
            }
        }
        loaded.document.reset();
    }

    void apply(const Graft& graft, Description& all) const {
        const Loaded& source = loaded_[graft.to];
        DescribedDefinition& to = all.definitions[loaded_[graft.from].base + graft.definition];
        const DescribedDefinition& root =
            all.definitions[source.base + source.model.description.root];
        to.isAssembly = root.isAssembly;
        to.usages = root.usages;
        // Construction geometry of the product's own stays.
        to.items.insert(to.items.end(), root.items.begin(), root.items.end());
        makeUnique(to.items);
        to.pmi.insert(to.pmi.end(), root.pmi.begin(), root.pmi.end());
        to.unitMm = root.unitMm;
        to.unitName = root.unitName;
        std::set<std::string> known;
        for (const HPS::MetadataValue& value : to.metadata) known.insert(value.name);
        for (const HPS::MetadataValue& value : root.metadata) {
            if (known.count(value.name) == 0) to.metadata.push_back(value);
        }
    }

    static void dropUnused(Description& all) {
        std::vector<bool> used(all.definitions.size(), false);
        std::vector<std::size_t> open = {all.root};
        used[all.root] = true;
        while (!open.empty()) {
            const std::size_t number = open.back();
            open.pop_back();
            for (const DescribedUsage& usage : all.definitions[number].usages) {
                if (used[usage.definition]) continue;
                used[usage.definition] = true;
                open.push_back(usage.definition);
            }
        }
        std::vector<std::uint32_t> numbers(all.definitions.size(), 0);
        std::vector<DescribedDefinition> kept;
        for (std::size_t i = 0; i < used.size(); ++i) {
            if (!used[i]) continue;
            numbers[i] = static_cast<std::uint32_t>(kept.size());
            kept.push_back(std::move(all.definitions[i]));
        }
        for (DescribedDefinition& definition : kept) {
            for (DescribedUsage& usage : definition.usages) {
                usage.definition = numbers[usage.definition];
            }
        }
        all.root = numbers[all.root];
        all.definitions = std::move(kept);
    }

    static void makePmiUnique(Description& all) {
        std::set<std::string> taken;
        for (DescribedDefinition& definition : all.definitions) {
            for (DescribedPmi& pmi : definition.pmi) {
                const std::string stem = pmi.name;
                for (std::size_t n = 2; !taken.insert(pmi.name).second; ++n) {
                    pmi.name = stem + " " + std::to_string(n);
                }
            }
        }
    }

    MaybeCause refuse(const Description& description) const {
        const std::string& name = files_.all()[0].path;
        const auto size = unfoldedSize(description);
        if (!size) return ImportCause{"damaged", name + " is damaged: a part contains itself."};
        if (*size <= kMostComponents) return std::nullopt;
        return ImportCause{"too-large",
                           name +
                               " is too large: with the files that it refers to it unfolds "
                               "into more than " +
                               std::to_string(kMostComponents) + " components."};
    }

    const InputFiles& files_;
    const ReadContext& context_;
    BinaryDocument& document_;
    std::deque<Loaded> loaded_;
    std::vector<Graft> grafts_;
    std::set<std::size_t> dropped_;
    std::map<std::size_t, std::size_t> positions_ = {{0, 0}};
    std::map<std::size_t, std::string> failures_;
};

}  // namespace

MaybeCause readWithLinks(const InputFiles& files, const ReadContext& context,
                         BinaryDocument& document, DescribedModel& out) {
    return LinkedFiles(files, context, document).run(out);
}

}  // namespace occt
