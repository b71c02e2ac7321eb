# Installs BUILD_DIR to a scratch prefix, moves it, builds the example against it both ways that
# the README names, and compares what the programs print with the expected text.

cmake_minimum_required(VERSION 3.25)

include("${CMAKE_CURRENT_LIST_DIR}/../support/run.cmake")

set(prefix "${SCRATCH_DIR}/moved")
file(REMOVE_RECURSE "${SCRATCH_DIR}")
file(MAKE_DIRECTORY "${SCRATCH_DIR}")

function(check_program name program)
    run("${program}")
    file(READ "${EXAMPLE_DIR}/score_plate.txt" expected)
    if(NOT output STREQUAL expected)
        message(FATAL_ERROR "The program built with ${name} printed\n${output}instead of\n${expected}")
    endif()
endfunction()

run("${CMAKE_COMMAND}" --install "${BUILD_DIR}" --config "${CONFIG}"
    --prefix "${SCRATCH_DIR}/installed")
file(RENAME "${SCRATCH_DIR}/installed" "${prefix}")

set(project_dir "${SCRATCH_DIR}/find_package")
run("${CMAKE_COMMAND}" -S "${CMAKE_CURRENT_LIST_DIR}" -B "${project_dir}" -G "${GENERATOR}"
    "-DCMAKE_PREFIX_PATH=${prefix}" "-DCMAKE_C_COMPILER=${C_COMPILER}" "-DCMAKE_C_FLAGS=${C_FLAGS}"
    "-DEXAMPLE_DIR=${EXAMPLE_DIR}")
run("${CMAKE_COMMAND}" --build "${project_dir}")
check_program(find_package "${project_dir}/score_plate")

file(GLOB_RECURSE pc_file "${prefix}/*/voxam.pc")
cmake_path(GET pc_file PARENT_PATH pc_dir)
set(ENV{PKG_CONFIG_PATH} "${pc_dir}")
run(pkg-config --cflags --libs voxam)
separate_arguments(flags UNIX_COMMAND "${C_FLAGS} ${output}")
run(pkg-config --variable=libdir voxam)
separate_arguments(libdir UNIX_COMMAND "${output}")
run("${C_COMPILER}" -std=c11 "${EXAMPLE_DIR}/score_plate.c" -o "${SCRATCH_DIR}/score_plate"
    ${flags} "-Wl,-rpath,${libdir}")
check_program(pkg-config "${SCRATCH_DIR}/score_plate")
