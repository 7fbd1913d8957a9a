# Script: asks a test program for its tests and writes their ctest entries.
# Variables: PROGRAM, EMULATOR, RUNNER, ONE_ENTRY_PER, CHECKED, HEAP_CHECKED, HEAP_EXCEPT, OUTPUT, ENVIRONMENT, TIMEOUT (see
# telvar_test_program).

cmake_minimum_required(VERSION 3.25)

# The lines of the program's listing, of the tests that the filter leaves.
function(list_tests filter output)
  execute_process(COMMAND ${EMULATOR} ${PROGRAM} --gtest_list_tests --gtest_filter=${filter}
                  OUTPUT_VARIABLE listing RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${PROGRAM} cannot list its tests (${result}): ${listing}")
  endif()
  string(REGEX REPLACE "\r?\n" ";" lines "${listing}")
  set(${output} "${lines}" PARENT_SCOPE)
endfunction()

list_tests(* lines)
string(REPLACE "|" ";" ENVIRONMENT "${ENVIRONMENT}")
string(REPLACE "|" ";" RUNNER "${RUNNER}")
string(REPLACE "|" ";" HEAP_CHECKED "${HEAP_CHECKED}")

set(names "")
set(content "")
function(add_entry name filter)
  set(command "")
  foreach(part ${RUNNER} ${EMULATOR} ${PROGRAM} --gtest_filter=${filter})
    string(APPEND command " [==[${part}]==]")
  endforeach()
  set(properties "PROPERTIES TIMEOUT ${TIMEOUT} ENVIRONMENT [==[${ENVIRONMENT}]==]")
  set(entry "add_test([==[${name}]==] ${command})\nset_tests_properties([==[${name}]==] ${properties})\n")
  if(CHECKED)
    string(APPEND entry "add_test([==[checked/${name}]==] [==[${CHECKED}]==] ${command})\n"
           "set_tests_properties([==[checked/${name}]==] ${properties})\n")
  endif()
  set(content "${content}${entry}" PARENT_SCOPE)
endfunction()

# The tests of a suite in one process: what they leave in the heap stays little.
function(add_heap_entry suite)
  set(command "")
  foreach(part ${HEAP_CHECKED} ${RUNNER} ${EMULATOR} ${PROGRAM} "--gtest_filter=${suite}.*-${HEAP_EXCEPT}")
    string(APPEND command " [==[${part}]==]")
  endforeach()
  set(properties "PROPERTIES TIMEOUT ${TIMEOUT} ENVIRONMENT [==[${ENVIRONMENT}]==]")
  set(entry "add_test([==[heap/${suite}]==] ${command})\nset_tests_properties([==[heap/${suite}]==] ${properties})\n")
  set(content "${content}${entry}" PARENT_SCOPE)
endfunction()

set(suite "")
foreach(line IN LISTS lines)
  string(REGEX REPLACE " +#.*" "" line "${line}")
  if(line MATCHES "^([A-Za-z0-9_/]+)\\.$")
    set(suite ${CMAKE_MATCH_1})
    if(ONE_ENTRY_PER STREQUAL "SUITE")
      add_entry(${suite} "${suite}.*")
    endif()
  elseif(line MATCHES "^  ([A-Za-z0-9_/]+)$" AND ONE_ENTRY_PER STREQUAL "TEST")
    add_entry(${suite}.${CMAKE_MATCH_1} ${suite}.${CMAKE_MATCH_1})
  endif()
endforeach()
if(NOT content)
  message(FATAL_ERROR "${PROGRAM} lists no tests: ${lines}")
endif()

# Only of suites of which something is left: an entry without tests would prove nothing.
if(HEAP_CHECKED)
  list_tests("*-${HEAP_EXCEPT}" lines)
  foreach(line IN LISTS lines)
    if(line MATCHES "^([A-Za-z0-9_/]+)\\.( +#.*)?$")
      add_heap_entry(${CMAKE_MATCH_1})
    endif()
  endforeach()
endif()
file(WRITE ${OUTPUT} "${content}")
