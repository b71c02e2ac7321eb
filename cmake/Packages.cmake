# Debian packages, one for each component: `cpack` in a build of the preset `deb`.
set(VOXAM_CONTACT "Voxam maintainers <maintainers@voxam.invalid>" CACHE STRING
    "Name and address of the packages' maintainer")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME voxam)
set(CPACK_PACKAGE_CONTACT "${VOXAM_CONTACT}")
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/packages")
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}/SparseMatrixLib")
set(debian_dir "${PROJECT_BINARY_DIR}/debian")

# What Debian wants to find in every package.
string(TIMESTAMP package_date "%a, %d %b %Y %H:%M:%S +0000" UTC)
file(READ "${PROJECT_SOURCE_DIR}/docs/licences.md" licences)
file(CONFIGURE OUTPUT "${debian_dir}/changelog" CONTENT "voxam (@PROJECT_VERSION@) unstable; urgency=medium

  * See CHANGELOG.md in libvoxam-dev.

 -- @VOXAM_CONTACT@  @package_date@
" @ONLY)
execute_process(COMMAND gzip -9nf "${debian_dir}/changelog" COMMAND_ERROR_IS_FATAL ANY)
file(WRITE "${debian_dir}/copyright" "The texts of the licences are in libvoxam1, in
/usr/share/doc/voxam/licences, and in /usr/share/common-licenses (such as GPL-2, GPL-3, LGPL-2.1 and
Apache-2.0).

${licences}")

# Describes the package of a component. After the summary come the lines of the description.
function(voxam_package component name section summary)
    string(TOUPPER "${component}" key)
    list(JOIN ARGN "\n" description)
    set(CPACK_DEBIAN_${key}_PACKAGE_NAME "${name}" PARENT_SCOPE)
    set(CPACK_DEBIAN_${key}_PACKAGE_SECTION "${section}" PARENT_SCOPE)
    set(CPACK_COMPONENT_${key}_DESCRIPTION "${summary}\n${description}" PARENT_SCOPE)
    set(CPACK_COMPONENTS_ALL ${CPACK_COMPONENTS_ALL} ${component} PARENT_SCOPE)
    install(FILES "${debian_dir}/copyright" "${debian_dir}/changelog.gz"
        DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/doc/${name}" COMPONENT ${component})
endfunction()

set(CPACK_COMPONENTS_ALL "")
set(about "Voxam finds the stiffest structure that can be made of a given amount of"
    "material on a plate, fast enough to follow a hand that edits the plate.")

voxam_package(voxam_library libvoxam${PROJECT_VERSION_MAJOR} libs
    "structural topology optimisation - shared library" ${about})
file(WRITE "${debian_dir}/shlibs" "libvoxam ${PROJECT_VERSION_MAJOR} "
    "libvoxam${PROJECT_VERSION_MAJOR} (>= ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})\n")
file(WRITE "${debian_dir}/triggers" "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_VOXAM_LIBRARY_PACKAGE_CONTROL_EXTRA
    "${debian_dir}/shlibs" "${debian_dir}/triggers")

voxam_package(voxam_development libvoxam-dev libdevel
    "structural topology optimisation - development files" ${about}
    "This package contains the headers, the documents, and hosts in C and C#.")
set(CPACK_COMPONENT_VOXAM_DEVELOPMENT_DEPENDS voxam_library)

# Debian wants manual pages compressed.
install(CODE "execute_process(ERROR_QUIET COMMAND gzip -9nf
    \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_MANDIR}/man1/voxam.1\")"
    COMPONENT voxam_cli)
voxam_package(voxam_cli voxam science
    "structural topology optimisation - command line" ${about}
    "This package contains the program voxam, which optimises and scores scenes.")
set(CPACK_COMPONENT_VOXAM_CLI_DEPENDS voxam_library)

voxam_package(voxam_python python3-voxam python
    "structural topology optimisation - Python package" ${about}
    "This package contains the Python package voxam.")
set(CPACK_COMPONENT_VOXAM_PYTHON_DEPENDS voxam_library)
foreach(script IN ITEMS study dataset)
    file(CONFIGURE OUTPUT "${debian_dir}/voxam-${script}" CONTENT "#!/usr/bin/python3
import sys
from voxam.study._command import @script@_main
sys.exit(@script@_main())
" @ONLY)
    install(PROGRAMS "${debian_dir}/voxam-${script}" DESTINATION "${CMAKE_INSTALL_BINDIR}"
        COMPONENT voxam_python)
endforeach()
set(CPACK_DEBIAN_VOXAM_PYTHON_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_VOXAM_PYTHON_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_VOXAM_PYTHON_PACKAGE_DEPENDS "python3:any, python3-numpy")
set(CPACK_DEBIAN_VOXAM_PYTHON_PACKAGE_SUGGESTS "python3-matplotlib")
set(CPACK_DEBIAN_VOXAM_PYTHON_PACKAGE_CONTROL_EXTRA
    "${CMAKE_CURRENT_LIST_DIR}/debian/postinst" "${CMAKE_CURRENT_LIST_DIR}/debian/prerm")

if(TARGET voxam_live)
    voxam_package(voxam_live voxam-live science
        "structural topology optimisation - window" ${about}
        "This package contains the window voxam-live.")
    set(CPACK_COMPONENT_VOXAM_LIVE_DEPENDS voxam_library voxam_cli)
    # The buttons of Qt's own dialogs in other languages than English.
    set(CPACK_DEBIAN_VOXAM_LIVE_PACKAGE_RECOMMENDS qt6-translations-l10n)
endif()

include(CPack)
