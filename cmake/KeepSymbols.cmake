# Script: moves an image's symbols to SYMBOLS/<build id>/, with a copy of the map, and leaves the image its pointer to
# them. To read a dump: addr2line -e SYMBOLS/<build id>/telvar-rmi.dll.debug ADDRESS, or gdb, which finds them by itself
# once that file lies beside the DLL.
# Variables: IMAGE, MAP, SYMBOLS, OBJCOPY, OBJDUMP.
cmake_minimum_required(VERSION 3.25)
cmake_path(GET IMAGE FILENAME name)

execute_process(COMMAND ${OBJDUMP} -p ${IMAGE} OUTPUT_VARIABLE headers RESULT_VARIABLE result)
if(NOT headers MATCHES "RSDS signature ([0-9a-f]+)")
  message(FATAL_ERROR "${IMAGE} has no build id (${result})")
endif()
set(folder ${SYMBOLS}/${CMAKE_MATCH_1})
file(MAKE_DIRECTORY ${folder})
file(COPY ${MAP} DESTINATION ${folder})

# objcopy would write the time into the image, and no two builds were the same any more.
set(ENV{SOURCE_DATE_EPOCH} 0)
foreach(arguments "--only-keep-debug;${IMAGE};${folder}/${name}.debug" "--strip-all;${IMAGE}"
        "--add-gnu-debuglink=${folder}/${name}.debug;${IMAGE}")
  execute_process(COMMAND ${OBJCOPY} ${arguments} RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "the symbols of ${IMAGE} cannot be split off")
  endif()
endforeach()
