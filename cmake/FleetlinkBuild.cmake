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

# fleetlink_floor(<name> EXPORT_MACRO <macro> SOURCES ... [ON <floors>] [PUBLIC <libraries>] [PRIVATE <libraries>])
# The objects of a folder, compiled once (<name>_objects): for the library that is shipped, and as an archive for tests,
# benchmarks and fuzz programs, which reach what no library exports. A program links either floors or libraries, or it is
# refused here: of both it would have two of every global.
function(fleetlink_floor name)
  cmake_parse_arguments(arg "" "EXPORT_MACRO" "SOURCES;ON;PUBLIC;PRIVATE" ${ARGN})
  add_library(${name}_objects OBJECT ${arg_SOURCES})
  target_compile_definitions(${name}_objects PRIVATE ${arg_EXPORT_MACRO})
  target_include_directories(${name}_objects PRIVATE "${CMAKE_SOURCE_DIR}/src")
  target_link_libraries(${name}_objects PRIVATE ${arg_PUBLIC} ${arg_PRIVATE} fleetlink_options)
  add_library(${name} STATIC EXCLUDE_FROM_ALL $<TARGET_OBJECTS:${name}_objects>)
  set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX)
  target_include_directories(${name} INTERFACE "${CMAKE_SOURCE_DIR}/src")
  target_compile_definitions(${name} INTERFACE FLEETLINK_STATIC)
  target_link_libraries(${name} PUBLIC ${arg_ON} ${arg_PUBLIC} PRIVATE ${arg_PRIVATE})
  fleetlink_linked_as(${name} floors)
endfunction()

function(fleetlink_linked_as target form)
  set_target_properties(${target} PROPERTIES INTERFACE_FLEETLINK_LINKED_AS ${form}
    COMPATIBLE_INTERFACE_STRING FLEETLINK_LINKED_AS)
endfunction()

# fleetlink_library(<target> OUTPUT <name> FLOORS ... HEADERS <below src/> ... [PUBLIC ...] [PRIVATE ...])
# A shared library made of floors, and the headers that are installed with it. Only what is marked leaves it.
function(fleetlink_library target)
  cmake_parse_arguments(arg "" "OUTPUT" "FLOORS;HEADERS;PUBLIC;PRIVATE" ${ARGN})
  list(TRANSFORM arg_FLOORS REPLACE "(.+)" "$<TARGET_OBJECTS:\\1_objects>" OUTPUT_VARIABLE objects)
  list(TRANSFORM arg_HEADERS PREPEND "${CMAKE_SOURCE_DIR}/src/")
  add_library(${target} SHARED ${objects})
  set_target_properties(${target} PROPERTIES LINKER_LANGUAGE CXX OUTPUT_NAME ${arg_OUTPUT} VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR} INSTALL_RPATH "$ORIGIN")
  target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS "${CMAKE_SOURCE_DIR}/src" FILES ${arg_HEADERS})
  target_link_libraries(${target} PUBLIC ${arg_PUBLIC} PRIVATE ${arg_PRIVATE})
  fleetlink_linked_as(${target} libraries)
  if(NOT WIN32 AND NOT APPLE)
    set(map "${CMAKE_SOURCE_DIR}/cmake/hidden_symbols.map")
    target_link_options(${target} PRIVATE "LINKER:--version-script=${map}")
    set_target_properties(${target} PROPERTIES LINK_DEPENDS "${map}")
  endif()
endfunction()
