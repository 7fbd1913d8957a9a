# cmake -D "COMMAND=program|argument..." -D RESULT=n [-D "OUTPUT=text|text..."] [-D "ENVIRONMENT=NAME=value"] [-D REPEAT=n]
#       [-D WITHIN=seconds] -P CheckRun.cmake
# Passes when the command, run once or as often as asked for, ends by itself with exactly this result each time and its
# output holds every one of the texts. A run that has not ended within so many seconds (120 unless told) is hanging.
cmake_minimum_required(VERSION 3.25)
string(REPLACE "|" ";" command "${COMMAND}")
string(REPLACE "|" ";" expected "${OUTPUT}")
if(NOT REPEAT)
  set(REPEAT 1)
endif()
if(NOT WITHIN)
  set(WITHIN 120)
endif()

foreach(run RANGE 1 ${REPEAT})
  execute_process(COMMAND ${CMAKE_COMMAND} -E env ${ENVIRONMENT} -- ${command} TIMEOUT ${WITHIN} RESULT_VARIABLE result
                  OUTPUT_VARIABLE output ERROR_VARIABLE output)
  message("${output}")
  if(NOT result STREQUAL RESULT)
    message(FATAL_ERROR "run ${run}: the command ended with '${result}' instead of ${RESULT}")
  endif()
  foreach(text IN LISTS expected)
    string(FIND "${output}" "${text}" position)
    if(position EQUAL -1)
      message(FATAL_ERROR "run ${run}: the output does not hold '${text}'")
    endif()
  endforeach()
endforeach()
