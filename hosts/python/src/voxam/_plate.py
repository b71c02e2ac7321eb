"""The plate: what may be said about it, and the library's records of that."""

from __future__ import annotations

import math
import operator
import reprlib
from dataclasses import dataclass
from typing import Any, Iterable, List, NamedTuple, Optional, Sequence, Tuple, Union

import numpy as np
import numpy.typing as npt

from ._library import OutOfMemoryError, Solver
from ._memory import available_memory

LARGEST_INT = 2**31 - 1
LARGEST_SHORT = 2**15 - 1
LOAD_CASES_IN_USE = 128  # the library reads indices as signed char

Mask = npt.ArrayLike


class Load(NamedTuple):
    """A force (fx, fy) on node (x, y), in a load case of the plate. Scale forces so that the
    largest is about 1: a compliance goes with the square of the force, and those above 1e15 and
    below 1e-10 are taken for a problem."""

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


_short = reprlib.Repr()
_short.maxstring = _short.maxother = 80


def shown(value: Any) -> str:
    """The value in a text, which it does not flood."""
    if isinstance(value, np.ndarray) and value.ndim > 0:
        return f"an array of shape {value.shape}"
    return _short.repr(value)


def whole(value: Any, name: str, least: int, most: int) -> int:
    """The value as an int; TypeError or ValueError if it is not one from `least` to `most`. Floats
    may be whole numbers, because arrays of records have no others."""
    try:
        is_whole = isinstance(value, (float, np.floating)) and float(value).is_integer()
        number = int(value) if is_whole else operator.index(value)
    except TypeError:
        raise TypeError(f"{name}: {shown(value)} is not a whole number") from None
    if not least <= number <= most:
        raise ValueError(f"{name}: {number} is outside {least}..{most}")
    return number


def finite(value: Any, name: str) -> float:
    """The value as the library will see it, in single precision."""
    try:
        if isinstance(value, (str, bytes)):
            raise TypeError
        with np.errstate(over="ignore"):
            number = float(np.float32(float(value)))
    except OverflowError:
        number = math.inf
    except (TypeError, ValueError):
        raise TypeError(f"{name}: {shown(value)} is not a number") from None
    if not math.isfinite(number):
        raise ValueError(f"{name}: {shown(value)} is not a finite number (in single precision)")
    return number


def fraction(value: Any, name: str) -> float:
    number = finite(value, name)
    if not 0 < number <= 1:
        raise ValueError(
            f"{name}: {shown(value)} is not above 0 and up to 1 (in single precision)")
    return number


def truth(value: Any, name: str) -> bool:
    if not isinstance(value, (bool, np.bool_)):
        raise TypeError(f"{name}: {shown(value)} is neither True nor False")
    return bool(value)


# Measured, in bytes; docs/hosting.md explains the estimate, which all hosts of the library share.
_PROGRAM = 15e6
_DESIGN_CELL = 120
_PICTURE_CELL = 40
_NODE = 1000
_NODE_IN_FACTOR = 110  # times the logarithm of the number of nodes
_NODE_IN_LOAD_CASE = 32
_NODE_IN_ANALYSED_LOAD_CASE = 130  # the results included
_SHARE_OF_GAME = 0.9  # of an analysis too


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
            raise OutOfMemoryError(
                f"{plate.width} x {plate.height} elements with {plate.load_cases} load cases are "
                f"more than the library can number, 2 * {plate.width + 1} * {plate.height + 1} * "
                f"{plate.load_cases} is above {LARGEST_INT}: lower width, height or load_cases"
            )
        return plate

    def optimiser_memory(self, subdivision: int, mesh_factor: int) -> float:
        """About how many bytes an optimiser takes."""
        design = self.width * self.height * float(subdivision) ** 2
        picture = design * float(mesh_factor) ** 2
        return (_PROGRAM + _DESIGN_CELL * design + _PICTURE_CELL * picture
                + self._equations() + self._load_cases())

    def game_memory(self) -> float:
        """About how many bytes a game takes."""
        return _PROGRAM + _SHARE_OF_GAME * self._equations() + self._load_cases()

    def analysis_memory(self) -> float:
        """About how many bytes an analysis takes with its results."""
        return (_PROGRAM + _SHARE_OF_GAME * self._equations()
                + self._nodes() * _NODE_IN_ANALYSED_LOAD_CASE * self.load_cases)

    def _equations(self) -> float:
        return self._nodes() * (_NODE + _NODE_IN_FACTOR * math.log2(self._nodes()))

    def _load_cases(self) -> float:
        return self._nodes() * _NODE_IN_LOAD_CASE * self.load_cases

    def _nodes(self) -> float:
        return (self.width + 1.0) * (self.height + 1.0)

    def check_memory(self, needed: float, refinement: str, held: float = 0) -> None:
        """Refuses what would end the process, because systems promise more memory than they have.
        `held` is what is given back before."""
        free = available_memory() + held
        if needed > free:
            raise OutOfMemoryError(
                f"{self.width} x {self.height} elements with {refinement}load_cases "
                f"{self.load_cases} need about {needed / 1e9:.2g} GB, and {free / 1e9:.2g} GB are "
                "free: lower one of these")

    def is_starved(self, needed: float, supports: npt.NDArray[np.float32]) -> bool:
        """Whether a failure of the library to solve a plate, which it tells as one of its supports,
        comes of want of memory: the supports hold the plate, and memory is short now, when it has
        only kept what lasts."""
        return _hold(supports) and available_memory() < needed / 2

    def check_work(self, loads: npt.NDArray[np.float32],
                   supports: npt.NDArray[np.float32]) -> None:
        """Refuses loads that do no work: every design would score 0, as if none could be better."""
        if len(loads) == 0:
            raise ValueError("loads: at least one is needed, or there is nothing to score")
        held = {(x, y, direction) for x, y, direction, _, _ in supports.tolist()}
        forces = [(x, y, direction, force) for x, y, fx, fy, _ in loads.tolist()
                  for direction, force in ((0, fx), (1, fy))]
        if not any(force != 0 and (x, y, direction) not in held
                   for x, y, direction, force in forces):
            raise ValueError(
                f"loads: none of the {len(loads)} does work, so there is nothing to score: give "
                "one of them a force, fx or fy, that acts where no support holds its node")

    def load_records(self, loads: Iterable[LoadLike]) -> npt.NDArray[np.float32]:
        records = []
        for i, entry in enumerate(_entries(loads, "loads", "Load")):
            name = f"loads[{i}]"
            load = _record(Load, entry, name)
            x, y = self._node(load, name)
            forces = finite(load.fx, name + ".fx"), finite(load.fy, name + ".fy")
            case = whole(load.load_case, name + ".load_case", 0, self.load_cases - 1)
            records.append((x, y, *forces, case))
        return _array(records)

    def support_records(self, supports: Iterable[SupportLike]) -> npt.NDArray[np.float32]:
        records = []
        for i, entry in enumerate(_entries(supports, "supports", "Support")):
            name = f"supports[{i}]"
            support = _record(Support, entry, name)
            x, y = self._node(support, name)
            if not isinstance(support.fix, str) or support.fix not in ("x", "y", "xy"):
                raise ValueError(f'{name}.fix: {shown(support.fix)} is not "x", "y" or "xy"')
            records += [(x, y, "xy".index(direction), 0, 0) for direction in support.fix]
        return _array(records)

    def mask(self, values: Optional[Mask], name: str) -> npt.NDArray[np.bool_]:
        """A mask of elements; None is none of them."""
        if values is None:
            return np.zeros((self.height, self.width), bool)
        array = _asarray(values, name)
        self._check_shape(array, name)
        if array.dtype != bool:
            raise TypeError(f"{name}: a mask of bool is needed, not of {array.dtype}; "
                            "array.astype(bool) makes one, True where the array is not 0")
        return array

    def moduli(self, values: npt.ArrayLike) -> npt.NDArray[np.float64]:
        """In the library's order: the result is indexed [x, y] and contiguous."""
        array = _asarray(values, "moduli")
        if array.dtype.kind not in "bfiu":
            raise TypeError(f"moduli: an array of numbers is needed, not of {array.dtype}")
        self._check_shape(array, "moduli")
        wrong = ~((array >= 0) & (array < np.inf))
        if wrong.any():
            y, x = np.argwhere(wrong)[0]
            raise ValueError(f"moduli[{y}, {x}]: {array[y, x]} is not a finite number from 0")
        return np.require(array.T, np.float64, ["C", "A"])

    def densities(self, values: npt.ArrayLike) -> npt.NDArray[np.float32]:
        """In the library's order: the result is indexed [x, y] and contiguous."""
        array = _asarray(values, "densities")
        if array.dtype.kind not in "bfiu":
            raise TypeError(f"densities: an array of numbers is needed, not of {array.dtype}")
        self._check_shape(array, "densities")
        wrong = ~((array >= 0) & (array <= 1))
        if wrong.any():
            y, x = np.argwhere(wrong)[0]
            raise ValueError(
                f"densities[{y}, {x}]: {array[y, x]} is not from 0 (void) to 1 (solid)")
        return np.require(array.T, np.float32, ["C", "A"])

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


class PlateSolver(Solver):
    """A solver that belongs to a plate."""

    _plate: Plate

    @property
    def width(self) -> int:
        """Elements of the plate in x."""
        return self._plate.width

    @property
    def height(self) -> int:
        """Elements of the plate in y."""
        return self._plate.height

    @property
    def load_cases(self) -> int:
        """Number of load cases."""
        return self._plate.load_cases


def _hold(supports: npt.NDArray[np.float32]) -> bool:
    """Whether supports hold a plate in x, in y and against turning: no point is left that it could
    turn around, near or infinitely far."""
    held_in_x, held_in_y = (supports[supports[:, 2] == direction] for direction in (0, 1))
    rows, columns = set(held_in_x[:, 1]), set(held_in_y[:, 0])
    return bool(rows and columns) and (len(rows) > 1 or len(columns) > 1)


def _entries(values: Any, name: str, kind: str) -> List[Any]:
    """The values of an iterable, if it can be one of records and is not a record itself."""
    if not isinstance(values, (Load, Support, str, bytes)):
        try:
            return list(values)
        except TypeError:
            pass
    raise TypeError(f"{name}: {shown(values)} is no list; pass one, such as [voxam.{kind}(x, y)]")


def _record(kind: Any, entry: Any, name: str) -> Any:
    if isinstance(entry, kind):
        return entry
    try:
        if isinstance(entry, (Load, Support, str, bytes, dict)):
            raise TypeError
        return kind(*entry)
    except TypeError:
        fields = ", ".join(kind._fields)
        raise TypeError(f"{name}: {shown(entry)} is no voxam.{kind.__name__}({fields})") from None


def _asarray(values: npt.ArrayLike, name: str) -> npt.NDArray[Any]:
    if isinstance(values, np.ma.MaskedArray) and np.any(values.mask):
        raise TypeError(f"{name}: some entries of the array are masked; array.filled(value) gives "
                        "them a value")
    try:
        return np.asarray(values)
    except ValueError as error:
        raise ValueError(f"{name}: {error}") from None


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
        beyond = cells[(cells > LARGEST_SHORT).any(axis=1)]
        if len(beyond) > 0:
            x, y = beyond[0]
            raise ValueError(f"{name}[{y}, {x}]: {LARGEST_SHORT} is the largest coordinate of an "
                             "element in a mask")
        counts.append(len(cells))
        lists.append(cells.ravel())
    return np.array([*counts, *np.concatenate(lists)], np.int16)
