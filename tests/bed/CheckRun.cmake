# cmake -D "COMMAND=program|argument..." -D RESULT=n [-D "OUTPUT=text|text..."] [-D "ENVIRONMENT=NAME=value"] -P CheckRun.cmake
# Passes when the command ends with exactly this result and its output holds every one of the texts: for programs whose
# failure is the proof.
cmake_minimum_required(VERSION 3.25)
string(REPLACE "|" ";" command "${COMMAND}")
string(REPLACE "|" ";" expected "${OUTPUT}")

execute_process(COMMAND ${CMAKE_COMMAND} -E env ${ENVIRONMENT} -- ${command} TIMEOUT 60 RESULT_VARIABLE result
                OUTPUT_VARIABLE output ERROR_VARIABLE output)
message("${output}")
if(NOT result STREQUAL RESULT)
  message(FATAL_ERROR "the command ended with '${result}' instead of ${RESULT}")
endif()
foreach(text IN LISTS expected)
  string(FIND "${output}" "${text}" position)
  if(position EQUAL -1)
    message(FATAL_ERROR "the output does not hold '${text}'")
  endif()
endforeach()
