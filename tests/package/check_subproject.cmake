# Builds the example with Voxam as a part of its project, and compares what it prints.

cmake_minimum_required(VERSION 3.25)

function(run)
    execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        list(JOIN ARGN " " command)
        message(FATAL_ERROR "${command}\nfailed (${result}):\n${output}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

run("${CMAKE_COMMAND}" -S "${CMAKE_CURRENT_LIST_DIR}/subproject" -B "${SCRATCH_DIR}"
    -G "${GENERATOR}" "-DCMAKE_C_COMPILER=${C_COMPILER}" "-DCMAKE_CXX_COMPILER=${CXX_COMPILER}"
    "-DVOXAM_DIR=${SOURCE_DIR}" "-DVOXAM_CHOLMOD=${CHOLMOD}")
run("${CMAKE_COMMAND}" --build "${SCRATCH_DIR}")
file(READ "${SOURCE_DIR}/hosts/example/score_plate.txt" expected)
foreach(library IN ITEMS voxamvoxam voxam_internal)
    run("${SCRATCH_DIR}/score_plate_${library}")
    if(NOT output STREQUAL expected)
        message(FATAL_ERROR "score_plate_${library} printed\n${output}instead of\n${expected}")
    endif()
endforeach()
