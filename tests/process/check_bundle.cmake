# Loads the bundle where there is nothing else than the C and C++ runtime: in a root directory of
# its own, with a program that scores a plate.

cmake_minimum_required(VERSION 3.25)

include("${CMAKE_CURRENT_LIST_DIR}/../support/run.cmake")

set(root "${SCRATCH_DIR}/root")
file(REMOVE_RECURSE "${SCRATCH_DIR}")

# The files of the runtime are those that the smallest of C++ programs loads.
function(copy_runtime)
    file(WRITE "${SCRATCH_DIR}/smallest.cpp" "int main() {}\n")
    run("${CXX_COMPILER}" "${SCRATCH_DIR}/smallest.cpp" -o "${SCRATCH_DIR}/smallest"
        -Wl,--no-as-needed -lstdc++ -lgcc_s -lm -ldl -lpthread -lrt)
    run(ldd "${SCRATCH_DIR}/smallest")
    string(REGEX MATCHALL "/[^ \n]*" files "${output}")
    foreach(file IN LISTS files)
        file(REAL_PATH "${file}" origin)
        cmake_path(GET file PARENT_PATH directory)
        file(MAKE_DIRECTORY "${root}${directory}")
        file(COPY_FILE "${origin}" "${root}${file}")
    endforeach()
endfunction()

run("${CMAKE_COMMAND}" --install "${BUILD_DIR}" --config "${CONFIG}" --prefix "${root}/host"
    --component bundle)
copy_runtime()
file(COPY "${PROGRAM}" DESTINATION "${root}/host")
cmake_path(GET PROGRAM FILENAME program)
cmake_path(GET LIBRARY FILENAME library)

execute_process(RESULT_VARIABLE forbidden ERROR_VARIABLE error
    COMMAND unshare --map-root-user --root=${root} "/host/${program}")
if(error MATCHES "^unshare:" OR forbidden MATCHES "No such file")
    message("skipped: no program can be run in another root directory here: ${error}")
    return()
endif()

# Bits and licences are checked as well, since they are what may get lost unnoticed.
run("${PROGRAM}" "${LIBRARY}")
string(REGEX MATCH "compliance [^\n]*" expected "${output}")
run(unshare --map-root-user --root=${root} "/host/${program}" /host/voxam/libvoxam.so)
if(NOT output MATCHES "${expected}\n")
    message(FATAL_ERROR "Expected ${expected} but got\n${output}")
endif()
foreach(text IN ITEMS licences.md GPL-2 Apache-2.0)
    if(NOT EXISTS "${root}/host/voxam/licences/${text}")
        message(FATAL_ERROR "The bundle has no ${text}")
    endif()
endforeach()
file(REMOVE_RECURSE "${SCRATCH_DIR}")
