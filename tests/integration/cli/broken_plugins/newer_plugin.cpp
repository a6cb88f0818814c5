#include <cstdlib>

// Entry points of a plug-in that was built for a later interface. Calling one is a mistake.
extern "C" __attribute__((visibility("default"))) int createPlugin(void**) {
    std::abort();
}
extern "C" __attribute__((visibility("default"))) int destroyPlugin(void**) {
    std::abort();
}
