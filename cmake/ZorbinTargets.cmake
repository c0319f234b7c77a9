# What every target of this project shares, stated once.

# Language level, warnings and hidden visibility.
function(zorbin_set_up_target target)
    target_compile_features(${target} PUBLIC cxx_std_17)
    set_target_properties(${target} PROPERTIES
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
    if(ZORBIN_WARNINGS_AS_ERRORS)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
endfunction()

# A shared library with its headers, installed and exported as NAME::NAME in a CMake package of
# its own. HEADERS are installed under include/NAME.
function(zorbin_add_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "HEADERS;SOURCES")
    add_library(${name} SHARED ${arg_SOURCES} ${arg_HEADERS})
    add_library(${name}::${name} ALIAS ${name})
    zorbin_set_up_target(${name})
    set_target_properties(${name} PROPERTIES
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR})
    target_include_directories(${name} PUBLIC
        "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/library>"
        "$<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}>"
        "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>"
        "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/${name}>")
    install(TARGETS ${name} EXPORT ${name}Targets)
    install(FILES ${arg_HEADERS} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${name})

    set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/${name})
    install(EXPORT ${name}Targets NAMESPACE ${name}:: DESTINATION ${package_dir})
    configure_package_config_file(
        ${PROJECT_SOURCE_DIR}/cmake/${name}Config.cmake.in ${name}Config.cmake
        INSTALL_DESTINATION ${package_dir})
    write_basic_package_version_file(${name}ConfigVersion.cmake COMPATIBILITY SameMajorVersion)
    install(FILES
        ${CMAKE_CURRENT_BINARY_DIR}/${name}Config.cmake
        ${CMAKE_CURRENT_BINARY_DIR}/${name}ConfigVersion.cmake
        DESTINATION ${package_dir})
endfunction()

# A program of this project that isn't installed: test, example or benchmark.
function(zorbin_add_program name)
    add_executable(${name} ${ARGN})
    zorbin_set_up_target(${name})
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
endfunction()

# A QtTest program tests/NAME.cpp, run by ctest under Xvfb unless a display is there.
function(zorbin_add_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
    zorbin_add_program(${name} ${name}.cpp ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE zorbin-test-support ${arg_LIBRARIES})
    add_test(NAME ${name} COMMAND ${name})
endfunction()
