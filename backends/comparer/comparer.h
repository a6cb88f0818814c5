#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "backends/occt/import_service.h"
#include "platform/exchange/services.h"
#include "platform/os/child_process.h"
#include "platform/os/confinement.h"

namespace comparer {

/// What a comparison reports while it runs, to the host's log and progress display. Called on the
/// worker thread, never after that worker was killed.
struct Observer {
    /// `fraction` in [0, 1] never goes backwards; `phase` in plain words: "importing",
    /// "reading", "measuring", "matching", "comparing faces", "writing".
    std::function<void(double fraction, const std::string& phase)> progress;
    /// A cause of failure, or what could not be compared: one UTF-8 sentence.
    std::function<void(const std::string& text)> log;
};

/// The defaults, and why they are what they are. Systems write coordinates with six to fifteen
/// digits and tolerate gaps of 1e-3 to 1e-2 mm in a model; what is closer than 1e-3 mm is below
/// any tolerance that is put on a drawing. Volumes and areas are integrated numerically: the same
/// body, written again by another writer, agrees to about 1e-6 (5 of 200 parts of a re-exported
/// assembly differed by more than that), so 1e-5 leaves room. It is a filter only: two bodies
/// count as equal when their corners, rims and centres agree to the length tolerance as well, and
/// points of every span of their edges and faces, so that a small hole which moved by 0.05 mm in a
/// large plate is still found. Where two surfaces meet, files hold an approximation of the edge:
/// edges may differ by what they lie off their own surfaces, and by 0.05 mm at most.
struct Options {
    /// Lengths closer than this are equal, in millimetres.
    double lengthToleranceMm = 1e-3;
    /// Relative differences of volumes, areas and moments below this are none.
    double relativeTolerance = 1e-5;
    /// Planes and axes of faces that make a smaller angle point the same way, in degrees. 0.05 is
    /// less than the tightest general tolerance for angles on drawings, five minutes of arc. It
    /// tells faces apart that are too small for the length tolerance to see them turn.
    double angleToleranceDeg = 0.05;
    /// False looks at bodies of identical content as at any others, for tests.
    bool shortcuts = true;
    /// Two bodies whose faces take longer to compare are not compared.
    double bodyTimeLimitS = 120.0;
    Observer observer;
};

/// Services of the exchange folder: a comparer that works in a helper process on the documents
/// that `imports` keeps, the readers of its result file, and the question for several bodies in
/// one part. The platform's own services must be installed before the first comparison.
bxtexchange::Services makeServices(std::shared_ptr<occt::ImportService> imports,
                                   const Options& options);

/// Bodies of the helper's `compare` and `keep` commands. Both return the process's exit code, 0
/// for success; a failure has been sent to the host by then.
///   compare --reference FOLDER --compare FOLDER --out FILE
///           --length-tolerance MM --relative-tolerance NUMBER --angle-tolerance DEG
///           [--shortcuts off] [--body-limit-s SECONDS]
///   keep --result FILE --out FILE.glb
/// The name of the command itself may stand first. `compare` sends the number of the comparer's
/// status as the result "status" and writes FILE only when it is 0.
/// Both confine the process before they open what an import left; null: they don't.
int runCompareHelper(const std::vector<std::string>& arguments, os::ParentChannel& channel,
                     os::Confinement* confinement = nullptr);
int runKeepHelper(const std::vector<std::string>& arguments, os::ParentChannel& channel,
                  os::Confinement* confinement = nullptr);

}  // namespace comparer
