#pragma once

#include <cstdint>
#include <string>

namespace torture {

/// What a run is about. The same settings give the same cases on every machine.
struct Settings {
    std::uint64_t seed = 1;
    std::uint64_t first = 0;
    std::uint64_t end = 0;
    std::string samplesFolder;
    std::string dataFolder;
    std::string keepFolder;  ///< for inputs of violations; empty: they are not kept
    std::string workFolder;  ///< exists; for the inputs
    std::string helper;      ///< empty: the one beside this program
    std::uint32_t limitMs = 20'000;
    unsigned atOnce = 3;
    bool keepAll = false;
    bool soundFiles = false;  ///< the bases themselves instead of damaged ones
};

/// Imports the cases [first, end) as a host does, several at once, and prints one line each:
///   case TAB number TAB kind TAB outcome TAB seconds TAB violation TAB what was damaged
/// Returns 0 when it came to its end, whatever the verdicts are.
int runHost(const Settings& settings);

}  // namespace torture
