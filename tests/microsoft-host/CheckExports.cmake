# Script: the names of Microsoft's that a host's objects take from the library are exactly those that it exports.
# Variables: NM, OBJDUMP, OBJECTS (separated by "|"), IMAGE.
cmake_minimum_required(VERSION 3.25)
string(REPLACE "|" ";" OBJECTS "${OBJECTS}")

execute_process(COMMAND ${NM} --undefined-only ${OBJECTS} OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "__imp_\\?[^\r\n]+" needed "${symbols}")
list(TRANSFORM needed REPLACE "^__imp_" "")
list(REMOVE_DUPLICATES needed)
list(SORT needed)
if(NOT needed)
  message(FATAL_ERROR "the host's objects need no name of the library's: ${symbols}")
endif()

execute_process(COMMAND ${OBJDUMP} -p ${IMAGE} OUTPUT_VARIABLE headers COMMAND_ERROR_IS_FATAL ANY)
# "[   0] ?GetInstance@..." in the table of names; some versions print the ordinal's hint between.
string(REGEX MATCHALL "\n[\t ]+\\[ *[0-9]+\\][^\n]* \\?[^\r\n]+" exported "${headers}")
list(TRANSFORM exported REPLACE "^[^?]+" "")
list(SORT exported)

if(NOT needed STREQUAL exported)
  list(JOIN needed "\n  " needed)
  list(JOIN exported "\n  " exported)
  message(FATAL_ERROR "the host's objects need\n  ${needed}\nand ${IMAGE} exports\n  ${exported}")
endif()
message(STATUS "exported and needed: ${needed}")
