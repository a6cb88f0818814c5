#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "tests/support/step_builder.h"

// Writes an assembly of many instances of few parts as STEP, or an edited one:
//   step_assembly A|B INSTANCES PARTS OUT.step
// In B one instance in fifty is missing, one in thirty moved, and one part in twenty is larger.

namespace {

constexpr double kPitchMm = 40.0;

std::string assembly(bool edited, std::size_t instances, std::size_t parts) {
    support::StepBuilder builder;
    std::vector<std::size_t> products;
    for (std::size_t p = 0; p < parts; ++p) {
        const double i = static_cast<double>(p);
        const double height = 5.0 + 0.03 * i + (edited && p % 20 == 7 ? 0.5 : 0.0);
        products.push_back(
            builder.addBox("Part " + std::to_string(p), {10.0 + 0.05 * i, 8.0 + 0.07 * i, height}));
    }
    const std::size_t root = builder.addAssembly("Store");
    for (std::size_t n = 0; n < instances; ++n) {
        if (edited && n % 50 == 3) continue;
        const double column = static_cast<double>(n % 100);
        const double row = static_cast<double>(n / 100);
        const double shift = edited && n % 30 == 11 ? 3.0 : 0.0;
        builder.use(root, products[n % parts], {kPitchMm * column + shift, kPitchMm * row, 0.0});
    }
    return builder.write();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 5) {
        std::fprintf(stderr, "usage: step_assembly A|B INSTANCES PARTS OUT.step\n");
        return 2;
    }
    const std::size_t instances = std::strtoul(argv[2], nullptr, 10);
    const std::size_t parts = std::strtoul(argv[3], nullptr, 10);
    if (parts == 0) return 2;
    std::ofstream out(argv[4], std::ios::binary);
    out << assembly(std::string(argv[1]) == "B", instances, parts);
    return out.flush() ? 0 : 1;
}
