# Checks the built library from outside: what it needs, what it exports, what it is called.
# cmake -DLIBRARY=file -DQT=5|6 -DNAME=kivwidgets -DNM=nm -DREADELF=readelf -P check_library.cmake

execute_process(COMMAND ${READELF} -d ${LIBRARY} OUTPUT_VARIABLE dynamic COMMAND_ERROR_IS_FATAL ANY)
if(NOT dynamic MATCHES "soname: \\[lib${NAME}\\.so\\.1\\]")
    message(SEND_ERROR "the soname is not lib${NAME}.so.1")
endif()
# An unbalanced bracket would join the entries of a list to one, so each is matched without it.
string(REPLACE "[" "" entries "${dynamic}")
string(REGEX MATCHALL "NEEDED\\)[^]]*library: [^]]*" needed "${entries}")
foreach(entry IN LISTS needed)
    string(REGEX REPLACE ".*library: " "" name "${entry}")
    if(NOT name MATCHES "^(libQt${QT}(Core|Gui|Widgets)\\.so\\.${QT}|libstdc\\+\\+\\.so\\.6|libgcc_s\\.so\\.1|libm\\.so\\.6|libc\\.so\\.6|ld-linux-.*|lib(a|ub)san\\..*)$")
        message(SEND_ERROR "the library needs ${name}")
    endif()
endforeach()
list(LENGTH needed count)
if(count EQUAL 0)
    message(SEND_ERROR "no needed libraries found")
endif()

execute_process(COMMAND ${NM} -DC --defined-only ${LIBRARY}
    OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
foreach(symbol "qInitResources_images()" "qCleanupResources_images()" "AeroStyle::paintBase("
        "MetroStyle::COLORTAB" "AeroButton::staticMetaObject")
    string(FIND "${symbols}" "${symbol}" at)
    if(at EQUAL -1)
        message(SEND_ERROR "${symbol} is not exported")
    endif()
endforeach()
if(symbols MATCHES "KivPrivate::")
    message(SEND_ERROR "private functions are exported")
endif()
