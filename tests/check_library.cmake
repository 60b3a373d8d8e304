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

# Virtual functions are part of the binary interface: a class has a table as long as that of a class of
# the same Qt base, plus a slot for each virtual function of its own and the table of its style base.
execute_process(COMMAND ${NM} -DCS --defined-only ${LIBRARY}
    OUTPUT_VARIABLE sized COMMAND_ERROR_IS_FATAL ANY)
function(table_size class result)
    if(NOT sized MATCHES "[0-9a-f]+ ([0-9a-f]+) V vtable for ${class}\n")
        message(FATAL_ERROR "no virtual table of ${class}")
    endif()
    math(EXPR size "0x${CMAKE_MATCH_1}")
    set(${result} ${size} PARENT_SCOPE)
endfunction()

set(slot 8)
set(style_table 32) # two entries before it and the two destructors
table_size(TranspButton plain_button)
table_size(MetroLinerate gauge)
foreach(rule
        "SlideSwitch;${plain_button};0;0" "SimpleSlideSwitch;${plain_button};0;0"
        "AeroButton;${plain_button};1;1" "AeroSwitch;${plain_button};1;1"
        "MetroSysIcon;${plain_button};1;1" "MetroBattIcon;${plain_button};1;1"
        "MetroShelter;${plain_button};1;1" "MetroTabicon;${plain_button};0;1"
        "MetroCirclerate;${gauge};0;0" "MetroXbar;${gauge};0;0" "AeroLinebar;${gauge};0;0")
    list(GET rule 0 class)
    list(GET rule 1 base)
    list(GET rule 2 own)
    list(GET rule 3 styles)
    table_size(${class} size)
    math(EXPR expected "${base} + ${own} * ${slot} + ${styles} * ${style_table}")
    if(NOT size EQUAL expected)
        message(SEND_ERROR "the virtual table of ${class} has ${size} bytes instead of ${expected}")
    endif()
endforeach()
foreach(pair "AeroStatusbar;MetroStatusbar" "AeroGroupbox;MetroNavdrawer")
    list(GET pair 0 one)
    list(GET pair 1 other)
    table_size(${one} size)
    table_size(${other} expected)
    if(NOT size EQUAL expected)
        message(SEND_ERROR "${one} and ${other} differ in their virtual functions")
    endif()
endforeach()
