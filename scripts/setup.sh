# Common to the scripts beside it, which source it from the root of the project. It provides the two
# steps that come before anything can run.

# The one list of what the project needs: the package of Debian, and the thing itself. First what
# builds it, on this machine for any other.
tools=(
    "build-essential:GCC 12 or another compiler for C11 and C++20, with its OpenMP runtime"
    "cmake:CMake 3.25"
    "ninja-build:Ninja"
    "pkg-config:pkg-config"
)
requirements=(
    "${tools[@]}"
    "libsuitesparse-dev:SuiteSparse (CHOLMOD)"
    "libopenblas-pthread-dev:OpenBLAS (CBLAS and LAPACK)"
    "libopenblas-serial-dev:the archive of OpenBLAS without threads"
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
    "python3-jsonschema:the validator of JSON schemas for Python"
    "python3-matplotlib:matplotlib"
    "python3-pip:pip"
    "python3-distributed:Dask's distributed scheduler, for the tests of studies"
    "python3-pandas:pandas"
    "python3-nbclient:nbclient, which executes the example notebook"
    "python3-ipykernel:the kernel of that notebook"
    "mypy:mypy"
    "mono-mcs:Mono with its C# compiler, for the tests of the C# host"
    "mono-runtime:the runtime of Mono"
)

# What scripts/check needs beside it. Other versions than 14 format otherwise, and find other
# things.
check_requirements=(
    "clang-format:clang-format 14"
    "clang-tidy:clang-tidy 14"
)

# What the build with Clang needs beside it, which continuous integration makes once.
clang_requirements=(
    "clang:Clang 14"
)

# What the i386 presets need beside it. A cross compiler, because the libraries that a multilib
# compiler looks for are others than those of the architecture i386.
i386_requirements=(
    "g++-i686-linux-gnu:GCC for i686-linux-gnu"
    "libsuitesparse-dev:i386:SuiteSparse (CHOLMOD) for i386"
    "libopenblas-pthread-dev:i386:OpenBLAS (CBLAS and LAPACK) for i386"
    "libopenblas-serial-dev:i386:the archive of OpenBLAS without threads for i386"
    "libtbb-dev:i386:oneTBB for i386"
    "libgtest-dev:i386:GoogleTest for i386"
    "libgmock-dev:i386:GoogleMock for i386"
    "libopenblas0-openmp:i386:OpenBLAS built with OpenMP for i386"
    "libgomp1:i386:the OpenMP runtime of GCC for i386"
    "libgcc-s1:i386:the runtime of GCC for i386"
)
i386_asan_requirements=(
    "libasan8:i386:the address sanitizer's runtime for i386"
    "libubsan1:i386:the undefined behaviour sanitizer's runtime for i386"
)

# What scripts/packages needs beside the library, the programs and the window.
package_requirements=(
    "dpkg-dev:dpkg-shlibdeps"
    "lintian:lintian"
    "debootstrap:debootstrap, to try the packages in a bare system"
    "binutils:readelf and strings"
    "python3-pip:pip"
)

# What the window needs: scripts/live and scripts/test add it to the list.
window_requirements=(
    "qt6-base-dev:Qt 6.4 (Widgets)"
    "qt6-svg-dev:Qt 6.4 (Svg)"
    "qt6-tools-dev:Qt 6.4 (LinguistTools)"
    "qt6-l10n-tools:Qt's lupdate and lrelease"
    "qt6-translations-l10n:Qt's own texts in other languages"
)

# What the WebAssembly module needs: scripts/wasm-dependencies, scripts/web and scripts/test add it
# to the list.
wasm_requirements=(
    "emscripten:Emscripten 3.1"
    "dpkg-dev:dpkg-source"
)

# What the tests of the page need beside it.
page_requirements=(
    "chromium:Chromium"
)

# Node.js for the page. Others than Debian's bring npm along, so commands are looked for.
node_requirements=(
    "nodejs:Node.js 18 or later"
    "npm:npm"
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

# Of the requirements $@. What is installed stays: the copies of a library for two architectures
# have to be of one version, and rather than replace one this fails and tells why.
install_missing_packages() {
    local requirement package missing=()
    for requirement in "$@"; do
        package=${requirement%:*}
        # A package that was removed may still be known: "installed" is the third word of its state.
        case $(dpkg -s "$package" 2>/dev/null | sed -n 's/^Status: //p') in
            *" installed") ;;
            *) missing+=("$package") ;;
        esac
    done
    if [ "${#missing[@]}" -eq 0 ]; then return; fi
    # A mirror that is being updated may lack a list for minutes. Whether that matters is seen next.
    as_root apt-get update || echo "Continuing with the package lists that are there." >&2
    as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y --no-install-recommends --no-remove "${missing[@]}"
}

# Where packages have other names: says what is needed, and checks no more than the tools, because
# CMake tells which library it does not find.
check_tools() {
    echo "This is not a Debian system, so make sure that these are installed:"
    printf '    %s\n' "${requirements[@]##*:}"
    local tool missing=()
    for tool in cc c++ cmake ninja pkg-config; do
        command -v "$tool" >/dev/null || missing+=("$tool")
    done
    if [ "${#missing[@]}" -eq 0 ]; then return; fi
    echo "Not found: ${missing[*]}" >&2
    return 1
}

has_apt() { command -v apt-get >/dev/null && command -v dpkg >/dev/null; }

prepare_system() {
    if has_apt; then
        install_missing_packages "${requirements[@]}"
    else
        check_tools
    fi
}

# Node.js, npm, and what npm installs for hosts/web.
prepare_node() {
    if ! command -v node >/dev/null || ! command -v npm >/dev/null; then
        if has_apt; then
            install_missing_packages "${node_requirements[@]}"
        else
            echo "Install Node.js 18 or later, with npm." >&2
            return 1
        fi
    fi
    local lock=hosts/web/package-lock.json
    if cmp -s "$lock" hosts/web/node_modules/.installed-lock; then return; fi
    # The lock file holds the versions. "npm ci" also wants optional packages for other systems
    # there, which npm leaves out where a registry does not have them.
    npm install --no-save --prefix hosts/web --no-fund --no-audit --loglevel=error
    cp "$lock" hosts/web/node_modules/.installed-lock
}

# The WebAssembly module, the npm package around it and the page, hosts/web/dist, each with the
# texts of licences that have to go along.
build_page() {
    local web=hosts/web package doc=/usr/share/doc
    scripts/wasm-dependencies && build_preset wasm || return 1
    mkdir -p "$web/package/dist" "$web/package/licences"
    cp build/wasm/hosts/web/module/voxam.wasm "$web/package/dist/"
    cp docs/licences.md "$web/package/licences/"
    if has_apt; then
        for package in libsuitesparse-dev libopenblas-pthread-dev emscripten nlohmann-json3-dev; do
            cp "$doc/$package/copyright" "$web/package/licences/$package.txt"
        done
        cp /usr/share/common-licenses/GPL-3 "$web/package/licences/GPL-3.txt"
    fi
    npm run build --prefix "$web" --loglevel=error
}

# Lets packages of i386 be installed beside those of this system. It changes what apt-get update
# fetches from then on, so it asks, unless $1 is --yes.
add_i386() {
    if dpkg --print-foreign-architectures | grep -qx i386; then return; fi
    local answer=n
    if [ "$1" = --yes ]; then
        answer=y
    elif [ -t 0 ]; then
        echo "The i386 presets need packages of the architecture i386."
        read -r -p "Run \"dpkg --add-architecture i386\" and install them? [y/N] " answer
    fi
    case $answer in
        [yY]*) as_root dpkg --add-architecture i386 ;;
        *)
            echo "Not without the architecture i386. To add it without a question: --yes" >&2
            return 1
            ;;
    esac
}

# What the i386 presets need. $1 is --yes to add the architecture without asking, or empty.
prepare_i386() {
    case " ${presets[*]} " in
        *" i386-asan "*) i386_requirements+=("${i386_asan_requirements[@]}") ;;
    esac
    if has_apt; then
        add_i386 "$1"
        install_missing_packages "${i386_requirements[@]}"
    else
        echo "For i386 make sure that these are installed as well:"
        printf '    %s\n' "${i386_requirements[@]##*:}"
    fi
}

# Configures and builds the preset $1, or only its targets $2... In CI a warning is an error.
build_preset() {
    local preset=$1 strict=OFF
    shift
    if [ -n "${CI:-}" ]; then strict=ON; fi
    # Instrumented code draws false warnings, of the standard library's headers among others.
    case $preset in *asan | tsan | fuzz) strict=OFF ;; esac
    cmake --preset "$preset" -DVOXAM_WARNINGS_AS_ERRORS="$strict"
    if [ $# -gt 0 ]; then set -- --target "$@"; fi
    cmake --build --preset "$preset" "$@"
}

# Fetches source packages of Debian 12, given as NAME=VERSION, into the folder $1. The package lists
# are this function's alone: the system's apt stays as it is.
fetch_debian_sources() {
    local folder=$1 mirror
    shift
    mirror=$(apt-get indextargets --format '$(REPO_URI)' \
        'Identifier: Packages' 'Codename: bookworm' 'Component: main' | head -n 1)
    if [ -z "$mirror" ]; then
        echo "apt has no packages of Debian 12: add its repository to the sources" >&2
        return 1
    fi
    mkdir -p "$folder/parts" "$folder/lists/partial"
    cat >"$folder/parts/debian.sources" <<END
Types: deb-src
URIs: $mirror
Suites: bookworm
Components: main
Signed-By: /usr/share/keyrings/debian-archive-keyring.gpg
END
    local apt=(apt-get -q -o Dir::Etc::sourcelist=/dev/null -o "Dir::Etc::sourceparts=$folder/parts"
        -o "Dir::State::lists=$folder/lists" -o "Dir::Cache::srcpkgcache=$folder/srcpkgcache.bin"
        -o "Dir::Cache::pkgcache=$folder/pkgcache.bin" -o APT::Sandbox::User=root)
    "${apt[@]}" update
    (cd "$folder" && "${apt[@]}" source --download-only "$@")
}
