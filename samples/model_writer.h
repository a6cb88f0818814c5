#pragma once

#include <string>
#include <vector>

#include <TDF_Label.hxx>
#include <TDocStd_Document.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Shape.hxx>
#include <gp_Trsf.hxx>

#include "samples/step_colors.h"

namespace samples {

/// A product structure under construction, written as one AP242 STEP file. Texts are UTF-8,
/// lengths millimetres. The same calls give the same bytes on every machine and at any time.
class ModelWriter {
public:
    ModelWriter();
    ~ModelWriter();
    ModelWriter(const ModelWriter&) = delete;
    ModelWriter& operator=(const ModelWriter&) = delete;

    /// A product with the bodies of `shape`. It shows up once it is placed.
    TDF_Label part(const std::string& name, const TopoDS_Shape& shape);
    TDF_Label assembly(const std::string& name);
    void place(const TDF_Label& assembly, const TDF_Label& product, const gp_Trsf& placement);

    /// sRGB, each in [0, 1].
    void color(const TDF_Label& part, double red, double green, double blue);
    void material(const TDF_Label& part, const std::string& name, const std::string& description,
                  double densityKgPerM3);

    /// User-defined properties, attached to the product of that name.
    void property(const std::string& product, const std::string& key, const std::string& value);
    void lengthProperty(const std::string& product, const std::string& key, double valueMm);

    struct Dimension {
        bool diameter = false;
        std::string name;
        double valueMm = 0.0;
        double upperMm = 0.0;
        double lowerMm = 0.0;
    };
    void dimension(const TDF_Label& part, const TopoDS_Face& face, const Dimension& dimension);
    void datum(const TDF_Label& part, const TopoDS_Face& face, const std::string& letter);
    void flatness(const TDF_Label& part, const TopoDS_Face& face, double valueMm);
    /// Position of a bore within a cylindrical zone, to the datum of that letter.
    void position(const TDF_Label& part, const TopoDS_Face& face, double valueMm,
                  const std::string& letter);

    /// `fileName` goes into the header. False when the file could not be written; `error` then
    /// says why.
    bool write(const std::string& path, const std::string& fileName, std::string& error);

private:
    struct Property {
        std::string product;
        std::string key;
        std::string text;
        double valueMm = 0.0;
        bool isLength = false;
    };
    struct Datum {
        std::string letter;
        TDF_Label faceLabel;
    };

    TDF_Label faceLabel(const TDF_Label& part, const TopoDS_Face& face);
    void tolerance(const TDF_Label& part, const TopoDS_Face& face, int type, double valueMm,
                   const std::string& letter);

    Handle(TDocStd_Document) document_;
    std::vector<PartColor> colors_;
    std::vector<Property> properties_;
    std::vector<Datum> datums_;
};

}  // namespace samples
