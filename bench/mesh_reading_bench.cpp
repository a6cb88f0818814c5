// Reads an STL file of 50 MB into a scene and, in the same run, lets "cat" write the same file
// into sha256sum and md5sum; prints the ratios of the times.

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <numbers>
#include <string>
#include <vector>

#include "backends/mesh/scene.h"

namespace {

constexpr int kRows = 708;  // about a million triangles
constexpr int kRounds = 7;

using Clock = std::chrono::steady_clock;

double msSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

std::array<float, 3> pointAt(int row, int column) {
    const double tilt = std::numbers::pi * row / kRows;
    const double turn = 2.0 * std::numbers::pi * (column % kRows) / kRows;
    const double radius = 50.0 + 2.0 * std::sin(7.0 * turn) * std::sin(5.0 * tilt);
    return {static_cast<float>(radius * std::sin(tilt) * std::cos(turn)),
            static_cast<float>(radius * std::sin(tilt) * std::sin(turn)),
            static_cast<float>(radius * std::cos(tilt))};
}

void append(std::string& out, const void* data, std::size_t size) {
    out.append(static_cast<const char*>(data), size);
}

/// A bumpy ball.
std::string makeStl() {
    std::string out(80, '\0');
    const std::uint32_t count = 2U * kRows * kRows;
    append(out, &count, sizeof count);
    const float normal[3] = {};
    for (int row = 0; row < kRows; ++row) {
        for (int column = 0; column < kRows; ++column) {
            const auto a = pointAt(row, column);
            const auto b = pointAt(row + 1, column);
            const auto c = pointAt(row + 1, column + 1);
            const auto d = pointAt(row, column + 1);
            for (const auto& triangle : {std::array{a, b, c}, std::array{a, c, d}}) {
                append(out, normal, sizeof normal);
                append(out, triangle.data(), sizeof triangle);
                out.append(2, '\0');
            }
        }
    }
    return out;
}

double timeCommand(const std::string& command) {
    const auto start = Clock::now();
    if (std::system(command.c_str()) != 0) std::exit(2);
    return msSince(start);
}

std::string bytesOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::string bytes(std::filesystem::file_size(path), '\0');
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return bytes;
}

}  // namespace

int main() {
    const auto path = std::filesystem::temp_directory_path() / "mesh_reading_bench.stl";
    {
        const std::string made = makeStl();
        std::ofstream(path, std::ios::binary)
            .write(made.data(), static_cast<std::streamsize>(made.size()));
    }
    std::vector<double> reading;
    std::vector<double> sha256;
    std::vector<double> md5;
    std::size_t triangles = 0;
    for (int round = 0; round < kRounds; ++round) {
        const auto start = Clock::now();
        const auto outcome = mesh::read(mesh::Format::Stl, bytesOf(path), {});
        reading.push_back(msSince(start));
        triangles = outcome.refusal ? 0 : outcome.scene.definitions[0].bodies[0].triangles.size();
        sha256.push_back(timeCommand("cat " + path.string() + " | sha256sum >/dev/null"));
        md5.push_back(timeCommand("cat " + path.string() + " | md5sum >/dev/null"));
    }
    std::filesystem::remove(path);
    std::printf("%zu triangles, medians of %d rounds\n", triangles, kRounds);
    std::printf("file to scene    %8.1f ms\n", median(reading));
    std::printf("cat | sha256sum  %8.1f ms  ratio %.2f\n", median(sha256),
                median(reading) / median(sha256));
    std::printf("cat | md5sum     %8.1f ms  ratio %.2f\n", median(md5),
                median(reading) / median(md5));
    return triangles == 0 ? 1 : 0;
}
