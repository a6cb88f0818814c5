#include <cstring>

#include "platform/exchange/a3d.h"

namespace {

A3DStatus succeed() {
    return 0;
}

}  // namespace

/// Knows every function but one.
extern "C" __attribute__((visibility("default"))) void* A3DGetProcAddress(const char* name) {
    const bool leftOut = std::strcmp(name, "A3DAsmModelFileGet") == 0;
    return leftOut ? nullptr : reinterpret_cast<void*>(succeed);
}
