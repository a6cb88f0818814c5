// A library that tells where it was found.
extern "C" __attribute__((visibility("default"))) int foundIn() {
    return FOUND_IN;
}
