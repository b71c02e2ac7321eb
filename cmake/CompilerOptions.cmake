# Options of all targets of this project. They hold for its directories only, so neither a parent
# project nor a user of the installed package inherits a warning or a flag.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_C_STANDARD 11)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_C_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

# A fused multiply-add rounds once where two operations round twice. Without it results are the same
# on every processor and at every level of optimisation.
add_compile_options(-ffp-contract=off)

# Nobody reads errno after a square root, and without it the roots of a loop are taken side by side.
# The results are the same; no option that relaxes the arithmetic is in use.
add_compile_options(-fno-math-errno)

# The x87 registers of 32-bit x86 hold more digits than a double, and would round differently.
if(NOT EMSCRIPTEN AND CMAKE_SIZEOF_VOID_P EQUAL 4 AND CMAKE_SYSTEM_PROCESSOR MATCHES "^(i[3-6]86|x86|x86_64|AMD64)$")
    add_compile_options(-msse2 -mfpmath=sse)
endif()

# Exceptions of the machine itself are faster and smaller than those that call JavaScript.
if(EMSCRIPTEN)
    set(CMAKE_POSITION_INDEPENDENT_CODE OFF)  # a module is one piece
    add_compile_options(-msimd128 -fwasm-exceptions)
    add_link_options(-fwasm-exceptions)
endif()

# What is given to others names no folder of the machine that built it.
add_compile_options("-fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=")

# Not all of -Wshadow: a constructor's parameters bear the names of the members they initialise.
# Not -Wrestrict: GCC 12 takes the concatenation of a literal and a std::string for an overlap.
add_compile_options(
    -Wall -Wextra -Wpedantic -Wcast-align -Wcast-qual -Wformat=2 -Wundef
    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor>
    $<$<COMPILE_LANGUAGE:CXX>:-Wold-style-cast>
    $<$<COMPILE_LANGUAGE:CXX>:-Woverloaded-virtual>
    $<$<COMPILE_LANGUAGE:CXX>:-Wextra-semi>
    $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wshadow=local>
    $<$<COMPILE_LANG_AND_ID:CXX,Clang,AppleClang>:-Wshadow>
    $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-restrict>
    $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wduplicated-cond>
    $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wlogical-op>
    $<$<BOOL:${VOXAM_WARNINGS_AS_ERRORS}>:-Werror>)

# Checks of the standard library that cost little and keep the binary interface.
add_compile_definitions($<$<NOT:$<CONFIG:Release,MinSizeRel>>:_GLIBCXX_ASSERTIONS>)

if(VOXAM_SANITIZE)
    set(VOXAM_SANITIZE_FLAGS -fsanitize=${VOXAM_SANITIZE} -fno-sanitize-recover=all
        -fno-omit-frame-pointer)
    add_compile_options(${VOXAM_SANITIZE_FLAGS})
    add_link_options(-fsanitize=${VOXAM_SANITIZE})
endif()
