# How this project makes Java archives.

find_program(JAVA java REQUIRED)
find_program(JAVAC javac REQUIRED)
find_program(JAR jar REQUIRED)

# telvar_java_archive(NAME
#   ARCHIVE file        what is made; the classes are beside it, in the folder "classes"
#   RELEASE n           the oldest Java that it serves
#   SOURCE_FOLDER dir   all .java files in it
#   CLASS_PATH ...      archives that it is compiled against
#   MAIN_CLASS name     what "java -jar" starts
#   MANIFEST file       what else the manifest says
#   DEPENDS ...         targets that make the class path)
function(telvar_java_archive name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "ARCHIVE;RELEASE;SOURCE_FOLDER;MAIN_CLASS;MANIFEST" "CLASS_PATH;DEPENDS")
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${arg_SOURCE_FOLDER}/*.java)
  cmake_path(GET arg_ARCHIVE PARENT_PATH folder)
  set(class_path "")
  if(arg_CLASS_PATH)
    cmake_path(CONVERT "${arg_CLASS_PATH}" TO_NATIVE_PATH_LIST class_path)
    set(class_path -classpath ${class_path})
  endif()
  set(main_class "")
  if(arg_MAIN_CLASS)
    set(main_class --main-class ${arg_MAIN_CLASS})
  endif()
  set(manifest "")
  if(arg_MANIFEST)
    set(manifest --manifest ${arg_MANIFEST})
  endif()
  # A fixed date, so that two builds of one tree are the same byte by byte.
  add_custom_command(
    OUTPUT ${arg_ARCHIVE}
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${folder}/classes ${arg_ARCHIVE}
    COMMAND ${JAVAC} --release ${arg_RELEASE} -encoding UTF-8 -Xlint:all,-options -Werror ${class_path} -d ${folder}/classes
            ${sources}
    COMMAND ${JAR} --create --file ${arg_ARCHIVE} --date 2020-01-01T00:00:00Z ${main_class} ${manifest}
            -C ${folder}/classes .
    DEPENDS ${sources} ${arg_CLASS_PATH} ${arg_MANIFEST} ${arg_DEPENDS}
    VERBATIM)
  add_custom_target(${name} ALL DEPENDS ${arg_ARCHIVE})
endfunction()
