#include "backends/comparer/status.h"

namespace comparer {

bxtimp::IDocComparer::Status statusFor(const Side& reference, const Side& compare,
                                       std::string& cause) {
    using Comparer = bxtimp::IDocComparer;
    const bool referenceEmpty = reference.instances.empty();
    const bool compareEmpty = compare.instances.empty();
    if (referenceEmpty && compareEmpty) {
        cause = "Neither file has any geometry.";
        return Comparer::NothingCompared;
    }
    if (referenceEmpty) {
        cause = "The reference file has no geometry.";
        return Comparer::OpenCompareAlone;
    }
    if (compareEmpty) {
        cause = "The compare file has no geometry.";
        return Comparer::OpenReferenceAlone;
    }
    if (reference.isAssembly == compare.isAssembly) return Comparer::Done;
    cause = reference.isAssembly ? "The reference file is an assembly, the compare file a part."
                                 : "The reference file is a part, the compare file an assembly.";
    return reference.isAssembly ? Comparer::AssemblyAgainstPart : Comparer::PartAgainstAssembly;
}

}  // namespace comparer
