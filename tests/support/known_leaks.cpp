// Leaks that are not ours, for programs built with the address sanitizer. Compiled in and not a
// file that LSAN_OPTIONS names, since a helper that is locked in may not read one.

// The run time looks it up in the program, so it must be seen from outside.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();

extern "C" const char* __lsan_default_suppressions() {
    // Open CASCADE never frees some tables of its STEP reader and writer; lib3mf never closes
    // archives that it gives up on.
    return "leak:libTK\n"
           "leak:libzip\n";
}
