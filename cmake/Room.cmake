# A room is one folder and one static library: every .cpp in the folder but the main.cpp of a program or plugin, linked to
# the rooms below it.
#
#   add_room(card LINKS platform)

include(GoogleTest)

set(PROGRAM_FOLDER ${CMAKE_BINARY_DIR}/bin)

function(set_project_warnings target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Werror)
endfunction()

function(add_room name)
    cmake_parse_arguments(ROOM "" "" "LINKS" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
    list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
    add_library(${name} STATIC ${sources})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
    target_link_libraries(${name} PUBLIC ${ROOM_LINKS})
    set_project_warnings(${name})
endfunction()

# For rooms that wait for the user or for files. Where nothing repeats, small code is faster: a program starts by
# bringing it into memory.
function(optimise_for_size)
    foreach(target ${ARGN})
        target_compile_options(${target} PRIVATE $<$<CONFIG:Release>:-Os>)
    endforeach()
endfunction()

# A program: one main file. All programs are in one folder, with their bundles beside them.
#
#   add_program(cardsim SOURCE main.cpp LINKS cardsim_commands)
function(add_program name)
    cmake_parse_arguments(PROGRAM "" "SOURCE" "LINKS" ${ARGN})
    add_executable(${name} ${PROGRAM_SOURCE})
    target_link_libraries(${name} PRIVATE ${PROGRAM_LINKS})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROGRAM_FOLDER})
    set_project_warnings(${name})
endfunction()

# The tests of one room: every .cpp in the current folder, and in the FOLDERS below it, one executable named <room>_tests.
# With OWN_MAIN one of the files has the main function.
#
#   add_room_tests(card LINKS card)
function(add_room_tests room)
    cmake_parse_arguments(ROOM "OWN_MAIN" "" "FOLDERS;LINKS" ${ARGN})
    set(sources)
    foreach(folder . ${ROOM_FOLDERS})
        file(GLOB in_folder CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.cpp)
        list(APPEND sources ${in_folder})
    endforeach()
    add_executable(${room}_tests ${sources})
    target_include_directories(${room}_tests PRIVATE ${PROJECT_SOURCE_DIR})
    target_link_libraries(${room}_tests PRIVATE ${ROOM_LINKS} GTest::gtest)
    if(NOT ROOM_OWN_MAIN)
        target_link_libraries(${room}_tests PRIVATE GTest::gtest_main)
    endif()
    set_project_warnings(${room}_tests)
    gtest_discover_tests(${room}_tests DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 300
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
endfunction()
