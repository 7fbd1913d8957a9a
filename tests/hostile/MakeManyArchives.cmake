# Script: a folder with COUNT archives, new each time.
# Variables: FOLDER, COUNT.

cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${FOLDER})
math(EXPR last "${COUNT} - 1")
foreach(number RANGE ${last})
  file(TOUCH "${FOLDER}/archive with a rather long name ${number}.jar")
endforeach()
file(TOUCH ${FOLDER}.stamp)
