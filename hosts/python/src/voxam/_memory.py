"""How much memory this process may still take."""

from __future__ import annotations

import math
import pathlib
from typing import Iterator, List, Tuple

# Addresses for the stacks and heaps of the library's threads, and for the BLAS's buffers.
_ADDRESSES_OF_THREADS = 135e6

_PROC = pathlib.Path("/proc")
_CGROUP = pathlib.Path("/sys/fs/cgroup")


def available_memory() -> float:
    """Bytes that this process can still get: the least of what the machine has free, what the
    limit of its addresses (ulimit -v) leaves, and what its cgroups (containers) leave. Infinite on
    systems that do not say."""
    machine = _number(_PROC / "meminfo", "MemAvailable:", math.inf) * 1024
    return max(0.0, min(machine, _left_of_addresses(), *_left_of_cgroups()))


def _left_of_addresses() -> float:
    try:
        import resource
    except ImportError:
        return math.inf
    limit, _ = resource.getrlimit(resource.RLIMIT_AS)
    if limit == resource.RLIM_INFINITY:
        return math.inf
    taken = _number(_PROC / "self" / "status", "VmSize:", 0) * 1024
    return limit - taken - _ADDRESSES_OF_THREADS


def _left_of_cgroups() -> Iterator[float]:
    """What each cgroup of this process leaves. Caches of files count as free: the kernel drops them
    before it refuses memory."""
    for folder, limit_file, usage_file, cache in _memory_folders():
        limit = _number(folder / limit_file, "", math.inf)
        taken = _number(folder / usage_file, "", 0)
        yield limit - max(0.0, taken - _number(folder / "memory.stat", cache, 0))


def _memory_folders() -> Iterator[Tuple[pathlib.Path, str, str, str]]:
    for line in _lines(_PROC / "self" / "cgroup"):
        number, _, rest = line.partition(":")
        controllers, _, path = rest.partition(":")
        if number == "0":
            root, files = _CGROUP, ("memory.max", "memory.current", "inactive_file ")
        elif "memory" in controllers.split(","):
            root, files = _CGROUP / "memory", ("memory.limit_in_bytes", "memory.usage_in_bytes",
                                               "total_inactive_file ")
        else:
            continue
        # A container may see its own group as the root, though the path names the host's.
        folder = root / path.strip("/")
        for each in (folder, *folder.parents):
            if root in (each, *each.parents):
                yield (each, *files)


def _number(file: pathlib.Path, key: str, otherwise: float) -> float:
    """The number after the key in the first line that begins with it."""
    for line in _lines(file):
        if line.startswith(key):
            try:
                return float(line[len(key):].split()[0])
            except (ValueError, IndexError):
                break  # such as "max", which is no limit
    return otherwise


def _lines(file: pathlib.Path) -> List[str]:
    try:
        return file.read_text("ascii").splitlines()
    except (OSError, ValueError):
        return []
