#include "samples/model_writer.h"

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include <APIHeaderSection_MakeHeader.hxx>
#include <Interface_Static.hxx>
#include <Quantity_Color.hxx>
#include <STEPCAFControl_Controller.hxx>
#include <STEPCAFControl_Writer.hxx>
#include <StepBasic_Product.hxx>
#include <StepBasic_ProductDefinitionFormation.hxx>
#include <TCollection_ExtendedString.hxx>
#include <TCollection_HAsciiString.hxx>
#include <TDF_LabelSequence.hxx>
#include <TDataStd_Name.hxx>
#include <TopLoc_Location.hxx>
#include <XCAFApp_Application.hxx>
#include <XCAFDimTolObjects_DatumObject.hxx>
#include <XCAFDimTolObjects_DimensionObject.hxx>
#include <XCAFDimTolObjects_GeomToleranceObject.hxx>
#include <XCAFDoc_Datum.hxx>
#include <XCAFDoc_DimTolTool.hxx>
#include <XCAFDoc_Dimension.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_GeomTolerance.hxx>
#include <XCAFDoc_MaterialTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>

#include "samples/step_properties.h"

namespace samples {
namespace {

Handle(TCollection_HAsciiString) text(const std::string& value) {
    return new TCollection_HAsciiString(value.c_str());
}

void setName(const TDF_Label& label, const std::string& name) {
    // The flag makes it read UTF-8 and not single bytes.
    TDataStd_Name::Set(label, TCollection_ExtendedString(name.c_str(), Standard_True));
}

using Products = std::map<std::string, Handle(StepBasic_ProductDefinition)>;

Products productsByName(const Handle(StepData_StepModel) & model) {
    Products products;
    for (Standard_Integer i = 1; i <= model->NbEntities(); ++i) {
        const auto definition = Handle(StepBasic_ProductDefinition)::DownCast(model->Value(i));
        if (definition.IsNull() || definition->Formation().IsNull()) continue;
        products.try_emplace(definition->Formation()->OfProduct()->Name()->ToCString(), definition);
    }
    return products;
}

void setHeader(const Handle(StepData_StepModel) & model, const std::string& fileName) {
    APIHeaderSection_MakeHeader header(model);
    header.SetName(text(fileName));
    // A fixed moment: the same model gives the same bytes.
    header.SetTimeStamp(text("2024-01-01T00:00:00"));
    header.SetAuthorValue(1, text("Bextora samples"));
    header.SetOrganizationValue(1, text(""));
    header.SetOriginatingSystem(text("bextora-samples"));
    header.SetDescriptionValue(1, text("Sample of our own making"));
}

bool encodeFile(const std::string& from, const std::string& to) {
    std::ifstream in(from, std::ios::binary);
    std::stringstream raw;
    raw << in.rdbuf();
    std::ofstream out(to, std::ios::binary | std::ios::trunc);
    out << withEncodedText(raw.str());
    out.close();
    return in.good() && out.good();
}

}  // namespace

ModelWriter::ModelWriter() {
    XCAFApp_Application::GetApplication()->NewDocument("BinXCAF", document_);
    XCAFDoc_ShapeTool::SetAutoNaming(Standard_False);
}

ModelWriter::~ModelWriter() {
    XCAFApp_Application::GetApplication()->Close(document_);
}

TDF_Label ModelWriter::part(const std::string& name, const TopoDS_Shape& shape) {
    const auto shapes = XCAFDoc_DocumentTool::ShapeTool(document_->Main());
    const TDF_Label label = shapes->AddShape(shape, Standard_False);
    setName(label, name);
    return label;
}

TDF_Label ModelWriter::assembly(const std::string& name) {
    const TDF_Label label = XCAFDoc_DocumentTool::ShapeTool(document_->Main())->NewShape();
    setName(label, name);
    return label;
}

void ModelWriter::place(const TDF_Label& assembly, const TDF_Label& product,
                        const gp_Trsf& placement) {
    const auto shapes = XCAFDoc_DocumentTool::ShapeTool(document_->Main());
    const TDF_Label component = shapes->AddComponent(assembly, product, TopLoc_Location(placement));
    Handle(TDataStd_Name) name;
    if (product.FindAttribute(TDataStd_Name::GetID(), name)) {
        TDataStd_Name::Set(component, name->Get());
    }
}

void ModelWriter::color(const TDF_Label& part, double red, double green, double blue) {
    colors_.push_back(
        {XCAFDoc_ShapeTool::GetShape(part), Quantity_Color(red, green, blue, Quantity_TOC_sRGB)});
}

void ModelWriter::material(const TDF_Label& part, const std::string& name,
                           const std::string& description, double densityKgPerM3) {
    // The library keeps densities in g/cm^3.
    XCAFDoc_DocumentTool::MaterialTool(document_->Main())
        ->SetMaterial(part, text(name), text(description), densityKgPerM3 / 1000.0,
                      text("density measure"), text("POSITIVE_RATIO_MEASURE"));
}

void ModelWriter::property(const std::string& product, const std::string& key,
                           const std::string& value) {
    properties_.push_back({product, key, value, 0.0, false});
}

void ModelWriter::lengthProperty(const std::string& product, const std::string& key,
                                 double valueMm) {
    properties_.push_back({product, key, {}, valueMm, true});
}

TDF_Label ModelWriter::faceLabel(const TDF_Label& part, const TopoDS_Face& face) {
    return XCAFDoc_DocumentTool::ShapeTool(document_->Main())->AddSubShape(part, face);
}

void ModelWriter::dimension(const TDF_Label& part, const TopoDS_Face& face,
                            const Dimension& dimension) {
    const auto tool = XCAFDoc_DocumentTool::DimTolTool(document_->Main());
    const TDF_Label label = tool->AddDimension();
    tool->SetDimension(faceLabel(part, face), label);
    Handle(XCAFDimTolObjects_DimensionObject) object = new XCAFDimTolObjects_DimensionObject;
    object->SetType(dimension.diameter ? XCAFDimTolObjects_DimensionType_Size_Diameter
                                       : XCAFDimTolObjects_DimensionType_Size_Thickness);
    object->SetSemanticName(text(dimension.name));
    object->SetValue(dimension.valueMm);
    object->SetUpperTolValue(dimension.upperMm);
    object->SetLowerTolValue(dimension.lowerMm);
    Handle(XCAFDoc_Dimension) attribute;
    if (label.FindAttribute(XCAFDoc_Dimension::GetID(), attribute)) attribute->SetObject(object);
}

void ModelWriter::datum(const TDF_Label& part, const TopoDS_Face& face, const std::string& letter) {
    datums_.push_back({letter, faceLabel(part, face)});
}

void ModelWriter::flatness(const TDF_Label& part, const TopoDS_Face& face, double valueMm) {
    tolerance(part, face, XCAFDimTolObjects_GeomToleranceType_Flatness, valueMm, {});
}

void ModelWriter::position(const TDF_Label& part, const TopoDS_Face& face, double valueMm,
                           const std::string& letter) {
    tolerance(part, face, XCAFDimTolObjects_GeomToleranceType_Position, valueMm, letter);
}

void ModelWriter::tolerance(const TDF_Label& part, const TopoDS_Face& face, int type,
                            double valueMm, const std::string& letter) {
    const auto tool = XCAFDoc_DocumentTool::DimTolTool(document_->Main());
    const TDF_Label label = tool->AddGeomTolerance();
    tool->SetGeomTolerance(faceLabel(part, face), label);
    Handle(XCAFDimTolObjects_GeomToleranceObject) object =
        new XCAFDimTolObjects_GeomToleranceObject;
    object->SetType(static_cast<XCAFDimTolObjects_GeomToleranceType>(type));
    object->SetValue(valueMm);
    if (!letter.empty()) {
        object->SetTypeOfValue(XCAFDimTolObjects_GeomToleranceTypeValue_Diameter);
    }
    Handle(XCAFDoc_GeomTolerance) attribute;
    if (label.FindAttribute(XCAFDoc_GeomTolerance::GetID(), attribute)) {
        attribute->SetObject(object);
    }
    for (const Datum& datum : datums_) {
        if (datum.letter != letter) continue;
        // The writer wants one datum label per reference, not one per datum.
        const TDF_Label reference = tool->AddDatum();
        TDF_LabelSequence faces;
        faces.Append(datum.faceLabel);
        tool->SetDatum(faces, reference);
        Handle(XCAFDimTolObjects_DatumObject) datumObject = new XCAFDimTolObjects_DatumObject;
        datumObject->SetName(text(letter));
        datumObject->SetPosition(1);
        Handle(XCAFDoc_Datum) datumAttribute;
        if (reference.FindAttribute(XCAFDoc_Datum::GetID(), datumAttribute)) {
            datumAttribute->SetObject(datumObject);
        }
        tool->SetDatumToGeomTol(reference, label);
    }
}

bool ModelWriter::write(const std::string& path, const std::string& fileName, std::string& error) {
    XCAFDoc_DocumentTool::ShapeTool(document_->Main())->UpdateAssemblies();

    // Statics first: a writer takes them when it is made.
    STEPCAFControl_Controller::Init();
    Interface_Static::SetCVal("write.step.unit", "MM");
    Interface_Static::SetIVal("write.step.schema", 5);        // AP242, the schema that carries PMI
    Interface_Static::SetIVal("write.surfacecurve.mode", 0);  // a third of the size
    Interface_Static::SetCVal("write.step.product.name", "Sample");
    STEPCAFControl_Writer writer;
    writer.SetDimTolMode(Standard_True);
    writer.SetMaterialMode(Standard_True);
    writer.SetColorMode(Standard_False);
    if (!writer.Transfer(document_, STEPControl_AsIs)) {
        error = "the model can't be translated to STEP";
        return false;
    }
    const Handle(StepData_StepModel) model = writer.ChangeWriter().Model();
    addColors(writer.ChangeWriter().WS(), colors_);
    const Products products = productsByName(model);
    for (const Property& property : properties_) {
        const auto product = products.find(property.product);
        if (product == products.end()) {
            error = "no product is named " + property.product;
            return false;
        }
        if (property.isLength) {
            addLengthProperty(model, product->second, property.key, property.valueMm);
        } else {
            addTextProperty(model, product->second, property.key, property.text);
        }
    }
    setHeader(model, fileName);

    const std::string raw = path + ".tmp";
    const bool good = writer.Write(raw.c_str()) == IFSelect_RetDone && encodeFile(raw, path);
    std::error_code ignored;
    std::filesystem::remove(raw, ignored);
    if (!good) error = "can't write " + path;
    return good;
}

}  // namespace samples
