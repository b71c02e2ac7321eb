# OpenBLAS from its serial archive, to be linked into the library.
#
# Nothing of it is visible to a host, and it has no threads. embedded_blas.c chooses its kernels.
#
# Target: voxam_embedded_blas, with <cblas.h> and the symbols of LAPACK. Without it,
# VOXAM_EMBEDDING_FAILURE says what was in the way.

include(EmbeddedArchives)

set(voxam_blas_changes
    --redefine-sym=stderr=voxam_blas_stderr
    --redefine-sym=getenv=voxam_blas_getenv)

# Defines the target, of the archive and of `source`. Appends the archive to
# VOXAM_EMBEDDED_ARCHIVES.
function(voxam_embed_blas source)
    find_library(OPENBLAS_ARCHIVE NAMES libopenblas.a PATH_SUFFIXES openblas-serial)
    mark_as_advanced(OPENBLAS_ARCHIVE)
    if(NOT OPENBLAS_ARCHIVE)
        set(VOXAM_EMBEDDING_FAILURE "there is no archive of a serial OpenBLAS")
    else()
        voxam_copy_archives("${OPENBLAS_ARCHIVE}" "${voxam_blas_changes}" copies)
    endif()
    if(NOT VOXAM_EMBEDDING_FAILURE)
        voxam_try_embedding(blas "${source}" "-u,dsyrk_;-u,dgetrf_" "${copies};m")
    endif()
    set(VOXAM_EMBEDDING_FAILURE "${VOXAM_EMBEDDING_FAILURE}" PARENT_SCOPE)
    if(VOXAM_EMBEDDING_FAILURE)
        return()
    endif()
    add_library(voxam_embedded_blas_names STATIC "${source}")
    add_library(voxam_embedded_blas INTERFACE)
    target_include_directories(voxam_embedded_blas SYSTEM INTERFACE "${CBLAS_INCLUDE_DIR}")
    target_link_libraries(voxam_embedded_blas INTERFACE ${copies} voxam_embedded_blas_names m)
    set(VOXAM_EMBEDDED_ARCHIVES ${VOXAM_EMBEDDED_ARCHIVES} ${OPENBLAS_ARCHIVE} PARENT_SCOPE)
endfunction()
