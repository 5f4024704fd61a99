# Compiler options of our own targets, and the search for packages that may be absent.

add_library(framesift_options INTERFACE)
target_compile_options(framesift_options INTERFACE
    -Wall -Wextra -Wconversion -Wshadow -Wpedantic -Wcast-align -Wcast-qual -Wformat=2 -Wundef -Wunused
    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast -Wextra-semi>)
# Not by default: another compiler than ours may know more warnings.
if(FRAMESIFT_WERROR)
    target_compile_options(framesift_options INTERFACE -Werror)
endif()

if(FRAMESIFT_SANITIZE)
    add_compile_options(-fsanitize=${FRAMESIFT_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${FRAMESIFT_SANITIZE})
endif()

# framesift_find(OPTION PACKAGE): finds PACKAGE for the part that OPTION switches on. If it is missing, that part is left
# out with a message, so that a plain compiler and CMake still build the library.
macro(framesift_find OPTION PACKAGE)
    find_package(${PACKAGE} ${ARGN} QUIET)
    if(NOT ${PACKAGE}_FOUND)
        if(FRAMESIFT_REQUIRE_ALL)
            message(FATAL_ERROR "${OPTION} needs ${PACKAGE}")
        endif()
        message(STATUS "${OPTION}: left out, ${PACKAGE} was not found")
        return()
    endif()
endmacro()
