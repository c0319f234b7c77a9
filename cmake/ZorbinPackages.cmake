# Debian packages, a component each, named after Debian's customs (see the preset package):
#   libNAME0, libNAME-dev        the library NAME, and what programs are built with
#   libzorbin-qt-gui-data, -doc  palettes and translations, and the documentation
# The digit is SOVERSION. Libraries that use Qt 6 are called libNAME-qt6-0 and libNAME-qt6-dev; their
# files have the names of those for Qt 5, so that only one of both can be installed.
set(CPACK_PACKAGE_CONTACT "The developers of ${PROJECT_NAME} <developers@zorbin.invalid>"
    CACHE STRING "Maintainer named in the packages: Name <address>")
set(ZORBIN_PACKAGE_RELEASE 1 CACHE STRING "Debian revision of the packages")
set(package_version ${PROJECT_VERSION}-${ZORBIN_PACKAGE_RELEASE})

# The package of a COMPONENT. DEPENDS and CONFLICTS are lists of packages, each with its condition;
# the libraries that are linked are found out. The first line of DESCRIPTION is its title.
function(zorbin_add_package package)
    cmake_parse_arguments(PARSE_ARGV 1 arg
        "" "COMPONENT;SECTION;ARCHITECTURE;DESCRIPTION" "DEPENDS;CONFLICTS")
    string(TOUPPER ${arg_COMPONENT} prefix)
    string(PREPEND prefix CPACK_DEBIAN_)
    list(JOIN arg_DEPENDS ", " depends)
    list(JOIN arg_CONFLICTS ", " conflicts)
    set(${prefix}_PACKAGE_NAME ${package} PARENT_SCOPE)
    set(${prefix}_PACKAGE_SECTION ${arg_SECTION} PARENT_SCOPE)
    set(${prefix}_DESCRIPTION "${arg_DESCRIPTION}" PARENT_SCOPE)
    set(${prefix}_PACKAGE_DEPENDS "${depends}" PARENT_SCOPE)
    set(${prefix}_PACKAGE_CONFLICTS "${conflicts}" PARENT_SCOPE)
    if(arg_ARCHITECTURE)
        set(${prefix}_PACKAGE_ARCHITECTURE ${arg_ARCHITECTURE} PARENT_SCOPE)
    endif()
    set(CPACK_COMPONENTS_ALL ${CPACK_COMPONENTS_ALL} ${arg_COMPONENT} PARENT_SCOPE)
endfunction()

# The two packages of a library. QT says that it uses Qt; RUN_DEPENDS and DEV_DEPENDS are what they
# need besides each other.
macro(zorbin_add_library_packages name)
    cmake_parse_arguments(library "QT" "TITLE;ABOUT" "RUN_DEPENDS;DEV_DEPENDS" ${ARGN})
    set(library_run lib${name}${ZORBIN_SOVERSION})
    set(library_dev lib${name}-dev)
    set(library_run_conflicts)
    set(library_dev_conflicts)
    if(library_QT AND ZORBIN_QT_MAJOR EQUAL 6)
        set(library_run_conflicts ${library_run})
        set(library_dev_conflicts ${library_dev})
        set(library_run lib${name}-qt6-${ZORBIN_SOVERSION})
        set(library_dev lib${name}-qt6-dev)
    endif()
    zorbin_add_package(${library_run}
        COMPONENT ${name}
        SECTION libs
        DESCRIPTION "${library_TITLE}\n${library_ABOUT}"
        DEPENDS ${library_RUN_DEPENDS}
        CONFLICTS ${library_run_conflicts})
    zorbin_add_package(${library_dev}
        COMPONENT ${name}-dev
        SECTION libdevel
        DESCRIPTION "${library_TITLE} (development files)\n${library_ABOUT}\n.\n\
This package has the headers, the CMake package and the pkg-config file."
        DEPENDS "${library_run} (= ${package_version})" ${library_DEV_DEPENDS}
        CONFLICTS ${library_dev_conflicts})
endmacro()

set(qt_dev_5 qtbase5-dev libqt5opengl5-dev)
set(qt_dev_6 qt6-base-dev libgl-dev)
set(CPACK_COMPONENTS_ALL)
set(gui_run_depends "libzorbin-qt-gui-data (= ${package_version})")
set(gui_dev_depends ${qt_dev_${ZORBIN_QT_MAJOR}})
if(ZORBIN_COMPANIONS STREQUAL "bundled")
    zorbin_add_library_packages(zorbin
        TITLE "time stamps, sleep and coordinate texts of the Zorbin suite"
        ABOUT "Clocks, and reading and writing of latitudes and longitudes in\ndegrees, minutes or \
seconds, whatever the locale.")
    list(APPEND gui_run_depends "${library_run} (>= ${package_version})")
    list(APPEND gui_dev_depends "${library_dev} (= ${package_version})")
    zorbin_add_library_packages(zorbin-qt QT
        TITLE "resource directory of the Zorbin suite"
        ABOUT "Where the suite's programs and libraries find their palettes and other\nresources.")
    list(APPEND gui_run_depends "${library_run} (>= ${package_version})")
    list(APPEND gui_dev_depends "${library_dev} (= ${package_version})")
endif()
zorbin_add_library_packages(zorbin-qt-gui QT
    TITLE "Qt widgets for marine survey displays"
    ABOUT "Strip charts, waterfalls, palettes, rulers, gauges and lamps for the\n\
displays of marine survey, sonar and vehicle control, which stay fast with hours\nof data."
    RUN_DEPENDS ${gui_run_depends}
    DEV_DEPENDS ${gui_dev_depends})
zorbin_add_package(libzorbin-qt-gui-data
    COMPONENT zorbin-qt-gui-data
    SECTION libs
    ARCHITECTURE all
    DESCRIPTION "Qt widgets for marine survey displays (palettes and translations)\n\
The six standard palettes, and the texts of the widgets in other languages\nthan English.")
zorbin_add_package(libzorbin-qt-gui-doc
    COMPONENT zorbin-qt-gui-doc
    SECTION doc
    ARCHITECTURE all
    DESCRIPTION "Qt widgets for marine survey displays (documentation)\n\
Guides and, where it was built, the reference of all classes.")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_COMPONENTS_GROUPING IGNORE) # a package for each component
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${ZORBIN_PACKAGE_RELEASE})
set(CPACK_DEBIAN_PACKAGE_SOURCE ${PROJECT_NAME})
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each has a title of its own
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
    ${PROJECT_BINARY_DIR}/library/zorbin ${PROJECT_BINARY_DIR}/library/zorbin-qt)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
include(CPack)
