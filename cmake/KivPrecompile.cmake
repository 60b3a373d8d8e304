# Headers of Qt that are compiled once for many sources.

# kiv_precompile([UNOPTIMISED] TARGET...): the sources of these targets, which link to Qt's widgets and to kivoptions,
# begin with the headers below, where KIVWIDGETS_PRECOMPILE_HEADERS is on. They include what they use all the same:
# the library and the preset "dev" are built without. UNOPTIMISED: the targets are for a short use, and are
# compiled without optimisation, which takes two thirds of the time, and half of it under the sanitizers.
function(kiv_precompile)
    cmake_parse_arguments(arg "UNOPTIMISED" "" "" ${ARGN})
    set(precompiled kivprecompiled)
    set(optimisation)
    if(arg_UNOPTIMISED)
        # Precompiled headers fit one level of optimisation.
        set(precompiled kivprecompiledunoptimised)
        set(optimisation -O0)
        foreach(target IN LISTS arg_UNPARSED_ARGUMENTS)
            target_compile_options(${target} PRIVATE ${optimisation})
        endforeach()
    endif()
    if(NOT KIVWIDGETS_PRECOMPILE_HEADERS)
        return()
    endif()
    if(NOT TARGET ${precompiled})
        set(source ${PROJECT_BINARY_DIR}/${precompiled}.cpp)
        file(CONFIGURE OUTPUT ${source} CONTENT "")
        add_library(${precompiled} OBJECT ${source})
        set_target_properties(${precompiled} PROPERTIES AUTOMOC OFF POSITION_INDEPENDENT_CODE ON)
        target_link_libraries(${precompiled} PRIVATE ${kiv_qt}::Widgets kivoptions)
        target_compile_options(${precompiled} PRIVATE ${optimisation})
        target_precompile_headers(${precompiled} PRIVATE
            <QtCore/QDir> <QtCore/QMetaProperty> <QtCore/QPointer> <QtCore/QTimer>
            <QtGui/QIcon> <QtGui/QMouseEvent> <QtGui/QPainter> <QtGui/QPainterPath> <QtGui/QPixmap>
            <QtWidgets/QAbstractButton> <QtWidgets/QApplication> <QtWidgets/QBoxLayout> <QtWidgets/QLabel>
            <functional> <memory> <vector>)
        if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
            # So that ccache knows what is compiled.
            target_compile_options(${precompiled} PRIVATE -fpch-preprocess)
        endif()
    endif()
    foreach(target IN LISTS arg_UNPARSED_ARGUMENTS)
        target_precompile_headers(${target} REUSE_FROM ${precompiled})
        if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
            target_compile_options(${target} PRIVATE -fpch-preprocess)
        endif()
    endforeach()
endfunction()
