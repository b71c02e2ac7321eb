# Archives that are linked into the library, where no host sees their symbols.
#
# Archives such as Debian's are compiled for executables, which may read the variables stdout and
# stderr where a shared library may not. So copies are linked, in which references to these, and to
# whatever else the library replaces, go to names that a source of the library defines.

# Sets `copies` to copies of the archives, made by objcopy with the options. Where that fails,
# VOXAM_EMBEDDING_FAILURE says why.
function(voxam_copy_archives archives options copies)
    set(VOXAM_EMBEDDING_FAILURE "" PARENT_SCOPE)
    if(NOT CMAKE_OBJCOPY)
        set(VOXAM_EMBEDDING_FAILURE "objcopy was not found" PARENT_SCOPE)
        return()
    endif()
    set(result "")
    foreach(archive IN LISTS archives)
        if(NOT EXISTS "${archive}")
            set(VOXAM_EMBEDDING_FAILURE "there is no ${archive}" PARENT_SCOPE)
            return()
        endif()
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${archive}")
        # Large archives take seconds, so a copy is made again only if anything has changed.
        file(REAL_PATH "${archive}" origin)
        file(TIMESTAMP "${origin}" modified)
        string(MD5 version "${CMAKE_OBJCOPY};${options};${origin};${modified}")
        cmake_path(GET archive STEM name)
        set(copy "${PROJECT_BINARY_DIR}/embedded/${name}-${version}.a")
        if(NOT EXISTS "${copy}")
            file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/embedded")
            execute_process(RESULT_VARIABLE failed ERROR_VARIABLE error
                COMMAND "${CMAKE_OBJCOPY}" -D ${options} "${archive}" "${copy}.new")
            if(failed)
                set(VOXAM_EMBEDDING_FAILURE "objcopy failed (${failed}): ${error}" PARENT_SCOPE)
                return()
            endif()
            file(RENAME "${copy}.new" "${copy}")
        endif()
        list(APPEND result "${copy}")
    endforeach()
    set(${copies} ${result} PARENT_SCOPE)
endfunction()

# Links the sources, the libraries and what the linker's `options` name into a shared library, which
# may neither miss a symbol nor have its code patched when it is loaded. Where that fails,
# VOXAM_EMBEDDING_FAILURE says so.
function(voxam_try_embedding name sources options libraries)
    list(TRANSFORM options PREPEND "LINKER:")
    try_compile(linked SOURCES ${sources}
        COMPILE_DEFINITIONS -fPIC
        LINK_OPTIONS -shared "LINKER:-z,defs" "LINKER:-z,text" "LINKER:--exclude-libs,ALL" ${options}
        LINK_LIBRARIES ${libraries}
        OUTPUT_VARIABLE output
        NO_CACHE)
    set(VOXAM_EMBEDDING_FAILURE "" PARENT_SCOPE)
    if(NOT linked)
        set(log "${PROJECT_BINARY_DIR}/embedded/${name}.log")
        file(WRITE "${log}" "${output}")
        set(VOXAM_EMBEDDING_FAILURE "linking its archives failed, see ${log}" PARENT_SCOPE)
    endif()
endfunction()
