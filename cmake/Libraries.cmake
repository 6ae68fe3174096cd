# The libraries for everything below the window: CLI11, nlohmann's JSON and RapidXML, which are headers and so the same
# for every processor, and GoogleTest.

if(NOT CMAKE_CROSSCOMPILING)
    find_package(CLI11 REQUIRED)
    find_package(nlohmann_json REQUIRED)
    if(TESTS)
        find_package(GTest REQUIRED)
    endif()
    find_path(RAPIDXML_FOLDER rapidxml/rapidxml.hpp REQUIRED)
    add_library(RapidXML::RapidXML INTERFACE IMPORTED)
    target_include_directories(RapidXML::RapidXML INTERFACE ${RAPIDXML_FOLDER})
    return()
endif()

message(STATUS "Building for another processor: ${CMAKE_TOOLCHAIN_FILE}")

# This computer's /usr/include also holds its own C library, which is the wrong one for another processor. So a folder
# of links holds the headers that suit both, and nothing else.
function(add_header_library name headers)
    if(NOT EXISTS /usr/include/${headers})
        message(FATAL_ERROR "/usr/include/${headers} is missing: scripts/install-dependencies")
    endif()
    set(folder ${CMAKE_BINARY_DIR}/headers)
    file(MAKE_DIRECTORY ${folder})
    file(CREATE_LINK /usr/include/${headers} ${folder}/${headers} SYMBOLIC)
    add_library(${name} INTERFACE IMPORTED GLOBAL)
    target_include_directories(${name} INTERFACE ${folder})
endfunction()

add_header_library(CLI11::CLI11 CLI)
add_header_library(nlohmann_json::nlohmann_json nlohmann)
add_header_library(RapidXML::RapidXML rapidxml)
add_subdirectory(/usr/src/googletest/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
# On a 32-bit processor g++ 12 warns of copies of 2 GB in it, which do not happen.
target_compile_options(gtest PRIVATE -Wno-restrict)
