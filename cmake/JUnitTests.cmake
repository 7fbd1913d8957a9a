# How this project makes its Java tests: JUnit's console runs each test class in a process of its own.

# telvar_junit_tests(NAME
#   SOURCE_FOLDER dir   all .java files in it; each *Test.java becomes a ctest entry of that name
#   CLASS_PATH ...      archives that the tests use, JUnit aside
#   PROPERTIES ...      NAME=value for the tests, as system properties
#   DEPENDS ...         targets that the tests need)
function(telvar_junit_tests name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "SOURCE_FOLDER" "CLASS_PATH;PROPERTIES;DEPENDS")
  set(archive ${CMAKE_CURRENT_BINARY_DIR}/${name}/${name}.jar)
  # The tests run on the build machine's own Java.
  telvar_java_archive(${name}
    ARCHIVE ${archive}
    RELEASE 17
    SOURCE_FOLDER ${arg_SOURCE_FOLDER}
    CLASS_PATH ${JUNIT_ARCHIVE} ${arg_CLASS_PATH}
    DEPENDS ${arg_DEPENDS})

  cmake_path(CONVERT "${archive};${arg_CLASS_PATH}" TO_NATIVE_PATH_LIST class_path)
  list(TRANSFORM arg_PROPERTIES PREPEND -D)
  file(GLOB_RECURSE tests CONFIGURE_DEPENDS RELATIVE ${arg_SOURCE_FOLDER} ${arg_SOURCE_FOLDER}/*Test.java)
  foreach(test IN LISTS tests)
    cmake_path(GET test STEM test_name)
    string(REGEX REPLACE "\\.java$" "" class ${test})
    string(REPLACE / . class ${class})
    add_test(NAME ${test_name}
             COMMAND ${JAVA} ${arg_PROPERTIES} -jar ${JUNIT_ARCHIVE} execute --disable-banner --details tree
                     --disable-ansi-colors --fail-if-no-tests --class-path ${class_path} --select-class ${class})
    set_tests_properties(${test_name} PROPERTIES TIMEOUT 300)
  endforeach()
endfunction()
