// A library that has nothing to do with plug-ins.
extern "C" __attribute__((visibility("default"))) int unrelated() {
    return 0;
}
