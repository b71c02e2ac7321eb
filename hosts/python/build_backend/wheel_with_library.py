"""Makes wheels that contain the shared library, for pip and other front ends (PEP 517, PEP 660).

In a clone of the project CMake builds the library, with all that it needs beyond the C and C++
runtime. A backend of its own, because those that exist put no library of another build into a wheel
without downloads.
"""

from __future__ import annotations

import base64
import ctypes
import hashlib
import os
import pathlib
import re
import shutil
import subprocess
import sys
import sysconfig
import tempfile
import zipfile
from typing import Any, Dict, Iterator, List, Optional, Tuple

try:
    import tomllib
except ImportError:
    import tomli as tomllib

_HERE = pathlib.Path(__file__).resolve().parents[1]
_CLONE = _HERE.parents[1]
_PACKAGE = _HERE / "src" / "voxam"
_NAMES = ("libvoxam.so.1", "libvoxam.1.dylib", "voxam.dll")
_CONFIGURE = ("-DCMAKE_BUILD_TYPE=Release", "-DVOXAM_PARALLEL=STD", "-DVOXAM_BUILD_HOSTS=OFF",
              "-DVOXAM_BUILD_TESTS=OFF")

Settings = Optional[Dict[str, Any]]
Files = List[Tuple[str, bytes]]


class _Unavailable(Exception):
    """Why the library cannot be built here."""


def build_wheel(directory: str, settings: Settings = None, metadata: Optional[str] = None) -> str:
    with tempfile.TemporaryDirectory(prefix="voxam-wheel-") as scratch:
        libraries, licences = _library((settings or {}).get("library"), pathlib.Path(scratch))
        files = [(f"voxam/{file.relative_to(_PACKAGE).as_posix()}", file.read_bytes())
                 for file in sorted(_PACKAGE.rglob("*"))
                 if file.is_file() and file.suffix in (".py", ".typed", ".html")]
        files += [(f"voxam/{file.name}", file.read_bytes()) for file in libraries]
        texts = [(f"licenses/{file.name}", file.read_bytes()) for file in licences]
        return _write_wheel(directory, _tag(libraries, bool(licences)), files, texts)


def prepare_metadata_for_build_wheel(directory: str, settings: Settings = None) -> str:
    """So that pip need not build the library to know what the package needs."""
    folder = pathlib.Path(directory) / f"voxam-{_version()}.dist-info"
    folder.mkdir()
    (folder / "METADATA").write_bytes(_metadata())
    (folder / "entry_points.txt").write_bytes(_entry_points())
    return folder.name


prepare_metadata_for_build_editable = prepare_metadata_for_build_wheel


def build_editable(directory: str, settings: Settings = None,
                   metadata: Optional[str] = None) -> str:
    """The package stays where it is, and the library where the package finds it."""
    path = [("voxam.pth", f"{_PACKAGE.parent}\n".encode())]
    return _write_wheel(directory, "py3-none-any", path, [])


def build_sdist(directory: str, settings: Settings = None) -> str:
    """The package without the library, which takes a clone to build."""
    base = f"voxam-{_version()}"
    with tempfile.TemporaryDirectory(prefix="voxam-sdist-") as scratch:
        root = pathlib.Path(scratch) / base
        ignored = shutil.ignore_patterns("__pycache__", "*.so*", "build", "*.egg-info")
        shutil.copytree(_HERE, root, ignore=ignored)
        (root / "PKG-INFO").write_bytes(_metadata())
        archive = shutil.make_archive(str(pathlib.Path(directory) / base), "gztar", scratch, base)
    return pathlib.Path(archive).name


def get_requires_for_build_wheel(settings: Settings = None) -> List[str]:
    return []


get_requires_for_build_editable = get_requires_for_build_sdist = get_requires_for_build_wheel


def _library(wanted: Optional[str], scratch: pathlib.Path) -> Tuple[List[pathlib.Path],
                                                                    List[pathlib.Path]]:
    """The files of the library, and the texts of its licences; none where an installed library is
    to be used."""
    if wanted == "none":
        return [], []
    if wanted:
        # pip changes the directory: a relative path counts from the shell's.
        return _given(pathlib.Path(os.environ.get("PWD", ".")) / wanted, scratch)
    try:
        return _build(scratch)
    except _Unavailable as reason:
        if not _is_installed():
            sys.exit(f"voxam: the library cannot be built: {reason}\n"
                     "It is not installed either. Do one of these:\n"
                     "  - install what is missing, and run pip in a clone of the project;\n"
                     "  - name a library:   pip install --config-settings library=FILE ...\n"
                     "  - install it later: pip install --config-settings library=none ...")
        print(f"voxam: the installed library will be used, for none can be built: {reason}")
        return [], []


def _given(library: pathlib.Path, scratch: pathlib.Path) -> Tuple[List[pathlib.Path],
                                                                   List[pathlib.Path]]:
    """A library that the user names. In a bundle, the libraries that it needs and the texts of
    the licences lie beside it."""
    try:
        exports = ctypes.CDLL(str(library))
        if not hasattr(exports, "_InitVoxamApp"):
            raise OSError(f"{library} is another library")
    except OSError as reason:
        sys.exit(f"voxam: this library cannot be used: {reason}")
    file = scratch / _NAMES[0]
    shutil.copyfile(library, file)  # under the name that the package looks for
    licences = library.parent / "licences"
    if not licences.is_dir():
        return [file], []
    others = [other for other in sorted(library.parent.glob("lib*.so.*"))
              if not other.name.startswith("libvoxam.")]
    return [file, *others], sorted(licences.iterdir())


def _build(scratch: pathlib.Path) -> Tuple[List[pathlib.Path], List[pathlib.Path]]:
    if not (_CLONE / "SparseMatrixLib" / "voxam.h").is_file():
        raise _Unavailable(f"{_CLONE} is no clone of the project")
    cmake = shutil.which("cmake")
    if cmake is None:
        raise _Unavailable("there is no cmake. On Debian install what scripts/setup.sh lists: "
                           "apt-get install " + " ".join(_debian_packages()))
    options = [*_CONFIGURE, *(["-GNinja"] if shutil.which("ninja") else [])]
    metis = _CLONE / "build" / "static-metis" / "libmetis.a"  # by scripts/static-metis
    if metis.is_file():
        options.append(f"-DMETIS_ARCHIVE={metis}")
    build = _CLONE / "build" / "wheel"
    for arguments in (
        ["-S", str(_CLONE), "-B", str(build), *options],
        ["--build", str(build), "--parallel", str(os.cpu_count() or 1), "--target", "voxam"],
        ["--install", str(build), "--prefix", str(scratch), "--component", "bundle"],
    ):
        done = subprocess.run([cmake, *arguments], stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True)
        if done.returncode != 0:
            raise _Unavailable(f"cmake {arguments[0]} failed:\n{done.stdout[-3000:]}\nOn Debian "
                               "this installs what it needs: apt-get install "
                               + " ".join(_debian_packages()))
    bundle = scratch / "voxam"
    libraries = [file for file in sorted(bundle.iterdir())
                 if file.is_file() and not file.is_symlink()]
    return libraries, sorted((bundle / "licences").iterdir())


def _debian_packages() -> List[str]:
    """The packages of scripts/setup.sh that the library takes; the rest of its first list is for
    the programs and tests."""
    text = (_CLONE / "scripts" / "setup.sh").read_text("utf-8")
    first_lists = text.partition("test_requirements=(")[0]
    others = ("tbb", "cli11", "json", "png", "cairo", "gif", "dxf", "glu", "gtest", "gmock", "benchmark")
    return [name for name in re.findall(r'"([a-z][^":$]+):', first_lists)
            if not any(other in name for other in others)]


def _is_installed() -> bool:
    for name in filter(None, (os.environ.get("VOXAM_LIBRARY"), *_NAMES)):
        try:
            ctypes.CDLL(name)
            return True
        except OSError:
            pass
    return False


def _tag(libraries: List[pathlib.Path], is_bundle: bool) -> str:
    """The platforms that the wheel is for. A bundle runs on each Linux with the newest version of
    the C library that one of its files asks for, by the names of versions in their tables of
    strings. Another library may need more than the wheel contains."""
    if not libraries:
        return "py3-none-any"
    platform = re.sub(r"[-.]", "_", sysconfig.get_platform())
    needs_glibc = [int(minor) for file in libraries
                   for minor in re.findall(rb"\0GLIBC_2\.(\d+)(?=[.\0])", file.read_bytes())]
    if platform.startswith("linux_") and needs_glibc and is_bundle:
        # 2.17 is the oldest that installers know.
        platform = platform.replace("linux_", f"manylinux_2_{max(17, *needs_glibc)}_", 1)
    return f"py3-none-{platform}"


def _version() -> str:
    found = re.search(r'^__version__ = "(.+)"$', (_PACKAGE / "__init__.py").read_text("utf-8"),
                      re.MULTILINE)
    assert found is not None
    return found[1]


def _project() -> Dict[str, Any]:
    with open(_HERE / "pyproject.toml", "rb") as stream:
        project: Dict[str, Any] = tomllib.load(stream)["project"]
        return project


def _entry_points() -> bytes:
    scripts = _project().get("scripts", {})
    return "\n".join(["[console_scripts]", *(f"{name} = {target}"
                                             for name, target in scripts.items()), ""]).encode()


def _metadata() -> bytes:
    project = _project()
    lines = ["Metadata-Version: 2.1", f"Name: {project['name']}", f"Version: {_version()}",
             f"Summary: {project['description']}",
             f"Requires-Python: {project['requires-python']}",
             *(f"Requires-Dist: {each}" for each in project["dependencies"])]
    for extra, needed in project.get("optional-dependencies", {}).items():
        lines += [f"Provides-Extra: {extra}",
                  *(f'Requires-Dist: {each}; extra == "{extra}"' for each in needed)]
    lines += ["Description-Content-Type: text/markdown", "",
              (_HERE / project["readme"]).read_text("utf-8")]
    return "\n".join(lines).encode()


def _write_wheel(directory: str, tag: str, files: Files, texts: Files) -> str:
    base = f"voxam-{_version()}"
    information = f"{base}.dist-info"
    wheel = ("Wheel-Version: 1.0\nGenerator: voxam\n"
             f"Root-Is-Purelib: {'true' if tag.endswith('-any') else 'false'}\nTag: {tag}\n")
    files = [*files, *((f"{information}/{name}", content) for name, content in [
        *texts, ("METADATA", _metadata()), ("WHEEL", wheel.encode()),
        ("entry_points.txt", _entry_points())])]
    record = "".join(f"{line}\n" for line in _record(files)) + f"{information}/RECORD,,\n"
    files.append((f"{information}/RECORD", record.encode()))
    name = f"{base}-{tag}.whl"
    with zipfile.ZipFile(pathlib.Path(directory) / name, "w", zipfile.ZIP_DEFLATED) as archive:
        for path, content in files:
            # The same input makes the same wheel: without the time of the files.
            entry = zipfile.ZipInfo(path, (1980, 1, 1, 0, 0, 0))
            entry.compress_type = zipfile.ZIP_DEFLATED
            entry.external_attr = 0o100644 << 16
            archive.writestr(entry, content)
    return name


def _record(files: Files) -> Iterator[str]:
    for path, content in files:
        digest = base64.urlsafe_b64encode(hashlib.sha256(content).digest()).rstrip(b"=").decode()
        yield f"{path},sha256={digest},{len(content)}"
