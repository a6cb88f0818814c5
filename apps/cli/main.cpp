#include <exception>

#include "apps/cli/console.h"
#include "apps/cli/options.h"
#include "apps/cli/session.h"
#include "apps/cli/text.h"

namespace {

int run(const cli::Options& options) {
    const bool compares = !options.listSwitches && !options.referencePath.empty();
    if (options.saveSwitches || options.listSwitches) {
        const int exitCode = cli::runSwitches(options);
        if (exitCode != cli::exit_code::Same || !compares) return exitCode;
    }
    return cli::runSession(options);
}

}  // namespace

int main(int argc, char** argv) {
    cli::Console console(false);
    try {
        const cli::ParsedArguments parsed = cli::parseArguments(argc, argv);
        if (parsed.options) return run(*parsed.options);
        if (!parsed.standardError.empty()) console.line(parsed.standardError);
        if (!cli::writeOutput(parsed.standardOutput)) return cli::exit_code::Trouble;
        return parsed.exitCode;
    } catch (const std::exception& failure) {
        console.line("bextora: " + cli::printable(std::string_view(failure.what())));
        return cli::exit_code::Trouble;
    }
}
