#pragma once

#include <string>
#include <vector>

#include <TopoDS_Shape.hxx>

/// STEP files of single shapes, sound and odd.
namespace data_test {

/// Writes a shape in millimetres with lengths in `unit` ("MM", "INCH", "M"); false on failure.
bool writeStep(const TopoDS_Shape& shape, const char* unit, const std::string& path);

/// Several shapes in one file.
TopoDS_Shape together(const std::vector<TopoDS_Shape>& shapes);

/// A box without its lid, as a shell.
TopoDS_Shape openBox(double a, double b, double c);

/// A cube with a cubic hollow in its middle.
TopoDS_Shape hollowBox(double edge, double hollow);

/// A box whose faces look inwards.
TopoDS_Shape insideOutBox(double a, double b, double c);

/// A solid of two faces that lie on one another.
TopoDS_Shape flatSolid(double a, double b);

/// A cylinder on its base, cut by a plane that rises by `slope` and meets the axis at `mean`.
TopoDS_Shape cutCylinder(double radius, double mean, double slope);

/// A prism over an outline that crosses itself.
TopoDS_Shape bowTie(double a, double b, double height);

}  // namespace data_test
