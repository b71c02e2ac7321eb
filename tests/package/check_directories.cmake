# Install directories may be absolute paths; and who asks for nothing gets a release build.

cmake_minimum_required(VERSION 3.25)

include("${CMAKE_CURRENT_LIST_DIR}/../support/run.cmake")

function(check_variable name expected)
    run(pkg-config "--variable=${name}" voxam)
    string(STRIP "${output}" output)
    if(NOT output STREQUAL expected)
        message(FATAL_ERROR "voxam.pc gives ${name}=${output} instead of ${expected}")
    endif()
endfunction()

file(REMOVE_RECURSE "${SCRATCH_DIR}")
run("${CMAKE_COMMAND}" -S "${SOURCE_DIR}" -B "${SCRATCH_DIR}" -G "${GENERATOR}"
    "-DCMAKE_C_COMPILER=${C_COMPILER}" "-DCMAKE_CXX_COMPILER=${CXX_COMPILER}"
    -DCMAKE_INSTALL_PREFIX=/opt/voxam -DCMAKE_INSTALL_LIBDIR=/srv/lib
    -DCMAKE_INSTALL_INCLUDEDIR=/srv/include -DVOXAM_BUILD_TESTS=OFF -DVOXAM_BUILD_HOSTS=OFF)
set(ENV{PKG_CONFIG_PATH} "${SCRATCH_DIR}/SparseMatrixLib")
check_variable(prefix /opt/voxam)
check_variable(libdir /srv/lib)
check_variable(includedir /srv/include/voxam)

if(NOT GENERATOR MATCHES "Multi-Config|Xcode|Visual Studio")
    file(STRINGS "${SCRATCH_DIR}/CMakeCache.txt" build_type REGEX "^CMAKE_BUILD_TYPE:STRING=Release$")
    if(NOT build_type)
        message(FATAL_ERROR "The default build type is not Release")
    endif()
endif()
file(REMOVE_RECURSE "${SCRATCH_DIR}")
