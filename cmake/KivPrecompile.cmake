# Headers of Qt that are compiled once for many sources.

# kiv_precompile(TARGET...): the sources of these targets, which link to Qt's widgets and to kivoptions, begin with
# the headers below, where KIVWIDGETS_PRECOMPILE_HEADERS is on. They include what they use all the same: the library
# and the preset "dev" are built without.
function(kiv_precompile)
    if(NOT KIVWIDGETS_PRECOMPILE_HEADERS)
        return()
    endif()
    if(NOT TARGET kivprecompiled)
        set(source ${PROJECT_BINARY_DIR}/precompiled.cpp)
        file(CONFIGURE OUTPUT ${source} CONTENT "")
        add_library(kivprecompiled OBJECT ${source})
        set_target_properties(kivprecompiled PROPERTIES AUTOMOC OFF POSITION_INDEPENDENT_CODE ON)
        target_link_libraries(kivprecompiled PRIVATE ${kiv_qt}::Widgets kivoptions)
        target_precompile_headers(kivprecompiled PRIVATE
            <QtCore/QDir> <QtCore/QMetaProperty> <QtCore/QPointer> <QtCore/QTimer>
            <QtGui/QIcon> <QtGui/QMouseEvent> <QtGui/QPainter> <QtGui/QPainterPath> <QtGui/QPixmap>
            <QtWidgets/QAbstractButton> <QtWidgets/QApplication> <QtWidgets/QBoxLayout> <QtWidgets/QLabel>
            <functional> <memory> <vector>)
        if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
            # So that ccache knows what is compiled.
            target_compile_options(kivprecompiled PRIVATE -fpch-preprocess)
        endif()
    endif()
    foreach(target IN LISTS ARGN)
        target_precompile_headers(${target} REUSE_FROM kivprecompiled)
        if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
            target_compile_options(${target} PRIVATE -fpch-preprocess)
        endif()
    endforeach()
endfunction()
