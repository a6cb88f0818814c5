// Entry points of the right version that make nothing.
extern "C" __attribute__((visibility("default"))) int createPlugin(void**) {
    return 0;
}
extern "C" __attribute__((visibility("default"))) int destroyPlugin(void**) {
    return 0;
}
