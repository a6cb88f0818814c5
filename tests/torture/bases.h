#pragma once

#include <string>
#include <vector>

namespace torture {

/// A sound file that damaged ones are made of.
struct Base {
    std::string kind;       ///< row of the table: "step", "stl binary", ...
    std::string extension;  ///< without the dot
    std::string name;
    std::string bytes;
    bool isText = false;
};

/// Small files of every kind: generated ones, and those of the folder of real files if there is
/// one. In an order that does not depend on the machine.
std::vector<Base> makeBases(const std::string& samplesFolder, const std::string& dataFolder,
                            std::size_t largestBytes);

/// Kinds of the bases, each once, in the order of their first base.
std::vector<std::string> kindsOf(const std::vector<Base>& bases);

/// The same base with damaged content: for a container that is often the content packed anew,
/// which gets past its checksums. `what` is said, `touched` counted as in damage.h.
struct Damaged {
    std::string bytes;
    std::string what;
    std::size_t touched = 0;
};
Damaged damaged(const std::vector<Base>& bases, std::size_t base, std::uint64_t seed,
                std::uint64_t number);

}  // namespace torture
