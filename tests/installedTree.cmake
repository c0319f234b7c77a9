# Tests of what others get: the exported names, the installed tree, and programs built against it
# (tests/consumer). .ci/run leaves out those labelled siteBuild or consumer where they say nothing new.
find_program(PKG_CONFIG_EXECUTABLE pkg-config REQUIRED)
set(check_library ${CMAKE_CURRENT_SOURCE_DIR}/consumer/checkLibrary)
set(install_tree ${CMAKE_CURRENT_SOURCE_DIR}/consumer/installTree)
set(consumer_dir ${CMAKE_CURRENT_BINARY_DIR}/consumer)
set(prefix ${consumer_dir}/prefix)
separate_arguments(compiler_flags UNIX_COMMAND "${CMAKE_CXX_FLAGS}")

# The compiler and its flags are those of this build: a sanitizer must be in every library and program
# of a process.
set(build_options
    -DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER}
    -DCMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER}
    -DCMAKE_CXX_FLAGS=${CMAKE_CXX_FLAGS})

add_test(NAME installedTree
    COMMAND ${install_tree} ${PROJECT_BINARY_DIR} ${prefix})
set_tests_properties(installedTree PROPERTIES FIXTURES_SETUP installedTree)

zorbin_add_test_on_display(consumerThroughCMake
    ${CMAKE_CTEST_COMMAND} --build-and-test
        ${CMAKE_CURRENT_SOURCE_DIR}/consumer ${consumer_dir}/cmake
        --build-generator ${CMAKE_GENERATOR} --build-noclean
        --build-options ${build_options} -DCMAKE_PREFIX_PATH=${prefix}
        --test-command ${consumer_dir}/cmake/consumer)
zorbin_add_test_on_display(consumerThroughPkgConfig
    ${CMAKE_CURRENT_SOURCE_DIR}/consumer/buildWithPkgConfig
        ${prefix} ${consumer_dir}/consumerThroughPkgConfig
        ${CMAKE_CXX_COMPILER_LAUNCHER} ${CMAKE_CXX_COMPILER} ${compiler_flags})
# With the library as a part of the program's own build, as far as to compile the program.
add_test(NAME consumerWithSources
    COMMAND ${CMAKE_CTEST_COMMAND} --build-and-test
        ${CMAKE_CURRENT_SOURCE_DIR}/consumer ${consumer_dir}/sources
        --build-generator ${CMAKE_GENERATOR} --build-noclean --build-target consumerObject
        --build-options ${build_options} -DCONSUMER_LIBRARY_SOURCE=${PROJECT_SOURCE_DIR}
            -DZORBIN_QT_MAJOR=${ZORBIN_QT_MAJOR} -DZORBIN_COMPANIONS=${ZORBIN_COMPANIONS})
set_tests_properties(consumerWithSources PROPERTIES LABELS siteBuild)
set_tests_properties(consumerThroughCMake consumerThroughPkgConfig PROPERTIES
    FIXTURES_REQUIRED installedTree
    LABELS consumer)

add_test(NAME exportedNames_zorbin-qt-gui
    COMMAND ${check_library} $<TARGET_FILE:zorbin-qt-gui>
        libzorbin-qt-gui.so.${ZORBIN_SOVERSION} zorbin_qt_gui)

if(ZORBIN_COMPANIONS STREQUAL "bundled")
    add_test(NAME exportedNames_zorbin
        COMMAND ${check_library} $<TARGET_FILE:zorbin>
            libzorbin.so.${ZORBIN_SOVERSION} zorbin zorbinport)
    add_test(NAME exportedNames_zorbin-qt
        COMMAND ${check_library} $<TARGET_FILE:zorbin-qt>
            libzorbin-qt.so.${ZORBIN_SOVERSION} zorbin_qt)

    # A site with companions of its own: they are installed alone, the library is built against them
    # and installed elsewhere, and a program takes both from there.
    set(companions ${consumer_dir}/companions)
    set(site_build ${consumer_dir}/siteBuild)
    set(site_prefix ${consumer_dir}/site)
    add_test(NAME companionsAlone
        COMMAND ${install_tree} ${PROJECT_BINARY_DIR} ${companions}
            zorbin zorbin-dev zorbin-qt zorbin-qt-dev)
    set_tests_properties(companionsAlone PROPERTIES FIXTURES_SETUP companions)
    add_test(NAME libraryWithInstalledCompanions
        COMMAND ${CMAKE_CTEST_COMMAND} --build-and-test ${PROJECT_SOURCE_DIR} ${site_build}
            --build-generator ${CMAKE_GENERATOR} --build-noclean
            --build-options ${build_options} -DCMAKE_PREFIX_PATH=${companions}
                -DZORBIN_QT_MAJOR=${ZORBIN_QT_MAJOR} -DZORBIN_COMPANIONS=installed
                -DZORBIN_BUILD_TESTS=OFF -DZORBIN_BUILD_EXAMPLES=OFF
                -DZORBIN_PRECOMPILE_HEADERS=${ZORBIN_PRECOMPILE_HEADERS}
            --test-command ${install_tree} ${site_build} ${site_prefix})
    set_tests_properties(libraryWithInstalledCompanions PROPERTIES
        FIXTURES_REQUIRED companions
        FIXTURES_SETUP site)
    zorbin_add_test_on_display(consumerWithInstalledCompanions
        ${CMAKE_CTEST_COMMAND} --build-and-test
            ${CMAKE_CURRENT_SOURCE_DIR}/consumer ${consumer_dir}/siteConsumer
            --build-generator ${CMAKE_GENERATOR} --build-noclean --build-target consumer
            --build-options ${build_options}
            --test-command ${consumer_dir}/siteConsumer/consumer)
    set_tests_properties(consumerWithInstalledCompanions PROPERTIES
        FIXTURES_REQUIRED "companions;site"
        ENVIRONMENT CMAKE_PREFIX_PATH=${site_prefix}:${companions})
    set_tests_properties(libraryWithInstalledCompanions consumerWithInstalledCompanions PROPERTIES
        LABELS siteBuild)
endif()
