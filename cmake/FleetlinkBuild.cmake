# What every target of the project shares: language level, warnings, sanitizers, hidden symbols.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")

find_program(FLEETLINK_CCACHE ccache)
if(FLEETLINK_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${FLEETLINK_CCACHE}")
endif()

if(FLEETLINK_SANITIZE)
  add_compile_options(-fsanitize=${FLEETLINK_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${FLEETLINK_SANITIZE})
endif()

# Warnings, and the definitions that every source is compiled with.
add_library(fleetlink_options INTERFACE)
if(MSVC)
  target_compile_options(fleetlink_options INTERFACE /W4 /WX /permissive- /utf-8)
else()
  target_compile_options(fleetlink_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
    -Woverloaded-virtual -Wcast-align -Wundef -Werror)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # False in g++ 12 for "text" + std::string in optimised builds.
    target_compile_options(fleetlink_options INTERFACE -Wno-restrict)
  endif()
endif()
# QT_NO_KEYWORDS: `signals` and `slots` clash with GLib's headers.
target_compile_definitions(fleetlink_options INTERFACE QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII
  $<$<PLATFORM_ID:Windows>:NOMINMAX;WIN32_LEAN_AND_MEAN;UNICODE;_UNICODE>)

# fleetlink_library(<target> OUTPUT <name> EXPORT_MACRO <macro> SOURCES ... [PUBLIC ...] [PRIVATE ...])
# A shared library whose objects are also linked into the tests of its internals as <target>_objects.
function(fleetlink_library target)
  cmake_parse_arguments(arg "" "OUTPUT;EXPORT_MACRO" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
  add_library(${target} SHARED ${arg_SOURCES})
  set_target_properties(${target} PROPERTIES OUTPUT_NAME ${arg_OUTPUT} VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR} INSTALL_RPATH "$ORIGIN")
  target_compile_definitions(${target} PRIVATE ${arg_EXPORT_MACRO})
  target_include_directories(${target} PUBLIC "$<BUILD_INTERFACE:${CMAKE_SOURCE_DIR}/src>"
    "$<INSTALL_INTERFACE:include/fleetlink>")
  target_link_libraries(${target} PUBLIC ${arg_PUBLIC} PRIVATE ${arg_PRIVATE} $<BUILD_INTERFACE:fleetlink_options>)
endfunction()
