# A program's bundle: the folder named for it, beside it, with the resources that all updaters share and those that only
# this one has.
#
#   add_bundle(vupdater-simulated FILES ${CMAKE_CURRENT_SOURCE_DIR}/dialog-200.ui)

function(add_bundle program)
    cmake_parse_arguments(BUNDLE "" "" "FILES" ${ARGN})
    get_property(shared GLOBAL PROPERTY SHARED_RESOURCES)
    set(folder ${PROGRAM_FOLDER}/${program}.app/Contents/Resources)
    set(copies)
    foreach(file ${shared} ${BUNDLE_FILES})
        cmake_path(GET file FILENAME name)
        add_custom_command(
            OUTPUT ${folder}/${name}
            COMMAND ${CMAKE_COMMAND} -E copy ${file} ${folder}/${name}
            DEPENDS ${file}
            VERBATIM)
        list(APPEND copies ${folder}/${name})
    endforeach()
    add_custom_target(${program}_bundle ALL DEPENDS ${copies})
    add_dependencies(${program}_bundle shared_resources)
    add_dependencies(${program} ${program}_bundle)
endfunction()
