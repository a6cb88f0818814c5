#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

/// STEP files of assemblies that no CAD system would write.
namespace support {

/// Writes products, boxes and usages as AP214 text. Lengths in millimetres.
class StepBuilder {
public:
    StepBuilder();

    /// A product whose shape is one box with these edges, a corner at its origin; its number.
    std::size_t addBox(const std::string& name, const std::array<double, 3>& sizeMm);

    /// A product without a body of its own.
    std::size_t addAssembly(const std::string& name);

    /// Puts one more `child` into `parent`, moved by this much.
    void use(std::size_t parent, std::size_t child, const std::array<double, 3>& atMm);

    std::string write() const;

private:
    struct Product {
        int definition = 0;
        int representation = 0;
        int origin = 0;
    };

    int add(const std::string& text);
    int addPlacement(const std::array<double, 3>& atMm);
    int addPoint(const std::array<double, 3>& atMm);
    int addDirection(const std::array<double, 3>& along);
    int addBoxSolid(const std::array<double, 3>& sizeMm);
    int addBoxFace(const std::array<int, 12>& edges, int face);
    std::size_t addProduct(const std::string& name, const std::string& representationType,
                           const std::string& items, int origin);

    std::string lines_;
    int last_ = 0;
    int context_ = 0;
    int productContext_ = 0;
    int definitionContext_ = 0;
    std::vector<Product> products_;
    std::vector<std::array<double, 3>> corners_;
};

/// `levels` assemblies, each holding the next, around one box.
std::string chainAssembly(std::size_t levels);

/// `levels` assemblies, each holding the next twice: 2^levels boxes in a file of a few lines.
std::string doublingAssembly(std::size_t levels);

/// An assembly that contains itself by way of `length` - 1 others; with a root above it that the
/// circle does not contain, or without any product that nothing uses.
std::string cyclicAssembly(std::size_t length, bool belowARoot);

}  // namespace support
