"""The shared library: where it is, what it exports, and who may call it."""

from __future__ import annotations

import contextlib
import ctypes
import ctypes.util
import difflib
import os
import pathlib
import sys
import threading
import weakref
from typing import Any, Callable, ClassVar, Dict, Iterator, List, Optional, Type, TypeVar
from typing import cast

ENVIRONMENT_VARIABLE = "VOXAM_LIBRARY"
_FILE_NAMES = {
    "darwin": ("libvoxam.1.dylib", "libvoxam.dylib"),
    "win32": ("voxam.dll", "libvoxam.dll"),
}.get(sys.platform, ("libvoxam.so.1", "libvoxam.so"))


class VoxamError(RuntimeError):
    """What can go wrong beside wrong arguments."""


class LibraryNotFoundError(VoxamError):
    """The shared library is nowhere, or is not what it should be."""


class OutOfMemoryError(VoxamError, MemoryError):
    """The plate or its refinement is too large: for the memory of this machine, or for the numbers
    of the library."""


class ProblemError(VoxamError):
    """Something is wrong with loads or supports: fix them and update. `text` is the library's own
    text, empty if it has none."""

    def __init__(self, text: str, advice: str) -> None:
        super().__init__(text, advice)  # the arguments, so that it goes from process to process
        self.text = text
        self._advice = advice

    def __str__(self) -> str:
        return f"{self.text}: {self._advice}" if self.text else self._advice


class RuntimeStat(ctypes.Structure):
    """The library's record of the times of an iteration."""

    _fields_ = [
        (name + "Time", ctypes.c_float)
        for name in ("total", "update", "state", "assemble", "factorize", "solve", "sensitivity",
                     "mesh")
    ]


_INT = ctypes.c_int
_FLOAT = ctypes.c_float
_DOUBLE = ctypes.c_double
# Takes `array.ctypes.data`, or None for a null pointer. Not `array.ctypes`, whose address ctypes
# asks for in Python: it would make an ArgumentError of a KeyboardInterrupt that comes meanwhile.
_ARRAY = ctypes.c_void_p
_PROTOTYPES = {
    "_InitVoxamApp": (None, [_INT, _INT, _INT, _INT, _FLOAT, _INT, _INT]),
    "_UpdateVoxamApp": (None, [_INT, _ARRAY, _INT, _ARRAY, _FLOAT, _ARRAY, _INT, _ARRAY, _ARRAY]),
    "_IterateVoxamApp": (_DOUBLE, [_INT, _ARRAY, _ARRAY, _ARRAY, _ARRAY, _FLOAT]),
    "_IterateVoxamAppWithBlob": (
        _DOUBLE, [_INT, _ARRAY, _ARRAY, _ARRAY, _ARRAY, _ARRAY, _FLOAT]),
    "_DestroyVoxamApp": (None, []),
    "_InitVoxamGame": (None, [_INT, _INT, _INT, _INT, _INT, _ARRAY, _INT, _ARRAY, _INT]),
    "_SolveVoxamGame": (_DOUBLE, [_ARRAY, _ARRAY]),
    "_DestroyVoxamGame": (None, []),
    "_InitVoxamAnalysis": (None, [_INT, _INT, _INT, _ARRAY, _INT, _ARRAY, _INT]),
    "_SolveVoxamAnalysis": (
        _INT, [_ARRAY, _INT, _ARRAY, _ARRAY, _ARRAY, _ARRAY, _ARRAY, _ARRAY]),
    "_DestroyVoxamAnalysis": (None, []),
    "_VoxamPerformanceTest": (None, []),
}

# The library takes no lock itself. Reentrant, because a solver that was forgotten is destroyed by
# the garbage collector, which may run while this thread is preparing a call.
_lock = threading.RLock()
_loaded: Optional[ctypes.CDLL] = None
_process_that_called: Optional[int] = None
_alive: Dict[str, weakref.ref[Solver]] = {}  # by kind, the one solver that the library has


def _after_fork() -> None:
    """A thread that the child does not have may hold the parent's lock, for ever."""
    global _lock
    _lock = threading.RLock()


if hasattr(os, "register_at_fork"):
    os.register_at_fork(after_in_child=_after_fork)


def _candidates() -> List[str]:
    named = os.environ.get(ENVIRONMENT_VARIABLE)
    if named:
        return [named]
    package = pathlib.Path(__file__).resolve().parent
    folders = [package, package.parent]
    if package.parts[-4:-1] == ("hosts", "python", "src"):  # in a clone of the project
        folders.append(package.parents[3] / "build" / "release" / "SparseMatrixLib")
    beside = [folder / name for folder in folders for name in _FILE_NAMES]
    note = package / "library_path.txt"  # of an installation outside the system's folders
    if note.is_file():
        beside.append(package / note.read_text("utf-8").strip())
    installed = ctypes.util.find_library("voxam")
    return [
        *(str(file) for file in beside if file.is_file()),
        *([installed] if installed else []),
        *_FILE_NAMES,
    ]


def _load() -> ctypes.CDLL:
    refusals = []
    for candidate in _candidates():
        try:
            library = ctypes.CDLL(candidate)
            for name, (result, arguments) in _PROTOTYPES.items():
                function = getattr(library, name)
                function.restype = result
                function.argtypes = arguments
        except (OSError, AttributeError) as refusal:
            refusals.append(f"    {candidate}: {refusal}")
        else:
            return library
    raise LibraryNotFoundError(
        f"the Voxam library cannot be loaded. Set the environment variable {ENVIRONMENT_VARIABLE} "
        f"to the path of {_FILE_NAMES[-1]}, put the file into {pathlib.Path(__file__).parent}, or "
        "install it where the system looks for libraries. Tried:\n" + "\n".join(refusals)
    )


@contextlib.contextmanager
def exclusive() -> Iterator[Any]:
    """The library, for this thread alone."""
    global _loaded, _process_that_called
    with _lock:
        if _loaded is None:
            _loaded = _load()
        if _process_that_called not in (None, os.getpid()):
            raise VoxamError(
                "this process was forked from one that had called the Voxam library, whose worker "
                'threads it lacks: start processes with multiprocessing.get_context("spawn")'
            )
        _process_that_called = os.getpid()
        yield _loaded


def performance_test() -> None:
    """Times ways of assembling the equations on this machine, and prints tables on the standard
    output of the process."""
    with exclusive() as library:
        library._VoxamPerformanceTest()


_AnySolver = TypeVar("_AnySolver", bound="Solver")


class Solver:
    """What `Optimiser`, `Game` and `Analysis` have in common: one of each kind in a process, used
    until it is closed, by one thread at a time."""

    _kind: ClassVar[str]
    _destroy_function: ClassVar[str]
    _set_by: ClassVar[Dict[str, str]]  # for each thing that can be told, what to call
    _finalizer: Any = None
    _replaced = False

    def __reduce_ex__(self, _: object) -> Any:
        """Refuses copies, deep ones and pickled ones as well."""
        raise TypeError(f"this {self._kind} cannot be copied, because there is one in a process: "
                        "hand on what it was given, or its results")

    def __setattr__(self, name: str, value: object) -> None:
        """Refuses what looks like a setting, because it would have no effect. A class that a host
        derives may have attributes of its own."""
        remedy = self._set_by.get(name)
        is_derived = "_kind" not in vars(type(self))
        if remedy is None and not (is_derived or name.startswith("_")):
            near = difflib.get_close_matches(name, self._set_by, 1)
            remedy = (f"did you mean {near[0]}? {self._set_by[near[0]].capitalize()}" if near else
                      "there is no such setting; for attributes of your own derive a class")
        if remedy is not None:
            raise AttributeError(f"{self._kind}.{name} cannot be assigned: {remedy}")
        super().__setattr__(name, value)

    def _require_new(self) -> None:
        if self._finalizer is not None:
            raise VoxamError(f"this {self._kind} was created before: create another one, after "
                             "close() of this one")

    def _require_open(self) -> None:
        if self._finalizer is None:
            raise VoxamError(f"this {self._kind} was not created: a derived class has to call "
                             "super().__init__(width, height, ...)")
        if self._replaced:
            raise VoxamError(f"this {self._kind} was replaced by a newer one: there can be one in "
                             "a process")
        if self.closed:
            raise VoxamError(f"this {self._kind} is closed: create another one to go on")

    def _claim(self) -> None:
        """Becomes the one of its kind, in the place of an older one. What another copy of this
        package may have left in the library is destroyed: the library might keep it, with other
        sizes."""
        with exclusive() as library:
            older = self._living()
            if older is not None:
                older._replaced = True
                older.close()
            destroy = getattr(library, self._destroy_function)
            destroy()
            reference = _alive[self._kind] = weakref.ref(self)
            self._finalizer = weakref.finalize(self, _release, self._kind, reference, destroy)

    @classmethod
    def _living(cls: Type[_AnySolver]) -> Optional[_AnySolver]:
        """The solver of this kind that the library has."""
        reference = _alive.get(cls._kind)
        return cast(Optional[_AnySolver], reference and reference())

    @contextlib.contextmanager
    def _in_use(self) -> Iterator[Any]:
        with exclusive() as library:
            self._require_open()
            yield library

    @property
    def closed(self) -> bool:
        """Whether it was closed."""
        return self._finalizer is None or not self._finalizer.alive

    def close(self) -> None:
        """Frees what it holds, after a call of another thread has come to its end. Closing twice
        does no harm."""
        if self._finalizer is not None:
            self._finalizer()

    def __enter__(self: _AnySolver) -> _AnySolver:
        self._require_open()
        return self

    def __exit__(self, *_: object) -> None:
        self.close()


def _release(kind: str, owner: weakref.ref[Solver], destroy: Callable[[], None]) -> None:
    """Runs once for each solver: when it is closed, or when nothing refers to it any more. By then
    a newer solver may have taken its place."""
    with _lock:
        if _alive.get(kind) is not owner:
            return
        del _alive[kind]
        if _process_that_called == os.getpid():
            destroy()
