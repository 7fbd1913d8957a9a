# GoogleTest and GoogleMock from Debian's source package, built for the target.
set(GOOGLETEST_DIR /usr/src/googletest CACHE PATH "Folder with GoogleTest's sources")
if(NOT EXISTS ${GOOGLETEST_DIR}/CMakeLists.txt)
  message(FATAL_ERROR "GoogleTest's sources are not in ${GOOGLETEST_DIR}: run tools/setup.sh, or set GOOGLETEST_DIR")
endif()
set(gtest_force_shared_crt ON CACHE BOOL "" FORCE)
set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
add_subdirectory(${GOOGLETEST_DIR} ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
