# On Linux the tests run under Wine, each build tree in a prefix of its own.
if(NOT CMAKE_HOST_WIN32)
  set(TELVAR_WINEPREFIX ${CMAKE_BINARY_DIR}/wineprefix)
  configure_file(${CMAKE_SOURCE_DIR}/cmake/wine-run.in ${CMAKE_BINARY_DIR}/wine-run @ONLY
                 FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_BINARY_DIR}/wine-run)
endif()
