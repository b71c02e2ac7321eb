"""One run: what a worker does, in a process of this machine or of a cluster.

A worker gets the text of a scene and returns the bytes of a file, so that neither needs the other's
files. It needs this package with its library, and nothing else.
"""

from __future__ import annotations

import contextlib
import ctypes
import functools
import hashlib
import io
import json
import os
import pathlib
import platform
import socket
import threading
import time
import zipfile
from typing import Any, Dict, Iterator, List, Mapping, NamedTuple, Optional, Tuple

import numpy as np
import numpy.typing as npt

from .. import __version__, _library, scenes
from .._library import LibraryNotFoundError, OutOfMemoryError, ProblemError, VoxamError
from .._optimiser import Iteration, Optimiser
from .._plate import Load, Support
from ._drawn import Drawn, drawn, final_scene

_VOLUME_TOLERANCE = 0.02
_MALLOC_THRESHOLDS = {-1: 128 << 20, -3: 32 << 20}  # M_TRIM_THRESHOLD, M_MMAP_THRESHOLD; bytes

_lock = threading.Lock()  # a process has one optimiser, but a worker may have several threads


class Task(NamedTuple):
    """A run to be made."""

    key: str  #: the name of its result
    scene: str  #: JSON
    keep: Tuple[str, ...]


class Outcome(NamedTuple):
    """A run that was made: its numbers, and the file that contains them with the arrays."""

    record: Dict[str, Any]
    file: bytes


def work(task: Task) -> Outcome:
    """Makes a run. What is wrong with the scene is part of the outcome; only what is wrong with the
    worker is raised."""
    with _lock:
        use_one_thread()
        keep_freed_memory()
        started = time.perf_counter()
        arrays: Dict[str, npt.NDArray[Any]] = {}
        try:
            result = _result(json.loads(task.scene), task.keep, arrays)
        except LibraryNotFoundError:
            raise
        except (OutOfMemoryError, MemoryError) as error:
            result = failure(str(error) or "out of memory", "machine")
        except (ValueError, TypeError, ProblemError) as error:
            result = failure(str(error), "scene")
        except VoxamError as error:
            result = failure(str(error), "machine")
        seconds = time.perf_counter() - started
    record = {"result": result, "made": {"seconds": round(seconds, 4), **identity()}}
    return Outcome(record, pack(record, task.scene, arrays))


def refused(task: Task, result: Mapping[str, Any]) -> Outcome:
    """The outcome of a run that was not made, or whose worker did not survive it."""
    record = {"result": result, "made": {}}
    return Outcome(record, pack(record, task.scene, {}))


def failure(reason: str, cause: str) -> Dict[str, Any]:
    """The result of a run that failed. `cause` is "scene" if it would fail again, "machine" if the
    next attempt may succeed."""
    return {"status": "failed", "reason": " ".join(reason.split()), "cause": cause}


def _result(document: Dict[str, Any], keep: Tuple[str, ...],
            arrays: Dict[str, npt.NDArray[Any]]) -> Dict[str, Any]:
    scene = scenes.scene_of(document)
    number, last = _last_iteration(scene)
    material = np.ascontiguousarray(1 - last.picture)
    shown = drawn(material, document)
    if "design" in keep:
        arrays["design"] = material
    if "displacements" in keep and shown.displacements is not None:
        arrays["displacements"] = shown.displacements.astype(np.float32)
    return {
        "status": "done",
        "compliance_drawn": shown.compliance,
        "compliance_optimising": last.compliance,
        "volume": last.volume,
        "volume_drawn": shown.volume,
        "level": shown.level,
        "loose": shown.loose,
        "change": last.change,
        "iterations": number,
        "warnings": _warnings(document, last, shown),
    }


def _last_iteration(scene: scenes.Scene) -> Tuple[int, Iteration]:
    final: Optional[Tuple[int, Iteration]] = None
    for final in scenes.run(scene):
        pass
    assert final is not None  # a scene has iterations, or run() has raised
    return final


def _warnings(document: Mapping[str, Any], last: Iteration, shown: Drawn) -> List[str]:
    wanted = float(final_scene(document)["volumeFraction"])
    found = list(shown.warnings)
    if abs(last.volume - wanted) > _VOLUME_TOLERANCE:
        found.append(f"volume: {last.volume:.1%} instead of {wanted:.1%}: more iterations may help")
    return found


def pack(record: Mapping[str, Any], scene: str, arrays: Mapping[str, npt.NDArray[Any]]) -> bytes:
    """A file that numpy.load() reads: the arrays, and the record and the scene as JSON. Without
    times of writing, so that equal runs have equal bytes."""
    buffer = io.BytesIO()
    with zipfile.ZipFile(buffer, "w", zipfile.ZIP_DEFLATED) as archive:
        for name, array in arrays.items():
            member = io.BytesIO()
            np.save(member, array, allow_pickle=False)
            archive.writestr(_member(name + ".npy"), member.getvalue())
        archive.writestr(_member("scene.json"), scene)
        archive.writestr(_member("record.json"), json.dumps(record, sort_keys=True))
    return buffer.getvalue()


def _member(name: str) -> zipfile.ZipInfo:
    member = zipfile.ZipInfo(name, (1980, 1, 1, 0, 0, 0))
    member.compress_type = zipfile.ZIP_DEFLATED
    return member


@functools.lru_cache(maxsize=None)
def use_one_thread() -> None:
    """Lets the library start with one thread, since the other cores have runs of their own. TBB
    counts the cores that the process may use once, when it starts."""
    # A plate of this size has tasks for several threads; the first iteration is serial.
    with _on_one_core(), Optimiser(30, 20) as optimiser:
        optimiser.update([Load(30, 10, fy=1)], [Support(0, y) for y in range(21)])
        for _ in range(2):
            optimiser.iterate()


@functools.lru_cache(maxsize=None)
def keep_freed_memory() -> None:
    """Lets the allocator keep what an iteration frees for the next one. Dask has its workers return
    memory to the system early, and asking for it again takes a fifth of a small run."""
    with contextlib.suppress(OSError, AttributeError):  # only the C library of Linux has this
        allocator = ctypes.CDLL(None).mallopt
        for threshold, size in _MALLOC_THRESHOLDS.items():
            allocator(threshold, size)


@contextlib.contextmanager
def _on_one_core() -> Iterator[None]:
    if not hasattr(os, "sched_setaffinity"):
        yield
        return
    process = os.getpid()  # not 0, the calling thread: TBB asks for the process
    cores = os.sched_getaffinity(process)
    os.sched_setaffinity(process, {min(cores)})
    try:
        yield
    finally:
        os.sched_setaffinity(process, cores)


@functools.lru_cache(maxsize=None)
def identity() -> Dict[str, str]:
    """With what a run was made: versions, the library's file by its hash, and the machine."""
    return {"voxam": __version__, "library": _library_hash(), "python": platform.python_version(),
            "numpy": np.__version__, "host": socket.gethostname(), "processor": _processor()}


def _library_hash() -> str:
    """The first digits of the SHA-256 of the library's file; empty where the system does not tell
    which file was loaded."""
    with _library.exclusive() as library:
        name = str(library._name)
    if not os.path.isfile(name):
        with contextlib.suppress(OSError):
            lines = pathlib.Path("/proc/self/maps").read_text().splitlines()
            name = next((line.split(None, 5)[5] for line in lines
                         if line.endswith(os.path.basename(name))), name)
    with contextlib.suppress(OSError):
        return hashlib.sha256(pathlib.Path(name).read_bytes()).hexdigest()[:16]
    return ""


def _processor() -> str:
    with contextlib.suppress(OSError):
        for line in pathlib.Path("/proc/cpuinfo").read_text().splitlines():
            if line.startswith("model name"):
                return line.partition(":")[2].strip()
    return platform.processor()
