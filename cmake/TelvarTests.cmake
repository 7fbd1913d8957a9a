# How this project makes its test programs.

# The path of a file as the programs under test see it: Wine shows the build machine's files on drive Z.
function(telvar_windows_path output path)
  cmake_path(NATIVE_PATH path NORMALIZE native)
  if(NOT CMAKE_HOST_WIN32)
    string(REPLACE "/" "\\" native "Z:${path}")
  endif()
  set(${output} ${native} PARENT_SCOPE)
endfunction()

# How a command is run with the system's checks of the heap.
set(telvar_heap_checked_run ${CMAKE_SOURCE_DIR}/tests/bed/heap-checked-run ${CMAKE_BINARY_DIR}/wineprefix-heap
    ${CMAKE_CROSSCOMPILING_EMULATOR})

# telvar_test_program(NAME
#   SOURCES ... USES ...
#   ONE_ENTRY_PER TEST|SUITE   what one ctest entry, that is one process, runs
#   ALSO_CHECKED               a second entry each, named "checked/...", with the Java machine's own checks
#   ALSO_HEAP_CHECKED          an entry for each suite besides, named "heap/...", with the system's checks of the heap
#   HEAP_EXCEPT ...            tests that these leave out, since they would take minutes: patterns of GoogleTest's
#   BESIDE ...                 a command, with its arguments, that runs the program beside something it needs
#   ENVIRONMENT ...            NAME=value for its runs
#   TIMEOUT seconds            for each of its runs, where 300 are too few
#   DEPENDS ...                targets that its runs need)
function(telvar_test_program name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "ALSO_CHECKED;ALSO_HEAP_CHECKED" "ONE_ENTRY_PER;TIMEOUT"
                        "SOURCES;USES;BESIDE;ENVIRONMENT;DEPENDS;HEAP_EXCEPT")
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE telvar_settings test_bed ${arg_USES})
  if(arg_DEPENDS)
    add_dependencies(${name} ${arg_DEPENDS})
  endif()

  set(entries ${CMAKE_CURRENT_BINARY_DIR}/${name}_entries.cmake)
  set(runner ${arg_BESIDE})
  if(NOT CMAKE_HOST_WIN32)
    list(APPEND runner ${CMAKE_SOURCE_DIR}/tests/bed/whole-run)
  endif()
  list(JOIN runner "|" runner)
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 300)
  endif()
  set(checked "")
  if(arg_ALSO_CHECKED AND NOT CMAKE_HOST_WIN32)
    set(checked ${CMAKE_SOURCE_DIR}/tests/bed/jni-checked-run)
  endif()
  set(heap_checked "")
  # In the build that is shipped alone: in the others the checks find nothing else, and take even longer.
  if(arg_ALSO_HEAP_CHECKED AND NOT CMAKE_HOST_WIN32 AND NOT TELVAR_CHECKED AND NOT TELVAR_COVERAGE)
    list(JOIN telvar_heap_checked_run "|" heap_checked)
  endif()
  list(JOIN arg_HEAP_EXCEPT ":" heap_except)
  # Without OLE Automation's cache of freed texts, the tests' accounts see every BSTR. "|": a list would be taken apart
  # on the command line.
  list(JOIN arg_ENVIRONMENT "|" environment)
  string(PREPEND environment "OANOCACHE=1|")
  add_custom_command(
    TARGET ${name} POST_BUILD
    COMMAND ${CMAKE_COMMAND} -D PROGRAM=$<TARGET_FILE:${name}> -D "EMULATOR=${CMAKE_CROSSCOMPILING_EMULATOR}"
            -D "RUNNER=${runner}" -D ONE_ENTRY_PER=${arg_ONE_ENTRY_PER} -D "CHECKED=${checked}" -D OUTPUT=${entries}
            -D "HEAP_CHECKED=${heap_checked}" -D "HEAP_EXCEPT=${heap_except}"
            -D "ENVIRONMENT=${environment}" -D TIMEOUT=${arg_TIMEOUT} -P ${CMAKE_SOURCE_DIR}/cmake/DiscoverTests.cmake
    BYPRODUCTS ${entries}
    VERBATIM)
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${entries})
endfunction()

# telvar_compile_test(NAME SOURCE file TARGET target CASE n EXPECT regex)
# A source that must not compile: with CASE defined to a number the compiler has to say what EXPECT describes.
function(telvar_compile_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "SOURCE;TARGET;CASE;EXPECT" "")
  set(includes "$<TARGET_PROPERTY:${arg_TARGET},INTERFACE_INCLUDE_DIRECTORIES>")
  set(systemIncludes "$<TARGET_PROPERTY:${arg_TARGET},INTERFACE_SYSTEM_INCLUDE_DIRECTORIES>")
  add_test(NAME ${name}
           COMMAND ${CMAKE_CXX_COMPILER} -std=c++17 -fsyntax-only -DCASE=${arg_CASE}
                   "$<$<BOOL:${includes}>:-I$<JOIN:${includes},;-I>>"
                   "$<$<BOOL:${systemIncludes}>:-isystem$<JOIN:${systemIncludes},;-isystem>>"
                   ${CMAKE_CURRENT_SOURCE_DIR}/${arg_SOURCE}
           COMMAND_EXPAND_LISTS)
  if(arg_EXPECT)
    set_tests_properties(${name} PROPERTIES PASS_REGULAR_EXPRESSION ${arg_EXPECT})
  endif()
endfunction()

# telvar_run_test(NAME COMMAND part ... RESULT n [OUTPUT text ...] [ENVIRONMENT NAME=value] [REPEAT n] [WITHIN seconds])
# A program whose end is the proof: it has to end with exactly this result, each time it is run.
function(telvar_run_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "RESULT;ENVIRONMENT;REPEAT;WITHIN" "COMMAND;OUTPUT")
  list(JOIN arg_COMMAND "|" command)
  list(JOIN arg_OUTPUT "|" output)
  add_test(NAME ${name}
           COMMAND ${CMAKE_COMMAND} -D "COMMAND=${command}" -D "RESULT=${arg_RESULT}" -D "OUTPUT=${output}"
                   -D "ENVIRONMENT=${arg_ENVIRONMENT}" -D "REPEAT=${arg_REPEAT}"
                   -D "WITHIN=${arg_WITHIN}"
                   -P ${CMAKE_SOURCE_DIR}/tests/bed/CheckRun.cmake)
endfunction()
