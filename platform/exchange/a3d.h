#pragma once

#include <cstddef>

/// The exchange library "A3DLIBS.dll" as this system calls it. All functions return 0 when they
/// did what they say; every other number is a failure, and the output is then untouched.
extern "C" {

using A3DStatus = int;
using A3DDouble = double;

/// Every structure carries its own size, so that a library can refuse one that it doesn't know.
struct A3DAsmProductOccurrenceData {
    std::size_t structSize;
    /// Length of the occurrence's unit in millimetres.
    A3DDouble unit;
};

struct A3DAsmModelFileData {
    std::size_t structSize;
    /// Length of the file's unit in millimetres.
    A3DDouble unit;
};

struct A3DPhysicalPropertiesData {
    std::size_t structSize;
    A3DDouble accuracyLevel;  ///< in: 0 to 1
    A3DDouble volume;         ///< out: in the cube of the entity's unit
    A3DDouble surface;        ///< out: in the square of the entity's unit
};

/// Address of a function of the library by name, or null.
using A3DGetProcAddressFunction = void* (*)(const char* name);

/// `utf8` has room for `capacity` bytes, the terminating zero included.
using A3DMiscUnicodeToUTF8Function = A3DStatus (*)(const wchar_t* text, std::size_t capacity,
                                                   char* utf8);
/// Loads a model file; it stays loaded for the life of the process.
using A3DAsmModelFileLoadFromFileFunction = A3DStatus (*)(const char* utf8Path,
                                                          const void** modelFile);
using A3DAsmModelFileGetFunction = A3DStatus (*)(const void* modelFile, A3DAsmModelFileData* data);
using A3DAsmProductOccurrenceGetFunction = A3DStatus (*)(const void* occurrence,
                                                         A3DAsmProductOccurrenceData* data);
/// Exact properties of a closed B-rep body. An open body is a failure.
using A3DComputePhysicalPropertiesFunction = A3DStatus (*)(const void* item,
                                                           A3DPhysicalPropertiesData* data);
/// Properties of a closed mesh body.
using A3DComputePolyBrepPhysicalPropertiesFunction = A3DStatus (*)(const void* item,
                                                                   A3DPhysicalPropertiesData* data);
}
