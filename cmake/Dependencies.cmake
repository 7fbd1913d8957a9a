# What tools/setup.sh brings: Boost, header-only libraries, the JNI headers, the Java runtime for Windows, Java libraries.

set(TELVAR_CACHE "" CACHE PATH "Folder that tools/setup.sh fills (default: as that script chooses)")
if(NOT TELVAR_CACHE)
  if(DEFINED ENV{TELVAR_CACHE})
    set(telvar_cache $ENV{TELVAR_CACHE})
  else()
    set(telvar_cache $ENV{HOME}/.cache/telvar-rmi)
  endif()
else()
  set(telvar_cache ${TELVAR_CACHE})
endif()

set(BOOST_ROOT_DIR ${telvar_cache}/boost-1.74.0 CACHE PATH "Folder with include/boost and libs/thread/src")
set(HEADER_LIBRARY_DIR ${telvar_cache}/header-libraries CACHE PATH "Folder with nlohmann/json.hpp and CLI/CLI.hpp")
set(JNI_INCLUDE_DIR ${telvar_cache}/jni-21.0.8.2 CACHE PATH "Folder with jni.h and win32/jni_md.h")
set(JRE_DIR ${telvar_cache}/jre-11.0.13.1 CACHE PATH "A 64-bit Java runtime for Windows, for the tests")
set(JAVA_LIBRARY_DIR ${telvar_cache}/java-libraries CACHE PATH "Folder with the archives of Java libraries")
set(GSON_ARCHIVE ${JAVA_LIBRARY_DIR}/gson-2.10.1.jar)
set(JUNIT_ARCHIVE ${JAVA_LIBRARY_DIR}/junit-platform-console-standalone-1.10.2.jar)
set(PICOCLI_ARCHIVE ${JAVA_LIBRARY_DIR}/picocli-4.7.6.jar)

foreach(needed ${BOOST_ROOT_DIR}/include/boost/version.hpp ${BOOST_ROOT_DIR}/libs/thread/src/win32/thread.cpp
        ${HEADER_LIBRARY_DIR}/nlohmann/json.hpp ${HEADER_LIBRARY_DIR}/CLI/CLI.hpp
        ${JNI_INCLUDE_DIR}/jni.h ${JRE_DIR}/bin/server/jvm.dll ${GSON_ARCHIVE}
        ${JUNIT_ARCHIVE} ${PICOCLI_ARCHIVE})
  if(NOT EXISTS ${needed})
    message(FATAL_ERROR "${needed} is missing: run tools/setup.sh, or set the paths in cmake/Dependencies.cmake")
  endif()
endforeach()

add_library(jni_headers INTERFACE)
target_include_directories(jni_headers SYSTEM INTERFACE ${JNI_INCLUDE_DIR} ${JNI_INCLUDE_DIR}/win32)

add_library(boost_headers INTERFACE)
target_include_directories(boost_headers SYSTEM INTERFACE ${BOOST_ROOT_DIR}/include)
target_compile_definitions(boost_headers INTERFACE BOOST_ALL_NO_LIB BOOST_BIND_GLOBAL_PLACEHOLDERS)

# JSON and command lines, for the examples.
add_library(header_libraries INTERFACE)
target_include_directories(header_libraries SYSTEM INTERFACE ${HEADER_LIBRARY_DIR})

# Boost.Thread from Boost's own sources: what thread_specific_ptr and its clean-up at a thread's end need. Sections let
# the linker leave out the thread-starting half of thread.cpp.
set(boost_thread_sources ${BOOST_ROOT_DIR}/libs/thread/src/win32)
add_library(boost_thread STATIC ${boost_thread_sources}/thread.cpp ${boost_thread_sources}/tss_dll.cpp
            ${boost_thread_sources}/tss_pe.cpp ${boost_thread_sources}/thread_primitives.cpp)
target_compile_definitions(boost_thread PRIVATE BOOST_THREAD_BUILD_LIB PUBLIC BOOST_THREAD_USE_LIB)
# Its function-local statics are made while the image loads, on one thread: guarding them would have the thread support
# library set up a thread and a lock of its own, which it never gives back at an unload.
target_compile_options(boost_thread PRIVATE -w -ffunction-sections -fdata-sections -fno-threadsafe-statics)
target_link_libraries(boost_thread PUBLIC boost_headers)
