# What is installed beside the library and the programs: documents, hosts in other languages and
# scenes. Also the target `uninstall`, and the packages.
include(GNUInstallDirs)

set(voxam_doc_dir "${CMAKE_INSTALL_DATAROOTDIR}/doc/voxam")
install(FILES README.md CHANGELOG.md DESTINATION "${voxam_doc_dir}" COMPONENT voxam_development)
install(DIRECTORY docs hosts/example DESTINATION "${voxam_doc_dir}"
    COMPONENT voxam_development PATTERN CMakeLists.txt EXCLUDE)
install(DIRECTORY hosts/csharp/ DESTINATION "${CMAKE_INSTALL_DATADIR}/voxam/csharp"
    COMPONENT voxam_development)

if(VOXAM_BUILD_HOSTS)
    install(DIRECTORY scenes DESTINATION "${CMAKE_INSTALL_DATADIR}/voxam" COMPONENT voxam_cli)
endif()

# The Python package, which is told where the library is unless the system finds it by itself.
set(VOXAM_PYTHON_DIR "${CMAKE_INSTALL_DATADIR}/voxam/python" CACHE STRING
    "Directory in which the Python package is installed: one for PYTHONPATH, or of the system's")
install(DIRECTORY hosts/python/src/voxam DESTINATION "${VOXAM_PYTHON_DIR}" COMPONENT voxam_python
    PATTERN __pycache__ EXCLUDE PATTERN "*.so*" EXCLUDE)
if(NOT CMAKE_SKIP_INSTALL_RPATH)
    set(voxam_library_file "${CMAKE_INSTALL_LIBDIR}/$<TARGET_SONAME_FILE_NAME:voxam>")
    if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}" OR IS_ABSOLUTE "${VOXAM_PYTHON_DIR}")
        set(voxam_library_file
            "${CMAKE_INSTALL_FULL_LIBDIR}/$<TARGET_SONAME_FILE_NAME:voxam>")
    else()
        file(RELATIVE_PATH voxam_prefix_from_python "/${VOXAM_PYTHON_DIR}/voxam" "/")
        string(PREPEND voxam_library_file "${voxam_prefix_from_python}")
    endif()
    file(GENERATE OUTPUT "${PROJECT_BINARY_DIR}/library_path.txt"
        CONTENT "${voxam_library_file}\n")
    install(FILES "${PROJECT_BINARY_DIR}/library_path.txt"
        DESTINATION "${VOXAM_PYTHON_DIR}/voxam" COMPONENT voxam_python)
endif()

configure_file("${CMAKE_CURRENT_LIST_DIR}/uninstall.cmake.in" uninstall.cmake @ONLY)
add_custom_target(uninstall
    COMMAND "${CMAKE_COMMAND}" -P "${PROJECT_BINARY_DIR}/uninstall.cmake"
    COMMENT "Removing what was installed" VERBATIM)

option(VOXAM_DEBIAN_PACKAGES "Prepare Debian packages; see the preset deb" OFF)
if(VOXAM_DEBIAN_PACKAGES)
    include(Packages)
endif()
