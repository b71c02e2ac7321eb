# Builds the example with Voxam as a part of its project, and compares what it prints.

cmake_minimum_required(VERSION 3.25)

include("${CMAKE_CURRENT_LIST_DIR}/../support/run.cmake")

run("${CMAKE_COMMAND}" -S "${CMAKE_CURRENT_LIST_DIR}/subproject" -B "${SCRATCH_DIR}"
    -G "${GENERATOR}" "-DCMAKE_C_COMPILER=${C_COMPILER}" "-DCMAKE_CXX_COMPILER=${CXX_COMPILER}"
    "-DVOXAM_DIR=${SOURCE_DIR}" "-DVOXAM_CHOLMOD=${CHOLMOD}"
    "-DVOXAM_BLAS=${BLAS}" -DCMAKE_EXPORT_COMPILE_COMMANDS=ON)
file(READ "${SCRATCH_DIR}/compile_commands.json" commands)
if(NOT commands MATCHES "-O3[^\n]*factor\\.cpp")
    message(FATAL_ERROR "The library would be compiled without optimisation")
endif()
run("${CMAKE_COMMAND}" --build "${SCRATCH_DIR}")
file(READ "${SOURCE_DIR}/hosts/example/score_plate.txt" expected)
foreach(library IN ITEMS voxamvoxam voxam_internal)
    run("${SCRATCH_DIR}/score_plate_${library}")
    if(NOT output STREQUAL expected)
        message(FATAL_ERROR "score_plate_${library} printed\n${output}instead of\n${expected}")
    endif()
endforeach()

# A parent that did not ask for them gets no headers, but the licences.
run("${CMAKE_COMMAND}" --install "${SCRATCH_DIR}" --prefix "${SCRATCH_DIR}/installed")
file(GLOB_RECURSE installed RELATIVE "${SCRATCH_DIR}/installed" "${SCRATCH_DIR}/installed/*")
if(NOT installed MATCHES "libvoxam" OR NOT installed MATCHES "licences.md" OR installed MATCHES "voxam\\.h")
    message(FATAL_ERROR "A parent project would install ${installed}")
endif()
