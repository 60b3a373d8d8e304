# Debian packages, one for each component that is built; packaging/build-packages makes them.

find_program(KIV_GZIP gzip REQUIRED)

set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
# CPack moves the debug information into packages of its own.
set(CPACK_STRIP_FILES OFF)
set(CPACK_DEBIAN_DEBUGINFO_PACKAGE ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SOURCE kivwidgets)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "KivWidgets developers <developers@kivwidgets.example>")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The other packages' programs need the library of this build, which no installed package has.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/KivWidgets)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
# Each package has a summary of its own.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")

set(kiv_packaging ${PROJECT_BINARY_DIR}/packaging)
if(KIVWIDGETS_QT EQUAL 5)
    set(kiv_qt_package qtbase5-dev)
    set(kiv_tools_package qttools5-dev-tools)
else()
    set(kiv_qt_package qt6-base-dev)
    set(kiv_tools_package qt6-tools-dev-tools)
endif()

kiv_compress(${PROJECT_SOURCE_DIR}/packaging/changelog changelog.Debian.gz kiv_changelog)

# What the dynamic linker and other packages need to know about the library.
if(KIVWIDGETS_QT EQUAL 5)
    set(kiv_runtime_package libkivwidgets${PROJECT_VERSION_MAJOR})
else()
    set(kiv_runtime_package libkivwidgets${kiv_suffix}-${PROJECT_VERSION_MAJOR})
endif()
file(WRITE ${kiv_packaging}/triggers "activate-noawait ldconfig\n")
file(WRITE ${kiv_packaging}/shlibs
    "libkivwidgets${kiv_suffix} ${PROJECT_VERSION_MAJOR} ${kiv_runtime_package} (>= ${PROJECT_VERSION})\n")
# packaging/build-packages compares the symbols with the library.
configure_file(${PROJECT_SOURCE_DIR}/packaging/${kiv_runtime_package}.symbols
    ${kiv_packaging}/symbols COPYONLY)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
    "${kiv_packaging}/triggers;${kiv_packaging}/shlibs;${kiv_packaging}/symbols")

# The packages take the licence from the file of the repository.
file(STRINGS ${PROJECT_SOURCE_DIR}/LICENSE kiv_licence_lines REGEX ".")
list(POP_FRONT kiv_licence_lines kiv_licence_name)
list(POP_FRONT kiv_licence_lines kiv_licence_holder)
string(REGEX REPLACE "^.*: (LicenseRef-)?" "" kiv_licence_name "${kiv_licence_name}")
string(REGEX REPLACE "^Copyright ([^.]*)\\..*$" "\\1" kiv_licence_holder "${kiv_licence_holder}")
list(JOIN kiv_licence_lines "\n " kiv_licence_text)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/LICENSE)
configure_file(${PROJECT_SOURCE_DIR}/packaging/copyright.in ${kiv_packaging}/copyright @ONLY)

# kiv_package(COMPONENT NAME SECTION SUMMARY TEXT [DEPENDS packages] [RECOMMENDS packages]
#             [SUGGESTS packages]): a package of the component's files.
function(kiv_package component name section summary text)
    cmake_parse_arguments(arg "" "DEPENDS;RECOMMENDS;SUGGESTS" "" ${ARGN})
    string(TOUPPER ${component} key)
    install(FILES ${kiv_packaging}/copyright ${kiv_changelog}
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${name} COMPONENT ${component})
    set(components ${CPACK_COMPONENTS_ALL} ${component})
    set(CPACK_COMPONENTS_ALL ${components} PARENT_SCOPE)
    set(CPACK_DEBIAN_${key}_PACKAGE_NAME ${name} PARENT_SCOPE)
    set(CPACK_DEBIAN_${key}_PACKAGE_SECTION ${section} PARENT_SCOPE)
    set(CPACK_DEBIAN_${key}_DESCRIPTION "${summary}\n${text}" PARENT_SCOPE)
    foreach(relation DEPENDS RECOMMENDS SUGGESTS)
        set(CPACK_DEBIAN_${key}_PACKAGE_${relation} "${arg_${relation}}" PARENT_SCOPE)
    endforeach()
    # Of the same build: what ships apart shares the library's private symbols and resources.
    if(NOT component MATCHES "^(runtime|documentation)$")
        set(CPACK_COMPONENT_${key}_DEPENDS runtime PARENT_SCOPE)
    endif()
endfunction()

kiv_package(runtime ${kiv_runtime_package} libs
    "Qt ${KIVWIDGETS_QT} widgets for UPS monitoring consoles"
    "KivWidgets is a library of widgets for monitoring consoles of
uninterruptible power supplies: glass buttons and gauges, flat state
icons, tiles, dials, bars and a drawer, slide switches, and a stack that
turns its pages like cards.")
kiv_package(development libkivwidgets${kiv_suffix}-dev libdevel
    "Qt ${KIVWIDGETS_QT} widgets for UPS monitoring consoles (development files)"
    "KivWidgets is a library of widgets for monitoring consoles of
uninterruptible power supplies. This package contains its headers, a package
for CMake and a file for pkg-config."
    DEPENDS "${kiv_qt_package} (>= ${kiv_qt_version})")
# The pages and the reference are the same for both versions of Qt.
find_program(KIV_DOXYGEN doxygen)
if(KIV_DOXYGEN AND KIVWIDGETS_QT EQUAL 5)
    add_custom_target(reference ALL COMMAND ${PROJECT_SOURCE_DIR}/docs/reference ${PROJECT_BINARY_DIR}/reference
        COMMENT "Rendering the reference" VERBATIM)
    install(DIRECTORY ${PROJECT_BINARY_DIR}/reference/html
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libkivwidgets-doc COMPONENT documentation)
    kiv_package(documentation libkivwidgets-doc doc
        "Qt widgets for UPS monitoring consoles (documentation)"
        "KivWidgets is a library of widgets for monitoring consoles of
uninterruptible power supplies. This package contains the reference of its
classes and the pages on their use, as HTML.")
    set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_ARCHITECTURE all)
    set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_SHLIBDEPS OFF)
    set(CPACK_DEBIAN_DOCUMENTATION_DEBUGINFO_PACKAGE OFF)
endif()
if(TARGET kivwidgetsdesigner)
    kiv_package(designer kivwidgets${kiv_suffix}-designer libdevel
        "KivWidgets plugin for Qt ${KIVWIDGETS_QT} Designer"
        "With this plugin Qt Designer, and programs that load its forms, know the
KivWidgets: buttons, gauges, state icons and pages for monitoring
consoles of uninterruptible power supplies."
        SUGGESTS "${kiv_tools_package}")
endif()
if(TARGET kivwidgetsaccessible)
    kiv_package(accessibility kivwidgets${kiv_suffix}-accessibility libs
        "KivWidgets plugin for assistive technologies (Qt ${KIVWIDGETS_QT})"
        "With this plugin screen readers and other assistive technologies meet
the KivWidgets by their names, states and values.")
endif()
if(TARGET kivconsole)
    kiv_package(console kivconsole utils
        "monitoring console for uninterruptible power supplies"
        "The console shows the state of an uninterruptible power supply, its
powers, voltages and alarms on pages of dials, bars and tiles. It
follows a supply through a server of Network UPS Tools, or shows a
simulated one."
        # Loaded at run time.
        DEPENDS "libqt${KIVWIDGETS_QT}sql${KIVWIDGETS_QT}-sqlite"
        RECOMMENDS "fonts-dejavu-core, kivwidgets${kiv_suffix}-accessibility, libqt${KIVWIDGETS_QT}svg${KIVWIDGETS_QT}" SUGGESTS "nut-server")
endif()
if(TARGET kivgallery)
    kiv_package(gallery kivgallery devel
        "gallery of the KivWidgets"
        "The gallery shows each of the KivWidgets, widgets for monitoring
consoles of uninterruptible power supplies, with all its properties, and
lets them be changed."
        RECOMMENDS "fonts-dejavu-core, kivwidgets${kiv_suffix}-accessibility, libqt${KIVWIDGETS_QT}svg${KIVWIDGETS_QT}")
endif()
if(TARGET kivpython)
    # The modules of both Qts can be installed, so what they share is a package of its own.
    set(kiv_python_packages lib/python3/dist-packages)
    install(FILES ${kiv_python_root}/kivwidgets/qt${KIVWIDGETS_QT}.abi3.so
        ${kiv_python_root}/kivwidgets/qt${KIVWIDGETS_QT}.pyi
        DESTINATION ${kiv_python_packages}/kivwidgets COMPONENT python)
    string(REPLACE "-" "_" kiv_python_info kivwidgets${kiv_suffix})
    string(APPEND kiv_python_info -${PROJECT_VERSION}.dist-info)
    install(FILES ${kiv_python_root}/${kiv_python_info}/METADATA
        DESTINATION ${kiv_python_packages}/${kiv_python_info} COMPONENT python)
    if(KIVWIDGETS_QT EQUAL 5)
        set(kiv_sip_version 12.11)
    else()
        set(kiv_sip_version 13.4)
    endif()
    kiv_package(python python3-kivwidgets${kiv_suffix} python
        "Python bindings of the KivWidgets for PyQt${KIVWIDGETS_QT}"
        "With this package Python programs use the KivWidgets, widgets for
monitoring consoles of uninterruptible power supplies, and the forms of
Qt Designer that contain them."
        DEPENDS "python3, python3-pyqt${KIVWIDGETS_QT} (>= ${kiv_qt_version}), python3-pyqt${KIVWIDGETS_QT}.sip (>= ${kiv_sip_version}), python3-kivwidgets-common (>= ${PROJECT_VERSION})")
    if(KIVWIDGETS_QT EQUAL 5)
        install(FILES ${kiv_python_root}/kivwidgets/__init__.py ${kiv_python_root}/kivwidgets/py.typed
            DESTINATION ${kiv_python_packages}/kivwidgets COMPONENT pythoncommon)
        install(FILES ${kiv_python_root}/KivWidgets/__init__.py
            DESTINATION ${kiv_python_packages}/KivWidgets COMPONENT pythoncommon)
        kiv_package(pythoncommon python3-kivwidgets-common python
            "Python bindings of the KivWidgets (common files)"
            "This package contains what the Python bindings of the KivWidgets for PyQt5
and those for PyQt6 share: it finds the bindings for the PyQt that a
program uses."
            DEPENDS "python3" RECOMMENDS "python3-kivwidgets | python3-kivwidgets-qt6")
        set(CPACK_COMPONENT_PYTHONCOMMON_DEPENDS "")
        set(CPACK_DEBIAN_PYTHONCOMMON_PACKAGE_ARCHITECTURE all)
    endif()
endif()

include(CPack)
