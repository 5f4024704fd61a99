# The boundary, checked from outside: each public header compiles alone, as C99 and as C++20, and the shared library
# exports what the headers declare and nothing else.

file(GLOB FRAMESIFT_PUBLIC_HEADERS CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/include/framesift/*.h)
foreach(FRAMESIFT_PUBLIC_HEADER ${FRAMESIFT_PUBLIC_HEADERS})
    get_filename_component(FRAMESIFT_HEADER_NAME ${FRAMESIFT_PUBLIC_HEADER} NAME_WE)
    foreach(FRAMESIFT_HEADER_LANGUAGE c cpp)
        set(FRAMESIFT_HEADER_SOURCE
            ${CMAKE_CURRENT_BINARY_DIR}/Header/${FRAMESIFT_HEADER_NAME}.${FRAMESIFT_HEADER_LANGUAGE})
        configure_file(${PROJECT_SOURCE_DIR}/Test/Header/OneHeader.in ${FRAMESIFT_HEADER_SOURCE} @ONLY)
        list(APPEND FRAMESIFT_HEADER_SOURCES_${FRAMESIFT_HEADER_LANGUAGE} ${FRAMESIFT_HEADER_SOURCE})
    endforeach()
endforeach()

add_library(framesift_header_c99 OBJECT ${FRAMESIFT_HEADER_SOURCES_c})
add_library(framesift_header_cxx20 OBJECT ${FRAMESIFT_HEADER_SOURCES_cpp})
foreach(FRAMESIFT_HEADER_TARGET framesift_header_c99 framesift_header_cxx20)
    target_include_directories(${FRAMESIFT_HEADER_TARGET} PRIVATE ${PROJECT_SOURCE_DIR}/include)
    target_link_libraries(${FRAMESIFT_HEADER_TARGET} PRIVATE framesift_options)
    target_compile_options(${FRAMESIFT_HEADER_TARGET} PRIVATE -pedantic-errors)
endforeach()

add_test(NAME ExportedSymbols
    COMMAND bash ${PROJECT_SOURCE_DIR}/cmake/check_exports.sh $<TARGET_FILE:framesift>)
