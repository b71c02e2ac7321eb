# BLAS with its C interface, and LAPACK.
#
# Target: CBLAS::CBLAS, which gives <cblas.h> and the Fortran symbols of LAPACK (dgetrf_ and so on).
# OpenBLAS is preferred, since it has all three; BLA_VENDOR chooses another one. A BLAS without the
# C interface is completed by a separate libcblas.

include(CheckFunctionExists)
include(FindPackageHandleStandardArgs)

# One archive has everything; what CMake looks for in a LAPACK is complex, and this one is not.
if(EMSCRIPTEN)
    find_library(OPENBLAS_LIBRARY openblas)
    mark_as_advanced(OPENBLAS_LIBRARY)
    if(OPENBLAS_LIBRARY AND NOT TARGET LAPACK::LAPACK)
        add_library(LAPACK::LAPACK STATIC IMPORTED)
        set_target_properties(LAPACK::LAPACK PROPERTIES IMPORTED_LOCATION "${OPENBLAS_LIBRARY}")
    endif()
elseif(NOT DEFINED BLA_VENDOR)
    set(BLA_VENDOR OpenBLAS)
    find_package(LAPACK QUIET)
    unset(BLA_VENDOR)
endif()
if(NOT TARGET LAPACK::LAPACK AND NOT LAPACK_FOUND)
    find_package(LAPACK QUIET)
endif()

find_path(CBLAS_INCLUDE_DIR cblas.h
    PATH_SUFFIXES openblas openblas-pthread openblas-openmp openblas-serial cblas)
mark_as_advanced(CBLAS_INCLUDE_DIR)

set(_cblas_libraries "")
if(TARGET LAPACK::LAPACK)
    set(CMAKE_REQUIRED_LIBRARIES LAPACK::LAPACK)
    check_function_exists(cblas_dgemm CBLAS_IN_BLAS)
    if(CBLAS_IN_BLAS)
        set(_cblas_libraries LAPACK::LAPACK)
    else()
        find_library(CBLAS_LIBRARY cblas)
        mark_as_advanced(CBLAS_LIBRARY)
        if(CBLAS_LIBRARY)
            set(_cblas_libraries "${CBLAS_LIBRARY}" LAPACK::LAPACK)
        endif()
    endif()
    unset(CMAKE_REQUIRED_LIBRARIES)
endif()

find_package_handle_standard_args(CBLAS REQUIRED_VARS _cblas_libraries CBLAS_INCLUDE_DIR)

if(CBLAS_FOUND AND NOT TARGET CBLAS::CBLAS)
    add_library(CBLAS::CBLAS INTERFACE IMPORTED)
    set_target_properties(CBLAS::CBLAS PROPERTIES
        INTERFACE_INCLUDE_DIRECTORIES "${CBLAS_INCLUDE_DIR}"
        INTERFACE_LINK_LIBRARIES "${_cblas_libraries}")
endif()
unset(_cblas_libraries)
