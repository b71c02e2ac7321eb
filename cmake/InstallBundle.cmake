# Completes a bundle: puts what the library needs beyond the C and C++ runtime beside it, with the
# texts of the licences. Wants `bundle_dir`, the folder; `bundled_library`, in the build tree, where what
# it is linked with can be found; and `bundled_archives`, which are linked in.

cmake_minimum_required(VERSION 3.25)

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
endforeach()
set(origins ${bundled_archives})
foreach(dependency IN LISTS dependencies)
    cmake_path(GET dependency FILENAME name)
    file(REAL_PATH "${dependency}" origin)
    file(COPY_FILE "${origin}" "${bundle_dir}/${name}")
    list(APPEND origins "${origin}")
    message(STATUS "Bundled: ${bundle_dir}/${name}")
endforeach()

# Debian keeps the licence of each package beside its documentation, and common ones in one place.
file(MAKE_DIRECTORY "${bundle_dir}/licences")
find_program(DPKG_QUERY dpkg-query NO_CACHE)
foreach(origin IN LISTS origins)
    set(copyright "")
    if(DPKG_QUERY)
        execute_process(COMMAND "${DPKG_QUERY}" --search "${origin}"
            OUTPUT_VARIABLE package ERROR_QUIET)
        string(REGEX REPLACE "[:,].*" "" package "${package}")
        set(copyright "/usr/share/doc/${package}/copyright")
    endif()
    if(NOT EXISTS "${copyright}")
        message(WARNING "The licence of ${origin} has to be added by hand.")
        continue()
    endif()
    file(COPY_FILE "${copyright}" "${bundle_dir}/licences/${package}.txt")
    file(STRINGS "${copyright}" lines REGEX "/usr/share/common-licenses/")
    string(REGEX MATCHALL "/usr/share/common-licenses/[A-Za-z0-9.-]*[A-Za-z0-9]" common "${lines}")
    foreach(licence IN LISTS common)
        cmake_path(GET licence FILENAME name)
        file(COPY_FILE "${licence}" "${bundle_dir}/licences/${name}")
    endforeach()
endforeach()
