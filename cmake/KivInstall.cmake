# How the library and the programs are installed; each directory calls this for its own.

include(CMakePackageConfigHelpers)

# kiv_install_library(TARGET): the library, its public headers, the CMake package and the pkg-config file.
# Private headers are not installed.
function(kiv_install_library target)
    set(package KivWidgets${kiv_suffix})
    set(include_directory ${CMAKE_INSTALL_INCLUDEDIR}${kiv_include_directory})
    set(package_directory ${CMAKE_INSTALL_LIBDIR}/cmake/${package})
    set(generated ${PROJECT_BINARY_DIR}/install)

    install(TARGETS ${target} EXPORT KivWidgetsTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
            COMPONENT runtime NAMELINK_COMPONENT development
        INCLUDES DESTINATION ${include_directory} ${include_directory}/KivWidgets)

    get_target_property(headers ${target} KIV_PUBLIC_HEADERS)
    set(installed_headers)
    foreach(header IN LISTS headers)
        list(APPEND installed_headers ${CMAKE_CURRENT_SOURCE_DIR}/${header})
        # A header in the class's own spelling forwards to the one in lower case.
        file(STRINGS ${CMAKE_CURRENT_SOURCE_DIR}/${header} declaration
            REGEX "^class KIVWIDGETS_EXPORT [A-Za-z]+" LIMIT_COUNT 1)
        if(declaration MATCHES "KIVWIDGETS_EXPORT ([A-Za-z]+)")
            set(forward ${generated}/include/KivWidgets/${CMAKE_MATCH_1})
            file(WRITE ${forward} "#include \"${header}\"\n")
            list(APPEND installed_headers ${forward})
        endif()
    endforeach()
    # The build tree knows these, too, so that the examples include as applications do.
    target_include_directories(${target} INTERFACE $<BUILD_INTERFACE:${generated}/include>)
    install(FILES ${installed_headers} DESTINATION ${include_directory}/KivWidgets
        COMPONENT development)

    install(EXPORT KivWidgetsTargets NAMESPACE KivWidgets:: DESTINATION ${package_directory}
        COMPONENT development)
    configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/KivWidgetsConfig.cmake.in
        ${generated}/${package}Config.cmake INSTALL_DESTINATION ${package_directory})
    write_basic_package_version_file(${generated}/${package}ConfigVersion.cmake
        VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
    install(FILES ${generated}/${package}Config.cmake ${generated}/${package}ConfigVersion.cmake
        DESTINATION ${package_directory} COMPONENT development)

    # The prefix is found from the file's own place, so that the tree can be moved.
    file(RELATIVE_PATH KIV_PC_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
    string(REGEX REPLACE "/$" "" KIV_PC_PREFIX "\${pcfiledir}/${KIV_PC_PREFIX}")
    set(KIV_PC_INCLUDE ${include_directory})
    configure_file(${PROJECT_SOURCE_DIR}/cmake/kivwidgets.pc.in ${generated}/kivwidgets${kiv_suffix}.pc
        @ONLY)
    install(FILES ${generated}/kivwidgets${kiv_suffix}.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endfunction()

# kiv_install_program(TARGET COMPONENT): the program with its menu entry, its icon and its manual page, which
# is compressed where gzip is there to do it.
function(kiv_install_program target component)
    set(applications ${PROJECT_SOURCE_DIR}/packaging/applications)
    install(TARGETS ${target} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT ${component})
    install(FILES ${applications}/${target}.desktop
        DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT ${component})
    install(FILES ${applications}/${target}.svg
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps COMPONENT ${component})
    set(page ${applications}/${target}.1)
    find_program(KIV_GZIP gzip)
    if(KIV_GZIP)
        kiv_compress(${page} ${target}.1.gz page)
    endif()
    install(FILES ${page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT ${component})
endfunction()

# kiv_compress(SOURCE NAME RESULT): writes SOURCE, compressed, to the file NAME of the build tree, whose path
# is RESULT.
function(kiv_compress source name result)
    set(directory ${PROJECT_BINARY_DIR}/packaging)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${source})
    file(MAKE_DIRECTORY ${directory})
    execute_process(COMMAND ${KIV_GZIP} -9nc ${source}
        OUTPUT_FILE ${directory}/${name} COMMAND_ERROR_IS_FATAL ANY)
    set(${result} ${directory}/${name} PARENT_SCOPE)
endfunction()
