# Lets an installed program find the library: relative to the program, so that an installed tree can
# be moved, unless a directory was given as an absolute path.
function(voxam_set_run_path program)
    if(IS_ABSOLUTE "${CMAKE_INSTALL_BINDIR}" OR IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
        set(library_dir "${CMAKE_INSTALL_FULL_LIBDIR}")
    else()
        file(RELATIVE_PATH library_dir "/${CMAKE_INSTALL_BINDIR}" "/${CMAKE_INSTALL_LIBDIR}")
        string(PREPEND library_dir "$ORIGIN/")
    endif()
    set_target_properties(${program} PROPERTIES INSTALL_RPATH "${library_dir}")
endfunction()
