"""The plate: what may be said about it, and the library's records of that."""

from __future__ import annotations

import math
import operator
from dataclasses import dataclass
from typing import Any, Iterable, List, NamedTuple, Optional, Sequence, Tuple, Union

import numpy as np
import numpy.typing as npt

from ._library import OutOfMemoryError

LARGEST_INT = 2**31 - 1
LARGEST_SHORT = 2**15 - 1
LOAD_CASES_IN_USE = 128  # the library reads indices as signed char

Mask = npt.ArrayLike


class Load(NamedTuple):
    """A force (fx, fy) on node (x, y), in a load case of the plate."""

    x: int
    y: int
    fx: float = 0.0
    fy: float = 0.0
    load_case: int = 0


class Support(NamedTuple):
    """Holds node (x, y) in the directions `fix`: "x", "y" or "xy"."""

    x: int
    y: int
    fix: str = "xy"


LoadLike = Union[Load, Tuple[int, int, float, float], Tuple[int, int, float, float, int]]
SupportLike = Union[Support, Tuple[int, int], Tuple[int, int, str]]


def whole(value: Any, name: str, least: int, most: int) -> int:
    """The value as an int; TypeError or ValueError if it is not one from `least` to `most`."""
    try:
        number = operator.index(value)
    except TypeError:
        raise TypeError(f"{name}: {value!r} is not a whole number") from None
    if not least <= number <= most:
        raise ValueError(f"{name}: {number} is outside {least}..{most}")
    return number


def finite(value: Any, name: str) -> float:
    """The value as the library will see it, in single precision."""
    try:
        with np.errstate(over="ignore"):
            number = float(np.float32(value))
    except (TypeError, ValueError):
        raise TypeError(f"{name}: {value!r} is not a number") from None
    if not math.isfinite(number):
        raise ValueError(f"{name}: {value!r} is not a finite number (in single precision)")
    return number


def fraction(value: Any, name: str) -> float:
    number = finite(value, name)
    if not 0 < number <= 1:
        raise ValueError(f"{name}: {value!r} is not above 0 and up to 1")
    return number


def available_memory() -> float:
    """Bytes that the machine can give away; without end where it does not tell."""
    try:
        with open("/proc/meminfo", encoding="ascii") as lines:
            for line in lines:
                if line.startswith("MemAvailable:"):
                    return float(line.split()[1]) * 1024
    except (OSError, ValueError, IndexError):
        pass
    return math.inf


@dataclass(frozen=True)
class Plate:
    """Sizes that the library can take."""

    width: int
    height: int
    load_cases: int

    @classmethod
    def checked(cls, width: Any, height: Any, load_cases: Any) -> Plate:
        plate = cls(
            whole(width, "width", 1, LARGEST_INT),
            whole(height, "height", 1, LARGEST_INT),
            whole(load_cases, "load_cases", 1, LARGEST_INT),
        )
        dofs = 2 * (plate.width + 1) * (plate.height + 1)
        if dofs * plate.load_cases > LARGEST_INT:
            raise ValueError(
                f"{plate.width} x {plate.height} elements with {plate.load_cases} load cases are "
                "more than the library can number: make the plate smaller"
            )
        return plate

    def memory(self, subdivision: int, mesh_factor: int) -> float:
        """About how many bytes a solver takes, as a first iteration was seen to; not too many."""
        nodes = (self.width + 1.0) * (self.height + 1.0)
        design = self.width * self.height * float(subdivision) ** 2
        picture = design * mesh_factor**2 * (20 + 18 * mesh_factor**2)  # with its wide filter
        return nodes * (3000 + 32 * self.load_cases) + design * 300 + picture

    def check_memory(self, subdivision: int, mesh_factor: int, held: float = 0) -> None:
        """Refuses what would end the process, because systems promise more memory than they have.
        `held` is what is given back before."""
        needed = self.memory(subdivision, mesh_factor)
        free = available_memory() + held
        if needed > free:
            raise OutOfMemoryError(
                f"{self.width} x {self.height} elements with subdivision {subdivision}, mesh_factor "
                f"{mesh_factor} and {self.load_cases} load cases need about {needed / 1e9:.1f} GB, "
                f"and {free / 1e9:.1f} GB are free: lower one of them")

    def load_records(self, loads: Iterable[LoadLike]) -> npt.NDArray[np.float32]:
        records = []
        for i, entry in enumerate(loads):
            load = _record(Load, entry, f"loads[{i}]")
            name = f"loads[{i}]"
            x, y = self._node(load, name)
            forces = finite(load.fx, name + ".fx"), finite(load.fy, name + ".fy")
            case = whole(load.load_case, name + ".load_case", 0, self.load_cases - 1)
            records.append((x, y, *forces, case))
        return _array(records)

    def support_records(self, supports: Iterable[SupportLike]) -> npt.NDArray[np.float32]:
        records = []
        for i, entry in enumerate(supports):
            support = _record(Support, entry, f"supports[{i}]")
            name = f"supports[{i}]"
            x, y = self._node(support, name)
            if support.fix not in ("x", "y", "xy"):
                raise ValueError(f'{name}.fix: {support.fix!r} is not "x", "y" or "xy"')
            records += [(x, y, "xy".index(direction), 0, 0) for direction in support.fix]
        return _array(records)

    def mask(self, values: Optional[Mask], name: str) -> npt.NDArray[np.bool_]:
        """A mask of elements; None is none of them."""
        if values is None:
            return np.zeros((self.height, self.width), bool)
        array = np.asarray(values)
        if array.dtype != bool:
            raise TypeError(f"{name}: a mask of bool is needed, not of {array.dtype}")
        self._check_shape(array, name)
        return array

    def densities(self, values: npt.ArrayLike) -> npt.NDArray[np.float32]:
        """In the library's order: the result is indexed [x, y] and contiguous."""
        array = np.asarray(values)
        if array.dtype.kind not in "bfiu":
            raise TypeError(f"densities: an array of numbers is needed, not of {array.dtype}")
        self._check_shape(array, "densities")
        if not (np.all(array >= 0) and np.all(array <= 1)):
            raise ValueError("densities: numbers from 0 (void) to 1 (solid) are needed")
        return np.ascontiguousarray(array.T, np.float32)

    def _check_shape(self, array: npt.NDArray[Any], name: str) -> None:
        if array.shape != (self.height, self.width):
            raise ValueError(
                f"{name}: shape {array.shape} is not (height, width) = "
                f"({self.height}, {self.width})"
            )

    def _node(self, record: Any, name: str) -> Tuple[int, int]:
        return (
            whole(record.x, name + ".x", 0, self.width),
            whole(record.y, name + ".y", 0, self.height),
        )


def _record(kind: Any, entry: Any, name: str) -> Any:
    if isinstance(entry, kind):
        return entry
    try:
        return kind(*entry)
    except TypeError:
        raise TypeError(f"{name}: {entry!r} is no {kind.__name__}{kind._fields}") from None


def _array(records: Sequence[Tuple[float, ...]]) -> npt.NDArray[np.float32]:
    return np.array(records, np.float32).reshape(len(records), 5)


def cell_records(masks: Sequence[Tuple[str, npt.NDArray[np.bool_]]]) -> npt.NDArray[np.int16]:
    """The library's record of lists of elements: the counts, and then the x and y of each."""
    counts = []
    lists: List[npt.NDArray[np.int64]] = []
    for name, mask in masks:
        cells = np.argwhere(mask)[:, ::-1]  # as (x, y)
        if len(cells) > LARGEST_SHORT:
            raise ValueError(f"{name}: {len(cells)} elements, the most are {LARGEST_SHORT}")
        if cells.size and cells.max() > LARGEST_SHORT:
            raise ValueError(f"{name}: an element beyond x or y {LARGEST_SHORT} cannot be named")
        counts.append(len(cells))
        lists.append(cells.ravel())
    return np.array([*counts, *np.concatenate(lists)], np.int16)
