# How this project declares its targets.
#
# Every folder below src/ is a library of its own. It sees the headers of exactly the libraries that
# it links: each library exports a folder of links to its own headers, not the source root, so that
# an include which no link allows does not compile.

set(CORVANDI_WARNINGS -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)

# Links the headers of the current folder below <build>/headers/<target>/<folder from src/>.
function(corvandi_export_headers target scope)
    file(RELATIVE_PATH folder "${PROJECT_SOURCE_DIR}/src" "${CMAKE_CURRENT_SOURCE_DIR}")
    set(root "${PROJECT_BINARY_DIR}/headers/${target}")
    file(REMOVE_RECURSE "${root}")
    file(MAKE_DIRECTORY "${root}/${folder}")
    file(GLOB headers CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.h")
    foreach(header IN LISTS headers)
        cmake_path(GET header FILENAME name)
        file(CREATE_LINK "${header}" "${root}/${folder}/${name}" SYMBOLIC)
    endforeach()
    target_include_directories(${target} ${scope} "${root}")
endfunction()

# corvandi_library(<target> [MOC] [SOURCES file...] [LINKS library...] [PRIVATE_LINKS library...])
# Without sources the library consists of headers alone. MOC: it declares classes with Q_OBJECT.
function(corvandi_library target)
    cmake_parse_arguments(arg "MOC" "" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
    if(arg_SOURCES)
        add_library(${target} STATIC ${arg_SOURCES})
        set_target_properties(${target} PROPERTIES AUTOMOC ${arg_MOC})
        target_compile_options(${target} PRIVATE ${CORVANDI_WARNINGS})
        target_compile_definitions(${target} PRIVATE QT_NO_CAST_FROM_ASCII QT_NO_KEYWORDS)
        target_link_libraries(${target} PUBLIC ${arg_LINKS} PRIVATE ${arg_PRIVATE_LINKS})
        corvandi_export_headers(${target} PUBLIC)
    else()
        add_library(${target} INTERFACE)
        target_link_libraries(${target} INTERFACE ${arg_LINKS})
        corvandi_export_headers(${target} INTERFACE)
    endif()
endfunction()

# corvandi_executable(<target> [MOC] SOURCES file... [LINKS library...])
function(corvandi_executable target)
    cmake_parse_arguments(arg "MOC" "" "SOURCES;LINKS" ${ARGN})
    add_executable(${target} ${arg_SOURCES})
    set_target_properties(${target} PROPERTIES AUTOMOC ${arg_MOC})
    target_compile_options(${target} PRIVATE ${CORVANDI_WARNINGS})
    target_compile_definitions(${target} PRIVATE QT_NO_CAST_FROM_ASCII QT_NO_KEYWORDS)
    target_link_libraries(${target} PRIVATE ${arg_LINKS})
endfunction()
