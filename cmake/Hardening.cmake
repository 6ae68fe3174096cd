# Makes memory errors harder to exploit in the optimised build, by tables that cannot be overwritten once the
# program is loaded, and checks of the stack and of the C library's copies. Debian's compiler makes position-independent
# programs by itself, and a package's build, which has no build type, brings its own flags.

if(CMAKE_BUILD_TYPE STREQUAL "Release" AND NOT CMAKE_CROSSCOMPILING)
    add_compile_options(-fstack-protector-strong)
    add_compile_definitions(_FORTIFY_SOURCE=2)
    add_link_options(-Wl,-z,relro -Wl,-z,now)
endif()
