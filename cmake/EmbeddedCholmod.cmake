# CHOLMOD from its archives, to be linked into the library.
#
# Archives such as Debian's are compiled for executables, which may read the variables stdout and
# stderr where a shared library may not, and their supernodal factorisation for OpenMP. So copies
# are linked, in which references to these go to names that embedded_cholmod.c defines; the code is
# the same. METIS has no archive there and stays a shared library, as does the BLAS.
#
# Target: voxam_embedded_cholmod. Without it, VOXAM_EMBEDDING_FAILURE says what was in the way.

set(voxam_embedded_renamings
    stdout=voxam_cholmod_stdout
    stderr=voxam_cholmod_stderr
    GOMP_parallel=voxam_cholmod_parallel
    omp_get_num_threads=voxam_cholmod_num_threads
    omp_get_thread_num=voxam_cholmod_thread_num)

# Sets `copies` to renamed copies of the archives.
function(voxam_copy_archives archives copies)
    set(copy_dir "${PROJECT_BINARY_DIR}/cholmod")
    file(MAKE_DIRECTORY "${copy_dir}")
    list(TRANSFORM voxam_embedded_renamings PREPEND --redefine-sym= OUTPUT_VARIABLE renamings)
    set(result "")
    foreach(archive IN LISTS archives)
        if(NOT EXISTS "${archive}")
            set(VOXAM_EMBEDDING_FAILURE "there is no ${archive}" PARENT_SCOPE)
            return()
        endif()
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${archive}")
        cmake_path(GET archive FILENAME name)
        execute_process(RESULT_VARIABLE failed ERROR_VARIABLE error
            COMMAND "${CMAKE_OBJCOPY}" -D ${renamings} "${archive}" "${copy_dir}/new.a")
        if(failed)
            set(VOXAM_EMBEDDING_FAILURE "objcopy failed (${failed}): ${error}" PARENT_SCOPE)
            return()
        endif()
        file(COPY_FILE "${copy_dir}/new.a" "${copy_dir}/${name}" ONLY_IF_DIFFERENT)
        list(APPEND result "${copy_dir}/${name}")
    endforeach()
    set(${copies} ${result} PARENT_SCOPE)
endfunction()

# Links all of CHOLMOD into a shared library that may neither miss a symbol nor have its code
# patched when it is loaded.
function(voxam_try_embedding source libraries)
    list(GET libraries 0 cholmod)
    try_compile(linked SOURCES "${source}"
        COMPILE_DEFINITIONS -fPIC
        LINK_OPTIONS -shared "LINKER:-z,defs" "LINKER:-z,text" "LINKER:--exclude-libs,ALL"
            "LINKER:--whole-archive" "${cholmod}" "LINKER:--no-whole-archive"
        LINK_LIBRARIES ${libraries}
        OUTPUT_VARIABLE output
        NO_CACHE)
    if(NOT linked)
        set(log "${PROJECT_BINARY_DIR}/cholmod/link.log")
        file(WRITE "${log}" "${output}")
        set(VOXAM_EMBEDDING_FAILURE "linking its archives failed, see ${log}" PARENT_SCOPE)
    endif()
endfunction()

# Defines the target, of the archives that lie beside CHOLMOD's shared library and of `source`. Sets
# VOXAM_EMBEDDED_ARCHIVES to the archives.
function(voxam_embed_cholmod source)
    set(VOXAM_EMBEDDING_FAILURE "")
    cmake_path(GET CHOLMOD_LIBRARY PARENT_PATH archive_dir)
    set(archives libcholmod.a libamd.a libcolamd.a libccolamd.a libcamd.a libsuitesparseconfig.a)
    list(TRANSFORM archives PREPEND "${archive_dir}/")
    find_library(METIS_LIBRARY NAMES metis libmetis.so.5)
    mark_as_advanced(METIS_LIBRARY)
    if(NOT METIS_LIBRARY)
        set(VOXAM_EMBEDDING_FAILURE "METIS was not found")
    elseif(NOT CMAKE_OBJCOPY)
        set(VOXAM_EMBEDDING_FAILURE "objcopy was not found")
    else()
        voxam_copy_archives("${archives}" copies)
    endif()
    set(libraries "${METIS_LIBRARY}" CBLAS::CBLAS m)
    if(NOT VOXAM_EMBEDDING_FAILURE)
        voxam_try_embedding("${source}" "${copies};${libraries}")
    endif()
    if(VOXAM_EMBEDDING_FAILURE)
        set(VOXAM_EMBEDDING_FAILURE "${VOXAM_EMBEDDING_FAILURE}" PARENT_SCOPE)
        return()
    endif()
    add_library(voxam_embedded_names STATIC "${source}")
    add_library(voxam_embedded_cholmod INTERFACE)
    target_include_directories(voxam_embedded_cholmod SYSTEM INTERFACE "${CHOLMOD_INCLUDE_DIR}")
    target_link_libraries(voxam_embedded_cholmod
        INTERFACE ${copies} voxam_embedded_names ${libraries})
    set(VOXAM_EMBEDDED_ARCHIVES "${archives}" PARENT_SCOPE)
endfunction()
