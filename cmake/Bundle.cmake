# A program's bundle: the folder named for it, beside it, with the resources that all updaters share and those that only
# this one has. Both are installed.
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

    # Installed, program and bundle are side by side as well, and a link to the program is in the folder for programs.
    set(home ${CMAKE_INSTALL_LIBDIR}/vupdater)
    set(link ${CMAKE_CURRENT_BINARY_DIR}/link/${program})
    cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_LIBDIR BASE_DIRECTORY ${CMAKE_INSTALL_FULL_BINDIR} OUTPUT_VARIABLE way)
    file(MAKE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/link)
    file(CREATE_LINK ${way}/vupdater/${program} ${link} SYMBOLIC)
    install(TARGETS ${program} DESTINATION ${home})
    install(FILES ${shared} ${BUNDLE_FILES} DESTINATION ${home}/${program}.app/Contents/Resources)
    install(FILES ${link} TYPE BIN)
endfunction()
