# libdispatch (Grand Central Dispatch). Target: Dispatch::dispatch.

find_path(Dispatch_INCLUDE_DIR dispatch/dispatch.h)
find_library(Dispatch_LIBRARY NAMES dispatch System)
mark_as_advanced(Dispatch_INCLUDE_DIR Dispatch_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Dispatch REQUIRED_VARS Dispatch_LIBRARY Dispatch_INCLUDE_DIR)

if(Dispatch_FOUND AND NOT TARGET Dispatch::dispatch)
    add_library(Dispatch::dispatch UNKNOWN IMPORTED)
    set_target_properties(Dispatch::dispatch PROPERTIES
        IMPORTED_LOCATION "${Dispatch_LIBRARY}"
        INTERFACE_INCLUDE_DIRECTORIES "${Dispatch_INCLUDE_DIR}")
endif()
