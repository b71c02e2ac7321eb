# Common to the scripts beside it, which source it from the root of the project. It provides the two
# steps that come before anything can run.

# The one list of what the project needs: the package of Debian, and the thing itself.
requirements=(
    "build-essential:GCC 12 or another compiler for C11 and C++20, with its OpenMP runtime"
    "cmake:CMake 3.25"
    "ninja-build:Ninja"
    "pkg-config:pkg-config"
    "libsuitesparse-dev:SuiteSparse (CHOLMOD)"
    "libopenblas-dev:OpenBLAS (CBLAS and LAPACK)"
    "libtbb-dev:oneTBB"
    "libcli11-dev:CLI11"
    "nlohmann-json3-dev:nlohmann-json"
    "libpng-dev:libpng"
    "libcairo2-dev:cairo"
    "libgif-dev:giflib"
    "libdxflib-dev:dxflib"
    "libglu1-mesa-dev:GLU"
    "libgtest-dev:GoogleTest"
    "libgmock-dev:GoogleMock"
    "libbenchmark-dev:Google Benchmark"
)

# What else the tests need, so that the other scripts stay lean: scripts/test adds it to the list.
test_requirements=(
    "libopenblas0-openmp:OpenBLAS built with OpenMP, beside the usual one"
    "python3-numpy:Python 3.9 with NumPy, for the tests of the Python package"
    "python3-pytest:pytest"
    "python3-matplotlib:matplotlib"
    "python3-pip:pip"
    "python3-setuptools:setuptools"
    "python3-wheel:wheel"
    "mypy:mypy"
)

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        echo "Packages are missing, and installing them takes root: $*" >&2
        return 1
    fi
}

install_missing_packages() {
    local requirement package missing=()
    for requirement in "${requirements[@]}"; do
        package=${requirement%%:*}
        # A package that was removed may still be known: "installed" is the third word of its state.
        case $(dpkg -s "$package" 2>/dev/null | sed -n 's/^Status: //p') in
            *" installed") ;;
            *) missing+=("$package") ;;
        esac
    done
    if [ "${#missing[@]}" -eq 0 ]; then return; fi
    as_root apt-get update
    as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y --no-install-recommends "${missing[@]}"
}

# Where packages have other names: says what is needed, and checks no more than the tools, because
# CMake tells which library it does not find.
check_tools() {
    echo "This is not a Debian system, so make sure that these are installed:"
    printf '    %s\n' "${requirements[@]#*:}"
    local tool missing=()
    for tool in cc c++ cmake ninja pkg-config; do
        command -v "$tool" >/dev/null || missing+=("$tool")
    done
    if [ "${#missing[@]}" -eq 0 ]; then return; fi
    echo "Not found: ${missing[*]}" >&2
    return 1
}

prepare_system() {
    if command -v apt-get >/dev/null && command -v dpkg >/dev/null; then
        install_missing_packages
    else
        check_tools
    fi
}

# Configures and builds the preset $1. In CI a warning is an error.
build_preset() {
    local strict=OFF
    if [ -n "${CI:-}" ]; then strict=ON; fi
    cmake --preset "$1" -DVOXAM_WARNINGS_AS_ERRORS="$strict"
    cmake --build --preset "$1"
}
