#include "workflow/shared_state.h"

namespace workflow {

SharedState& shared() {
    static SharedState state;
    return state;
}

}  // namespace workflow
