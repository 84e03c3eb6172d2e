# The Debian package. packaging/package makes it.

set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
    "${CMAKE_CURRENT_SOURCE_DIR}/debian-packages.txt" "${CMAKE_CURRENT_SOURCE_DIR}/setup" /etc/os-release)

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

# A package fits the release that it is built on, so its version names that: 0.1.0+deb12 comes before
# 0.1.0+deb13, that before 0.1.0+sid, and all of them before 0.1.1+deb12. An upgrade of the system thereby
# replaces the program, too. Debian's unstable and testing have no number.
cmake_host_system_information(RESULT system QUERY DISTRIB_ID)
cmake_host_system_information(RESULT release QUERY DISTRIB_VERSION_ID)
if(system STREQUAL debian)
    set(system deb)
    if(NOT release)
        set(system sid)
    endif()
endif()
set(CPACK_DEBIAN_PACKAGE_VERSION "${PROJECT_VERSION}+${system}${release}")

# What is linked is found out; what else the program needs is in the list.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
execute_process(COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/setup" names run
    OUTPUT_VARIABLE needed OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE "\n" ", " CPACK_DEBIAN_PACKAGE_DEPENDS "${needed}")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "pipewire-pulse | pulseaudio")

set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS ${CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS})
set(CPACK_VERBATIM_VARIABLES ON)
include(CPack)
