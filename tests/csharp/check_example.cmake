# PROGRAM must say what is missing as long as LIBRARY is not beside it, and print a design that is
# held at the left and tapers towards the load at the right when it is.

cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE "${DIR}")
file(COPY "${PROGRAM}" DESTINATION "${DIR}")
cmake_path(GET PROGRAM FILENAME program)
unset(ENV{LD_LIBRARY_PATH})

execute_process(COMMAND "${MONO}" "${DIR}/${program}" RESULT_VARIABLE status ERROR_VARIABLE error)
if(NOT status EQUAL 1 OR NOT error MATCHES "Put it as libvoxam.so into ${DIR}/")
    message(FATAL_ERROR "Without the library: status ${status}, and told was\n${error}")
endif()

file(CREATE_LINK "${LIBRARY}" "${DIR}/libvoxam.so" SYMBOLIC)
execute_process(COMMAND "${MONO}" "${DIR}/${program}" OUTPUT_VARIABLE output
    COMMAND_ERROR_IS_FATAL ANY)
if(NOT output MATCHES "\n#+\\.+\n.*\n\\.+#[.#]+#\n.*\n#+\\.+\n.*compliance as printed [0-9.]+, volume 4")
    message(FATAL_ERROR "The example printed\n${output}")
endif()
