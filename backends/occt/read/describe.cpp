#include "backends/occt/read/describe.h"

#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>

#include <TCollection_AsciiString.hxx>
#include <TDF_LabelSequence.hxx>
#include <TDF_Tool.hxx>
#include <TDataStd_Name.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS_TShape.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>

#include "backends/occt/read/annotate.h"
#include "backends/occt/read/bodies.h"
#include "backends/occt/read/item_names.h"
#include "backends/occt/step/units.h"
#include "platform/hps/component_type.h"

namespace occt {
namespace {

using HPS::Exchange::BRepMode;

constexpr const char* kPartWord = "Part";
constexpr const char* kAssemblyWord = "Assembly";

std::string entryOf(const TDF_Label& label) {
    TCollection_AsciiString entry;
    TDF_Tool::Entry(label, entry);
    return entry.ToCString();
}

class Describer {
public:
    Describer(const step::Part21& file, const step::Products& products,
              const StepTranslation& translation, const HPS::Exchange::ImportOptions& options,
              BinaryDocument& document)
        : file_(file),
          products_(products),
          translation_(translation),
          options_(options),
          tool_(XCAFDoc_DocumentTool::ShapeTool(document.handle()->Main())),
          names_(file, translation) {
        const step::NamedUnit unit = step::namedUnit(step::fileUnitMm(file));
        out_.description.unitMm = unit.lengthMm;
        fileUnit_ = unit;
    }

    DescribedModel run() {
        for (const step::Product& product : products_.products) addProduct(product);
        annotate(out_.description, file_, products_, options_);
        for (std::size_t i = 0; i < products_.products.size(); ++i) {
            const std::size_t holder = addHolder(i);
            addContent(i, holder);
            addMeshes(i, holder);
            closeHolder(i, holder);
        }
        std::vector<std::uint32_t> roots;
        for (const std::size_t root : products_.roots) {
            roots.push_back(static_cast<std::uint32_t>(root));
        }
        addFreeShapes(roots);
        finishRoot(roots);
        link();
        return std::move(out_);
    }

private:
    std::vector<DescribedDefinition>& definitions() { return out_.description.definitions; }

    void addProduct(const step::Product& product) {
        DescribedDefinition definition;
        definition.isAssembly = !product.usages.empty();
        definition.name = !product.name.empty()   ? product.name
                          : definition.isAssembly ? kAssemblyWord
                                                  : kPartWord;
        setUnit(definition, step::namedUnit(product.unitMm));
        for (const step::ProductUsage& usage : product.usages) {
            definition.usages.push_back(
                {static_cast<std::uint32_t>(usage.product), usage.placement, {}});
        }
        definitions().push_back(std::move(definition));
    }

    static void setUnit(DescribedDefinition& definition, const step::NamedUnit& unit) {
        definition.unitMm = unit.lengthMm;
        definition.unitName = unit.name;
    }

    void addContent(std::size_t number, std::size_t holder) {
        const TopoDS_Shape shape = translation_.shape(products_.products[number].instance);
        if (shape.IsNull()) return;
        const TDF_Label label = labelOf(shape, definitions()[number].name);
        claimed_.insert(entryOf(label));
        addItems(holder, label);
    }

    /// Bodies of an assembly's own stand below one more leaf, named like it.
    std::size_t addHolder(std::size_t number) {
        if (!definitions()[number].isAssembly) return number;
        DescribedDefinition leaf;
        leaf.name = definitions()[number].name;
        leaf.unitMm = definitions()[number].unitMm;
        leaf.unitName = definitions()[number].unitName;
        definitions().push_back(std::move(leaf));
        return definitions().size() - 1;
    }

    void closeHolder(std::size_t number, std::size_t holder) {
        if (holder == number) return;
        if (definitions()[holder].items.empty()) {
            definitions().pop_back();
        } else {
            definitions()[number].usages.push_back(
                {static_cast<std::uint32_t>(holder), kNoMove, {}});
        }
    }

    /// Label of a part's shape in its own frame, made when the translation left none.
    TDF_Label labelOf(const TopoDS_Shape& shape, const std::string& name) {
        TDF_Label label = translation_.label(shape);
        if (label.IsNull()) label = tool_->AddShape(shape, Standard_False, Standard_False);
        TDataStd_Name::Set(label, TCollection_ExtendedString(name.c_str(), Standard_True));
        return label;
    }

    void addItems(std::size_t number, const TDF_Label& label) {
        const std::string entry = entryOf(label);
        const bool meshOnly = options_.brepMode == BRepMode::TessellationOnly;
        std::vector<std::string> names;
        for (Body& body : collectBodies(XCAFDoc_ShapeTool::GetShape(label), options_)) {
            DescribedItem item;
            item.type = body.type;
            item.name = names_.of(body.shape);
            item.label = entry;
            item.path = std::move(body.path);
            if (meshOnly && body.type == HPS::ComponentType::BrepModel) {
                const TopoDS_Shape mesh = meshOf(body.shape, options_.tessellationLevel);
                if (mesh.IsNull()) continue;
                const TDF_Label meshLabel = tool_->AddShape(mesh, Standard_False, Standard_False);
                claimed_.insert(entryOf(meshLabel));
                item = {HPS::ComponentType::PolyBrepModel,
                        item.name,
                        entryOf(meshLabel),
                        {},
                        {},
                        false,
                        {}};
                body.shape = mesh;
            }
            definitions()[number].items.push_back(std::move(item));
            shapes_[{number, definitions()[number].items.size() - 1}] = body.shape;
        }
    }

    /// Bodies that the file gives as triangles, for a part that has no exact ones.
    void addMeshes(std::size_t number, std::size_t holder) {
        const step::Product& product = products_.products[number];
        // What the options leave out of the exact bodies does not come back as triangles.
        const TopoDS_Shape exact = translation_.shape(product.instance);
        if (!exact.IsNull() && TopExp_Explorer(exact, TopAbs_FACE).More()) return;
        std::size_t damaged = 0;
        for (const step::MeshBody& mesh : step::readMeshBodies(file_, product, damaged)) {
            if (!(mesh.isSolid ? options_.solids : options_.surfaces)) continue;
            const TopoDS_Shape shape = shapeOf(mesh);
            const TDF_Label label = tool_->AddShape(shape, Standard_False, Standard_False);
            claimed_.insert(entryOf(label));
            DescribedItem item;
            item.type = HPS::ComponentType::PolyBrepModel;
            item.name = mesh.name;
            item.label = entryOf(label);
            definitions()[holder].items.push_back(std::move(item));
            shapes_[{holder, definitions()[holder].items.size() - 1}] = shape;
        }
        if (damaged > 0) {
            out_.description.gaps.push_back(std::to_string(damaged) + " faces of meshes in \"" +
                                            definitions()[number].name + "\" could not be read.");
        }
    }

    /// Shapes that belong to no product: each becomes a part.
    void addFreeShapes(std::vector<std::uint32_t>& roots) {
        TDF_LabelSequence free;
        tool_->GetFreeShapes(free);
        for (const TDF_Label& label : free) {
            if (claimed_.count(entryOf(label)) != 0) continue;
            if (XCAFDoc_ShapeTool::IsAssembly(label)) continue;
            DescribedDefinition part;
            part.name = kPartWord;
            setUnit(part, fileUnit_);
            definitions().push_back(std::move(part));
            addItems(definitions().size() - 1, label);
            if (definitions().back().items.empty() && !roots.empty()) {
                definitions().pop_back();
            } else {
                roots.push_back(static_cast<std::uint32_t>(definitions().size() - 1));
            }
        }
    }

    void finishRoot(const std::vector<std::uint32_t>& roots) {
        if (roots.size() == 1) {
            out_.description.root = roots[0];
            return;
        }
        if (roots.empty() && definitions().empty()) return;
        DescribedDefinition root;
        root.name = kAssemblyWord;
        root.isAssembly = true;
        setUnit(root, fileUnit_);
        for (const std::uint32_t child : roots) root.usages.push_back({child, kNoMove, {}});
        out_.description.root = static_cast<std::uint32_t>(definitions().size());
        definitions().push_back(std::move(root));
    }

    /// Definitions don't move any more: what is to be measured can point at them.
    void link() {
        for (DescribedDefinition& definition : definitions()) makeUnique(definition.items);
        for (const auto& [place, shape] : shapes_) {
            out_.measurements.push_back({shape, &definitions()[place.first].items[place.second]});
        }
    }

    const step::Part21& file_;
    const step::Products& products_;
    const StepTranslation& translation_;
    const HPS::Exchange::ImportOptions& options_;
    Handle(XCAFDoc_ShapeTool) tool_;
    ItemNames names_;
    step::NamedUnit fileUnit_ = {};
    DescribedModel out_;
    std::set<std::string> claimed_;
    std::map<std::pair<std::size_t, std::size_t>, TopoDS_Shape> shapes_;
};

}  // namespace

DescribedModel describe(const step::Part21& file, const step::Products& products,
                        const StepTranslation& translation,
                        const HPS::Exchange::ImportOptions& options, BinaryDocument& document) {
    return Describer(file, products, translation, options, document).run();
}

}  // namespace occt
