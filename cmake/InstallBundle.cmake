# Completes a bundle: strips the library, and puts what it needs beyond the C and C++ runtime beside
# it, with the texts of the licences. Wants `bundle_dir`, the folder; `bundled_library`, in the
# build tree, where what it is linked with can be found; and `strip`, the program.

cmake_minimum_required(VERSION 3.25)

include("${CMAKE_CURRENT_LIST_DIR}/LicenceTexts.cmake")

# What every system has that runs programs in C++.
set(runtime "^(ld-.*|lib(c|m|dl|rt|pthread|stdc\\+\\+|gcc_s))\\.so")
file(GET_RUNTIME_DEPENDENCIES LIBRARIES "${bundled_library}"
    PRE_EXCLUDE_REGEXES "${runtime}"
    RESOLVED_DEPENDENCIES_VAR dependencies)

# Plain files under the names that the loader asks for: some archivers lose links, and those of
# Debian's alternatives lead through one name twice. Only libvoxam.so is a link, for convenience.
file(GLOB versions "${bundle_dir}/libvoxam.so.*.*.*")
foreach(file IN LISTS versions)
    string(REGEX REPLACE "(\\.[0-9]+)\\.[0-9]+\\.[0-9]+$" "\\1" name "${file}")
    file(RENAME "${file}" "${name}")
    if(strip)
        execute_process(COMMAND "${strip}" --strip-unneeded "${name}" COMMAND_ERROR_IS_FATAL ANY)
    endif()
endforeach()
set(origins "")
foreach(dependency IN LISTS dependencies)
    cmake_path(GET dependency FILENAME name)
    file(REAL_PATH "${dependency}" origin)
    file(COPY_FILE "${origin}" "${bundle_dir}/${name}")
    list(APPEND origins "${origin}")
    message(STATUS "Bundled: ${bundle_dir}/${name}")
endforeach()

voxam_collect_licences("${bundle_dir}/licences" ${origins})

# For the target `uninstall`, which reads the names of the installed files.
file(GLOB_RECURSE bundled "${bundle_dir}/*")
foreach(file IN LISTS bundled)
    string(REPLACE "$ENV{DESTDIR}" "" file "${file}")
    list(APPEND CMAKE_INSTALL_MANIFEST_FILES "${file}")
endforeach()
list(REMOVE_DUPLICATES CMAKE_INSTALL_MANIFEST_FILES)
