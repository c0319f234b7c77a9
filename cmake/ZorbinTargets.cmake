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
    if(ZORBIN_FAST_LINKER AND ZORBIN_HAS_GOLD)
        target_link_options(${target} PRIVATE -fuse-ld=gold)
    endif()
endfunction()

# Saves a target from reading headers of Qt and of the standard library for each of its sources, where
# ZORBIN_PRECOMPILE_HEADERS is on. Further headers may be given. Few are best: loading them all takes
# longer for each source than it saves.
function(zorbin_precompile_headers target)
    if(ZORBIN_PRECOMPILE_HEADERS)
        target_precompile_headers(${target} PRIVATE
            <algorithm> <cmath> <limits> <memory> <string> <vector>
            <QApplication> <QLabel> <QPainter> <QPointer> <QTimer> <QWidget> ${ARGN})
    endif()
endfunction()

# A shared library with its headers: a CMake package NAME with the target NAME::NAME and a pkg-config
# file NAME.pc. HEADERS are installed under include/NAME and documented by the target docs. What
# programs run with is the component NAME, what they are built with NAME-dev.
# PKG_CONFIG_REQUIRES and PKG_CONFIG_CFLAGS are what a program needs besides the library's own
# directories to compile its headers.
function(zorbin_add_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg
        "" "DESCRIPTION;PKG_CONFIG_REQUIRES;PKG_CONFIG_CFLAGS" "HEADERS;SOURCES")
    add_library(${name} SHARED ${arg_SOURCES} ${arg_HEADERS})
    set(header_paths ${arg_HEADERS})
    list(TRANSFORM header_paths PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/ REGEX "^[^/]")
    add_library(${name}::${name} ALIAS ${name})
    zorbin_set_up_target(${name})
    # All that tools/check-abi reads, where programs make do with line numbers.
    target_compile_options(${name} PRIVATE $<$<CONFIG:Debug>:-g>)
    set_target_properties(${name} PROPERTIES
        VERSION ${PROJECT_VERSION}
        SOVERSION ${ZORBIN_SOVERSION}
        ZORBIN_HEADERS "${header_paths}")
    if(NOT DEFINED CMAKE_INSTALL_RPATH)
        # The installed libraries find each other wherever the tree is moved to.
        set_target_properties(${name} PROPERTIES INSTALL_RPATH "$ORIGIN")
    endif()
    target_include_directories(${name} PUBLIC
        "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/library>"
        "$<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}>"
        "$<BUILD_INTERFACE:${CMAKE_CURRENT_BINARY_DIR}>" # headers that are generated
        "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>"
        "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/${name}>")
    install(TARGETS ${name} EXPORT ${name}Targets
        LIBRARY COMPONENT ${name} NAMELINK_COMPONENT ${name}-dev)
    install(FILES ${arg_HEADERS}
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${name} COMPONENT ${name}-dev)

    set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/${name})
    install(EXPORT ${name}Targets
        NAMESPACE ${name}:: DESTINATION ${package_dir} COMPONENT ${name}-dev)
    configure_package_config_file(
        ${PROJECT_SOURCE_DIR}/cmake/${name}Config.cmake.in ${name}Config.cmake
        INSTALL_DESTINATION ${package_dir})
    set(compatibility SameMajorVersion)
    if(PROJECT_VERSION_MAJOR EQUAL 0)
        set(compatibility SameMinorVersion)
    endif()
    write_basic_package_version_file(${name}ConfigVersion.cmake COMPATIBILITY ${compatibility})
    install(FILES
        ${CMAKE_CURRENT_BINARY_DIR}/${name}Config.cmake
        ${CMAKE_CURRENT_BINARY_DIR}/${name}ConfigVersion.cmake
        DESTINATION ${package_dir} COMPONENT ${name}-dev)

    set(pc_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
    if(IS_ABSOLUTE ${CMAKE_INSTALL_LIBDIR})
        set(pc_prefix ${CMAKE_INSTALL_PREFIX})
    else()
        file(RELATIVE_PATH up /${pc_dir} /)
        string(REGEX REPLACE "/$" "" up ${up})
        set(pc_prefix "\${pcfiledir}/${up}")
    endif()
    foreach(kind libdir includedir)
        string(TOUPPER ${kind} KIND)
        set(pc_${kind} "\${prefix}")
        cmake_path(APPEND pc_${kind} ${CMAKE_INSTALL_${KIND}}) # an absolute one replaces the prefix
    endforeach()
    set(pc_cflags -I\${includedir} -I\${includedir}/${name} ${arg_PKG_CONFIG_CFLAGS})
    list(JOIN pc_cflags " " pc_cflags)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/pkgConfig.pc.in ${name}.pc @ONLY)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${name}.pc DESTINATION ${pc_dir} COMPONENT ${name}-dev)
endfunction()

# A program of this project that isn't installed: test, example or benchmark.
function(zorbin_add_program name)
    add_executable(${name} ${ARGN})
    zorbin_set_up_target(${name})
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
endfunction()

# A test that shows windows. Each has a virtual display of its own, since tests that share one take
# the pointer and the keyboard focus from each other.
function(zorbin_add_test_on_display name)
    add_test(NAME ${name} COMMAND ${PROJECT_SOURCE_DIR}/tools/with-display ${ARGN})
endfunction()

# A QtTest program tests/NAME.cpp, which includes NAME.moc.
function(zorbin_add_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
    # One run of moc by itself takes a fraction of what AUTOMOC takes for a target.
    set(moc_file ${CMAKE_CURRENT_BINARY_DIR}/${name}.moc)
    qt_generate_moc(${name}.cpp ${moc_file} TARGET ${name})
    add_executable(${name} ${name}.cpp ${moc_file} ${arg_SOURCES})
    zorbin_set_up_target(${name})
    target_include_directories(${name} PRIVATE ${CMAKE_CURRENT_BINARY_DIR})
    target_link_libraries(${name} PRIVATE zorbin-test-support ${arg_LIBRARIES})
    # A test runs once, so optimising it much takes longer than it saves.
    target_compile_options(${name} PRIVATE $<$<CONFIG:Release>:-O1>)
    get_property(first_test DIRECTORY PROPERTY ZORBIN_FIRST_TEST)
    if(NOT first_test)
        zorbin_precompile_headers(${name} <QTest>)
        set_property(DIRECTORY PROPERTY ZORBIN_FIRST_TEST ${name})
    elseif(ZORBIN_PRECOMPILE_HEADERS)
        target_precompile_headers(${name} REUSE_FROM ${first_test})
    endif()
    zorbin_add_test_on_display(${name} $<TARGET_FILE:${name}>)
endfunction()
