# What a host's project needs: the library, its headers, the CMake package and the pkg-config file.
# Private headers stay here.

include(CMakePackageConfigHelpers)

set(kiv_header_directory ${CMAKE_INSTALL_INCLUDEDIR}/KivWidgets)
set(kiv_package_directory ${CMAKE_INSTALL_LIBDIR}/cmake/KivWidgets)
set(kiv_generated ${PROJECT_BINARY_DIR}/install)

install(TARGETS KivWidgets EXPORT KivWidgetsTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        COMPONENT runtime NAMELINK_COMPONENT development
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} ${kiv_header_directory})

get_target_property(kiv_headers KivWidgets KIV_PUBLIC_HEADERS)
get_target_property(kiv_source_directory KivWidgets SOURCE_DIR)
set(kiv_installed_headers)
foreach(header IN LISTS kiv_headers)
    list(APPEND kiv_installed_headers ${kiv_source_directory}/${header})
    # A header in the class's own spelling forwards to the one in lower case.
    file(STRINGS ${kiv_source_directory}/${header} declaration
        REGEX "^class KIVWIDGETS_EXPORT [A-Za-z]+" LIMIT_COUNT 1)
    if(declaration MATCHES "KIVWIDGETS_EXPORT ([A-Za-z]+)")
        set(forward ${kiv_generated}/include/${CMAKE_MATCH_1})
        file(WRITE ${forward} "#include \"${header}\"\n")
        list(APPEND kiv_installed_headers ${forward})
    endif()
endforeach()
install(FILES ${kiv_installed_headers} DESTINATION ${kiv_header_directory}
    COMPONENT development)

install(EXPORT KivWidgetsTargets NAMESPACE KivWidgets:: DESTINATION ${kiv_package_directory}
    COMPONENT development)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/KivWidgetsConfig.cmake.in
    ${kiv_generated}/KivWidgetsConfig.cmake INSTALL_DESTINATION ${kiv_package_directory})
write_basic_package_version_file(${kiv_generated}/KivWidgetsConfigVersion.cmake
    VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES ${kiv_generated}/KivWidgetsConfig.cmake ${kiv_generated}/KivWidgetsConfigVersion.cmake
    DESTINATION ${kiv_package_directory} COMPONENT development)

# The prefix is found from the file's own place, so that the tree can be moved.
file(RELATIVE_PATH KIV_PC_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" KIV_PC_PREFIX "\${pcfiledir}/${KIV_PC_PREFIX}")
configure_file(${PROJECT_SOURCE_DIR}/cmake/kivwidgets.pc.in ${kiv_generated}/kivwidgets.pc @ONLY)
install(FILES ${kiv_generated}/kivwidgets.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT development)

if(TARGET kivconsole)
    install(TARGETS kivconsole RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT console)
endif()
if(TARGET kivgallery)
    install(TARGETS kivgallery RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT gallery)
endif()
