# The Debian package. packaging/package makes it.

# corvandi_debian_packages(<section> <variable>): the names in one section of debian-packages.txt.
function(corvandi_debian_packages section variable)
    set(list "${CMAKE_CURRENT_SOURCE_DIR}/debian-packages.txt")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${list}")
    set(names "")
    set(current "")
    file(STRINGS "${list}" lines REGEX "^[^#]")
    foreach(line IN LISTS lines)
        if(line MATCHES "^\\[(.*)\\]$")
            set(current "${CMAKE_MATCH_1}")
        elseif(current STREQUAL section)
            list(APPEND names "${line}")
        endif()
    endforeach()
    set(${variable} "${names}" PARENT_SCOPE)
endfunction()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME corvandi)
set(CPACK_PACKAGE_VENDOR "The Corvandi developers")
set(CPACK_PACKAGE_CONTACT "The Corvandi developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "hold a key, speak, and have it typed where your cursor is")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Corvandi waits in the background of an X11 desktop. While you hold its hotkey,
it records and transcribes what you say, on your own machine; when you let go,
the text is typed into the application that has the keyboard focus.

The built-in speech engine knows English.")
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)

# What is linked is found out; what else the program needs is in the list.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
corvandi_debian_packages(run needed)
list(JOIN needed ", " CPACK_DEBIAN_PACKAGE_DEPENDS)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "pipewire-pulse | pulseaudio")

set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS ${CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS})
set(CPACK_VERBATIM_VARIABLES ON)
include(CPack)
