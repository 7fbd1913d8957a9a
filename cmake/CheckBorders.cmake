# Script: an include that climbs out of its folder would pass every border unseen, so there is none.
cmake_minimum_required(VERSION 3.25)
file(GLOB_RECURSE sources ${SOURCE_DIR}/include/* ${SOURCE_DIR}/bridge/* ${SOURCE_DIR}/java/* ${SOURCE_DIR}/convert/*
     ${SOURCE_DIR}/config/* ${SOURCE_DIR}/support/* ${SOURCE_DIR}/examples/* ${SOURCE_DIR}/tests/* ${SOURCE_DIR}/bench/*)
list(FILTER sources INCLUDE REGEX "\\.(h|cpp)$")
foreach(source IN LISTS sources)
  file(STRINGS ${source} climbing REGEX "#[ \t]*include.*\\.\\./")
  if(climbing)
    message(FATAL_ERROR "${source} includes across a border: ${climbing}")
  endif()
endforeach()
