# gcc 12 takes what instrumented code looks like for reads past an end or before a start; the plain
# builds keep these warnings.
if(BEXTORA_SANITIZER AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-Wno-maybe-uninitialized -Wno-array-bounds -Wno-restrict
                        -Wno-stringop-overflow -Wno-stringop-overread -Wno-null-dereference)
endif()

if(BEXTORA_SANITIZER STREQUAL "address")
    # Without the checks of each pointer's use: what they find shows as a bad access too, and they
    # double the time to compile.
    add_compile_options(-fsanitize=address,undefined
                        -fno-sanitize=null,alignment,object-size,vptr
                        -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
elseif(BEXTORA_SANITIZER STREQUAL "thread")
    add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
    add_link_options(-fsanitize=thread)
elseif(NOT BEXTORA_SANITIZER STREQUAL "")
    message(FATAL_ERROR "BEXTORA_SANITIZER: unknown value ${BEXTORA_SANITIZER}")
endif()

if(BEXTORA_FUZZ)
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        message(FATAL_ERROR "BEXTORA_FUZZ needs clang: its fuzzer watches which branches are taken")
    endif()
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# bextora_known_leaks(program): leaves out what third parties leak.
function(bextora_known_leaks program)
    if(BEXTORA_SANITIZER STREQUAL "address" AND NOT TARGET known_leaks)
        add_library(known_leaks OBJECT ${PROJECT_SOURCE_DIR}/tests/support/known_leaks.cpp)
    endif()
    if(TARGET known_leaks)
        target_link_libraries(${program} PRIVATE known_leaks)
    endif()
endfunction()
