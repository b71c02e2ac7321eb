# Where archives cannot be linked, configuring says why and takes the shared libraries.

cmake_minimum_required(VERSION 3.25)

# Configures with a variable that is wrong on purpose. `reason` is a part of what must be said.
function(check variable value library reason)
    file(REMOVE_RECURSE "${SCRATCH_DIR}")
    execute_process(OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE failed
        COMMAND "${CMAKE_COMMAND}" -S "${SOURCE_DIR}" -B "${SCRATCH_DIR}" -G "${GENERATOR}"
            "-DCMAKE_C_COMPILER=${C_COMPILER}" "-DCMAKE_CXX_COMPILER=${CXX_COMPILER}"
            -DVOXAM_CHOLMOD=EMBEDDED -DVOXAM_BUILD_TESTS=OFF -DVOXAM_BUILD_HOSTS=OFF
            "-D${variable}=${value}")
    string(REGEX REPLACE "[ \n]+" " " text "${output}")
    if(failed OR NOT text MATCHES "${library} stays a shared library.*${reason}")
        message(FATAL_ERROR "With ${variable}=${value}, \"${reason}\" was expected:\n${output}")
    endif()
endfunction()

file(WRITE "${SCRATCH_DIR}.so" "")
check(CMAKE_OBJCOPY no-such-program CHOLMOD "objcopy failed")
check(METIS_LIBRARY "${SCRATCH_DIR}.so" CHOLMOD "linking its archives failed, see")
check(OPENBLAS_ARCHIVE "${SCRATCH_DIR}.a" BLAS "there is no ")
file(REMOVE_RECURSE "${SCRATCH_DIR}" "${SCRATCH_DIR}.so")
