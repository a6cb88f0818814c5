# Debian's package declares its toolkits as imported targets, but its configuration also asks for
# the toolkits of every optional module; naming the libraries ourselves needs only what we link.
find_path(OPENCASCADE_INCLUDE_DIR Standard_Version.hxx PATH_SUFFIXES opencascade REQUIRED)

# bextora_link_occt(target SCOPE toolkit...): links Open CASCADE toolkits to a target.
function(bextora_link_occt target scope)
    target_include_directories(${target} SYSTEM ${scope} ${OPENCASCADE_INCLUDE_DIR})
    foreach(toolkit IN LISTS ARGN)
        find_library(OPENCASCADE_${toolkit} ${toolkit} REQUIRED)
        target_link_libraries(${target} ${scope} ${OPENCASCADE_${toolkit}})
    endforeach()
endfunction()
