"""The optimiser."""

from __future__ import annotations

import ctypes
from dataclasses import dataclass, fields
from typing import Any, Dict, Iterable, NamedTuple, Optional, Sequence, Tuple

import numpy as np
import numpy.typing as npt

from ._library import OutOfMemoryError, ProblemError, RuntimeStat, VoxamError
from ._plate import (LARGEST_INT, LOAD_CASES_IN_USE, LoadLike, Mask, Plate,
                     PlateSolver, SupportLike, cell_records, finite, fraction, shown, truth, whole)

_TEXT_LENGTH = 256
_NO_OPTIMISER = "No optimiser"
_UNSOLVED = "Change load / support"
_ADVICE = {
    _UNSOLVED:
        "The equations cannot be solved: the plate is not held, or memory ran out. Hold it in x, "
        "in y and against turning, or use a smaller grid.",
    "Change load/support":
        "The loads push the plate away. Hold it in x, in y and against turning, or use smaller "
        "forces. If the design is torn, start afresh.",
    "Load cannot be on top of support":
        "The loads do no work. Put a force on a node that is not held, in a load case that is in "
        "use.",
}


@dataclass(frozen=True)
class Times:
    """Where the time of an iteration went, in milliseconds."""

    total: float  #: the whole iteration
    update: float  #: design update with its volume constraint
    state: float  #: state solve: the next three and what lies between them
    assemble: float  #: assembly of the stiffness matrix
    factorize: float  #: numeric factorisation
    solve: float  #: solution of all load cases in use
    sensitivity: float  #: compliance, sensitivities and their filtering
    mesh: float  #: the picture, and the measure of change


@dataclass(frozen=True, eq=False)
class Iteration:
    """What an iteration came to."""

    compliance: float  #: of the design before the iteration, not of `picture`; smaller is stiffer
    change: float  #: the largest change of a density, 0 to 1
    picture: npt.NDArray[np.float32]  #: [y, x], 0 solid and 1 void, of Optimiser.picture_shape
    times: Times
    blob: Optional[npt.NDArray[np.bool_]]  #: [y, x], where the blob moved to; None if it did not

    @property
    def densities(self) -> npt.NDArray[np.float32]:
        """[y, x], the density of each cell of the picture, 0 void and 1 solid: what a Game or an
        Analysis of the picture's size takes."""
        return 1 - self.picture

    @property
    def volume(self) -> float:
        """Material of the picture, 0 to 1."""
        return float(self.densities.mean(dtype=np.float64))


class _Settings(NamedTuple):
    """The library's records of an update."""

    loads: npt.NDArray[np.float32]
    supports: npt.NDArray[np.float32]
    volume_fraction: float
    passive: npt.NDArray[np.int16]
    load_cases: npt.NDArray[np.int8]
    blob: npt.NDArray[np.int16]

    @property
    def has_cells(self) -> bool:
        return bool(self.passive[:3].any() or self.blob[0])


class Optimiser(PlateSolver):
    """Looks for the stiffest design that can be made of a given amount of material.

    Create it, `update()` it with the problem, and `iterate()`. Most of the shape is there after 20
    to 50 iterations. Change the problem by further updates, while the design goes on.
    """

    _kind = "Optimiser"
    _destroy_function = "_DestroyVoxamApp"
    _restart_id = 0
    _set_by = {
        **dict.fromkeys(("loads", "supports", "volume_fraction", "void", "solid", "second_solid",
                         "load_cases_in_use", "blob"),
                        "pass it to update(), with all else that is to be in force"),
        **dict.fromkeys(("subdivision", "mesh_factor"), "pass it to restart()"),
        **dict.fromkeys(("width", "height", "load_cases"),
                        "create another Optimiser, after close() of this one"),
        "penalty": "pass it to iterate()",
        "picture_shape": "it follows from the plate, subdivision and mesh_factor",
        "closed": "call close()",
    }

    def __init__(
        self,
        width: int,
        height: int,
        *,
        volume_fraction: float = 0.5,
        subdivision: int = 1,
        mesh_factor: int = 1,
        load_cases: int = 1,
    ) -> None:
        """Starts with a uniform design.

        width, height    elements of the plate in x and y
        volume_fraction  material to use, above 0 and up to 1
        subdivision      cells of the design per edge of an element: more detail. Up to 4 serve
                         well; beyond, the design falls apart into dots
        mesh_factor      cells of the picture per edge of such a cell
        load_cases       number of load cases; the compliance is the sum over those in use

        Masks and a blob need mesh_factor to be equal to subdivision.

        Raises OutOfMemoryError when that is clearly too much; so does the first iteration when
        memory does not suffice.
        """
        self._require_new()
        self._plate = Plate.checked(width, height, load_cases)
        self._volume_fraction = fraction(volume_fraction, "volume_fraction")
        self._subdivision = 0
        self._mesh_factor = 0
        self._settings: Optional[_Settings] = None
        refinement = self._checked_refinement(subdivision, mesh_factor)
        self._claim()
        self._create(*refinement)

    @property
    def volume_fraction(self) -> float:
        """Material to use."""
        return self._volume_fraction

    @property
    def subdivision(self) -> int:
        """Cells of the design per edge of an element."""
        return self._subdivision

    @property
    def mesh_factor(self) -> int:
        """Cells of the picture per edge of a cell of the design."""
        return self._mesh_factor

    @property
    def picture_shape(self) -> Tuple[int, int]:
        """Rows and columns of the picture."""
        refinement = self._subdivision * self._mesh_factor
        return self._plate.height * refinement, self._plate.width * refinement

    @property
    def blob(self) -> Optional[npt.NDArray[np.bool_]]:
        """[y, x], where the blob is; None if there is none."""
        self._require_open()
        if self._settings is None or self._settings.blob[0] < 1:
            return None
        mask = self._plate.mask(None, "blob")
        cells = self._settings.blob[1:].reshape(-1, 2)
        mask[cells[:, 1], cells[:, 0]] = True
        return mask

    def update(
        self,
        loads: Iterable[LoadLike],
        supports: Iterable[SupportLike],
        *,
        volume_fraction: Optional[float] = None,
        void: Optional[Mask] = None,
        solid: Optional[Mask] = None,
        second_solid: Optional[Mask] = None,
        load_cases_in_use: Optional[Sequence[int]] = None,
        blob: Optional[Mask] = None,
    ) -> None:
        """Sends the whole problem, any time between iterations. The design goes on from where it
        is. What is left out is not remembered: no mask means no such elements.

        loads                    list of Load, of forces that are scaled to about 1
        supports                 list of Support
        volume_fraction          material to use; the one in force if left out
        void, solid              masks of bool, [y, x], of elements that stay empty or solid
        second_solid             the same as solid, for hosts that tell two kinds apart
        load_cases_in_use        such as [0, 2]; all if left out
        blob                     mask of the elements of a hole that iterate(move_blob=True) moves,
                                 and that stays where it is otherwise. An update puts the hole
                                 here: to leave it where it is, pass the property blob

        Masks need mesh_factor to be equal to subdivision. An error leaves everything as it was.
        """
        settings = self._checked_settings(
            loads, supports, volume_fraction=volume_fraction, void=void, solid=solid,
            second_solid=second_solid, load_cases_in_use=load_cases_in_use, blob=blob)
        with self._in_use() as library:
            _check_placement(settings, self._subdivision, self._mesh_factor)
            self._settings = settings
            self._volume_fraction = settings.volume_fraction
            self._send(library)

    def _checked_settings(
        self,
        loads: Iterable[LoadLike],
        supports: Iterable[SupportLike],
        *,
        volume_fraction: Optional[float] = None,
        void: Optional[Mask] = None,
        solid: Optional[Mask] = None,
        second_solid: Optional[Mask] = None,
        load_cases_in_use: Optional[Sequence[int]] = None,
        blob: Optional[Mask] = None,
    ) -> _Settings:
        self._require_open()
        wanted = self._volume_fraction if volume_fraction is None else volume_fraction
        return _Settings(
            self._plate.load_records(loads),
            self._plate.support_records(supports),
            fraction(wanted, "volume_fraction"),
            self._passive_record(void, solid, second_solid),
            self._load_cases(load_cases_in_use),
            cell_records([("blob", self._plate.mask(blob, "blob"))]),
        )

    def iterate(
        self,
        penalty: float = 3.0,
        *,
        move_blob: bool = False,
        out: Optional[npt.NDArray[np.float32]] = None,
    ) -> Iteration:
        """Runs one iteration, and then moves the blob if it is to move.

        penalty  exponent that makes half-filled cells a poor use of material, above 0
        out      array that gets the picture: float32, C-contiguous, aligned, of picture_shape; a
                 new one if left out

        Raises ProblemError if the plate cannot be optimised as it is: call update with a fixed
        problem, and the design stays. `out` is not touched then.
        """
        if isinstance(penalty, np.ndarray):
            raise TypeError(f"penalty: {shown(penalty)} is not a number; iterate(out=array) puts "
                            "the picture into an array")
        exponent = finite(penalty, "penalty")
        if exponent <= 0:
            raise ValueError(f"penalty: {penalty!r} is not above 0")
        text = ctypes.create_string_buffer(_TEXT_LENGTH)
        change = ctypes.c_double()
        stat = RuntimeStat()
        with self._in_use() as library:
            if self._settings is None:
                raise VoxamError("there is nothing to optimise yet: call update() first")
            picture = self._picture(out)
            outputs = (_TEXT_LENGTH, text, picture.ctypes.data, ctypes.byref(change),
                       ctypes.byref(stat))
            cells = np.full((self._plate.height, self._plate.width), -1, np.intc)
            if truth(move_blob, "move_blob"):
                compliance = library._IterateVoxamAppWithBlob(*outputs, cells.ctypes.data, exponent)
            else:
                compliance = library._IterateVoxamApp(*outputs, exponent)
            blob = cells == 1 if cells[0, 0] >= 0 else None
            if blob is not None:
                self._settings = self._settings._replace(blob=cell_records([("blob", blob)]))
            if text.value:
                self._fail(text.value.decode("utf-8", "replace"))
        times = Times(*(getattr(stat, field.name + "Time") for field in fields(Times)))
        return Iteration(compliance, change.value, picture, times, blob)

    def restart(
        self,
        *,
        keep_design: bool = False,
        subdivision: Optional[int] = None,
        mesh_factor: Optional[int] = None,
    ) -> None:
        """Begins again with the problem of the last update, from a uniform design and, if given, at
        another detail; the picture's shape changes with it. With keep_design only the library's
        schedule of iterations begins again."""
        self._require_open()
        self._restart(self._settings, keep_design, subdivision, mesh_factor)

    def restart_with(self, problem: Dict[str, Any], *, keep_design: bool = False,
                     subdivision: Optional[int] = None, mesh_factor: Optional[int] = None) -> None:
        """A restart with another problem, the arguments of update(), in one step: its elements go
        with the new detail, while those before went with the old one."""
        self._restart(self._checked_settings(**problem), keep_design, subdivision, mesh_factor)

    def _restart(self, settings: Optional[_Settings], keep_design: bool,
                 subdivision: Optional[int], mesh_factor: Optional[int]) -> None:
        if truth(keep_design, "keep_design") and not (subdivision is None and mesh_factor is None):
            raise ValueError("a design that is kept keeps its subdivision and mesh_factor")
        with self._in_use() as library:
            refinement = self._subdivision, self._mesh_factor
            if not keep_design:
                refinement = self._checked_refinement(
                    self._subdivision if subdivision is None else subdivision,
                    self._mesh_factor if mesh_factor is None else mesh_factor,
                )
            if settings is not None:
                _check_placement(settings, *refinement)
                self._settings = settings
                self._volume_fraction = settings.volume_fraction
            if not keep_design:
                library._DestroyVoxamApp()
            self._create(*refinement)
            if settings is not None:
                self._send(library)

    def _checked_refinement(self, subdivision: int, mesh_factor: int) -> Tuple[int, int]:
        refinement = (
            whole(subdivision, "subdivision", 1, LARGEST_INT),
            whole(mesh_factor, "mesh_factor", 1, LARGEST_INT),
        )
        scale = refinement[0] * refinement[1]
        if self._plate.width * self._plate.height * scale * scale > LARGEST_INT:
            raise OutOfMemoryError(
                f"subdivision {subdivision} and mesh_factor {mesh_factor} make a picture of more "
                f"cells than the library can number, which is {LARGEST_INT}: lower them"
            )
        older = self if self._subdivision else self._living()
        self._plate.check_memory(
            self._plate.optimiser_memory(*refinement),
            f"subdivision {subdivision}, mesh_factor {mesh_factor}, ",
            older._memory() if older else 0)
        return refinement

    def _memory(self) -> float:
        return self._plate.optimiser_memory(self._subdivision, self._mesh_factor)

    def _create(self, subdivision: int, mesh_factor: int) -> None:
        """Creates the library's optimiser, or only restarts the schedule of the one there is."""
        with self._in_use() as library:
            library._InitVoxamApp(self._plate.width, self._plate.height, subdivision, mesh_factor,
                                  self._volume_fraction, self._plate.load_cases, self._restart_id)
            self._subdivision, self._mesh_factor = subdivision, mesh_factor

    def _send(self, library: ctypes.CDLL) -> None:
        settings = self._settings
        assert settings is not None
        library._UpdateVoxamApp(
            len(settings.loads), settings.loads.ctypes.data,
            len(settings.supports), settings.supports.ctypes.data,
            settings.volume_fraction, settings.passive.ctypes.data,
            len(settings.load_cases), settings.load_cases.ctypes.data,
            settings.blob.ctypes.data)

    def _passive_record(self, *masks: Optional[Mask]) -> npt.NDArray[np.int16]:
        names = ("void", "solid", "second_solid")
        lists = [(name, self._plate.mask(mask, name)) for name, mask in zip(names, masks)]
        taken = np.zeros((self._plate.height, self._plate.width), np.intp)
        for _, mask in lists:
            taken += mask
        if taken.max() > 1:
            y, x = np.argwhere(taken > 1)[0]
            both = " and ".join(name for name, mask in lists if mask[y, x])
            raise ValueError(f"element [{y}, {x}] is in both {both}")
        return cell_records(lists)

    def _load_cases(self, in_use: Optional[Sequence[int]]) -> npt.NDArray[np.int8]:
        exist = self._plate.load_cases
        if in_use is None:
            if exist > LOAD_CASES_IN_USE:
                raise ValueError(f"load_cases_in_use: name them, of {exist} load cases only the "
                                 f"first {LOAD_CASES_IN_USE} can be used")
            in_use = range(exist)
        try:
            in_use = list(in_use)
        except TypeError:
            raise TypeError(f"load_cases_in_use: {shown(in_use)} is no list; pass one, such as [0]"
                            ) from None
        if not in_use:
            raise ValueError("load_cases_in_use: at least one is needed")
        last = min(exist, LOAD_CASES_IN_USE) - 1
        return np.array([whole(case, f"load_cases_in_use[{i}]", 0, last)
                         for i, case in enumerate(in_use)], np.int8)

    def _picture(self, out: Optional[npt.NDArray[np.float32]]) -> npt.NDArray[np.float32]:
        if out is None:
            return np.empty(self.picture_shape, np.float32)
        if not isinstance(out, np.ndarray) or out.dtype != np.float32:
            given = f"one of {out.dtype}" if isinstance(out, np.ndarray) else shown(out)
            raise TypeError(f"out: an array of numpy.float32 is needed, not {given}")
        if out.shape != self.picture_shape:
            raise ValueError(f"out: shape {out.shape} is not the picture's, {self.picture_shape}")
        if not (out.flags.c_contiguous and out.flags.writeable and out.flags.aligned):
            raise ValueError("out: the array has to be C-contiguous, writeable and aligned")
        return out

    def _fail(self, text: str) -> None:
        assert self._settings is not None
        starved = text == _UNSOLVED and self._plate.is_starved(
            self._memory(), self._settings.supports)
        if starved or text.startswith(_NO_OPTIMISER) or text == "std::bad_alloc":
            raise OutOfMemoryError(
                f"not enough memory for {self._plate.width} x {self._plate.height} elements with "
                f"subdivision {self._subdivision} and mesh_factor {self._mesh_factor}: close this "
                "optimiser and create a smaller one")
        if text in _ADVICE:
            raise ProblemError(text, _ADVICE[text])
        raise VoxamError(f"{text}: close this optimiser and create a smaller one")


def placement_fault(has_cells: bool, subdivision: int, mesh_factor: int, name: str = "mesh_factor"
                    ) -> Optional[str]:
    """What is wrong with the detail of a plate that may have masks or a blob: the library would
    put them in the wrong place."""
    if not has_cells or subdivision == mesh_factor:
        return None
    return (f"subdivision ({subdivision}) and {name} ({mesh_factor}) must be equal if there are "
            f"passive elements or a blob; set {name} to {subdivision}")


def _check_placement(settings: _Settings, subdivision: int, mesh_factor: int) -> None:
    fault = placement_fault(settings.has_cells, subdivision, mesh_factor)
    if fault:
        raise ValueError(fault)
