"""The scorer of designs that somebody else made."""

from __future__ import annotations

from dataclasses import dataclass
from typing import Iterable

import numpy as np
import numpy.typing as npt

from ._library import OutOfMemoryError, ProblemError
from ._plate import LoadLike, Plate, PlateSolver, SupportLike

_FAILED_SCORE = float(np.finfo(np.float32).max)
_ADVICE = (
    "the plate cannot be solved. Hold it in x, in y and against turning, scale the forces to "
    "about 1, and join or remove parts that touch nothing: on plates of some 500 elements and more "
    "they have no score"
)
_ADVICE_ON_WORK = (
    "the loads do no work, because they cancel out or are too small. Scale the forces to about 1"
)


@dataclass(frozen=True, eq=False)
class Score:
    """What a design is worth."""

    compliance: float  #: over all load cases; smaller is stiffer
    energies: npt.NDArray[np.float32]  #: [y, x], each element's share of the compliance


class Game(PlateSolver):
    """Scores designs for a plate with its loads and supports, quickly and in single precision.

    The score is wrong by a relative error of about 3.6e-8 * solid elements * compliance for a force
    of 1, or less; this is valid while it is below 0.1. So the score is accurate to 1 % while solid
    elements times compliance is below 3e5. From 3e6 on it may be any number, too high or too low.
    Use `Analysis` to judge a design.
    """

    _kind = "Game"
    _destroy_function = "_DestroyVoxamGame"
    _set_by = {
        **dict.fromkeys(("width", "height", "load_cases", "loads", "supports"),
                        "create another Game, after close() of this one"),
        "densities": "pass them to solve()",
        "closed": "call close()",
    }

    def __init__(
        self,
        width: int,
        height: int,
        loads: Iterable[LoadLike],
        supports: Iterable[SupportLike],
        *,
        load_cases: int = 1,
    ) -> None:
        """Takes a plate of width x height elements, and at least one load that does work. Raises
        OutOfMemoryError when the plate is too large."""
        self._require_new()
        self._plate = Plate.checked(width, height, load_cases)
        load_records = self._plate.load_records(loads)
        support_records = self._plate.support_records(supports)
        self._plate.check_work(load_records, support_records)
        self._supports = support_records
        older = self._living()
        self._plate.check_memory(self._plate.game_memory(), "",
                                 older._plate.game_memory() if older else 0)
        self._claim()
        with self._in_use() as library:
            library._InitVoxamGame(
                self._plate.width, self._plate.height, 1, 1,
                len(load_records), load_records.ctypes.data,
                len(support_records), support_records.ctypes.data, self._plate.load_cases)
            # Without densities the call fails, and sets the energies only if there is a solver.
            energies = self._untouched()
            library._SolveVoxamGame(None, energies.ctypes.data)
        if np.isnan(energies[0, 0]):
            self.close()
            raise self._out_of_memory()

    def solve(self, densities: npt.ArrayLike) -> Score:
        """Scores one design: an array [y, x] of shape (height, width), from 0 (void) to 1 (solid).

        Compare designs whose densities are near 0 and 1; partly filled elements score lower than
        they deserve. Scores of many powers of ten mean that a load hangs on void. Raises
        ProblemError when the plate cannot be solved; the next call starts clean.
        """
        self._require_open()
        columns = self._plate.densities(densities)
        energies = self._untouched()
        with self._in_use() as library:
            compliance = library._SolveVoxamGame(columns.ctypes.data, energies.ctypes.data)
        if compliance == 0:
            raise ProblemError("", _ADVICE_ON_WORK)
        if not compliance < _FAILED_SCORE:
            if self._plate.is_starved(self._plate.game_memory(), self._supports):
                raise self._out_of_memory()
            raise ProblemError("", _ADVICE)
        return Score(compliance, energies.T)

    def _out_of_memory(self) -> OutOfMemoryError:
        return OutOfMemoryError(f"not enough memory for {self.width} x {self.height} elements: "
                                "make the plate smaller")

    def _untouched(self) -> npt.NDArray[np.float32]:
        return np.full((self._plate.width, self._plate.height), np.nan, np.float32)
