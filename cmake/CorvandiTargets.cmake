# How this project declares its targets.
#
# Every room of src/ is one library. Includes are written from src/ on; which folder may include which is
# told in src/arrows.txt and held by .ci/arrows.

set(CORVANDI_WARNINGS -Wall -Wextra -Wpedantic -Wshadow -Wconversion)

# The headers that nearly every file reads, parsed once: of the logic, and of what is drawn.
set(CORVANDI_CORE_HEADERS <QCoroTask> <QHash> <QList> <QObject> <QPointer> <QString> <QStringList>
    <algorithm> <chrono> <functional> <map> <memory> <optional> <string> <utility> <variant> <vector>)
set(CORVANDI_WIDGET_HEADERS <QBoxLayout> <QEvent> <QLabel> <QPainter> <QPainterPath> <QVariantAnimation> <QWidget>)

# What all targets of this project have in common.
function(corvandi_common target)
    target_compile_options(${target} PRIVATE ${CORVANDI_WARNINGS})
    target_compile_definitions(${target} PRIVATE QT_NO_CAST_FROM_ASCII QT_NO_KEYWORDS)
    target_include_directories(${target} PUBLIC "${PROJECT_SOURCE_DIR}/src")
endfunction()

# corvandi_precompiled(<target> LINKS library... HEADERS header...)
# A set of precompiled headers that targets take over with PRECOMPILED <target>. They and their users are
# compiled alike.
function(corvandi_precompiled target)
    cmake_parse_arguments(arg "" "" "LINKS;HEADERS" ${ARGN})
    file(WRITE "${CMAKE_CURRENT_BINARY_DIR}/${target}.cpp" "")
    add_library(${target} OBJECT "${CMAKE_CURRENT_BINARY_DIR}/${target}.cpp")
    target_link_libraries(${target} PRIVATE ${arg_LINKS})
    corvandi_common(${target})
    target_precompile_headers(${target} PRIVATE ${arg_HEADERS})
endfunction()

# corvandi_library(<target> [MOC] [PRECOMPILED target] SOURCES file... [LINKS library...] [PRIVATE_LINKS library...])
# MOC: it declares classes with Q_OBJECT.
function(corvandi_library target)
    cmake_parse_arguments(arg "MOC" "PRECOMPILED" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
    add_library(${target} STATIC ${arg_SOURCES})
    set_target_properties(${target} PROPERTIES AUTOMOC ${arg_MOC})
    target_link_libraries(${target} PUBLIC ${arg_LINKS} PRIVATE ${arg_PRIVATE_LINKS})
    corvandi_common(${target})
    if(arg_PRECOMPILED)
        target_precompile_headers(${target} REUSE_FROM ${arg_PRECOMPILED})
    endif()
endfunction()

# corvandi_executable(<target> [MOC] [PRECOMPILED target] SOURCES file... [LINKS library...])
function(corvandi_executable target)
    cmake_parse_arguments(arg "MOC" "PRECOMPILED" "SOURCES;LINKS" ${ARGN})
    add_executable(${target} ${arg_SOURCES})
    set_target_properties(${target} PROPERTIES AUTOMOC ${arg_MOC})
    target_link_libraries(${target} PRIVATE ${arg_LINKS})
    corvandi_common(${target})
    if(arg_PRECOMPILED)
        target_precompile_headers(${target} REUSE_FROM ${arg_PRECOMPILED})
    endif()
endfunction()
