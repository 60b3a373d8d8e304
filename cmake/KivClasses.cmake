# The widgets of the library by their headers, so that no other list of them needs care.

# kiv_find_widget_classes(TARGET RESULT): the classes with a meta-object in the public headers of TARGET.
function(kiv_find_widget_classes target result)
    get_target_property(headers ${target} KIV_PUBLIC_HEADERS)
    get_target_property(directory ${target} SOURCE_DIR)
    set(classes)
    foreach(header IN LISTS headers)
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${directory}/${header})
        file(READ ${directory}/${header} text)
        if(text MATCHES "\n    Q_OBJECT\n" AND text MATCHES "\nclass KIVWIDGETS_EXPORT ([A-Za-z0-9_]+)")
            list(APPEND classes ${CMAKE_MATCH_1})
        endif()
    endforeach()
    set(${result} ${classes} PARENT_SCOPE)
endfunction()
