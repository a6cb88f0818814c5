#include "backends/occt/read/xbf_reader.h"

#include <ios>
#include <locale>
#include <map>
#include <sstream>
#include <unordered_map>

#include <BRepBuilderAPI_Transform.hxx>
#include <BinXCAFDrivers.hxx>
#include <PCDM_ReaderStatus.hxx>
#include <Standard_Failure.hxx>
#include <Standard_OutOfMemory.hxx>
#include <TCollection_AsciiString.hxx>
#include <TDF_ChildIterator.hxx>
#include <TDF_LabelSequence.hxx>
#include <TDataStd_Name.hxx>
#include <TDataStd_NamedData.hxx>
#include <TDocStd_Application.hxx>
#include <TDocStd_Document.hxx>
#include <TopoDS_TShape.hxx>
#include <UnitsMethods_LengthUnit.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>

#include "backends/occt/read/body_writer.h"
#include "backends/occt/read/xbf_outline.h"
#include "backends/occt/step/units.h"

namespace occt {
namespace {

using HPS::Exchange::ImportCause;

std::string utf8(const TCollection_ExtendedString& text) {
    return TCollection_AsciiString(text).ToCString();
}

std::string nameOf(const TDF_Label& label) {
    Handle(TDataStd_Name) name;
    return label.FindAttribute(TDataStd_Name::GetID(), name) ? utf8(name->Get()) : std::string();
}

std::vector<HPS::MetadataValue> metadataOf(const TDF_Label& label) {
    Handle(TDataStd_NamedData) data;
    if (!label.FindAttribute(TDataStd_NamedData::GetID(), data)) return {};
    // By name, since the library keeps them in hash order.
    std::map<std::string, decltype(HPS::MetadataValue::value)> values;
    data->LoadDeferredData();
    if (data->HasStrings()) {
        for (TDataStd_DataMapOfStringString::Iterator it(data->GetStringsContainer()); it.More();
             it.Next()) {
            values[utf8(it.Key())] = utf8(it.Value());
        }
    }
    if (data->HasReals()) {
        for (TDataStd_DataMapOfStringReal::Iterator it(data->GetRealsContainer()); it.More();
             it.Next()) {
            values[utf8(it.Key())] = it.Value();
        }
    }
    if (data->HasIntegers()) {
        for (TColStd_DataMapOfStringInteger::Iterator it(data->GetIntegersContainer()); it.More();
             it.Next()) {
            values[utf8(it.Key())] = static_cast<std::int32_t>(it.Value());
        }
    }
    std::vector<HPS::MetadataValue> out;
    for (auto& [name, value] : values) out.push_back({name, std::move(value)});
    return out;
}

/// The library waits for positions that a damaged document never brings it to, and does nothing
/// meanwhile but ask where it is.
class ImpatientBuffer : public std::stringbuf {
public:
    explicit ImpatientBuffer(const std::string& bytes) : std::stringbuf(bytes, std::ios::in) {}

protected:
    pos_type seekoff(off_type offset, std::ios::seekdir from, std::ios::openmode mode) override {
        const pos_type place = std::stringbuf::seekoff(offset, from, mode);
        times_ = place == last_ ? times_ + 1 : 0;
        last_ = place;
        if (times_ > kMostTimes) throw std::ios_base::failure("no progress");
        return place;
    }

private:
    static constexpr int kMostTimes = 1000;
    pos_type last_ = -1;
    int times_ = 0;
};

class XbfReader {
public:
    XbfReader(const ReadRequest& request, DescribedModel& out)
        : request_(request), out_(out), bodies_(request, out) {
        BinXCAFDrivers::DefineFormat(application_);
    }

    ~XbfReader() {
        try {
            if (!document_.IsNull() && document_->IsOpened()) application_->Close(document_);
        } catch (const Standard_Failure&) {
            // It goes with its last handle all the same.
        }
    }
    XbfReader(const XbfReader&) = delete;
    XbfReader& operator=(const XbfReader&) = delete;

    std::optional<ImportCause> run() {
        request_.progress.beginPhase("reading", 0.45);
        if (auto cause = open()) return cause;
        request_.progress.beginPhase("translating", 0.85);
        takeUnit();
        tool_ = XCAFDoc_DocumentTool::ShapeTool(document_->Main());
        TDF_LabelSequence free;
        tool_->GetFreeShapes(free);
        std::vector<std::uint32_t> roots;
        for (const TDF_Label& label : free) roots.push_back(definitionOf(label));
        if (roots.empty()) return damaged("it holds no shape");
        // Definitions come to the end of the list as they are met.
        for (std::size_t i = 0; i < labels_.size(); ++i) expand(i);
        finishRoot(roots);
        bodies_.finish();
        tellGaps();
        return std::nullopt;
    }

private:
    ImportCause damaged(const std::string& why) const {
        return {"damaged", request_.name + " is damaged: " + why + "."};
    }

    std::optional<ImportCause> open() {
        ImpatientBuffer buffer(request_.bytes);
        std::istream stream(&buffer);
        stream.imbue(std::locale::classic());
        stream.exceptions(std::ios::failbit | std::ios::badbit);
        const Handle(OcctProgress) progress = new OcctProgress(request_.progress);
        try {
            const PCDM_ReaderStatus status =
                application_->Open(stream, document_, progress->Start());
            if (status == PCDM_RS_OK && !document_.IsNull()) return std::nullopt;
            const int code = static_cast<int>(status);
            document_.Nullify();
            return damaged("the document cannot be read (status " + std::to_string(code) + ")");
        } catch (const Standard_OutOfMemory&) {
            throw;
        } catch (const Standard_Failure& failure) {
            return damaged("reading gave up (" + std::string(failure.DynamicType()->Name()) + ")");
        } catch (const std::ios_base::failure&) {
            return damaged("its sections do not stand where it says");
        }
    }

    void takeUnit() {
        double lengthMm = 1.0;
        XCAFDoc_DocumentTool::GetLengthUnit(document_, lengthMm,
                                            UnitsMethods_LengthUnit_Millimeter);
        if (lengthMm > 0.0) scale_ = lengthMm;
        unit_ = step::namedUnit(scale_);
        out_.description.unitMm = unit_.lengthMm;
    }

    std::vector<DescribedDefinition>& definitions() { return out_.description.definitions; }

    std::uint32_t definitionOf(const TDF_Label& label) {
        const auto fresh = static_cast<std::uint32_t>(definitions().size());
        const auto known = numbers_.try_emplace(entryOf(label), fresh);
        if (!known.second) return known.first->second;
        DescribedDefinition definition;
        definition.isAssembly = XCAFDoc_ShapeTool::IsAssembly(label);
        definition.name = nameOf(label);
        if (definition.name.empty()) definition.name = definition.isAssembly ? "Assembly" : "Part";
        definition.unitMm = unit_.lengthMm;
        definition.unitName = unit_.name;
        if (request_.options.attributes) definition.metadata = metadataOf(label);
        definitions().push_back(std::move(definition));
        labels_.push_back(label);
        return fresh;
    }

    void expand(std::size_t number) {
        if (definitions()[number].isAssembly) {
            addUsages(number);
        } else {
            addBodies(number);
        }
    }

    void addUsages(std::size_t number) {
        TDF_LabelSequence components;
        XCAFDoc_ShapeTool::GetComponents(labels_[number], components);
        for (const TDF_Label& component : components) {
            TDF_Label referred;
            const bool leads = XCAFDoc_ShapeTool::GetReferredShape(component, referred);
            if (!leads || XCAFDoc_ShapeTool::GetShape(referred).IsNull()) {
                ++lostUsages_;
                continue;
            }
            DescribedUsage usage;
            usage.definition = definitionOf(referred);
            usage.placement = placementOf(XCAFDoc_ShapeTool::GetLocation(component));
            if (request_.options.attributes) usage.metadata = metadataOf(component);
            definitions()[number].usages.push_back(std::move(usage));
        }
        usages_ += static_cast<std::size_t>(components.Length());
    }

    Placement placementOf(const TopLoc_Location& location) const {
        const gp_Trsf move = location.Transformation();
        Placement placement = kNoMove;
        for (int row = 0; row < 3; ++row) {
            for (int column = 0; column < 4; ++column) {
                const double value = move.Value(row + 1, column + 1);
                placement[static_cast<std::size_t>(4 * row + column)] =
                    column == 3 ? value * scale_ : value;
            }
        }
        return placement;
    }

    void addBodies(std::size_t number) {
        TopoDS_Shape shape = XCAFDoc_ShapeTool::GetShape(labels_[number]);
        if (shape.IsNull()) return;
        const auto names = namesBelow(labels_[number]);
        const BodyWriter::NameOf nameOf = [&names](const TopoDS_Shape& body) {
            const auto found = names.find(body.TShape().get());
            return found == names.end() ? std::string() : found->second;
        };
        if (scale_ != 1.0) {
            gp_Trsf scaling;
            scaling.SetScaleFactor(scale_);
            shape = BRepBuilderAPI_Transform(shape, scaling, Standard_True).Shape();
        }
        bodies_.add(number, shape, scale_ == 1.0 ? nameOf : BodyWriter::NameOf());
    }

    /// Names of sub-shapes that have labels of their own.
    static std::unordered_map<const void*, std::string> namesBelow(const TDF_Label& label) {
        std::unordered_map<const void*, std::string> names;
        for (TDF_ChildIterator child(label); child.More(); child.Next()) {
            const TopoDS_Shape shape = XCAFDoc_ShapeTool::GetShape(child.Value());
            if (shape.IsNull()) continue;
            std::string name = nameOf(child.Value());
            if (!name.empty()) names.try_emplace(shape.TShape().get(), std::move(name));
        }
        return names;
    }

    void finishRoot(const std::vector<std::uint32_t>& roots) {
        if (roots.size() == 1) {
            out_.description.root = roots[0];
            return;
        }
        DescribedDefinition root;
        root.name = "Assembly";
        root.isAssembly = true;
        root.unitMm = unit_.lengthMm;
        root.unitName = unit_.name;
        for (const std::uint32_t child : roots) root.usages.push_back({child, kNoMove, {}});
        out_.description.root = static_cast<std::uint32_t>(definitions().size());
        definitions().push_back(std::move(root));
    }

    void tellGaps() {
        if (lostUsages_ > 0) {
            out_.description.gaps.push_back(std::to_string(usages_ - lostUsages_) + " of " +
                                            std::to_string(usages_) + " usages were read.");
        }
        for (std::string& gap : xbfGaps(request_.bytes, document_)) {
            out_.description.gaps.push_back(std::move(gap));
        }
    }

    const ReadRequest& request_;
    DescribedModel& out_;
    BodyWriter bodies_;
    Handle(TDocStd_Application) application_ = new TDocStd_Application;
    Handle(TDocStd_Document) document_;
    Handle(XCAFDoc_ShapeTool) tool_;
    double scale_ = 1.0;  // millimetres of the document's unit
    step::NamedUnit unit_ = {};
    std::unordered_map<std::string, std::uint32_t> numbers_;  // by a label's entry
    std::vector<TDF_Label> labels_;                           // by definition
    std::size_t usages_ = 0;
    std::size_t lostUsages_ = 0;
};

}  // namespace

std::optional<ImportCause> readXbf(const ReadRequest& request, DescribedModel& out) {
    return XbfReader(request, out).run();
}

}  // namespace occt
