# The dynamic symbols of LIBRARY must be exactly the names in the file EXPORTS.

cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND "${NM}" -D --defined-only --format=posix "${LIBRARY}"
    OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE " [^\n]*\n" ";" found "${symbols}")
list(REMOVE_ITEM found "")
list(SORT found)

file(STRINGS "${EXPORTS}" wanted)
list(SORT wanted)

if(NOT found STREQUAL wanted)
    message(FATAL_ERROR "Exported: ${found}\nExpected: ${wanted}")
endif()
