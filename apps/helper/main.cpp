#include <cstdio>
#include <string>
#include <vector>

#include "backends/comparer/comparer.h"
#include "backends/occt/import_helper.h"
#include "backends/posix/posix.h"

int main(int count, char** values) {
    std::vector<std::string> arguments(values + 1, values + count);
    if (arguments.empty()) {
        std::fputs("This program is started by others: bextora-helper import|compare|keep ...\n",
                   stderr);
        return 2;
    }
    const std::string command = arguments.front();
    arguments.erase(arguments.begin());
    const auto channel = posix::parentChannel();
    const auto confinement = posix::makeConfinement();
    posix::exitWhenMemoryIsRefused();
    if (command == "import") return occt::runImportHelper(arguments, *channel, confinement.get());
    if (command == "compare")
        return comparer::runCompareHelper(arguments, *channel, confinement.get());
    if (command == "keep") return comparer::runKeepHelper(arguments, *channel, confinement.get());
    std::fprintf(stderr, "bextora-helper: unknown command %s\n", command.c_str());
    return 2;
}
