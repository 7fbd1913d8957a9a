# How this project makes its targets: one place for compiler settings and for the borders between folders.

# What every program and library of ours is compiled with; third-party sources are not.
add_library(telvar_settings INTERFACE)
target_compile_features(telvar_settings INTERFACE cxx_std_17)
target_compile_definitions(telvar_settings INTERFACE UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX
                           _WIN32_WINNT=0x0601)
target_compile_options(telvar_settings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow
                       -Werror)

# telvar_component(NAME FOLDER-LOCAL SOURCES
#   SOURCES ...          none for a headers-only component
#   USES_IN_HEADERS ...  components whose headers this one's headers include
#   USES ...             components that only its sources include)
#
# A component sees its own folder and the folders of what it names here, nothing else: includes are written without a
# folder, and only these folders are searched, so an include across another border does not build.
function(telvar_component name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;USES_IN_HEADERS;USES")
  set(target telvar_${name})
  if(arg_SOURCES)
    add_library(${target} STATIC ${arg_SOURCES})
    target_include_directories(${target} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
    target_link_libraries(${target} PUBLIC ${arg_USES_IN_HEADERS} PRIVATE telvar_settings ${arg_USES})
    if(TELVAR_COVERAGE)
      # Atomic: counters that several threads write at once come out negative, which no report can read.
      target_compile_options(${target} PRIVATE --coverage -fprofile-abs-path -fprofile-update=atomic)
      target_link_options(${target} INTERFACE --coverage)
    endif()
    set_property(GLOBAL APPEND PROPERTY TELVAR_COMPONENTS ${target})
  else()
    add_library(${target} INTERFACE)
    target_include_directories(${target} INTERFACE ${CMAKE_CURRENT_SOURCE_DIR})
    target_link_libraries(${target} INTERFACE ${arg_USES_IN_HEADERS})
  endif()
endfunction()

# Part of every build: the one kind of include that the search paths cannot refuse.
add_custom_target(check_borders ALL
  COMMAND ${CMAKE_COMMAND} -D SOURCE_DIR=${CMAKE_SOURCE_DIR} -P ${CMAKE_SOURCE_DIR}/cmake/CheckBorders.cmake
  COMMENT "Checking that no include climbs out of its folder")
