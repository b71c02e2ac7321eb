# CHOLMOD from its archives, to be linked into the library.
#
# Its supernodal factorisation is compiled for OpenMP and reads the clock around each call of the
# BLAS. embedded_cholmod.c stands for both; the code is the same. METIS has no archive on Debian and
# stays a shared library there.
#
# Target: voxam_embedded_cholmod. Without it, VOXAM_EMBEDDING_FAILURE says what was in the way.

include(EmbeddedArchives)

set(voxam_cholmod_changes
    --redefine-sym=stdout=voxam_cholmod_stdout
    --redefine-sym=stderr=voxam_cholmod_stderr
    --redefine-sym=GOMP_parallel=voxam_cholmod_parallel
    --redefine-sym=omp_get_num_threads=voxam_cholmod_num_threads
    --redefine-sym=omp_get_thread_num=voxam_cholmod_thread_num
    --weaken-symbol=SuiteSparse_time)

# With OpenBLAS linked in as well, embedded_cholmod_blas.cpp stands between the two.
set(voxam_cholmod_blas dgemm dgemv dpotrf dsyrk dtrsm dtrsv)
list(TRANSFORM voxam_cholmod_blas REPLACE "(.+)" "--redefine-sym=\\1_=voxam_cholmod_\\1")

# Defines the target, of the archives that lie beside CHOLMOD's shared library, of `source`, and of
# `blas`, CBLAS::CBLAS or voxam_embedded_blas. In the latter case the caller adds
# embedded_cholmod_blas.cpp to the target voxam_embedded_names. Appends the archives to
# VOXAM_EMBEDDED_ARCHIVES.
function(voxam_embed_cholmod source blas)
    set(VOXAM_EMBEDDING_FAILURE "METIS was not found")
    cmake_path(GET CHOLMOD_LIBRARY PARENT_PATH archive_dir)
    set(archives libcholmod.a libamd.a libcolamd.a libccolamd.a libcamd.a libsuitesparseconfig.a)
    list(TRANSFORM archives PREPEND "${archive_dir}/")
    find_library(METIS_ARCHIVE NAMES libmetis.a)
    find_library(METIS_LIBRARY NAMES metis libmetis.so.5)
    mark_as_advanced(METIS_ARCHIVE METIS_LIBRARY)
    set(metis "")
    foreach(candidate IN ITEMS METIS_ARCHIVE METIS_LIBRARY)
        if(NOT metis AND ${candidate})
            voxam_copy_archives("${archives}" "${voxam_cholmod_changes}" copies)
            if(NOT VOXAM_EMBEDDING_FAILURE)
                list(GET copies 0 cholmod)
                voxam_try_embedding(cholmod "${source}"
                    "--whole-archive;${cholmod};--no-whole-archive"
                    "${copies};${${candidate}};CBLAS::CBLAS;m")
            endif()
            if(NOT VOXAM_EMBEDDING_FAILURE)
                set(metis "${${candidate}}")
            elseif(candidate STREQUAL "METIS_ARCHIVE")
                set(archive_failure "${VOXAM_EMBEDDING_FAILURE}")
            endif()
        endif()
    endforeach()
    if(METIS_ARCHIVE AND metis AND NOT metis STREQUAL METIS_ARCHIVE)
        message(WARNING "${METIS_ARCHIVE} cannot be linked in (scripts/static-metis makes one that "
            "can), so the library needs ${metis}: ${archive_failure}")
    endif()
    set(VOXAM_EMBEDDING_FAILURE "${VOXAM_EMBEDDING_FAILURE}" PARENT_SCOPE)
    if(NOT metis)
        return()
    endif()
    if(blas STREQUAL "voxam_embedded_blas")
        voxam_copy_archives(
            "${archives}" "${voxam_cholmod_changes};${voxam_cholmod_blas}" copies)
    endif()
    add_library(voxam_embedded_names STATIC "${source}")
    add_library(voxam_embedded_cholmod INTERFACE)
    target_include_directories(voxam_embedded_cholmod SYSTEM INTERFACE "${CHOLMOD_INCLUDE_DIR}")
    target_link_libraries(voxam_embedded_cholmod
        INTERFACE ${copies} voxam_embedded_names ${metis} ${blas} m)
    if(metis MATCHES "\\.a$")
        list(APPEND archives "${metis}")
    endif()
    set(VOXAM_EMBEDDED_ARCHIVES ${VOXAM_EMBEDDED_ARCHIVES} ${archives} PARENT_SCOPE)
endfunction()
