# Which Qt everything is built with, and how the parts of it are found where they are used.

set(KIVWIDGETS_QT 5 CACHE STRING "Major version of Qt: 5 (5.15) or 6 (6.4 and newer)")
set_property(CACHE KIVWIDGETS_QT PROPERTY STRINGS 5 6)
if(NOT KIVWIDGETS_QT MATCHES "^[56]$")
    message(FATAL_ERROR "KIVWIDGETS_QT is 5 or 6, not \"${KIVWIDGETS_QT}\"")
endif()
set(kiv_qt Qt${KIVWIDGETS_QT})
set(kiv_qt5_version 5.15)
set(kiv_qt6_version 6.4)
set(kiv_qt_version ${kiv_qt${KIVWIDGETS_QT}_version})

# kiv_missing(NEED PACKAGES [OPTION]): ends the configuration with one line: who needs what, which Debian
# packages bring it, and which option leaves it out.
function(kiv_missing need packages)
    set(way_out "")
    if(ARGC GREATER 2)
        set(way_out "; -D${ARGV2}=OFF builds without")
    endif()
    message(FATAL_ERROR "${need} (Debian: ${packages})${way_out}")
endfunction()

# kiv_find_qt(NEED PACKAGES5 PACKAGES6 COMPONENTS name... [OPTION option]): finds these components of Qt, or
# says in one line who needs them ("the tests need") and which packages bring them. A macro, since Qt leaves
# variables behind that its own commands read.
macro(kiv_find_qt need packages5 packages6)
    cmake_parse_arguments(kiv_find "" "OPTION" "COMPONENTS" ${ARGN})
    find_package(${kiv_qt} ${kiv_qt_version} QUIET COMPONENTS ${kiv_find_COMPONENTS})
    foreach(kiv_component IN LISTS kiv_find_COMPONENTS)
        if(NOT TARGET ${kiv_qt}::${kiv_component})
            if(KIVWIDGETS_QT EQUAL 5)
                set(kiv_find_packages "${packages5}")
            else()
                set(kiv_find_packages "${packages6}")
            endif()
            kiv_missing("${need} ${kiv_qt} ${kiv_component} ${kiv_qt_version} or newer"
                "${kiv_find_packages}" ${kiv_find_OPTION})
        endif()
    endforeach()
endmacro()

# What is built for Qt 5 has the plain names; what is built for Qt 6 can be installed beside it.
if(KIVWIDGETS_QT EQUAL 5)
    set(kiv_suffix "")
    set(kiv_other_qt 6)
    set(kiv_other_suffix "-qt6")
    set(kiv_include_directory "")
    set(kiv_plugin_directory qt5/plugins)
else()
    set(kiv_suffix "-qt6")
    set(kiv_other_qt 5)
    set(kiv_other_suffix "")
    set(kiv_include_directory "/kivwidgets-qt6")
    set(kiv_plugin_directory qt6/plugins)
endif()
